#include "win/application.h"

#include "win/frame.h"
#include "win/guard.h"

#include <QApplication>
#include <QEvent>
#include <QLibraryInfo>
#include <QLocale>
#include <QSettings>
#include <QTimer>
#include <QTranslator>
#include <QWidget>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>

#include "lib/xassert.h"

namespace
{
enum { IDLE_TIME = 12 }; // ms from the last event to the idle turn, and between two of them

TApplication *current = NULL;

/// Without a UTF-8 locale the toolkit complains at each start and takes C.UTF-8 itself.
void ChooseCharacterSet()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        setenv("LC_ALL", "C.UTF-8", 1);
    std::setlocale(LC_ALL, "C");
}

/// Names of keys and buttons that must be German also where the toolkit's own translation is not installed.
class OwnTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        static const struct {
            const char *context, *source, *german;
        } table[] = {
            {"QShortcut", "Ctrl", "Strg"},
            {"QShortcut", "Shift", "Umschalt"},
            {"QShortcut", "Alt", "Alt"},
            {"QShortcut", "Del", "Entf"},
            {"QShortcut", "Ins", "Einfg"},
            {"QShortcut", "Home", "Pos1"},
            {"QShortcut", "End", "Ende"},
            {"QShortcut", "PgUp", "Bild auf"},
            {"QShortcut", "PgDown", "Bild ab"},
            {"QShortcut", "Backspace", "Rücktaste"},
            {"QShortcut", "Return", "Eingabe"},
            {"QShortcut", "Enter", "Enter"},
            {"QShortcut", "Space", "Leertaste"},
            {"QShortcut", "Left", "Links"},
            {"QShortcut", "Right", "Rechts"},
            {"QShortcut", "Up", "Hoch"},
            {"QShortcut", "Down", "Runter"},
            {"QPlatformTheme", "OK", "OK"},
            {"QPlatformTheme", "Cancel", "Abbrechen"},
            {"QPlatformTheme", "&Yes", "&Ja"},
            {"QPlatformTheme", "&No", "&Nein"},
            {"QPlatformTheme", "Retry", "Wiederholen"},
            {"QPlatformTheme", "Open", "Öffnen"},
            {"QPlatformTheme", "Save", "Speichern"},
            {"QPlatformTheme", "Close", "Schließen"},
            {"QLineEdit", "&Undo", "&Rückgängig"},
            {"QLineEdit", "&Redo", "Wieder&herstellen"},
            {"QLineEdit", "Cu&t", "&Ausschneiden"},
            {"QLineEdit", "&Copy", "&Kopieren"},
            {"QLineEdit", "&Paste", "&Einfügen"},
            {"QLineEdit", "Delete", "Löschen"},
            {"QLineEdit", "Select All", "Alles auswählen"},
        };
        if (std::strcmp(context, "QWidgetTextControl") == 0) // the same menu, of many lines
            context = "QLineEdit";
        for (const auto &entry : table)
            if (std::strcmp(entry.context, context) == 0 && std::strcmp(entry.source, source) == 0)
                return QString::fromUtf8(entry.german);
        return {};
    }
};

/// Takes a window along when it goes itself.
class Condemned : public QObject
{
public:
    Condemned(QObject *parent, TWindow *aWindow) : QObject(parent), window(aWindow) {}
    ~Condemned() override { delete window; }

private:
    TWindow *window; // owned
};
} // namespace

/// The toolkit's application object, and an eye on its events.
struct TApplication::Impl : public QObject {
    Impl(TApplication &anOwner, int &argc, char **argv);
    bool eventFilter(QObject *object, QEvent *event) override;
    void IdleTurn();

    struct Before {
        Before()
        {
            ChooseCharacterSet();
            QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
                Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
        }
    };

    TApplication &owner;
    Before before; // before `application`
    QApplication application;
    QTranslator dialogs;
    OwnTranslator own;
    QObject condemned; // parent of the windows that wait for their end
    QTimer idle;
    long idleCount = 0; // idle turns since the last event
    int pumping = 0;    // PumpWaitingMessages under way
    bool running = false;
    bool quit = false; // Quit() was called
    int exitCode = 0;
};

TApplication::Impl::Impl(TApplication &anOwner, int &argc, char **argv)
    : owner(anOwner), application(argc, argv)
{
    std::setlocale(LC_NUMERIC, "C");
    QLocale german(QLocale::German, QLocale::Germany);
    QLocale::setDefault(german);
    // The toolkit would keep a file of its own about its dialogs; below this there can be none.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    QApplication::setStyle("fusion");
    QApplication::setQuitOnLastWindowClosed(false); // but with the main window, which says so itself
    QApplication::setApplicationName(QString::fromStdString(owner.Name()));
    if (dialogs.load("qtbase_de", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&dialogs);
    QApplication::installTranslator(&own); // asked first
    idle.setSingleShot(true);
    idle.setInterval(IDLE_TIME);
    connect(&idle, &QTimer::timeout, this, [this] { IdleTurn(); });
    application.installEventFilter(this);
}

/// Starts the idle time anew behind everything that a user or a command can have changed something with, and
/// keeps the main window from closing under a handler that pumps messages.
bool TApplication::Impl::eventFilter(QObject *object, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Close:
        if (pumping > 0 && owner.mainWindow &&
            object == reinterpret_cast<QWidget *>(owner.mainWindow->Native())) {
            event->ignore();
            return true;
        }
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::FocusIn:
    case QEvent::WindowActivate:
    case QEvent::WindowUnblocked:
    case QEvent::Drop:
    case QEvent::MetaCall:
        if (running) {
            idleCount = 0;
            if (!idle.isActive())
                idle.start();
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

/// Not under a modal box, nor over a repair section: what an idle action raised there would end the process.
/// The box's end wakes the idle time again.
void TApplication::Impl::IdleTurn()
{
    if (xDepth != 0 || QApplication::activeModalWidget() || QApplication::activePopupWidget())
        return;
    if (owner.IdleStep())
        idle.start();
}

TApplication::TApplication(const char *aName, int &argc, char **argv) : name(aName)
{
    ASSERT(current == NULL);
    current = this;
    impl = std::make_unique<Impl>(*this, argc, argv);
    InstallServices();
}

TApplication::~TApplication()
{
    RemoveServices();
    impl.reset();
    current = NULL;
}

TApplication *TApplication::Current()
{
    return current;
}

int TApplication::Run()
{
    impl->quit = false;
    GuardedCall([this] { InitMainWindow(); });
    if (impl->quit)
        return impl->exitCode;
    if (!mainWindow)
        return EXIT_FAILURE;
    GuardedCall([this] {
        if (!mainWindow->IsCreated())
            mainWindow->Create();
    });
    if (!mainWindow->IsCreated())
        return EXIT_FAILURE;
    impl->running = true;
    impl->idle.start();
    int code = impl->quit ? impl->exitCode : QApplication::exec();
    impl->running = false;
    return code;
}

void TApplication::Quit(int code)
{
    impl->quit = true;
    impl->exitCode = code;
    QCoreApplication::exit(code);
}

void TApplication::InitMainWindow() {}

bool TApplication::IdleAction(long idleCount)
{
    return mainWindow && mainWindow->IdleAction(idleCount);
}

void TApplication::PumpWaitingMessages()
{
    ++impl->pumping;
    QCoreApplication::processEvents();
    --impl->pumping;
}

/// A loop within the present one, under a message box say, leaves it alone.
void TApplication::Condemn(TWindow *window)
{
    (new Condemned(&impl->condemned, window))->deleteLater();
}

bool TApplication::IdleStep()
{
    bool more = false;
    GuardedCall([&] {
        if (mainWindow && mainWindow->IsCreated())
            mainWindow->IdleEnable();
        bool answer = IdleAction(impl->idleCount++);
        more = answer && !XPending(); // what fails would fail again, box after box
    });
    return more;
}
