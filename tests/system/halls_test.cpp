// Halls made from nothing at the window, by mouse, keys and dialogs: the three sample halls, whose files must
// be those that the build makes through the kernel, and what every edit does to lists, figures and files.
#include "halldesigner.h"
#include "lib/disk.h"
#include "lib/xfail.h"
#include "support/freshpaint.h"
#include "support/reportlines.h"
#include "support/runprogram.h"
#include "support/sampleroom.h"
#include "support/testapp.h"
#include "usr/writtenlines.h"
#include "usr/zulmark.h"
#include "usr/zulpass.h"
#include "usr/zulreport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

namespace
{
using namespace designer;

enum HALL { WORKSHOP, PRODUCTION, LOGISTICS };

std::string BytesOf(const std::string &native)
{
    std::ifstream file(native, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// A hall as text, each number to its last bit: where two files differ this says what differs.

void Put(std::string &text, std::initializer_list<double> numbers)
{
    char number[64];
    for (double value : numbers) {
        snprintf(number, sizeof number, " %.17g", value);
        text += number;
    }
    text += '\n';
}

void PutPoint(std::string &text, const AgPOINT &p)
{
    Put(text, {p.x, p.y, p.z});
}

std::string Told(const std::string &bytes)
{
    std::unique_ptr<EmROOM> room = RoomOfBytes(bytes);
    EXPECT_STREQ(TakeFailure(), XNULL);
    const EmROOMDATA &data = *room->Data();
    std::string text = "hall";
    PutPoint(text, room->Box().max);
    for (const EmCONSTRUCTION &constr : data.constr)
        Put(text, {constr.k, constr.alpha, constr.tExt});
    Put(text,
        {data.airChange, data.airTemp, data.dayHours, data.meanOutTemp, data.designOutTemp, data.runAirTemp,
         data.reducedAirTemp, data.resultTemp, data.regulation, data.fuelPrice, data.techGain});
    Put(text, {static_cast<double>(data.periodDays), static_cast<double>(data.weekDays),
               static_cast<double>(data.fuelType), static_cast<double>(data.workClass),
               static_cast<double>(data.position)});
    for (const EmEMITTER *e = room->Emitters()->First(); e; e = EmEMITTERSET::Next(e)) {
        text += std::string("emitter ") + (e->model ? e->model->Info()->name : "-");
        Put(text, {e->pos.x, e->pos.y, e->pos.z, e->rotation, e->tilt, e->power});
    }
    for (const EmAIRHEATER *u = room->AirHeaters()->First(); u; u = EmAIRHEATERSET::Next(u)) {
        text += std::string("unit ") + u->type;
        Put(text, {u->pos.x, u->pos.y, u->pos.z, u->power});
    }
    int place = 0;
    for (const EmSURFACE *s = room->Surfaces()->First(); s; s = EmSURFACESET::Next(s), ++place)
        for (const EmHOLE *h = s->Holes()->First(); h; h = EmHOLESET::Next(h)) {
            text += std::to_string(place) + " " + h->description;
            Put(text, {h->size.x, h->size.y, h->pos.x, h->pos.y, h->rotation, h->constr.k, h->constr.tExt,
                       static_cast<double>(h->flags)});
        }
    for (const EmZONE *z = room->Zones()->First(); z; z = EmZONESET::Next(z)) {
        text += "zone";
        Put(text, {z->size.x, z->size.y, z->pos.x, z->pos.y, z->rotation});
    }
    const EmARTICLE &article = *room->Article();
    const EmCONCLUSION &closing = *room->Conclusion();
    return text + article.head + "\n" + article.text + "\n" + closing.head + "\n" + closing.text + "\n" +
           closing.author + "\n" + std::to_string(closing.date) + "\n";
}

class Halls : public testing::Test
{
protected:
    /// The new hall with the data of its dialogs.
    void Begin(const HALLTABLE &hall)
    {
        at.NewHall(hall.size);
        at.FillTexts(hall);
        at.FillPeriod(hall.data);
        at.FillInsulation(hall.data);
        at.FillEnergy(hall.data);
        at.FillHygiene(hall.data);
    }
    void PlaceOpenings(const HALLTABLE &hall, int surface)
    {
        for (const OPENINGROW &row : hall.openings)
            if (row.surface == surface)
                at.PlaceOpenings(row);
    }
    void EditWalls(const HALLTABLE &hall)
    {
        for (int surface : {ON_WALL_A, ON_WALL_B, ON_WALL_C, ON_WALL_D}) {
            at.OpenPlan(at.PlanOf(surface));
            PlaceOpenings(hall, surface);
            EXPECT_TRUE(LooksFresh(at.Doc()));
            at.ClosePlan();
        }
    }
    /// The closing line is dated today by whatever changes a hall; no dialog states another date.
    std::string Save(const HALLTABLE &hall)
    {
        at.Room().Conclusion()->date = hall.date;
        file = at.Folder().Path("Halle.sc1");
        at.SaveAs(file);
        return file;
    }
    void ExpectSample(const HALLTABLE &hall)
    {
        const std::string made = BytesOf(Save(hall));
        const std::string sample = BytesOf(at.ProgramFile(std::string("Beispiele/") + hall.file));
        ASSERT_FALSE(sample.empty());
        if (made != sample) {
            EXPECT_EQ(Told(made), Told(sample));
        }
        EXPECT_TRUE(made == sample) << "byte for byte";
    }

    /// Saves, updates with the parameters as they are offered, and compares what the window has with what the
    /// file gives anew.
    void ExpectFiguresOfFile()
    {
        at.Choose(SAVE);
        EXPECT_FALSE(at.Doc().modified);
        std::unique_ptr<EmROOM> room = RoomOfBytes(BytesOf(file));
        ASSERT_STREQ(TakeFailure(), XNULL);
        at.Evaluate();
        EXPECT_FALSE(at.Doc().modified) << "a calculation is no change";
        TZulMapInfo info;
        ZulPassMap map;
        ZulRunPass(*room, ZulPassParams(), info, map);
        ASSERT_STREQ(TakeFailure(), XNULL);
        ExpectInfo(info);
        ExpectMap(map);
        ExpectLists(*room);
        EXPECT_TRUE(BytesOf(file) == RoomBytes(at.Room()));
    }
    void ExpectInfo(const TZulMapInfo &info)
    {
        const TZulMapInfo &shown = at.Doc().MapInfo();
        static double TZulMapInfo::*const figures[] = {
            &TZulMapInfo::height,     &TZulMapInfo::minInte, &TZulMapInfo::maxInte,  &TZulMapInfo::meanInte,
            &TZulMapInfo::spread,     &TZulMapInfo::sumInte, &TZulMapInfo::loss,     &TZulMapInfo::emittPower,
            &TZulMapInfo::airhtPower, &TZulMapInfo::area,    &TZulMapInfo::volume,   &TZulMapInfo::airTemp,
            &TZulMapInfo::maxAirTemp, &TZulMapInfo::maxFuel, &TZulMapInfo::yearFuel, &TZulMapInfo::yearCost};
        for (size_t i = 0; i < std::size(figures); ++i)
            EXPECT_EQ(shown.*figures[i], info.*figures[i]) << "figure " << i;
        EXPECT_STREQ(shown.fuelUnit, info.fuelUnit);
    }
    void ExpectMap(const ZulPassMap &map)
    {
        const ZulPixels &shown = at.Doc().RoomBlock()->Map().pixels;
        ASSERT_EQ(shown.Width(), map.pixels.Width());
        ASSERT_EQ(shown.Height(), map.pixels.Height());
        for (int j = 0; j < shown.Height(); ++j)
            ASSERT_TRUE(std::equal(shown.Row(j), shown.Row(j) + shown.Width(), map.pixels.Row(j))) << j;
    }
    void ExpectLists(const EmROOM &room)
    {
        std::vector<ZulListBlocks> lists = {ZulHoleList(*room.Surfaces()->Floor()->Holes()),
                                            ZulEmitterList(*room.Emitters()),
                                            ZulAirHeaterList(*room.AirHeaters())};
        for (const EmSURFACE *wall = room.Surfaces()->FirstWall(); wall; wall = EmSURFACESET::Next(wall))
            lists.push_back(ZulHoleList(*wall->Holes()));
        lists.push_back(ZulHoleList(*room.Surfaces()->Ceiling()->Holes()));
        static const size_t parts[] = {3, 4, 5, 7, 9, 11, 13, 15};
        ASSERT_EQ(lists.size(), std::size(parts));
        for (size_t i = 0; i < lists.size(); ++i)
            EXPECT_EQ(RowsOf(at.Doc().Parts()[parts[i]]), RowsOf(lists[i])) << "list " << i;
        at.Doc().Refresh(EDC_LAYOUT); // the blocks were laid out for another device
    }
    static std::string RowsOf(const ZulListBlocks &list)
    {
        std::string rows;
        for (const std::string &block : list) {
            std::istringstream lines(block);
            for (std::string line; std::getline(lines, line);)
                rows += Bare(line) + "\n";
        }
        return rows;
    }
    static std::string Bare(std::string line)
    {
        std::replace(line.begin(), line.end(), '~', ' ');
        line.erase(line.find_last_not_of(' ') + 1);
        return line;
    }
    /// The rows of a list as its blocks in the report write them, behind the heading and the titles.
    static std::string RowsOf(TEdcBlock *group)
    {
        enum { HEADS = 2 };
        TWriteDC device(300);
        std::string rows;
        int i = 0;
        for (TEdcBlock *blk = group; blk && (blk == group || blk->group == group); blk = blk->next) {
            if (i++ < HEADS)
                continue;
            device.Write(*blk, 20);
            for (const std::string &line : device.Lines())
                rows += Bare(line) + "\n";
        }
        return rows;
    }

    void OpenSample(HALL hall)
    {
        file = at.Folder().Path("Halle.sc1");
        std::filesystem::copy(at.ProgramFile(std::string("Beispiele/") + hallTables[hall].file), file);
        at.Open(file);
    }
    const EmEMITTER &Emitter(int i)
    {
        const EmEMITTER *e = at.Room().Emitters()->First();
        while (i-- > 0)
            e = EmEMITTERSET::Next(e);
        return *e;
    }

    HallDesigner at;
    std::string file; // native, of the hall
};
} // namespace

// The sample halls

TEST_F(Halls, TheWorkshopIsMadeByHand)
{
    const HALLTABLE &hall = hallTables[WORKSHOP];
    Begin(hall);
    at.OpenPlan(at.FloorPlan());
    // Hung along the hall, then turned with the right button: Shift holds to right angles.
    EMITTERROW row = hall.emitters[0];
    row.rotation = 0;
    at.PlaceEmitters(row);
    for (int i = 0; i < row.count; ++i) {
        AgPOINT p = row.first + row.step * i;
        at.Click(at.At(p.x, p.y));
        at.Click(at.At(1, 1));
        EXPECT_EQ(at.Layer().CountSel(), 0);
        at.Click(at.At(p.x, p.y));
        at.Drag(at.At(p.x + 1, p.y), at.At(p.x, p.y + 1), testdoor::RIGHT, WIN_KEY_SHIFT);
        EXPECT_EQ(Emitter(i).rotation, AgPI / 2);
        at.Take(ZUL_EMITTERS, EDC_TlSELECT);
    }
    // Placed level and tilted later.
    row = hall.emitters[1];
    row.tilt = 0;
    at.PlaceEmitters(row);
    at.Edit(at.At(row.first.x, row.first.y), [&](DialogBox &box) {
        EXPECT_EQ(box.Text(103), "5.2");
        box.Type(104, Written(hall.emitters[1].tilt));
    });
    at.DrawZoneOnGrid(hall.zones[0]);
    at.DrawZoneOnGrid(hall.zones[1]);
    at.DrawOpening(hall.openings[0]);
    EXPECT_TRUE(LooksFresh(at.Doc()));
    at.ClosePlan();
    // One dome, the others are its copies.
    at.OpenPlan(at.PlanOf(ON_CEILING));
    OPENINGROW dome = hall.openings[1];
    ASSERT_EQ(dome.surface, ON_CEILING);
    dome.count = 1;
    at.PlaceOpenings(dome);
    for (int i = 1; i < hall.openings[1].count; ++i) {
        AgPOINT from = dome.first + hall.openings[1].step * (i - 1);
        AgPOINT to = dome.first + hall.openings[1].step * i;
        at.Locate(at.At(from.x, from.y), {.x = to.x, .y = to.y, .copy = true});
        EXPECT_EQ(at.Layer().CountLnk(), i + 1);
    }
    at.ClosePlan();
    EditWalls(hall);
    ExpectSample(hall);
}

TEST_F(Halls, TheProductionHallIsMadeByHand)
{
    const HALLTABLE &hall = hallTables[PRODUCTION];
    Begin(hall);
    for (const UNITROW &row : hall.units)
        at.PlaceUnits(row);
    at.OpenPlan(at.FloorPlan());
    at.PlaceEmitters(hall.emitters[0]);
    at.PlaceEmitters(hall.emitters[1]);
    // All of the row are turned at once, each about its own middle.
    EMITTERROW plates = hall.emitters[2];
    plates.rotation = 0;
    at.PlaceEmitters(plates);
    at.Locate(at.At(plates.first.x, plates.first.y),
              {.x = plates.first.x, .y = plates.first.y, .angle = 90, .sync = true});
    EXPECT_EQ(Emitter(12).rotation, AgPI / 2);
    at.PlaceEmitters(hall.emitters[3]);
    for (const ZONEROW &row : hall.zones)
        at.DrawZone(row);
    for (const OPENINGROW &row : hall.openings)
        if (row.surface == ON_FLOOR)
            at.DrawOpening(row);
    at.ClosePlan();
    at.OpenPlan(at.PlanOf(ON_CEILING));
    PlaceOpenings(hall, ON_CEILING);
    at.ClosePlan();
    EditWalls(hall);
    ExpectSample(hall);
}

TEST_F(Halls, TheLogisticsHallIsMadeByHand)
{
    const HALLTABLE &hall = hallTables[LOGISTICS];
    Begin(hall);
    for (const UNITROW &row : hall.units)
        at.PlaceUnits(row);
    at.OpenPlan(at.FloorPlan());
    for (size_t i = 0; i + 1 < hall.emitters.size(); ++i)
        at.PlaceEmitters(hall.emitters[i]);
    // The heaters behind the gates get height and tilt together.
    EMITTERROW bright = hall.emitters.back();
    EMITTERROW low = bright;
    low.first.z = 4;
    low.tilt = 0;
    at.PlaceEmitters(low);
    at.Edit(at.At(bright.first.x, bright.first.y), [&](DialogBox &box) {
        EXPECT_EQ(at.Layer().CountSel(), bright.count);
        box.Type(103, Written(bright.first.z));
        box.Type(104, Written(bright.tilt));
    });
    for (const ZONEROW &row : hall.zones)
        at.DrawZone(row);
    at.ClosePlan();
    at.OpenPlan(at.PlanOf(ON_CEILING));
    PlaceOpenings(hall, ON_CEILING);
    at.ClosePlan();
    EditWalls(hall);
    ExpectSample(hall);
}

// Edits, and what follows from each

TEST_F(Halls, EveryKindOfEditIsInTheFileTheListsAndTheFigures)
{
    OpenSample(WORKSHOP);
    at.OpenPlan(at.FloorPlan());
    EmEMITTERSET &emitters = *at.Room().Emitters();
    const struct {
        const char *name;
        std::function<void()> edit;
        int emitters; // afterwards
    } edits[] = {
        {"place",
         [&] {
             EMITTERROW row = hallTables[WORKSHOP].emitters[0];
             row.first = {10, 3, 5};
             row.count = 1;
             at.PlaceEmitters(row);
         },
         4},
        {"move", [&] { at.Drag(at.At(10, 3), at.At(12, 4)); }, 4},
        {"turn", [&] { at.Drag(at.At(12, 5.5), at.At(13, 5), testdoor::RIGHT); }, 4},
        {"copy", [&] { at.Drag(at.At(12, 4), at.At(16, 3), testdoor::LEFT, WIN_KEY_CTRL); }, 5},
        {"dialog",
         [&] { at.Edit(at.At(16, 3), [](DialogBox &box) { box.Type(103, "5.5"), box.Type(104, "20"); }); }, 5},
        {"model", [&] { at.Edit(at.At(12, 4), [](DialogBox &box) { box.Choose(100, 3); }); }, 5},
        {"no model", [&] { at.Edit(at.At(12, 4), [](DialogBox &box) { box.Choose(100, 1); }); }, 5},
        {"delete", [&] { at.Key("Del"); }, 4},
        {"place exactly", [&] { at.Locate(at.At(16, 3), {.x = 15, .y = 2.5, .angle = 30}); }, 4},
        {"row",
         [&] {
             EMITTERROW row = hallTables[WORKSHOP].emitters[1];
             row.first = {4, 1, 5};
             row.step = {2.5, 0, 0};
             row.count = 6;
             at.PlaceEmitters(row);
         },
         10},
    };
    for (const auto &row : edits) {
        SCOPED_TRACE(row.name);
        const std::string former = RoomBytes(at.Room());
        row.edit();
        EXPECT_EQ(emitters.Count(), row.emitters);
        EXPECT_FALSE(RoomBytes(at.Room()) == former);
        EXPECT_TRUE(at.Doc().modified);
        EXPECT_EQ(at.Doc().openedBlk, at.FloorPlan());
        EXPECT_EQ(at.Layer().Id(), ZUL_EMITTERS);
        EXPECT_EQ(at.Layer().CountLnk(), emitters.Count());
        EXPECT_TRUE(LooksFresh(at.Doc()));
        ExpectFiguresOfFile();
        EXPECT_EQ(at.Doc().openedBlk, at.FloorPlan()) << "an update leaves the plan open";
        EXPECT_TRUE(LooksFresh(at.Doc()));
        if (std::string(row.name) == "no model") // the update has forgotten the selection
            at.Click(at.At(12, 4));
    }
}

TEST_F(Halls, OpeningsOfEveryPlanAreInTheFileTheListsAndTheFigures)
{
    OpenSample(WORKSHOP);
    for (int surface = ON_FLOOR; surface <= ON_WALL_D; ++surface) {
        SCOPED_TRACE(surface);
        at.OpenPlan(at.PlanOf(surface));
        if (surface == ON_FLOOR)
            at.Press(ZUL_HOLES);
        int former = at.Layer().CountLnk();
        OPENINGROW row = hallTables[WORKSHOP].openings[0];
        row.ownTemp = surface % 2 == 0;
        row.size = {1, 0.8};
        row.first = {1.5, 4.4};
        at.PlaceOpenings(row);
        row.first = {3.5, 4.4};
        row.size = {1.2, 0.8};
        at.DrawOpening(row);
        EXPECT_EQ(at.Layer().CountLnk(), former + 2);
        at.Drag(at.At(1.5, 4.4), at.At(1.5, 3), testdoor::LEFT, WIN_KEY_CTRL);
        EXPECT_EQ(at.Layer().CountLnk(), former + 3);
        ExpectFiguresOfFile();
        at.Click(at.At(1.5, 3));
        at.Press(EDC_CmDELETE);
        EXPECT_EQ(at.Layer().CountLnk(), former + 2);
        EXPECT_EQ(at.Layer().CountSel(), 0);
        EXPECT_TRUE(LooksFresh(at.Doc()));
        ExpectFiguresOfFile();
        at.ClosePlan();
    }
}

TEST_F(Halls, ZonesAreEditedWithoutTouchingFigures)
{
    OpenSample(WORKSHOP);
    at.Evaluate();
    const TZulMapInfo former = at.Doc().MapInfo();
    at.OpenPlan(at.FloorPlan());
    at.DrawZone({{3, 2}, {15, 9}, 30});
    ASSERT_EQ(at.Room().Zones()->Count(), 3);
    EXPECT_EQ(at.Layer().CountSel(), 1);
    at.DoubleClick(at.At(2, 0.75)); // nothing opens: its frame alone
    EXPECT_FALSE(at.Frame().TryCommand(EDC_CmOPEN));
    ExpectFiguresOfFile();
    EXPECT_EQ(former.meanInte, at.Doc().MapInfo().meanInte);
    at.Click(at.At(6.5, 2)); // the right side of the second one
    EXPECT_EQ(at.Layer().CountSel(), 1);
    at.Key("Del");
    EXPECT_EQ(at.Room().Zones()->Count(), 2);
    ExpectFiguresOfFile();
}

TEST_F(Halls, KeysAndRightButtonDoOnAPlanWhatTheySay)
{
    const std::string things = "\xD6&ffnen\n&Plazieren...\n&Ausgleichen...\n&Beseitigen\tEntf\n";
    auto pick = [](int item, const std::string &items, int preset) {
        testdoor::Script([=](ModalBox &face) {
            EXPECT_EQ(face.Kind(), "popup");
            EXPECT_EQ(face.Text(), items);
            EXPECT_EQ(face.Default(), preset);
            face.Answer(item);
        });
    };
    OpenSample(WORKSHOP);
    at.OpenPlan(at.FloorPlan());
    // Emitters
    at.Key("Ctrl+A");
    EXPECT_EQ(at.Layer().CountSel(), 3);
    pick(EDC_CmOPEN, things, EDC_CmOPEN);
    HallDesigner::Box([](DialogBox &box) {
        EXPECT_EQ(box.Text(100), "(Auswahl)");
        EXPECT_EQ(box.Text(103), "");
    });
    at.RightClick(at.At(5, 6));
    EXPECT_EQ(at.Layer().CountSel(), 3) << "the menu is about all that is selected";
    TPoint before = at.At(5, 6);
    at.Key("Down");
    at.Key("Right");
    EXPECT_EQ(Emitter(0).pos, AgPOINT(5, 6, 4.8)) << "arrows scroll";
    at.Key("Up");
    at.Key("Left");
    EXPECT_EQ(at.At(5, 6), before);
    at.Click(at.At(1, 11));
    EXPECT_EQ(at.Layer().CountSel(), 0);
    pick(EDC_CmDELETE, things, EDC_CmOPEN);
    at.RightClick(at.At(10, 11.4));
    EXPECT_EQ(at.Room().Emitters()->Count(), 2);
    at.RightClick(at.At(1, 11)); // nothing there, no menu
    pick(EDC_CmALIGN, things, EDC_CmOPEN);
    at.RightClick(at.At(14.5, 6));
    EXPECT_EQ(at.Sprites().Tool()->Id(), EDC_TlALIGN);
    at.RightClick(at.At(1, 11));
    EXPECT_EQ(at.Sprites().Tool()->Id(), EDC_TlSELECT);
    // Openings: one's corner has a menu of its own.
    at.Press(ZUL_HOLES);
    at.Click(at.At(14, 3));
    pick(EDC_CmLOCATE, "&Plazieren...\n", 0);
    HallDesigner::Box([](DialogBox &box) { box.Type(100, "18"); });
    at.RightClick(at.At(17, 3.5));
    EXPECT_EQ(at.Room().Surfaces()->Floor()->Holes()->First()->size, AgPOINT(7, 1, 0));
    pick(EDC_CmDELETE, things, EDC_CmOPEN);
    at.RightClick(at.At(14.5, 3));
    EXPECT_EQ(at.Room().Surfaces()->Floor()->Holes()->Count(), 0);
    EXPECT_TRUE(LooksFresh(at.Doc()));
    at.Press(BACK);
    EXPECT_EQ(at.Doc().openedBlk, nullptr);
    EXPECT_TRUE(LooksFresh(at.Doc()));
}

TEST_F(Halls, EscTakesADragBackAndThenLeavesThePlan)
{
    OpenSample(PRODUCTION);
    for (int surface = ON_FLOOR; surface <= ON_WALL_D; ++surface) {
        SCOPED_TRACE(surface);
        at.OpenPlan(at.PlanOf(surface));
        if (surface == ON_FLOOR)
            at.Press(ZUL_HOLES);
        auto &sprite = static_cast<TEdcDrawSprite &>(*at.Layer().LnkFirst());
        const AgPOINT middle = sprite.Desc().centre;
        const std::string former = RoomBytes(at.Room());
        TPoint grip = at.At(middle.x, middle.y);
        testdoor::Press(at.Doc(), grip);
        testdoor::Move(at.Doc(), grip + TPoint{20, 15}, 0, true);
        at.Key("Esc");
        testdoor::Release(at.Doc(), grip + TPoint{20, 15});
        testdoor::Settle();
        EXPECT_TRUE(RoomBytes(at.Room()) == former);
        EXPECT_EQ(at.Doc().openedBlk, at.PlanOf(surface));
        EXPECT_TRUE(LooksFresh(at.Doc()));
        at.ClosePlan();
    }
    EXPECT_FALSE(at.Doc().modified);
}

TEST_F(Halls, NothingIsPlacedBeforeItsParametersAreStated)
{
    OpenSample(WORKSHOP);
    at.OpenPlan(at.FloorPlan());
    HallDesigner::Box([](DialogBox &) {}, WIN_ID_CANCEL);
    at.Take(ZUL_EMITTERS, EDC_TlSTOCK);
    testdoor::Script([](ModalBox &face) {
        EXPECT_EQ(face.Kind(), "message");
        EXPECT_NE(face.Text().find("Objektparameter"), std::string::npos);
        face.Answer(WIN_ID_OK);
    });
    at.Click(at.At(10, 3));
    EXPECT_EQ(at.Room().Emitters()->Count(), 3);
    // The right button states them after all.
    HallDesigner::Box(HallDesigner::EmitterFill(hallTables[WORKSHOP].emitters[0]));
    at.RightClick(at.At(10, 3));
    at.Click(at.At(10, 3));
    at.Click(at.At(12, 2));
    EXPECT_EQ(at.Room().Emitters()->Count(), 5);
    EXPECT_EQ(at.Layer().CountSel(), 1) << "the newest one";
    // And remembers them when it asks again.
    HallDesigner::Box([](DialogBox &box) {
        EXPECT_EQ(box.Text(100), "Dunkel 15");
        EXPECT_EQ(box.Text(103), "4.8");
        box.Type(103, "5.1");
    });
    at.RightClick(at.At(1, 11));
    at.Click(at.At(15, 2));
    EXPECT_EQ(Emitter(5).pos.z, 5.1);
    ExpectFiguresOfFile();
    at.Click(at.At(17, 2)); // with the same tool, behind an update
    EXPECT_EQ(Emitter(6).pos.z, 5.1);
    EXPECT_EQ(at.Layer().CountSel(), 1);
    // A plan that is opened again begins anew.
    at.ClosePlan();
    at.OpenPlan(at.FloorPlan());
    HallDesigner::Box([](DialogBox &box) { EXPECT_EQ(box.Text(103), ""); }, WIN_ID_CANCEL);
    at.Take(ZUL_EMITTERS, EDC_TlSTOCK);
}

TEST_F(Halls, TheSmallestAndAVeryLargeHallAreDesignedAlike)
{
    for (const AgPOINT &size : {AgPOINT(1, 1, 1), AgPOINT(10000, 8000, 1000)}) {
        SCOPED_TRACE(size.x);
        at.NewHall(size);
        at.FillPeriod(hallTables[WORKSHOP].data);
        at.FillInsulation(hallTables[WORKSHOP].data);
        at.FillEnergy(hallTables[WORKSHOP].data);
        at.FillHygiene(hallTables[WORKSHOP].data);
        auto part = [&size](double x, double y) { return AgPOINT(size.x * x, size.y * y); };
        at.OpenPlan(at.FloorPlan());
        EMITTERROW row = hallTables[WORKSHOP].emitters[0];
        row.first = part(0.25, 0.5);
        row.first.z = size.z * 0.8;
        row.step = part(0.5, 0);
        at.PlaceEmitters(row);
        EXPECT_EQ(Emitter(1).pos, AgPOINT(size.x * 0.75, size.y * 0.5, size.z * 0.8));
        at.DrawZone({part(0.5, 0.25), part(0.5, 0.25), 0});
        EXPECT_EQ(at.Room().Zones()->First()->size, part(0.5, 0.25));
        at.ClosePlan();
        for (int surface = ON_CEILING; surface <= ON_WALL_D; ++surface) {
            at.OpenPlan(at.PlanOf(surface));
            OPENINGROW opening = hallTables[WORKSHOP].openings[1];
            opening.size = AgPOINT(0.5, 0.25) * size.z;
            opening.first = opening.size;
            opening.count = 1;
            at.PlaceOpenings(opening);
            EXPECT_TRUE(LooksFresh(at.Doc()));
            at.ClosePlan();
        }
        file = at.Folder().Path("Halle" + Written(size.x) + ".sc1");
        at.SaveAs(file);
        ExpectFiguresOfFile();
        EXPECT_TRUE(LooksFresh(at.Doc()));
    }
}

// Catalogues

TEST_F(Halls, AnElementThatIsAddedByTheMenuIsFoundAtOnce)
{
    OpenSample(WORKSHOP);
    testdoor::Script([](ModalBox &face) {
        DialogBox box(face);
        EXPECT_EQ(box.Caption(), "Katalog der Bauelemente");
        std::vector<std::string> groups = box.Entries(100);
        box.ClickEntry(100,
                       static_cast<int>(std::find(groups.begin(), groups.end(), "Fenster") - groups.begin()));
        HallDesigner::Box([](DialogBox &item) {
            item.Type(100, "Vakuumglas für Höhenlagen, 4-fach"); // 33 characters, of which 31 fit
            item.Type(101, "0.45");
        });
        box.Click(103);
        box.Click(110);
    });
    at.Choose(ELEMENTS);
    EXPECT_FALSE(at.Doc().modified) << "a catalogue is no part of a hall";
    at.OpenPlan(at.PlanOf(ON_WALL_A));
    at.Edit(at.At(3, 2.2), [](DialogBox &box) {
        ChooseElement("Fenster", "Vakuumglas für Höhenlagen, 4-fa");
        box.Click(102);
        EXPECT_EQ(box.Text(100), Shown("Fenster, Vakuumglas für Höhenlagen, 4-fa"));
        EXPECT_EQ(box.Text(101), "0.45");
    });
    EXPECT_EQ(at.Room().Surfaces()->FirstWall()->Holes()->First()->constr.k, 0.45);
    ExpectFiguresOfFile();
    HallDesigner::Box([](DialogBox &box) {
        ChooseElement("Fenster", "Vakuumglas für Höhenlagen, 4-fa");
        box.Click(104);
        EXPECT_EQ(box.Text(103), "0.45");
    });
    at.Choose(INSULATION);
    EXPECT_EQ(at.Room().Data()->constr[EM_WALLS].k, 0.45);
    ExpectFiguresOfFile();
}

TEST_F(Halls, UnitsAreKeptInTheirCatalogueByTheMenu)
{
    auto open = [this](const FILL &work) {
        testdoor::Script([=](ModalBox &face) {
            DialogBox box(face);
            EXPECT_EQ(box.Caption(), "Katalog der Warmluftaggregate");
            work(box);
            box.Click(105);
        });
        at.Choose(UNITS);
    };
    size_t former = 0;
    open([&](DialogBox &box) {
        former = box.Entries(100).size();
        HallDesigner::Box([](DialogBox &item) {
            const char *values[] = {"Deckengerät DG 20", "20000", "25", "2300", "0.8", "0.6", "0.7"};
            const int fields[] = {100, 101, 102, 103, 104, 106, 105};
            for (size_t i = 0; i < std::size(fields); ++i)
                item.Type(fields[i], values[i]);
        });
        box.Click(102);
    });
    EXPECT_GE(former, 8U);
    open([&](DialogBox &box) {
        std::vector<std::string> entries = box.Entries(100);
        EXPECT_EQ(entries.size(), former + 1);
        EXPECT_NE(std::find(entries.begin(), entries.end(), Shown("Deckengerät DG 20")), entries.end());
    });
}

// Paper

TEST_F(Halls, AHallMadeByHandPrintsTheFiguresOfItsFile)
{
    const HALLTABLE &hall = hallTables[WORKSHOP];
    Begin(hall);
    at.OpenPlan(at.FloorPlan());
    for (const EMITTERROW &row : hall.emitters)
        at.PlaceEmitters(row);
    for (const ZONEROW &row : hall.zones)
        at.DrawZone(row);
    at.DrawOpening(hall.openings[0]);
    at.Press(BACK);
    EditWalls(hall);
    Save(hall);
    ExpectFiguresOfFile();
    const std::string paper = at.Folder().Path("Bericht.pdf");
    at.Print(paper);
    ProgramRun run = RunProgram({at.ProgramFile("zulcalc"), "--json", "-", file}, at.Folder().path);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    CompareAll(Lines(paper), nlohmann::json::parse(run.out));
    EXPECT_TRUE(LooksFresh(at.Doc()));
}
