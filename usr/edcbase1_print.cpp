// The printout of a document. The printer calls back from its page loop, so each callback is a root: it takes a
// failure off and reports it, and tells the printer that the job has come to its end.
#include "usr/edcbase1.h"
#include "usr/edcbase2.h"

#include "lib/xon.h"

TEdcPrintout::TEdcPrintout(TEdcDocument &document) : TPrintout(document.FileName()), doc(document) {}

void TEdcPrintout::GetDialogInfo(int &minPage, int &maxPage, int &selFrom, int &selTo)
{
    minPage = 1;
    maxPage = doc.PageCount();
    selFrom = 0;
    selTo = 0;
}

/// Locks the document in any case, and before a message shows: from here on its blocks may lie as the printer
/// wants them.
void TEdcPrintout::BeginPrinting()
{
    __enter
        doc.Refresh(0); __test;
        TEdcZoom zoom;
        zoom.SetCustom(100);
        doc.LayoutBlocks(*dc, &zoom); __test;
        Lock();
    __point
        failed = true;
        Lock();
        __repair;
        __report;
    __treat
}

bool TEdcPrintout::HasPage(int)
{
    return true; // the range of pages decides
}

void TEdcPrintout::PrintPage(int page, const TRect &, unsigned)
{
    __enter
        doc.PrepareDC(*dc);
        doc.PrintPage(*dc, page); __test;
    __point
        failed = true;
        __repair;
        __report;
    __treat
}

void TEdcPrintout::EndPrinting()
{
    __enter
        if (locked)
            doc.Lock(false);
        locked = false;
        doc.Refresh(EDC_LAYOUT); __test;
    __point
        __repair;
        __report;
    __treat
}

void TEdcPrintout::Lock()
{
    doc.Lock(true);
    locked = true;
}
