// Dialogs and catalogues as a person meets them: chosen from the menu of a real window, filled in with real
// keys and the mouse, kept in files that are looked at afterwards. Runs without a screen at several display
// scales, and on one.
#include "lib/xfail.h"
#include "support/catalogcase.h"
#include "support/hookdialog.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/application.h"
#include "win/frame.h"

#include <memory>

#include "lib/xon.h"

namespace
{
using testdoor::DialogBox;
using testdoor::ModalBox;
using STRINGS = std::vector<std::string>;

enum Command { EDIT_PARTS = 1511, EDIT_UNITS = 1513, EDIT_LAMPS = 1505 };
enum Simple { LIST = 100, ADD = 102, ADJUST = 103, REMOVE = 104, CLOSE = 105 };
enum Divided { GROUPS_LIST = 100, ITEMS_LIST = 101, ITEM_ADD = 103, GROUP_ADD = 107, GROUP_RENAME = 108 };
enum { DIVIDED_CLOSE = 110, GROUP_NAME = 100 };
enum { LAMPS_DIALOG = 9120, LAMP_NAME = 100, LAMP_POWER = 101, LAMP_HUNG = 102 };

/// Something of which several are edited at once.
struct LAMP {
    TEdcShortStr name;
    TEdcFloat power; // W
    TEdcInt hung;    // a yes or no
};

/// What the dialog is about, field by field; the modes are those of the values.
void Exchange(LAMP &record, LAMP &lamp, int mode)
{
    record.name.Exchange(mode, lamp.name);
    record.power.Exchange(mode, lamp.power);
    record.hung.Exchange(mode, lamp.hung);
}

class LampsDialog : public TEdcDialog
{
public:
    explicit LampsDialog(LAMP &lamp) : TEdcDialog(LAMPS_DIALOG, static_cast<TEdcValue *>(&lamp.name))
    {
        new TEdcEdit(this, LAMP_NAME, SHORTSTRMAX, new TEdcValueValidator(true));
        new TEdcEdit(this, LAMP_POWER, SHORTSTRMAX, new TEdcFloatValidator(0, 50000, true, "W"));
        new TEdcCheckBox(this, LAMP_HUNG, NULL, true);
    }
};

/// A document that answers the commands of the menu with dialogs.
class Desk : public TEdcDocument
{
public:
    bool DoCommand(int id) override
    {
        bool known = id == EDIT_PARTS || id == EDIT_UNITS || id == EDIT_LAMPS;
        __enter
            if (id == EDIT_PARTS) {
                TestDividedCatalog catalog;
                catalog.Edit(); __test;
                catalog.Save(); __test;
            } else if (id == EDIT_UNITS) {
                TestSimpleCatalog catalog;
                catalog.Edit(); __test;
                catalog.Save(); __test;
            } else if (id == EDIT_LAMPS) {
                EditLamps(); __test;
            }
        __point
        __treat
        return known;
    }
    void EnableCommand(TCommandEnabler &ce) override
    {
        ce.Enable(ce.id == EDIT_PARTS || ce.id == EDIT_UNITS || ce.id == EDIT_LAMPS);
    }

    std::vector<LAMP> lamps;

private:
    void EditLamps()
    {
        __enter
            LAMP record;
            for (size_t i = 0; i < lamps.size(); ++i)
                Exchange(record, lamps[i], i == 0 ? EDC_XLOAD : EDC_XMERGE);
            LampsDialog dialog(record);
            bool confirmed = dialog.Execute() == WIN_ID_OK; __test;
            for (size_t i = 0; confirmed && i < lamps.size(); ++i)
                Exchange(record, lamps[i], EDC_XSTORE);
        __point
        __treat
    }
};

class Roads : public CatalogCase
{
protected:
    Roads() : frame("Katalogprobe", desk)
    {
        SetAppDocument(&desk);
        TestApplication().SetMainWindow(&frame);
        frame.AssignMenu(1000);
        frame.Create();
        testdoor::ResizeClient(desk, {800, 600});
        testdoor::Settle();
        lampTables.Add(LAMPS_DIALOG, "Strahler",
                       {Line(RES_LABEL, -1, "&Name"), Line(RES_EDIT, LAMP_NAME),
                        Line(RES_LABEL, -1, "&Leistung"), Line(RES_EDIT, LAMP_POWER),
                        Line(RES_CHECK3, LAMP_HUNG, "&Hängt"), Line(RES_DEFAULT, WIN_ID_OK, "OK"),
                        Line(RES_BUTTON, WIN_ID_CANCEL, "Abbrechen")});
    }
    ~Roads() override { TestApplication().SetMainWindow(NULL); }

    void Choose(int command)
    {
        testdoor::ChooseMenu(frame, command);
        testdoor::Settle();
        EXPECT_STREQ(xCode, XNULL);
    }
    /// The next box is the dialog of a unit.
    void FillUnit(const std::string &key, const std::string &output, const std::string &length)
    {
        InDialog([=](DialogBox &dialog) {
            dialog.Type(TEST_KEY, key);
            dialog.Type(TEST_OUTPUT, output);
            dialog.Type(TEST_LENGTH, length);
            dialog.Press("Return");
        });
    }
    std::string TakeMessage() { return std::exchange(message, std::string()); }
    /// The next box is some message, kept for TakeMessage().
    void KeepMessage()
    {
        Script([this](ModalBox &box) {
            EXPECT_EQ(box.Kind(), "message");
            message = box.Text();
            box.Answer(WIN_ID_OK);
        });
    }

    DialogTables lampTables;
    Desk desk;
    TDecoratedFrame frame;
    std::string message;
};

TEST_F(Roads, AnewCatalogueGrowsIsBackedUpDamagedAndRepaired)
{
    AnswerYes(TEXT_MAKE_NEW);
    InDialog([this](DialogBox &dialog) {
        EXPECT_FALSE(dialog.IsEnabled(ADJUST));
        FillUnit("Torvane 20", "20", "1.5");
        dialog.Click(ADD);
        FillUnit("Torvane 8", "8", "1.2");
        dialog.Press("Alt+Z"); // Zufügen
        EXPECT_EQ(dialog.Entries(LIST).size(), 2U);
        dialog.Click(CLOSE);
    });
    Choose(EDIT_UNITS);
    EXPECT_EQ(Files(), (std::set<std::string>{".TvTest.zec"}));
    std::string first = GetFile(".TvTest.zec");

    InDialog([this](DialogBox &dialog) {
        EXPECT_EQ(dialog.Entries(LIST).size(), 2U);
        FillUnit("Torvane 8 K", "9", "1.2");
        dialog.ClickEntry(LIST, dialog.Entries(LIST).at(0) == "Torvane 8" ? 0 : 1, true);
        dialog.CloseByFrame();
    });
    Choose(EDIT_UNITS);
    EXPECT_EQ(Files(), (std::set<std::string>{".TvTest.zec", ".TvTest.bak"}));
    EXPECT_EQ(GetFile(".TvTest.bak"), first);

    std::string second = GetFile(".TvTest.zec");
    PutFile(".TvTest.zec", second.substr(0, second.size() - 5));
    KeepMessage();
    Choose(EDIT_UNITS);
    EXPECT_NE(TakeMessage(), "");
    EXPECT_EQ(Files(), (std::set<std::string>{".TvTest.bak", ".TvTest.err"}));

    AnswerYes(TEXT_TAKE_BACKUP);
    STRINGS entries;
    InDialog([&](DialogBox &dialog) {
        entries = dialog.Entries(LIST);
        dialog.Press("Esc");
    });
    Choose(EDIT_UNITS);
    EXPECT_EQ(std::set<std::string>(entries.begin(), entries.end()),
              (std::set<std::string>{"Torvane 8", "Torvane 20"}));
    EXPECT_EQ(GetFile(".TvTest.zec"), first);
    EXPECT_EQ(GetFile(".TvTest.err"), second.substr(0, second.size() - 5));
}

TEST_F(Roads, AFieldIsRefusedUntilItIsRight)
{
    AnswerYes(TEXT_MAKE_NEW);
    InDialog([this](DialogBox &dialog) {
        InDialogFirst([this](DialogBox &unit) {
            auto refused = [&](int id, const char *text) {
                unit.Type(id, text);
                KeepMessage();
                unit.Press("Return");
                EXPECT_NE(TakeMessage(), "") << text;
                EXPECT_EQ(unit.Focus(), id);
                EXPECT_EQ(unit.SelectedText(id), unit.Text(id));
            };
            refused(TEST_KEY, "");
            unit.Type(TEST_KEY, "Ger\u00e4t \u20ac");
            refused(TEST_OUTPUT, "viel");
            refused(TEST_OUTPUT, "-1");
            unit.Type(TEST_OUTPUT, "12,5"); // the comma key
            EXPECT_EQ(unit.Text(TEST_OUTPUT), "12.5");
            unit.Type(TEST_LENGTH, "2");
            unit.Press("Return");
        });
        dialog.Click(ADD);
        EXPECT_EQ(dialog.Entries(LIST), (STRINGS{"Ger\xE4t \x80"}));
        dialog.Click(CLOSE);
    });
    Choose(EDIT_UNITS);
    TestSimpleCatalog catalog;
    catalog.Load();
    EXPECT_EQ(catalog.Values(), (UNITS{{"Ger\xE4t \x80", 12.5, 2}}));
}

TEST_F(Roads, GroupsOfPartsAreKept)
{
    auto part = [this](const char *name, const char *value) {
        InDialog([=](DialogBox &dialog) {
            dialog.Type(TEST_KEY, name);
            dialog.Type(TEST_OUTPUT, value);
            dialog.Press("Return");
        });
    };
    auto group = [this](const char *name) {
        InDialog([=](DialogBox &dialog) {
            dialog.Type(GROUP_NAME, name);
            dialog.Press("Return");
        });
    };
    AnswerYes(TEXT_MAKE_NEW);
    InDialog([&](DialogBox &dialog) {
        group("Fenster");
        dialog.Click(GROUP_ADD);
        part("Doppelglas", "2.8");
        dialog.Click(ITEM_ADD);
        group("T\u00fcren");
        dialog.Click(GROUP_ADD);
        part("Sektionaltor", "1.6");
        dialog.Click(ITEM_ADD);
        group("Tore");
        dialog.Click(GROUP_RENAME);
        EXPECT_EQ(dialog.Entries(GROUPS_LIST), (STRINGS{"Fenster", "Tore"}));
        EXPECT_EQ(dialog.Entries(ITEMS_LIST), (STRINGS{"Sektionaltor"}));
        dialog.Click(DIVIDED_CLOSE);
    });
    Choose(EDIT_PARTS);
    TestDividedCatalog catalog;
    catalog.Load();
    EXPECT_EQ(catalog.Values(),
              (GROUPS{{"Fenster", {{"Doppelglas", 2.8}}}, {"Tore", {{"Sektionaltor", 1.6}}}}));
}

TEST_F(Roads, WhatSeveralLampsDisagreeOnStaysAsItIs)
{
    desk.lamps.resize(3);
    const char *names[] = {"West", "WEST ", "west"};
    for (size_t i = 0; i < 3; ++i) {
        desk.lamps[i].name = names[i];
        desk.lamps[i].power.Set(1000.0 * static_cast<double>(i + 1));
        desk.lamps[i].hung.Set(i == 0);
    }
    InDialog([](DialogBox &dialog) {
        EXPECT_EQ(dialog.Text(LAMP_NAME), "West"); // the same but for case and blanks
        EXPECT_EQ(dialog.Text(LAMP_POWER), "");
        EXPECT_EQ(dialog.Check(LAMP_HUNG), WIN_INDETERMINATE);
        dialog.Type(LAMP_NAME, "Ost");
        dialog.Press("Return");
    });
    Choose(EDIT_LAMPS);
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_STREQ(desk.lamps[i].name.text, "Ost");
        EXPECT_EQ(desk.lamps[i].power.value, 1000.0 * static_cast<double>(i + 1));
        EXPECT_EQ(desk.lamps[i].hung.value, i == 0);
    }
    InDialog([](DialogBox &dialog) {
        dialog.Type(LAMP_POWER, "1,5 kW");
        dialog.Click(LAMP_HUNG); // from undetermined to unchecked
        dialog.Click(LAMP_HUNG); // to checked
        dialog.Click(WIN_ID_OK);
    });
    Choose(EDIT_LAMPS);
    for (const LAMP &lamp : desk.lamps) {
        EXPECT_STREQ(lamp.name.text, "Ost");
        EXPECT_EQ(lamp.power.value, 1500);
        EXPECT_EQ(lamp.hung.value, 1);
    }
    InDialog([](DialogBox &dialog) {
        dialog.Type(LAMP_POWER, "99999 kW"); // never looked at
        dialog.Press("Esc");
    });
    Choose(EDIT_LAMPS);
    EXPECT_EQ(desk.lamps[0].power.value, 1500);
}
} // namespace
