// What the printer's page loop needs around it: the print dialog and the abort dialog.
#ifndef WIN_PRINTER_PARTS_H
#define WIN_PRINTER_PARTS_H

#include "win/native.h"

#include <memory>
#include <string>

class TWindow;

/// Which pages, both included. In: what can be asked for, and what is proposed; out: what the user wants.
struct TPrintPages {
    int min = 1;
    int max = 1;
    int from = 0; // 0: nothing is proposed; as an answer, all pages
    int to = 0;
    bool lastFirst = false;
};

/// The print dialog over a printer of the toolkit, which takes what the user sets. The PDF that is
/// proposed is named by the title.
/// @return  false where the user cancels
bool AskForPrint(TWindow *owner, TNativeDevice *printer, const std::string &title, TPrintPages &pages);

/// Shows how far a job is and lets the user end it. While it is up no other window takes input. It has no loop
/// of its own: whoever prints shows page after page and looks whether it is to end.
class TAbortDialog
{
public:
    /// `title` in the system's character set, `device` and the `port` it prints to in UTF-8.
    TAbortDialog(TWindow *owner, const std::string &title, const std::string &device, const std::string &port);
    TAbortDialog(const TAbortDialog &) = delete;
    TAbortDialog &operator=(const TAbortDialog &) = delete;
    ~TAbortDialog();

    /// Handles what waits in the queue. False once the user has ended the job.
    bool ShowPage(int page, int last);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

#endif
