#include "win/application.h"
#include "win/guard.h"

#include "lib/charstr.h"
#include "lib/disk.h"
#include "lib/platform.h"
#include "win/boxes.h"
#include "win/gadgets.h"
#include "win/utf8.h"

#include <QApplication>
#include <QCollator>
#include <QDate>
#include <QLocale>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <new>
#include <unistd.h>
#include <utility>

#include "lib/xon.h"

namespace
{
BeepSink beepSink = NULL;

const QLocale &German()
{
    static const QLocale locale(QLocale::German, QLocale::Germany);
    return locale;
}

QString ToQt(const char *text)
{
    QString converted;
    for (const char *s = text; *s != EOS; ++s)
        converted += QChar(static_cast<char16_t>(ChrCode(*s)));
    return converted;
}

void ShowMessage(const char *text, bool error)
{
    if (error)
        WinBeep();
    TApplication *application = TApplication::Current();
    MessageBox(NULL, text, application ? application->Name().c_str() : "", WIN_BOX_OK,
               error ? WIN_ICON_STOP : WIN_ICON_INFORMATION);
}

/// A repair section may call it, so what its line has no memory for is not shown.
void ShowStatus(const char *text, bool beep)
{
    if (beep)
        WinBeep();
    TApplication *application = TApplication::Current();
    try {
        if (application && application->StatusWindow())
            application->StatusWindow()->SetText(text);
    } catch (const std::bad_alloc &) {
        application->StatusWindow()->Invalidate();
    }
}

/// Nothing is saved or repaired, no destructor runs.
void EndAtOnce()
{
    std::_Exit(EXIT_FAILURE);
}

int CollateGerman(const char *s1, const char *s2, bool ignoreCase)
{
    static QCollator exact(German());
    static QCollator relaxed = [] {
        QCollator collator(German());
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        return collator;
    }();
    return (ignoreCase ? relaxed : exact).compare(ToQt(s1), ToQt(s2));
}

/// The locale's own short form has two digits for the year; the reports want all four.
QString ShortDateFormat()
{
    QString format = German().dateFormat(QLocale::ShortFormat);
    return format.contains("yyyy") ? format : format.replace("yy", "yyyy");
}

void GermanDate(int year, int month, int day, char *text, int max)
{
    static const QString format = ShortDateFormat();
    QString shown = German().toString(QDate(year, month, day), format);
    StrCopy(text, FromUtf8(shown.toUtf8().constData()).c_str(), max);
}

const char *GermanCurrency()
{
    static const std::string symbol =
        FromUtf8(German().currencySymbol(QLocale::CurrencySymbol).toUtf8().constData());
    return symbol.c_str();
}
} // namespace

/// What lib/platform.h named before.
struct TServices {
    MessageSink message;
    StatusSink status;
    TerminateSink terminate;
    CollateSink collate;
    ShortDateSink shortDate;
    const char *currency;
};

namespace
{
TServices former;
bool installed = false;
} // namespace

void InstallServices()
{
    if (installed)
        return;
    former.message = SetMessageSink(ShowMessage);
    former.status = SetStatusSink(ShowStatus);
    former.terminate = SetTerminateSink(EndAtOnce);
    former.collate = SetCollateSink(CollateGerman);
    former.shortDate = SetShortDateSink(GermanDate);
    former.currency = SetCurrencySymbol(GermanCurrency());
    installed = true;
}

void RemoveServices()
{
    if (!installed)
        return;
    SetMessageSink(former.message);
    SetStatusSink(former.status);
    SetTerminateSink(former.terminate);
    SetCollateSink(former.collate);
    SetShortDateSink(former.shortDate);
    SetCurrencySymbol(former.currency);
    installed = false;
}

int WinTickCount()
{
    using namespace std::chrono;
    static const steady_clock::time_point start = steady_clock::now();
    int64_t passed = duration_cast<milliseconds>(steady_clock::now() - start).count();
    return static_cast<int>(passed & INT_MAX);
}

void WinBeep()
{
    if (beepSink)
        beepSink();
    else if (qGuiApp)
        QApplication::beep();
}

BeepSink SetBeepSink(BeepSink sink)
{
    return std::exchange(beepSink, sink);
}

TWaitCursor::TWaitCursor()
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

TWaitCursor::~TWaitCursor()
{
    QGuiApplication::restoreOverrideCursor();
}

void GuardedCall(const std::function<void()> &handler)
{
    __enter
        handler(); __test;
    __point
        __repair;
        __report;
    __treat
}

XCODE GuardedFailure(const std::function<void()> &handler)
{
    XCODE failed = XNULL;
    __enter
        handler(); __test;
    __point
        __repair;
        failed = xRepaired;
    __treat
    return failed;
}

void ReportFailure(XCODE code)
{
    __enter
        xRepaired = code;
        xHit = 0;
        __report;
    __point
    __treat
}
