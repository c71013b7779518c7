// Popup menus at the pointer, and how keys are named.
#include "frameclient.h"
#include "win/menu.h"
#include "win/menubuild.h"

#include <gtest/gtest.h>

namespace
{
class Popup : public testing::Test, public ShownFrame
{
protected:
    Popup() { Show(); }

    /// Shows the menu and takes an item, 0 for Esc. @return what the menu showed
    std::string Track(const TMenu &menu, int choice, int defaultItem = 0)
    {
        std::string shown;
        testdoor::Script([&shown, choice](testdoor::ModalBox &box) {
            EXPECT_EQ(box.Kind(), "popup");
            shown = box.Text();
            if (choice)
                box.Answer(choice);
        });
        TrackMenu(client, menu, {10, 10}, defaultItem);
        EXPECT_EQ(client.Heard(), "") << "the command comes behind the event that opened the menu";
        testdoor::Settle();
        return shown;
    }
};
} // namespace

TEST_F(Popup, ChosenCommandComesToTheClientOnceTheMenuIsThrough)
{
    client.allowed = {101, 105};
    TMenu menu = LoadMenu(2);
    EXPECT_EQ(Track(menu, 105, 101), "\326&ffnen...\tStrg+O\n&Beseitigen\tEntf\n");
    EXPECT_EQ(client.Heard(), "105 ");
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
}

TEST_F(Popup, DefaultItemStandsOut)
{
    const struct {
        int asked;
        int shown;
    } cases[] = {{0, 0}, {101, 101}, {105, 105}, {103, 103}, {4711, 0}};
    for (const auto &c : cases) {
        int shown = -1;
        testdoor::Script([&shown](testdoor::ModalBox &box) { shown = box.Default(); });
        TMenu menu = LoadMenu(2);
        menu.items.emplace_back().text = "&Mehr";
        menu.items.back().popup = std::make_unique<TMenu>(LoadMenu(3));
        TrackMenu(client, menu, {10, 10}, c.asked);
        EXPECT_EQ(shown, c.shown) << c.asked;
    }
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 5) << "cancelled by the door";
}

TEST_F(Popup, KeysMoveAndTake)
{
    client.allowed = {101, 105};
    testdoor::Script([](testdoor::ModalBox &box) {
        box.Press("Down");
        box.Press("Down");
        box.Press("Return");
    });
    TrackMenu(client, LoadMenu(2), {10, 10}, 0);
    testdoor::Settle();
    EXPECT_EQ(client.Heard(), "105 ");
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
}

TEST_F(Popup, GreyItemCannotBeTaken)
{
    client.allowed = {105};
    TMenu menu = LoadMenu(2);
    Track(menu, 101); // does nothing, so the menu stays and is cancelled
    EXPECT_EQ(client.Heard(), "");
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 1);
}

TEST_F(Popup, EscGivesNoCommand)
{
    client.allowed = {101, 105};
    TMenu menu = LoadMenu(2);
    Track(menu, 0);
    EXPECT_EQ(client.Heard(), "");
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 1) << "cancelled by the door";
}

TEST_F(Popup, ItemsOfPopupsWithinAreAskedAndTaken)
{
    client.allowed = {103};
    TMenu menu = LoadMenu(1);
    Track(menu, 103);
    EXPECT_EQ(client.Heard(), "103 ");
}

TEST_F(Popup, MenuWithoutItemsIsNotShown)
{
    TrackMenu(client, LoadMenu(4711), {0, 0}, 0);
    TrackMenu(client, TMenu(), {0, 0}, 0);
    FrameClient hidden;
    TrackMenu(hidden, LoadMenu(2), {0, 0}, 0);
    TestApplication().SetMainWindow(NULL);
    TrackMenu(client, LoadMenu(2), {0, 0}, 0);
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
}

TEST_F(Popup, DisabledItemStaysGreyWhateverItsEnablerSays)
{
    client.allowed = {101, 105};
    TMenu menu = LoadMenu(2);
    menu.items[0].enabled = false;
    Track(menu, 101);
    EXPECT_EQ(client.Heard(), "");
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 1);
    Track(menu, 105);
    EXPECT_EQ(client.Heard(), "105 ");
}

TEST(Menu, IsLoadedWithItsPopupsAndSeparators)
{
    ClientResources resources;
    std::string shape;
    std::function<void(const TMenu &)> walk = [&](const TMenu &menu) {
        for (const TMenu::ITEM &item : menu.items) {
            EXPECT_TRUE(item.enabled && !item.checked);
            shape += std::to_string(item.id) + item.text;
            if (item.popup) {
                shape += '(';
                walk(*item.popup);
                shape += ')';
            }
            shape += ';';
        }
    };
    walk(LoadMenu(1));
    EXPECT_EQ(shape, "0&Datei(101\326&ffnen...;0;102&Schlie\337en;0&Mehr(103&Liste;););0&Hilfe(104&Themen;);");
    EXPECT_TRUE(LoadMenu(4711).items.empty());
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
