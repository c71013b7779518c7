#include "support/catalogcase.h"
#include "support/child.h"
#include "win/application.h"

namespace
{
using testdoor::DialogBox;
using STRINGS = std::vector<std::string>;

enum {
    GROUP_LIST = 100,
    ITEM_LIST = 101,
    FRAME = 102,
    ADD = 103,
    ADJUST = 104,
    REMOVE = 105,
    GROUP_FRAME = 106,
    GROUP_ADD = 107,
    GROUP_RENAME = 108,
    GROUP_REMOVE = 109,
    CLOSE = 110,
    PICTURE = 111,
    GROUP_NAME = 100 // in its own dialog
};

// In the order of the file.
const GROUPS stock = {{"W\xE4nde", {{"Ziegel", 1}, {"Beton", 2}, {"Altbau", 3}}},
                      {"Dach", {{"Blech", 4}, {"Beton", 5}}},
                      {"leer", {}}};

class DividedList : public CatalogCase
{
protected:
    DividedList() { catalog.Put(stock); }

    /// Runs the picking form. @return group, name and number of what was picked, "" for nothing
    std::string Pick(const ACT &act)
    {
        InDialogFirst(act);
        const TEdcCtlgChoice *choice = catalog.Select();
        EXPECT_STREQ(xCode, XNULL);
        if (!choice)
            return "";
        auto *part = static_cast<TestPart *>(choice->item);
        int value = static_cast<int>(part->record.value.value);
        return std::string(choice->group->name) + "/" + part->name + "/" + std::to_string(value);
    }
    void Edit(const ACT &act)
    {
        InDialogFirst([act](DialogBox &dialog) {
            act(dialog);
            dialog.Click(CLOSE);
        });
        catalog.Edit();
        EXPECT_STREQ(xCode, XNULL);
    }
    void Fill(const std::string &name, const std::string &value)
    {
        InDialog([=](DialogBox &dialog) {
            dialog.Type(TEST_KEY, name);
            dialog.Type(TEST_OUTPUT, value);
            dialog.Click(WIN_ID_OK);
        });
    }
    /// The next box is the dialog of a group's name.
    void FillGroup(const std::string &name)
    {
        InDialog([=](DialogBox &dialog) {
            EXPECT_EQ(dialog.Caption(), "Gruppe");
            EXPECT_EQ(dialog.Focus(), GROUP_NAME);
            dialog.Type(GROUP_NAME, name);
            dialog.Press("Return");
        });
    }

    TestDividedCatalog catalog;
};

TEST_F(DividedList, ShowsTheItemsOfTheSelectedGroup)
{
    Pick([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Caption(), GetResString(TEST_TITLE));
        EXPECT_EQ(dialog.Focus(), GROUP_LIST);
        EXPECT_EQ(dialog.Entries(GROUP_LIST), (STRINGS{"Dach", "leer", "W\xE4nde"}));
        EXPECT_EQ(dialog.Selected(GROUP_LIST), 0);
        EXPECT_EQ(dialog.Entries(ITEM_LIST), (STRINGS{"Beton", "Blech"}));
        EXPECT_EQ(dialog.Selected(ITEM_LIST), 0);
        dialog.ClickEntry(ITEM_LIST, 1);
        dialog.ClickEntry(GROUP_LIST, 2);
        EXPECT_EQ(dialog.Entries(ITEM_LIST), (STRINGS{"Altbau", "Beton", "Ziegel"}));
        EXPECT_EQ(dialog.Selected(ITEM_LIST), 0);
        dialog.ClickEntry(GROUP_LIST, 1);
        EXPECT_TRUE(dialog.Entries(ITEM_LIST).empty());
        EXPECT_FALSE(dialog.IsEnabled(WIN_ID_OK)) << "nothing to pick in an empty group";
        dialog.Press("Up");
        EXPECT_TRUE(dialog.IsEnabled(WIN_ID_OK));
        dialog.Press("Esc");
    });
    EXPECT_EQ(catalog.Values(), stock);
}

TEST_F(DividedList, PicksAnItemWithItsGroup)
{
    EXPECT_EQ(Pick([](DialogBox &dialog) {
                  dialog.ClickEntry(GROUP_LIST, 2);
                  dialog.ClickEntry(ITEM_LIST, 1);
                  dialog.Click(WIN_ID_OK);
              }),
              "W\xE4nde/Beton/2");
    EXPECT_EQ(Pick([](DialogBox &dialog) { dialog.ClickEntry(ITEM_LIST, 0, true); }), "Dach/Beton/5");
    EXPECT_EQ(Pick([](DialogBox &dialog) {
                  dialog.Press("End");
                  dialog.Press("Return");
              }),
              "W\xE4nde/Altbau/3");
}

TEST_F(DividedList, TheNextSelectionOverwritesThePair)
{
    InDialog([](DialogBox &dialog) { dialog.Press("Return"); });
    const TEdcCtlgChoice *one = catalog.Select();
    InDialog([](DialogBox &dialog) { dialog.ClickEntry(ITEM_LIST, 1, true); });
    const TEdcCtlgChoice *two = catalog.Select();
    EXPECT_EQ(one, two);
    EXPECT_STREQ(two->item->name, "Blech");
}

TEST_F(DividedList, IsLeftWithoutAChoiceInAllTheUsualWays)
{
    EXPECT_EQ(Pick([](DialogBox &dialog) { dialog.Press("Esc"); }), "");
    EXPECT_EQ(Pick([](DialogBox &dialog) { dialog.Click(WIN_ID_CANCEL); }), "");
    EXPECT_EQ(Pick([](DialogBox &dialog) { dialog.CloseByFrame(); }), "");
    EXPECT_EQ(Pick([](DialogBox &dialog) {
                  dialog.ClickEntry(GROUP_LIST, 2, true);
                  EXPECT_TRUE(dialog.IsShown(WIN_ID_OK)) << "a second click on a group picks nothing";
                  dialog.Press("Esc");
              }),
              "");
}

TEST_F(DividedList, EachFormHasItsOwnButtons)
{
    const int editing[] = {FRAME,     ADD,          ADJUST,       REMOVE, GROUP_FRAME,
                           GROUP_ADD, GROUP_RENAME, GROUP_REMOVE, CLOSE};
    const int picking[] = {WIN_ID_OK, WIN_ID_CANCEL};
    Pick([&](DialogBox &dialog) {
        for (int id : editing)
            EXPECT_FALSE(dialog.IsShown(id) || dialog.IsEnabled(id)) << id;
        for (int id : picking)
            EXPECT_TRUE(dialog.IsShown(id) && dialog.IsEnabled(id)) << id;
        EXPECT_TRUE(dialog.IsShown(PICTURE));
        dialog.Press("Esc");
    });
    Edit([&](DialogBox &dialog) {
        for (int id : editing)
            EXPECT_TRUE(dialog.IsShown(id) && dialog.IsEnabled(id)) << id;
        for (int id : picking)
            EXPECT_FALSE(dialog.IsShown(id) || dialog.IsEnabled(id)) << id;
        EXPECT_TRUE(dialog.IsShown(PICTURE));
    });
}

TEST_F(DividedList, EditingIsLeftInAllTheUsualWays)
{
    for (const char *key : {"Esc", "Alt+S"}) {
        InDialog([key](DialogBox &dialog) { dialog.Press(key); });
        catalog.Edit();
    }
    InDialog([](DialogBox &dialog) { dialog.CloseByFrame(); });
    catalog.Edit();
    Edit([](DialogBox &dialog) { dialog.Press("Return"); });
    EXPECT_EQ(catalog.Values(), stock);
}

TEST_F(DividedList, WithoutGroupsNothingCanBeAddedToThem)
{
    catalog.Put({});
    Edit([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Selected(GROUP_LIST), -1);
        for (int id : {ADJUST, REMOVE, GROUP_RENAME, GROUP_REMOVE})
            EXPECT_FALSE(dialog.IsEnabled(id)) << id;
        dialog.Click(ADD);
        EXPECT_EQ(dialog.Focus(), ITEM_LIST);
    });
    EXPECT_TRUE(catalog.IsEmpty());
}

TEST_F(DividedList, AddsToTheSelectedGroup)
{
    Fill("Beton", "7"); // is there only in other groups
    Edit([](DialogBox &dialog) {
        dialog.ClickEntry(GROUP_LIST, 1);
        dialog.Click(ADD);
        EXPECT_EQ(dialog.Selected(GROUP_LIST), 1);
        EXPECT_EQ(dialog.Entries(ITEM_LIST), STRINGS{"Beton"});
        EXPECT_EQ(dialog.Selected(ITEM_LIST), 0);
        EXPECT_EQ(dialog.Focus(), ITEM_LIST);
    });
    GROUPS expected = stock;
    expected[2].parts = {{"Beton", 7}};
    EXPECT_EQ(catalog.Values(), expected);
}

TEST_F(DividedList, ANameMustBeTheOnlyOneInItsGroup)
{
    Fill("b e t o n", "1"); // another word
    Fill("  BETON", "1");
    AnswerOk(TEXT_NAME_CLASH);
    InDialog([](DialogBox &dialog) { dialog.Press("Esc"); });
    Edit([](DialogBox &dialog) {
        dialog.Click(ADD);
        dialog.Click(ADD);
        EXPECT_EQ(dialog.Entries(ITEM_LIST), (STRINGS{"b e t o n", "Beton", "Blech"}));
    });
    EXPECT_EQ(catalog.Values()[1].parts.size(), 3u);
}

TEST_F(DividedList, AdjustsAnItemInItsPlace)
{
    Fill("Stahlbeton", "8");
    Edit([](DialogBox &dialog) {
        dialog.ClickEntry(GROUP_LIST, 2);
        dialog.ClickEntry(ITEM_LIST, 1, true);
        EXPECT_EQ(dialog.Entries(ITEM_LIST), (STRINGS{"Altbau", "Stahlbeton", "Ziegel"}));
        EXPECT_EQ(dialog.Selected(ITEM_LIST), 1);
        EXPECT_EQ(dialog.Focus(), ITEM_LIST);
    });
    GROUPS expected = stock;
    expected[0].parts[1] = {"Stahlbeton", 8};
    EXPECT_EQ(catalog.Values(), expected);
}

TEST_F(DividedList, RemovesAnItemOfTheSelectedGroup)
{
    AnswerYes(TEXT_REMOVE_ITEM);
    Edit([](DialogBox &dialog) {
        dialog.ClickEntry(ITEM_LIST, 1);
        dialog.Click(REMOVE);
        EXPECT_EQ(dialog.Entries(ITEM_LIST), STRINGS{"Beton"});
        EXPECT_EQ(dialog.Selected(ITEM_LIST), 0);
        EXPECT_EQ(dialog.Focus(), ITEM_LIST);
    });
    GROUPS expected = stock;
    expected[1].parts = {{"Beton", 5}};
    EXPECT_EQ(catalog.Values(), expected);
}

TEST_F(DividedList, AddsAGroupAndSelectsIt)
{
    FillGroup("  \xC3\x96"
              "fen   und T\xC3\xB6pfe ");
    Edit([](DialogBox &dialog) {
        dialog.Click(GROUP_ADD);
        EXPECT_EQ(dialog.Entries(GROUP_LIST), (STRINGS{"Dach", "leer",
                                                       "\xD6"
                                                       "fen und T\xF6pfe",
                                                       "W\xE4nde"}));
        EXPECT_EQ(dialog.Selected(GROUP_LIST), 2);
        EXPECT_TRUE(dialog.Entries(ITEM_LIST).empty());
        EXPECT_FALSE(dialog.IsEnabled(ADJUST));
        EXPECT_EQ(dialog.Focus(), GROUP_LIST);
    });
    GROUPS expected = stock;
    expected.push_back({"\xD6"
                        "fen und T\xF6pfe",
                        {}});
    EXPECT_EQ(catalog.Values(), expected);
}

TEST_F(DividedList, TheFirstGroupOfAllCanBeUsedAtOnce)
{
    catalog.Put({});
    FillGroup("Tore");
    Fill("Tor", "1");
    Edit([](DialogBox &dialog) {
        dialog.Click(GROUP_ADD);
        EXPECT_TRUE(dialog.IsEnabled(GROUP_RENAME));
        EXPECT_TRUE(dialog.IsEnabled(GROUP_REMOVE));
        dialog.Press("Alt+Z");
    });
    EXPECT_EQ(catalog.Values(), (GROUPS{{"Tore", {{"Tor", 1}}}}));
}

TEST_F(DividedList, AGroupThatIsGivenUpIsNotAdded)
{
    InDialog([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Text(GROUP_NAME), "");
        dialog.Type(GROUP_NAME, "Neu");
        dialog.Press("Esc");
    });
    Edit([](DialogBox &dialog) {
        dialog.ClickEntry(GROUP_LIST, 2);
        dialog.Click(GROUP_ADD);
        EXPECT_EQ(dialog.Selected(GROUP_LIST), 2);
    });
    EXPECT_EQ(catalog.Values(), stock);
}

TEST_F(DividedList, ABlankGroupNameIsRefused)
{
    InDialog([](DialogBox &dialog) {
        testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_OK); });
        dialog.Type(GROUP_NAME, "    ");
        dialog.Click(WIN_ID_OK);
        EXPECT_EQ(dialog.Focus(), GROUP_NAME);
        dialog.Paste(GROUP_NAME, std::string(300, 'n'));
        EXPECT_EQ(dialog.Text(GROUP_NAME), std::string(31, 'n'));
        dialog.Click(WIN_ID_OK);
    });
    Edit([](DialogBox &dialog) { dialog.Click(GROUP_ADD); });
    ASSERT_EQ(catalog.Count(), 4);
    EXPECT_EQ(catalog.Values()[3].name, std::string(31, 'n'));
}

TEST_F(DividedList, AGroupNameThatIsTakenIsAskedForAgain)
{
    FillGroup("w\xC3\xA4NDE");
    AnswerOk(TEXT_GROUP_CLASH);
    InDialog([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Text(GROUP_NAME), "w\xE4NDE");
        dialog.Type(GROUP_NAME, " Dach ");
        dialog.Click(WIN_ID_OK);
    });
    AnswerOk(TEXT_GROUP_CLASH);
    FillGroup("Tore");
    Edit([](DialogBox &dialog) { dialog.Click(GROUP_ADD); });
    ASSERT_EQ(catalog.Count(), 4);
    EXPECT_EQ(catalog.Values()[3].name, "Tore");
}

TEST_F(DividedList, RenamesAGroupAlsoToItsOwnNameInAnotherCase)
{
    InDialog([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Text(GROUP_NAME), "Dach");
        EXPECT_EQ(dialog.SelectedText(GROUP_NAME), "Dach");
        dialog.Type(GROUP_NAME, "DACH");
        dialog.Click(WIN_ID_OK);
    });
    FillGroup("Zinnen");
    Edit([](DialogBox &dialog) {
        dialog.Click(GROUP_RENAME);
        EXPECT_EQ(dialog.Entries(GROUP_LIST), (STRINGS{"DACH", "leer", "W\xE4nde"}));
        dialog.Click(GROUP_RENAME);
        EXPECT_EQ(dialog.Entries(GROUP_LIST), (STRINGS{"leer", "W\xE4nde", "Zinnen"}));
        EXPECT_EQ(dialog.Selected(GROUP_LIST), 2);
        EXPECT_EQ(dialog.Entries(ITEM_LIST), (STRINGS{"Beton", "Blech"}));
        EXPECT_EQ(dialog.Focus(), GROUP_LIST);
    });
    GROUPS expected = stock;
    expected[1].name = "Zinnen";
    EXPECT_EQ(catalog.Values(), expected);
}

TEST_F(DividedList, RemovesAnEmptyGroupWithOneQuestion)
{
    AnswerNo(TEXT_REMOVE_GROUP);
    AnswerYes(TEXT_REMOVE_GROUP);
    Edit([this](DialogBox &dialog) {
        dialog.ClickEntry(GROUP_LIST, 1);
        dialog.Click(GROUP_REMOVE);
        EXPECT_EQ(catalog.Values(), stock);
        dialog.Click(GROUP_REMOVE);
        EXPECT_EQ(dialog.Entries(GROUP_LIST), (STRINGS{"Dach", "W\xE4nde"}));
        EXPECT_EQ(dialog.Selected(GROUP_LIST), 1);
        EXPECT_EQ(dialog.Entries(ITEM_LIST), (STRINGS{"Altbau", "Beton", "Ziegel"}));
        EXPECT_EQ(dialog.Focus(), GROUP_LIST);
    });
    EXPECT_EQ(catalog.Values(), (GROUPS{stock[0], stock[1]}));
}

TEST_F(DividedList, AsksTwiceBeforeAGroupGoesWithItsItems)
{
    AnswerYes(TEXT_REMOVE_GROUP);
    Script([](testdoor::ModalBox &box) {
        EXPECT_EQ(box.Text(), GetResString(TEXT_REMOVE_FULL_GROUP));
        box.Press("Return"); // the button for no is the default
    });
    AnswerYes(TEXT_REMOVE_GROUP);
    AnswerYes(TEXT_REMOVE_FULL_GROUP);
    AnswerYes(TEXT_REMOVE_GROUP);
    AnswerYes(TEXT_REMOVE_FULL_GROUP);
    AnswerYes(TEXT_REMOVE_GROUP);
    Edit([this](DialogBox &dialog) {
        dialog.Click(GROUP_REMOVE);
        EXPECT_EQ(catalog.Values(), stock);
        dialog.Click(GROUP_REMOVE);
        EXPECT_EQ(dialog.Entries(GROUP_LIST), (STRINGS{"leer", "W\xE4nde"}));
        dialog.ClickEntry(GROUP_LIST, 1);
        dialog.Click(GROUP_REMOVE);
        EXPECT_EQ(dialog.Entries(GROUP_LIST), STRINGS{"leer"});
        EXPECT_EQ(dialog.Selected(GROUP_LIST), 0);
        dialog.Click(GROUP_REMOVE);
        EXPECT_EQ(dialog.Selected(GROUP_LIST), -1);
        EXPECT_TRUE(dialog.Entries(ITEM_LIST).empty());
        for (int id : {ADJUST, REMOVE, GROUP_RENAME, GROUP_REMOVE})
            EXPECT_FALSE(dialog.IsEnabled(id)) << id;
        EXPECT_EQ(dialog.Focus(), GROUP_LIST);
    });
    EXPECT_TRUE(catalog.IsEmpty());
}

TEST_F(DividedList, GroupsAreFoundByTheirNames)
{
    TestDividedCatalog empty;
    EXPECT_EQ(empty.FindGroup("Dach", true), nullptr) << "nothing is loaded";
    TEdcCtlgGroup *roof = catalog.FindGroup("Dach", true);
    ASSERT_NE(roof, nullptr);
    EXPECT_EQ(catalog.FindGroup("DACH", true), nullptr);
    EXPECT_EQ(catalog.FindGroup(" dach ", false), roof);
    EXPECT_EQ(catalog.FindGroup("Dach", false, roof), nullptr);
    EXPECT_STREQ(roof->FindItem("beton", false)->name, "Beton");
    EXPECT_EQ(roof->FindItem("beton", true), nullptr);
    EXPECT_EQ(roof->FindItem("Ziegel", true), nullptr);
    EXPECT_EQ(roof->FindItem("Beton", true, roof->FindItem("Beton", true)), nullptr);
}

TEST_F(DividedList, IsEditedSavedAndPickedFromByTheNextObject)
{
    catalog.Put({});
    FillGroup("Wand");
    Fill("Ziegel", "0.5");
    Edit([](DialogBox &dialog) {
        dialog.Click(GROUP_ADD);
        dialog.Click(ADD);
    });
    catalog.Save();
    TestDividedCatalog next;
    InDialog([](DialogBox &dialog) { dialog.Press("Return"); });
    const TEdcCtlgChoice *choice = next.Select();
    ASSERT_NE(choice, nullptr);
    EXPECT_STREQ(choice->group->name, "Wand");
    EXPECT_EQ(static_cast<TestPart *>(choice->item)->record.value.value, 0.5);
}

class BareList : public TestDividedCatalog
{
public:
    using TEdcCtlgDividedList::EditGroup;
    using TEdcCtlgList::EditItem;
};

TEST_F(DividedList, EditingNoItemOrNoGroupIsAnAssertion)
{
    BareList list;
    TestPart part;
    TEdcCtlgItem *none = NULL, *item = &part;
    EXPECT_TRUE(AbortsOnAssertion("item != NULL", "usr/edcctlg.cpp", [&] {
        RemoveServices();
        list.EditItem(none, &list);
    }));
    EXPECT_TRUE(AbortsOnAssertion("group != NULL", "usr/edcctlg.cpp", [&] {
        RemoveServices();
        list.EditItem(item, NULL);
    }));
    EXPECT_TRUE(AbortsOnAssertion("group != NULL", "usr/edcctlg_divided.cpp", [&] {
        RemoveServices();
        list.EditGroup(NULL);
    }));
}
} // namespace
