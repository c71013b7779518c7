// The program's own menus, keys, pictures and dialogs for a test without the program's application object.
#ifndef TESTS_SUPPORT_PROGRAMTABLES_H
#define TESTS_SUPPORT_PROGRAMTABLES_H

#include "res/tables.h"
#include "win/resources.h"

/// They are looked up while it lives.
class ProgramTables
{
public:
    ProgramTables() : former(SetResourceTables(&tables)) {}
    ~ProgramTables() { SetResourceTables(former); }
    ProgramTables(const ProgramTables &) = delete;
    ProgramTables &operator=(const ProgramTables &) = delete;

private:
    const ResTABLES tables = {resMenus,    resMenuCount,    resAccels,  resAccelCount,
                              resPictures, resPictureCount, resDialogs, resDialogCount};
    const ResTABLES *former;
};

#endif
