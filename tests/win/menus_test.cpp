// Popup menus at the pointer, and how keys are named.
#include "frameclient.h"
#include "win/menubuild.h"

#include <gtest/gtest.h>

namespace
{
class Popup : public testing::Test, public ShownFrame
{
protected:
    Popup() { Show(); }

    /// Shows the menu and takes an item, 0 for Esc. @return what the menu showed
    std::string Track(TPopupMenu &menu, int choice, int defaultItem = 0)
    {
        std::string shown;
        testdoor::Script([&shown, choice](testdoor::ModalBox &box) {
            EXPECT_EQ(box.Kind(), "popup");
            shown = box.Text();
            if (choice)
                box.Answer(choice);
        });
        menu.Track(client, {10, 10}, defaultItem);
        EXPECT_EQ(client.Heard(), "") << "the command comes behind the event that opened the menu";
        testdoor::Settle();
        return shown;
    }
};
} // namespace

TEST_F(Popup, ChosenCommandComesToTheClientOnceTheMenuIsThrough)
{
    client.allowed = {101, 105};
    TPopupMenu menu(2);
    EXPECT_EQ(Track(menu, 105, 101), "\326&ffnen...\tStrg+O\n&Beseitigen\tEntf\n");
    EXPECT_EQ(client.Heard(), "105 ");
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
}

TEST_F(Popup, GreyItemCannotBeTaken)
{
    client.allowed = {105};
    TPopupMenu menu(2);
    Track(menu, 101); // does nothing, so the menu stays and is cancelled
    EXPECT_EQ(client.Heard(), "");
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 1);
}

TEST_F(Popup, EscGivesNoCommand)
{
    client.allowed = {101, 105};
    TPopupMenu menu(2);
    Track(menu, 0);
    EXPECT_EQ(client.Heard(), "");
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 1) << "cancelled by the door";
}

TEST_F(Popup, AppendedMenusStandBehindTheLoadedOne)
{
    client.allowed = {103};
    TPopupMenu menu;
    menu.Load(1);
    menu.Load(2);
    menu.Append(3);
    EXPECT_EQ(Track(menu, 103), "\326&ffnen...\tStrg+O\n&Beseitigen\tEntf\n&Liste\n");
    EXPECT_EQ(client.Heard(), "103 ");
}

TEST_F(Popup, ItemsOfPopupsWithinAreAskedAndTaken)
{
    client.allowed = {103};
    TPopupMenu menu(1);
    Track(menu, 103);
    EXPECT_EQ(client.Heard(), "103 ");
}

TEST_F(Popup, MenuWithoutItemsIsNotShown)
{
    TPopupMenu menu(4711);
    menu.Track(client, {0, 0}, 0);
    TPopupMenu().Track(client, {0, 0}, 0);
    FrameClient hidden;
    TPopupMenu(2).Track(hidden, {0, 0}, 0);
    TestApplication().SetMainWindow(NULL);
    TPopupMenu(2).Track(client, {0, 0}, 0);
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
}

TEST(Keys, AreNamedAsOnTheGermanKeyboard)
{
    const struct {
        const char *key;
        const char *german;
    } cases[] = {
        {"Ctrl+N", "Strg+N"},   {"Ctrl+Shift+S", "Strg+Umschalt+S"},
        {"Alt+F4", "Alt+F4"},   {"F5", "F5"},
        {"Esc", "Esc"},         {"Del", "Entf"},
        {"Ins", "Einfg"},       {"Home", "Pos1"},
        {"End", "Ende"},        {"Ctrl+PgUp", "Strg+Bild auf"},
        {"PgDown", "Bild ab"},  {"", ""},
        {"Up", "Nach oben"},    {"Down", "Nach unten"},
        {"Left", "Nach links"}, {"Right", "Nach rechts"},
        {"Return", "Eingabe"},  {"Tab", "Tab"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(KeyText(c.key), c.german) << c.key;
}
