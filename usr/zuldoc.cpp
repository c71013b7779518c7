// The life of a document: making a hall, reading and writing it, the seven blocks that every hall has, and the
// window's picture while there is none.
#include "usr/zuldoc.h"
#include "lib/cde.h"
#include "lib/charstr.h"
#include "lib/disk.h"
#include "lib/platform.h"
#include "lib/xassert.h"
#include "usr/edcutils.h"
#include "usr/zulreport.h"
#include "win/boxes.h"
#include "win/dc.h"

#include <cstdio>

#include "lib/xon.h"

namespace
{
enum {
    TEXT_ARTICLE_HEAD = 1650,
    TEXT_CONCLUSION_HEAD = 1651,
    TEXT_FILE_TYPE = 1660,
    TEXT_NOT_OPENED = 1661,
    TEXT_FLOOR = 1670,
    TEXT_WALL_A = 1671,
    TEXT_WALL_B = 1672,
    TEXT_WALL_C = 1673,
    TEXT_WALL_D = 1674,
    TEXT_CEILING = 1675,
};
enum { PLAN_TOP = 34 }; // pt, above a plan
const char logoName[] = "Zulerio.lgo";
const TColor emptyColor = {0, 0, 128};
} // namespace

TZulDoc::TZulDoc()
{
    AddPalette(&palette);
    ComposePalette();
}

TZulDoc::~TZulDoc()
{
    __enter
        CloseBlock(); __test;
    __point
        __repair;
        __report;
    __treat
    ClearDocument();
}

void TZulDoc::SetModified()
{
    TEdcDocument::SetModified();
    if (room)
        room->Conclusion()->date = ZulToday();
}

bool TZulDoc::NewDocument(bool create)
{
    bool done = false;
    __enter
        if (create) {
            MakeRoom(newSizes.length.value, newSizes.width.value, newSizes.height.value); __test;
            BuildFixedBlocks(); __test;
            Obsolete(EDC_UPDATE);
            StatusMessage(NULL);
            done = true;
        } else {
            newSizes.Reset();
            TZulNewDialog dialog(newSizes);
            done = dialog.Execute() == WIN_ID_OK; __test;
        }
    __point
        if (create) {
            delete room;
            room = NULL;
        }
    __treat
    return done;
}

bool TZulDoc::ReadFile(const char *name)
{
    bool done = false;
    CdeFILE file;
    __enter
        file.Open(name, "o"); __test;
        MakeRoom(0, 0, 0); __test;
        room->Read(file); __test;
        file.Close(); __test;
        BuildFixedBlocks(); __test;
        Obsolete(EDC_UPDATE);
        StatusMessage(NULL);
        done = true;
    __point
        delete room;
        room = NULL;
        file.Close();
        StatusMessage(GetResString(TEXT_NOT_OPENED), static_cast<const char *>(CdeFILENAME(name).GetName()));
        revisionShown = true; // what was just said stays in the empty window
    __treat
    return done;
}

/// Beside the target and renamed over it, so that what goes wrong leaves the old file as it is.
void TZulDoc::WriteFile(const char *name)
{
    CdeFILE file;
    __enter
        ASSERT(room != NULL);
        file.OpenReplacing(name); __test;
        room->Write(file); __test;
        file.Close(); __test;
    __point
        file.Close();
    __treat
}

void TZulDoc::MakeRoom(double length, double width, double height)
{
    __enter
        ASSERT(room == NULL);
        SetPaper(TEdcSize(21.0, 29.7, EDC_UCM));
        SetMargins(TEdcMargins(1.0, 1.0, 1.0, 1.0, EDC_UCM));
        mapInfo = TZulMapInfo();
        room = new EmROOM(length, width, height, ResText(TEXT_ARTICLE_HEAD), ResText(TEXT_CONCLUSION_HEAD),
                          ZulToday()); __test;
    __point
    __treat
}

/// The chain owns the block from here on.
void TZulDoc::AddFixed(TEdcBlock *blk, bool isPlan)
{
    blk->SetOptions(isPlan ? EDC_BoSELECT : 0);
    blk->SetSize(TEdcSize(1.0, isPlan ? 0.0 : 1.0, EDC_UREL));
    blk->SetMargins(TEdcMargins(0, isPlan ? PLAN_TOP : 0, 0, 0, EDC_UPT));
    LinkBlock(blk, NULL, true);
}

void TZulDoc::BuildFixedBlocks()
{
    __enter
        ASSERT(headBlk == NULL);
        AddFixed(headBlk = new TZulArticleBlock(room->Article()), false); __test;
        ASSERT(roomBlk == NULL);
        AddFixed(roomBlk = new TZulRoomBlock(room, &mapInfo, &palette, ResText(TEXT_FLOOR)), true); __test;
        EmSURFACE *surface = room->Surfaces()->FirstWall();
        ASSERT(wallBlkA == NULL);
        AddFixed(wallBlkA = new TZulWallBlock(roomBlk, surface, ResText(TEXT_WALL_A)), true); __test;
        surface = EmSURFACESET::Next(surface);
        ASSERT(wallBlkB == NULL);
        AddFixed(wallBlkB = new TZulWallBlock(roomBlk, surface, ResText(TEXT_WALL_B)), true); __test;
        surface = EmSURFACESET::Next(surface);
        ASSERT(wallBlkC == NULL);
        AddFixed(wallBlkC = new TZulWallBlock(roomBlk, surface, ResText(TEXT_WALL_C)), true); __test;
        surface = EmSURFACESET::Next(surface);
        ASSERT(wallBlkD == NULL);
        AddFixed(wallBlkD = new TZulWallBlock(roomBlk, surface, ResText(TEXT_WALL_D)), true); __test;
        ASSERT(ceilBlk == NULL);
        AddFixed(ceilBlk = new TZulWallBlock(roomBlk, room->Surfaces()->Ceiling(), ResText(TEXT_CEILING)),
                 true); __test;
    __point
        RemoveParts();
    __treat
}

/// Nobody looks at the hall while it goes, so it goes first.
void TZulDoc::ClearDocument()
{
    delete room;
    room = NULL;
    revisionShown = false;
    RemoveParts();
}

/// All blocks and groups, and the names that the document has for them.
void TZulDoc::RemoveParts()
{
    headBlk = NULL;
    roomBlk = NULL;
    wallBlkA = wallBlkB = wallBlkC = wallBlkD = ceilBlk = NULL;
    inputBlk = floorHoleBlk = emittListBlk = airhtListBlk = NULL;
    holeBlkA = holeBlkB = holeBlkC = holeBlkD = ceilHoleBlk = NULL;
    evalBlk = hygieneBlk = hygieneResBlk = classesBlk = conclBlk = NULL;
    RemoveAllBlocks();
}

std::vector<TEdcBlock *> TZulDoc::Parts() const
{
    return {headBlk,  inputBlk,    roomBlk,  floorHoleBlk, emittListBlk,  airhtListBlk, wallBlkA,
            holeBlkA, wallBlkB,    holeBlkB, wallBlkC,     holeBlkC,      wallBlkD,     holeBlkD,
            ceilBlk,  ceilHoleBlk, evalBlk,  hygieneBlk,   hygieneResBlk, conclBlk,     classesBlk};
}

/// "SC1 " and what a user calls such a file.
const char *TZulDoc::FileType()
{
    snprintf(fileType, sizeof fileType, "SC1 %s", GetResString(TEXT_FILE_TYPE));
    return fileType;
}

/// The logo in the middle of the window, and its revision in the status bar. Without its logo the program does
/// not run. No message box may open within a paint event, so a command of the program's own shows the failure
/// and ends the program; where there is no frame to post it to, the failure goes on to the caller.
void TZulDoc::PaintEmpty(TDC &dc, const TRect &)
{
    static bool isPainting = false;
    if (isPainting)
        return;
    isPainting = true;
    __enter
        TRect client = GetClientRect();
        dc.FillRect(client, SolidBrush(emptyColor));
        if (logoFailure == XNULL) {
            logo.Open(logoName); __test;
            logo.Size(dc, {client.Width(), client.Height()}, 1.0); __test;
            logo.Place(5, 5);
            logo.Paint(dc); __test;
            ShowRevision(); __test;
        }
    __point
        if (PostNoLogo()) {
            logoFailure = xCode;
            __repair;
        }
    __treat
    isPainting = false;
}

/// Only where it does not stand there yet: the bar repaints at once, and a paint event need not ask for that
/// each time.
void TZulDoc::ShowRevision()
{
    CdeFILENAME name(ProgramFolder());
    name.AddName(logoName);
    int year = 0;
    int month = 0;
    if (revisionShown || !DiskDate(name, year, month))
        return;
    revisionShown = true;
    StatusMessage("Rev. %u-%02u", static_cast<unsigned>(year), static_cast<unsigned>(month));
}
