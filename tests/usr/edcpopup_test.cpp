// Popup menus put together from those of the resources, and shown on the main window's client.
#include "support/chance.h"
#include "support/child.h"
#include "support/fault.h"
#include "usr/edcdlg.h"
#include "win/frameclient.h"

#include <gtest/gtest.h>

namespace
{
/// A menu in one line: each item's number, text and state, popups in brackets.
std::string Shape(const TMenu &menu)
{
    std::string shape;
    for (const TMenu::ITEM &item : menu.items) {
        shape += (item.enabled ? "" : "-") + std::string(item.checked ? "*" : "");
        shape += std::to_string(item.id) + item.text;
        shape += (item.popup ? "(" + Shape(*item.popup) + ")" : "") + ";";
    }
    return shape;
}

TMenu Plain(std::initializer_list<int> ids)
{
    TMenu menu;
    for (int id : ids) {
        menu.items.emplace_back().id = id;
        menu.items.back().text = "i";
    }
    return menu;
}

TMenu RandomMenu(CHANCE &chance, int depth)
{
    TMenu menu;
    menu.items.resize(chance.Int(0, 4));
    for (TMenu::ITEM &item : menu.items) {
        item.enabled = chance.One(2);
        item.checked = chance.One(2);
        if (chance.One(5))
            continue; // a separator
        item.text = "t" + std::to_string(chance.Int(0, 99));
        if (depth > 0 && chance.One(2))
            item.popup = std::make_unique<TMenu>(RandomMenu(chance, depth - 1));
        else
            item.id = chance.Int(1, 999);
    }
    return menu;
}

const char menu1[] = "0&Datei(101\326&ffnen...;0;102&Schlie\337en;0&Mehr(103&Liste;););0&Hilfe(104&Themen;);";
const char menu2[] = "101\326&ffnen...;105&Beseitigen;";
const char menu3[] = "0;103&Liste;";
} // namespace

TEST(PopupMenu, HoldsTheItemsOfItsResource)
{
    ClientResources resources;
    EXPECT_EQ(Shape(TEdcPopupMenu(1).Handle()), menu1);
    EXPECT_EQ(Shape(TEdcPopupMenu(2).Handle()), menu2);
    EXPECT_EQ(Shape(TEdcPopupMenu(4711).Handle()), "");
}

TEST(PopupMenu, LoadReplacesAndAppendAdds)
{
    ClientResources resources;
    TEdcPopupMenu menu(1);
    menu.Load(2);
    EXPECT_EQ(Shape(menu.Handle()), menu2);
    menu.Append(3);
    menu.Append(1);
    EXPECT_EQ(Shape(menu.Handle()), std::string(menu2) + menu3 + menu1);
    menu.Append(4711);
    EXPECT_EQ(Shape(menu.Handle()), std::string(menu2) + menu3 + menu1);
    menu.Load(4711);
    EXPECT_EQ(Shape(menu.Handle()), "");
}

TEST(PopupMenu, CopyGoesBeforeTheItemOfThatNumberOrBehindAll)
{
    const struct {
        std::initializer_list<int> before;
        std::initializer_list<int> source;
        int offset;
        const char *after;
    } cases[] = {
        {{}, {}, 0, ""},
        {{}, {5}, 0, "5i;"},
        {{}, {5}, 3, "5i;"},
        {{1, 2}, {}, 1, "1i;2i;"},
        {{1, 2}, {5, 6}, 0, "5i;6i;1i;2i;"},
        {{1, 2}, {5, 6}, 1, "1i;5i;6i;2i;"},
        {{1, 2}, {5, 6}, 2, "1i;2i;5i;6i;"},
        {{1, 2}, {5, 6}, 2147483647, "1i;2i;5i;6i;"},
    };
    for (const auto &c : cases) {
        TMenu menu = Plain(c.before);
        TMenu source = Plain(c.source);
        TEdcPopupMenu::Copy(&menu, &source, c.offset);
        EXPECT_EQ(Shape(menu), c.after) << "at " << c.offset;
        EXPECT_EQ(Shape(source), Shape(Plain(c.source)));
    }
}

TEST(PopupMenu, CopyIntoItselfDoublesTheItems)
{
    TMenu menu = Plain({1, 2});
    TEdcPopupMenu::Copy(&menu, &menu, 1);
    EXPECT_EQ(Shape(menu), "1i;1i;2i;2i;");
}

TEST(PopupMenu, CopyKeepsStateAndTextOfEveryItemAtEveryDepth)
{
    CHANCE chance(20251);
    for (int i = 0; i < 500; i++) {
        TMenu source = RandomMenu(chance, 3);
        std::string shape = Shape(source);
        TMenu menu;
        TEdcPopupMenu::Copy(&menu, &source, 0);
        EXPECT_EQ(Shape(menu), shape);
        source = TMenu();
        EXPECT_EQ(Shape(menu), shape) << "a copy of its own, popups and all";
    }
}

TEST(PopupMenu, WithoutMemoryStaysAsItWas)
{
    ClientResources resources;
    std::unique_ptr<TEdcPopupMenu> menu;
    auto prepare = [&menu] { menu = std::make_unique<TEdcPopupMenu>(2); };
    std::string full = std::string(menu2) + menu1;
    int fired = SweepFaults(
        prepare, [&menu] { menu->Append(1); },
        [&](const FaultRun &run) {
            EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
            EXPECT_EQ(Shape(menu->Handle()), run.fired ? menu2 : full);
        });
    EXPECT_GT(fired, 5);
    fired = SweepFaults(
        prepare, [&menu] { menu->Load(1); },
        [&](const FaultRun &run) {
            EXPECT_EQ(run.code, run.fired ? XALLOC : XNULL);
            EXPECT_EQ(Shape(menu->Handle()), run.fired ? menu2 : menu1);
        });
    EXPECT_GT(fired, 5);
}

TEST(PopupMenu, TakesOnlyMenusAndPlacesThatAreThere)
{
    const char condition[] = "hDest != NULL && hSrc != NULL && offset >= 0";
    const char file[] = "usr/edcdlg_popup.cpp";
    TMenu menu;
    EXPECT_TRUE(AbortsOnAssertion(condition, file, [&] { TEdcPopupMenu::Copy(NULL, &menu, 0); }));
    EXPECT_TRUE(AbortsOnAssertion(condition, file, [&] { TEdcPopupMenu::Copy(&menu, NULL, 0); }));
    EXPECT_TRUE(AbortsOnAssertion(condition, file, [&] { TEdcPopupMenu::Copy(&menu, &menu, -1); }));
}

TEST(PopupMenu, IsTrackedOnTheClientOfAMainWindowOnly)
{
    ShownFrame main; // not shown yet
    const char file[] = "usr/edcdlg_popup.cpp";
    TEdcPopupMenu menu(2);
    EXPECT_TRUE(AbortsOnAssertion("win != NULL", file, [&] { menu.Track({0, 0}, 0); }));
    TestApplication().SetMainWindow(NULL);
    EXPECT_TRUE(AbortsOnAssertion("frm != NULL", file, [&] { menu.Track({0, 0}, 0); }));
}

TEST(PopupMenu, ShowsKeysAndTheDefaultItemAndSendsTheCommandToTheClient)
{
    ShownFrame main;
    main.Show();
    main.client.allowed = {101, 103};
    TEdcPopupMenu menu(2);
    menu.Append(3);
    std::string shown;
    int standsOut = 0;
    testdoor::Script([&](testdoor::ModalBox &box) {
        shown = box.Text();
        standsOut = box.Default();
        box.Answer(103);
    });
    menu.Track({10, 20}, 101);
    testdoor::Settle();
    EXPECT_EQ(shown, "\326&ffnen...\tStrg+O\n&Beseitigen\tEntf\n&Liste\n");
    EXPECT_EQ(standsOut, 101);
    EXPECT_EQ(main.client.Heard(), "103 ");
}

TEST(PopupMenu, ItemThatWasDisabledStaysGreyInTheCopy)
{
    ShownFrame main;
    main.Show();
    main.client.allowed = {101, 105};
    TEdcPopupMenu menu(2);
    menu.Handle().items[1].enabled = false;
    TEdcPopupMenu copy(4711);
    TEdcPopupMenu::Copy(&copy.Handle(), &menu.Handle(), 0);
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(105); });
    copy.Track({0, 0}, 0);
    testdoor::Settle();
    EXPECT_EQ(main.client.Heard(), "");
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 1) << "nothing was taken";
}

TEST(PopupMenu, OpensWhereTheRightButtonWasPressed)
{
    struct CLIENT : FrameClient {
        TEdcPopupMenu menu{2};
        void EvRButtonUp(unsigned, TPoint point) override { menu.Track(point, 0); }
    };
    ClientResources resources;
    CLIENT client;
    TDecoratedFrame frame("Fenster", client);
    TestApplication().SetMainWindow(&frame);
    frame.Create();
    testdoor::Settle();
    client.Heard();
    client.allowed = {105};
    testdoor::Script([](testdoor::ModalBox &box) {
        box.Press("Down");
        box.Press("Return");
    });
    testdoor::Click(client, {30, 40}, testdoor::RIGHT);
    testdoor::Settle();
    EXPECT_EQ(client.Heard(), "105 ") << "the first item that is not grey";
    TestApplication().SetMainWindow(NULL);
}
