// zulhelp: shows a help file in a window of its own. The program starts it beside itself; the build checks with
// it what it makes.
#include "lib/platform.h"
#include "res/tables.h"
#include "tools/console.h"
#include "tools/console_german.h"
#include "usr/edcutils.h"
#include "win/application.h"
#include "win/frame.h"
#include "win/helpwindow.h"
#include "win/resources.h"
#include "win/utf8.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "lib/xon.h"

namespace
{
enum { DONE = 0, FAILED = 1, MISUSED = 2 }; // exit status
enum { CONTEXT_MAX = 65535 };
enum { PROGRAM_ICON = 1030 };
constexpr TSize WINDOW_SIZE = {960, 720}; // at 96 pixels an inch

class HelpApplication : public TApplication
{
public:
    HelpApplication(int &argc, char **argv, const CdeFILENAME &aFile, int aContext)
        : TApplication("Hilfe", argc, argv), file(aFile), context(aContext)
    {
        static const ResTABLES tables = {resMenus,    resMenuCount,    resAccels,  resAccelCount,
                                         resPictures, resPictureCount, resDialogs, resDialogCount};
        SetResourceTables(&tables);
    }
    ~HelpApplication() override
    {
        SetMainWindow(NULL);
        frame.reset();
        SetResourceTables(NULL);
    }

    void InitMainWindow() override
    {
        __enter
            help.OpenFile(file); __test;
            help.ShowContext(context);
            frame = std::make_unique<TDecoratedFrame>(FromUtf8(help.File().Title().c_str()).c_str(), help);
            frame->SetIcon(PROGRAM_ICON);
            frame->SetWantedSize(WINDOW_SIZE);
            SetMainWindow(frame.get());
        __point
        __treat
    }

private:
    CdeFILENAME file;
    int context;
    THelpWindow help;
    std::unique_ptr<TDecoratedFrame> frame;
};

struct Wishes {
    std::string file; // native
    int context = 0;
    bool isCheck = false;
};

int Misused(const std::string &text)
{
    std::fprintf(stderr, "zulhelp: %s\nHilfe: zulhelp --help\n", text.c_str());
    return MISUSED;
}

/// Says what is wrong with a help file, with the line.
int Check(const Wishes &wishes, const CdeFILENAME &name)
{
    int status = FAILED;
    __enter
        std::string bytes;
        ReadHelpBytes(name, bytes); __test;
        std::string complaint = THelpFile().Parse(bytes);
        if (complaint.empty())
            status = DONE;
        else
            std::fprintf(stderr, "%s: %s\n", wishes.file.c_str(), complaint.c_str());
    __point
        __repair;
        __report;
    __treat
    return status;
}

bool HasScreen()
{
    auto isSet = [](const char *name) {
        const char *value = std::getenv(name);
        return value != NULL && value[0] != '\0';
    };
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

int Show(int &argc, char **argv, const Wishes &wishes, const CdeFILENAME &name)
{
    if (!HasScreen()) {
        std::fprintf(stderr, "zulhelp: Es gibt keinen Bildschirm, auf dem die Hilfe erscheinen könnte.\n");
        return FAILED;
    }
    HelpApplication application(argc, argv, name, wishes.context);
    return application.Run();
}

void ReadWishes(CLI::App &app, int argc, char **argv, Wishes &wishes)
{
    ConsoleSpeakGerman(app);
    app.add_option("DATEI", wishes.file, "Hilfedatei (.hlp)")->required()->type_name("");
    app.add_option("SEITE", wishes.context, "Nummer der Seite, die erscheint, statt der ersten")
        ->check(CLI::Range(0, static_cast<int>(CONTEXT_MAX)))
        ->type_name("");
    app.add_flag("--check", wishes.isCheck, "prüft die Datei nur, ohne Fenster")->group("Optionen");
    app.parse(argc, argv);
}

int Start(int argc, char **argv)
{
    int status = FAILED;
    __enter
        CLI::App app("Zeigt eine Hilfedatei. Esc schließt das Fenster.", "zulhelp");
        Wishes wishes;
        try {
            ReadWishes(app, argc, argv, wishes);
            CdeFILENAME name;
            ConsoleName(name, wishes.file.c_str(), XFOPEN); __test;
            status = wishes.isCheck ? Check(wishes, name) : Show(argc, argv, wishes, name);
        } catch (const CLI::CallForHelp &) {
            ConsoleWrite(app.help()); __test;
            status = DONE;
        } catch (const CLI::ParseError &) {
            status = Misused("Gebraucht werden eine Hilfedatei und höchstens die Nummer einer Seite.");
        }
    __point
        __repair;
        __report;
        status = FAILED;
    __treat
    return status;
}
} // namespace

int main(int argc, char **argv)
{
    ConsoleStart();
    return Start(argc, argv);
}
