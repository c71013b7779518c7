// Random marked-up texts, laid out by the system and by a plain twin that copies whatever it parts, and the
// laws that hold for any of them.
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcitem.h"

#include "support/chance.h"
#include "support/recorddc.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "lib/xon.h"

namespace
{
struct PIECE {
    int x = 0;
    int y = 0;
    int width = 0;
    int style = 0;
    std::string text;

    bool operator==(const PIECE &) const = default;
};

std::ostream &operator<<(std::ostream &out, const PIECE &p)
{
    return out << p.x << "," << p.y << " " << p.width << " " << p.style << " [" << p.text << "]";
}

struct LAYOUT {
    std::vector<PIECE> pieces;
    int width = 0;
    int height = 0;
};

struct ORDER {
    std::string source;
    int size = 1;
    int format = 0;
    int width = 0;
    int breakMode = 0;
};

int MeasuredLine(TRecordDC &dc, const ORDER &order)
{
    TFont font;
    font.height = -order.size;
    dc.SetFont(font);
    return dc.FontMetrics().height;
}

int MeasuredChar(TRecordDC &dc, const ORDER &order, int lineHeight, int style, char c)
{
    int flags = style | order.format;
    TFont font;
    font.height = flags & 3 ? std::max(1, static_cast<int>(std::floor(0.6 * lineHeight + 0.5))) : lineHeight;
    font.weight = flags & 4 ? 700 : 400;
    dc.SetFont(font);
    return dc.CharWidth(static_cast<unsigned char>(c));
}

/// What the twin can get wrong, to show that a difference would be seen.
enum FAULTY { SOUND, KEEPS_TILDES, BREAKS_LATE, FORGETS_PLACE };

class TWIN
{
public:
    TWIN(const ORDER &anOrder, FAULTY aFault) : order(anOrder), fault(aFault)
    {
        Parse();
        Break();
        Align();
    }
    LAYOUT result;

private:
    static bool IsSpace(char c) { return std::string(" \t\n\v\f\r\xA0").find(c) != std::string::npos; }
    static std::string Clean(const std::string &raw)
    {
        std::string s;
        for (size_t i = 0; i < raw.size(); ++i) {
            bool space = IsSpace(raw[i]) && raw[i] != '\n';
            bool spaceNext = i + 1 < raw.size() && IsSpace(raw[i + 1]) && raw[i + 1] != '\n';
            if (raw[i] == '!' && i + 1 < raw.size() && (raw[i + 1] == '_' || raw[i + 1] == '^'))
                s += raw[++i];
            else if (!space)
                s += raw[i];
            else if (!spaceNext && (s.empty() || s.back() != '\n'))
                s += ' ';
        }
        return s;
    }
    static std::string Drawn(const std::string &s)
    {
        std::string drawn;
        for (size_t i = 0; i < s.size(); ++i) {
            if (s[i] == '!' && i + 1 < s.size() && s[i + 1] == '~')
                drawn += s[++i];
            else
                drawn += s[i] == '~' ? ' ' : s[i];
        }
        return drawn;
    }
    void Add(int style, const std::string &raw)
    {
        if (!raw.empty())
            result.pieces.push_back({0, 0, 0, style, Clean(raw)});
    }
    void Parse()
    {
        std::string s = order.source;
        while (!s.empty() && IsSpace(s[0]) && s[0] != '\n')
            s.erase(0, 1);
        std::string raw;
        int style = 0;
        for (size_t i = 0; i < s.size(); ++i) {
            if (s[i] == '!' && i + 1 < s.size() && (s[i + 1] == '_' || s[i + 1] == '^')) {
                raw += s[i++];
                raw += s[i];
            } else if (s[i] == '_' || s[i] == '^') {
                Add(style, raw);
                raw.clear();
                if (s[i] == '_')
                    style = style == 1 ? 0 : 1;
                else
                    style = style == 2 ? 0 : 2;
            } else {
                raw += s[i];
            }
        }
        while (!raw.empty() && IsSpace(raw.back()) && raw.back() != '\n')
            raw.pop_back();
        Add(style, raw);
    }
    int CharWidth(int style, char c) { return MeasuredChar(dc, order, lineHeight, style, c); }
    /// The character at `at`, which becomes the place of the `~` for `!~`; a `~` that stands for a blank is
    /// one.
    static char CharAt(const std::string &s, size_t &at)
    {
        if (s[at] == '!' && at + 1 < s.size() && s[at + 1] == '~')
            return s[++at];
        return s[at] == '~' ? ' ' : s[at];
    }
    void Break()
    {
        lineHeight = MeasuredLine(dc, order);
        std::vector<PIECE> &pieces = result.pieces;
        size_t breakPiece = 0, breakAt = 0;
        int breakX = -1, count = 0, x = 0, y = 0;
        for (size_t i = 0; i < pieces.size(); ++i) {
            pieces[i].x = x;
            pieces[i].y = y;
            for (size_t at = 0; at < pieces[i].text.size(); ++at) {
                size_t begin = at;
                bool isBlank = pieces[i].text[at] == ' ';
                if (order.breakMode == 1 && pieces[i].text[at] == '\n')
                    pieces[i].text[at] = ' ';
                char c = CharAt(pieces[i].text, at);
                int before = x;
                x += CharWidth(pieces[i].style, c);
                ++count;
                bool over = x > order.width + (fault == BREAKS_LATE) && count > 1;
                if (c != '\n' && (order.breakMode != 3 || !over)) {
                    if (isBlank && (begin == 0 || !IsSpace(pieces[i].text[begin - 1]))) {
                        breakPiece = i;
                        breakAt = begin;
                        breakX = before;
                    }
                    continue;
                }
                x = before;
                if (c != '\n' && breakX >= 0 && fault != FORGETS_PLACE) {
                    i = breakPiece;
                    begin = breakAt;
                    x = breakX;
                }
                pieces[i].width = x - pieces[i].x;
                result.width = std::max(result.width, x);
                PIECE tail = pieces[i];
                pieces[i].text.erase(begin);
                tail.text.erase(0, begin);
                while (!tail.text.empty() &&
                       (tail.text[0] == ' ' || (tail.text[0] == '~' && fault != KEEPS_TILDES)))
                    tail.text.erase(0, 1);
                if (!tail.text.empty() && tail.text[0] == '\n')
                    tail.text.erase(0, 1);
                y += lineHeight;
                x = count = 0;
                breakX = -1;
                tail.x = 0;
                tail.y = y;
                ++i;
                pieces.insert(pieces.begin() + static_cast<long>(i), tail);
                at = static_cast<size_t>(-1); // the next one is 0
            }
            pieces[i].width = x - pieces[i].x;
        }
        result.width = std::max(result.width, x);
        result.height = y + lineHeight;
        for (PIECE &piece : pieces)
            piece.text = Drawn(piece.text);
    }
    void Align()
    {
        for (PIECE &piece : result.pieces) {
            int line = 0, before = 0;
            for (const PIECE &other : result.pieces) {
                line += other.y == piece.y ? other.width : 0;
                before += other.y == piece.y && &other < &piece ? other.width : 0;
            }
            int free = result.width - line;
            piece.x = before + (order.format & 32    ? 0
                                : order.format & 64  ? free
                                : order.format & 128 ? free / 2
                                                     : 0);
        }
    }

    const ORDER &order;
    FAULTY fault;
    TRecordDC dc;
    int lineHeight = 0;
};

std::string RandomSource(CHANCE &chance)
{
    const char *words[] = {"a",  "Wort",        "il.",      "Milli", " ",  " ",    " ",  "  ",
                           "\t", "\n",          "\n",       "~",     "~",  "!~",   "!^", "!_",
                           "!",  "_",           "_",        "^",     "^",  "\xA0", "ab", "m",
                           "W",  "Hallenboden", "\xE4\xDF", "\r\n",  "~~", "\n\n", "x y"};
    std::string s;
    for (int left = chance.One(10) ? chance.Int(0, 120) : chance.Int(0, 16); left > 0; --left)
        s += chance.Of(words);
    return s;
}

ORDER RandomOrder(CHANCE &chance)
{
    const int formats[] = {0, 0, 4, 8, 16, 32, 64, 128, 1, 2, 4 | 64, 4 | 128, 1 | 128};
    const int breakModes[] = {0, 1, 2, 3, 3, 3, 3, 3};
    ORDER order;
    order.source = RandomSource(chance);
    order.size = chance.Int(1, 20);
    order.format = chance.Of(formats);
    order.width = chance.One(8) ? chance.Int(0, 5) : chance.Int(0, order.size * 20);
    order.breakMode = chance.Of(breakModes);
    return order;
}

std::string Describe(const ORDER &order)
{
    std::string shown;
    for (char c : order.source)
        shown += c == '\n' ? "\\n" : c == '\t' ? "\\t" : c == '\r' ? "\\r" : std::string(1, c);
    return "\"" + shown + "\" size " + std::to_string(order.size) + " format " + std::to_string(order.format) +
           " width " + std::to_string(order.width) + " mode " + std::to_string(order.breakMode);
}

class EdcTextBreak : public testing::Test
{
protected:
    EdcTextBreak() { SetAppDocument(&doc); }

    LAYOUT Lay(const ORDER &order)
    {
        LAYOUT result;
        text.SetText(order.source.c_str());
        text.SetFont("Arial", order.size, 1);
        text.SetFormat(order.format);
        TRect rect = {0, 0, order.width, 0};
        text.Layout(dc, rect, order.breakMode, EDC_HLEFT, EDC_VTOP);
        EXPECT_EQ(rect, (TRect{0, 0, text.width, text.height}));
        for (const TEdcTextFrag *frag = text.first; frag != NULL; frag = frag->next)
            result.pieces.push_back({frag->x, frag->y, frag->width, frag->style,
                                     std::string(frag->text, static_cast<size_t>(frag->length))});
        result.width = text.width;
        result.height = text.height;
        return result;
    }

    TEdcDocument doc;
    TRecordDC dc;
    TEdcText text;
};

bool Differ(const LAYOUT &a, const LAYOUT &b)
{
    return a.pieces != b.pieces || a.width != b.width || a.height != b.height;
}

std::string Joined(const LAYOUT &layout)
{
    std::string s;
    for (const PIECE &piece : layout.pieces)
        s += piece.text;
    return s;
}
} // namespace

TEST_F(EdcTextBreak, GivesTheFragmentsOfThePlainTwin)
{
    CHANCE chance(1);
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        ORDER order = RandomOrder(chance);
        LAYOUT twin = TWIN(order, SOUND).result;
        LAYOUT system = Lay(order);
        EXPECT_EQ(system.pieces, twin.pieces) << Describe(order);
        EXPECT_EQ(system.width, twin.width) << Describe(order);
        EXPECT_EQ(system.height, twin.height) << Describe(order);
    }
}

TEST_F(EdcTextBreak, DiffersFromATwinThatIsWrong)
{
    for (FAULTY fault : {KEEPS_TILDES, BREAKS_LATE, FORGETS_PLACE}) {
        CHANCE chance(2);
        int differing = 0;
        for (int i = 0; i < 1000; ++i) {
            ORDER order = RandomOrder(chance);
            differing += Differ(TWIN(order, fault).result, Lay(order));
        }
        EXPECT_GT(differing, 10) << fault;
    }
}

TEST_F(EdcTextBreak, AddsWidthsUpAndFillsNoLineBeyondItsWidth)
{
    CHANCE chance(3);
    for (int i = 0; i < 5000 && !HasFailure(); ++i) {
        ORDER order = RandomOrder(chance);
        order.breakMode = EDC_BREAKWIDTH;
        LAYOUT layout = Lay(order);
        int end = 0, y = 0, letters = 0, widest = 0;
        for (const PIECE &piece : layout.pieces) {
            if (piece.y != y)
                end = letters = 0;
            y = piece.y;
            int sum = 0;
            for (char c : piece.text)
                sum += MeasuredChar(dc, order, MeasuredLine(dc, order), piece.style, c);
            EXPECT_EQ(piece.width, sum) << Describe(order);
            end += piece.width;
            letters += static_cast<int>(piece.text.size());
            widest = std::max(widest, end);
            EXPECT_TRUE(end <= order.width || letters <= 1) << Describe(order);
        }
        EXPECT_EQ(widest, layout.width) << Describe(order);
    }
}

TEST_F(EdcTextBreak, NeedsNoMoreLinesWhereThereIsMoreRoom)
{
    CHANCE chance(4);
    for (int i = 0; i < 3000 && !HasFailure(); ++i) {
        ORDER order = RandomOrder(chance);
        order.breakMode = EDC_BREAKWIDTH;
        int former = Lay(order).height;
        for (int steps = 0; steps < 8; ++steps) {
            order.width += chance.Int(1, order.size);
            int height = Lay(order).height;
            EXPECT_LE(height, former) << Describe(order);
            former = height;
        }
    }
}

TEST_F(EdcTextBreak, LosesNothingButBlanksAtTheEndsOfLines)
{
    CHANCE chance(5);
    for (int i = 0; i < 5000 && !HasFailure(); ++i) {
        ORDER order = RandomOrder(chance);
        order.breakMode = EDC_BREAKNONE;
        LAYOUT whole = Lay(order);
        EXPECT_EQ(whole.height, MeasuredLine(dc, order));
        order.breakMode = EDC_BREAKWIDTH;
        std::string all = Joined(whole), broken = Joined(Lay(order));
        std::erase(all, ' ');
        std::erase(broken, ' ');
        EXPECT_EQ(broken, all) << Describe(order);
    }
}

TEST_F(EdcTextBreak, LaidOutTwiceIsTheSame)
{
    CHANCE chance(6);
    for (int i = 0; i < 2000 && !HasFailure(); ++i) {
        ORDER order = RandomOrder(chance);
        LAYOUT once = Lay(order);
        EXPECT_FALSE(Differ(once, Lay(order))) << Describe(order);
    }
}
