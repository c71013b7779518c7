#include "halldesigner.h"

#include "lib/disk.h"
#include "lib/xfail.h"
#include "support/testapp.h"
#include "usr/edcutils.h"
#include "usr/zulmark.h"
#include "win/gadgets.h"
#include "win/utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace designer
{
namespace
{
const double CLIENT_WIDTH = 1300; // px at display scale 1, and not much more at others
const double CLIENT_HEIGHT = 840;
enum { FINE = 110 }; // px a metre: more than one a step of the grid

/// A folder like the program's, in which a test may change the catalogues.
void MakeProgramFolder(const std::string &path)
{
    namespace fs = std::filesystem;
    fs::create_directory(path);
    for (const auto &entry : fs::directory_iterator(ZUL_PROGRAM_FOLDER)) {
        const fs::path target = fs::path(path) / entry.path().filename();
        if (entry.path().filename() == "Katalogy")
            fs::copy(entry.path(), target, fs::copy_options::recursive);
        else
            fs::create_symlink(entry.path(), target);
    }
}

int IndexOf(const std::vector<std::string> &entries, const std::string &wanted)
{
    auto found = std::find(entries.begin(), entries.end(), wanted);
    EXPECT_NE(found, entries.end()) << wanted << " among " << testing::PrintToString(entries);
    return found == entries.end() ? 0 : static_cast<int>(found - entries.begin());
}

void SetCheck(DialogBox &box, int id, bool on)
{
    if ((box.Check(id) == WIN_CHECKED) != on)
        box.Click(id);
    EXPECT_EQ(box.Check(id) == WIN_CHECKED, on) << id;
}

std::string startFolder; // native, of the program that starts next
} // namespace

std::string Written(double value)
{
    char text[32];
    snprintf(text, sizeof text, "%g", value);
    return text;
}

std::string Shown(const std::string &utf8)
{
    return FromUtf8(utf8.c_str());
}

HallDesigner::HallDesigner()
{
    startFolder = ProgramFile("");
    startFolder.pop_back();
    MakeProgramFolder(startFolder);
    TEdcApplication::startUp = [] {
        SetProgramPath((startFolder + "/Zulerion").c_str());
        ZulStartUp();
    };
    application = std::make_unique<TEdcApplication>(count, values);
    testdoor::PendingScripts();
    testdoor::UnexpectedBoxes();
    application->InitMainWindow();
    Frame().Create();
    double scale = std::min(TestScale(), 1.4);
    testdoor::ResizeClient(Doc(),
                           {static_cast<int>(CLIENT_WIDTH * scale), static_cast<int>(CLIENT_HEIGHT * scale)});
    testdoor::Settle();
    EXPECT_STREQ(xCode, XNULL);
}

HallDesigner::~HallDesigner()
{
    EXPECT_EQ(testdoor::PendingScripts(), 0) << "a script waited for a box that never came";
    EXPECT_EQ(testdoor::UnexpectedBoxes(), 0);
    ZulShutDown();
    application.reset();
    TEdcApplication::startUp = [] {};
    TEdcApplication::title[0] = '\0';
    TEdcApplication::iconId = TEdcApplication::menuId = 0;
}

// Menus and data

void HallDesigner::Choose(int command)
{
    testdoor::ChooseMenu(Frame(), command);
    testdoor::Settle();
    EXPECT_STREQ(xCode, XNULL);
}

void HallDesigner::Press(int gadget)
{
    testdoor::IdleStep();
    EXPECT_TRUE(testdoor::ClickGadget(Frame(), gadget)) << gadget;
    testdoor::Settle();
    EXPECT_STREQ(xCode, XNULL);
}

void HallDesigner::Key(const char *key)
{
    testdoor::Key(Doc(), key);
    testdoor::Settle();
}

void HallDesigner::Open(const std::string &native)
{
    testdoor::Drop(Doc(), native.c_str());
    testdoor::Settle();
    ASSERT_NE(Doc().Room(), nullptr) << native;
}

void HallDesigner::Box(const FILL &fill, int answer)
{
    testdoor::Script([=](ModalBox &face) {
        EXPECT_EQ(face.Kind(), "dialog");
        DialogBox box(face);
        fill(box);
        box.Click(answer);
    });
}

void HallDesigner::NewHall(const AgPOINT &size)
{
    enum { LENGTH = 100, WIDTH = 101, HEIGHT = 102 };
    Box([&](DialogBox &box) {
        EXPECT_EQ(box.Caption(), "Neu");
        EXPECT_EQ(box.Focus(), LENGTH);
        box.Type(LENGTH, Written(size.x));
        box.Type(WIDTH, Written(size.y));
        box.Type(HEIGHT, Written(size.z));
    });
    Choose(NEW);
    ASSERT_NE(Doc().Room(), nullptr);
    EXPECT_EQ(Frame().Caption().substr(0, 8), "Zulerion");
}

void HallDesigner::FillPeriod(const EmROOMDATA &data)
{
    Box([&](DialogBox &box) {
        const double fields[] = {static_cast<double>(data.periodDays),
                                 data.meanOutTemp,
                                 data.designOutTemp,
                                 static_cast<double>(data.weekDays),
                                 data.dayHours,
                                 data.runAirTemp,
                                 data.resultTemp,
                                 data.reducedAirTemp};
        int id = 100;
        for (double field : fields)
            box.Type(id++, Written(field));
    });
    Choose(PERIOD);
}

void HallDesigner::FillInsulation(const EmROOMDATA &data)
{
    Box([&](DialogBox &box) {
        box.Type(100, Written(data.constr[EM_FLOOR].k));
        box.Type(102, Written(data.constr[EM_FLOOR].tExt));
        box.Type(103, Written(data.constr[EM_WALLS].k));
        box.Type(107, Written(data.constr[EM_CEILING].k));
        box.Type(111, Written(data.airChange));
        const struct {
            int field, button;
            double value;
        } outside[] = {{105, 106, data.constr[EM_WALLS].tExt},
                       {109, 110, data.constr[EM_CEILING].tExt},
                       {112, 113, data.airTemp}};
        for (const auto &row : outside) {
            box.Click(row.button);
            EXPECT_EQ(box.Text(row.field), Written(data.designOutTemp));
            if (row.value != data.designOutTemp)
                box.Type(row.field, Written(row.value));
        }
    });
    Choose(INSULATION);
}

void HallDesigner::FillEnergy(const EmROOMDATA &data)
{
    Box([&](DialogBox &box) {
        box.Choose(100, data.fuelType - EM_NATURAL_GAS);
        box.Type(101, Written(data.regulation));
        box.Type(103, Written(data.fuelPrice));
        box.Type(104, Written(data.techGain / 1000));
    });
    Choose(ENERGY);
}

void HallDesigner::FillHygiene(const EmROOMDATA &data)
{
    Box([&](DialogBox &box) {
        box.Choose(100, data.workClass);
        box.Choose(101, data.position - EM_STANDING);
    });
    Choose(HYGIENE);
}

/// A long text comes from the clipboard, as out of a letter to the customer.
void HallDesigner::FillTexts(const HALLTABLE &hall)
{
    Box([&](DialogBox &box) {
        box.Type(100, hall.head);
        box.Type(101, hall.text);
    });
    Choose(ARTICLE);
    Box([&](DialogBox &box) {
        EXPECT_EQ(box.Text(100), Shown("Schlußfolgerung"));
        box.Paste(101, hall.conclusion);
        box.Type(102, hall.author);
    });
    Choose(CLOSING);
}

void HallDesigner::Evaluate()
{
    Box([](DialogBox &box) { EXPECT_EQ(box.Caption(), "Aktualisierung"); });
    Key("F5");
    EXPECT_STREQ(xCode, XNULL);
    EXPECT_TRUE(Doc().RoomBlock()->IsValid());
}

void HallDesigner::SaveAs(const std::string &native)
{
    testdoor::Script([=](ModalBox &face) {
        EXPECT_EQ(face.Kind(), "save");
        face.FileName(native);
        face.Answer(WIN_ID_OK);
    });
    Choose(SAVE_AS);
    EXPECT_FALSE(Doc().modified);
}

void HallDesigner::Print(const std::string &native)
{
    testdoor::Script([=](ModalBox &face) {
        EXPECT_EQ(face.Kind(), "print");
        face.FileName(native);
        face.Answer(WIN_ID_OK);
    });
    Choose(PRINT);
}

// Plans

TEdcBlock *HallDesigner::PlanOf(int surface)
{
    enum { FLOOR = 2, WALL_A = 6, WALL_B = 8, WALL_C = 10, WALL_D = 12, CEILING = 14 }; // among the parts
    static const int parts[] = {FLOOR, CEILING, WALL_A, WALL_B, WALL_C, WALL_D};
    return Doc().Parts()[static_cast<size_t>(parts[surface])];
}

TEdcSpriteManager &HallDesigner::Sprites()
{
    if (auto *room = dynamic_cast<TZulRoomBlock *>(Doc().openedBlk))
        return room->Sprites();
    return dynamic_cast<TZulWallBlock &>(*Doc().openedBlk).Sprites();
}

TEdcAxes &HallDesigner::Axes()
{
    if (auto *room = dynamic_cast<TZulRoomBlock *>(Doc().openedBlk))
        return room->Axes();
    return dynamic_cast<TZulWallBlock &>(*Doc().openedBlk).Axes();
}

TEdcDrawLayer &HallDesigner::Layer()
{
    return dynamic_cast<TEdcDrawLayer &>(*Sprites().Layer());
}

/// A plan that opens has its first layer and the selector in hand and nothing selected.
void HallDesigner::OpenPlan(TEdcBlock *plan)
{
    TRect client = Doc().GetClientRect();
    TRect place = Doc().ToWindow(plan->rect.Rect());
    Doc().Scroller()->ScrollBy(0, (place.top + place.bottom) / 2 - client.Height() / 2);
    testdoor::Settle();
    place = Doc().ToWindow(plan->rect.Rect());
    TPoint middle = {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    ASSERT_TRUE(client.Contains(middle));
    testdoor::DoubleClick(Doc(), middle);
    testdoor::Settle();
    ASSERT_EQ(Doc().openedBlk, plan);
    ASSERT_NE(Sprites().Layer(), nullptr);
    EXPECT_EQ(Sprites().Layer()->Id(), plan == FloorPlan() ? ZUL_EMITTERS : ZUL_HOLES);
    EXPECT_EQ(Sprites().Tool()->Id(), EDC_TlSELECT);
    EXPECT_EQ(Layer().CountSel(), 0);
    Zoom("");
}

void HallDesigner::ClosePlan()
{
    Key("Esc");
    EXPECT_EQ(Doc().openedBlk, nullptr);
}

void HallDesigner::Zoom(const std::string &percent)
{
    Box([&](DialogBox &box) {
        std::vector<std::string> entries = box.Entries(100);
        auto whole = std::find_if(entries.begin(), entries.end(),
                                  [](const std::string &entry) { return entry.starts_with("ins Fenster"); });
        ASSERT_NE(whole, entries.end());
        if (percent.empty())
            box.Choose(100, static_cast<int>(whole - entries.begin()));
        else
            box.Type(100, percent);
    });
    Choose(ZOOM);
}

void HallDesigner::ShowAround(double x, double y)
{
    TRect client = Doc().GetClientRect();
    TPoint at = At(x, y);
    Doc().Scroller()->ScrollBy(at.x - client.Width() / 2, at.y - client.Height() / 2);
    testdoor::Settle();
}

TPoint HallDesigner::At(double x, double y)
{
    const TEdcRect &place = Doc().openedBlk->rect;
    return Doc().ToWindow(TPoint{place.x, place.y} + Axes().ToDevice(AgPOINT(x, y)));
}

// Hands

void HallDesigner::Click(TPoint at, unsigned keys)
{
    EXPECT_TRUE(Doc().GetClientRect().Contains(at)) << at.x << " " << at.y;
    testdoor::Move(Doc(), at, keys);
    testdoor::Click(Doc(), at, testdoor::LEFT, keys);
    testdoor::Settle();
    EXPECT_STREQ(xCode, XNULL);
}

void HallDesigner::Drag(TPoint from, TPoint to, testdoor::Button button, unsigned keys)
{
    for (TPoint end : {from, to})
        EXPECT_TRUE(Doc().GetClientRect().Contains(end)) << end.x << " " << end.y;
    bool isLeft = button == testdoor::LEFT;
    testdoor::Move(Doc(), from);
    testdoor::Press(Doc(), from, button);
    for (int i = 1; i <= 4; ++i) {
        TPoint at = {from.x + (to.x - from.x) * i / 4, from.y + (to.y - from.y) * i / 4};
        testdoor::Move(Doc(), at, keys, isLeft, !isLeft);
    }
    testdoor::Release(Doc(), to, button, keys);
    testdoor::Settle();
    EXPECT_STREQ(xCode, XNULL);
}

void HallDesigner::DoubleClick(TPoint at)
{
    EXPECT_TRUE(Doc().GetClientRect().Contains(at)) << at.x << " " << at.y;
    testdoor::DoubleClick(Doc(), at);
    testdoor::Settle();
    EXPECT_STREQ(xCode, XNULL);
}

/// The menu and what follows it are scripted before.
void HallDesigner::RightClick(TPoint at)
{
    EXPECT_TRUE(Doc().GetClientRect().Contains(at)) << at.x << " " << at.y;
    testdoor::Click(Doc(), at, testdoor::RIGHT);
    testdoor::Settle();
    EXPECT_STREQ(xCode, XNULL);
}

void HallDesigner::Take(int layer, int tool)
{
    if (Layer().Id() != layer)
        Press(layer);
    if (Sprites().Tool()->Id() != tool)
        Press(tool);
    ASSERT_EQ(Layer().Id(), layer);
    ASSERT_EQ(Sprites().Tool()->Id(), tool);
    testdoor::IdleStep();
    for (int button : {int{EDC_TlSELECT}, int{EDC_TlSTOCK}, int{EDC_TlRECT}, int{ZUL_EMITTERS},
                       int{ZUL_AIRHEATERS}, int{ZUL_HOLES}, int{ZUL_ZONES}})
        EXPECT_EQ(testdoor::Gadgets(Frame(), button).at(0).checked, button == layer || button == tool)
            << button;
    TRect client = Doc().GetClientRect();
    testdoor::Move(Doc(), {client.Width() / 2, client.Height() / 2});
    EXPECT_FALSE(AppStatusBar()->Text().empty()) << "what a click will do";
}

/// A creator asks for the parameters when it is taken.
void HallDesigner::Creator(int layer, int tool, const FILL &fill)
{
    Take(layer, EDC_TlSELECT);
    if (fill)
        Box(fill);
    Take(layer, tool);
}

void HallDesigner::Locate(TPoint at, const PLACE &place)
{
    enum { X = 100, Y = 101, ANGLE = 115, SYNC = 117, COPY = 118 };
    testdoor::Script([](ModalBox &face) {
        EXPECT_EQ(face.Kind(), "popup");
        face.Answer(EDC_CmLOCATE);
    });
    Box([=](DialogBox &box) {
        EXPECT_EQ(box.Caption(), "Genaue Plazierung");
        if (box.IsEnabled(place.anchor))
            box.Click(place.anchor);
        box.Type(X, Written(place.x));
        box.Type(Y, Written(place.y));
        if (!place.keepsAngle)
            box.Type(ANGLE, Written(place.angle));
        if (box.IsEnabled(SYNC))
            SetCheck(box, SYNC, place.sync);
        SetCheck(box, COPY, place.copy);
    });
    RightClick(at);
}

/// The corner at the lower left (0) or at the upper right (2) of the rectangle that has the focus.
void HallDesigner::LocateCorner(int corner, double x, double y)
{
    testdoor::Script([](ModalBox &face) {
        EXPECT_EQ(face.Kind(), "popup");
        EXPECT_EQ(face.Text(), "&Plazieren...\n");
        face.Answer(EDC_CmLOCATE);
    });
    Box([=](DialogBox &box) {
        EXPECT_FALSE(box.IsEnabled(115));
        box.Type(100, Written(x));
        box.Type(101, Written(y));
    });
    const TEdcDrawDesc &desc = Focus().Desc();
    const AgPOINT &at = corner == 0 ? desc.bottomLeft : desc.topRight;
    RightClick(At(at.x, at.y));
}

void HallDesigner::Edit(TPoint at, const FILL &fill)
{
    Box(fill);
    DoubleClick(at);
}

// Rows of the tables

FILL HallDesigner::EmitterFill(const EMITTERROW &row)
{
    return [row](DialogBox &box) {
        EXPECT_EQ(box.Caption(), "Infrastrahler");
        box.Choose(100, IndexOf(box.Entries(100), Shown(row.model)));
        if (row.reduced) {
            EXPECT_EQ(box.Entries(101).size(), 2U);
            box.Choose(101, 1);
        }
        box.Type(103, Written(row.first.z));
        box.Type(104, Written(row.tilt));
    };
}

FILL HallDesigner::OpeningFill(const OPENINGROW &row, bool withSize)
{
    return [row, withSize](DialogBox &box) {
        EXPECT_EQ(box.Caption(), Shown("Bauöffnung"));
        auto [group, element] = ElementOf(row);
        if (!element.empty()) {
            ChooseElement(group, element);
            box.Click(102);
            EXPECT_EQ(box.Text(100), Shown(group + ", " + element));
            EXPECT_EQ(box.Text(101), Written(row.k));
        } else {
            box.Type(101, Written(row.k));
        }
        box.Type(100, row.description);
        EXPECT_EQ(box.IsEnabled(104), withSize);
        if (withSize) {
            box.Type(104, Written(row.size.x));
            box.Type(106, Written(row.size.y));
        }
        SetCheck(box, 107, row.ownTemp);
        EXPECT_EQ(box.IsEnabled(108), row.ownTemp);
        if (row.ownTemp)
            box.Type(108, Written(row.tExt));
    };
}

/// Objects in a row at stated distances from the first point on.
FILL HallDesigner::RowFill(const AgPOINT &first, const AgPOINT &step, int number, double degrees)
{
    return [=](DialogBox &box) {
        EXPECT_EQ(box.Caption(), "Genauer Ausgleich");
        AgPOINT last = first + step * (number - 1);
        box.Type(101, Written(number));
        box.Type(102, Written(first.x));
        box.Type(103, Written(first.y));
        box.Type(104, Written(last.x));
        box.Type(105, Written(last.y));
        box.Click(110);
        box.Click(115);
        SetCheck(box, 118, true);
        box.Type(120, Written(step.Length()));
        box.Click(125);
        box.Type(127, Written(degrees));
    };
}

void HallDesigner::PlaceEmitters(const EMITTERROW &row)
{
    int former = Room().Emitters()->Count();
    Creator(ZUL_EMITTERS, EDC_TlSTOCK, EmitterFill(row));
    PlaceRow(row.first, row.step, row.count, AgE0, row.rotation);
    EXPECT_EQ(Room().Emitters()->Count(), former + row.count);
}

void HallDesigner::PlaceOpenings(const OPENINGROW &row)
{
    int former = Layer().CountLnk();
    Creator(ZUL_HOLES, EDC_TlSTOCK, OpeningFill(row, true));
    former = Layer().CountLnk();
    PlaceRow(row.first, row.step, row.count, row.size, row.rotation);
    EXPECT_EQ(Layer().CountLnk(), former + row.count);
}

/// A place is reached by a shift from where the thing stood, and the sum may miss it by the last bit, which no
/// dialog shows. A rectangle is put by its middle and then by its lower left corner; a turned one, whose
/// corners are no round numbers, by its middle again.
void HallDesigner::PutExactly(const AgPOINT &place, const AgPOINT &size, double degrees)
{
    Locate(At(place.x, place.y), {.x = place.x, .y = place.y, .angle = degrees});
    PLACE corner = {.x = place.x - size.x / 2, .y = place.y - size.y / 2, .angle = degrees, .anchor = 110};
    PLACE middle = {.x = place.x, .y = place.y, .angle = degrees};
    if (size.x > 0)
        Locate(At(place.x, place.y), degrees == 0 ? corner : middle);
}

/// One by a click and an exact place, several along a drawn line.
void HallDesigner::PlaceRow(const AgPOINT &first, const AgPOINT &step, int number, const AgPOINT &size,
                            double degrees)
{
    int layer = Layer().Id();
    if (number == 1) {
        Click(At(first.x, first.y));
        EXPECT_EQ(Layer().CountSel(), 1);
        EXPECT_NE(Layer().Focus(), nullptr);
        Take(layer, EDC_TlSELECT);
        PutExactly(first, size, degrees);
    } else {
        AgPOINT last = first + step * (number - 1);
        Box(RowFill(first, step, number, degrees));
        Drag(At(first.x, first.y), At(last.x, last.y));
        EXPECT_EQ(Layer().CountSel(), number);
        Take(layer, EDC_TlSELECT);
    }
}

void HallDesigner::DrawOpening(const OPENINGROW &row)
{
    Creator(ZUL_HOLES, EDC_TlRECT, OpeningFill(row, false));
    const AgPOINT low = row.first - row.size / 2;
    const AgPOINT high = row.first + row.size / 2;
    Drag(At(low.x, low.y), At(high.x, high.y));
    Take(ZUL_HOLES, EDC_TlSELECT);
    Edit(At(row.first.x, row.first.y), [&](DialogBox &box) {
        EXPECT_EQ(box.Text(100), Shown(row.description));
        EXPECT_NEAR(std::stod(box.Text(104)), row.size.x, 0.5);
        box.Type(104, Written(row.size.x));
        box.Type(106, Written(row.size.y));
    });
    PutExactly(row.first, row.size, row.rotation);
}

/// Roughly by hand, then corner by corner, and turned at last.
void HallDesigner::DrawZone(const ZONEROW &row)
{
    int former = Room().Zones()->Count();
    Creator(ZUL_ZONES, EDC_TlRECT, FILL());
    const AgPOINT low = row.pos - row.size / 2;
    const AgPOINT high = row.pos + row.size / 2;
    Drag(At(low.x, low.y), At(high.x, high.y));
    ASSERT_EQ(Room().Zones()->Count(), former + 1);
    Take(ZUL_ZONES, EDC_TlSELECT);
    for (int i = 0; i < 2; ++i) { // the first time from between the steps of the grid
        LocateCorner(0, low.x, low.y);
        LocateCorner(2, high.x, high.y);
    }
    if (row.rotation != 0)
        Locate(At(low.x, row.pos.y), {.x = row.pos.x, .y = row.pos.y, .angle = row.rotation});
}

/// So large that the mouse alone meets the grid.
void HallDesigner::DrawZoneOnGrid(const ZONEROW &row)
{
    int percent = static_cast<int>(std::ceil(Doc().CurrentZoom().Percent() * FINE / Axes().xScale));
    Zoom(std::to_string(percent));
    ShowAround(row.pos.x, row.pos.y);
    EXPECT_GT(Axes().xScale, 100);
    Creator(ZUL_ZONES, EDC_TlRECT, FILL());
    const AgPOINT low = row.pos - row.size / 2;
    const AgPOINT high = row.pos + row.size / 2;
    Drag(At(low.x, low.y), At(high.x, high.y));
    Zoom("");
}

/// Nothing in the window places a unit: the layer of units is shown and printed but never active, so its
/// objects come from the kernel, before the plan is opened, and the next update shows them.
void HallDesigner::PlaceUnits(const UNITROW &row)
{
    for (int i = 0; i < row.count; ++i) {
        EmAIRHEATER *unit = new EmAIRHEATER;
        unit->Insert(Room().AirHeaters());
        TextFromUtf8(unit->type, row.type, sizeof unit->type);
        unit->power = row.power;
        unit->tempRise = row.tempRise;
        unit->airFlow = row.airFlow;
        unit->size = row.size;
        unit->pos = row.first + row.step * i;
    }
    Doc().SetModified();
}

// The catalogue

void ChooseElement(const std::string &group, const std::string &element)
{
    testdoor::Script([=](ModalBox &face) {
        DialogBox box(face);
        box.ClickEntry(100, IndexOf(box.Entries(100), Shown(group)));
        box.ClickEntry(101, IndexOf(box.Entries(101), Shown(element)));
        box.Click(WIN_ID_OK);
    });
}

std::pair<std::string, std::string> ElementOf(const OPENINGROW &row)
{
    const struct {
        const char *begin; // of the description
        double k;
        const char *element;
    } known[] = {{"Fluchttür", 1.8, "Stahltür, gedämmt"},
                 {"Sektionaltor 5", 1.5, "Sektionaltor, 4 cm gedämmt"},
                 {"Verladetor", 1.5, "Sektionaltor, 4 cm gedämmt"}};
    for (const auto &entry : known)
        if (std::string(row.description).starts_with(entry.begin) && row.k == entry.k)
            return {"Tore und Türen", entry.element};
    return {};
}
} // namespace designer
