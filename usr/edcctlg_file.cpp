// The file of a catalogue. What a user has collected over years must not go with one bad write or one bad
// sector: the former file becomes the backup before the new one is written, and a file that cannot be read is
// moved aside, where no later write reaches it.
#include "lib/charstr.h"
#include "usr/edcctlg.h"

#include <cmath>

#include "lib/xon.h"

namespace
{
enum { TEXT_TAKE_BACKUP = 22100, TEXT_NO_FOLDER = 22101, TEXT_NOT_SAVED = 22102 };

CdeFILENAME Companion(const CdeFILENAME &path, const char *extension)
{
    CdeFILENAME name = path;
    name.SetExt(extension);
    return name;
}

/// White space is none of them: it collapses.
bool IsControl(char c)
{
    unsigned code = ChrCode(c);
    return (code < ' ' || code == 0x7F) && !(ChrClass(c) & CHR_SPACE);
}
} // namespace

double TEdcCtlgItem::GetAmount(CdeFILE &file)
{
    double amount = 0;
    __enter
        amount = file.GetReal(); __test;
        if (!std::isfinite(amount) || amount < 0)
            __raise(XCDE_INVOLVED);
    __point
        amount = 0;
    __treat
    return amount;
}

void TEdcCtlgItem::GetKey(CdeFILE &file, TEdcShortStr &key)
{
    __enter
        char text[SHORTSTRMAX] = "";
        file.GetStr(text, SHORTSTRMAX); __test;
        StrCollapse(text, 0);
        key = text;
    __point
    __treat
}

bool TEdcCtlgList::IsName(const char *text)
{
    bool sound = !StrIsBlank(text);
    for (const char *c = text; *c != EOS; ++c)
        sound = sound && !IsControl(*c);
    return sound;
}

void TEdcCtlgList::Load()
{
    __enter
        if (path.IsBlank()) {
            StrCopy(xFOpenName, ctlgDir, X_NAME);
            __raise(XFOPEN);
        }
        bool there = DiskHas(path);
        if (!there) {
            there = TakeBackup(); __test;
        }
        if (there) {
            ReadFile(); __test;
        }
    __point
    __treat
}

/// Offers the backup in place of the file. True where there is a file now.
bool TEdcCtlgList::TakeBackup()
{
    CdeFILENAME backup = Companion(path, "bak");
    bool taken = false;
    __enter
        if (DiskHas(backup)) {
            TBoxAnswer answer = Ask(TEXT_TAKE_BACKUP, WIN_BOX_YESNO, WIN_ICON_QUESTION); __test;
            taken = answer == WIN_ID_YES;
        }
        if (taken && !DiskRename(backup, path)) {
            StrCopy(xFCreateName, path, X_NAME);
            __raise(XFCREATE);
        }
    __point
        taken = false;
    __treat
    return taken;
}

void TEdcCtlgList::ReadFile()
{
    bool opened = false;
    __enter
        CdeFILE file;
        loaded = false;
        Clear();
        file.Open(path, "o"); __test;
        opened = true;
        file.Walk(); __test;
        int version = file.GetHeader(type, loadVer); __test;
        ReadContent(file, version); __test;
        signed char behind = file.Peek(); __test;
        if (behind != static_cast<signed char>(CDE_EOF)) // the next save would lose what stands behind
            __raise(XCDE_INVOLVED);
        file.Close(); __test;
        loaded = true;
    __point
        if (opened) {
            CdeFILENAME aside = Companion(path, "err");
            DiskDelete(aside);
            DiskRename(path, aside);
            Clear();
        }
    __treat
}

void TEdcCtlgList::ReadItems(LIST &group, CdeFILE &file, int version)
{
    TEdcCtlgItem *item = NULL; // ours until it is linked
    __enter
        while (!file.GetOver()) {
            char key[SHORTSTRMAX] = "";
            item = NewItem(NULL); __test;
            item->Read(file, version); __test;
            item->GetName(key, SHORTSTRMAX);
            if (!IsName(key))
                __raise(XCDE_INVOLVED);
            item->RefreshName();
            item->Insert(&group);
            item = NULL;
        }
        __test;
    __point
        delete item;
    __treat
}

void TEdcCtlgList::WriteItems(LIST &group, CdeFILE &file)
{
    __enter
        for (TEdcCtlgItem *item = TEdcCtlgItem::First(group); item != NULL; item = item->Next()) {
            item->Write(file); __test;
        }
    __point
    __treat
}

void TEdcCtlgList::Save()
{
    __enter
        bool again = loaded;
        bool moved = false; // the former file is the backup now
        if (again) {
            again = MakeFolder(); __test;
        }
        while (again) {
            WriteFile(moved);
            __repair;
            again = false;
            if (xRepaired != XNULL) {
                TBoxAnswer answer = Ask(TEXT_NOT_SAVED, WIN_BOX_RETRYCANCEL, WIN_ICON_QUESTION); __test;
                again = answer == WIN_ID_RETRY;
            }
        }
    __point
        __repair;
        __report;
    __treat
}

bool TEdcCtlgList::MakeFolder()
{
    bool there = DiskHas(ctlgDir) || DiskMakeFolder(ctlgDir);
    __enter
        if (!there) {
            Ask(TEXT_NO_FOLDER, WIN_BOX_OK, WIN_ICON_STOP); __test;
        }
    __point
    __treat
    return there;
}

/// Nothing is written before the former file is the backup, and only behind that a file that was not finished
/// may be deleted.
void TEdcCtlgList::WriteFile(bool &moved)
{
    __enter
        CdeFILE file;
        if (!moved) {
            MoveToBackup(); __test;
            moved = true;
        }
        file.Open(path, "c"); __test;
        file.PutHeader(type, saveVer); __test;
        WriteContent(file); __test;
        file.Close(); __test;
    __point
        if (moved)
            DiskDelete(path);
    __treat
}

void TEdcCtlgList::MoveToBackup()
{
    __enter
        CdeFILENAME backup = Companion(path, "bak");
        if (DiskHas(path)) {
            DiskDelete(backup);
            if (!DiskRename(path, backup)) {
                StrCopy(xFCreateName, backup, X_NAME);
                __raise(XFCREATE);
            }
        }
    __point
    __treat
}
