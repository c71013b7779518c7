// The page loop of a print job, and where its pages go: a printer of the desktop, or a PDF that is written
// beside its target. A report has some ten pages of 100 KB, so a PDF is written as it grows, through a buffer.
#include "win/printer.h"
#include "win/boxes.h"
#include "win/dc.h"
#include "win/printer_parts.h"
#include "win/surface.h"
#include "win/utf8.h"

#include "lib/disk.h"
#include "lib/platform.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <unistd.h>
#include <utility>

#include "lib/xon.h"

namespace
{
enum { TEXT_NOTPRINTED = 32591, TEXT_CAPTION = 32597 };

/// A PDF while it grows. It goes through the file layer, so that it replaces its target as documents do: whole
/// and on the disk, or not at all.
class PdfFile : public QIODevice
{
public:
    ~PdfFile() override { Discard(); }

    bool Open(const QString &path);
    bool Settle(); // puts the file in the target's place; false if anything went wrong since Open()
    int Error() const { return error; } // errno of what went wrong first, 0 for nothing

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override;

private:
    enum { BUFFER = 1 << 16, TRIES = 100 };

    bool Fail();
    bool OpenBeside(const std::string &folder, int mode);
    void TakeLikeness(int former);
    void Flush();
    void CloseFile();
    void Discard();

    std::string target; // native, links followed
    std::string path;   // of the file that grows; empty: there is none
    std::string buffer;
    int fd = -1;
    int error = 0;
};

bool PdfFile::Fail()
{
    if (error == 0)
        error = errno != 0 ? errno : EIO;
    return false;
}

/// What stands in the target's place must be a file that can be written.
bool PdfFile::Open(const QString &wanted)
{
    QFileInfo file(wanted);
    QString canonical = file.canonicalFilePath();
    target = QFile::encodeName(canonical.isEmpty() ? file.absoluteFilePath() : canonical).toStdString();
    int former = disk->open(target.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY, 0);
    if (former < 0 && errno != ENOENT)
        return Fail();
    if (!OpenBeside(target.substr(0, target.rfind('/') + 1), former < 0 ? 0666 : 0600))
        Fail();
    if (former >= 0)
        TakeLikeness(former);
    return error == 0 && QIODevice::open(WriteOnly | Unbuffered);
}

/// The name tells nothing of the target's, which may be as long as names can be.
bool PdfFile::OpenBeside(const std::string &folder, int mode)
{
    for (int i = 1; i <= TRIES; ++i) {
        path = folder + "~druck" + std::to_string(getpid()) + "-" + std::to_string(i) + ".pdf";
        fd = disk->open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, mode);
        if (fd >= 0)
            return true;
        if (errno != EEXIST)
            break;
    }
    path.clear();
    return false;
}

void PdfFile::TakeLikeness(int former)
{
    if (fd >= 0 && disk->likeness(fd, former) != 0)
        Fail();
    if (disk->close(former) != 0)
        Fail();
}

qint64 PdfFile::writeData(const char *data, qint64 size)
{
    try {
        buffer.append(data, static_cast<size_t>(size));
        if (buffer.size() >= BUFFER)
            Flush();
    } catch (const std::bad_alloc &) { // must not pass through the toolkit
        errno = ENOMEM;
        Fail();
    }
    return error == 0 ? size : -1;
}

void PdfFile::Flush()
{
    size_t done = 0;
    while (error == 0 && done < buffer.size()) {
        ssize_t count = disk->write(fd, buffer.data() + done, buffer.size() - done);
        if (count > 0)
            done += static_cast<size_t>(count);
        else if (count == 0 || errno != EINTR)
            Fail();
    }
    buffer.clear();
}

void PdfFile::CloseFile()
{
    if (fd >= 0 && disk->close(std::exchange(fd, -1)) != 0)
        Fail();
}

bool PdfFile::Settle()
{
    Flush();
    if (error == 0 && disk->sync(fd) != 0)
        Fail();
    CloseFile();
    if (error == 0 && disk->rename(path.c_str(), target.c_str()) != 0)
        Fail();
    if (error == 0)
        path.clear();
    Discard();
    return error == 0;
}

void PdfFile::Discard()
{
    CloseFile();
    if (!path.empty())
        disk->unlink(path.c_str());
    path.clear();
}

/// A job that is under way. Its failures are results; a failure that a callback leaves pending stays so.
class PrintJob
{
public:
    PrintJob(TWindow *anOwner, TPrintout &aPrintout) : owner(anOwner), printout(aPrintout) {}

    TPrintResult ToPdf(const QString &path, const QPageLayout &layout, int dpi);
    TPrintResult ToPaper(QPrinter &printer);

    TPrintPages pages;
    std::string detail; // Windows-1252: why a file cannot be written, "" for nothing to tell

private:
    TPrintResult Run(QPagedPaintDevice &device, TPoint physicalOffset);
    TPrintResult PrintPages(QPagedPaintDevice &device);
    TPrintResult PrintedPage(int page, const TRect &rect);
    void EndPrinting();
    bool IsStopped() const { return XPending() || printout.HasFailed(); }
    TPrintResult FileResult(const PdfFile &file);

    TWindow *owner;      // view
    TPrintout &printout; // view
    std::string device;  // UTF-8: what the abort dialog says
    std::string port;
    std::function<TPrintResult()> state = [] { return WIN_PRINT_DONE; }; // of where the pages go
};

/// Calls back. What a callback throws is pending behind it.
template <class CALLBACK>
void Call(const CALLBACK &callback)
{
    __enter
        callback(); __test;
    __point
    __treat
}

/// EndPrinting undoes what BeginPrinting did. It has to work while a failure of the job is pending, and may
/// meet one of its own, so the former stands aside.
void PrintJob::EndPrinting()
{
    XCODE code = std::exchange(xCode, XNULL);
    const char *file = xFile;
    int line = xLine;
    Call([&] { printout.EndPrinting(); });
    if (code == XNULL)
        return;
    xCode = code;
    xFile = file;
    xLine = line;
}

TPrintResult PrintJob::PrintedPage(int page, const TRect &rect)
{
    Call([&] { printout.PrintPage(page, rect, 0); });
    return IsStopped() ? WIN_PRINT_FAILED : state();
}

/// All pages are as many as there are by now: what was laid out for the paper may have more of them than what
/// the dialog counted.
TPrintResult PrintJob::PrintPages(QPagedPaintDevice &paper)
{
    if (pages.from < 1) {
        Call([this] { printout.GetDialogInfo(pages.min, pages.max, pages.from, pages.to); });
        pages.from = pages.min;
        pages.to = pages.max;
    }
    QRect printable = paper.pageLayout().paintRectPixels(paper.logicalDpiX());
    TRect rect = {0, 0, printable.width(), printable.height()};
    TAbortDialog abort(owner, printout.Title(), device, port);
    int last = pages.lastFirst ? pages.from : pages.to;
    TPrintResult result = WIN_PRINT_FAILED; // where there is no page at all
    for (int i = 0; i <= pages.to - pages.from; ++i) {
        int page = pages.lastFirst ? pages.to - i : pages.from + i;
        bool has = false;
        if (!abort.ShowPage(page, last))
            return WIN_PRINT_ABORTED;
        Call([&] { has = printout.HasPage(page); });
        if (!has)
            return IsStopped() ? WIN_PRINT_FAILED : result;
        if (i > 0 && !paper.newPage())
            return state() != WIN_PRINT_DONE ? state() : WIN_PRINT_FAILED;
        result = PrintedPage(page, rect);
        if (result != WIN_PRINT_DONE)
            return result;
    }
    return result;
}

TPrintResult PrintJob::Run(QPagedPaintDevice &paper, TPoint physicalOffset)
{
    QPainter painter;
    if (!painter.begin(&paper))
        return WIN_PRINT_FAILED;
    std::unique_ptr<TSurface> surface = TSurface::Paper(
        reinterpret_cast<TNativePainter *>(&painter), paper.logicalDpiX(), paper.logicalDpiY(), physicalOffset);
    TSurfaceDC dc(*surface);
    printout.SetDC(&dc);
    TPrintResult result = WIN_PRINT_FAILED;
    Call([&] { printout.BeginPrinting(); });
    if (!IsStopped()) {
        try {
            result = PrintPages(paper);
        } catch (const std::bad_alloc &) {
            result = WIN_PRINT_MEMORY;
        }
    }
    EndPrinting();
    printout.SetDC(NULL);
    return result;
}

const struct {
    int error;
    const char *text; // Windows-1252
} errorTexts[] = {
    {ENOENT, "Der Ordner ist nicht vorhanden."}, {ENOTDIR, "Der Ordner ist nicht vorhanden."},
    {EACCES, "Die Rechte reichen nicht aus."},   {EPERM, "Die Rechte reichen nicht aus."},
    {EROFS, "Die Rechte reichen nicht aus."},    {EISDIR, "An dieser Stelle steht ein Ordner."},
    {ENAMETOOLONG, "Der Name ist zu lang."},
};

TPrintResult PrintJob::FileResult(const PdfFile &file)
{
    if (file.Error() == 0)
        return WIN_PRINT_DONE;
    if (file.Error() == ENOSPC || file.Error() == EDQUOT || file.Error() == EFBIG)
        return WIN_PRINT_DISK;
    if (file.Error() == ENOMEM)
        return WIN_PRINT_MEMORY;
    detail = "\"" + FromUtf8(port.c_str()) + "\"";
    for (const auto &known : errorTexts)
        if (known.error == file.Error())
            detail += std::string(": ") + known.text;
    return WIN_PRINT_FAILED;
}

TPrintResult PrintJob::ToPdf(const QString &path, const QPageLayout &layout, int dpi)
{
    device = "PDF";
    port = path.toStdString();
    PdfFile file;
    if (!file.Open(path))
        return FileResult(file);
    state = [&] { return FileResult(file); };
    TPrintResult result = WIN_PRINT_FAILED;
    {
        QPdfWriter writer(&file); // writes its end when the painter ends, in Run()
        writer.setResolution(dpi);
        writer.setPageLayout(layout);
        writer.setTitle(QString::fromStdString(ToUtf8(printout.Title().c_str())));
        writer.setCreator(QCoreApplication::applicationName());
        result = Run(writer, {});
    }
    if (result == WIN_PRINT_DONE && !IsStopped() && !file.Settle())
        result = FileResult(file);
    state = [] { return WIN_PRINT_DONE; };
    return result;
}

TPrintResult PrintJob::ToPaper(QPrinter &printer)
{
    device = printer.printerName().toStdString();
    port = QPrinterInfo(printer).location().toStdString();
    state = [&] {
        bool lost = printer.printerState() == QPrinter::Error || printer.printerState() == QPrinter::Aborted;
        return lost ? WIN_PRINT_MANAGER : WIN_PRINT_DONE;
    };
    QPoint offset = printer.pageLayout().paintRectPixels(printer.resolution()).topLeft();
    TPrintResult result = Run(printer, {offset.x(), offset.y()});
    if (result != WIN_PRINT_DONE)
        printer.abort();
    return result == WIN_PRINT_DONE ? state() : result;
}

int ReasonText(TPrintResult result)
{
    switch (result) {
    case WIN_PRINT_NOPRINTER:
        return 32589;
    case WIN_PRINT_MEMORY:
        return 32592;
    case WIN_PRINT_DISK:
        return 32593;
    case WIN_PRINT_ABORTED:
        return 32594;
    case WIN_PRINT_MANAGER:
        return 32595;
    default:
        return 32596;
    }
}

void ShowResult(TWindow *owner, const std::string &title, TPrintResult result, const std::string &detail)
{
    std::string reason = ResText(ReasonText(result));
    if (!detail.empty())
        reason += "\n" + detail;
    std::string text = ResText(TEXT_NOTPRINTED); // "... %s ... %s"
    size_t at = 0;
    for (const std::string &value : {title, reason}) {
        at = text.find("%s", at);
        if (at == std::string::npos)
            break;
        text.replace(at, 2, value);
        at += value.size();
    }
    MessageBox(owner, text.c_str(), ResText(TEXT_CAPTION), WIN_BOX_OK, WIN_ICON_STOP);
}

QPageLayout PlainLayout(const QPageSize &size, QPageLayout::Orientation orientation)
{
    return QPageLayout(size, orientation, QMarginsF(0, 0, 0, 0));
}
} // namespace

struct TPrinter::Impl {
    std::string pdf; // native; empty: the default printer
    int dpi = 600;

    TPrintResult Print(TWindow *owner, TPrintout &printout, PrintJob &job, bool prompt) const;
    TPrintResult PrintAsked(TWindow *owner, TPrintout &printout, PrintJob &job) const;
};

TPrintResult TPrinter::Impl::PrintAsked(TWindow *owner, TPrintout &printout, PrintJob &job) const
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setResolution(dpi);
    printer.setDocName(QString::fromStdString(ToUtf8(printout.Title().c_str())));
    if (!AskForPrint(owner, reinterpret_cast<TNativeDevice *>(&printer), printout.Title(), job.pages))
        return WIN_PRINT_CANCELLED;
    if (printer.outputFormat() != QPrinter::PdfFormat)
        return job.ToPaper(printer);
    QPageLayout layout = printer.pageLayout();
    return job.ToPdf(printer.outputFileName(), PlainLayout(layout.pageSize(), layout.orientation()), dpi);
}

TPrintResult TPrinter::Impl::Print(TWindow *owner, TPrintout &printout, PrintJob &job, bool prompt) const
{
    if (prompt)
        return PrintAsked(owner, printout, job);
    if (!pdf.empty())
        return job.ToPdf(QString::fromStdString(pdf),
                         PlainLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait), dpi);
    QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull())
        return WIN_PRINT_NOPRINTER;
    QPrinter printer(info, QPrinter::HighResolution);
    printer.setResolution(dpi);
    printer.setDocName(QString::fromStdString(ToUtf8(printout.Title().c_str())));
    return job.ToPaper(printer);
}

TPrinter::TPrinter() : impl(std::make_unique<Impl>()) {}

TPrinter::~TPrinter() = default;

void TPrinter::SetPdf(const std::string &path)
{
    impl->pdf = path;
}

void TPrinter::SetResolution(int dpi)
{
    impl->dpi = dpi;
}

bool TPrinter::Print(TWindow *owner, TPrintout &printout, bool prompt)
{
    static bool printing = false; // the abort dialog lets events through
    if (printing || XPending())
        return false;
    printing = true;
    result = WIN_PRINT_FAILED;
    PrintJob job(owner, printout);
    Call([&] { printout.GetDialogInfo(job.pages.min, job.pages.max, job.pages.from, job.pages.to); });
    try {
        if (!XPending())
            result = impl->Print(owner, printout, job, prompt);
    } catch (const std::bad_alloc &) {
        result = WIN_PRINT_MEMORY;
    }
    printing = false;
    if (XPending())
        result = xCode == XALLOC ? WIN_PRINT_MEMORY : WIN_PRINT_FAILED;
    else if (result != WIN_PRINT_DONE && result != WIN_PRINT_CANCELLED)
        ShowResult(owner, printout.Title(), result, job.detail);
    return result == WIN_PRINT_DONE;
}
