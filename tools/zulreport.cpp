// zulreport: opens a hall as the program does, runs its evaluation and prints its report, without a window.
// What comes out is what the program prints.
#include "lib/disk.h"
#include "lib/charstr.h"
#include "tools/console.h"
#include "tools/consolepages.h"
#include "tools/passoptions.h"
#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "usr/zuldoc.h"
#include "win/dc.h"
#include "win/printer.h"
#include "win/surface.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstring>
#include <memory>

#include "lib/xon.h"

namespace
{
enum { DONE = 0, FAILED = 1, MISUSED = 2 }; // exit status
enum { DPI_MIN = 20, DPI_MAX = 600 };

struct ReportWishes {
    PassArguments pass;
    ZulPassParams params;
    std::string pdf; // native paths
    std::string png; // "": no pictures of pages
    int dpi = 100;
};

ZulPassParams runParams; // what the dialog of a run would ask for

void Fill(TEdcFloat &value, const std::optional<double> &given)
{
    if (given)
        value.Set(*given);
    else
        value.id = EDC_VUDF;
}

bool TakeParams(TZulUpdateData &data)
{
    data.height.Set(runParams.height);
    Fill(data.minInte, runParams.minInte);
    Fill(data.maxInte, runParams.maxInte);
    Fill(data.airTemp, runParams.airTemp);
    data.draft.Set(runParams.draft ? 1 : 0);
    data.fineScale.Set(runParams.fineScale ? 1 : 0);
    return true;
}

/// Opens the hall as the document of the program.
void OpenHall(TEdcDocument &doc, const std::string &path)
{
    __enter
        CdeFILENAME name;
        ConsoleName(name, path.c_str(), XFOPEN); __test;
        bool isOpen = doc.ReadFile(name); __test;
        ASSERT(isOpen);
        size_t bytes = std::strlen(name) + 1;
        doc.path = new char[bytes];
        std::memcpy(doc.path, name, bytes);
    __point
    __treat
}

/// The command of an update, with the wishes in the place of its dialog.
void Evaluate(TEdcDocument &doc, const ZulPassParams &params)
{
    __enter
        runParams = params;
        TZulRoomBlock::askParams = TakeParams;
        doc.Refresh(EDC_RECALC); __test;
    __point
    __treat
    TZulRoomBlock::askParams = NULL;
}

/// The printer says why itself, but not always where.
bool PrintPdf(TEdcDocument &doc, const std::string &path)
{
    bool isPrinted = false;
    __enter
        LayOutForPaper(doc); __test;
        TEdcPrintout printout(doc);
        doc.printer->SetPdf(path);
        isPrinted = doc.printer->Print(NULL, printout, false); __test;
        if (!isPrinted) {
            std::string shown = path;
            ConsoleDisarm(shown.data());
            std::fprintf(stderr, "zulreport: \"%s\" ist nicht geschrieben.\n", shown.c_str());
        }
    __point
    __treat
    return isPrinted;
}

std::string PagePath(const std::string &prefix, int page)
{
    return prefix + "-" + std::to_string(page) + ".png";
}

/// A picture takes its file's place when it is whole.
void SavePage(TSurface &surface, const std::string &path)
{
    __enter
        CdeFILENAME name;
        ConsoleName(name, path.c_str(), XFCREATE); __test;
        std::string growing = path + "~";
        if (!surface.SavePng(growing.c_str()) || disk->rename(growing.c_str(), path.c_str()) != 0) {
            disk->unlink(growing.c_str());
            StrCopy(xFCreateName, name, X_NAME);
            __raise(XFCREATE);
        }
    __point
    __treat
}

/// Draws a page as the printer would, on an image of the paper's size.
void PaintPage(TEdcDocument &doc, const ReportWishes &wishes, int page, TPrintout &printout)
{
    __enter
        TSize size = {EdcInchToPixel(doc.paper.Width(), 1.0, wishes.dpi),
                      EdcInchToPixel(doc.paper.Height(), 1.0, wishes.dpi)};
        std::unique_ptr<TSurface> surface = TSurface::Image(size, wishes.dpi);
        {
            TSurfaceDC dc(*surface);
            printout.SetDC(&dc);
            if (page == 1)
                printout.BeginPrinting();
            if (!printout.HasFailed())
                printout.PrintPage(page, {0, 0, size.cx, size.cy}, 0);
            printout.SetDC(NULL);
        }
        if (!printout.HasFailed()) {
            SavePage(*surface, PagePath(wishes.png, page)); __test;
        }
    __point
    __treat
}

/// The layout of the first page's image serves them all.
bool PaintPages(TEdcDocument &doc, const ReportWishes &wishes)
{
    bool isPainted = false;
    __enter
        TEdcPrintout printout(doc);
        PaintPage(doc, wishes, 1, printout);
        for (int page = 2; page <= doc.PageCount() && !XPending() && !printout.HasFailed(); ++page)
            PaintPage(doc, wishes, page, printout);
        isPainted = !XPending() && !printout.HasFailed();
        XCODE code = std::exchange(xCode, XNULL); // the document is unlocked in any case
        printout.EndPrinting();
        xCode = code; __test;
    __point
    __treat
    return isPainted;
}

int Report(const ReportWishes &wishes)
{
    int status = FAILED;
    __enter
        FindProgramPath(); __test;
        ChooseModelFolder(wishes.pass.models); __test;
        ZulStartUp(); __test;
        TEdcDocument &doc = *AppDocument();
        OpenHall(doc, wishes.pass.hall); __test;
        Evaluate(doc, wishes.params); __test;
        bool isDone = PrintPdf(doc, wishes.pdf); __test;
        if (isDone && !wishes.png.empty()) {
            isDone = PaintPages(doc, wishes); __test;
        }
        status = isDone ? DONE : FAILED;
    __point
        __repair;
        __report;
        status = FAILED;
    __treat
    return status;
}

/// Pictures get numbers behind their prefix; none may fall on the hall or the report.
bool IsPagePath(const std::string &path, const std::string &prefix)
{
    std::string start = CanonicalPath(prefix + "-"), whole = CanonicalPath(path);
    if (!whole.starts_with(start) || !whole.ends_with(".png"))
        return false;
    std::string number = whole.substr(start.size(), whole.size() - start.size() - 4);
    return !number.empty() && number.find_first_not_of("0123456789") == std::string::npos;
}

void CheckFiles(const ReportWishes &wishes)
{
    if (CanonicalPath(wishes.pdf) == CanonicalPath(wishes.pass.hall))
        throw WrongUsage{"der Bericht soll über die Halle geschrieben werden"};
    for (const std::string &path : {wishes.pass.hall, wishes.pdf})
        if (!wishes.png.empty() && IsPagePath(path, wishes.png))
            throw WrongUsage{"\"" + path + "\" trägt den Namen eines Bildes von --png"};
}

void Describe(CLI::App &app, ReportWishes &wishes)
{
    DescribeHall(app, wishes.pass);
    AddFile(app, "OUT.pdf", wishes.pdf, "der Bericht", " ");
    app.get_option("OUT.pdf")->required();
    DescribePass(app, wishes.pass);
    AddFile(app, "--png", wishes.png, "die Seiten auch als Bilder: PREFIX-1.png, PREFIX-2.png ...", "PREFIX");
    app.add_option("--dpi", wishes.dpi, "Auflösung dieser Bilder, 20 bis 600 Punkte je Zoll (100)")
        ->type_name("N")
        ->check([](const std::string &text) {
            bool isNumber =
                !text.empty() && text.size() < 4 && text.find_first_not_of("0123456789") == std::string::npos;
            int dpi = isNumber ? std::stoi(text) : 0;
            return dpi >= DPI_MIN && dpi <= DPI_MAX ? std::string()
                                                    : "\"" + text + "\" ist keine Zahl von 20 bis 600";
        });
}

int Refuse(const std::string &text)
{
    std::fprintf(stderr, "zulreport: %s\nHilfe: zulreport --help\n", text.c_str());
    return MISUSED;
}

/// @return whether the report is to be made; else `status` is what the program ends with
bool ReadWishes(int argc, char **argv, ReportWishes &wishes, int &status)
{
    CLI::App app(
        "Macht aus einer Halle den Bericht als PDF: Pläne, Listen, Auswertung und hygienische Prüfung.",
        "zulreport");
    Describe(app, wishes);
    try {
        app.parse(ArgumentsToParse(argc, argv));
        ReadPass(wishes.pass, wishes.params);
        CheckFiles(wishes);
        return true;
    } catch (const CLI::CallForHelp &) {
        std::printf("%s", app.help().c_str());
        status = DONE;
    } catch (const CLI::RequiredError &) {
        status = Refuse("gebraucht werden die Halle (HALL.sc1) und der Bericht (OUT.pdf)");
    } catch (const CLI::ParseError &error) {
        status = Refuse(RefusalText(app, error));
    } catch (const WrongUsage &wrong) {
        status = Refuse(wrong.text);
    }
    return false;
}

int Run(int argc, char **argv)
{
    int status = FAILED;
    __enter
        ReportWishes wishes;
        if (ReadWishes(argc, argv, wishes, status)) {
            PagesWithoutScreen();
            int own = 1; // the others are none of the toolkit's
            TEdcApplication application(own, argv);
            PagesSpeakToTerminal();
            status = Report(wishes);
            ZulShutDown();
        }
    __point
        __repair;
        __report;
        status = FAILED;
    __treat
    return status;
}
} // namespace

int main(int argc, char **argv)
{
    ConsoleStart();
    return Run(argc, argv);
}
