// Dialog resources made by a test, beside the program's own while it lives: a table of lines in place of a
// file.
#ifndef TESTS_SUPPORT_TESTDIALOG_H
#define TESTS_SUPPORT_TESTDIALOG_H

#include "lib/restable.h"

#include <deque>
#include <string>
#include <vector>

/// While it lives, dialogs (and menus and pictures) are looked up here: the program's tables, with the test's
/// dialogs added or in place of those of the same number. One at a time.
class DialogTables
{
public:
    DialogTables();
    ~DialogTables();
    DialogTables(const DialogTables &) = delete;
    DialogTables &operator=(const DialogTables &) = delete;

    /// Texts are UTF-8 here. Lines without a place (all 0) are stacked below each other, 80 x 12 units each.
    void Add(int id, const char *caption, std::vector<ResCONTROL> lines);

private:
    struct DIALOG {
        ResDIALOG dialog;
        std::vector<ResCONTROL> lines;
        std::deque<std::string> texts;
    };
    void Install();
    std::deque<DIALOG> own;
    std::vector<ResDIALOG> all;
    ResTABLES tables;
    const ResTABLES *former;
};

#endif
