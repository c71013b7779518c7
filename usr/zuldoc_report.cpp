// The report around the fixed blocks: which groups there are, what they are made from, and where they go. A
// group goes directly behind its anchor, so groups with the same anchor are linked last one first.
#include "lib/xassert.h"
#include "usr/zuldoc.h"

#include "lib/xon.h"

void TZulDoc::RemoveGroup(TEdcBlock *&group)
{
    RemoveBlock(group);
    group = NULL;
}

/// A group that fails to build leaves none.
template <class BUILD>
void TZulDoc::Replace(TEdcBlock *&group, TEdcBlock *anchor, BUILD build)
{
    __enter
        RemoveGroup(group); __test;
        group = build(); __test;
        LinkBlock(group, anchor, true); __test;
    __point
        RemoveGroup(group);
    __treat
}

void TZulDoc::Reconstruct(bool partial, bool before)
{
    __enter
        if (room && before) {
            RebuildBefore(partial); __test;
        } else if (room) {
            RebuildAfter(partial); __test;
        }
    __point
    __treat
}

void TZulDoc::RebuildBefore(bool partial)
{
    __enter
        Replace(inputBlk, headBlk, [this] { return ZulBuildInput(*room, fonts); }); __test;
        RebuildLists(); __test;
        RebuildHygiene(partial); __test;
    __point
    __treat
}

void TZulDoc::RebuildLists()
{
    __enter
        EmSURFACE *surface = room->Surfaces()->Floor();
        auto holes = [this, &surface] { return ZulBuildHoleList(*surface->Holes(), fonts); };
        Replace(airhtListBlk, roomBlk, [this] { return ZulBuildAirHeaterList(*room->AirHeaters(), fonts); });
        __test;
        Replace(emittListBlk, roomBlk, [this] { return ZulBuildEmitterList(*room->Emitters(), fonts); });
        __test;
        Replace(floorHoleBlk, roomBlk, holes); __test;
        surface = room->Surfaces()->FirstWall();
        Replace(holeBlkA, wallBlkA, holes); __test;
        surface = EmSURFACESET::Next(surface);
        Replace(holeBlkB, wallBlkB, holes); __test;
        surface = EmSURFACESET::Next(surface);
        Replace(holeBlkC, wallBlkC, holes); __test;
        surface = EmSURFACESET::Next(surface);
        Replace(holeBlkD, wallBlkD, holes); __test;
        surface = room->Surfaces()->Ceiling();
        Replace(ceilHoleBlk, ceilBlk, holes); __test;
    __point
    __treat
}

/// A partial rebuild keeps the maps that stand: they belong to the last evaluation.
void TZulDoc::RebuildHygiene(bool partial)
{
    __enter
        TEdcBlock *anchor = evalBlk ? evalBlk : ceilHoleBlk ? ceilHoleBlk : ceilBlk;
        Replace(hygieneBlk, anchor, [this] { return ZulBuildHygiene(*room, fonts); }); __test;
        if (!hygieneBlk) {
            RemoveGroup(hygieneResBlk); __test;
        } else if (!partial) {
            Replace(hygieneResBlk, hygieneBlk, [this] { return ZulBuildHygieneResult(*roomBlk, fonts); });
            __test;
        }
    __point
    __treat
}

void TZulDoc::RebuildAfter(bool partial)
{
    __enter
        if (!partial) {
            TEdcBlock *anchor = ceilHoleBlk ? ceilHoleBlk : ceilBlk;
            Replace(evalBlk, anchor, [this] { return ZulBuildEvaluation(mapInfo, fonts); }); __test;
        }
        Replace(conclBlk, NULL, [this] { return ZulBuildConclusion(*room->Conclusion(), fonts); }); __test;
        RemoveGroup(classesBlk); __test;
        if (hygieneBlk) {
            Replace(classesBlk, NULL, [this] { return ZulBuildClasses(fonts); }); __test;
        }
    __point
    __treat
}
