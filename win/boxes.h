// Message boxes and file dialogs. All texts in the system's character set, names in its form.
#ifndef WIN_BOXES_H
#define WIN_BOXES_H

#include <string>

class TWindow;

enum TBoxButtons { WIN_BOX_OK, WIN_BOX_OKCANCEL, WIN_BOX_YESNO, WIN_BOX_YESNOCANCEL, WIN_BOX_RETRYCANCEL };
enum TBoxIcon { WIN_ICON_NONE, WIN_ICON_INFORMATION, WIN_ICON_QUESTION, WIN_ICON_EXCLAMATION, WIN_ICON_STOP };
enum TBoxAnswer { WIN_ID_OK = 1, WIN_ID_CANCEL = 2, WIN_ID_RETRY = 4, WIN_ID_YES = 6, WIN_ID_NO = 7 };

/// Modal to the owner, or to the main window without one. Esc is Cancel, or No.
/// @param defaultButton  TBoxAnswer, what Return presses; one that the box does not have: the first
TBoxAnswer MessageBox(TWindow *owner, const char *text, const char *caption, TBoxButtons buttons, TBoxIcon icon,
                      int defaultButton = 0);

/// Gets the texts of message boxes in the place of a person, for programs without a window; each box is
/// answered as Esc answers it. NULL: boxes again. @return the former one
using BoxSink = void (*)(const char *text, bool error);
BoxSink SetBoxSink(BoxSink sink);

struct TFileDialogData {
    std::string filter;    // the file type as the user reads it
    std::string extension; // default extension without its point; the pattern is "*." and this
    std::string name;      // in: what is proposed; out: the full name
    bool failed = false;   // out: the dialog itself failed
};

/// For an existing file, not a read-only one. False where the user cancels or the dialog fails.
bool FileOpenDialog(TWindow *owner, TFileDialogData &data);
/// For a file to write: the path must exist, overwriting asks. The default extension is added to a bare name.
bool FileSaveDialog(TWindow *owner, TFileDialogData &data);

#endif
