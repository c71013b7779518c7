// The document of this system: one hall and the report over it. It owns the hall; the blocks of the report are
// derived from it and never stored.
#ifndef USR_ZULDOC_H
#define USR_ZULDOC_H

#include "lib/xfail.h"
#include "usr/edcbase2.h"
#include "usr/zulartic.h"
#include "usr/zulroom.h"

class CdeFILENAME;
class TEdcTextBlock;

/// Fonts of the report's texts.
struct TZulFonts {
    TEdcFontRec plain;   // nothing so far
    TEdcFontRec title;   // chapter titles
    TEdcFontRec heading; // of lists and classes
    TEdcFontRec columns; // table column heads
    TEdcFontRec body;    // all running text
    TEdcFontRec note;

    TZulFonts();
};

// The groups of text blocks, made of the hall's data. Each gives the first block of its group, which is the
// caller's to link, or NULL where there is nothing to show. The fonts are views and must outlive the blocks.
TEdcBlock *ZulBuildInput(const EmROOM &room, const TZulFonts &fonts);
TEdcBlock *ZulBuildEmitterList(const EmEMITTERSET &set, const TZulFonts &fonts);
TEdcBlock *ZulBuildAirHeaterList(const EmAIRHEATERSET &set, const TZulFonts &fonts);
TEdcBlock *ZulBuildHoleList(const EmHOLESET &set, const TZulFonts &fonts);
TEdcBlock *ZulBuildEvaluation(const TZulMapInfo &info, const TZulFonts &fonts);
TEdcBlock *ZulBuildHygiene(const EmROOM &room, const TZulFonts &fonts);
/// The four maps, or the note that there are none beside warm-air units that heat.
TEdcBlock *ZulBuildHygieneResult(TZulRoomBlock &roomBlk, const TZulFonts &fonts);
TEdcBlock *ZulBuildClasses(const TZulFonts &fonts);
TEdcBlock *ZulBuildConclusion(const EmCONCLUSION &conclusion, const TZulFonts &fonts);
/// Takes back a group that is not linked.
void ZulDeleteGroup(TEdcBlock *first);

class TZulDoc : public TEdcDocument
{
public:
    TZulDoc();
    ~TZulDoc() override;

    void SetModified() override; // dates the closing line
    void Reconstruct(bool partial, bool before) override;
    bool DoCommand(int id) override;
    void EnableCommand(TCommandEnabler &ce) override;
    bool NewDocument(bool create) override;
    bool ReadFile(const char *file) override;
    void WriteFile(const char *file) override;
    void ClearDocument() override;
    const char *FileType() override;
    void PaintEmpty(TDC &dc, const TRect &rect) override;

    EmROOM *Room() const { return room; } // NULL while no document is open
    TZulRoomBlock *RoomBlock() const { return roomBlk; }
    const TZulMapInfo &MapInfo() const { return mapInfo; }
    /// The blocks and groups in the order of the report, NULL where one is absent; for tests and tools.
    std::vector<TEdcBlock *> Parts() const;

private:
    // zuldoc.cpp
    void MakeRoom(double length, double width, double height);
    void BuildFixedBlocks();
    void AddFixed(TEdcBlock *blk, bool isPlan);
    void RemoveParts();
    void ShowRevision();
    // zuldoc_report.cpp
    void RemoveGroup(TEdcBlock *&group);
    template <class BUILD>
    void Replace(TEdcBlock *&group, TEdcBlock *anchor, BUILD build);
    void RebuildLists();
    void RebuildHygiene(bool partial);
    void RebuildBefore(bool partial);
    void RebuildAfter(bool partial);
    // zuldoc_commands.cpp
    bool Perform(int id);
    bool EditData(int id);
    bool PostNoLogo();
    void EndWithoutLogo();

    // Views of the chain's blocks and groups; a group is named by its first block.
    TZulArticleBlock *headBlk = NULL;
    TZulRoomBlock *roomBlk = NULL;
    TZulWallBlock *wallBlkA = NULL;
    TZulWallBlock *wallBlkB = NULL;
    TZulWallBlock *wallBlkC = NULL;
    TZulWallBlock *wallBlkD = NULL;
    TZulWallBlock *ceilBlk = NULL;
    TEdcBlock *inputBlk = NULL;
    TEdcBlock *floorHoleBlk = NULL;
    TEdcBlock *emittListBlk = NULL;
    TEdcBlock *airhtListBlk = NULL;
    TEdcBlock *holeBlkA = NULL;
    TEdcBlock *holeBlkB = NULL;
    TEdcBlock *holeBlkC = NULL;
    TEdcBlock *holeBlkD = NULL;
    TEdcBlock *ceilHoleBlk = NULL;
    TEdcBlock *evalBlk = NULL;
    TEdcBlock *hygieneBlk = NULL;
    TEdcBlock *hygieneResBlk = NULL;
    TEdcBlock *classesBlk = NULL;
    TEdcBlock *conclBlk = NULL;

    TZulFonts fonts;
    EmROOM *room = NULL; // owned
    TZulRoomPalette palette;
    TZulMapInfo mapInfo;
    TZulNewData newSizes;
    TEdcLogo logo;             // of the empty window
    XCODE logoFailure = XNULL; // why there is no logo: the program is about to end
    bool revisionShown = false;
    char fileType[64] = "";
};

/// Opens a PDF with the desktop's program for it; says so where there is none.
void ZulShowPdf(TWindow *owner, const CdeFILENAME &path);

/// Fills the application's settings and makes the document: the start-up code of the program and of its
/// companions that run a document.
void ZulStartUp();
/// What ZulStartUp made, in the order in which it may go.
void ZulShutDown();

#endif
