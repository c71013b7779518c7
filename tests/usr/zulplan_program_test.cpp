// Random edit programs over all plans of a hall: emitters, openings on the floor, the walls and the ceiling,
// and zones are made, dragged, copied, turned, reshaped, aligned, placed by dialogs, deleted, selected,
// reloaded and brought up to date. Behind each step the sets of the hall and the sprites on the plans must
// agree.
#include "zuldoccase.h"

#include "layerfaults.h"
#include "support/chance.h"
#include "support/countdc.h"
#include "support/recorddc.h"
#include "support/sampleroom.h"
#include "usr/zulhole.h"

#include <algorithm>
#include <map>

namespace
{
using OBJECTS = std::vector<const LINK *>; // of a set

/// What a program works in.
struct HALL {
    const char *name;
    const char *length, *width, *height; // m, as they are typed
    int objects;                         // of each kind at the start
    double beyond;                       // how far they may lie outside, in parts of the hall
};
const HALL halls[] = {{"usual", "20", "12", "6", 4, 0},
                      {"smallest", "1", "1", "1", 3, 0.5},
                      {"largest", "10000", "10000", "10000", 4, 0.1},
                      {"long and empty", "120", "8", "5", 0, 0},
                      {"things outside", "15", "25", "7", 6, 2}};

OBJECTS Members(const LIST &set)
{
    OBJECTS all;
    for (const LINK *link = set.First(); link; link = link->Next())
        all.push_back(link);
    return all;
}

const LINK *ObjectOf(const TEdcSprite *spr)
{
    if (auto *emitter = dynamic_cast<const TZulEmitterSprite *>(spr))
        return emitter->Object();
    if (auto *unit = dynamic_cast<const TZulAirHeaterSprite *>(spr))
        return unit->Object();
    if (auto *hole = dynamic_cast<const TZulHoleSprite *>(spr))
        return hole->Object();
    return dynamic_cast<const TZulZoneSprite &>(*spr).Object();
}

/// The number on a sprite, "" where it has none.
std::string LabelOf(const TEdcSprite *spr)
{
    if (auto *emitter = dynamic_cast<const TZulEmitterSprite *>(spr))
        return emitter->label.Text();
    if (auto *unit = dynamic_cast<const TZulAirHeaterSprite *>(spr))
        return unit->label.Text();
    if (auto *hole = dynamic_cast<const TZulHoleSprite *>(spr))
        return hole->label.Text();
    return "";
}

bool Has(const OBJECTS &all, const LINK *one)
{
    return std::find(all.begin(), all.end(), one) != all.end();
}

/// Those of `all` that are in `others` too, or those that are not, in their order.
OBJECTS Common(const OBJECTS &all, const OBJECTS &others, bool common = true)
{
    OBJECTS found;
    for (const LINK *one : all)
        if (Has(others, one) == common)
            found.push_back(one);
    return found;
}

/// A layer with the set that it stands for, and where it lies.
struct PLACE {
    TEdcBlock *blk;
    TEdcSpriteManager *sprites;
    TEdcAxes *axes;
    TEdcDrawLayer *layer;
    LIST *set;
};

/// A layer at one moment.
struct SHOT {
    OBJECTS made, selected; // as the sprites have them: in the order of creation, of selecting
    OBJECTS set;

    explicit SHOT(const PLACE &place) : set(Members(*place.set))
    {
        for (TEdcSprite *spr = place.layer->LnkFirst(); spr; spr = spr->lnkNext)
            made.push_back(ObjectOf(spr));
        for (TEdcSprite *spr = place.layer->SelFirst(); spr; spr = spr->selNext)
            selected.push_back(ObjectOf(spr));
    }
};

/// What is wrong with a layer behind a step, by what it was before. A layer that was read anew has the set's
/// order; otherwise what stays keeps its order, what is new comes last on the plan, and in the set it stands at
/// the end or behind what it is a copy of.
std::string FaultOfStep(const SHOT &before, const SHOT &now, bool anew)
{
    if (!anew && now.made == before.made && now.set == before.set)
        return ""; // and it was right before
    OBJECTS byPlan = now.made;
    OBJECTS bySet = now.set;
    std::sort(byPlan.begin(), byPlan.end());
    std::sort(bySet.begin(), bySet.end());
    if (byPlan != bySet || std::adjacent_find(byPlan.begin(), byPlan.end()) != byPlan.end())
        return "the sprites are not those of the set";
    if (anew)
        return now.made == now.set ? "" : "the plan's order is not the set's";
    if (Common(now.set, before.set) != Common(before.set, now.set))
        return "the set has lost its order";
    OBJECTS expected = Common(before.made, now.made);
    OBJECTS fresh = Common(now.made, before.made, false);
    expected.insert(expected.end(), fresh.begin(), fresh.end());
    if (now.made != expected)
        return "the plan has lost its order";
    for (size_t i = 0; i < now.set.size(); ++i) {
        bool atEnd = Common(OBJECTS(now.set.begin() + static_cast<long>(i), now.set.end()), before.set).empty();
        bool isCopy = i > 0 && Has(before.selected, now.set[i - 1]);
        if (!Has(before.set, now.set[i]) && !atEnd && !isCopy)
            return "something new stands where nothing of it was";
    }
    return "";
}

/// That what a sprite shows is what its object has. An emitter has its place from a layout of its plan.
std::string FaultOfGeometry(const TEdcSprite *spr, bool isLaidOut)
{
    if (auto *hole = dynamic_cast<const TZulHoleSprite *>(spr)) {
        const EmHOLE &object = *hole->Object();
        AgVECTOR size(std::fabs(hole->Size().x), std::fabs(hole->Size().y));
        bool same = size == object.size && hole->Centre() == object.pos && hole->RectAngle() == object.rotation;
        return same ? "" : "an opening is not where its sprite is";
    }
    if (auto *zone = dynamic_cast<const TZulZoneSprite *>(spr)) {
        const EmZONE &object = *zone->Object();
        bool same =
            zone->Size() == object.size && zone->Centre() == object.pos && zone->RectAngle() == object.rotation;
        return same ? "" : "a zone is not where its sprite is";
    }
    if (auto *emitter = dynamic_cast<const TZulEmitterSprite *>(spr); emitter && isLaidOut) {
        const EmEMITTER &object = *emitter->Object();
        const AgPOINT &centre = emitter->Desc().centre;
        bool same =
            centre.x == object.pos.x && centre.y == object.pos.y && emitter->Desc().angle == object.rotation;
        return same ? "" : "an emitter is not where its sprite is";
    }
    return "";
}

class PlanProgram : public DocCase
{
protected:
    enum { FLOOR_HOLE_LIST = 3, EMITTER_LIST, AIR_HEATER_LIST }; // in Parts(); that of a wall stands behind it

    PlanProgram() { frame->Create(); } // menus come up over a window
    ~PlanProgram() override { Leave(); }

    void Leave()
    {
        doc->CloseBlock();
        doc->modified = false;
    }
    void Start(const HALL &hall, unsigned from)
    {
        Leave();
        chance = CHANCE(from);
        button = 0;
        outside = false;
        New(hall.length, hall.width, hall.height);
        Furnish(hall);
        FindPlaces();
        doc->Refresh(EDC_UPDATE);
        OpenPlan(places[0].blk);
        doc->modified = false;
        stored = RoomBytes(*doc->Room());
    }
    void Step()
    {
        std::vector<SHOT> before(places.begin(), places.end());
        anew = looksOnly = false;
        std::string bytes = steps % 4 == 0 ? RoomBytes(*doc->Room()) : "";
        if (button == 0 && chance.One(5))
            Between();
        else
            Gesture();
        WorkOff();
        CheckLayers(before);
        CheckDocument(bytes);
        ++steps;
    }
    /// What is stored comes back, plan by plan.
    void SaveAndOpenAgain()
    {
        EndGesture();
        std::string bytes = RoomBytes(*doc->Room());
        std::string file = folder.Path("halle.sc1");
        doc->CloseBlock();
        ChooseFile("save", file);
        doc->EvCommand(SAVE_AS);
        EXPECT_FALSE(doc->modified);
        Open(file);
        ASSERT_NE(doc->Room(), nullptr);
        EXPECT_EQ(RoomBytes(*doc->Room()), bytes);
        FindPlaces();
        for (const PLACE &place : places) {
            SHOT shot(place);
            EXPECT_EQ(shot.made, shot.set);
        }
        std::filesystem::remove(file);
    }

    // What happens

    TEdcMouseTool &Tool() { return *doc->openedBlk->tool; }
    TEdcSpriteManager &Plan() { return *opened->sprites; }
    const PLACE *Active() const
    {
        for (const PLACE &place : places)
            if (place.blk == doc->openedBlk && place.layer->IsActive())
                return &place;
        return NULL;
    }
    int ToolId() { return Plan().Tool()->Id(); }

    void OpenPlan(TEdcBlock *blk)
    {
        doc->OpenBlock(blk);
        doc->blockZoom.SetCustom(chance.Int(30, 200));
        doc->Refresh(EDC_LAYOUT);
        opened = NULL;
        for (const PLACE &place : places)
            if (place.blk == blk && !opened)
                opened = &place;
        ASSERT_NE(opened, nullptr);
    }

    /// Boxes may come up while it runs, and somebody answers them.
    void WithBoxes(const std::function<void()> &act)
    {
        enum { MOST = 12 };
        answers = 0;
        met.clear();
        for (int i = 0; i < MOST; ++i)
            testdoor::Script([this](testdoor::ModalBox &box) { Answer(box); });
        act();
        if (answers > 0 || !Plan().Tool() || ToolId() == EDC_TlALIGN)
            testdoor::Settle(); // menus and tools leave their commands to the main window
        testdoor::PendingScripts();
        EXPECT_EQ(testdoor::UnexpectedBoxes(), 0) << met;
    }
    void Answer(testdoor::ModalBox &box)
    {
        const int menu[] = {EDC_CmDELETE, EDC_CmOPEN, EDC_CmLOCATE};
        ++answers;
        met += box.Kind() + " " + box.Caption() + " " + box.Text() + "\n";
        if (box.Kind() == "popup") {
            if (answers == 1 && chance.One(2))
                box.Answer(chance.Of(menu)); // stays where that item is grey or missing
            else
                box.Press("Esc");
            return;
        }
        if (box.Kind() == "message")
            return box.Answer(WIN_ID_OK);
        ASSERT_EQ(box.Kind(), "dialog");
        if (answers > 3 || chance.One(5))
            return box.Answer(WIN_ID_CANCEL);
        testdoor::DialogBox dialog(box);
        ++dialogs[box.Caption()];
        if (box.Caption() == "Infrastrahler")
            FillEmitter(dialog);
        else if (box.Caption() == "Bau\xF6"
                                  "ffnung")
            FillOpening(dialog);
        else if (box.Caption() == "Genaue Plazierung")
            FillPlace(dialog);
        else if (box.Caption() == "Genauer Ausgleich")
            FillLine(dialog);
        else
            ADD_FAILURE() << "a dialog " << box.Caption();
        dialog.Click(WIN_ID_OK);
    }
    std::string Number(double lo, double hi) { return EdcFormat("%.2lf", chance.Real(lo, hi)); }
    void Maybe(testdoor::DialogBox &dialog, std::initializer_list<int> ids)
    {
        for (int id : ids)
            if (dialog.IsShown(id) && dialog.IsEnabled(id) && chance.One(3))
                dialog.Click(id);
    }
    void FillEmitter(testdoor::DialogBox &dialog)
    {
        enum { MODEL = 100, OUTPUT = 101, HEIGHT = 103, TILT = 104 };
        dialog.Choose(MODEL, chance.Int(0, static_cast<int>(dialog.Entries(MODEL).size()) - 1));
        if (dialog.IsEnabled(OUTPUT) && !dialog.Entries(OUTPUT).empty())
            dialog.Choose(OUTPUT, 0);
        dialog.Type(HEIGHT, Number(0.5, 6));
        dialog.Type(TILT, Number(-89, 89));
    }
    void FillOpening(testdoor::DialogBox &dialog)
    {
        enum { TEXT = 100, K = 101, WIDTH = 104, HEIGHT = 106, OWN = 107, TEMP = 108 };
        dialog.Type(TEXT, chance.One(2) ? "Tor" : "Fenster S\u00fcd");
        dialog.Type(K, Number(0, 6));
        for (int id : {int{WIDTH}, int{HEIGHT}})
            if (dialog.IsEnabled(id))
                dialog.Type(id, Number(0.01, 5));
        Maybe(dialog, {OWN});
        if (dialog.IsEnabled(TEMP))
            dialog.Type(TEMP, Number(-20, 20));
    }
    void FillPlace(testdoor::DialogBox &dialog)
    {
        enum { X = 100, Y = 101, FIRST = 104, LAST = 112, ANGLE = 115, SYNC = 117, COPY = 118 };
        AgPOINT max = doc->Room()->Box().max;
        dialog.Type(X, Number(-1, max.x + 1));
        dialog.Type(Y, Number(-1, max.y + 1));
        if (dialog.IsEnabled(ANGLE))
            dialog.Type(ANGLE, Number(-180, 180));
        Maybe(dialog, {chance.Int(FIRST, LAST), SYNC, COPY});
    }
    void FillLine(testdoor::DialogBox &dialog)
    {
        enum {
            COUNT = 101,
            BELOW = 109,
            ABOVE = 111,
            STRETCH = 112,
            GAPS = 116,
            ORDER = 117,
            ROTATE = 121,
            X = 125
        };
        if (dialog.IsEnabled(COUNT))
            dialog.Type(COUNT, std::to_string(chance.Int(1, 4)));
        Maybe(dialog, {chance.Int(BELOW, ABOVE), STRETCH, GAPS, ORDER, ROTATE, X});
    }

    // The mouse

    TPoint InPlan()
    {
        const TRect &plot = opened->axes->plot;
        return {chance.Int(plot.left - 20, plot.right + 20), chance.Int(plot.top - 20, plot.bottom + 20)};
    }
    /// Where there is something to take hold of.
    TPoint OnSomething()
    {
        const PLACE *place = Active();
        int count = place ? place->layer->CountLnk() : 0;
        if (count == 0)
            return InPlan();
        TEdcSprite *spr = place->layer->LnkFirst();
        for (int i = chance.Int(0, count - 1); i > 0; --i)
            spr = spr->lnkNext;
        if (place->layer->Focus() && chance.One(2))
            spr = place->layer->Focus();
        AgPOINT at = static_cast<TEdcDrawSprite *>(spr)->Desc().centre;
        if (auto *rect = dynamic_cast<TEdcDrawRect *>(spr)) {
            const double sides[] = {-0.5, 0, 0.5};
            AgPOINT corner(rect->Size().x * chance.Of(sides), rect->Size().y * chance.Of(sides));
            at = rect->Centre() + EdcTurned(corner, rect->RectAngle());
        }
        return opened->axes->ToDevice(at) + TPoint{chance.Int(-1, 1), chance.Int(-1, 1)};
    }
    unsigned Keys() { return chance.One(2) ? 0 : 4u * static_cast<unsigned>(chance.Int(0, 3)); }
    void Release(unsigned keys)
    {
        int released = std::exchange(button, 0);
        auto release = [&] {
            if (released == 1)
                Tool().LeftUp(dc, keys, last);
            else
                Tool().RightUp(dc, keys, last);
        };
        bool asks = released == 2 || ToolId() != EDC_TlSELECT;
        if (asks && !(keys & EDC_KEY_TAKEBACK))
            WithBoxes(release);
        else
            release();
        outside = false;
    }
    /// As Esc takes a gesture back.
    void EndGesture()
    {
        if (button == 0)
            return;
        if (!outside)
            Tool().Outside(dc, true);
        outside = true;
        Release(EDC_KEY_TAKEBACK);
    }
    void TakeBackByOther()
    {
        int first = button;
        if (first == 1)
            Tool().RightDown(dc, 0, last);
        else
            Tool().LeftDown(dc, 0, last);
        button = first == 1 ? 2 : 1;
        outside = true; // so it counts from now on, whatever the tool
        Release(EDC_KEY_TAKEBACK);
        button = first;
        Release(EDC_KEY_TAKEBACK);
    }
    void DoubleClick()
    {
        Tool().LeftDown(dc, 0, last);
        Tool().LeftUp(dc, 0, last);
        WorkOff();
        Tool().LeftDouble(dc, 0, last);
        WithBoxes([this] { Tool().LeftUp(dc, 0, last); });
    }
    void Gesture()
    {
        if (button == 0) {
            last = chance.One(5) ? InPlan() : OnSomething();
            bool creates = ToolId() == EDC_TlSTOCK || ToolId() == EDC_TlRECT;
            if (ToolId() == EDC_TlSELECT && chance.One(300))
                return DoubleClick();
            button = chance.One(creates || ToolId() == EDC_TlALIGN ? 200 : 5) ? 2 : 1;
            if (button == 1)
                Tool().LeftDown(dc, Keys(), last);
            else
                Tool().RightDown(dc, Keys(), last);
            return;
        }
        switch (chance.Int(0, 23)) {
        case 0:
            looksOnly = true;
            return EndGesture();
        case 1:
            looksOnly = true;
            return TakeBackByOther();
        case 2:
            outside = !outside;
            return Tool().Outside(dc, outside);
        case 3:
        case 4:
        case 5:
        case 6:
        case 7:
            if (outside)
                Tool().Outside(dc, false);
            outside = false;
            if (chance.One(3))
                last = OnSomething(); // where nothing has been dragged to
            else
                Tool().MouseMove(dc, 0, last);
            return ReleaseOrDrop();
        default:
            if (!outside) {
                last = chance.One(3) ? InPlan() : last + TPoint{chance.Int(-40, 40), chance.Int(-40, 40)};
                Tool().MouseMove(dc, Keys(), last);
            }
        }
    }
    /// Rows of a creator and the aligner ask; that is worth its time only now and then.
    void ReleaseOrDrop()
    {
        bool asks = ToolId() == EDC_TlSTOCK || ToolId() == EDC_TlALIGN || button == 2;
        if (asks && !chance.One(ToolId() == EDC_TlSELECT ? 2 : 6)) {
            looksOnly = true;
            return EndGesture();
        }
        Release(chance.One(3) ? Keys() : 0);
    }

    // What happens between two gestures

    void Between()
    {
        const int selecting[] = {EDC_CmSELECTALL, EDC_CmSELECTNONE, EDC_CmINVERT};
        const int layers[] = {ZUL_EMITTERS, ZUL_HOLES, ZUL_ZONES};
        int what = chance.Int(0, 77);
        const PLACE *place = Active();
        if (place && place->layer->CountLnk() > 12) {
            doc->EvCommand(EDC_CmINVERT);
            doc->EvCommand(EDC_CmDELETE);
            return;
        }
        if (what < 20) {
            looksOnly = true;
            doc->EvCommand(chance.Of(selecting));
        } else if (what < 24) {
            doc->EvCommand(EDC_CmDELETE);
        } else if (what < 38) {
            looksOnly = true;
            if (opened->blk == places[0].blk)
                doc->EvCommand(chance.Of(layers));
        } else if (what < 45) {
            looksOnly = true;
            doc->EvCommand(EDC_TlSELECT);
        } else if (what < 59) {
            ChooseTool();
        } else if (what < 61) {
            WithBoxes([this] { doc->EvCommand(EDC_CmOPEN); });
        } else if (what < 64) {
            WithBoxes([this] { doc->EvCommand(EDC_CmLOCATE); });
        } else if (what < 66) {
            looksOnly = true;
            doc->EvCommand(EDC_CmALIGN);
            testdoor::Settle();
        } else if (what < 71) {
            looksOnly = anew = true;
            for (const PLACE &each : places)
                each.layer->Reload(NULL);
        } else if (what < 74) {
            looksOnly = anew = true;
            doc->Refresh(chance.One(8) ? EDC_RECALC : EDC_UPDATE);
            CheckLists();
        } else if (what < 78) {
            looksOnly = true;
            size_t other = static_cast<size_t>(chance.Int(0, static_cast<int>(places.size()) - 1));
            OpenPlan(places[chance.One(2) ? 0 : other].blk);
        }
    }
    void ChooseTool()
    {
        const int tools[] = {EDC_TlALIGN, EDC_TlSTOCK, EDC_TlSTOCK, EDC_TlRECT, EDC_TlRECT};
        looksOnly = true;
        WithBoxes([&] { doc->EvCommand(chance.Of(tools)); });
    }

    /// The refresh behind every message: while a gesture runs, what it has drawn is away for that time. A paint
    /// gives the sprites their handles.
    void WorkOff()
    {
        if (doc->obsolete > 0) {
            bool hides = button != 0 && !outside;
            if (hides)
                Tool().Outside(dc, true);
            doc->Refresh(0);
            if (hides)
                Tool().Outside(dc, false);
        }
        if (Plan().Tool())
            Plan().Paint(dc, {0, 0, 2000, 2000});
        doc->obsolete = 0;
    }

    // What must hold

    void CheckLayers(const std::vector<SHOT> &before)
    {
        for (size_t i = 0; i < places.size(); ++i) {
            const PLACE &place = places[i];
            ASSERT_EQ(FaultOf(*place.layer), "");
            SHOT now(place);
            ASSERT_EQ(FaultOfStep(before[i], now, anew), "");
            Count(place.layer->Id(), before[i], now);
            bool isOpen = place.blk == doc->openedBlk;
            ASSERT_EQ(place.layer->IsActive(), isOpen && place.sprites->Layer() == place.layer);
            int number = 0;
            for (TEdcSprite *spr = place.layer->LnkFirst(); spr; spr = spr->lnkNext) {
                ++number;
                ASSERT_EQ(FaultOfGeometry(spr, isOpen), "");
                if (isOpen && LabelOf(spr) != "") {
                    ASSERT_EQ(LabelOf(spr), std::to_string(number));
                }
            }
        }
    }
    void Count(int layer, const SHOT &before, const SHOT &now)
    {
        if (before.set == now.set)
            return;
        bool creates = Plan().Tool()->Id() == EDC_TlSTOCK || Plan().Tool()->Id() == EDC_TlRECT;
        (creates ? made : copied)[layer] += static_cast<int>(Common(now.set, before.set, false).size());
        deleted[layer] += static_cast<int>(Common(before.set, now.set, false).size());
    }
    void CheckDocument(const std::string &bytes)
    {
        ASSERT_STREQ(xCode, XNULL);
        ASSERT_EQ(testdoor::UnexpectedBoxes(), 0);
        ASSERT_EQ(doc->openedBlk->tool, Plan().Tool());
        ASSERT_EQ(Plan().Tool()->Layer(), Plan().Layer());
        if (button == 0) {
            ASSERT_FALSE(TEdcDrawSprite::IsDragging());
        }
        if (looksOnly && !bytes.empty()) {
            ASSERT_TRUE(RoomBytes(*doc->Room()) == bytes) << "a step that only looks changes the hall";
        }
        if (!doc->modified && steps % 8 == 0) {
            ASSERT_TRUE(RoomBytes(*doc->Room()) == stored) << "a change that nobody was told of";
        }
        if (doc->modified && chance.One(20)) { // as if it had been stored
            changes += RoomBytes(*doc->Room()) != stored;
            doc->modified = false;
            stored = RoomBytes(*doc->Room());
        }
    }
    /// The lists of the report are those that the sets give now.
    void CheckLists()
    {
        const EmROOM &room = *doc->Room();
        std::vector<TEdcBlock *> parts = doc->Parts();
        TZulFonts fonts;
        ExpectSame(parts[EMITTER_LIST], ZulBuildEmitterList(*room.Emitters(), fonts));
        ExpectSame(parts[AIR_HEATER_LIST], ZulBuildAirHeaterList(*room.AirHeaters(), fonts));
        for (size_t i = 0; i < parts.size(); ++i)
            if (auto *wall = dynamic_cast<TZulWallBlock *>(parts[i]))
                ExpectSame(parts[i + 1], ZulBuildHoleList(*wall->Surface()->Holes(), fonts));
        ExpectSame(parts[FLOOR_HOLE_LIST], ZulBuildHoleList(*doc->Room()->Surfaces()->Floor()->Holes(), fonts));
        ++updates;
    }
    void ExpectSame(TEdcBlock *group, TEdcBlock *fresh)
    {
        EXPECT_EQ(Written(group), Written(fresh));
        ZulDeleteGroup(fresh);
    }
    static std::string Written(TEdcBlock *group)
    {
        TRecordDC paper;
        for (TEdcBlock *blk = group; blk && (blk == group || blk->group == group); blk = blk->next) {
            TEdcSize size(7, 10);
            blk->Layout(paper, size, 1);
            blk->Paint(paper, {0, 0, 1000, 1000});
            if (!blk->group)
                break;
        }
        return paper.calls;
    }

    // The hall

    AgPOINT Somewhere(const AgPOINT &size, double beyond)
    {
        return AgPOINT(chance.Real(-beyond, 1 + beyond) * size.x, chance.Real(-beyond, 1 + beyond) * size.y);
    }
    void Furnish(const HALL &hall)
    {
        const char *const models[] = {"Dunkel 15", "Hell 10", "Platte 6"};
        EmROOM &room = *doc->Room();
        AgPOINT max = room.Box().max;
        for (int i = 0; i < hall.objects; ++i) {
            auto *emitter = new EmEMITTER;
            emitter->Insert(room.Emitters());
            emitter->pos = Somewhere(max, hall.beyond);
            emitter->pos.z = max.z;
            if (i > 0)
                emitter->SetModel(ModelAcquire(chance.Of(models)));
            auto *unit = new EmAIRHEATER;
            unit->Insert(room.AirHeaters());
            unit->pos = Somewhere(max, hall.beyond);
            auto *zone = new EmZONE;
            zone->Insert(room.Zones());
            zone->pos = Somewhere(max, hall.beyond);
            if (i > 0) // the first one has no extent
                zone->size = AgPOINT(chance.Real(-0.5, 0.5) * max.x, chance.Real(-0.5, 0.5) * max.y);
        }
        for (EmSURFACE *surface = room.Surfaces()->First(); surface; surface = EmSURFACESET::Next(surface))
            for (int i = 0; i < hall.objects; ++i) {
                auto *hole = new EmHOLE;
                hole->Insert(surface->Holes());
                hole->pos = Somewhere(surface->size, hall.beyond);
                hole->size = AgPOINT(chance.Real(0, 2) * surface->size.x, chance.Real(0, 2) * surface->size.y);
                hole->rotation = chance.Real(-AgPI, AgPI);
            }
    }
    void FindPlaces()
    {
        places.clear();
        EmROOM &room = *doc->Room();
        TZulRoomBlock *floor = doc->RoomBlock();
        const std::pair<int, LIST *> sets[] = {{ZUL_EMITTERS, room.Emitters()},
                                               {ZUL_AIRHEATERS, room.AirHeaters()},
                                               {ZUL_HOLES, room.Surfaces()->Floor()->Holes()},
                                               {ZUL_ZONES, room.Zones()}};
        for (const auto &[id, set] : sets)
            places.push_back({floor, &floor->Sprites(), &floor->Axes(),
                              static_cast<TEdcDrawLayer *>(floor->Sprites().FindLayer(id)), set});
        for (TEdcBlock *blk : doc->Parts())
            if (auto *wall = dynamic_cast<TZulWallBlock *>(blk))
                places.push_back({wall, &wall->Sprites(), &wall->Axes(),
                                  static_cast<TEdcDrawLayer *>(wall->Sprites().FindLayer(ZUL_HOLES)),
                                  wall->Surface()->Holes()});
        ASSERT_EQ(places.size(), 9U);
    }

    CHANCE chance{1};
    TCountDC dc;
    std::vector<PLACE> places;
    const PLACE *opened = NULL; // the first one of the open plan
    TPoint last;                // px, where the pointer is
    int button = 0;             // that is down: 1 left, 2 right
    bool outside = false;
    bool anew = false;      // the step has read the plans anew
    bool looksOnly = false; // the step changes nothing in the hall
    std::string stored;     // the hall when it was last unmodified
    int answers = 0;        // to boxes, in one step
    std::string met;        // those boxes
    int steps = 0, updates = 0;
    std::map<std::string, int> dialogs;       // filled, by their captions
    std::map<int, int> made, copied, deleted; // objects, by their layers
    int changes = 0;                          // of the hall between two times when it was unmodified
};

TEST_F(PlanProgram, WhateverIsEditedTheHallAndItsPlansAgree)
{
    enum { ROUNDS = 4, STEPS = 5000 };
    for (const HALL &hall : halls)
        for (unsigned round = 1; round <= ROUNDS; ++round) {
            Start(hall, round);
            for (int i = 0; i < STEPS; ++i) {
                Step();
                ASSERT_FALSE(HasFailure()) << hall.name << ", round " << round << ", step " << i;
            }
            SaveAndOpenAgain();
            ASSERT_FALSE(HasFailure()) << hall.name << ", round " << round;
        }
    EXPECT_EQ(steps, 100000);
    for (const auto &[caption, count] : dialogs)
        EXPECT_GT(count, 10) << caption;
    EXPECT_EQ(dialogs.size(), 4U);
    EXPECT_GT(updates, 100);
    EXPECT_GT(changes, 500);
    for (int layer : {int{ZUL_EMITTERS}, int{ZUL_HOLES}, int{ZUL_ZONES}}) {
        EXPECT_GT(made[layer], 100) << layer;
        EXPECT_GT(copied[layer], 30) << layer;
        EXPECT_GT(deleted[layer], 100) << layer;
    }
}

TEST_F(PlanProgram, ItsLookAtTheListsSeesWhatIsNotUpToDate)
{
    Start(halls[0], 5);
    TZulFonts fonts;
    EmEMITTERSET &set = *doc->Room()->Emitters();
    for (bool same : {true, false}) {
        if (!same)
            set.First()->pos.z += 1;
        TEdcBlock *fresh = ZulBuildEmitterList(set, fonts);
        EXPECT_NE(Written(fresh), "");
        EXPECT_EQ(Written(doc->Parts()[EMITTER_LIST]) == Written(fresh), same);
        ZulDeleteGroup(fresh);
    }
}

TEST_F(PlanProgram, ItsChecksSeeWhatIsWrong)
{
    const struct {
        const char *name;
        std::function<void()> harm;
    } harms[] = {
        {"nothing", [] {}},
        {"an object more", [this] { (new EmZONE)->Insert(places[3].set); }},
        {"a sprite less", [this] { places[2].layer->Delete(places[2].layer->LnkFirst(), false); }},
        {"an object moved", [this] { doc->Room()->Zones()->First()->pos.x += 1e-9; }},
        {"another order", [this] { places[0].set->First()->InsertAfter(places[0].set->First()->Next()); }},
        {"a lock", [this] { places[1].layer->LockRepaint(); }},
        {"a state", [this] { places[8].layer->LnkFirst()->state |= EDC_SsSELECTED; }},
        {"the active layer", [this] { places[4].layer->SetActive(true); }},
    };
    for (const auto &each : harms) {
        Start(halls[0], 5);
        std::vector<SHOT> before(places.begin(), places.end());
        each.harm();
        std::string found;
        for (size_t i = 0; i < places.size(); ++i) {
            found += FaultOf(*places[i].layer) + FaultOfStep(before[i], SHOT(places[i]), false);
            bool isOpen = places[i].blk == doc->openedBlk;
            if (places[i].layer->IsActive() != (isOpen && places[i].sprites->Layer() == places[i].layer))
                found += "active";
            for (TEdcSprite *spr = places[i].layer->LnkFirst(); spr; spr = spr->lnkNext)
                found += FaultOfGeometry(spr, isOpen);
        }
        EXPECT_EQ(found.empty(), std::string(each.name) == "nothing") << each.name;
        if (std::string(each.name) == "a lock")
            places[1].layer->UnlockRepaint(NULL, false);
    }
}
} // namespace
