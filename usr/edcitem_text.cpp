// Marked-up text: parsing, breaking, aligning and drawing. A text of the report has some hundred characters, an
// input text may have a million. So the cleaned copy is made once, in one piece, and breaking a line only parts
// a fragment's view of it; a width is asked of the device once for each character that occurs.
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcitem.h"
#include "usr/edcutils.h"
#include "win/dc.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <deque>

#include "lib/xon.h"

const TEdcFontRec edcDefaultFont;

void TEdcFontRec::Set(const char *aName, int aSize, int aFormat)
{
    ASSERT_AS(aName != NULL, "name != NULL");
    StrCopy(name, aName, NAMEMAX);
    size = aSize;
    format = aFormat;
}

namespace
{
enum { STYLES = 3 }; // normal, sub, super
enum { SMALL = EDC_TfSUB | EDC_TfSUPER };
enum { BOLD_WEIGHT = 700, NORMAL_WEIGHT = 400 };
enum { LENGTH_MAX = 1 << 30 }; // px; no sum of widths or heights goes beyond

int Sum(int a, int b)
{
    return static_cast<int>(std::min<long long>(static_cast<long long>(a) + b, LENGTH_MAX));
}

bool IsStyleMark(char c)
{
    return c == '_' || c == '^';
}

/// White space that is no line end. The no-break space of the character set is a blank like any other: the
/// mark for one that holds is `~`.
bool IsBlank(char c)
{
    return c != '\n' && (ChrClass(c) & CHR_SPACE);
}

int StyleBehind(char mark, int style)
{
    int marked = mark == '_' ? EDC_TfSUB : EDC_TfSUPER;
    return style & marked ? 0 : marked;
}
} // namespace

struct TEdcText::Pool {
    explicit Pool(size_t length) : copy(new char[length + 1]), free(copy.get()) {}

    std::deque<TEdcTextFrag> frags; // they stay where they are
    std::unique_ptr<char[]> copy;   // a clean text is never longer than its source
    char *free;                     // where the next fragment's copy begins

    TEdcTextFrag *Add(int style)
    {
        TEdcTextFrag &frag = frags.emplace_back();
        frag.style = style;
        return &frag;
    }
    void Complete(TEdcTextFrag &frag, const char *s, const char *end);
};

/// Gives the fragment its copy of the source: without the `!` of style marks, with one blank for each run of
/// them, and none behind a line end. `!~` and `~` wait until the lines are broken.
void TEdcText::Pool::Complete(TEdcTextFrag &frag, const char *s, const char *end)
{
    char *begin = free;
    for (; s < end; ++s) {
        if (*s == '!' && IsStyleMark(s[1]))
            continue;
        if (!IsBlank(*s))
            *free++ = *s;
        else if (!(s + 1 < end && IsBlank(s[1])) && !(free > begin && free[-1] == '\n'))
            *free++ = ' ';
    }
    frag.text = begin;
    frag.length = static_cast<int>(free - begin);
    frag.completed = true;
}

/// Breaks the fragments of a text into lines. The copies keep their `~` until all lines are there, since a line
/// end may go back over fragments that were already passed.
struct TEdcTextBreaker {
    TEdcTextBreaker(TEdcText &aText, TDC &aDc, int aBreakMode, int aMaxWidth);
    void Run();

private:
    enum { UNKNOWN = -1 };
    struct PLACE { // before a character
        TEdcTextFrag *frag = NULL;
        int pos = 0; // in the fragment
        int x = 0;   // px, of the line so far
    };

    TEdcText &text;
    TDC &dc;
    int breakMode;
    int maxWidth; // px
    PLACE here;
    PLACE breakPlace;   // last one of the line; no fragment: none known
    int y = 0;          // px, of the line
    int lineCount = 0;  // characters that the line holds
    int fontStyle = -1; // whose font is set
    int widths[STYLES][256];

    int Width(char c);
    void Begin(TEdcTextFrag *frag);
    void EndFragment() { here.frag->width = here.x - here.frag->x; }
    void Step();
    void EndLine();
    void Split(TEdcTextFrag &frag, int pos);
};

TEdcTextBreaker::TEdcTextBreaker(TEdcText &aText, TDC &aDc, int aBreakMode, int aMaxWidth)
    : text(aText), dc(aDc), breakMode(aBreakMode), maxWidth(aMaxWidth)
{
    for (auto &row : widths)
        std::fill(std::begin(row), std::end(row), static_cast<int>(UNKNOWN));
}

/// px, in the present fragment's font.
int TEdcTextBreaker::Width(char c)
{
    int style = here.frag->style;
    int &width = widths[style][static_cast<unsigned char>(c)];
    if (width == UNKNOWN) {
        if (fontStyle != style)
            dc.SetFont(text.FragmentFont(style));
        fontStyle = style;
        width = dc.CharWidth(static_cast<unsigned char>(c));
    }
    return width;
}

void TEdcTextBreaker::Begin(TEdcTextFrag *frag)
{
    frag->x = here.x;
    frag->y = y;
    here.frag = frag;
    here.pos = 0;
}

void TEdcTextBreaker::Run()
{
    text.width = 0;
    for (TEdcTextFrag *frag = text.first; frag != NULL; frag = here.frag->next) {
        Begin(frag);
        while (here.pos < here.frag->length)
            Step();
        EndFragment();
    }
    text.width = std::max(text.width, here.x);
    text.height = Sum(y, text.lineHeight);
}

/// Measures one character, `!~` as one, and ends the line before it where it does not belong there any more.
void TEdcTextBreaker::Step()
{
    PLACE before = here;
    char *s = here.frag->text + here.pos;
    bool isMark = *s == '!' && here.pos + 1 < here.frag->length && s[1] == '~';
    if (*s == '\n' && breakMode == EDC_BREAKNONE)
        *s = ' ';
    char c = isMark ? '~' : *s == '~' ? ' ' : *s;
    int x = Sum(here.x, Width(c));
    bool isTooWide = breakMode == EDC_BREAKWIDTH && x > maxWidth && lineCount > 0;
    if (c == '\n' || isTooWide) {
        if (c != '\n' && breakPlace.frag != NULL)
            here = breakPlace;
        EndLine();
        return;
    }
    if (*s == ' ' && !(here.pos > 0 && (ChrClass(s[-1]) & CHR_SPACE)))
        breakPlace = before;
    here.x = x;
    here.pos += isMark ? 2 : 1;
    ++lineCount;
}

void TEdcTextBreaker::EndLine()
{
    EndFragment();
    text.width = std::max(text.width, here.x);
    Split(*here.frag, here.pos);
    y = Sum(y, text.lineHeight);
    here.x = 0;
    lineCount = 0;
    breakPlace = PLACE();
    Begin(here.frag->next);
}

/// What stands behind `pos` becomes a fragment of its own, less the blanks at its start and one line end.
void TEdcTextBreaker::Split(TEdcTextFrag &frag, int pos)
{
    ASSERT_AS(frag.completed, "completed");
    TEdcTextFrag *tail = text.pool->Add(frag.style);
    tail->completed = true;
    tail->next = frag.next;
    tail->text = frag.text + pos;
    tail->length = frag.length - pos;
    frag.next = tail;
    frag.length = pos;
    auto drop = [tail] {
        ++tail->text;
        --tail->length;
    };
    while (tail->length > 0 && (*tail->text == '~' || *tail->text == ' '))
        drop();
    if (tail->length > 0 && *tail->text == '\n')
        drop();
}

/// Makes `~` a blank and `!~` a `~`, in place.
static void ResolveBlanks(TEdcTextFrag &frag)
{
    const char *from = frag.text;
    const char *end = from + frag.length;
    char *to = frag.text;
    while (from < end) {
        bool isLiteral = *from == '!' && from + 1 < end && from[1] == '~';
        from += isLiteral;
        *to++ = *from == '~' && !isLiteral ? ' ' : *from;
        ++from;
    }
    frag.length = static_cast<int>(to - frag.text);
}

TEdcText::TEdcText() = default;
TEdcText::~TEdcText() = default;

void TEdcText::SetText(const char *s)
{
    text = s;
    Clear();
    AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcText::SetFont(const char *name, int size, uint8_t aCharset)
{
    ASSERT(name != NULL && size >= 0);
    fontName = name;
    fontSize = std::max(size, 1);
    charset = aCharset;
    Clear();
    AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcText::SetFormat(int aFormat)
{
    format = aFormat;
    Clear();
    AppDocument()->Obsolete(EDC_LAYOUT);
}

void TEdcText::SetColor(TColor c)
{
    color = c;
    AppDocument()->Obsolete(EDC_PAINT);
}

void TEdcText::Clear()
{
    first = NULL;
    pool.reset();
    width = height = 0;
}

/// Throws std::bad_alloc.
void TEdcText::Parse(const char *s)
{
    ASSERT(s != NULL);
    Clear();
    while (IsBlank(*s))
        ++s;
    pool = std::make_unique<Pool>(std::strlen(s));
    TEdcTextFrag **link = &first; // what points to `frag`
    TEdcTextFrag *frag = first = pool->Add(0);
    const char *begin = s; // of the fragment
    for (; *s != EOS; ++s) {
        if (*s == '!' && IsStyleMark(s[1])) {
            ++s;
        } else if (IsStyleMark(*s)) {
            int style = StyleBehind(*s, frag->style);
            if (s > begin) {
                pool->Complete(*frag, begin, s);
                link = &frag->next;
                frag = *link = pool->Add(style);
            }
            frag->style = style;
            begin = s + 1;
        }
    }
    while (s > begin && IsBlank(s[-1]))
        --s;
    if (s > begin)
        pool->Complete(*frag, begin, s);
    else
        *link = NULL;
}

/// Throws std::bad_alloc.
void TEdcText::Break(TDC &dc, int breakMode, int maxWidth)
{
    ASSERT_AS(maxWidth >= 0, "width >= 0");
    TFont font;
    font.face = FaceName();
    font.height = -fontSize;
    dc.SetFont(font);
    lineHeight = dc.FontMetrics().height;
    TEdcTextBreaker(*this, dc, breakMode, maxWidth).Run();
    for (TEdcTextFrag *frag = first; frag != NULL; frag = frag->next)
        ResolveBlanks(*frag);
}

/// Each line by itself, against the widest one.
void TEdcText::Align()
{
    for (TEdcTextFrag *line = first; line != NULL;) {
        int used = 0; // px
        TEdcTextFrag *end = line;
        for (; end != NULL && end->y == line->y; end = end->next)
            used = Sum(used, end->width);
        int at = format & EDC_TfLEFT     ? 0
                 : format & EDC_TfRIGHT  ? width - used
                 : format & EDC_TfCENTER ? (width - used) / 2
                                         : 0;
        for (; line != end; line = line->next) {
            line->x = at;
            at += line->width;
        }
    }
}

TFont TEdcText::FragmentFont(int style) const
{
    int flags = style | format;
    TFont font;
    font.face = FaceName();
    font.height = flags & SMALL ? std::max(EdcNearest(0.6 * lineHeight), 1) : lineHeight;
    font.weight = flags & EDC_TfBOLD ? BOLD_WEIGHT : NORMAL_WEIGHT;
    font.italic = flags & EDC_TfITALIC;
    font.underline = (flags & EDC_TfUNDERLINE) && !(flags & SMALL);
    return font;
}

void TEdcText::Layout(TDC &dc, TRect &rect, int breakMode, int hAlign, int vAlign)
{
    __enter
        rect = rect.Normalized();
        if (text != NULL) {
            TFont former = dc.State().font;
            Parse(text);
            Break(dc, breakMode, rect.Width());
            Align();
            dc.SetFont(former);
        }
        x = hAlign == EDC_HRIGHT   ? rect.right - width
            : hAlign == EDC_CENTER ? (rect.left + rect.right) / 2 - width / 2
                                   : rect.left;
        y = vAlign == EDC_VBOTTOM  ? rect.bottom - height
            : vAlign == EDC_CENTER ? (rect.top + rect.bottom) / 2 - height / 2
                                   : rect.top;
        rect = {x, y, x + width, y + height};
    __point
        Clear();
    __treat
}

void TEdcText::Paint(TDC &dc) const
{
    PaintLines(dc, INT_MIN, INT_MAX);
}

/// One line more on both sides, for ink may reach out of its own.
void TEdcText::Paint(TDC &dc, const TRect &part) const
{
    PaintLines(dc, Sum(part.top - y, -2 * lineHeight), Sum(part.bottom - y, lineHeight));
}

/// The lines that start between `top` and `bottom`, px from the text's top.
void TEdcText::PaintLines(TDC &dc, int top, int bottom) const
{
    bool formerOpaque = dc.State().opaque;
    TTextAlign formerAlign = dc.State().align;
    __enter
        if (first != NULL) {
            int style = -1; // whose font is set
            dc.SetOpaque(false);
            dc.SetTextColor(color);
            for (const TEdcTextFrag *frag = first; frag != NULL; frag = frag->next) {
                if (frag->y < top || frag->y > bottom)
                    continue;
                if (frag->style != style)
                    dc.SetFont(FragmentFont(frag->style));
                style = frag->style;
                bool isSub = (frag->style | format) & EDC_TfSUB;
                dc.SetTextAlign(isSub ? WIN_TEXT_BOTTOM : WIN_TEXT_TOP);
                if (frag->length > 0)
                    dc.TextOut(x + frag->x, y + frag->y + (isSub ? lineHeight : 0), frag->text, frag->length);
            }
        }
    __point
    __treat
    dc.SetTextAlign(formerAlign);
    dc.SetOpaque(formerOpaque);
}
