#include "support/catalogcase.h"
#include "support/child.h"
#include "win/application.h"

#include "lib/xon.h"

namespace
{
using testdoor::DialogBox;
using STRINGS = std::vector<std::string>;

enum { LIST_BOX = 100, FRAME = 101, ADD = 102, ADJUST = 103, REMOVE = 104, CLOSE = 105, PICTURE = 106 };

// In the order of the file. The list shows them as Alpha, beta, Ähre, Zeta are sorted: Ä with A.
const UNITS units = {{"Zeta", 1, 0}, {"beta", 2, 0}, {"\xC4hre", 3, 0}, {"Alpha", 4, 0}};
const STRINGS sorted = {"\xC4hre", "Alpha", "beta", "Zeta"};

class SimpleList : public CatalogCase
{
protected:
    SimpleList() { catalog.Put(units); }

    TListBox *Items()
    {
        for (TControl *control : catalog.Controls())
            if (control->Id() == LIST_BOX)
                return dynamic_cast<TListBox *>(control);
        return NULL;
    }
    /// Runs the picking form. @return the key of what was picked, "" for nothing
    std::string Pick(const ACT &act)
    {
        InDialogFirst(act);
        TEdcCtlgItem *item = catalog.Select();
        EXPECT_STREQ(xCode, XNULL);
        return item ? static_cast<TestUnit *>(item)->record.key.text : "";
    }
    /// Runs the editing form; `act` need not close it.
    void Edit(const ACT &act)
    {
        InDialogFirst([act](DialogBox &dialog) {
            act(dialog);
            dialog.Click(CLOSE);
        });
        catalog.Edit();
        EXPECT_STREQ(xCode, XNULL);
    }
    /// The next box is the item dialog, and gets these texts; UTF-8.
    void Fill(const std::string &key, const std::string &output, const std::string &length)
    {
        InDialog([=](DialogBox &dialog) {
            dialog.Type(TEST_KEY, key);
            dialog.Type(TEST_OUTPUT, output);
            dialog.Type(TEST_LENGTH, length);
            dialog.Click(WIN_ID_OK);
        });
    }

    TestSimpleCatalog catalog;
};

TEST_F(SimpleList, PicksWithItsEntriesInThePlatformsOrder)
{
    EXPECT_EQ(Pick([](DialogBox &dialog) {
                  EXPECT_EQ(dialog.Caption(), GetResString(TEST_TITLE));
                  EXPECT_EQ(dialog.Entries(LIST_BOX), sorted);
                  EXPECT_EQ(dialog.Selected(LIST_BOX), 0);
                  EXPECT_EQ(dialog.Focus(), LIST_BOX);
                  dialog.ClickEntry(LIST_BOX, 2);
                  dialog.Click(WIN_ID_OK);
              }),
              "beta");
    EXPECT_EQ(catalog.Values(), units) << "the catalogue keeps its own order";
}

TEST_F(SimpleList, PickingShowsItsButtonsAndHidesThoseOfEditing)
{
    Pick([](DialogBox &dialog) {
        for (int id : {FRAME, ADD, ADJUST, REMOVE, CLOSE}) {
            EXPECT_FALSE(dialog.IsShown(id)) << id;
            EXPECT_FALSE(dialog.IsEnabled(id)) << id;
        }
        for (int id : {int{WIN_ID_OK}, int{WIN_ID_CANCEL}, int{PICTURE}})
            EXPECT_TRUE(dialog.IsShown(id) && dialog.IsEnabled(id)) << id;
        dialog.Click(WIN_ID_CANCEL);
    });
}

TEST_F(SimpleList, EditingShowsItsButtonsAndHidesThoseOfPicking)
{
    Edit([](DialogBox &dialog) {
        for (int id : {FRAME, ADD, ADJUST, REMOVE, CLOSE, PICTURE})
            EXPECT_TRUE(dialog.IsShown(id) && dialog.IsEnabled(id)) << id;
        for (int id : {WIN_ID_OK, WIN_ID_CANCEL}) {
            EXPECT_FALSE(dialog.IsShown(id)) << id;
            EXPECT_FALSE(dialog.IsEnabled(id)) << id;
        }
        EXPECT_EQ(dialog.Entries(LIST_BOX), sorted);
        EXPECT_EQ(dialog.Selected(LIST_BOX), 0);
        EXPECT_EQ(dialog.Focus(), LIST_BOX);
    });
}

TEST_F(SimpleList, WithoutATitleOfItsOwnKeepsTheDialogsCaption)
{
    TestSimpleCatalog plain(".TvTest", "TEST/ZEC", 1, 1, 0);
    plain.Put(units);
    InDialog([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Caption(), "Katalog");
        dialog.Press("Esc");
    });
    EXPECT_EQ(plain.Select(), nullptr);
}

TEST_F(SimpleList, AnEmptyOneShowsADisabledOk)
{
    catalog.Put({});
    EXPECT_EQ(Pick([](DialogBox &dialog) {
                  EXPECT_TRUE(dialog.Entries(LIST_BOX).empty());
                  EXPECT_EQ(dialog.Selected(LIST_BOX), -1);
                  EXPECT_TRUE(dialog.IsShown(WIN_ID_OK));
                  EXPECT_FALSE(dialog.IsEnabled(WIN_ID_OK));
                  dialog.Press("Return");
                  dialog.DoubleClick(LIST_BOX);
                  EXPECT_TRUE(dialog.IsShown(WIN_ID_CANCEL)) << "neither closes it";
                  dialog.Press("Esc");
              }),
              "");
}

TEST_F(SimpleList, AnEmptyOneHasNothingToAdjustOrRemove)
{
    catalog.Put({});
    Edit([](DialogBox &dialog) {
        EXPECT_TRUE(dialog.IsEnabled(ADD));
        EXPECT_FALSE(dialog.IsEnabled(ADJUST));
        EXPECT_FALSE(dialog.IsEnabled(REMOVE));
        dialog.DoubleClick(LIST_BOX);
    });
}

TEST_F(SimpleList, IsPickedFromInAllTheUsualWays)
{
    EXPECT_EQ(Pick([](DialogBox &dialog) { dialog.ClickEntry(LIST_BOX, 3, true); }), "Zeta");
    EXPECT_EQ(Pick([](DialogBox &dialog) {
                  dialog.Press("Down");
                  dialog.Press("Return");
              }),
              "Alpha");
    EXPECT_EQ(Pick([](DialogBox &dialog) {
                  dialog.TypeKeys("z");
                  dialog.Click(WIN_ID_OK);
              }),
              "Zeta");
    EXPECT_EQ(Pick([](DialogBox &dialog) { dialog.Press("Return"); }), "\xC4hre");
}

TEST_F(SimpleList, IsLeftWithoutAChoiceInAllTheUsualWays)
{
    EXPECT_EQ(Pick([](DialogBox &dialog) { dialog.Press("Esc"); }), "");
    EXPECT_EQ(Pick([](DialogBox &dialog) { dialog.Click(WIN_ID_CANCEL); }), "");
    EXPECT_EQ(Pick([](DialogBox &dialog) { dialog.CloseByFrame(); }), "");
    EXPECT_EQ(Pick([](DialogBox &dialog) {
                  dialog.Press("Tab");
                  dialog.Press("Tab");
                  EXPECT_EQ(dialog.Focus(), WIN_ID_CANCEL);
                  dialog.Press("Return");
              }),
              "");
}

TEST_F(SimpleList, EditingIsLeftInAllTheUsualWays)
{
    Edit([](DialogBox &) {});
    for (const char *key : {"Esc", "Alt+S"}) {
        InDialog([key](DialogBox &dialog) { dialog.Press(key); });
        catalog.Edit();
    }
    InDialog([](DialogBox &dialog) { dialog.CloseByFrame(); });
    catalog.Edit();
    EXPECT_EQ(catalog.Values(), units);
    EXPECT_EQ(Pick([](DialogBox &dialog) { dialog.Press("Return"); }), "\xC4hre")
        << "it can still be picked from";
}

TEST_F(SimpleList, ReturnDoesNothingInEditingUnlessAButtonHasTheFocus)
{
    Fill("Neu", "1", "2");
    Edit([](DialogBox &dialog) {
        dialog.Press("Return");
        EXPECT_EQ(dialog.Entries(LIST_BOX), sorted);
        dialog.Press("Tab");
        EXPECT_EQ(dialog.Focus(), ADD);
        dialog.Press("Return");
        EXPECT_EQ(dialog.Entries(LIST_BOX).size(), 5u);
    });
}

TEST_F(SimpleList, AddsAtTheEndOfTheFileAndSelectsTheNewEntry)
{
    Fill("B\xC3\xA4r", "12.5", "-3");
    Edit([](DialogBox &dialog) {
        dialog.Click(ADD);
        EXPECT_EQ(dialog.Entries(LIST_BOX), (STRINGS{"\xC4hre", "Alpha", "B\xE4r", "beta", "Zeta"}));
        EXPECT_EQ(dialog.Selected(LIST_BOX), 2);
        EXPECT_EQ(dialog.Focus(), LIST_BOX);
    });
    UNITS expected = units;
    expected.push_back({"B\xE4r", 12.5, -3});
    EXPECT_EQ(catalog.Values(), expected);
    catalog.Save();
    EXPECT_EQ(GetFile(".TvTest.zec"), EncodeItems(UnitItems(expected)));
}

TEST_F(SimpleList, AddsTheFirstEntryOfAllAndCanThenAdjustIt)
{
    catalog.Put({});
    Fill("Erstes", "1", "1");
    Edit([](DialogBox &dialog) {
        dialog.Press("Alt+Z");
        EXPECT_EQ(dialog.Entries(LIST_BOX), STRINGS{"Erstes"});
        EXPECT_TRUE(dialog.IsEnabled(ADJUST));
        EXPECT_TRUE(dialog.IsEnabled(REMOVE));
    });
}

TEST_F(SimpleList, AFreshItemIsEmptyAndCancellingAddsNothing)
{
    InDialog([this](DialogBox &dialog) {
        EXPECT_EQ(catalog.editor.Parent(), static_cast<TWindow *>(&catalog));
        EXPECT_EQ(dialog.Text(TEST_KEY) + dialog.Text(TEST_OUTPUT), "");
        dialog.Type(TEST_KEY, "Neu");
        dialog.Press("Esc");
    });
    Edit([](DialogBox &dialog) {
        dialog.ClickEntry(LIST_BOX, 2);
        dialog.Click(ADD);
        EXPECT_EQ(dialog.Entries(LIST_BOX), sorted);
        EXPECT_EQ(dialog.Selected(LIST_BOX), 2);
        EXPECT_EQ(dialog.Focus(), LIST_BOX);
    });
    EXPECT_EQ(catalog.Values(), units);
    EXPECT_EQ(catalog.editor.TransferRecord(), nullptr);
}

TEST_F(SimpleList, ABlankKeyIsRefusedByTheItemDialog)
{
    InDialog([](DialogBox &dialog) {
        dialog.Type(TEST_KEY, "   ");
        dialog.Type(TEST_OUTPUT, "1");
        dialog.Type(TEST_LENGTH, "1");
        testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_OK); });
        dialog.Click(WIN_ID_OK);
        EXPECT_EQ(dialog.Focus(), TEST_KEY);
        dialog.Press("Esc");
    });
    Edit([](DialogBox &dialog) { dialog.Click(ADD); });
    EXPECT_EQ(catalog.Values(), units);
}

TEST_F(SimpleList, AdjustingReplacesTheItemInItsPlace)
{
    TEdcCtlgItem *former = catalog.FindItem("beta", true);
    LINK *before = former->Prev();
    InDialog([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Text(TEST_KEY), "beta");
        EXPECT_EQ(dialog.Text(TEST_OUTPUT), "2");
        dialog.Type(TEST_KEY, "Omega");
        dialog.Click(WIN_ID_OK);
    });
    Edit([](DialogBox &dialog) {
        dialog.ClickEntry(LIST_BOX, 2);
        dialog.Click(ADJUST);
        EXPECT_EQ(dialog.Entries(LIST_BOX), (STRINGS{"\xC4hre", "Alpha", "Omega", "Zeta"}));
        EXPECT_EQ(dialog.Selected(LIST_BOX), 2);
        EXPECT_EQ(dialog.Focus(), LIST_BOX);
    });
    UNITS expected = units;
    expected[1].key = "Omega";
    EXPECT_EQ(catalog.Values(), expected);
    EXPECT_EQ(before->Next(), catalog.FindItem("Omega", true));
}

TEST_F(SimpleList, AdjustingTheOnlyItemKeepsTheListWhole)
{
    catalog.Put({{"einzig", 1, 1}});
    Fill("allein", "2", "2");
    Edit([](DialogBox &dialog) { dialog.ClickEntry(LIST_BOX, 0, true); });
    EXPECT_EQ(catalog.Values(), (UNITS{{"allein", 2, 2}}));
    EXPECT_EQ(catalog.First(), catalog.Last());
}

TEST_F(SimpleList, ACancelledAdjustmentLeavesTheObjectItself)
{
    TEdcCtlgItem *item = catalog.FindItem("\xC4hre", true);
    InDialog([](DialogBox &dialog) {
        dialog.Type(TEST_OUTPUT, "99");
        dialog.Press("Esc");
    });
    Edit([](DialogBox &dialog) { dialog.Press("Alt+A"); });
    EXPECT_EQ(catalog.FindItem("\xC4hre", true), item);
    EXPECT_EQ(catalog.Values(), units);
}

TEST_F(SimpleList, ANameThatIsTakenIsRefusedAndTheDialogComesBackWithWhatWasTyped)
{
    Fill("ALPHA  ", "1", "2");
    AnswerOk(TEXT_NAME_CLASH);
    InDialog([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Text(TEST_KEY), "ALPHA  ");
        EXPECT_EQ(dialog.Text(TEST_LENGTH), "2");
        dialog.Type(TEST_KEY, "beta");
        dialog.Click(WIN_ID_OK);
    });
    AnswerOk(TEXT_NAME_CLASH);
    InDialog([](DialogBox &dialog) {
        dialog.Type(TEST_KEY, "Gamma");
        dialog.Click(WIN_ID_OK);
    });
    Edit([](DialogBox &dialog) { dialog.Click(ADD); });
    ASSERT_EQ(catalog.Count(), 5);
    EXPECT_EQ(catalog.Values()[4], (UNIT{"Gamma", 1, 2}));
}

TEST_F(SimpleList, AClashThatIsGivenUpChangesNothing)
{
    Fill("zeta", "1", "2");
    AnswerOk(TEXT_NAME_CLASH);
    InDialog([](DialogBox &dialog) { dialog.Click(WIN_ID_CANCEL); });
    Edit([](DialogBox &dialog) { dialog.Click(ADJUST); });
    EXPECT_EQ(catalog.Values(), units);
}

TEST_F(SimpleList, AnItemMayKeepItsOwnNameInAnotherCase)
{
    Fill("  BETA ", "7", "0");
    Edit([](DialogBox &dialog) {
        dialog.ClickEntry(LIST_BOX, 2);
        dialog.Click(ADJUST);
        EXPECT_EQ(dialog.Entries(LIST_BOX)[2], "BETA");
    });
    EXPECT_EQ(catalog.FindItem("BETA", true), catalog.FindItem("beta", false));
    EXPECT_EQ(catalog.FindItem("beta", true), nullptr);
}

TEST_F(SimpleList, NamesThatAgreeInTheirFirst31CharactersClash)
{
    const std::string longKey(31, 'x');
    catalog.Put({{longKey + "1", 1, 1}});
    Fill(longKey + "2", "1", "1");
    AnswerOk(TEXT_NAME_CLASH);
    Fill(longKey.substr(1) + "2", "1", "1");
    Edit([](DialogBox &dialog) { dialog.Click(ADD); });
    ASSERT_EQ(catalog.Count(), 2);
    EXPECT_EQ(catalog.Values()[1].key, longKey.substr(1) + "2");
}

TEST_F(SimpleList, RemovesOnTheUsersWordAndSelectsWhatComesNext)
{
    AnswerNo(TEXT_REMOVE_ITEM);
    AnswerYes(TEXT_REMOVE_ITEM);
    AnswerYes(TEXT_REMOVE_ITEM);
    Edit([this](DialogBox &dialog) {
        dialog.ClickEntry(LIST_BOX, 2);
        dialog.Click(REMOVE);
        EXPECT_EQ(catalog.Values(), units);
        EXPECT_EQ(dialog.Focus(), LIST_BOX);
        dialog.Click(REMOVE);
        EXPECT_EQ(dialog.Entries(LIST_BOX), (STRINGS{"\xC4hre", "Alpha", "Zeta"}));
        EXPECT_EQ(dialog.Selected(LIST_BOX), 2);
        EXPECT_EQ(dialog.Focus(), LIST_BOX);
        dialog.Press("Alt+B");
        EXPECT_EQ(dialog.Entries(LIST_BOX), (STRINGS{"\xC4hre", "Alpha"}));
        EXPECT_EQ(dialog.Selected(LIST_BOX), 1) << "limited to the last entry";
    });
    EXPECT_EQ(catalog.Values(), (UNITS{units[2], units[3]}));
}

TEST_F(SimpleList, RemovingTheLastItemLeavesNothingToAdjust)
{
    catalog.Put({{"einzig", 1, 1}});
    AnswerYes(TEXT_REMOVE_ITEM);
    Edit([](DialogBox &dialog) {
        dialog.Click(REMOVE);
        EXPECT_EQ(dialog.Selected(LIST_BOX), -1);
        EXPECT_FALSE(dialog.IsEnabled(ADJUST));
        EXPECT_FALSE(dialog.IsEnabled(REMOVE));
        EXPECT_EQ(dialog.Focus(), LIST_BOX);
    });
    EXPECT_TRUE(catalog.IsEmpty());
}

struct REMOVAL {
    int top, selected;           // before
    int topAfter, selectedAfter; // of 60 entries, one less
};

TEST_F(SimpleList, ARemovalLeavesTheViewWhereItWas)
{
    const REMOVAL rows[] = {{20, 25, 20, 25}, {20, 20, 19, 20}, {0, 0, 0, 0}, {0, 3, 0, 3}};
    for (const REMOVAL &row : rows) {
        UNITS many;
        for (int i = 100; i < 160; ++i)
            many.push_back({"Nr. " + std::to_string(i), 1, 1});
        catalog.Put(many);
        AnswerYes(TEXT_REMOVE_ITEM);
        Edit([&](DialogBox &dialog) {
            Items()->SetSelIndex(row.selected);
            Items()->SetTopIndex(row.top);
            ASSERT_EQ(Items()->GetTopIndex(), row.top);
            dialog.Press("Alt+B");
            EXPECT_EQ(Items()->GetTopIndex(), row.topAfter) << row.top << " " << row.selected;
            EXPECT_EQ(Items()->GetSelIndex(), row.selectedAfter) << row.top << " " << row.selected;
        });
    }
}

TEST_F(SimpleList, ReadsOnceAndIsPickedFromAsOftenAsWanted)
{
    TestSimpleCatalog reader;
    PutFile(".TvTest.zec", EncodeItems(UnitItems(units)));
    for (int i = 0; i < 2; ++i) {
        InDialog([](DialogBox &dialog) { dialog.Press("Return"); });
        auto *item = static_cast<TestUnit *>(reader.Select());
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(item->Values(), units[2]);
        PutFile(".TvTest.zec", "gone");
    }
    EXPECT_EQ(GetFile(".TvTest.zec"), "gone") << "it is not looked at again, and picking saves nothing";
}

TEST_F(SimpleList, EntriesThatDifferInCaseAloneArePickedExactly)
{
    catalog.Put({{"wand", 1, 0}, {"Wand", 2, 0}});
    for (int entry : {0, 1}) {
        std::string shown;
        std::string picked = Pick([&](DialogBox &dialog) {
            shown = dialog.Entries(LIST_BOX)[static_cast<size_t>(entry)];
            dialog.ClickEntry(LIST_BOX, entry);
            dialog.Click(WIN_ID_OK);
        });
        EXPECT_EQ(picked, shown);
    }
}

TEST_F(SimpleList, ThreeHundredItemsAreShownAndFound)
{
    CHANCE chance(3);
    catalog.Put(RandomUnits(chance, 300));
    std::string shown;
    std::string picked = Pick([&](DialogBox &dialog) {
        EXPECT_EQ(dialog.Entries(LIST_BOX).size(), 300u);
        shown = dialog.Entries(LIST_BOX)[217];
        dialog.ClickEntry(LIST_BOX, 217, true);
    });
    EXPECT_EQ(picked, shown);
}

/// One that has no memory left for items, while it is told so.
class PoorList : public TestSimpleCatalog
{
public:
    TEdcCtlgItem *NewItem(TEdcCtlgItem *copy) override
    {
        TEdcCtlgItem *item = NULL;
        __enter
            if (poor)
                __raise(XALLOC);
            item = TestSimpleCatalog::NewItem(copy); __test;
        __point
        __treat
        return item;
    }
    bool poor = false;
};

TEST_F(SimpleList, AStepThatFailsIsToldAndLeavesTheDialogUsable)
{
    enum { TEXT_MEMORY = 1010 };
    PoorList list;
    list.Put(units);
    auto told = [](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Text(), GetResString(TEXT_MEMORY) + 1);
        box.Answer(WIN_ID_OK);
    };
    InDialog([&](DialogBox &dialog) {
        list.poor = true;
        dialog.Click(ADD);
        dialog.Click(ADJUST);
        EXPECT_EQ(dialog.Entries(LIST_BOX), sorted);
        EXPECT_EQ(list.Values(), units);
        list.poor = false;
        dialog.Click(ADD);
        EXPECT_EQ(dialog.Entries(LIST_BOX).size(), 5u);
        dialog.Click(CLOSE);
    });
    Script(told);
    Script(told);
    Fill("Neu", "1", "2");
    list.Edit();
    EXPECT_EQ(list.Count(), 5);
}

TEST_F(SimpleList, APendingFailureKeepsTheDialogShut)
{
    xCode = XALLOC;
    catalog.Edit();
    EXPECT_EQ(catalog.Select(), nullptr);
    catalog.Save();
    EXPECT_STREQ(TakeFailure(), XALLOC);
    EXPECT_TRUE(Files().empty());
}

/// The steps of editing without a dialog.
class BareList : public TestSimpleCatalog
{
public:
    using TEdcCtlgList::EditItem;
};

TEST_F(SimpleList, EditingNoItemIsAnAssertion)
{
    BareList list;
    TEdcCtlgItem *none = NULL;
    TestUnit unit;
    TEdcCtlgItem *item = &unit;
    EXPECT_TRUE(AbortsOnAssertion("item != NULL", "usr/edcctlg.cpp", [&] {
        RemoveServices();
        list.EditItem(none, &list);
    }));
    EXPECT_TRUE(AbortsOnAssertion("group != NULL", "usr/edcctlg.cpp", [&] {
        RemoveServices();
        list.EditItem(item, NULL);
    }));
}
} // namespace
