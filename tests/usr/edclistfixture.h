// A dialog with a drop list, one with an edit field and a list box that stand for values.
#ifndef TESTS_USR_EDCLISTFIXTURE_H
#define TESTS_USR_EDCLISTFIXTURE_H

#include "support/hookdialog.h"
#include "support/testapp.h"
#include "support/testdialog.h"
#include "win/testdialog.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

enum { CHOICE = 100, COMBO = 101, BOX = 102, OTHER = 103 };

struct ITEM {
    int id;
    const char *text;
};

inline TEdcLongStr Value(int id, const char *text = "")
{
    TEdcLongStr value;
    value.Set(id, text);
    return value;
}

/// "V:text", "U", "N", or the number of an item with its text.
inline std::string Shown(const TEdcAStr &value)
{
    if (value.id == EDC_VUDF)
        return "U";
    std::string state = value.id == EDC_VVAL ? "V" : value.id == EDC_VNUL ? "N" : std::to_string(value.id);
    return state + ":" + value.text;
}

template <class LIST>
std::string Read(const LIST &list)
{
    TEdcLongStr value;
    list.GetValue(value);
    return Shown(value);
}

template <class LIST>
void Fill(LIST &list, const std::vector<ITEM> &items)
{
    list.ClearList();
    for (const ITEM &item : items)
        list.Add(Value(item.id, item.text));
}

/// Takes what begins with the letter A, and counts what it is asked.
class CountingValidator : public TEdcValueValidator
{
public:
    struct LOG {
        int asked = 0;
        int errors = 0;
        int deleted = 0;
        std::string text; // last asked for
    };
    explicit CountingValidator(LOG &aLog, unsigned bits = 0) : TEdcValueValidator(true), log(aLog)
    {
        options |= bits;
    }
    ~CountingValidator() override { ++log.deleted; }
    bool IsValid(const char *text) override
    {
        ++log.asked;
        log.text = text;
        return *text == 'A';
    }
    void Error(TWindow *) override { ++log.errors; }
    std::string Hint() const override { return "beginnt mit A"; }

private:
    LOG &log;
};

class EdcLists : public testing::Test
{
protected:
    enum { DIALOG = 30140 };
    void SetUp() override
    {
        TestApplication();
        tables = std::make_unique<DialogTables>();
        ResCONTROL boxLine = Line(RES_LIST, BOX);
        boxLine.x = 2;
        boxLine.y = 80;
        boxLine.width = 80;
        boxLine.height = 60;
        tables->Add(DIALOG, "Listen",
                    {Line(RES_CHOICE, CHOICE), Line(RES_COMBO, COMBO), Line(RES_EDIT, OTHER),
                     Line(RES_DEFAULT, 1, "OK"), Line(RES_BUTTON, 2, "Abbrechen"), boxLine});
        Renew();
    }
    void TearDown() override
    {
        dialog.reset();
        tables.reset();
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }
    void Renew(void *record = NULL) { dialog = std::make_unique<HookDialog>(DIALOG, record); }

    /// All three, in a window.
    void Open(int flags = 0, int limit = LONGSTRMAX)
    {
        choice = new TEdcComboBox(dialog.get(), CHOICE, limit, NULL, flags);
        combo = new TEdcComboBox(dialog.get(), COMBO, limit, NULL, flags);
        box = new TEdcListBox(dialog.get(), BOX, NULL, flags);
        dialog->Create();
    }

    /// Does the same to each kind of list.
    template <class WHAT>
    void Each(WHAT what)
    {
        SCOPED_TRACE("drop list");
        what(*choice);
        SCOPED_TRACE("drop-down with an edit field");
        what(*combo);
        SCOPED_TRACE("list box");
        what(*box);
    }

    std::unique_ptr<DialogTables> tables;
    std::unique_ptr<HookDialog> dialog;
    TEdcComboBox *choice = NULL; // the dialog's, all three
    TEdcComboBox *combo = NULL;
    TEdcListBox *box = NULL;
};

#endif
