// The document's commands: new, open, save and close with their questions, printing and zooming. A document's
// name is known from the moment it is opened or first saved, and stays also where writing it fails.
#include "lib/cde.h"
#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcbase2.h"
#include "usr/edcutils.h"
#include "win/application.h"
#include "win/boxes.h"
#include "win/frame.h"

#include <cstring>

#include "lib/xon.h"

namespace
{
enum { NAME_SIZE = 256 }; // of a file's name, terminator included
enum { TEXT_ASK_SAVE = 20204, TEXT_NEW = 20205, TEXT_OTHER_FILE = 20208, TEXT_LONG_NAME = 20209 };
enum {
    COMMAND_NEW = 20003,
    COMMAND_OPEN = 20005,
    COMMAND_CLOSE = 20007,
    COMMAND_SAVE = 20009,
    COMMAND_SAVE_AS = 20011,
    COMMAND_PRINT = 20013,
    COMMAND_ZOOM = 20019,
    COMMAND_UPDATE = 20021,
    COMMAND_RECALC = 20023,
    COMMAND_BLOCK_ACTIVATE = 20029,
    COMMAND_BLOCK_EXECUTE = 20031,
    COMMAND_BLOCK_OPEN = 20033,
    COMMAND_BLOCK_CLOSE = 20035,
};

/// The first word of a document's file type, lower-cased: the extension of its files.
void ExtensionOf(const char *szFileType, char *extension, int max)
{
    ASSERT_AS(ChrClass(*szFileType) & CHR_WORD, "ChrIsAlnum(*szFileType)");
    int length = 0;
    while (length < max - 1 && (ChrClass(szFileType[length]) & CHR_WORD)) {
        extension[length] = szFileType[length];
        ++length;
    }
    extension[length] = EOS;
    StrLower(extension);
}

const char *ApplicationName()
{
    return TApplication::Current() ? TApplication::Current()->Name().c_str() : "";
}

std::unique_ptr<char[]> CopyOf(const char *name)
{
    size_t size = static_cast<size_t>(StrLength(name)) + 1;
    std::unique_ptr<char[]> copy(new char[size]);
    std::memcpy(copy.get(), name, size);
    return copy;
}
} // namespace

bool TEdcDocument::DoCommand(int id)
{
    bool known = true;
    __enter
        switch (id) {
        case COMMAND_NEW:
            CommandNew();
            break;
        case COMMAND_OPEN:
            CommandOpen();
            break;
        case COMMAND_CLOSE:
            CommandClose();
            break;
        case COMMAND_SAVE:
            CommandSave();
            break;
        case COMMAND_SAVE_AS:
            CommandSaveAs();
            break;
        case COMMAND_PRINT:
            CommandPrint();
            break;
        case COMMAND_ZOOM:
            CommandZoom();
            break;
        case COMMAND_UPDATE:
        case COMMAND_RECALC:
            if (path)
                Obsolete(id == COMMAND_UPDATE ? EDC_UPDATE : EDC_RECALC);
            break;
        case COMMAND_BLOCK_ACTIVATE:
            if (!openedBlk)
                ActivateBlock(NULL);
            break;
        case COMMAND_BLOCK_EXECUTE:
            if (!openedBlk)
                ExecuteBlock(NULL);
            break;
        case COMMAND_BLOCK_OPEN:
            if (!openedBlk)
                OpenBlock(NULL);
            break;
        case COMMAND_BLOCK_CLOSE:
            CloseBlock();
            break;
        default:
            known = false;
        }
        __test;
    __point
    __treat
    return known;
}

void TEdcDocument::EnableCommand(TCommandEnabler &ce)
{
    switch (ce.id) {
    case COMMAND_NEW:
    case COMMAND_OPEN:
        ce.Enable(true);
        break;
    case COMMAND_CLOSE:
    case COMMAND_SAVE:
    case COMMAND_SAVE_AS:
    case COMMAND_ZOOM:
    case COMMAND_UPDATE:
    case COMMAND_RECALC:
        ce.Enable(path != NULL);
        break;
    case COMMAND_PRINT:
        ce.Enable(path && blocks && printer);
        break;
    case COMMAND_BLOCK_ACTIVATE:
    case COMMAND_BLOCK_EXECUTE:
    case COMMAND_BLOCK_OPEN:
        ce.Enable(!openedBlk && selectedBlk);
        break;
    case COMMAND_BLOCK_CLOSE:
        ce.Enable(openedBlk != NULL);
        break;
    default:
        break;
    }
}

void TEdcDocument::CommandNew()
{
    std::unique_ptr<char[]> name;
    __enter
        bool wanted = NewDocument(false); __test;
        if (wanted) {
            CommandClose(); __test;
        }
        if (wanted && !path) {
            name = CopyOf("");
            bool made = NewDocument(true); __test;
            if (made) {
                TakePath(name);
                UpdateCaption(); __test;
            }
        }
    __point
        if (!path)
            ShowNoDocument();
    __treat
}

void TEdcDocument::CommandOpen()
{
    char name[NAME_SIZE] = "";
    __enter
        bool chosen = AskFileName(false, name, NAME_SIZE); __test;
        if (chosen) {
            OpenNamed(name); __test;
        }
    __point
        if (!path)
            ShowNoDocument();
    __treat
}

void TEdcDocument::OpenNamed(const char *name)
{
    std::unique_ptr<char[]> copy;
    __enter
        CommandClose(); __test;
        if (!path) {
            copy = CopyOf(name);
            bool read = ReadFile(name); __test;
            if (read) {
                TakePath(copy);
                UpdateCaption(); __test;
            }
        }
    __point
        if (!path)
            ShowNoDocument();
    __treat
}

void TEdcDocument::CommandClose()
{
    if (!path)
        return;
    __enter
        if (modified) {
            TBoxAnswer answer = MessageBox(this, GetResString(TEXT_ASK_SAVE), ApplicationName(),
                                           WIN_BOX_YESNOCANCEL, WIN_ICON_EXCLAMATION); __test;
            if (answer == WIN_ID_YES) {
                CommandSave(); __test;
            }
            if (answer == WIN_ID_NO)
                modified = false;
        }
        if (!modified) {
            ShutDocument(); __test;
        }
    __point
    __treat
}

void TEdcDocument::ShutDocument()
{
    std::unique_ptr<char[]> none;
    __enter
        SelectBlock(NULL); __test;
        CloseBlock(); __test;
        ClearDocument(); __test;
        TakePath(none);
        UpdateCaption(); __test;
        obsolete = EDC_LAYOUT;
        SetScroll({});
    __point
    __treat
}

void TEdcDocument::CommandSave()
{
    if (!path)
        return;
    __enter
        if (*path == EOS) {
            CommandSaveAs(); __test;
        } else {
            WriteFile(path); __test;
            modified = false;
        }
    __point
    __treat
}

void TEdcDocument::CommandSaveAs()
{
    char name[NAME_SIZE] = "";
    std::unique_ptr<char[]> copy;
    if (!path)
        return;
    __enter
        bool chosen = AskFileName(true, name, NAME_SIZE); __test;
        if (chosen) {
            copy = CopyOf(name);
            TakePath(copy);
            UpdateCaption(); __test;
            WriteFile(path); __test;
            modified = false;
        }
    __point
    __treat
}

/// The name that the user chooses, at most max - 1 characters. False where there is none.
bool TEdcDocument::AskFileName(bool save, char *name, int max)
{
    bool chosen = false;
    __enter
        char extension[NAME_SIZE];
        ExtensionOf(FileType(), extension, NAME_SIZE);
        TFileDialogData data;
        data.filter = FileType();
        data.extension = extension;
        if (save && path)
            data.name = path;
        bool answered = save ? FileSaveDialog(this, data) : FileOpenDialog(this, data); __test;
        if (data.failed) {
            MessageBox(this, "Open/SaveAs dialog fails.", "Unexpected situation", WIN_BOX_OK, WIN_ICON_STOP);
            __test;
        } else if (answered && !StrCopy(name, data.name.c_str(), max)) {
            Message(GetResString(TEXT_LONG_NAME), ""); __test;
        } else {
            chosen = answered;
        }
    __point
    __treat
    return chosen;
}

/// Makes the name the document's; NULL leaves no document.
void TEdcDocument::TakePath(std::unique_ptr<char[]> &name)
{
    delete[] path;
    path = name.release();
}

const char *TEdcDocument::FileName() const
{
    static char shown[NAME_SIZE];
    shown[0] = EOS;
    if (path && *path == EOS) {
        StrCopy(shown, GetResString(TEXT_NEW), NAME_SIZE);
    } else if (path) {
        CdeFILENAME name = CdeFILENAME(path).GetName();
        name.CutExt();
        StrCopy(shown, name, NAME_SIZE);
    }
    return shown;
}

void TEdcDocument::UpdateCaption()
{
    __enter
        if (Parent()) {
            const char *name = FileName();
            std::string text = ApplicationName();
            if (*name != EOS)
                text.append(" - ").append(name);
            Parent()->SetCaption(text.c_str()); __test;
        }
    __point
    __treat
}

/// After a failure that leaves no document: an empty window that cannot be scrolled.
void TEdcDocument::ShowNoDocument()
{
    EnableScrollBar(WIN_BAR_BOTH, false);
    Invalidate(true);
}

void TEdcDocument::CommandPrint()
{
    if (!path || !blocks || !printer)
        return;
    __enter
        TEdcPrintout printout(*this);
        printer->Print(this, printout, true); __test;
    __point
    __treat
}

void TEdcDocument::CommandZoom()
{
    if (!path)
        return;
    __enter
        TEdcZoomChoice choice;
        choice.Load(CurrentZoom());
        TEdcZoomDialog dialog(this, choice);
        int answer = dialog.Execute(); __test;
        if (answer == WIN_ID_OK) {
            choice.Store(CurrentZoom());
            SetScroll(StandsAt());
            Obsolete(EDC_LAYOUT);
        }
    __point
    __treat
}

bool TEdcDocument::CanClose()
{
    bool can = false;
    if (locked != 0)
        return can;
    __enter
        bool children = TWindow::CanClose(); __test;
        if (children) {
            DoCommand(COMMAND_CLOSE); __test;
            Refresh(0); __test;
            can = path == NULL;
        }
    __point
        __repair;
        __report;
    __treat
    return can;
}

/// A file dropped on the window is opened as by command, if its extension says that it is a document.
void TEdcDocument::EvDropFile(const char *name)
{
    if (locked != 0)
        return;
    __enter
        char extension[NAME_SIZE];
        ExtensionOf(FileType(), extension, NAME_SIZE);
        if (StrLength(name) >= NAME_SIZE) {
            Message(GetResString(TEXT_LONG_NAME), ""); __test;
        } else if (!CdeFILENAME(name).HasExt(extension)) {
            Message(GetResString(TEXT_OTHER_FILE), static_cast<const char *>(CdeFILENAME(name).GetName()),
                    extension); __test;
        } else {
            OpenNamed(name); __test;
        }
        Refresh(0); __test;
    __point
        __repair;
        __report;
    __treat
}
