// Catalogues for tests: a simple one, whose items have a key of any length and two numbers and lie in sections
// of their own, and a divided one, whose items are a name and a number and lie flat in their group. Both have a
// dialog for their items. What they hold can be had as plain values, and files can be made of such values.
#ifndef TESTS_SUPPORT_TESTCATALOG_H
#define TESTS_SUPPORT_TESTCATALOG_H

#include "support/cdeitems.h"
#include "support/programtables.h"
#include "support/testdialog.h"
#include "usr/edcctlg.h"

#include <string>
#include <vector>

enum {
    TEST_TITLE = 20205, // a text of the program that serves as a caption
    TEST_UNIT_DIALOG = 9110,
    TEST_PART_DIALOG = 9111,
    TEST_KEY = 100, // the controls of both dialogs
    TEST_OUTPUT = 101,
    TEST_LENGTH = 102 // of the first
};

/// The program's dialogs and those of the items, while it lives.
class CatalogTables
{
public:
    CatalogTables();

private:
    ProgramTables program;
    DialogTables added;
};

// What the catalogues hold, in the file's order. Texts are Windows-1252.

struct UNIT {
    std::string key;
    double output;
    double length;

    bool operator==(const UNIT &) const = default;
};
using UNITS = std::vector<UNIT>;

struct PART {
    std::string name;
    double value;

    bool operator==(const PART &) const = default;
};

struct PARTS {
    std::string name; // of the group
    std::vector<PART> parts;

    bool operator==(const PARTS &) const = default;
};
using GROUPS = std::vector<PARTS>;

CdeITEMS UnitItems(const UNITS &units);                   // a whole file
CdeITEMS GroupItems(const GROUPS &groups);                // a whole file
UNITS RandomUnits(CHANCE &chance, int count);             // names with umlauts, no two the same
GROUPS RandomGroups(CHANCE &chance, int count, int most); // up to `most` items in each
std::string RandomName(CHANCE &chance, int number);       // collapsed, ends in the number

class TestUnit : public TEdcCtlgItem
{
public:
    struct RECORD {
        TEdcLongStr key;
        TEdcFloat output;
        TEdcFloat length;
    } record;

    void GetName(char *buf, int max) override;
    void Read(CdeFILE &file, int ver) override;
    void Write(CdeFILE &file) override;
    void *Record() override { return &record; }
    UNIT Values() const { return {record.key.text, record.output.value, record.length.value}; }
    int version = -1; // that Read was told
};

class TestUnitDialog : public TEdcDialog
{
public:
    TestUnitDialog();
};

class TestSimpleCatalog : public TEdcCtlgSimpleList
{
public:
    explicit TestSimpleCatalog(const char *name = ".TvTest", const char *aType = "TEST/ZEC", int aSaveVer = 1,
                               int aLoadVer = 1, int aTitleId = TEST_TITLE, TWindow *aParent = NULL)
        : TEdcCtlgSimpleList(name, aType, aSaveVer, aLoadVer, aTitleId, aParent)
    {
    }
    TEdcCtlgItem *NewItem(TEdcCtlgItem *copy) override;
    TEdcDialog *ItemDialog() override { return &editor; }
    UNITS Values() const;
    void Put(const UNITS &units); // in place of what it holds; loaded from then on
    using TEdcCtlgList::Load;
    TestUnitDialog editor;
};

class TestPart : public TEdcCtlgItem
{
public:
    struct RECORD {
        TEdcShortStr name;
        TEdcFloat value;
    } record;

    void GetName(char *buf, int max) override;
    void Read(CdeFILE &file, int ver) override;
    void Write(CdeFILE &file) override;
    void *Record() override { return &record; }
};

class TestPartDialog : public TEdcDialog
{
public:
    TestPartDialog();
};

class TestDividedCatalog : public TEdcCtlgDividedList
{
public:
    explicit TestDividedCatalog(const char *name = ".StTest", TWindow *aParent = NULL)
        : TEdcCtlgDividedList(name, "PARTS/ZEC", 1, 1, TEST_TITLE, aParent)
    {
    }
    TEdcCtlgItem *NewItem(TEdcCtlgItem *copy) override;
    TEdcDialog *ItemDialog() override { return &editor; }
    GROUPS Values() const;
    void Put(const GROUPS &groups);
    using TEdcCtlgList::Load;
    TestPartDialog editor;
};

#endif
