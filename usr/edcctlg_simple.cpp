// The simple form: one list of items in the dialog, one list of items in the file.
#include "lib/charstr.h"
#include "usr/edcctlg.h"

#include "lib/xon.h"

namespace
{
enum : int {
    DIALOG_SIMPLE = 22010,
    ID_ITEMS = 100,
    ID_FRAME = 101,
    ID_ADD = 102,
    ID_ADJUST = 103,
    ID_REMOVE = 104,
    ID_CLOSE = 105,
    ID_PICTURE = 106
};
} // namespace

TEdcCtlgSimpleList::TEdcCtlgSimpleList(const char *name, const char *aType, int aSaveVer, int aLoadVer,
                                       int aTitleId, TWindow *aParent)
    : TEdcCtlgList({DIALOG_SIMPLE, ID_ITEMS, ID_FRAME, ID_ADD, ID_ADJUST, ID_REMOVE, ID_CLOSE, ID_PICTURE},
                   "SCAT/", name, aType, aSaveVer, aLoadVer, aTitleId, aParent)
{
}

TEdcCtlgItem *TEdcCtlgSimpleList::Select()
{
    TEdcCtlgItem *chosen = NULL;
    __enter
        TEdcShortStr text;
        bool picked = RunPicking(&text); __test;
        if (picked && text.id != EDC_VUDF)
            chosen = FindItem(text.text, true);
    __point
    __treat
    return chosen;
}

TEdcCtlgItem *TEdcCtlgSimpleList::FindItem(const char *itemName, bool exact, const TEdcCtlgItem *skip)
{
    ASSERT_AS(itemName != NULL, "name != NULL");
    return loaded ? FindIn(*this, itemName, exact, skip) : NULL;
}

void TEdcCtlgSimpleList::ReadContent(CdeFILE &file, int version)
{
    ReadItems(*this, file, version);
}

void TEdcCtlgSimpleList::WriteContent(CdeFILE &file)
{
    WriteItems(*this, file);
}

void TEdcCtlgSimpleList::FillLists()
{
    FillItems(NULL);
}
