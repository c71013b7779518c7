// Random marked-up texts, laid out by the system and by a plain twin that copies whatever it parts, and the
// laws that hold for any of them.
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcitem.h"

#include "support/chance.h"
#include "support/plaintext.h"
#include "support/recorddc.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "lib/xon.h"

namespace
{
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

PlainOrder RandomOrder(CHANCE &chance)
{
    const int formats[] = {0, 0, 4, 8, 16, 32, 64, 128, 1, 2, 4 | 64, 4 | 128, 1 | 128};
    const int breakModes[] = {0, 1, 2, 3, 3, 3, 3, 3};
    PlainOrder order;
    order.source = RandomSource(chance);
    order.size = chance.Int(1, 20);
    order.format = chance.Of(formats);
    order.width = chance.One(8) ? chance.Int(0, 5) : chance.Int(0, order.size * 20);
    order.breakMode = chance.Of(breakModes);
    return order;
}

std::string Describe(const PlainOrder &order)
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

    PlainLayout Lay(const PlainOrder &order)
    {
        PlainLayout result;
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

bool Differ(const PlainLayout &a, const PlainLayout &b)
{
    return a.pieces != b.pieces || a.width != b.width || a.height != b.height;
}

std::string Joined(const PlainLayout &layout)
{
    std::string s;
    for (const PlainPiece &piece : layout.pieces)
        s += piece.text;
    return s;
}
} // namespace

TEST_F(EdcTextBreak, GivesTheFragmentsOfThePlainTwin)
{
    CHANCE chance(1);
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        PlainOrder order = RandomOrder(chance);
        PlainLayout twin = LayPlainText(order, dc);
        PlainLayout system = Lay(order);
        EXPECT_EQ(system.pieces, twin.pieces) << Describe(order);
        EXPECT_EQ(system.width, twin.width) << Describe(order);
        EXPECT_EQ(system.height, twin.height) << Describe(order);
    }
}

TEST_F(EdcTextBreak, DiffersFromATwinThatIsWrong)
{
    for (PlainFault fault : {KEEPS_TILDES, BREAKS_LATE, FORGETS_PLACE}) {
        CHANCE chance(2);
        int differing = 0;
        for (int i = 0; i < 1000; ++i) {
            PlainOrder order = RandomOrder(chance);
            differing += Differ(LayPlainText(order, dc, fault), Lay(order));
        }
        EXPECT_GT(differing, 10) << fault;
    }
}

TEST_F(EdcTextBreak, AddsWidthsUpAndFillsNoLineBeyondItsWidth)
{
    CHANCE chance(3);
    for (int i = 0; i < 5000 && !HasFailure(); ++i) {
        PlainOrder order = RandomOrder(chance);
        order.breakMode = EDC_BREAKWIDTH;
        PlainLayout layout = Lay(order);
        int end = 0, y = 0, letters = 0, widest = 0;
        for (const PlainPiece &piece : layout.pieces) {
            if (piece.y != y)
                end = letters = 0;
            y = piece.y;
            int sum = 0;
            for (char c : piece.text)
                sum += PlainCharWidth(dc, order, PlainLineHeight(dc, order), piece.style, c);
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
        PlainOrder order = RandomOrder(chance);
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
        PlainOrder order = RandomOrder(chance);
        order.breakMode = EDC_BREAKNONE;
        PlainLayout whole = Lay(order);
        EXPECT_EQ(whole.height, PlainLineHeight(dc, order));
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
        PlainOrder order = RandomOrder(chance);
        PlainLayout once = Lay(order);
        EXPECT_FALSE(Differ(once, Lay(order))) << Describe(order);
    }
}
