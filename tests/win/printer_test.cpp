#include "win/printer.h"
#include "support/chance.h"
#include "support/fault.h"
#include "support/folder.h"
#include "support/memdisk.h"
#include "support/pdftext.h"
#include "support/testapp.h"
#include "usr/edcutils.h"
#include "win/boxes.h"
#include "win/dc.h"
#include "win/testdoor.h"
#include "win/utf8.h"

#include "lib/platform.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <new>
#include <sys/stat.h>

namespace
{
/// Three pages, each with two words and a black square of one inch at known places; writes down what is called.
class Sheets : public TPrintout
{
public:
    explicit Sheets(const char *aTitle = "Halle") : TPrintout(aTitle) {}

    void GetDialogInfo(int &minPage, int &maxPage, int &selFrom, int &selTo) override
    {
        minPage = 1;
        maxPage = pages;
        selFrom = selTo = 0;
        Note("info");
    }
    void BeginPrinting() override
    {
        hasDC = dc != NULL;
        Note("begin");
    }
    bool HasPage(int page) override
    {
        Note("has" + std::to_string(page));
        return page <= pages;
    }
    void PrintPage(int page, const TRect &area, unsigned flags) override
    {
        rect = area;
        dpi = dc->DpiX();
        EXPECT_EQ(flags, 0u);
        Draw(page);
        Note("print" + std::to_string(page));
    }
    void EndPrinting() override
    {
        hasDC = hasDC && dc != NULL;
        Note("end");
    }
    void SetFailed() { failed = true; }
    bool HasDC() const { return dc != NULL; }
    TDC &Paper() { return *dc; }

    /// Each page gets a picture that cannot be packed, of about 100 KB.
    void AddNoise()
    {
        noise = std::make_unique<TBitmap>(300, 300);
        TPalette colors;
        for (int i = 0; i < 256; ++i)
            colors.entries.push_back({static_cast<uint8_t>(i), static_cast<uint8_t>(255 - i), 0});
        noise->SetPalette(colors);
        CHANCE chance(7);
        for (int y = 0; y < 300; ++y)
            for (int x = 0; x < 300; ++x)
                noise->SetPixel(x, y, static_cast<uint8_t>(chance.Int(0, 255)));
    }

    int pages = 3;
    std::string calls;
    bool hasDC = false; // from BeginPrinting to EndPrinting
    TRect rect;
    int dpi = 0;
    std::string hookAt; // runs `hook` at the end of that callback
    std::function<void()> hook;

private:
    std::unique_ptr<TBitmap> noise;

    void Note(const std::string &call)
    {
        calls += (calls.empty() ? "" : " ") + call;
        if (call == hookAt)
            hook();
    }

    void Draw(int page)
    {
        std::string word = "Seite" + std::to_string(page);
        TFont font;
        font.height = -dpi / 6; // 12 pt
        dc->SetFont(font);
        dc->SetTextAlign(WIN_TEXT_BASELINE);
        dc->SetOpaque(false);
        dc->TextOut(dpi, 2 * dpi, word.c_str(), static_cast<int>(word.size()));
        dc->TextOut(5 * dpi, 9 * dpi, "unten", 5);
        if (noise)
            dc->StretchBitmap({dpi, 6 * dpi, 2 * dpi, 7 * dpi}, *noise);
        dc->FillRect({3 * dpi, 4 * dpi, 4 * dpi, 5 * dpi}, SolidBrush(WIN_BLACK));
    }
};

class Printing : public testing::Test
{
protected:
    void SetUp() override
    {
        TestApplication();
        EdcUseResources();
        testdoor::PendingScripts();
        testdoor::UnexpectedBoxes();
    }
    void TearDown() override
    {
        EXPECT_EQ(testdoor::PendingScripts(), 0);
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
        SetResTextSink(NULL);
    }

    /// Prints without asking, into a file of the test's folder.
    bool PrintTo(const std::string &path, Sheets &sheets)
    {
        printer.SetPdf(path);
        return printer.Print(NULL, sheets, false);
    }

    /// The next box must be the message that nothing was printed; it is acknowledged.
    void ExpectError()
    {
        testdoor::Script([this](testdoor::ModalBox &box) {
            error = box.Kind() + "|" + box.Caption() + "|" + box.Text();
            box.Answer(WIN_ID_OK);
        });
    }

    std::string ErrorText(const char *reason, const char *title = "Halle")
    {
        return FromUtf8(
            (std::string("message|Druckfehler|'") + title + "' nicht ausgedruckt.\n" + reason).c_str());
    }

    FOLDER folder;
    TPrinter printer;
    std::string error; // what the last message said
};

TEST_F(Printing, TheCallbacksComeInOrder)
{
    Sheets sheets;
    ASSERT_TRUE(PrintTo(folder.Path("a.pdf"), sheets));
    EXPECT_EQ(sheets.calls, "info begin info has1 print1 has2 print2 has3 print3 end");
    EXPECT_EQ(printer.Result(), WIN_PRINT_DONE);
    EXPECT_TRUE(sheets.hasDC);
    EXPECT_FALSE(sheets.HasDC()) << "the context goes with the job";
    EXPECT_EQ(folder.List(), std::set<std::string>{"a.pdf"});
}

TEST_F(Printing, PagesAreA4AndTheTitleIsInTheFile)
{
    Sheets sheets(FromUtf8("Größe „5 €“").c_str());
    ASSERT_TRUE(PrintTo(folder.Path("a.pdf"), sheets));
    std::vector<PdfPage> pages = PdfPages(folder.Path("a.pdf"));
    ASSERT_EQ(pages.size(), 3u);
    for (const PdfPage &page : pages) {
        EXPECT_NEAR(page.width, 210 / 25.4 * 72, 0.5);
        EXPECT_NEAR(page.height, 297 / 25.4 * 72, 0.5);
    }
    EXPECT_EQ(PdfTitle(folder.Path("a.pdf")), "Größe „5 €“");
}

TEST_F(Printing, WordsStandWhereTheyWereDrawnAtAnyResolution)
{
    for (int dpi : {600, 1200}) {
        Sheets sheets;
        printer.SetResolution(dpi);
        ASSERT_TRUE(PrintTo(folder.Path("a.pdf"), sheets));
        EXPECT_EQ(sheets.dpi, dpi);
        EXPECT_NEAR(sheets.rect.Width(), 210 / 25.4 * dpi, 5);
        EXPECT_NEAR(sheets.rect.Height(), 297 / 25.4 * dpi, 5);
        EXPECT_EQ(sheets.rect.TopLeft(), TPoint());
        std::vector<PdfWord> words = PdfWords(folder.Path("a.pdf"));
        ASSERT_EQ(words.size(), 6u);
        for (size_t i = 0; i < words.size(); i += 2) {
            const PdfWord &word = words[i];
            EXPECT_EQ(word.text, "Seite" + std::to_string(i / 2 + 1));
            EXPECT_EQ(word.page, static_cast<int>(i / 2 + 1));
            EXPECT_NEAR(word.x, 72, 0.2);
            EXPECT_NEAR(words[i + 1].x - word.x, 4 * 72, 0.2);
            EXPECT_NEAR(words[i + 1].y - word.y, 7 * 72, 0.2);
        }
    }
}

TEST_F(Printing, AnInchOnPaperIsAnInch)
{
    Sheets sheets;
    ASSERT_TRUE(PrintTo(folder.Path("a.pdf"), sheets));
    PdfRaster page = PdfPixels(folder.Path("a.pdf"), 2, 600);
    auto black = [&](int x, int y) { return page.At(x, y) < 128; };
    int left = 0, right = 0, top = 0, bottom = 0;
    for (int x = 0; x < page.width; ++x)
        if (black(x, 2700) && left == 0)
            left = x;
        else if (black(x, 2700))
            right = x + 1;
    for (int y = 0; y < page.height; ++y)
        if (black(2100, y) && top == 0)
            top = y;
        else if (black(2100, y))
            bottom = y + 1;
    EXPECT_NEAR(left, 1800, 1);
    EXPECT_NEAR(right, 2400, 1);
    EXPECT_NEAR(top, 2400, 1);
    EXPECT_NEAR(bottom, 3000, 1);
}

TEST_F(Printing, BitmapsArePrintedWithoutLoss)
{
    Sheets sheets;
    sheets.pages = 1;
    sheets.hookAt = "print1";
    sheets.hook = [&] {
        TBitmap bitmap(3, 2);
        bitmap.SetPalette(
            {{{0, 0, 0}, {60, 60, 60}, {120, 120, 120}, {180, 180, 180}, {220, 220, 220}, {30, 30, 30}}});
        for (int i = 0; i < 6; ++i)
            bitmap.SetPixel(i % 3, i / 3, static_cast<uint8_t>(i));
        sheets.Paper().StretchBitmap({600, 3600, 600 + 3 * 300, 3600 + 2 * 300}, bitmap);
    };
    ASSERT_TRUE(PrintTo(folder.Path("a.pdf"), sheets));
    std::vector<PdfImage> images = PdfImages(folder.Path("a.pdf"));
    ASSERT_FALSE(images.empty());
    for (const PdfImage &image : images)
        EXPECT_EQ(image.encoding, "image");
    PdfRaster page = PdfPixels(folder.Path("a.pdf"), 1, 600);
    const int values[] = {0, 60, 120, 180, 220, 30};
    for (int i = 0; i < 6; ++i)
        for (int dx : {4, 150, 295}) // up to the edges of each pixel: nothing is smoothed
            EXPECT_NEAR(page.At(600 + i % 3 * 300 + dx, 3600 + i / 3 * 300 + 150), values[i], 1)
                << i << " " << dx;
}

/// Answers the print dialog.
void InPrintDialog(const std::function<void(testdoor::ModalBox &)> &set)
{
    testdoor::Script([set](testdoor::ModalBox &box) {
        set(box);
        box.Answer(WIN_ID_OK);
    });
}

TEST_F(Printing, ThePrintDialogProposesTheTitleAsPdf)
{
    Sheets sheets("Halle 5/6");
    std::string seen, field;
    testdoor::Script([&](testdoor::ModalBox &box) {
        seen = box.Kind() + "|" + box.Caption() + "|" + box.Buttons();
        field = box.FileName();
        box.Answer(WIN_ID_CANCEL);
    });
    EXPECT_FALSE(printer.Print(NULL, sheets, true));
    EXPECT_EQ(printer.Result(), WIN_PRINT_CANCELLED);
    EXPECT_EQ(sheets.calls, "info");
    EXPECT_EQ(seen, "print|Drucken|Abbrechen Drucken Eigenschaften Einstellungen >>");
    EXPECT_EQ(std::filesystem::path(field).filename(), "Halle 5-6.pdf");
    EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(field).parent_path())) << field;
}

TEST_F(Printing, AllPagesAreThoseOfThePaper)
{
    for (bool prompt : {false, true}) {
        Sheets sheets;
        sheets.hookAt = "begin"; // where it is laid out for the paper
        sheets.hook = [&sheets] { sheets.pages = 4; };
        std::string path = folder.Path("alle.pdf");
        if (prompt)
            InPrintDialog([&](testdoor::ModalBox &box) { box.FileName(path); });
        printer.SetPdf(path);
        ASSERT_TRUE(printer.Print(NULL, sheets, prompt));
        EXPECT_EQ(PdfPages(path).size(), 4u);
        std::filesystem::remove(path);
    }
}

TEST_F(Printing, TheChosenRangeIsPrinted)
{
    const struct {
        int from, to;
        const char *calls;
    } rows[] = {
        {1, 1, "info begin has1 print1 end"},
        {2, 3, "info begin has2 print2 has3 print3 end"},
        {3, 3, "info begin has3 print3 end"},
    };
    for (const auto &row : rows) {
        Sheets sheets;
        std::string path = folder.Path(std::to_string(row.from) + ".pdf");
        InPrintDialog([&](testdoor::ModalBox &box) {
            box.Pages(row.from, row.to);
            box.FileName(path);
        });
        ASSERT_TRUE(printer.Print(NULL, sheets, true));
        EXPECT_EQ(sheets.calls, row.calls);
        EXPECT_EQ(static_cast<int>(PdfPages(path).size()), row.to - row.from + 1);
        EXPECT_EQ(sheets.dpi, 600);
    }
}

TEST_F(Printing, ThePrintDialogAsksBeforeItReplacesAFile)
{
    folder.Put("a.pdf", "alt");
    Sheets sheets;
    std::string asked;
    InPrintDialog([&](testdoor::ModalBox &box) { box.FileName(folder.Path("a.pdf")); });
    testdoor::Script([&](testdoor::ModalBox &box) {
        asked = box.Kind();
        box.Answer(WIN_ID_NO);
    });
    testdoor::Script([&](testdoor::ModalBox &box) { box.Answer(WIN_ID_CANCEL); });
    EXPECT_FALSE(printer.Print(NULL, sheets, true));
    EXPECT_EQ(asked, "message");
    EXPECT_EQ(folder.Get("a.pdf"), "alt");

    InPrintDialog([&](testdoor::ModalBox &box) { box.FileName(folder.Path("a.pdf")); });
    testdoor::Script([&](testdoor::ModalBox &box) { box.Answer(WIN_ID_YES); });
    EXPECT_TRUE(printer.Print(NULL, sheets, true));
    EXPECT_EQ(PdfPages(folder.Path("a.pdf")).size(), 3u);
}

TEST_F(Printing, WithoutAPrinterThereIsAMessage)
{
    Sheets sheets;
    ExpectError();
    EXPECT_FALSE(printer.Print(NULL, sheets, false));
    EXPECT_EQ(printer.Result(), WIN_PRINT_NOPRINTER);
    EXPECT_EQ(error, ErrorText("Druck ohne impliziten Drucker nicht möglich."));
    EXPECT_EQ(sheets.calls, "info");
}

TEST_F(Printing, APdfThatCannotBeWrittenGivesItsReasonAndLeavesWhatWasThere)
{
    folder.Put("fest.pdf", "alt");
    std::filesystem::create_directory(folder.Path("ordner.pdf"));
    std::filesystem::create_directory(folder.Path("zu"));
    chmod(folder.Path("fest.pdf").c_str(), 0444);
    chmod(folder.Path("zu").c_str(), 0555);
    chmod(folder.path.c_str(), 0777);
    PLAINUSER plain;
    const struct {
        const char *file;
        const char *why;
    } rows[] = {
        {"kein/a.pdf", "Der Ordner ist nicht vorhanden."},
        {"fest.pdf/a.pdf", "Der Ordner ist nicht vorhanden."},
        {"fest.pdf", "Die Rechte reichen nicht aus."},
        {"zu/a.pdf", "Die Rechte reichen nicht aus."},
        {"ordner.pdf", "An dieser Stelle steht ein Ordner."},
    };
    std::set<std::string> before = folder.List();
    for (const auto &row : rows) {
        Sheets sheets;
        ExpectError();
        EXPECT_FALSE(PrintTo(folder.Path(row.file), sheets)) << row.file;
        EXPECT_EQ(printer.Result(), WIN_PRINT_FAILED);
        std::string reason = "Fehler während des Druckens.\n\"" + folder.Path(row.file) + "\": " + row.why;
        EXPECT_EQ(error, ErrorText(reason.c_str()));
        EXPECT_EQ(sheets.calls, "info");
        EXPECT_EQ(folder.List(), before);
        EXPECT_EQ(folder.Get("fest.pdf"), "alt");
    }
}

TEST_F(Printing, AFullDiskIsToldAndLeavesWhatWasThere)
{
    MemDisk memory;
    MemPut("/mem/a.pdf", "alt");
    Sheets whole;
    whole.AddNoise();
    ASSERT_TRUE(PrintTo("/mem/b.pdf", whole));
    auto total = static_cast<long long>(MemGet("/mem/b.pdf").size());
    MemErase("/mem/b.pdf");
    const struct {
        long long limit; // bytes; 3 are there already
        const char *calls;
    } rows[] = {
        {3, "info begin info has1 print1 end"},
        {3 + total / 2, "info begin info has1 print1 has2 print2 end"},
        {3 + total - 1,
         "info begin info has1 print1 has2 print2 has3 print3 end"}, // the file's own end is missing
    };
    for (const auto &[limit, calls] : rows) {
        Sheets sheets;
        sheets.AddNoise();
        MemLimit(limit);
        ExpectError();
        EXPECT_FALSE(PrintTo("/mem/a.pdf", sheets)) << limit;
        EXPECT_EQ(printer.Result(), WIN_PRINT_DISK);
        EXPECT_EQ(error, ErrorText("Nicht genug Platz auf der Platte."));
        EXPECT_EQ(MemList(), std::vector<std::string>{"/mem/a.pdf"});
        EXPECT_TRUE(MemGet("/mem/a.pdf") == "alt");
        EXPECT_EQ(sheets.calls, calls);
        EXPECT_EQ(MemOpenFiles(), 0);
    }
}

TEST_F(Printing, AFaultOfTheDiskNeverLeavesHalfAPdf)
{
    const FAULT kinds[] = {FAULT::OPEN, FAULT::WRITE, FAULT::SYNC, FAULT::CLOSE, FAULT::RENAME};
    int swept = 0;
    for (FAULT kind : kinds) {
        for (int n = 1, fired = 1; fired > 0; ++n) {
            MemDisk memory;
            MemPut("/mem/a.pdf", "alt");
            Sheets sheets;
            sheets.AddNoise();
            bool printed;
            testdoor::Script([](testdoor::ModalBox &box) { box.Answer(WIN_ID_OK); });
            {
                FaultArm arm(kind, n, false);
                printed = PrintTo("/mem/a.pdf", sheets);
                fired = FaultsFired();
            }
            int unused = testdoor::PendingScripts();
            EXPECT_EQ(printed, fired == 0) << FaultName(kind) << " " << n;
            EXPECT_EQ(unused, printed ? 1 : 0);
            EXPECT_EQ(MemList(), std::vector<std::string>{"/mem/a.pdf"}) << FaultName(kind) << " " << n;
            EXPECT_EQ(MemGet("/mem/a.pdf") == "alt", !printed);
            EXPECT_EQ(MemOpenFiles(), 0);
            swept += fired;
        }
    }
    EXPECT_GT(swept, 5);
}

TEST_F(Printing, AbortingEndsTheJobBeforeThePage)
{
    folder.Put("a.pdf", "alt");
    for (int page : {1, 2, 3}) {
        Sheets sheets;
        std::string shown;
        testdoor::ScriptAbort(page, [&](testdoor::ModalBox &box) {
            shown = box.Kind() + "|" + box.Caption() + "|" + box.Text() + "|" + box.Buttons();
            box.Answer(WIN_ID_CANCEL);
        });
        ExpectError();
        EXPECT_FALSE(PrintTo(folder.Path("a.pdf"), sheets));
        EXPECT_EQ(printer.Result(), WIN_PRINT_ABORTED);
        EXPECT_EQ(error, ErrorText("Druck abgebrochen."));
        EXPECT_EQ(shown, "abort|Druck|Jetzt drucke ich Seite " + std::to_string(page) +
                             "\nbis 3\n'Halle' auf\nPDF auf " + folder.Path("a.pdf") + "|Abbrechen");
        std::string calls = "info begin info";
        for (int i = 1; i < page; ++i)
            calls += " has" + std::to_string(i) + " print" + std::to_string(i);
        EXPECT_EQ(sheets.calls, calls + " end");
        EXPECT_EQ(folder.Get("a.pdf"), "alt");
        EXPECT_EQ(folder.List(), std::set<std::string>{"a.pdf"});
    }
}

TEST_F(Printing, TheAbortDialogStartsWithItsPlainText)
{
    Sheets sheets;
    std::string text;
    testdoor::ScriptAbort(0, [&](testdoor::ModalBox &box) { text = box.Text(); });
    EXPECT_TRUE(PrintTo(folder.Path("a.pdf"), sheets));
    EXPECT_EQ(text.substr(0, text.find('\n')), FromUtf8("Druck verläuft"));
}

TEST_F(Printing, EscEndsTheJobToo)
{
    Sheets sheets;
    testdoor::ScriptAbort(2, [&](testdoor::ModalBox &box) { box.Press("Esc"); });
    ExpectError();
    EXPECT_FALSE(PrintTo(folder.Path("a.pdf"), sheets));
    EXPECT_EQ(printer.Result(), WIN_PRINT_ABORTED);
}

TEST_F(Printing, AFailureOfACallbackEndsTheJobAndStaysPending)
{
    const struct {
        const char *at;
        const char *calls;
    } rows[] = {
        {"info", "info"},
        {"begin", "info begin end"},
        {"has2", "info begin info has1 print1 has2 end"},
        {"print1", "info begin info has1 print1 end"},
        {"print3", "info begin info has1 print1 has2 print2 has3 print3 end"},
        {"end", "info begin info has1 print1 has2 print2 has3 print3 end"},
    };
    for (const auto &row : rows) {
        Sheets sheets;
        sheets.hookAt = row.at;
        sheets.hook = [] { XRaise(XLIMIT, "here.cpp", 17); };
        EXPECT_FALSE(PrintTo(folder.Path("a.pdf"), sheets)) << row.at;
        EXPECT_EQ(xCode, XLIMIT) << row.at;
        EXPECT_EQ(xLine, 17);
        xCode = XNULL;
        EXPECT_EQ(printer.Result(), WIN_PRINT_FAILED);
        EXPECT_EQ(sheets.calls, row.calls);
        EXPECT_TRUE(folder.List().empty()) << row.at;
    }
}

TEST_F(Printing, AnExceptionOfACallbackIsAPendingFailure)
{
    for (const char *at : {"begin", "has1", "print2", "end"}) {
        Sheets sheets;
        sheets.hookAt = at;
        sheets.hook = [] { throw std::bad_alloc(); };
        EXPECT_FALSE(PrintTo(folder.Path("a.pdf"), sheets)) << at;
        EXPECT_EQ(xCode, XALLOC);
        xCode = XNULL;
        EXPECT_EQ(printer.Result(), WIN_PRINT_MEMORY);
        EXPECT_TRUE(folder.List().empty());
    }
}

TEST_F(Printing, TheFirstFailureCountsWhereTheEndFailsToo)
{
    Sheets sheets;
    sheets.hookAt = "print1";
    sheets.hook = [&] {
        sheets.hookAt = "end";
        sheets.hook = [] {
            EXPECT_EQ(xCode, XNULL) << "the end must be able to work";
            XRaise(XFREAD, "end.cpp", 2);
        };
        XRaise(XLIMIT, "here.cpp", 17);
    };
    EXPECT_FALSE(PrintTo(folder.Path("a.pdf"), sheets));
    EXPECT_EQ(xCode, XLIMIT);
    xCode = XNULL;
}

TEST_F(Printing, APrintoutThatHasReportedAFailureEndsTheJob)
{
    for (const char *at : {"begin", "print2"}) {
        Sheets sheets;
        sheets.hookAt = at;
        sheets.hook = [&] { sheets.SetFailed(); };
        ExpectError();
        EXPECT_FALSE(PrintTo(folder.Path("a.pdf"), sheets)) << at;
        EXPECT_EQ(printer.Result(), WIN_PRINT_FAILED);
        EXPECT_EQ(error, ErrorText("Fehler während des Druckens."));
        EXPECT_TRUE(folder.List().empty());
        EXPECT_EQ(sheets.calls.substr(sheets.calls.size() - 3), "end");
    }
}

TEST_F(Printing, NothingPrintsWhileSomethingPrints)
{
    Sheets sheets, inner;
    TPrinter other;
    sheets.hookAt = "print2";
    sheets.hook = [&] {
        EXPECT_FALSE(printer.Print(NULL, inner, true));
        other.SetPdf(folder.Path("b.pdf"));
        EXPECT_FALSE(other.Print(NULL, inner, false));
    };
    EXPECT_TRUE(PrintTo(folder.Path("a.pdf"), sheets));
    EXPECT_EQ(inner.calls, "");
    EXPECT_EQ(folder.List(), std::set<std::string>{"a.pdf"});
    EXPECT_TRUE(PrintTo(folder.Path("b.pdf"), inner)) << "and it is free again behind the job";
}

TEST_F(Printing, AJobWithoutAPageLeavesNoFile)
{
    Sheets sheets;
    sheets.pages = 0;
    ExpectError();
    EXPECT_FALSE(PrintTo(folder.Path("a.pdf"), sheets));
    EXPECT_EQ(printer.Result(), WIN_PRINT_FAILED);
    EXPECT_TRUE(folder.List().empty());
}

TEST_F(Printing, ALinkKeepsPointingToThePdf)
{
    std::filesystem::create_directory(folder.Path("unter"));
    folder.Put("unter/echt.pdf", "alt");
    std::filesystem::create_symlink("unter/echt.pdf", folder.Path("a.pdf"));
    Sheets sheets;
    ASSERT_TRUE(PrintTo(folder.Path("a.pdf"), sheets));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("a.pdf")));
    EXPECT_EQ(PdfPages(folder.Path("unter/echt.pdf")).size(), 3u);
}
} // namespace
