#include "win/boxes.h"
#include "support/folder.h"
#include "support/testapp.h"
#include "win/application.h"
#include "win/modal.h"
#include "win/testdoor.h"
#include "win/utf8.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace
{
std::string Set(const char *utf8)
{
    return FromUtf8(utf8);
}

class Boxes : public testing::Test
{
protected:
    void SetUp() override
    {
        TestApplication();
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
    }
    void TearDown() override
    {
        EXPECT_EQ(testdoor::PendingScripts(), 0) << "a script waited for a box that never came";
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    FOLDER folder;
};

/// What a script saw, in one text: kind, caption and text of the box.
std::string Seen(const testdoor::ModalBox &box)
{
    return box.Kind() + "|" + box.Caption() + "|" + box.Text();
}

/// The next message box is put down in `seen` and answered.
void AnswerMessage(std::string &seen, int id)
{
    testdoor::Script([&seen, id](testdoor::ModalBox &box) {
        seen = Seen(box);
        box.Answer(id);
    });
}

struct ANSWER {
    TBoxButtons buttons;
    int given;
    TBoxAnswer answer;
};

TEST_F(Boxes, AMessageBoxGivesTheAnswerOfItsButton)
{
    const ANSWER answers[] = {
        {WIN_BOX_OK, WIN_ID_OK, WIN_ID_OK},
        {WIN_BOX_OKCANCEL, WIN_ID_OK, WIN_ID_OK},
        {WIN_BOX_OKCANCEL, WIN_ID_CANCEL, WIN_ID_CANCEL},
        {WIN_BOX_YESNO, WIN_ID_YES, WIN_ID_YES},
        {WIN_BOX_YESNO, WIN_ID_NO, WIN_ID_NO},
        {WIN_BOX_YESNOCANCEL, WIN_ID_YES, WIN_ID_YES},
        {WIN_BOX_YESNOCANCEL, WIN_ID_NO, WIN_ID_NO},
        {WIN_BOX_YESNOCANCEL, WIN_ID_CANCEL, WIN_ID_CANCEL},
        {WIN_BOX_RETRYCANCEL, WIN_ID_RETRY, WIN_ID_RETRY},
        {WIN_BOX_RETRYCANCEL, WIN_ID_CANCEL, WIN_ID_CANCEL},
    };
    for (const ANSWER &row : answers) {
        std::string seen;
        AnswerMessage(seen, row.given);
        EXPECT_EQ(MessageBox(NULL, "Frage?", "Zulerion", row.buttons, WIN_ICON_QUESTION), row.answer)
            << row.buttons << " " << row.given;
        EXPECT_EQ(seen, "message|Zulerion|Frage?");
    }
}

TEST_F(Boxes, AButtonThatABoxDoesNotHaveAnswersNothing)
{
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_YES); });
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_RETRY); });
    EXPECT_EQ(MessageBox(NULL, "Text", "Kopf", WIN_BOX_RETRYCANCEL, WIN_ICON_STOP), WIN_ID_RETRY);
}

TEST_F(Boxes, EscAnswersCancelOrNoOrTheOnlyButton)
{
    const struct {
        TBoxButtons buttons;
        TBoxAnswer answer;
    } rows[] = {
        {WIN_BOX_OK, WIN_ID_OK},
        {WIN_BOX_OKCANCEL, WIN_ID_CANCEL},
        {WIN_BOX_YESNO, WIN_ID_NO},
        {WIN_BOX_YESNOCANCEL, WIN_ID_CANCEL},
        {WIN_BOX_RETRYCANCEL, WIN_ID_CANCEL},
    };
    for (const auto &row : rows) {
        testdoor::Script([](testdoor::ModalBox &box) { box.Press("Esc"); });
        EXPECT_EQ(MessageBox(NULL, "Text", "Kopf", row.buttons, WIN_ICON_NONE), row.answer) << row.buttons;
    }
}

TEST_F(Boxes, ReturnPressesTheFirstButton)
{
    const struct {
        TBoxButtons buttons;
        TBoxAnswer answer;
    } rows[] = {
        {WIN_BOX_OK, WIN_ID_OK},           {WIN_BOX_OKCANCEL, WIN_ID_OK},       {WIN_BOX_YESNO, WIN_ID_YES},
        {WIN_BOX_YESNOCANCEL, WIN_ID_YES}, {WIN_BOX_RETRYCANCEL, WIN_ID_RETRY},
    };
    for (const auto &row : rows) {
        testdoor::Script([](testdoor::ModalBox &box) { box.Press("Return"); });
        EXPECT_EQ(MessageBox(NULL, "Text", "Kopf", row.buttons, WIN_ICON_NONE), row.answer) << row.buttons;
    }
}

TEST_F(Boxes, ReturnPressesTheButtonThatIsNamedAsTheDefault)
{
    const struct {
        TBoxButtons buttons;
        int named;
        TBoxAnswer answer;
    } rows[] = {
        {WIN_BOX_YESNO, WIN_ID_NO, WIN_ID_NO},
        {WIN_BOX_YESNO, WIN_ID_YES, WIN_ID_YES},
        {WIN_BOX_YESNOCANCEL, WIN_ID_CANCEL, WIN_ID_CANCEL},
        {WIN_BOX_RETRYCANCEL, WIN_ID_NO, WIN_ID_RETRY}, // it has none: the first
    };
    for (const auto &row : rows) {
        testdoor::Script([](testdoor::ModalBox &box) { box.Press("Return"); });
        EXPECT_EQ(MessageBox(NULL, "Text", "Kopf", row.buttons, WIN_ICON_NONE, row.named), row.answer)
            << row.buttons << " " << row.named;
    }
}

TEST_F(Boxes, ButtonsSpeakGerman)
{
    std::string buttons;
    for (TBoxButtons kind : {WIN_BOX_OK, WIN_BOX_OKCANCEL, WIN_BOX_YESNOCANCEL, WIN_BOX_RETRYCANCEL}) {
        testdoor::Script([&](testdoor::ModalBox &box) {
            buttons += box.Buttons() + ";";
            box.Press("Esc");
        });
        MessageBox(NULL, "Text", "Kopf", kind, WIN_ICON_NONE);
    }
    EXPECT_EQ(buttons, "OK;Abbrechen OK;Abbrechen Ja Nein;Abbrechen Wiederholen;");
}

TEST_F(Boxes, TextsAreShownAsTheyStand)
{
    std::string text = Set("<b>Größe</b> & „100 €“\n&lt; %s");
    std::string seen;
    AnswerMessage(seen, WIN_ID_OK);
    MessageBox(NULL, text.c_str(), Set("Überschrift").c_str(), WIN_BOX_OK, WIN_ICON_INFORMATION);
    EXPECT_EQ(seen, "message|" + Set("Überschrift") + "|" + text);
}

TEST_F(Boxes, ABoxThatNoScriptExpectsIsCancelledAndCounted)
{
    EXPECT_EQ(MessageBox(NULL, "Text", "Kopf", WIN_BOX_YESNO, WIN_ICON_NONE), WIN_ID_NO);
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 1);
}

TEST_F(Boxes, ABoxOverABoxTakesTheNextScript)
{
    std::string order;
    testdoor::Script([&](testdoor::ModalBox &box) {
        order += box.Text();
        order += MessageBox(NULL, "innen", "Kopf", WIN_BOX_YESNO, WIN_ICON_NONE) == WIN_ID_YES ? "+" : "-";
        box.Answer(WIN_ID_OK);
    });
    testdoor::Script([&](testdoor::ModalBox &box) {
        order += box.Text();
        box.Answer(WIN_ID_YES);
    });
    EXPECT_EQ(MessageBox(NULL, "aussen", "Kopf", WIN_BOX_OKCANCEL, WIN_ICON_NONE), WIN_ID_OK);
    EXPECT_EQ(order, "ausseninnen+");
}

TFileDialogData Hall(const std::string &name = "")
{
    return {.filter = "SC1 Szenenbeschr.", .extension = "sc1", .name = name};
}

/// The file dialog is told a name and OK; then each text box of `refusals` must come, and the user gives up.
void TypeName(const std::string &path)
{
    testdoor::Script([path](testdoor::ModalBox &box) {
        box.FileName(path);
        box.Answer(WIN_ID_OK);
    });
}

void GiveUp()
{
    testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_CANCEL); });
}

TEST_F(Boxes, OpeningGivesTheNameInTheSystemsForm)
{
    folder.Put("halle.sc1", "x");
    TFileDialogData data = Hall();
    std::string seen;
    testdoor::Script([&](testdoor::ModalBox &box) {
        seen = Seen(box);
        box.FileName(folder.Path("halle.sc1"));
        box.Answer(WIN_ID_OK);
    });
    ASSERT_TRUE(FileOpenDialog(NULL, data));
    EXPECT_EQ(seen, "open|" + Set("Öffnen") + "|SC1 Szenenbeschr. (*.sc1)");
    EXPECT_EQ(data.name, folder.Name("halle.sc1"));
    EXPECT_FALSE(data.failed);
}

TEST_F(Boxes, UmlautsAndTheEuroSignComeThrough)
{
    folder.Put("Größe 5 €.sc1", "x");
    TFileDialogData data = Hall();
    TypeName(folder.Path("Größe 5 €.sc1"));
    ASSERT_TRUE(FileOpenDialog(NULL, data));
    EXPECT_EQ(data.name, folder.Name("Größe 5 €.sc1"));
}

TEST_F(Boxes, TheExtensionIsAddedToABareNameOnly)
{
    const struct {
        const char *typed;
        const char *saved;
    } rows[] = {{"halle", "halle.sc1"}, {"halle.sc1", "halle.sc1"}, {"halle.alt", "halle.alt"}};
    for (const auto &row : rows) {
        TFileDialogData data = Hall();
        TypeName(folder.Path(row.typed));
        ASSERT_TRUE(FileSaveDialog(NULL, data)) << row.typed;
        EXPECT_EQ(data.name, folder.Name(row.saved));
        EXPECT_TRUE(folder.List().empty()) << "the dialog writes nothing";
    }
}

TEST_F(Boxes, CancelIsNoFailureAndKeepsTheName)
{
    for (auto ask : {FileOpenDialog, FileSaveDialog}) {
        TFileDialogData data = Hall("halle");
        GiveUp();
        EXPECT_FALSE(ask(NULL, data));
        EXPECT_EQ(data.name, "halle");
        EXPECT_FALSE(data.failed);
    }
}

TEST_F(Boxes, TheProposedNameStandsInTheField)
{
    TFileDialogData data = Hall(folder.Name("halle.sc1"));
    std::string field;
    testdoor::Script([&](testdoor::ModalBox &box) {
        field = box.FileName();
        box.Answer(WIN_ID_OK);
    });
    ASSERT_TRUE(FileSaveDialog(NULL, data));
    EXPECT_EQ(field, "halle.sc1");
    EXPECT_EQ(data.name, folder.Name("halle.sc1"));
}

struct REFUSAL {
    const char *file; // in the test's folder
    const char *text; // UTF-8, '*' stands for the folder
};

/// What the box over the dialog says about a name; the user gives up then.
std::string RefusalOf(bool saves, const std::string &path)
{
    std::string seen;
    TFileDialogData data = Hall("vorher");
    TypeName(path);
    AnswerMessage(seen, WIN_ID_OK);
    GiveUp();
    EXPECT_FALSE(saves ? FileSaveDialog(NULL, data) : FileOpenDialog(NULL, data)) << path;
    EXPECT_EQ(data.name, "vorher");
    return seen;
}

TEST_F(Boxes, NamesThatCannotBeOpenedAreRefusedWithTheReason)
{
    folder.Put("fest.sc1", "x");
    chmod(folder.Path("fest.sc1").c_str(), 0444);
    chmod(folder.path.c_str(), 0755);
    folder.Put("Ω.sc1", "x");
    PLAINUSER plain;
    const REFUSAL refusals[] = {
        {"keine.sc1", "Die Datei \"*/keine.sc1\" ist nicht vorhanden."},
        {"kein/Ordner.sc1", "Die Datei \"*/kein/Ordner.sc1\" ist nicht vorhanden."},
        {"fest.sc1", "Die Datei \"*/fest.sc1\" ist schreibgeschützt."},
        {"Ω.sc1", "Der Name \"*/?.sc1\" enthält Zeichen, mit denen das Programm nicht arbeiten kann."},
    };
    for (const REFUSAL &row : refusals) {
        std::string text = row.text;
        text.replace(text.find('*'), 1, folder.path);
        EXPECT_EQ(RefusalOf(false, folder.Path(row.file)), Set(("message|Öffnen|" + text).c_str()));
    }
}

TEST_F(Boxes, NamesThatCannotBeSavedAreRefusedWithTheReason)
{
    folder.Put("fest.sc1", "x");
    chmod(folder.Path("fest.sc1").c_str(), 0444);
    chmod(folder.path.c_str(), 0755);
    PLAINUSER plain;
    std::string longName(230, 'l');
    const REFUSAL refusals[] = {
        {"kein/Ordner.sc1", "Der Ordner \"*/kein\" ist nicht vorhanden."},
        {"fest.sc1", "Die Datei \"*/fest.sc1\" ist schreibgeschützt."},
        {"Ω.sc1", "Der Name \"*/?.sc1\" enthält Zeichen, mit denen das Programm nicht arbeiten kann."},
        {"a\\b.sc1", "Der Name \"*/a\\b.sc1\" enthält Zeichen, mit denen das Programm nicht arbeiten kann."},
    };
    for (const REFUSAL &row : refusals) {
        std::string text = row.text;
        text.replace(text.find('*'), 1, folder.path);
        EXPECT_EQ(RefusalOf(true, folder.Path(row.file)), Set(("message|Speichern unter|" + text).c_str()));
    }
}

TEST_F(Boxes, NamesOfMoreThan255CharactersAreRefused)
{
    size_t room = 255 - folder.path.size() - 1 - 4; // with the slash and the extension
    std::string longest(room, 'l');
    TFileDialogData data = Hall();
    TypeName(folder.Path(longest));
    ASSERT_TRUE(FileSaveDialog(NULL, data));
    EXPECT_EQ(data.name.size(), 255u);
    std::string longer = folder.Path(longest + "l.sc1");
    EXPECT_EQ(RefusalOf(true, longer),
              "message|Speichern unter|" +
                  Set(("Der Name \"" + longer + "\" ist länger als 255 Zeichen.").c_str()));
    EXPECT_NE(RefusalOf(false, longer).find("255"), std::string::npos);
}

TEST_F(Boxes, OverwritingAsks)
{
    folder.Put("halle.sc1", "x");
    for (bool yes : {false, true}) {
        std::string seen;
        TFileDialogData data = Hall();
        TypeName(folder.Path("halle"));
        AnswerMessage(seen, yes ? WIN_ID_YES : WIN_ID_NO);
        if (!yes)
            GiveUp();
        EXPECT_EQ(FileSaveDialog(NULL, data), yes);
        EXPECT_EQ(seen, "message|Speichern unter|Die Datei \"" + folder.Path("halle.sc1") +
                            "\" ist bereits vorhanden.\nSoll sie ersetzt werden?");
    }
    EXPECT_EQ(folder.Get("halle.sc1"), "x");
}

TEST_F(Boxes, AFolderIsEnteredAndTheDialogGoesOn)
{
    std::filesystem::create_directory(folder.Path("unter"));
    folder.Put("unter/halle.sc1", "x");
    TFileDialogData data = Hall();
    TypeName(folder.Path("unter"));
    TypeName("halle.sc1");
    ASSERT_TRUE(FileOpenDialog(NULL, data));
    EXPECT_EQ(data.name, folder.Name("unter/halle.sc1"));
}

TEST_F(Boxes, DialogsLeaveNoTraceInTheUsersFolder)
{
    folder.Put("halle.sc1", "x");
    std::string former = getenv("XDG_CONFIG_HOME") ? getenv("XDG_CONFIG_HOME") : "";
    setenv("XDG_CONFIG_HOME", folder.path.c_str(), 1);
    TFileDialogData data = Hall();
    TypeName(folder.Path("halle.sc1"));
    EXPECT_TRUE(FileOpenDialog(NULL, data));
    former.empty() ? unsetenv("XDG_CONFIG_HOME") : setenv("XDG_CONFIG_HOME", former.c_str(), 1);
    EXPECT_EQ(folder.List(), std::set<std::string>{"halle.sc1"});
}
} // namespace

TEST(BoxSink, TakesBoxesInThePlaceOfAPersonAndAnswersAsEsc)
{
    TestApplication();
    static std::string heard;
    heard.clear();
    BoxSink former =
        SetBoxSink([](const char *text, bool error) { heard += std::string(text) + (error ? "! " : ". "); });
    EXPECT_EQ(MessageBox(NULL, "Platte voll", "x", WIN_BOX_OK, WIN_ICON_STOP), WIN_ID_OK);
    EXPECT_EQ(MessageBox(NULL, "Sichern", "x", WIN_BOX_YESNOCANCEL, WIN_ICON_QUESTION), WIN_ID_CANCEL);
    EXPECT_EQ(MessageBox(NULL, "Weg damit", "x", WIN_BOX_YESNO, WIN_ICON_QUESTION), WIN_ID_NO);
    EXPECT_EQ(heard, "Platte voll! Sichern. Weg damit. ");
    SetBoxSink(former);
    EXPECT_EQ(former, nullptr);
    EXPECT_EQ(MessageBox(NULL, "wieder", "x", WIN_BOX_OK, WIN_ICON_STOP), WIN_ID_OK);
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 1) << "a box again";
}
