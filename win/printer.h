// Printing: the print dialog, the abort dialog and the page loop over a TPrintout, onto paper or into a PDF. A
// PDF is written beside its target and takes its place only when it is whole.
#ifndef WIN_PRINTER_H
#define WIN_PRINTER_H

#include "win/geometry.h"
#include <memory>
#include <string>

class TDC;
class TWindow;

/// What is printed. The platform calls back; `dc` is set from BeginPrinting to EndPrinting.
class TPrintout
{
public:
    explicit TPrintout(const char *aTitle) : title(aTitle) {}
    virtual ~TPrintout() = default;
    virtual void GetDialogInfo(int &minPage, int &maxPage, int &selFrom, int &selTo) = 0;
    virtual void BeginPrinting() = 0;
    virtual bool HasPage(int page) = 0;
    virtual void PrintPage(int page, const TRect &rect, unsigned flags) = 0; // rect: the printable area
    virtual void EndPrinting() = 0; // always, once BeginPrinting was called
    const std::string &Title() const { return title; }
    bool HasFailed() const { return failed; }
    void SetDC(TDC *aDc) { dc = aDc; }

protected:
    std::string title;   // Windows-1252
    TDC *dc = NULL;      // view
    bool failed = false; // set by a callback that has reported a failure itself: the job ends
};

enum TPrintResult {
    WIN_PRINT_DONE,
    WIN_PRINT_CANCELLED, // in the print dialog
    WIN_PRINT_NOPRINTER,
    WIN_PRINT_ABORTED, // in the abort dialog
    WIN_PRINT_MANAGER, // by the spooler
    WIN_PRINT_MEMORY,
    WIN_PRINT_DISK,
    WIN_PRINT_FAILED,
};

class TPrinter
{
public:
    TPrinter();
    ~TPrinter();
    TPrinter(const TPrinter &) = delete;
    TPrinter &operator=(const TPrinter &) = delete;

    /// Asks with the print dialog (with `prompt`), then prints the chosen pages in order, the abort dialog
    /// beside. Whatever goes wrong is shown. A pending failure of a callback ends the job and stays pending.
    bool Print(TWindow *owner, TPrintout &printout, bool prompt);
    TPrintResult Result() const { return result; } // of the last Print
    /// The next jobs without prompt go into this PDF, paper A4; native path.
    void SetPdf(const std::string &path);
    /// Resolution of paper in dots per inch, 600 at first; for tests and other devices.
    void SetResolution(int dpi);

private:
    struct Impl;
    TPrintResult result = WIN_PRINT_DONE;
    std::unique_ptr<Impl> impl;
};

#endif
