// Each builder of report texts where memory fails: nothing is left behind, and the failure goes on.
#include "reportgroups.h"
#include "support/fault.h"
#include "support/recorddc.h"

#include "lib/xon.h"

namespace
{
class BuildersWithoutMemory : public ReportGroups
{
protected:
    void SetUp() override
    {
        for (int i = 0; i < 6; ++i)
            Hang("Platte 12 mit langem Namen");
        Place("Lufterhitzer LH 40 Deckenger\xE4t");
        Open("Rolltor zur Nachbarhalle, ged\xE4mmt");
        room.Data()->workClass = 2;
        StrCopy(room.Conclusion()->text, (std::string(700, 'x') + "\r\n" + std::string(700, 'y')).c_str(),
                sizeof room.Conclusion()->text);
    }

    template <class BUILD>
    void Sweep(const char *name, int blocks, BUILD build)
    {
        SCOPED_TRACE(name);
        long before = 0;
        TEdcBlock *first = NULL;
        int failed = SweepFaults([&] { before = LiveBlocks(); }, [&] { first = build(); },
                                 [&](const FaultRun &run) {
                                     bool isBuilt = first != NULL;
                                     ZulDeleteGroup(first);
                                     long after = LiveBlocks();
                                     EXPECT_EQ(after, before) << run.n;
                                     EXPECT_EQ(isBuilt, run.fired == 0) << run.n;
                                     EXPECT_STREQ(run.code, run.fired ? XALLOC : XNULL) << run.n;
                                 });
        EXPECT_GT(failed, blocks) << "a block and its text each";
    }
};

TEST_F(BuildersWithoutMemory, LeaveNothingBehind)
{
    TZulMapInfo info;
    Sweep("input", 6, [&] { return ZulBuildInput(room, fonts); });
    Sweep("emitters", 4, [&] { return ZulBuildEmitterList(*room.Emitters(), fonts); });
    Sweep("warm-air units", 3, [&] { return ZulBuildAirHeaterList(*room.AirHeaters(), fonts); });
    Sweep("openings", 3, [&] { return ZulBuildHoleList(*Holes(), fonts); });
    Sweep("evaluation", 6, [&] { return ZulBuildEvaluation(info, fonts); });
    Sweep("hygiene", 3, [&] { return ZulBuildHygiene(room, fonts); });
    Sweep("classes", 12, [&] { return ZulBuildClasses(fonts); });
    Sweep("conclusion", 5, [&] { return ZulBuildConclusion(*room.Conclusion(), fonts); });
    EXPECT_EQ(std::string(room.Conclusion()->text), std::string(700, 'x') + "\r\n" + std::string(700, 'y'));
}

TEST_F(BuildersWithoutMemory, LeaveNoMapBehind)
{
    TZulMapInfo info;
    TZulRoomPalette palette;
    doc.AddPalette(&palette);
    doc.ComposePalette();
    TZulRoomBlock roomBlk(&room, &info, &palette, "Plan");
    Sweep("maps", 4, [&] { return ZulBuildHygieneResult(roomBlk, fonts); });
}

TEST_F(BuildersWithoutMemory, AColumnHeadIsEmptyWhereItsLayoutFails)
{
    TRecordDC device(96);
    TEdcBlock *head = Blocks(ZulBuildEmitterList(*room.Emitters(), fonts))[1];
    TEdcSize size;
    int failed = SweepFaults([&] { size = TEdcSize(8, 3); }, [&] { head->Layout(device, size, 1); },
                             [&](const FaultRun &run) {
                                 EXPECT_STREQ(run.code, run.fired ? XALLOC : XNULL) << run.n;
                                 EXPECT_EQ(size.Height() == 3, run.fired > 0) << run.n;
                                 device.calls.clear();
                                 head->Paint(device, {0, 0, 800, 100});
                                 EXPECT_EQ(device.calls.empty(), run.fired > 0) << run.n;
                             });
    EXPECT_GE(failed, 8);
}
} // namespace
