// Every layer of the plans in every state, side by side on one sheet: a row a layer, a column a state. The
// colours are checked here; with ZUL_PICTURES naming a folder the sheet is left there for a person to look at,
// at the resolution of this run and two finer ones.
#include "lib/platform.h"
#include "support/programtables.h"
#include "support/sampleroom.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "usr/zulairht.h"
#include "usr/zulemitt.h"
#include "usr/zulhole.h"
#include "usr/zulroom.h"
#include "usr/zulzone.h"
#include "win/dc.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <string>

namespace
{
enum STATE { IDLE, ACTIVE, SELECTED, FOCUSED, DRAGGED, PRINTED, STATES };
const char *const stateNames[] = {"ruhend", "aktiv", "gew\xE4hlt", "im Fokus", "gezogen", "gedruckt"};
enum ROW { EMITTERS, AIR_HEATERS, HOLES, ZONES, ROWS };
const char *const rowNames[] = {"Infrastrahler", "Warmluftaggregate",
                                "Bau\xF6"
                                "ffnungen",
                                "Zonen"};
const TColor blue = {0, 0, 255}, green = {0, 255, 0};

/// A hall of 12 x 8 m with three things of each kind on its floor: plain, turned, and the odd one.
struct FURNISHED {
    SAMPLEMODELS models;
    EmROOM room{12, 8, 5, "", "", 20260312};

    FURNISHED()
    {
        for (int i = 0; i < 3; ++i) {
            AgPOINT middle(2.5 + 3.5 * i, 2.5 + 1.5 * i);
            auto *emitter = new EmEMITTER;
            emitter->pos = AgPOINT(middle.x, middle.y, 4);
            emitter->rotation = i * 0.6;
            emitter->tilt = 0.5 * (i - 1);
            emitter->SetModel(ModelAddRef(models.Model(i == 0 ? 3 : 1)));
            emitter->Insert(room.Emitters());
            auto *unit = new EmAIRHEATER;
            unit->pos = middle;
            unit->size = AgPOINT(1.2 + i, 0.9 + 0.5 * i, 1);
            if (i > 0)
                strcpy(unit->type, "Aggregat");
            unit->Insert(room.AirHeaters());
            auto *hole = new EmHOLE;
            hole->pos = middle;
            hole->size = AgPOINT(3, i == 2 ? 0.3 : 2);
            hole->rotation = i == 1 ? 0.5 : 0;
            hole->Insert(room.Surfaces()->Floor()->Holes());
            auto *zone = new EmZONE;
            zone->pos = middle;
            zone->size = i == 2 ? AgPOINT(-3.5, 3) : AgPOINT(4 - i, 3);
            zone->rotation = i == 1 ? 0.5 : 0;
            zone->Insert(room.Zones());
        }
        auto *bare = new EmEMITTER; // without a model
        bare->pos = AgPOINT(10, 1.5, 4);
        bare->Insert(room.Emitters());
    }
};

/// The layers over one pair of axes. One cell of the sheet after another is laid out and painted with them.
class SHEET
{
public:
    explicit SHEET(int aDpi) : dpi(aDpi), surface(Extent(aDpi), aDpi)
    {
        ZulSetUpAxes(axes);
        ZulSetRange(axes, hall.room.Box());
        surface.FillRect({0, 0, surface.size.cx, surface.size.cy}, SolidBrush(WIN_WHITE));
        for (TEdcDrawLayer *layer : layers) {
            layer->Reload(NULL);
        }
    }

    void Paint(ROW row, STATE state)
    {
        TEdcDrawLayer &layer = *layers[row];
        TPoint corner = Corner(row, state);
        surface.SetViewportOrg(corner);
        surface.SetBrushOrg(corner); // so that hatches and patterns are the same in every cell
        axes.Layout(surface, {0, 0, Px(CELL_WIDTH - GAP), Px(CELL_HEIGHT - GAP)}, 1, true);
        LayOut(layer);
        axes.Paint(surface, {0, 0, Px(CELL_WIDTH), Px(CELL_HEIGHT)});
        ZulFrame(surface, axes, AgE0, hall.room.Surfaces()->Floor()->size);
        TakeState(layer, state);
        TRect all = {0, 0, Px(CELL_WIDTH), Px(CELL_HEIGHT)};
        if (state == PRINTED)
            layer.PaintPlain(surface, all);
        else
            layer.Paint(surface, all);
        if (state == DRAGGED)
            Drag(static_cast<TEdcDrawSprite &>(*layer.Focus()));
        layer.SelectAll(false, NULL);
        layer.SetActive(false);
        Write(rowNames[row], stateNames[state]);
    }
    /// The colours of a cell within the hall, with how many pixels show them.
    std::map<std::string, int> Colors(ROW row, STATE state) const
    {
        std::map<std::string, int> colors;
        TPoint corner = Corner(row, state);
        for (int y = axes.plot.top; y < axes.plot.bottom; ++y)
            for (int x = axes.plot.left; x < axes.plot.right; ++x) {
                TColor c = surface.Pixel(corner + TPoint{x, y});
                ++colors[c == blue        ? "blue"
                         : c == green     ? "green"
                         : c == WIN_BLACK ? "black"
                         : c == WIN_WHITE ? "white"
                                          : "other"];
            }
        return colors;
    }
    std::vector<TColor> Cell(ROW row, STATE state) const
    {
        std::vector<TColor> pixels;
        TPoint corner = Corner(row, state);
        for (int y = axes.plot.top; y < axes.plot.bottom; ++y)
            for (int x = axes.plot.left; x < axes.plot.right; ++x)
                pixels.push_back(surface.Pixel(corner + TPoint{x, y}));
        return pixels;
    }
    bool Save(const std::string &path) { return surface.SavePng(path.c_str()); }

private:
    enum { CELL_WIDTH = 250, CELL_HEIGHT = 170, GAP = 14, HEAD = 16, RIM = 8 }; // px at 96 px/in

    struct SURFACE : TMemoryDC {
        SURFACE(TSize aSize, int aDpi) : TMemoryDC(aSize, aDpi), size(aSize) {}
        TSize size;
    };

    static int Scaled(int px, int aDpi) { return px * aDpi / 96; }
    int Px(int px) const { return Scaled(px, dpi); }
    TPoint Corner(int row, int state) const
    {
        return {Px(RIM + CELL_WIDTH * state), Px(RIM + (CELL_HEIGHT + HEAD) * row + HEAD)};
    }
    static TSize Extent(int aDpi)
    {
        return {Scaled(RIM + CELL_WIDTH * int{STATES}, aDpi),
                Scaled(RIM + (CELL_HEIGHT + HEAD) * int{ROWS}, aDpi)};
    }
    void LayOut(TEdcDrawLayer &layer)
    {
        if (auto *marked = dynamic_cast<TZulMarkedLayer *>(&layer))
            ZulSizeMarks(*marked, surface, 1);
        if (auto *withPerson = dynamic_cast<TZulZoneLayer *>(&layer))
            ZulSizePerson(*withPerson, surface, 1);
        layer.Layout(surface);
        layer.SetTool(EDC_TlSELECT);
    }
    static void TakeState(TEdcDrawLayer &layer, STATE state)
    {
        if (state == IDLE)
            return;
        layer.SetActive(true);
        if (state == ACTIVE)
            return;
        layer.Select(layer.LnkFirst(), true, NULL);
        layer.Select(layer.LnkNext(layer.LnkFirst()), true, NULL);
        if (state != SELECTED)
            layer.SetFocus(layer.LnkNext(layer.LnkFirst()), NULL);
    }
    void Drag(TEdcDrawSprite &spr)
    {
        TEdcDrawDrag drag;
        drag.mode = EDC_DRAWDRAGMOVE;
        drag.shift = AgVECTOR(1.5, 1);
        spr.DragUpdate(drag);
        spr.DragPaint(surface);
    }
    void Write(const char *row, const char *state)
    {
        std::string text = EdcFormat("%s, %s", row, state);
        surface.SetFont({.face = "Arial", .height = Px(13), .weight = 400});
        surface.SetTextColor(WIN_BLACK);
        surface.SetOpaque(false);
        surface.TextOut(Px(4), -Px(HEAD), text.c_str(), static_cast<int>(text.size()));
    }

    int dpi;
    FURNISHED hall;
    TEdcAxes axes;
    TZulEmitterLayer emitters{hall.room.Emitters(), &axes};
    TZulAirHeaterLayer units{hall.room.AirHeaters(), &axes};
    TZulHoleLayer holes{hall.room.Surfaces()->Floor()->Holes(), &axes};
    TZulZoneLayer zones{hall.room.Zones(), &axes};
    TEdcDrawLayer *const layers[ROWS] = {&emitters, &units, &holes, &zones};
    SURFACE surface;
};

class LayersLook : public testing::Test
{
protected:
    LayersLook()
    {
        TestApplication();
        EdcUseResources();
        SetAppDocument(&doc);
    }
    ~LayersLook() override { SetResTextSink(NULL); }

    static void PaintAll(SHEET &sheet)
    {
        for (int row = 0; row < ROWS; ++row)
            for (int state = 0; state < STATES; ++state)
                sheet.Paint(static_cast<ROW>(row), static_cast<STATE>(state));
    }

    TEdcDocument doc;
};

TEST_F(LayersLook, IsInTheColoursOfTheStateAtEveryResolution)
{
    for (int dpi : {96, 144, 192}) {
        SHEET sheet(dpi);
        PaintAll(sheet);
        for (ROW row : {EMITTERS, AIR_HEATERS, HOLES, ZONES}) {
            SCOPED_TRACE(std::string(rowNames[row]) + " at " + std::to_string(dpi));
            EXPECT_EQ(sheet.Colors(row, IDLE)["blue"], 0);
            EXPECT_EQ(sheet.Colors(row, IDLE)["green"], 0);
            EXPECT_GT(sheet.Colors(row, IDLE)["black"], sheet.Colors(row, ACTIVE)["black"]);
            EXPECT_GT(sheet.Colors(row, ACTIVE)["blue"], 100);
            EXPECT_EQ(sheet.Colors(row, ACTIVE)["green"], 0);
            EXPECT_GT(sheet.Colors(row, SELECTED)["green"], 50);
            EXPECT_GT(sheet.Colors(row, SELECTED)["blue"], 20) << "what is not selected";
            EXPECT_TRUE(sheet.Cell(row, DRAGGED) != sheet.Cell(row, FOCUSED)) << "the ghost";
            EXPECT_TRUE(sheet.Cell(row, PRINTED) == sheet.Cell(row, IDLE)) << "whatever is selected";
            bool hasHandles = row == HOLES || row == ZONES;
            EXPECT_EQ(sheet.Cell(row, FOCUSED) != sheet.Cell(row, SELECTED), hasHandles) << "the handles";
        }
        if (const char *folder = getenv("ZUL_PICTURES")) {
            EXPECT_TRUE(sheet.Save(EdcFormat("%s/ebenen-%d.png", folder, dpi)));
        }
    }
}
} // namespace
