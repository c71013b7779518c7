// Layers and tools of the plans: which tool works on which layer, what the tool bar's buttons may do, what is
// active when a plan opens, and what the status bar says that a click will do.
#include "zuldoccase.h"

#include "support/recorddc.h"
#include "usr/zulhole.h"
#include "win/utf8.h"

namespace
{
enum : int {
    EMITTERS = ZUL_EMITTERS,
    AIR_HEATERS = ZUL_AIRHEATERS,
    HOLES = ZUL_HOLES,
    ZONES = ZUL_ZONES,
    SELECT = EDC_TlSELECT,
    ALIGN = EDC_TlALIGN,
    STOCK = EDC_TlSTOCK,
    RECT = EDC_TlRECT
};
const int layerIds[] = {EMITTERS, AIR_HEATERS, HOLES, ZONES};
const int toolIds[] = {SELECT, ALIGN, STOCK, RECT};

class PlanTools : public DocCase
{
protected:
    PlanTools() { TEdcApplication::statusBar = &status; }
    ~PlanTools() override
    {
        doc->CloseBlock();
        doc->modified = false;
        TEdcApplication::statusBar = NULL;
    }

    /// The plans in the order of the report: floor, walls A to D, ceiling.
    std::vector<TZulWallBlock *> Walls()
    {
        std::vector<TZulWallBlock *> walls;
        for (TEdcBlock *blk : doc->Parts())
            if (auto *wall = dynamic_cast<TZulWallBlock *>(blk))
                walls.push_back(wall);
        return walls;
    }
    void OpenPlan(TEdcBlock *blk)
    {
        doc->OpenBlock(blk);
        doc->blockZoom.SetCustom(100); // there is no window to fit it into
        doc->Refresh(EDC_LAYOUT);
        ASSERT_EQ(doc->openedBlk, blk);
    }
    void OpenFloor()
    {
        New();
        OpenPlan(doc->RoomBlock());
    }
    TEdcSpriteManager &Floor() { return doc->RoomBlock()->Sprites(); }

    /// Those of the commands that may be given, in their order; an active one carries a star.
    template <size_t N>
    std::string May(const int (&ids)[N])
    {
        std::string text;
        for (int id : ids) {
            TCommandEnabler enabler(id);
            doc->EvCommandEnable(enabler);
            if (!enabler.IsEnabled())
                EXPECT_FALSE(enabler.IsChecked()) << id;
            else
                text += (text.empty() ? "" : " ") + std::to_string(id) + (enabler.IsChecked() ? "*" : "");
        }
        return text;
    }
    bool MayDo(int id)
    {
        TCommandEnabler enabler(id);
        doc->EvCommandEnable(enabler);
        return enabler.IsEnabled();
    }
    /// A tool that asks for properties gets none.
    void Choose(int id, bool asks)
    {
        if (asks)
            testdoor::Script([](testdoor::ModalBox &face) { face.Answer(WIN_ID_CANCEL); });
        doc->EvCommand(id);
    }
    std::string Told() const { return ToUtf8(status.Text().c_str()); }
};

TEST_F(PlanTools, OfAPlanThatOpensAreItsFirstLayerAndTheSelector)
{
    New();
    OpenPlan(doc->RoomBlock());
    EXPECT_EQ(May(layerIds), "2001* 3001 5001");
    EXPECT_EQ(May(toolIds), "21011* 21503 21511");
    for (TZulWallBlock *wall : Walls()) {
        OpenPlan(wall);
        EXPECT_EQ(May(layerIds), "3001*");
        EXPECT_EQ(May(toolIds), "21011* 21503 21511 21515");
        EXPECT_EQ(wall->tool, wall->Sprites().FindTool(SELECT));
    }
    EXPECT_EQ(Walls().size(), 5U);
}

TEST_F(PlanTools, AreGreyWhileNoPlanIsOpen)
{
    EXPECT_EQ(May(layerIds), "");
    EXPECT_EQ(May(toolIds), "");
    New();
    EXPECT_EQ(May(layerIds), "");
    EXPECT_EQ(May(toolIds), "");
    OpenPlan(doc->RoomBlock());
    EXPECT_NE(May(layerIds), "");
    doc->CloseBlock();
    EXPECT_EQ(May(layerIds), "");
    EXPECT_EQ(May(toolIds), "");
}

TEST_F(PlanTools, WorkOnTheLayersThatTheyFit)
{
    OpenFloor();
    const struct {
        int layer;
        const char *layers, *tools;
    } table[] = {{HOLES, "2001 3001* 5001", "21011* 21503 21511 21515"},
                 {ZONES, "2001 3001 5001*", "21011* 21503 21515"},
                 {EMITTERS, "2001* 3001 5001", "21011* 21503 21511"}};
    for (const auto &row : table) {
        doc->EvCommand(row.layer);
        EXPECT_EQ(May(layerIds), row.layers);
        EXPECT_EQ(May(toolIds), row.tools);
        for (int id : toolIds) {
            bool fits = MayDo(id);
            bool asks = fits && (id == STOCK || (id == RECT && row.layer == HOLES));
            TEdcSpriteTool *former = Floor().Tool();
            Choose(id, asks);
            EXPECT_EQ(Floor().Tool() == Floor().FindTool(id), fits) << row.layer << " " << id;
            if (!fits) {
                EXPECT_EQ(Floor().Tool(), former) << "a tool that does not fit changes nothing";
            }
            EXPECT_EQ(doc->openedBlk->tool, Floor().Tool());
            EXPECT_EQ(Floor().Tool()->Layer(), Floor().Layer());
        }
    }
}

TEST_F(PlanTools, GoBackToTheSelectorWithEveryOtherLayer)
{
    OpenFloor();
    doc->EvCommand(ZONES);
    doc->EvCommand(RECT);
    EXPECT_EQ(May(toolIds), "21011 21503 21515*");
    doc->EvCommand(HOLES);
    EXPECT_EQ(May(toolIds), "21011* 21503 21511 21515");
    doc->EvCommand(HOLES); // which is active already
    doc->EvCommand(ALIGN);
    EXPECT_EQ(May(toolIds), "21011 21503* 21511 21515");
    doc->EvCommand(HOLES);
    EXPECT_EQ(May(toolIds), "21011 21503* 21511 21515");
}

TEST_F(PlanTools, BeginAnewWheneverThePlanIsOpened)
{
    OpenFloor();
    doc->EvCommand(ZONES);
    doc->EvCommand(RECT);
    auto &layer = *static_cast<TEdcDrawLayer *>(Floor().Layer());
    auto *zone = new EmZONE;
    zone->Insert(doc->Room()->Zones());
    layer.Reload(NULL);
    layer.SelectAll(true, NULL);
    doc->CloseBlock();
    EXPECT_FALSE(layer.IsActive());
    OpenPlan(doc->RoomBlock());
    EXPECT_EQ(May(layerIds), "2001* 3001 5001");
    EXPECT_EQ(May(toolIds), "21011* 21503 21511");
    EXPECT_EQ(layer.CountSel(), 0) << "nothing is selected any more";
}

TEST_F(PlanTools, ThatWereLeftWithAPlanAskNothingWhenItIsOpenedAgain)
{
    OpenFloor();
    doc->EvCommand(HOLES);
    Choose(STOCK, true);
    doc->CloseBlock();
    OpenPlan(doc->RoomBlock()); // a dialog would be unexpected
    EXPECT_EQ(May(toolIds), "21011* 21503 21511");
    TZulWallBlock *wall = Walls()[2];
    OpenPlan(wall);
    Choose(RECT, true);
    OpenPlan(doc->RoomBlock());
    OpenPlan(wall);
    EXPECT_EQ(May(toolIds), "21011* 21503 21511 21515");
}

TEST_F(PlanTools, NeverWorkOnTheWarmAirUnits)
{
    OpenFloor();
    TEdcSpriteLayer *units = Floor().FindLayer(AIR_HEATERS);
    ASSERT_NE(units, nullptr);
    EXPECT_EQ(units->Options(), EDC_LoVISIBLE | EDC_LoPRINTED);
    auto *unit = new EmAIRHEATER;
    unit->Insert(doc->Room()->AirHeaters());
    doc->Refresh(EDC_UPDATE);
    EXPECT_EQ(units->CountLnk(), 1);
    for (int id : {int{EMITTERS}, int{AIR_HEATERS}, int{HOLES}, int{ZONES}}) {
        doc->EvCommand(id); // a button would not give the one
        EXPECT_FALSE(units->IsActive());
        EXPECT_NE(Floor().Layer(), units);
        EXPECT_FALSE(MayDo(AIR_HEATERS));
        doc->EvCommand(EDC_CmSELECTALL);
        EXPECT_EQ(units->CountSel(), 0);
        doc->EvCommand(EDC_CmDELETE);
        EXPECT_EQ(doc->Room()->AirHeaters()->Count(), 1);
    }
}

TEST_F(PlanTools, SeeEveryLayerOfTheFloorWhicheverIsActive)
{
    New();
    EmROOM &room = *doc->Room();
    auto *emitter = new EmEMITTER;
    emitter->pos = AgPOINT(4, 4);
    emitter->Insert(room.Emitters());
    auto *unit = new EmAIRHEATER;
    unit->pos = AgPOINT(8, 4);
    unit->size = AgPOINT(3, 2, 1);
    strcpy(unit->type, "T 20");
    unit->Insert(room.AirHeaters());
    auto *hole = new EmHOLE;
    hole->pos = AgPOINT(12, 4);
    hole->size = AgPOINT(3, 2);
    hole->Insert(room.Surfaces()->Floor()->Holes());
    auto *zone = new EmZONE;
    zone->pos = AgPOINT(15, 8);
    zone->size = AgPOINT(4, 4);
    zone->Insert(room.Zones());
    OpenPlan(doc->RoomBlock());
    doc->Refresh(EDC_UPDATE);
    const struct {
        int layer;
        const char *order; // from the bottom up; capital letters in the colour of the active layer
    } table[] = {{EMITTERS, "hzuE"}, {HOLES, "zueH"}, {ZONES, "hueZ"}};
    auto look = [](const std::string &calls) {
        const struct {
            const char *mark;
            char letter;
        } marks[] = {{"brush hatch", 'h'}, {"2 brush none", 'z'}, {"brush pattern", 'u'}, {"Ellipse", 'e'}};
        std::string order;
        std::istringstream lines(calls);
        for (std::string line; std::getline(lines, line);)
            for (const auto &each : marks)
                if (line.find(each.mark) != std::string::npos) {
                    bool active = line.find("pen 0000ff") != std::string::npos;
                    char letter = static_cast<char>(active ? toupper(each.letter) : each.letter);
                    order += letter;
                }
        return order;
    };
    auto withoutMarkers = [](std::string order) { // of the unit and of the zone's head
        for (const char *double_ : {"ue", "Ze", "ze", "ZE"})
            if (size_t at = order.find(double_); at != std::string::npos)
                order.erase(at + 1, 1);
        return order;
    };
    for (const auto &row : table) {
        doc->EvCommand(row.layer);
        doc->Refresh(0);
        TRecordDC dc;
        Floor().Paint(dc, {0, 0, 2000, 2000});
        EXPECT_EQ(withoutMarkers(look(dc.calls)), row.order) << row.layer << "\n" << dc.calls;
        TRecordDC paper;
        Floor().PaintPlain(paper, {0, 0, 2000, 2000});
        EXPECT_EQ(withoutMarkers(look(paper.calls)), "hzue") << row.layer;
    }
}

TEST_F(PlanTools, OfTheSelectionMayBeUsedWhereThereIsOne)
{
    OpenFloor();
    EmHOLESET *holes = doc->Room()->Surfaces()->Floor()->Holes();
    for (int i = 0; i < 3; ++i)
        (new EmHOLE)->Insert(holes);
    (new EmZONE)->Insert(doc->Room()->Zones());
    doc->Refresh(EDC_UPDATE);
    const int ids[] = {21001, 21003, 21005, 21007, 21801, 21803, 21805};
    EXPECT_EQ(May(ids), "21007") << "no emitters";
    doc->EvCommand(HOLES);
    EXPECT_EQ(May(ids), "21003 21007");
    Floor().Layer()->Select(Floor().Layer()->LnkFirst(), true, NULL);
    EXPECT_EQ(May(ids), "21001 21003 21005 21007 21801");
    Floor().Layer()->SetFocus(Floor().Layer()->LnkFirst(), NULL);
    EXPECT_EQ(May(ids), "21001 21003 21005 21007 21801 21803 21805");
    doc->EvCommand(EDC_CmSELECTALL);
    EXPECT_EQ(May(ids), "21001 21005 21007 21801 21803 21805");
    doc->EvCommand(EDC_CmDELETE);
    EXPECT_EQ(May(ids), "21007");
    EXPECT_TRUE(holes->IsEmpty()) << "nobody is asked";
    doc->EvCommand(ZONES);
    Floor().Layer()->Select(Floor().Layer()->LnkFirst(), true, NULL);
    Floor().Layer()->SetFocus(Floor().Layer()->LnkFirst(), NULL);
    EXPECT_EQ(May(ids), "21001 21005 21007 21803 21805") << "a zone has no properties to open";
    doc->CloseBlock();
    EXPECT_EQ(May(ids), "");
}

TEST_F(PlanTools, AskForPropertiesWhenTheyAreTakenUpAndAtARightClick)
{
    New();
    const struct {
        int layer, tool;
        bool asks;
    } table[] = {{EMITTERS, STOCK, true}, {HOLES, STOCK, true}, {HOLES, RECT, true}, {ZONES, RECT, false}};
    OpenPlan(doc->RoomBlock());
    TRecordDC dc;
    for (const auto &row : table) {
        doc->EvCommand(row.layer);
        Choose(row.tool, row.asks);
        EXPECT_EQ(testdoor::PendingScripts(), 0) << row.layer << " " << row.tool;
        if (row.asks)
            testdoor::Script([](testdoor::ModalBox &face) { face.Answer(WIN_ID_CANCEL); });
        Floor().Tool()->RightDown(dc, 0, {50, 50});
        Floor().Tool()->RightUp(dc, 0, {50, 50});
        EXPECT_EQ(testdoor::PendingScripts(), 0) << row.layer << " " << row.tool;
    }
}

TEST_F(PlanTools, WithoutPropertiesMakeNothingAndSaySo)
{
    New();
    const struct {
        int layer, tool;
    } table[] = {{EMITTERS, STOCK}, {HOLES, STOCK}, {HOLES, RECT}};
    OpenPlan(doc->RoomBlock());
    TRecordDC dc;
    for (const auto &row : table) {
        doc->EvCommand(row.layer);
        Choose(row.tool, true); // cancelled
        said.clear();
        Expect("Zulerion");
        TPoint from = doc->RoomBlock()->Axes().ToDevice(AgPOINT(5, 5));
        TPoint to = row.tool == RECT ? doc->RoomBlock()->Axes().ToDevice(AgPOINT(9, 8)) : from;
        Floor().Tool()->LeftDown(dc, 0, from);
        Floor().Tool()->MouseMove(dc, 0, to);
        Floor().Tool()->LeftUp(dc, 0, to);
        EXPECT_TRUE(said.starts_with("Objekt kann nicht hergestellt werden.")) << row.layer << " " << row.tool;
        EXPECT_EQ(Floor().Layer()->CountLnk(), 0);
        EXPECT_FALSE(doc->modified);
    }
}

// The status bar

TEST_F(PlanTools, TellWhatTheirNextClickWillDo)
{
    OpenFloor();
    const struct {
        int layer, tool;
        const char *text;
    } table[] = {
        {EMITTERS, SELECT, "Klick wählt aus, Ziehen verschiebt, rechts ziehen dreht, Doppelklick öffnet"},
        {EMITTERS, ALIGN, "Ziehen legt die Linie zum Ausgleichen fest, Rechtsklick bricht ab"},
        {EMITTERS, STOCK, "Klick setzt ein Objekt, Ziehen eine Reihe, Rechtsklick ändert die Eigenschaften"},
        {HOLES, SELECT, "Klick wählt aus, Ziehen verschiebt, rechts ziehen dreht, Doppelklick öffnet"},
        {HOLES, STOCK, "Klick setzt ein Objekt, Ziehen eine Reihe, Rechtsklick ändert die Eigenschaften"},
        {HOLES, RECT, "Ziehen bildet ein Rechteck, Rechtsklick ändert die Eigenschaften"},
        {ZONES, SELECT, "Klick wählt aus, Ziehen verschiebt, rechts ziehen dreht"},
        {ZONES, ALIGN, "Ziehen legt die Linie zum Ausgleichen fest, Rechtsklick bricht ab"},
        {ZONES, RECT, "Ziehen bildet ein Rechteck"},
    };
    for (const auto &row : table) {
        doc->EvCommand(row.layer);
        Choose(row.tool, row.tool == STOCK || (row.tool == RECT && row.layer == HOLES));
        EXPECT_EQ(Told(), row.text) << row.layer << " " << row.tool;
    }
    doc->CloseBlock();
    EXPECT_EQ(Told(), "");
    OpenPlan(Walls()[0]);
    EXPECT_EQ(Told(), table[0].text);
}

TEST_F(PlanTools, TellItAgainBehindWhatLongWorkHasTold)
{
    OpenFloor();
    std::string told = Told();
    ASSERT_NE(told, "");
    TRecordDC dc;
    status.SetText(""); // as an evaluation leaves it
    Floor().Tool()->MouseMove(dc, 0, {50, 50});
    EXPECT_EQ(Told(), told);
    doc->EvCommand(ZONES);
    doc->EvCommand(RECT);
    told = Told();
    status.SetText("");
    Floor().Tool()->MouseMove(dc, 0, {50, 50});
    EXPECT_EQ(Told(), told);
}

TEST_F(PlanTools, LeaveAloneWhatOthersHaveTold)
{
    OpenFloor();
    status.SetText("Auswertung");
    doc->CloseBlock();
    EXPECT_EQ(Told(), "Auswertung");
}

// Halls that a user hardly means

TEST_F(PlanTools, WorkInTheSmallestAndInTheLargestHall)
{
    for (const char *size : {"1", "10000"}) {
        SCOPED_TRACE(size);
        New(size, size, "1");
        double side = atof(size);
        std::vector<TEdcBlock *> plans = {doc->RoomBlock()};
        for (TZulWallBlock *wall : Walls())
            plans.push_back(wall);
        for (TEdcBlock *plan : plans) {
            OpenPlan(plan);
            TRecordDC dc;
            plan->Paint(dc, {0, 0, 2000, 2000});
            EXPECT_FALSE(dc.calls.empty());
        }
        OpenPlan(doc->RoomBlock());
        doc->EvCommand(ZONES);
        doc->EvCommand(RECT);
        const TEdcAxes &axes = doc->RoomBlock()->Axes();
        TRecordDC dc;
        TPoint from = axes.ToDevice(AgPOINT(0.25 * side, 0.25 * side));
        TPoint to = axes.ToDevice(AgPOINT(0.75 * side, 0.5 * side));
        Floor().Tool()->LeftDown(dc, 0, from);
        Floor().Tool()->MouseMove(dc, 0, to);
        Floor().Tool()->LeftUp(dc, 0, to);
        ASSERT_EQ(doc->Room()->Zones()->Count(), 1);
        const EmZONE &zone = *doc->Room()->Zones()->First();
        double pixel = axes.ToModelX(1);
        EXPECT_NEAR(zone.size.x, 0.5 * side, pixel + 0.01);
        EXPECT_NEAR(zone.size.y, 0.25 * side, pixel + 0.01);
        EXPECT_EQ(zone.size.x, EdcRound(zone.size.x, -2)) << "on the grid of a centimetre";
        doc->Refresh(EDC_LAYOUT);
        Floor().Paint(dc, {0, 0, 2000, 2000});
        TEdcSprite *spr = Floor().Layer()->LnkFirst();
        EXPECT_TRUE(spr->HitTest(axes.ToDevice(AgPOINT(zone.pos.x - zone.size.x / 2, zone.pos.y))));
        doc->modified = false;
    }
}
} // namespace
