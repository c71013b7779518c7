// What the document asks of the file dialogs, and what it makes of each of their answers. The dialogs are
// stand-ins here: the real ones have no way to fail on demand.
#include "lib/platform.h"
#include "support/child.h"
#include "support/testblock.h"
#include "win/boxes.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

namespace
{
struct StandIn {
    int opens = 0;
    int saves = 0;
    TFileDialogData asked;
    std::string name; // the answer
    bool chosen = false;
    bool failed = false;
};
StandIn dialog;

bool Answer(TFileDialogData &data)
{
    dialog.asked = data;
    data.failed = dialog.failed;
    if (dialog.chosen)
        data.name = dialog.name;
    return dialog.chosen;
}
} // namespace

bool FileOpenDialog(TWindow *, TFileDialogData &data)
{
    ++dialog.opens;
    return Answer(data);
}

bool FileSaveDialog(TWindow *, TFileDialogData &data)
{
    ++dialog.saves;
    return Answer(data);
}

namespace
{
enum { OPEN = 20005, SAVE_AS = 20011 };

std::string shownMessage;

class FileDialogs : public testing::Test
{
protected:
    void SetUp() override
    {
        dialog = StandIn();
        shownMessage.clear();
        SetMessageSink([](const char *text, bool) { shownMessage = text; });
    }
    void TearDown() override
    {
        SetMessageSink(NULL);
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    }

    TTestDoc doc;
};

struct Type {
    const char *text;
    const char *extension;
};

TEST_F(FileDialogs, TheFirstWordOfTheFileTypeIsTheExtension)
{
    const Type types[] = {
        {"TST Testfile", "tst"}, {"SC1 Szenenbeschr.", "sc1"}, {"XXX File", "xxx"}, {"abc", "abc"},
        {"A-B C", "a"},          {"\xc4\xd6 x", "\xe4\xf6"},   {"9z.q", "9z"},
    };
    for (const Type &row : types) {
        doc.fileType = row.text;
        doc.EvCommand(OPEN);
        EXPECT_EQ(dialog.asked.filter, row.text);
        EXPECT_EQ(dialog.asked.extension, row.extension);
    }
}

TEST_F(FileDialogs, ADocumentOfTheFrameworkItselfHasFilesOfTypeXxx)
{
    TEdcDocument plain;
    plain.EvCommand(OPEN);
    EXPECT_EQ(dialog.asked.filter, "XXX File");
    EXPECT_EQ(dialog.asked.extension, "xxx");
}

TEST_F(FileDialogs, AFileTypeBeginsWithALetterOrADigit)
{
    for (const char *type : {"", " x", "*.tst", "_a"}) {
        doc.fileType = type;
        EXPECT_TRUE(AbortsOnAssertion("ChrIsAlnum(*szFileType)", "usr/edcbase2_files.cpp", [&] {
            SetMessageSink(NULL);
            doc.EvCommand(OPEN);
        })) << type;
    }
}

TEST_F(FileDialogs, OpeningProposesNothingAndSavingTheNameThatTheDocumentHas)
{
    doc.Start("C:\\Hallen\\x.tst");
    doc.EvCommand(OPEN);
    EXPECT_EQ(dialog.asked.name, "");
    doc.EvCommand(SAVE_AS);
    EXPECT_EQ(dialog.asked.name, "C:\\Hallen\\x.tst");
    EXPECT_EQ(dialog.opens, 1);
    EXPECT_EQ(dialog.saves, 1);
    EXPECT_EQ(doc.log.Take(), "");
}

TEST_F(FileDialogs, ADialogThatFailsShowsAMessageWhichACancelDoesNot)
{
    doc.Start("C:\\x.tst");
    for (int command : {OPEN, SAVE_AS}) {
        std::string seen;
        dialog.failed = false;
        doc.EvCommand(command);
        dialog.failed = true;
        testdoor::Script([&seen](testdoor::ModalBox &box) {
            seen = box.Kind() + "|" + box.Caption() + "|" + box.Text();
            box.Answer(WIN_ID_OK);
        });
        doc.EvCommand(command);
        EXPECT_EQ(seen, "message|Unexpected situation|Open/SaveAs dialog fails.");
        EXPECT_EQ(doc.log.Take(), "");
        EXPECT_STREQ(doc.path, "C:\\x.tst");
    }
}

TEST_F(FileDialogs, ANameHas255CharactersAtMost)
{
    doc.Start("C:\\x.tst");
    dialog.chosen = true;
    for (int command : {OPEN, SAVE_AS}) {
        dialog.name = "C:\\" + std::string(253, 'n');
        doc.EvCommand(command);
        EXPECT_EQ(doc.log.Take(), "");
        EXPECT_STREQ(doc.path, "C:\\x.tst");
        EXPECT_NE(shownMessage.find("255"), std::string::npos);
        shownMessage.clear();
    }
    dialog.name = "C:\\" + std::string(252, 'n');
    doc.EvCommand(SAVE_AS);
    EXPECT_EQ(doc.log.Take(), "write ");
    EXPECT_EQ(std::string(doc.path), dialog.name);
    EXPECT_EQ(shownMessage, "");
}
} // namespace
