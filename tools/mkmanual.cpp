// mkmanual: prints the manual from its chapters, with the framework's own pages. The build runs it; it is no
// program of the program folder. A chapter is UTF-8 text, paragraphs parted by empty lines, with marks at the
// start of a line:
//     = title of the manual     == chapter     === section     - point     1. step     | term | explanation
// Within texts ^ lifts, _ lowers and ~ is a blank that holds, as everywhere in reports.
#include "lib/charstr.h"
#include "lib/cde.h"
#include "tools/console.h"
#include "tools/consolepages.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcblks.h"
#include "usr/edcutils.h"
#include "win/dc.h"
#include "win/printer.h"
#include "win/utf8.h"

#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <vector>

#include "lib/xon.h"

namespace
{
enum { DONE = 0, FAILED = 1, MISUSED = 2 }; // exit status

/// A piece of the manual, texts in the system's character set.
struct Piece {
    enum Kind { TITLE, CHAPTER, SECTION, POINT, STEP, TERM, PARAGRAPH };
    Kind kind;
    std::string text;
    std::string mark; // of a step, "1."; the term
};

std::string Trimmed(const std::string &text)
{
    size_t begin = text.find_first_not_of(' ');
    size_t end = text.find_last_not_of(" \r");
    return begin == std::string::npos ? "" : text.substr(begin, end + 1 - begin);
}

/// Takes the mark off the line that begins a piece.
Piece Begin(const std::string &line)
{
    const struct {
        const char *mark;
        Piece::Kind kind;
    } marks[] = {{"=== ", Piece::SECTION}, {"== ", Piece::CHAPTER}, {"= ", Piece::TITLE}, {"- ", Piece::POINT}};
    for (const auto &entry : marks)
        if (line.starts_with(entry.mark))
            return {entry.kind, Trimmed(line.substr(std::string(entry.mark).size())), ""};
    size_t digits = line.find_first_not_of("0123456789");
    if (digits != 0 && digits != std::string::npos && line.compare(digits, 2, ". ") == 0)
        return {Piece::STEP, Trimmed(line.substr(digits + 1)), line.substr(0, digits + 1)};
    size_t bar = line.starts_with("| ") ? line.find(" | ", 2) : std::string::npos;
    if (bar != std::string::npos)
        return {Piece::TERM, Trimmed(line.substr(bar + 3)), Trimmed(line.substr(2, bar - 2))};
    return {Piece::PARAGRAPH, line, ""};
}

bool BeginsPiece(const std::string &line)
{
    return Begin(line).kind != Piece::PARAGRAPH;
}

/// Appends the pieces of a chapter. False where it cannot be read or holds other characters than ours.
bool ReadChapter(const std::string &path, std::vector<Piece> &pieces)
{
    std::ifstream in(path);
    bool isOpen = false; // a piece takes the lines that follow
    for (std::string raw; std::getline(in, raw);) {
        std::string text(raw.size() + 1, '\0');
        if (!TextFromUtf8(text.data(), raw.c_str(), static_cast<int>(text.size())))
            return false;
        std::string line = Trimmed(text.c_str());
        if (line.empty() || BeginsPiece(line) || !isOpen) {
            if (!line.empty())
                pieces.push_back(Begin(line));
        } else {
            pieces.back().text += " " + line;
        }
        isOpen = !line.empty();
    }
    return in.eof() && !pieces.empty();
}

class ManualDoc : public TEdcDocument
{
public:
    ManualDoc()
    {
        title.Set("Arial", 26, EDC_TfBOLD | EDC_TfLEFT);
        chapter.Set("Arial", 17, EDC_TfBOLD | EDC_TfLEFT);
        section.Set("Arial", 13, EDC_TfBOLD | EDC_TfLEFT);
        body.Set("Arial", 11, EDC_TfLEFT);
        term.Set("Arial", 11, EDC_TfBOLD | EDC_TfLEFT);
        SetPaper(TEdcSize(21.0, 29.7, EDC_UCM));
        SetMargins(TEdcMargins(2.5, 2.0, 2.0, 2.5, EDC_UCM));
    }
    ~ManualDoc() override { RemoveAllBlocks(); }

    void Fill(const std::vector<Piece> &pieces);

private:
    struct Style {
        double width; // share of the page
        double top;   // points
        unsigned options;
    };
    TEdcTextBlock *Add(const std::string &text, const TEdcFontRec &font, const Style &style);
    void AddPair(const std::string &mark, const TEdcFontRec &markFont, double width, const std::string &text);
    void AddPiece(const Piece &piece);

    TEdcFontRec title, chapter, section, body, term;
};

TEdcTextBlock *ManualDoc::Add(const std::string &text, const TEdcFontRec &font, const Style &style)
{
    TEdcTextBlock *blk = NULL;
    __enter
        blk = new TEdcTextBlock();
        blk->SetText(text.c_str()); __test;
        blk->SetFontRec(&font);
        blk->SetSize(style.width, 0);
        blk->SetMargins(TEdcMargins(0, style.top, 0, 0, EDC_UPT));
        blk->SetOptions(style.options);
        LinkBlock(blk, NULL, true); __test;
    __point
        delete blk;
        blk = NULL;
    __treat
    return blk;
}

/// A mark or term in a column of its own, the text beside it.
void ManualDoc::AddPair(const std::string &mark, const TEdcFontRec &markFont, double width,
                        const std::string &text)
{
    __enter
        Add(mark, markFont, {width, 5, EDC_BoROW}); __test;
        Add(text, body, {1 - width, 5, 0}); __test;
    __point
    __treat
}

void ManualDoc::AddPiece(const Piece &piece)
{
    bool isFirst = blocks == NULL;
    unsigned newPage = isFirst ? 0u : static_cast<unsigned>(EDC_BoPAGE);
    switch (piece.kind) {
    case Piece::TITLE:
        Add(piece.text, title, {1, 0, newPage | EDC_BoKEEP});
        break;
    case Piece::CHAPTER:
        Add(piece.text, chapter, {1, 28, EDC_BoKEEP});
        break;
    case Piece::SECTION:
        Add(piece.text, section, {1, 16, EDC_BoKEEP});
        break;
    case Piece::POINT:
        AddPair("\x95", body, 0.035, piece.text);
        break;
    case Piece::STEP:
        AddPair(piece.mark, body, 0.045, piece.text);
        break;
    case Piece::TERM:
        AddPair(piece.mark, term, 0.30, piece.text);
        break;
    case Piece::PARAGRAPH:
        Add(piece.text, body, {1, 8, 0});
        break;
    }
}

void ManualDoc::Fill(const std::vector<Piece> &pieces)
{
    __enter
        for (const Piece &piece : pieces) {
            AddPiece(piece); __test;
        }
        path = new char[1]; // a document without a name: there is one
        path[0] = EOS;
        Obsolete(EDC_LAYOUT);
    __point
    __treat
}

/// The document with the manual's name, and a number at the foot of each page.
class ManualPrintout : public TEdcPrintout
{
public:
    ManualPrintout(ManualDoc &manual, const std::string &aTitle) : TEdcPrintout(manual), caption(aTitle)
    {
        title = aTitle;
    }

    void PrintPage(int page, const TRect &rect, unsigned flags) override
    {
        TEdcPrintout::PrintPage(page, rect, flags);
        TDCState former = dc->State();
        dc->SetFont({.face = "Arial", .height = -EdcInchToPixel(9.0 / 72, 1.0, dc->DpiY())});
        dc->SetOpaque(false);
        dc->SetPen({});
        int left = EdcInchToPixel(2.5 / 2.54, 1.0, dc->DpiX()),
            right = EdcInchToPixel(19 / 2.54, 1.0, dc->DpiX());
        int line = EdcInchToPixel(27.7 / 2.54, 1.0, dc->DpiY()),
            text = line + EdcInchToPixel(0.06, 1.0, dc->DpiY());
        std::string number = std::to_string(page);
        dc->Line({left, line}, {right, line});
        dc->TextOut(left, text, caption.c_str(), static_cast<int>(caption.size()));
        int width = dc->TextWidth(number.c_str(), static_cast<int>(number.size()));
        dc->TextOut(right - width, text, number.c_str(), static_cast<int>(number.size()));
        dc->SetState(former);
    }

private:
    std::string caption;
};

int Print(int argc, char **argv)
{
    int status = FAILED;
    __enter
        std::vector<Piece> pieces;
        for (int i = 2; i < argc && status == FAILED; ++i)
            if (!ReadChapter(argv[i], pieces)) {
                std::fprintf(stderr, "mkmanual: cannot read %s\n", argv[i]);
                status = MISUSED;
            }
        if (status == FAILED) {
            ManualDoc doc;
            SetAppDocument(&doc);
            doc.Fill(pieces); __test;
            ManualPrintout printout(doc, pieces[0].text);
            LayOutForPaper(doc); __test;
            doc.printer->SetPdf(argv[1]);
            bool isPrinted = doc.printer->Print(NULL, printout, false); __test;
            status = isPrinted ? DONE : FAILED;
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
    if (argc < 3) {
        std::fprintf(stderr, "usage: mkmanual OUT.pdf CHAPTER...\n");
        return MISUSED;
    }
    PagesWithoutScreen();
    int appArgc = 1;
    TEdcApplication application(appArgc, argv);
    PagesSpeakToTerminal();
    return Print(argc, argv);
}
