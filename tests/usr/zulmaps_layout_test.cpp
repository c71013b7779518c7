// Where the parts of a map stand on the page, and in which order they are drawn on the screen and on paper.
#include "zulmapcase.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
/// The recording device at the resolution of a printer.
struct TPaperDC : TPlaceDC {
    TPaperDC() : TPlaceDC(600) { mixes = false; }
};

TSize PageSize(int dpi, double scale = 1)
{
    return {EdcInchToPixel(19.0 / 2.54, scale, dpi), EdcInchToPixel(27.7 / 2.54, scale, dpi)};
}

/// The words that a map shows, in their order, with "map", "swatch" and "frame".
std::string Order(const TPlaceDC &dc)
{
    std::string order;
    size_t rect = 0;
    size_t at = 0;
    while (at < dc.calls.size()) {
        size_t end = dc.calls.find('\n', at);
        std::string line = dc.calls.substr(at, end - at);
        at = end + 1;
        std::string word;
        if (line.rfind("Bitmap", 0) == 0)
            word = "map ";
        else if (line.rfind("Rect", 0) == 0)
            word = ++rect == dc.rects.size() ? "frame " : "swatch ";
        else if (line.rfind("Shape", 0) == 0)
            word = "logo ";
        else if (line.rfind("Line", 0) == 0)
            word = "line ";
        else if (line.find("\"Legende\"") != std::string::npos)
            word = "legend ";
        else if (line.find("underline") != std::string::npos)
            word = "title ";
        if (!word.empty() && (order.size() < word.size() || order.substr(order.size() - word.size()) != word))
            order += word;
    }
    return order;
}

TRect Around(const std::vector<TRect> &rects)
{
    TRect all;
    for (const TRect &r : rects)
        all = all | r;
    return all;
}

void ExpectTidy(const TPlaceDC &dc, TSize size)
{
    TRect block = {0, 0, size.cx, size.cy};
    std::vector<TRect> apart; // what must not meet anything of its kind
    for (const TPlaceDC::Cell &cell : dc.cells) {
        EXPECT_TRUE(IsWithin(cell.rect, block)) << cell.text << " at " << ShowRect(cell.rect);
        apart.push_back(cell.rect);
    }
    for (size_t i = 0; i + 1 < dc.rects.size(); ++i) // the last one is the frame
        apart.push_back(dc.rects[i]);
    for (const TRect &rect : dc.rects)
        EXPECT_TRUE(IsWithin(rect, block)) << ShowRect(rect) << " in " << ShowRect(block);
    TRect logo = Around(dc.strokes);
    EXPECT_FALSE(logo.IsEmpty());
    EXPECT_TRUE(IsWithin(logo, block)) << ShowRect(logo);
    apart.push_back(logo);
    for (size_t i = 0; i < apart.size(); ++i)
        for (size_t j = 0; j < i; ++j)
            EXPECT_TRUE((apart[i] & apart[j]).IsEmpty()) << ShowRect(apart[i]) << " and " << ShowRect(apart[j]);
}

/// The picture fills the hall's frame, which has one pixel more at the right and below.
void ExpectPictureInFrame(const TPlaceDC &dc)
{
    ASSERT_EQ(dc.pictures.size(), 1u);
    TRect picture = dc.pictures[0];
    EXPECT_EQ(dc.rects.back(), (TRect{picture.left, picture.top, picture.right + 1, picture.bottom + 1}));
    EXPECT_FALSE(picture.IsEmpty());
}
} // namespace

TEST(MapLayout, HasItsPartsApartOnEveryPage)
{
    const double halls[][2] = {{12, 8}, {60, 30}, {120, 12}, {10, 60}, {30, 30}, {1, 1}};
    for (const auto &side : halls) {
        FIELDHALL hall(side[0], side[1], 6);
        MAPCASE maps(hall.room);
        maps.Update();
        for (TEdcBlock *map : maps.Maps())
            for (double scale : {0.6, 1.0, 1.37, 2.0}) {
                SCOPED_TRACE(testing::Message() << side[0] << " x " << side[1] << " at " << scale);
                TPlaceDC dc;
                TSize page = PageSize(96, scale);
                TSize size = LayoutBlock(*map, dc, page, scale);
                map->Paint(dc, {0, 0, size.cx, size.cy});
                EXPECT_EQ(size.cx, page.cx);
                EXPECT_LE(size.cy, page.cy);
                ExpectTidy(dc, size);
                ExpectPictureInFrame(dc);
            }
    }
}

TEST(MapLayout, HasItsPartsApartOnPaper)
{
    FIELDHALL hall(60, 30, 6);
    MAPCASE maps(hall.room);
    maps.Update();
    for (TEdcBlock *map : maps.Maps()) {
        TPaperDC dc;
        TSize page = PageSize(600);
        TSize size = LayoutBlock(*map, dc, page);
        map->Print(dc, {0, 0, size.cx, size.cy});
        EXPECT_LE(size.cy, page.cy);
        ExpectTidy(dc, size);
        ExpectPictureInFrame(dc);
        EXPECT_NE(dc.calls.find("Arial "), std::string::npos);
        TPlaceDC screen;
        TSize onScreen = LayoutBlock(*map, screen, PageSize(96));
        EXPECT_NEAR(onScreen.cy / 96.0, size.cy / 600.0, 0.15) << "inches";
    }
}

TEST(MapLayout, TakesTheHeightThatItsPartsNeed)
{
    FIELDHALL hall(60, 30, 6);
    MAPCASE maps(hall.room);
    TPlaceDC dc;
    TSize page = PageSize(96);
    int bare = LayoutBlock(maps.diffTemp, dc, page).cy;
    maps.Update();
    int full = LayoutBlock(maps.diffTemp, dc, page).cy;
    int legends = std::max(maps.diffTemp.LegendA()->Rect().Height(), maps.diffTemp.LegendB()->Rect().Height());
    EXPECT_GE(full, bare + legends);
    EXPECT_LT(full, bare + legends + 30);
    EXPECT_EQ(full, std::max(maps.diffTemp.LegendA()->Rect().bottom, maps.diffTemp.LegendB()->Rect().bottom));
    EXPECT_LT(full, page.cy * 2 / 3) << "a hall twice as long as wide leaves room on its page";
}

TEST(MapLayout, GivesThePlanTheHeightThatTheTallerLegendLeaves)
{
    FIELDHALL hall(10, 60, 6); // as high as the page allows
    MAPCASE maps(hall.room);
    maps.Update();
    TSize page = PageSize(96);
    auto planHeight = [&] {
        TPlaceDC dc;
        TSize size = LayoutBlock(maps.diffTemp, dc, page);
        EXPECT_EQ(size.cy, page.cy);
        maps.diffTemp.Paint(dc, {0, 0, size.cx, size.cy});
        ExpectTidy(dc, size);
        return dc.pictures.back().Height();
    };
    int before = planHeight();
    int height = std::max(maps.diffTemp.LegendA()->Rect().Height(), maps.diffTemp.LegendB()->Rect().Height());
    maps.diffTemp.SetLegendTitle(
        "Ein Titel, der in der Breite des Blattes bei weitem nicht Platz hat und also in "
        "mehreren Zeilen stehen mu\xDF, damit er ganz zu lesen ist");
    int after = planHeight();
    int taller = maps.diffTemp.LegendB()->Rect().Height();
    EXPECT_GT(taller, height);
    EXPECT_NEAR(after, before - (taller - height), 2);
    EXPECT_EQ(maps.diffTemp.LegendA()->Rect().top, maps.diffTemp.LegendB()->Rect().top);
}

TEST(MapLayout, PutsTheClassesLeftOfTheLimits)
{
    FIELDHALL hall(60, 30, 6);
    MAPCASE maps(hall.room);
    maps.Update();
    TPlaceDC dc;
    TSize page = PageSize(96);
    for (TZulCriterionMap *map : maps.Criteria()) {
        LayoutBlock(*map, dc, page);
        const TZulLegend &a = *map->LegendA();
        const TZulLegend &b = *map->LegendB();
        EXPECT_EQ(a.Rect().left, 0);
        EXPECT_GT(b.Rect().left, a.Rect().right);
        EXPECT_LE(b.Rect().right, page.cx);
        EXPECT_GT(b.Rect().right, page.cx - b.Count()) << "cells fill the width but for the rest of a division";
        EXPECT_EQ(a.Rect().top, b.Rect().top);
        EXPECT_GT(a.Box(1).box.top, a.Box(0).box.top) << "a column";
        for (int i = 0; i < b.Count(); ++i) {
            EXPECT_EQ(b.Box(i).box.top, b.Box(0).box.top) << "a row";
            EXPECT_EQ(b.Box(i).box.Width(), b.Box(0).box.Width());
        }
    }
}

TEST(MapLayout, DrawsFromTheHeadToTheFrame)
{
    FIELDHALL hall(60, 30, 6);
    MAPCASE maps(hall.room);
    maps.Update();
    for (TEdcBlock *map : maps.Maps()) {
        TPlaceDC dc;
        TSize size = LayoutBlock(*map, dc, PageSize(96));
        map->Paint(dc, {0, 0, size.cx, size.cy});
        EXPECT_EQ(Order(dc), "title logo map legend swatch line frame ");
    }
}

TEST(MapLayout, PrintsThePictureOnceAndBelowEverything)
{
    FIELDHALL hall(60, 30, 6);
    MAPCASE maps(hall.room);
    maps.Update();
    for (TEdcBlock *map : maps.Maps()) {
        TPlaceDC dc;
        TSize size = LayoutBlock(*map, dc, PageSize(96));
        map->Print(dc, {0, 0, size.cx, size.cy});
        EXPECT_EQ(Order(dc), "map title logo legend swatch line frame ");
        EXPECT_EQ(dc.pictures.size(), 1u);
        std::string printed = dc.calls;
        dc.calls.clear();
        map->Print(dc, {0, 0, size.cx, size.cy});
        EXPECT_EQ(dc.calls, printed) << "the picture is still there";
    }
}

TEST(MapLayout, KeepsThePictureWhenPaperFails)
{
    FIELDHALL hall(60, 30, 6);
    MAPCASE maps(hall.room);
    maps.Update();
    SetLogoDirectory("\\nowhere"); // the logo is loaded at its first use only
    TPlaceDC dc;
    maps.headTemp.Print(dc, {0, 0, 100, 100});
    EXPECT_STREQ(xCode, XFOPEN);
    xCode = XNULL;
    EXPECT_NE(maps.headTemp.Picture(), nullptr);
    maps.summary.Print(dc, {0, 0, 100, 100});
    EXPECT_STREQ(xCode, XFOPEN);
    xCode = XNULL;
    EXPECT_NE(maps.summary.Picture(), nullptr);
}

TEST(MapLayout, WithoutAnEvaluationHasHeadAxesAndFrame)
{
    FIELDHALL hall(60, 30, 6);
    MAPCASE maps(hall.room);
    for (TEdcBlock *map : maps.Maps()) {
        for (bool onPaper : {false, true}) {
            TPlaceDC dc;
            TSize size = LayoutBlock(*map, dc, PageSize(96));
            if (onPaper)
                map->Print(dc, {0, 0, size.cx, size.cy});
            else
                map->Paint(dc, {0, 0, size.cx, size.cy});
            EXPECT_EQ(Order(dc), "title logo line frame ");
            ExpectTidy(dc, size);
        }
    }
}

TEST(MapLayout, DrawsTheZonesOverEverythingWithAndWithoutAnEvaluation)
{
    FIELDHALL hall(60, 30, 6);
    MAPCASE maps(hall.room);
    auto calls = [&](TEdcBlock &map, bool onPaper) {
        TPlaceDC dc;
        TSize size = LayoutBlock(map, dc, PageSize(96));
        TRect all = {0, 0, size.cx, size.cy};
        if (onPaper)
            map.Print(dc, all);
        else
            map.Paint(dc, all);
        return dc.calls;
    };
    for (bool evaluated : {false, true})
        for (size_t i = 0; i < 4; ++i)
            for (bool onPaper : {false, true}) {
                TEdcBlock &map = *maps.Maps()[i];
                MAPCASE::Answer(evaluated);
                maps.Update();
                std::string bare = calls(map, onPaper);
                auto *zone = new EmZONE;
                zone->size = {10, 5};
                zone->pos = {20, 15};
                zone->Insert(hall.room.Zones());
                maps.Update();
                std::string full = calls(map, onPaper);
                EXPECT_GT(full.size(), bare.size());
                EXPECT_EQ(full.substr(0, bare.size()), bare);
                hall.room.Zones()->Clear();
                maps.Update();
                EXPECT_EQ(calls(map, onPaper), bare) << "the zone is gone";
            }
}

TEST(MapLayout, StandsInNextToNoRoom)
{
    FIELDHALL hall(60, 30, 6);
    MAPCASE maps(hall.room);
    maps.Update();
    for (TEdcBlock *map : maps.Maps())
        for (TSize room : {TSize{1, 1}, TSize{40, 1000}, TSize{718, 20}, TSize{100, 100}, TSize{0, 0}}) {
            TPlaceDC dc;
            LayoutBlock(*map, dc, room);
            map->Paint(dc, {0, 0, room.cx, room.cy});
            EXPECT_EQ(dc.pictures.size(), 1u);
            EXPECT_STREQ(xCode, XNULL);
        }
}

TEST(MapLayout, ShowsAHallThatADamagedFileLeftWithoutLengthOrWidth)
{
    for (auto [length, width] : {std::pair(0.0, 0.0), std::pair(0.0, 5.0), std::pair(5.0, 0.0)}) {
        FIELDHALL hall(length, width, 5);
        MAPCASE maps(hall.room);
        TPlaceDC dc;
        TSize size = LayoutBlock(maps.summary, dc, PageSize(96));
        maps.summary.Paint(dc, {0, 0, size.cx, size.cy});
        EXPECT_EQ(dc.rects.size(), 1u);
    }
}

TEST(MapLayout, ShowsThePointsOfThePlanWhereTheyLie)
{
    ONEEMITTERHALL hall; // the emitter hangs over (4, 4) of 12 x 8 m
    MAPCASE maps(hall.room);
    hall.emitter->power = 60000;
    maps.SetAirTemp(20);
    maps.Update();
    TMemoryDC dc({718, 600}, 96);
    LayoutBlock(maps.headInte, dc, {718, 600});
    maps.headInte.Paint(dc, {0, 0, 718, 600});
    const TRect plan = maps.headInte.Picture()->rect;
    auto at = [&](double x, double y) {
        return dc.Pixel({plan.left + static_cast<int>(plan.Width() * x / 12),
                         plan.bottom - static_cast<int>(plan.Height() * y / 8)});
    };
    const TEdcColorScale &colors = maps.palette.criterionColors;
    EXPECT_GT(maps.headInte.Value(AgPOINT(4.1, 4.1, 0)), 250);
    EXPECT_EQ(at(4.1, 4.1), colors.Color(2));
    EXPECT_LT(maps.headInte.Value(AgPOINT(11, 7.3, 0)), 200);
    EXPECT_EQ(at(11, 7.3), colors.Color(0));
}
