// Dialogs with a record of values: the hooks under real mouse and keys, the way in and out of the record, the
// closing, posted changes, and hooks that fail.
#include "lib/platform.h"
#include "lib/xfail.h"
#include "support/child.h"
#include "support/hookdialog.h"
#include "support/testapp.h"
#include "support/testdialog.h"
#include "usr/edcutils.h"
#include "win/application.h"
#include "win/boxes.h"
#include "win/frame.h"
#include "win/testdialog.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace
{
enum { DIALOG = 30120, RECORDS = 30121, BARE = 30122 };
enum { EDIT = 100, GO = 101, HOOK = 102, THREE = 103, RADIO = 104, LIST = 105, CHOICE = 106, COMBO = 107 };
const char source[] = "usr/edcdlg.cpp";

class Dialogs : public testing::Test
{
protected:
    void SetUp() override
    {
        TestApplication();
        tables = std::make_unique<DialogTables>();
        tables->Add(DIALOG, "Dialog",
                    {Line(RES_EDIT, EDIT), Line(RES_BUTTON, GO, "&Weiter"), Line(RES_CHECK, HOOK, "&Haken"),
                     Line(RES_CHECK3, THREE, "&Drei"), Line(RES_RADIO, RADIO, "W&ahl"), Line(RES_LIST, LIST),
                     Line(RES_CHOICE, CHOICE), Line(RES_COMBO, COMBO), Line(RES_DEFAULT, WIN_ID_OK, "OK"),
                     Line(RES_BUTTON, WIN_ID_CANCEL, "Abbrechen")});
        tables->Add(BARE, "Ohne OK", {Line(RES_EDIT, EDIT)});
        tables->Add(RECORDS, "Satz",
                    {Line(RES_EDIT, 200), Line(RES_EDIT, 201), Line(RES_EDIT, 202), Line(RES_EDIT, 203),
                     Line(RES_EDIT, 204), Line(RES_EDIT, 205), Line(RES_DEFAULT, WIN_ID_OK, "OK"),
                     Line(RES_BUTTON, WIN_ID_CANCEL, "Abbrechen")});
    }
    void TearDown() override
    {
        dialog.reset();
        tables.reset();
        SetFailureHook(NULL);
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    /// The dialog is up and has told so.
    testdoor::DialogBox Open(bool closes = true, int resId = DIALOG)
    {
        dialog = std::make_unique<HookDialog>(resId, static_cast<void *>(NULL), closes);
        list = resId == DIALOG ? new TListBox(dialog.get(), LIST) : NULL;
        choice = resId == DIALOG ? new TComboBox(dialog.get(), CHOICE) : NULL;
        edit = new TEdcEdit(dialog.get(), EDIT);
        dialog->Create();
        EXPECT_EQ(dialog->Take(), "opened");
        for (const char *entry : {"eins", "zwei", "drei"}) {
            if (list != NULL)
                list->AddString(entry);
            if (choice != NULL)
                choice->AddString(entry);
        }
        return testdoor::DialogBox(*dialog);
    }
    /// Runs the dialog with a user who does that.
    int Run(TDialog &modal, const std::function<void(testdoor::DialogBox &)> &user)
    {
        testdoor::Script([&user](testdoor::ModalBox &face) {
            testdoor::DialogBox box(face);
            user(box);
        });
        return modal.Execute();
    }

    std::unique_ptr<DialogTables> tables;
    std::unique_ptr<HookDialog> dialog;
    TEdcEdit *edit = NULL; // views
    TListBox *list = NULL;
    TComboBox *choice = NULL;
};

struct GESTURE {
    const char *name;
    void (*act)(testdoor::DialogBox &);
    const char *calls;
};
const GESTURE gestures[] = {
    {"a button is clicked", [](testdoor::DialogBox &d) { d.Click(GO); }, "button 101"},
    {"a button's mnemonic", [](testdoor::DialogBox &d) { d.Press("Alt+W"); }, "button 101"},
    {"space on a button",
     [](testdoor::DialogBox &d) {
         d.Press("Tab");
         d.Press("Space");
     },
     "button 101"},
    {"Return on a button",
     [](testdoor::DialogBox &d) {
         d.Press("Tab");
         d.Press("Return");
     },
     "button 101"},
    {"Return in a field", [](testdoor::DialogBox &d) { d.Press("Return"); }, "button 1"},
    {"Enter in a field", [](testdoor::DialogBox &d) { d.Press("Enter"); }, "button 1"},
    {"Esc in a field", [](testdoor::DialogBox &d) { d.Press("Esc"); }, "button 2"},
    {"OK is clicked", [](testdoor::DialogBox &d) { d.Click(WIN_ID_OK); }, "button 1"},
    {"Return on the OK button",
     [](testdoor::DialogBox &d) {
         d.Press("Shift+Tab");
         d.Press("Shift+Tab");
         d.Press("Return");
     },
     "button 1"},
    {"space on the OK button",
     [](testdoor::DialogBox &d) {
         d.Press("Shift+Tab");
         d.Press("Shift+Tab");
         d.Press("Space");
     },
     "button 1"},
    {"Return in a box",
     [](testdoor::DialogBox &d) {
         d.Press("Tab");
         d.Press("Tab");
         d.Press("Return");
     },
     "button 1"},
    {"cancel is clicked", [](testdoor::DialogBox &d) { d.Click(WIN_ID_CANCEL); }, "button 2"},
    {"Return on the cancel button",
     [](testdoor::DialogBox &d) {
         d.Press("Shift+Tab");
         d.Press("Return");
     },
     "button 2"},
    {"Esc on a button",
     [](testdoor::DialogBox &d) {
         d.Press("Tab");
         d.Press("Esc");
     },
     "button 2"},
    {"the window's own button", [](testdoor::DialogBox &d) { d.CloseByFrame(); }, "cancel"},
    {"a box is clicked", [](testdoor::DialogBox &d) { d.Click(HOOK); }, "changed 102"},
    {"a box's mnemonic", [](testdoor::DialogBox &d) { d.Press("Alt+H"); }, "changed 102"},
    {"a box of three states", [](testdoor::DialogBox &d) { d.Click(THREE); }, "changed 103"},
    {"a radio button", [](testdoor::DialogBox &d) { d.Click(RADIO); }, "changed 104"},
    {"an entry of a list", [](testdoor::DialogBox &d) { d.ClickEntry(LIST, 1); }, "changed 105"},
    {"arrow keys in a list",
     [](testdoor::DialogBox &d) {
         d.ClickEntry(LIST, 0);
         d.Press("Down");
         d.Press("Down");
     },
     "changed 105, changed 105, changed 105"},
    {"an entry twice", [](testdoor::DialogBox &d) { d.ClickEntry(LIST, 1, true); }, "changed 105, double 105"},
    {"an entry of a drop list", [](testdoor::DialogBox &d) { d.Choose(CHOICE, 1); }, "changed 106"},
    {"typing", [](testdoor::DialogBox &d) { d.Type(EDIT, "Halle"); }, ""},
    {"pasting", [](testdoor::DialogBox &d) { d.Paste(EDIT, "Halle"); }, ""},
    {"typing into a combo box", [](testdoor::DialogBox &d) { d.Type(COMBO, "Halle"); }, ""},
    {"Tab round all controls",
     [](testdoor::DialogBox &d) {
         for (int i = 0; i < 12; ++i)
             d.Press("Tab");
     },
     ""},
};
} // namespace

TEST_F(Dialogs, TellTheirHooksWhatAPersonDoes)
{
    for (const GESTURE &gesture : gestures) {
        testdoor::DialogBox box = Open(false);
        gesture.act(box);
        testdoor::Settle();
        EXPECT_EQ(dialog->Take(), gesture.calls) << gesture.name;
    }
}

TEST_F(Dialogs, TellTheirHooksNothingOfWhatTheProgramDoes)
{
    Open(false);
    edit->SetText("Halle");
    list->SetSelIndex(1);
    choice->SetSelIndex(1);
    choice->ShowList(true);
    choice->ShowList(false);
    edit->EnableWindow(false);
    edit->TakeFocus();
    testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "");
}

TEST_F(Dialogs, WithoutAnOkButtonStillHearReturn)
{
    testdoor::DialogBox box = Open(true, BARE);
    box.Press("Return");
    EXPECT_EQ(dialog->Take(), "button 1");
    EXPECT_FALSE(dialog->IsCreated());
}

TEST_F(Dialogs, EndWithTheResultOfWhatClosedThem)
{
    const struct {
        const char *name;
        void (*act)(testdoor::DialogBox &);
        int result;
        const char *calls;
    } rows[] = {
        {"OK", [](testdoor::DialogBox &d) { d.Click(WIN_ID_OK); }, WIN_ID_OK, "opened, button 1"},
        {"OK twice", [](testdoor::DialogBox &d) { d.DoubleClick(WIN_ID_OK); }, WIN_ID_OK, "opened, button 1"},
        {"Return", [](testdoor::DialogBox &d) { d.Press("Return"); }, WIN_ID_OK, "opened, button 1"},
        {"cancel", [](testdoor::DialogBox &d) { d.Click(WIN_ID_CANCEL); }, WIN_ID_CANCEL, "opened, button 2"},
        {"Esc", [](testdoor::DialogBox &d) { d.Press("Esc"); }, WIN_ID_CANCEL, "opened, button 2"},
        {"frame", [](testdoor::DialogBox &d) { d.CloseByFrame(); }, WIN_ID_CANCEL, "opened, cancel"},
    };
    for (const auto &row : rows) {
        HookDialog modal(DIALOG);
        EXPECT_EQ(Run(modal, row.act), row.result) << row.name;
        EXPECT_EQ(modal.Take(), row.calls) << row.name;
        EXPECT_FALSE(modal.IsCreated());
    }
}

TEST_F(Dialogs, CloseWithAnyResultTheirHooksName)
{
    HookDialog modal(DIALOG);
    modal.behind = [&modal](const std::string &call) {
        if (call == "button 101")
            modal.Close(7, false);
        if (call == "changed 102")
            modal.Close(8, true);
    };
    EXPECT_EQ(Run(modal, [](testdoor::DialogBox &box) { box.Click(GO); }), 7);
    EXPECT_EQ(Run(modal, [](testdoor::DialogBox &box) { box.Click(HOOK); }), 8);
    EXPECT_EQ(modal.Take(), "opened, button 101, opened, changed 102");
}

TEST_F(Dialogs, HaveTheMainWindowAsTheirParent)
{
    TWindow client;
    TDecoratedFrame frame("Halle", client);
    EXPECT_EQ(TEdcDialog(DIALOG).Parent(), static_cast<TWindow *>(NULL)) << "there is none yet";
    TApplication::Current()->SetMainWindow(&frame);
    EXPECT_EQ(TEdcDialog(DIALOG).Parent(), &frame);
    TApplication::Current()->SetMainWindow(NULL);
}

TEST_F(Dialogs, HaveTheRecordThatTheyAreGiven)
{
    TEdcFloat record;
    EXPECT_EQ(TEdcDialog(DIALOG, &record).TransferRecord(), &record);
    EXPECT_EQ(TEdcDialog(DIALOG).TransferRecord(), static_cast<void *>(NULL));
}

namespace
{
/// An edit that tells in what order it is asked and transferred.
class ProbeEdit : public TEdcEdit
{
public:
    ProbeEdit(HookDialog *aOwner, int resId, int aFlags = 0, TValidator *aValidator = NULL)
        : TEdcEdit(aOwner, resId, LONGSTRMAX, aValidator, aFlags), owner(aOwner)
    {
    }
    bool CanClose() override
    {
        owner->Note("ask " + std::to_string(Id()));
        return TEdcEdit::CanClose();
    }
    int Transfer(void *field, int direction) override
    {
        owner->Note((direction == WIN_TRANSFER_SETDATA ? "set " : "get ") + std::to_string(Id()));
        return TEdcEdit::Transfer(field, direction);
    }

private:
    HookDialog *owner; // view
};

/// Takes all but one text, and counts.
class PickyValidator : public TValidator
{
public:
    PickyValidator(const char *aRefused, int &aAsked, int &aErrors)
        : refused(aRefused), asked(aAsked), errors(aErrors)
    {
    }
    bool IsValid(const char *text) override
    {
        ++asked;
        return text != refused;
    }
    void Error(TWindow *) override { ++errors; }

private:
    std::string refused;
    int &asked, &errors;
};

/// Fields of every kind, as a design dialog has them.
struct RECORD {
    TEdcFloat power;
    TEdcShortStr name;
    TEdcInt days;
    TEdcLongStr note;
    TEdcTime date;
};

RECORD FilledRecord()
{
    RECORD record;
    record.power.Set(1500);
    record.name = "Nord";
    record.days.Set(200);
    record.note = "hell und warm";
    record.date.SetDate(2001, 2, 28, true);
    return record;
}

std::string Shown(const RECORD &r)
{
    auto known = [](const TEdcValue &value, const std::string &text) {
        return value.id == EDC_VVAL ? text : std::string("?");
    };
    return known(r.power, EdcFormat("%g", r.power.value)) + "|" + known(r.name, r.name.text) + "|" +
           known(r.days, std::to_string(r.days.value)) + "|" + known(r.note, r.note.text) + "|" +
           known(r.date, EdcFormat("%d-%d-%d", r.date.year, r.date.month, r.date.day));
}

/// The fields 200 to 205; 203 takes no part in the transfer.
void AddFields(HookDialog &dialog)
{
    new ProbeEdit(&dialog, 200, 0, new TEdcFloatValidator(0, 1e6, true, "W"));
    new ProbeEdit(&dialog, 201);
    new ProbeEdit(&dialog, 202, 0, new TEdcIntValidator(0, 365, true));
    new ProbeEdit(&dialog, 203, EDC_CfNOTRANSFER);
    new ProbeEdit(&dialog, 204);
    new ProbeEdit(&dialog, 205, 0, new TEdcTimeValidator("d.M.r", true, 1990, 2010));
}
} // namespace

TEST_F(Dialogs, FillOpenAskTransferAndEndInThisOrder)
{
    RECORD record = FilledRecord();
    HookDialog modal(RECORDS, &record);
    AddFields(modal);
    EXPECT_EQ(Run(modal, [](testdoor::DialogBox &box) { box.Click(WIN_ID_OK); }), WIN_ID_OK);
    EXPECT_EQ(modal.Take(), "set 200, set 201, set 202, set 203, set 204, set 205, opened, button 1, "
                            "ask 200, ask 201, ask 202, ask 203, ask 204, ask 205, "
                            "get 200, get 201, get 202, get 203, get 204, get 205");
}

TEST_F(Dialogs, WalkARecordOfMixedFields)
{
    RECORD record = FilledRecord();
    HookDialog modal(RECORDS, &record);
    AddFields(modal);
    std::string before;
    EXPECT_EQ(Run(modal,
                  [&before](testdoor::DialogBox &box) {
                      for (int id = 200; id <= 205; ++id)
                          before += box.Text(id) + "|";
                      box.Type(200, "2.5 kW");
                      box.Type(201, "Süd");
                      box.Type(202, "31");
                      box.Type(203, "dazwischen");
                      box.Paste(204, "kühl");
                      box.Type(205, "1.3.2002");
                      box.Click(WIN_ID_OK);
                  }),
              WIN_ID_OK);
    EXPECT_EQ(before, "1.5 kW|Nord|200||hell und warm|28.2.2001|");
    EXPECT_EQ(Shown(record), "2500|S\xFC"
                             "d|31|k\xFC"
                             "hl|2002-3-1");
}

TEST_F(Dialogs, GiveTheFieldOfAControlWithoutTransferToTheNext)
{
    TEdcShortStr field;
    field = "Nord";
    HookDialog modal(RECORDS, &field);
    new ProbeEdit(&modal, 200, EDC_CfNOTRANSFER);
    new ProbeEdit(&modal, 201);
    std::string shown;
    Run(modal, [&shown](testdoor::DialogBox &box) {
        shown = box.Text(200) + "|" + box.Text(201);
        box.Type(200, "Ost");
        box.Type(201, "West");
        box.Click(WIN_ID_OK);
    });
    EXPECT_EQ(shown, "|Nord");
    EXPECT_STREQ(field.text, "West");
}

TEST_F(Dialogs, ShowUndefinedFieldsEmptyAndLeaveThemUndefined)
{
    RECORD record;
    HookDialog modal(RECORDS, &record);
    AddFields(modal);
    std::string shown;
    Run(modal, [&shown](testdoor::DialogBox &box) {
        for (int id = 200; id <= 205; ++id)
            shown += box.Text(id);
        box.Click(WIN_ID_OK);
    });
    EXPECT_EQ(shown, "");
    EXPECT_EQ(Shown(record), "?|?|?|?|?");
}

TEST_F(Dialogs, RunAnyNumberOfTimes)
{
    RECORD record = FilledRecord();
    HookDialog modal(RECORDS, &record);
    AddFields(modal);
    for (int round = 1; round <= 3; ++round) {
        Run(modal, [round](testdoor::DialogBox &box) {
            EXPECT_EQ(box.Text(202), std::to_string(round == 1 ? 200 : round - 1));
            box.Type(202, std::to_string(round));
            box.Click(WIN_ID_OK);
        });
        EXPECT_EQ(record.days.value, round);
    }
}

TEST_F(Dialogs, CancelRunsNoValidatorAndNoTransfer)
{
    void (*const ways[])(testdoor::DialogBox &) = {
        [](testdoor::DialogBox &d) { d.Click(WIN_ID_CANCEL); },
        [](testdoor::DialogBox &d) { d.Press("Esc"); },
        [](testdoor::DialogBox &d) { d.CloseByFrame(); },
    };
    for (auto way : ways) {
        int asked = 0, errors = 0;
        TEdcShortStr field;
        field = "Nord";
        HookDialog modal(RECORDS, &field);
        new ProbeEdit(&modal, 200, 0, new PickyValidator("Ost", asked, errors));
        EXPECT_EQ(Run(modal,
                      [way](testdoor::DialogBox &box) {
                          box.Type(200, "Ost");
                          way(box);
                      }),
                  WIN_ID_CANCEL);
        EXPECT_EQ(asked + errors, 0);
        EXPECT_STREQ(field.text, "Nord");
        EXPECT_EQ(modal.Take().find("get"), std::string::npos);
    }
}

TEST_F(Dialogs, StayOpenAndTransferNothingWhereAControlRefuses)
{
    RECORD record = FilledRecord();
    const std::string before = Shown(record);
    HookDialog modal(RECORDS, &record);
    AddFields(modal);
    std::string calls, message;
    int focus = 0;
    std::string selected;
    EXPECT_EQ(Run(modal,
                  [&](testdoor::DialogBox &box) {
                      box.Type(201, "Ost");
                      box.Type(202, "400");
                      modal.Take();
                      testdoor::Script([&message](testdoor::ModalBox &face) {
                          message = face.Text();
                          face.Answer(WIN_ID_OK);
                      });
                      box.Click(WIN_ID_OK);
                      calls = modal.Take();
                      focus = box.Focus();
                      selected = box.SelectedText(202);
                      EXPECT_EQ(Shown(record), before);
                      box.TypeKeys("40"); // over what is selected
                      box.Press("Return");
                  }),
              WIN_ID_OK);
    EXPECT_EQ(calls, "button 1, ask 200, ask 201, ask 202");
    EXPECT_EQ(message, "Ganze Zahl von 0 bis 365 erwartet.");
    EXPECT_EQ(focus, 202);
    EXPECT_EQ(selected, "400");
    EXPECT_EQ(Shown(record), "1500|Ost|40|hell und warm|2001-2-28");
}

TEST_F(Dialogs, NeverAskADisabledEdit)
{
    int asked = 0, errors = 0;
    TEdcShortStr field;
    field = "Ost";
    HookDialog modal(RECORDS, &field);
    auto *greyed = new ProbeEdit(&modal, 200, 0, new PickyValidator("Ost", asked, errors));
    modal.behind = [greyed](const std::string &call) {
        if (call == "opened")
            greyed->EnableWindow(false);
    };
    EXPECT_EQ(Run(modal, [](testdoor::DialogBox &box) { box.Click(WIN_ID_OK); }), WIN_ID_OK);
    EXPECT_EQ(asked + errors, 0);
}

TEST_F(Dialogs, WithoutWaitingAreDeletedOnceTheyHaveReallyClosed)
{
    struct Mortal : HookDialog {
        Mortal(int &aDeaths) : HookDialog(RECORDS), deaths(aDeaths) {}
        ~Mortal() override { ++deaths; }
        int &deaths;
    };
    int deaths = 0, asked = 0, errors = 0;
    auto *mortal = new Mortal(deaths);
    auto *picky = new ProbeEdit(mortal, 200, 0, new PickyValidator("Ost", asked, errors));
    mortal->SetAutoDelete(true);
    mortal->Create();
    EXPECT_FALSE(mortal->IsModal());
    picky->SetText("Ost");
    mortal->Close(WIN_ID_OK, false);
    testdoor::Settle();
    EXPECT_EQ(deaths, 0) << "a control refused";
    EXPECT_EQ(errors, 1);
    picky->SetText("West");
    testdoor::DialogBox(*mortal).Click(WIN_ID_OK);
    testdoor::Settle();
    EXPECT_EQ(deaths, 1);
}

TEST_F(Dialogs, GetAPostedChangeOnceTheCurrentMessageIsDone)
{
    testdoor::DialogBox box = Open();
    dialog->behind = [this](const std::string &call) {
        if (call != "changed 102")
            return;
        dialog->PostChanged(edit);
        dialog->Note("posted");
    };
    box.Click(HOOK);
    testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "changed 102, posted, changed 100");
    testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "");
}

TEST_F(Dialogs, GetTheLastOfSeveralPostedChanges)
{
    Open();
    dialog->PostChanged(edit);
    dialog->PostChanged(choice);
    dialog->PostChanged(list);
    EXPECT_EQ(dialog->Take(), "") << "not before the queue is worked off";
    testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "changed 105");
    dialog->PostChanged(dialog.get());
    testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "changed itself");
}

TEST_F(Dialogs, MayPostTheNextChangeFromAPostedOne)
{
    Open();
    int left = 3;
    dialog->behind = [this, &left](const std::string &) {
        if (left-- > 0)
            dialog->PostChanged(edit);
    };
    dialog->PostChanged(list);
    for (int i = 0; i < 5; ++i)
        testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "changed 105, changed 100, changed 100, changed 100");
}

TEST_F(Dialogs, GetNoPostedChangeOfAWindowThatIsGone)
{
    Open();
    dialog->PostChanged(edit);
    delete edit;
    testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "");
    dialog->PostChanged(list);
    dialog->Close(WIN_ID_CANCEL, true);
    testdoor::Settle();
    dialog->Create();
    testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "opened");
    TWindow windowless;
    dialog->PostChanged(&windowless);
    testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "");
}

TEST_F(Dialogs, ShareOneRecordOfThePostedChange)
{
    Open();
    HookDialog second(DIALOG);
    auto *other = new TEdcEdit(&second, EDIT);
    second.Create();
    second.Take();
    dialog->PostChanged(list);
    second.PostChanged(other);
    testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "");
    EXPECT_EQ(second.Take(), "changed 100");
}

TEST_F(Dialogs, TakeNoOtherNoticeForAPostedChange)
{
    Open();
    const struct {
        int id, code;
    } rows[] = {{-1, -98}, {-2, -99}, {0, 0}, {EDIT, -99}, {-1, 0}};
    for (const auto &row : rows)
        dialog->PostNotify(row.id, row.code);
    dialog->PostNotify(-1, -99); // nothing waits
    testdoor::Settle();
    EXPECT_EQ(dialog->Take(), "");
}

TEST_F(Dialogs, AssertThatThereIsAWindowToPostAbout)
{
    Open();
    EXPECT_TRUE(AbortsOnAssertion("wnd != NULL", source, [this] { dialog->PostChanged(NULL); }));
    dialog->Close(WIN_ID_CANCEL, true);
    EXPECT_TRUE(AbortsOnAssertion("GetHandle() != 0", source, [this] { dialog->PostChanged(edit); }));
}

namespace
{
std::string reported; // the failures that were reported, in order

void NoteFailure()
{
    reported += std::string(reported.empty() ? "" : " ") + xRepaired;
}

void FailWith(const std::string &what)
{
    if (what == "general")
        XRaise(XGENERAL, "test", 1);
    if (what == "alloc")
        throw std::bad_alloc();
    if (what == "other")
        throw std::runtime_error("x");
}
} // namespace

TEST_F(Dialogs, ReportWhatAHookLeavesPendingAndStayOpen)
{
    const struct {
        const char *hook;
        void (*act)(testdoor::DialogBox &);
    } hooks[] = {
        {"changed 102", [](testdoor::DialogBox &d) { d.Click(HOOK); }},
        {"button 101", [](testdoor::DialogBox &d) { d.Click(GO); }},
        {"button 1", [](testdoor::DialogBox &d) { d.Press("Return"); }},
        {"double 105", [](testdoor::DialogBox &d) { d.ClickEntry(LIST, 1, true); }},
        {"cancel", [](testdoor::DialogBox &d) { d.CloseByFrame(); }},
        {"changed 106", [](testdoor::DialogBox &d) { d.Choose(CHOICE, 1); }},
    };
    const struct {
        const char *what;
        XCODE code;
    } failures[] = {{"general", XGENERAL}, {"alloc", XALLOC}, {"other", XUNKNOWN}};
    for (const auto &hook : hooks)
        for (const auto &failure : failures) {
            testdoor::DialogBox box = Open(false);
            SetFailureHook(NoteFailure);
            reported.clear();
            dialog->behind = [&](const std::string &call) {
                if (call == hook.hook)
                    FailWith(failure.what);
            };
            hook.act(box);
            testdoor::Settle();
            EXPECT_EQ(reported, failure.code) << hook.hook;
            EXPECT_TRUE(dialog->IsCreated()) << hook.hook;
            EXPECT_STREQ(xCode, XNULL);
            dialog->Take();
            dialog->behind = NULL;
            box.Click(THREE);
            EXPECT_EQ(dialog->Take(), "changed 103") << "the dialog is usable";
            SetFailureHook(NULL);
        }
}

TEST_F(Dialogs, StayOpenWhereTheOpeningFails)
{
    SetFailureHook(NoteFailure);
    reported.clear();
    HookDialog modal(DIALOG);
    modal.behind = [](const std::string &call) {
        if (call == "opened")
            FailWith("general");
    };
    EXPECT_EQ(Run(modal, [](testdoor::DialogBox &box) { box.Click(WIN_ID_OK); }), WIN_ID_OK);
    EXPECT_EQ(reported, XGENERAL);
    EXPECT_EQ(modal.Take(), "opened, button 1");
}

TEST_F(Dialogs, ShowAFailureOfAHookInABox)
{
    TestServices services;
    EdcUseResources();
    SetFailureHook(EdcFailureHook);
    testdoor::DialogBox box = Open(false);
    dialog->behind = [](const std::string &) { FailWith("alloc"); };
    std::string message;
    testdoor::Script([&message](testdoor::ModalBox &face) {
        message = face.Kind() + "|" + face.Text();
        face.Answer(WIN_ID_OK);
    });
    box.Click(GO);
    EXPECT_EQ(message, "message|Ungenug Speicher!");
    SetResTextSink(NULL);
    EXPECT_TRUE(dialog->IsCreated());
}

TEST_F(Dialogs, OpenOverEachOther)
{
    HookDialog outer(DIALOG), inner(RECORDS);
    int result = 0;
    outer.behind = [&](const std::string &call) {
        if (call == "button 101")
            result = Run(inner, [](testdoor::DialogBox &box) { box.Press("Esc"); });
    };
    EXPECT_EQ(Run(outer,
                  [&](testdoor::DialogBox &box) {
                      box.Click(GO);
                      EXPECT_TRUE(outer.IsCreated());
                      EXPECT_FALSE(inner.IsCreated());
                      box.Click(WIN_ID_OK);
                  }),
              WIN_ID_OK);
    EXPECT_EQ(result, WIN_ID_CANCEL);
    EXPECT_EQ(inner.Take(), "opened, button 2");
    EXPECT_EQ(outer.Take(), "opened, button 101, button 1");
}
