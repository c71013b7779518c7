// The hall's document itself: its fonts and colours, its names, which command it answers when, and what each of
// them does.
#include "zuldoccase.h"

#include "support/recorddc.h"
#include "usr/zulcolors.h"

#include <map>

namespace
{
using testdoor::DialogBox;

/// What the desktop was asked for, and what it answers.
struct DESKTOP {
    int answer = WIN_SHELL_OK;
    bool hasPdf = true;
    std::vector<std::string> calls;
};
DESKTOP desktop;

class Document : public DocCase
{
protected:
    Document()
    {
        desktop = DESKTOP();
        TShellDoor door;
        door.start = [](const char *program, const char *arguments) {
            desktop.calls.push_back(std::string("start|") + program + "|" + arguments);
            return desktop.answer;
        };
        door.canOpen = [](const char *extension) {
            desktop.calls.push_back(std::string("can|") + extension);
            return desktop.hasPdf;
        };
        door.open = [](const char *file) {
            desktop.calls.push_back(std::string("open|") + file);
            return desktop.answer;
        };
        SetShellDoor(door);
    }

    /// Whether the command may be given, as the document answers it.
    bool May(int id)
    {
        TCommandEnabler enabler(id);
        doc->EvCommandEnable(enabler);
        EXPECT_TRUE(enabler.IsAnswered()) << id;
        return enabler.IsEnabled();
    }
};

std::string Shown(const TEdcFontRec &font)
{
    return EdcFormat("%s %d %d", font.name, font.size, font.format);
}
} // namespace

TEST(Fonts, AreThoseOfTheReport)
{
    TZulFonts fonts;
    EXPECT_EQ(Shown(fonts.plain), "Times New Roman 12 0");
    EXPECT_EQ(Shown(fonts.title), "Arial 16 12");
    EXPECT_EQ(Shown(fonts.heading), "Courier New 12 4");
    EXPECT_EQ(Shown(fonts.columns), "Courier New 11 20");
    EXPECT_EQ(Shown(fonts.body), "Courier New 12 0");
    EXPECT_EQ(Shown(fonts.note), "Courier New 12 4");
}

TEST_F(Document, HasTheColoursOfAllPlansInItsComposedPalette)
{
    const TColor colors[] = {
        {100, 100, 100}, {112, 0, 120},   {112, 0, 0},     {150, 0, 0},     {188, 0, 0},     {218, 0, 0},
        {235, 32, 0},    {235, 65, 0},    {235, 95, 0},    {235, 125, 0},   {235, 155, 0},   {235, 185, 0},
        {235, 185, 175}, {112, 0, 120},   {235, 32, 0},    {235, 185, 175}, {230, 160, 125}, {155, 155, 215},
        {125, 125, 185}, {0, 0, 0},       {50, 50, 50},    {66, 66, 66},    {82, 82, 82},    {98, 98, 98},
        {114, 114, 114}, {130, 130, 130}, {146, 146, 146}, {162, 162, 162}, {178, 178, 178}, {194, 194, 194},
        {255, 255, 255}};
    ASSERT_NE(doc->compal, nullptr);
    ASSERT_EQ(doc->compal->entries.size(), std::size(colors));
    for (size_t i = 0; i < std::size(colors); ++i)
        EXPECT_EQ(doc->compal->entries[i], colors[i]) << i;
    const auto *palette = static_cast<const TZulRoomPalette *>(doc->regpal);
    const struct {
        const TEdcColorScale *scale;
        int first, size;
    } scales[] = {{&palette->hallColors, 0, 1},
                  {&palette->mapColors, 1, 12},
                  {&palette->mapColorsCoarse, 13, 3},
                  {&palette->criterionColors, 16, 3},
                  {&palette->greyColors, 19, 12}};
    EXPECT_EQ(palette->count, 31);
    EXPECT_EQ(palette->next, nullptr);
    for (const auto &row : scales) {
        EXPECT_EQ(row.scale->first, row.first);
        EXPECT_EQ(row.scale->size, row.size);
        EXPECT_EQ(row.scale->palette, doc->compal);
    }
}

TEST_F(Document, IsEmptyAtFirst)
{
    EXPECT_EQ(doc->Room(), nullptr);
    EXPECT_EQ(doc->RoomBlock(), nullptr);
    EXPECT_EQ(PartsThere(*doc), "");
    EXPECT_EQ(doc->Parts().size(), 21u);
    EXPECT_EQ(doc->blocks, nullptr);
    EXPECT_EQ(doc->path, nullptr);
    EXPECT_EQ(doc->paper.Width(), 21.0 / 2.54);
    EXPECT_EQ(doc->margins.Left(), 2.0 / 2.54) << "the base's, until there is a hall";
}

TEST_F(Document, HasTheFileTypeOfHalls)
{
    EXPECT_STREQ(doc->FileType(), "SC1 Szenenbeschr.");
}

TEST_F(Document, IsNamedInTheCaption)
{
    EXPECT_EQ(frame->Caption(), "Zulerion");
    New();
    EXPECT_EQ(frame->Caption(), "Zulerion - neu");
    Open(Sample("Werkstatt"));
    EXPECT_EQ(frame->Caption(), "Zulerion - Werkstatt");
    doc->EvCommand(CLOSE);
    EXPECT_EQ(frame->Caption(), "Zulerion");
}

TEST_F(Document, StampsTheDayOfAChangeOnItsClosingLine)
{
    doc->SetModified(); // without a hall there is nothing to stamp
    EXPECT_TRUE(doc->modified);
    doc->modified = false;
    Open(Sample("Werkstatt"));
    ASSERT_NE(doc->Room(), nullptr);
    doc->Room()->Conclusion()->date = 19991231;
    int before = ZulToday();
    doc->SetModified();
    EXPECT_TRUE(doc->modified);
    EXPECT_GE(doc->Room()->Conclusion()->date, before);
    EXPECT_LE(doc->Room()->Conclusion()->date, ZulToday());
    doc->modified = false;
}

TEST_F(Document, AnswersItsCommandsAsTheyCanBeGiven)
{
    const struct {
        int id;
        bool without, with; // a hall
    } table[] = {
        {20001, true, true},   {20003, true, true},   {20005, true, true},   {20007, false, true},
        {20009, false, true},  {20011, false, true},  {20013, false, true},  {20019, false, true},
        {20021, false, true},  {20023, false, true},  {20035, false, false}, {1503, false, true},
        {1505, false, true},   {1507, false, true},   {1509, false, true},   {1523, false, true},
        {1527, false, true},   {1511, true, true},    {1513, true, true},    {1517, true, true},
        {1519, true, true},    {1521, true, true},    {1525, false, true},   {1529, true, true},
        {21003, false, false}, {21011, false, false}, {21001, false, false}, {2001, false, false},
        {1501, false, false},  {1502, false, false},  {1504, false, false},  {1515, false, false},
        {1531, false, false},
    };
    for (const auto &row : table)
        EXPECT_EQ(May(row.id), row.without) << row.id;
    New();
    for (const auto &row : table)
        EXPECT_EQ(May(row.id), row.with) << row.id;
    doc->EvCommand(CLOSE);
    for (const auto &row : table)
        EXPECT_EQ(May(row.id), row.without) << row.id;
}

TEST_F(Document, OffersTheManualWhereItLies)
{
    UseProgramFolder(folder.path);
    EXPECT_FALSE(May(1529));
    folder.Put("Torvane.pdf", "%PDF");
    EXPECT_TRUE(May(1529));
}

TEST_F(Document, KnowsNoOtherCommands)
{
    New();
    for (int id : {0, 1, 1501, 1502, 1504, 1515, 1531, 2001, 20002, 20099, 21011}) {
        bool known = doc->DoCommand(id);
        EXPECT_EQ(known, id == 1501) << id; // the program's own, which nobody can give
    }
    EXPECT_NE(doc->Room(), nullptr);
}

// The dialogs over the hall's data

const std::map<int, std::string> dataDialogs = {{1503, "Einleitungstext"},    {1505, "Heizperiode"},
                                                {1507, "Baukonstruktion"},    {1509, "W\xE4rmequellen"},
                                                {1523, "Arbeitsbedingungen"}, {1527, "Schlu\xDFtext"}};

TEST_F(Document, OpensNoDataDialogWithoutAHall)
{
    for (const auto &[id, caption] : dataDialogs) {
        doc->EvCommand(id);
        EXPECT_TRUE(doc->DoCommand(id)) << "it is its command all the same";
    }
    EXPECT_FALSE(doc->modified);
}

TEST_F(Document, IsUnchangedByACancelledDialog)
{
    New();
    FreshParts(*doc);
    doc->Room()->Conclusion()->date = 19991231;
    for (const auto &[id, caption] : dataDialogs) {
        InDialog(caption, [](DialogBox &box) { box.Click(WIN_ID_CANCEL); });
        doc->EvCommand(id);
        EXPECT_EQ(testdoor::PendingScripts(), 0) << caption;
        EXPECT_FALSE(doc->modified) << caption;
        EXPECT_EQ(FreshParts(*doc), "") << caption;
        EXPECT_EQ(doc->Room()->Conclusion()->date, 19991231) << caption;
    }
}

TEST_F(Document, RebuildsItsTextsAndIsChangedBehindAConfirmedDialog)
{
    New();
    for (const auto &[id, caption] : dataDialogs) {
        doc->modified = false;
        doc->Room()->Conclusion()->date = 19991231;
        FreshParts(*doc);
        InDialog(caption, [](DialogBox &box) { box.Click(WIN_ID_OK); });
        doc->EvCommand(id);
        EXPECT_EQ(testdoor::PendingScripts(), 0) << caption;
        EXPECT_TRUE(doc->modified) << caption;
        EXPECT_EQ(FreshParts(*doc), "BT")
            << caption; // what a hall without anything has: input and closing texts
        EXPECT_EQ(doc->obsolete, 0) << caption;
        EXPECT_EQ(doc->Room()->Conclusion()->date, ZulToday()) << caption;
        EXPECT_TRUE(ChainIsTheParts(*doc)) << caption;
    }
    doc->modified = false;
}

TEST_F(Document, TakesWhatADialogWasToldIntoTheHall)
{
    New();
    InDialog("Heizperiode", [](DialogBox &box) {
        box.Type(100, "213");
        box.Click(WIN_ID_OK);
    });
    doc->EvCommand(1505);
    EXPECT_EQ(doc->Room()->Data()->periodDays, 213);
    InDialog("Einleitungstext", [](DialogBox &box) {
        box.Type(100, "Werk 3");
        box.Click(WIN_ID_OK);
    });
    doc->EvCommand(1503);
    EXPECT_STREQ(doc->Room()->Article()->head, "Werk 3");
    InDialog("Schlu\xDFtext", [](DialogBox &box) {
        box.Type(102, "M. Kern");
        box.Click(WIN_ID_OK);
    });
    doc->EvCommand(1527);
    EXPECT_STREQ(doc->Room()->Conclusion()->author, "M. Kern");
    doc->modified = false;
}

// Catalogues, help, manual, update

TEST_F(Document, EditsItsCataloguesWithAndWithoutAHall)
{
    const struct {
        int id;
        const char *caption;
        int close;
    } table[] = {{1511, "Katalog der Bauelemente", 110}, {1513, "Katalog der Warmluftaggregate", 105}};
    std::filesystem::copy(ZUL_PROGRAM_FOLDER "/Katalogy", folder.Path("Katalogy"));
    std::filesystem::copy(ZUL_PROGRAM_FOLDER "/Torvane.lgo", folder.path);
    UseProgramFolder(folder.path);
    for (int round = 0; round < 2; ++round) {
        for (const auto &row : table) {
            size_t entries = 0;
            InDialog(row.caption, [&](DialogBox &box) {
                entries = box.Entries(100).size();
                box.Click(row.close);
            });
            doc->EvCommand(row.id);
            EXPECT_GT(entries, 0u) << row.caption;
        }
        EXPECT_FALSE(doc->modified) << "a catalogue is no part of a hall";
        if (round == 0)
            New();
    }
}

TEST_F(Document, ShowsTheHelpAtItsContexts)
{
    const std::string helpFile = ZUL_PROGRAM_FOLDER "/Zulerio.hlp";
    const std::string viewer = "start|" ZUL_PROGRAM_FOLDER "/zulhelp|";
    for (int id : {1517, 1519, 1521})
        doc->EvCommand(id);
    EXPECT_EQ(desktop.calls, (std::vector<std::string>{viewer + helpFile, viewer + helpFile + "\n11",
                                                       viewer + helpFile + "\n10"}));
}

TEST_F(Document, StartsTheViewerBesideTheProgramWhereOneLies)
{
    folder.Put("Winhlp32.exe", "");
    UseProgramFolder(folder.path);
    doc->EvCommand(1517);
    EXPECT_EQ(desktop.calls, (std::vector<std::string>{"start|" + folder.Path("Winhlp32.exe") + "|" +
                                                       folder.Path("Zulerio.hlp")}));
}

TEST_F(Document, SaysWhenTheHelpCannotBeShown)
{
    for (int result : {0, 2, 5, 31, 32}) {
        desktop.answer = result;
        Expect("Unexpected situation");
        doc->EvCommand(1517);
        EXPECT_EQ(said, EdcFormat("Cannot start Winhlp32 viewer (%d)", result));
    }
    desktop.answer = 33;
    doc->EvCommand(1517);
}

TEST_F(Document, OpensTheManualWithTheDesktopsProgram)
{
    doc->EvCommand(1529);
    EXPECT_EQ(desktop.calls,
              (std::vector<std::string>{"can|.pdf", "open|" + NameOf(ZUL_PROGRAM_FOLDER "/Torvane.pdf")}));
}

TEST_F(Document, SaysWhatIsMissingForTheManual)
{
    const std::string note = "Zur Durchsicht des gew\xFCnschten Dokuments\nist Acrobat Reader zu installieren.";
    desktop.hasPdf = false;
    Expect(".pdf");
    doc->EvCommand(1529);
    EXPECT_EQ(said, note);
    EXPECT_EQ(desktop.calls, (std::vector<std::string>{"can|.pdf"}));

    said.clear();
    desktop.hasPdf = true;
    desktop.answer = WIN_SHELL_NOPROGRAM;
    Expect(".pdf");
    doc->EvCommand(1529);
    EXPECT_EQ(said, note);
}

TEST_F(Document, OpensNothingButPdfFilesAsManuals)
{
    Expect(".pdf");
    ZulShowPdf(doc.get(), "\\tmp\\handbuch.txt");
    EXPECT_TRUE(desktop.calls.empty());
    ZulShowPdf(doc.get(), "\\tmp\\handbuch.PDF");
    EXPECT_EQ(desktop.calls.size(), 2u);
}

TEST_F(Document, UpdatesByTheButtonInALaterTurn)
{
    static int asked;
    asked = 0;
    TZulRoomBlock::askParams = [](TZulUpdateData &) {
        ++asked;
        return true;
    };
    New();
    doc->EvCommand(1525);
    EXPECT_EQ(asked, 0) << "the command is only posted";
    testdoor::Settle();
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(PartsThere(*doc), "ABCGIKMOQT");
    EXPECT_FALSE(doc->modified) << "a calculation alone changes nothing";
    doc->EvCommand(RECALC);
    EXPECT_EQ(asked, 2);
}

TEST_F(Document, ShowsTheUpdateDialogAndKeepsItsParametersAsLongAsTheHall)
{
    TZulRoomBlock::askParams = NULL;
    New();
    InDialog("Aktualisierung", [](DialogBox &box) {
        EXPECT_EQ(box.Text(100), "0");
        box.Type(100, "1.5");
        box.Click(WIN_ID_OK);
    });
    doc->EvCommand(RECALC);
    EXPECT_EQ(doc->MapInfo().height, 1.5);
    InDialog("Aktualisierung", [](DialogBox &box) {
        EXPECT_EQ(box.Text(100), "1.5");
        box.Click(WIN_ID_CANCEL);
    });
    doc->EvCommand(RECALC);
    New();
    EXPECT_EQ(doc->MapInfo().height, 0.0);
    InDialog("Aktualisierung", [](DialogBox &box) {
        EXPECT_EQ(box.Text(100), "0");
        box.Click(WIN_ID_CANCEL);
    });
    doc->EvCommand(RECALC);
}

TEST_F(Document, BeginsAnUpdateThatFailedAgainWithItsDialog)
{
    static int asked;
    static bool answer;
    asked = 0;
    answer = true;
    TZulRoomBlock::askParams = [](TZulUpdateData &) {
        ++asked;
        return answer;
    };
    New("1", "1e9", "5"); // no memory holds its raster
    Expect("Zulerion");
    doc->EvCommand(RECALC);
    EXPECT_EQ(said, "Ungenug Speicher!");
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(doc->obsolete, EDC_RECALC);
    EXPECT_EQ(status.Text(), "Auswertung l\xE4uft . . .") << "until the next text";
    EXPECT_TRUE(ChainIsTheParts(*doc));
    answer = false;
    doc->Refresh(0);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(doc->obsolete, 0);
    EXPECT_EQ(PartsThere(*doc), "ABCGIKMOQT");
    EXPECT_TRUE(ChainIsTheParts(*doc));
}
