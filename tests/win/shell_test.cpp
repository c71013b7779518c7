// What the program asks of the desktop: programs that start, the one for a kind of file, the help viewer.
#include "lib/cde.h"
#include "support/folder.h"
#include "win/desktopfiles.h"
#include "win/shell.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <random>
#include <sys/stat.h>
#include <thread>

namespace
{
/// A variable of the environment while it lives.
class VARIABLE
{
public:
    VARIABLE(const char *aName, const std::string &value) : name(aName)
    {
        if (const char *old = getenv(name))
            former = old;
        setenv(name, value.c_str(), 1);
    }
    ~VARIABLE()
    {
        if (former)
            setenv(name, former->c_str(), 1);
        else
            unsetenv(name);
    }
    VARIABLE(const VARIABLE &) = delete;
    VARIABLE &operator=(const VARIABLE &) = delete;

private:
    const char *name;
    std::optional<std::string> former;
};

/// A desktop of its own: folders of the user and of the system, and programs on the path.
class Shell : public testing::Test
{
protected:
    Shell()
    {
        for (const char *name :
             {"bin", "config", "etc", "user/applications", "system/applications/kde", "system/mime"})
            std::filesystem::create_directories(folder.Path(name));
    }

    void PutProgram(const std::string &name, const std::string &text)
    {
        folder.Put(name, text);
        chmod(folder.Path(name).c_str(), 0755);
    }
    /// A program on the path that writes its arguments, one a line, into the file "seen".
    void PutViewer(const std::string &name)
    {
        PutProgram("bin/" + name, "#!/bin/sh\nfor a; do echo \"$a\"; done > '" + folder.Path("seen~") +
                                      "'\nmv '" + folder.Path("seen~") + "' '" + folder.Path("seen") + "'\n");
    }
    void PutDesktop(const std::string &file, const std::string &exec, const std::string &more = "")
    {
        folder.Put(file, "[Desktop Entry]\nType=Application\nName=Leser\nExec=" + exec + "\n" + more +
                             "\n[Desktop Action neu]\nExec=anderes\n");
    }
    /// What the started program saw, once it is through.
    std::string Seen()
    {
        for (int i = 0; i < 1000 && !std::filesystem::exists(folder.Path("seen")); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return folder.Get("seen");
    }

    FOLDER folder;
    VARIABLE home = {"HOME", folder.Path("home")};
    VARIABLE configHome = {"XDG_CONFIG_HOME", folder.Path("config")};
    VARIABLE configDirs = {"XDG_CONFIG_DIRS", folder.Path("etc")};
    VARIABLE dataHome = {"XDG_DATA_HOME", folder.Path("user")};
    VARIABLE dataDirs = {"XDG_DATA_DIRS", folder.Path("system")};
    VARIABLE desktop = {"XDG_CURRENT_DESKTOP", "Probe:Andere"};
    VARIABLE searchPath = {"PATH", folder.Path("bin") + ":/usr/bin:/bin"};
};

std::string Joined(const std::vector<std::string> &words)
{
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : "|") + word;
    return text;
}

const char PDF[] = "application/pdf";
} // namespace

TEST_F(Shell, StartsAProgramWithAFile)
{
    PutViewer("leser");
    ASSERT_GT(ShellStart(folder.Name("bin/leser").c_str(), folder.Name("H\xC3\xA4lle eins.pdf").c_str()), 32);
    EXPECT_EQ(Seen(), folder.Path("H\xC3\xA4lle eins.pdf") + "\n");
}

TEST_F(Shell, SaysWhyAProgramDoesNotStart)
{
    folder.Put("text", "kein Programm");
    PutProgram("zahl", std::string("\x7F"
                                   "ELF\0\1\2",
                                   7));
    EXPECT_EQ(ShellStart(folder.Name("fehlt").c_str(), NULL), WIN_SHELL_NOFILE);
    EXPECT_EQ(ShellStart(folder.Name("text/fehlt").c_str(), NULL), WIN_SHELL_NOFILE);
    EXPECT_EQ(ShellStart(folder.Name("text").c_str(), NULL), WIN_SHELL_DENIED);
    EXPECT_EQ(ShellStart(folder.Name("bin").c_str(), NULL), WIN_SHELL_DENIED) << "a folder";
    EXPECT_EQ(ShellStart(folder.Name("zahl").c_str(), NULL), WIN_SHELL_DENIED) << "no machine of ours";
}

TEST_F(Shell, KindOfAnExtensionComesFromTheDatabases)
{
    EXPECT_EQ(DesktopKind(".pdf"), PDF) << "without a database";
    EXPECT_EQ(DesktopKind(".gim"), "");
    folder.Put("system/mime/globs2",
               "# a comment:x/y:*.gim\n50:x/low:*.gim\n60:x/high:*.GIM\n50:x/later:*.gim\n"
               "broken\n40:text/plain:*.txt:cs\n");
    EXPECT_EQ(DesktopKind(".gim"), "x/high");
    EXPECT_EQ(DesktopKind(".Txt"), "text/plain");
    EXPECT_EQ(DesktopKind(""), "");
}

TEST_F(Shell, ProgramComesFromWhereTheDesktopKeepsIt)
{
    PutViewer("leser");
    const struct {
        const char *file, *text;
    } lists[] = {
        {"config/probe-mimeapps.list", "[Default Applications]\napplication/pdf=leser.desktop;\n"},
        {"config/mimeapps.list",
         "[Default Applications]\nx/y=a.desktop\napplication/pdf = fehlt.desktop;leser.desktop"},
        {"config/mimeapps.list", "[Added Associations]\napplication/pdf=leser.desktop;\n"},
        {"etc/mimeapps.list", "[Default Applications]\r\napplication/pdf=leser.desktop\r\n"},
        {"user/applications/mimeapps.list", "[Default Applications]\napplication/pdf=leser.desktop\n"},
        {"system/applications/mimeapps.list", "[Default Applications]\napplication/pdf=leser.desktop\n"},
        {"system/applications/mimeinfo.cache", "[MIME Cache]\nx/y=a.desktop\napplication/pdf=leser.desktop;\n"},
    };
    for (const char *place : {"user/applications/leser.desktop", "system/applications/leser.desktop"}) {
        PutDesktop(place, "leser %f");
        for (const auto &list : lists) {
            EXPECT_FALSE(ShellCanOpen(".pdf")) << "before " << list.file;
            folder.Put(list.file, list.text);
            EXPECT_TRUE(ShellCanOpen(".pdf")) << list.file << " " << list.text;
            EXPECT_TRUE(ShellCanOpen(".PDF"));
            EXPECT_FALSE(ShellCanOpen(".gim"));
            std::filesystem::remove(folder.Path(list.file));
        }
        std::filesystem::remove(folder.Path(place));
    }
}

TEST_F(Shell, UsersChoiceGoesBeforeTheSystemsAndRemovalsCount)
{
    PutViewer("eins");
    PutViewer("zwei");
    PutDesktop("system/applications/eins.desktop", "eins %f");
    PutDesktop("system/applications/kde/zwei.desktop", "zwei %f");
    folder.Put("system/applications/mimeinfo.cache",
               "[MIME Cache]\napplication/pdf=eins.desktop;kde-zwei.desktop;\n");
    EXPECT_EQ(Joined(DesktopCommand(PDF, "/a")), folder.Path("bin/eins") + "|/a");
    folder.Put("config/mimeapps.list", "[Removed Associations]\napplication/pdf=eins.desktop;\n");
    EXPECT_EQ(Joined(DesktopCommand(PDF, "/a")), folder.Path("bin/zwei") + "|/a") << "'-' stands for a folder";
    folder.Put("config/mimeapps.list", "[Default Applications]\napplication/pdf=kde-zwei.desktop\n");
    EXPECT_EQ(Joined(DesktopCommand(PDF, "/a")), folder.Path("bin/zwei") + "|/a");
    PutDesktop("user/applications/eins.desktop", "eins --mein %f");
    folder.Put("config/mimeapps.list", "");
    EXPECT_EQ(Joined(DesktopCommand(PDF, "/a")), folder.Path("bin/eins") + "|--mein|/a")
        << "the user's own file";
}

TEST_F(Shell, CommandLinesAreFilledIn)
{
    PutViewer("leser");
    folder.Put("config/mimeapps.list", "[Default Applications]\napplication/pdf=leser.desktop\n");
    const std::string leser = folder.Path("bin/leser");
    const struct {
        const char *exec, *arguments;
    } cases[] = {
        {"leser %f", "|/a b/c%.pdf"},
        {"leser --neu %F %i %c %k", "|--neu|/a b/c%.pdf"},
        {"leser %u", "|file:///a%20b/c%25.pdf"},
        {"leser %U --mit=%%", "|file:///a%20b/c%25.pdf|--mit=%"},
        {"leser", "|/a b/c%.pdf"},
        {"\"leser\" \"zwei Worte\" \"a\\\\$b\" %f", "|zwei Worte|a$b|/a b/c%.pdf"},
        {"leser datei=%f", "|datei=/a b/c%.pdf"},
        {"leser %", "|%|/a b/c%.pdf"},
    };
    for (const auto &entry : cases) {
        PutDesktop("user/applications/leser.desktop", entry.exec);
        EXPECT_EQ(Joined(DesktopCommand(PDF, "/a b/c%.pdf")), leser + entry.arguments) << entry.exec;
    }
}

TEST_F(Shell, ProgramsThatCannotShowAnythingDoNotCount)
{
    PutViewer("leser");
    folder.Put("config/mimeapps.list", "[Default Applications]\napplication/pdf=leser.desktop\n");
    const struct {
        const char *exec, *more;
        bool can;
    } cases[] = {
        {"leser %f", "", true},
        {"leser %f", "TryExec=leser", true},
        {"leser %f", "TryExec=fehlt", false},
        {"leser %f", "Terminal=true", false},
        {"leser %f", "Hidden=true", false},
        {"fehlt %f", "", false},
        {"/fehlt/leser %f", "", false},
        {"", "", false},
        {"\"", "", false},
    };
    for (const auto &entry : cases) {
        PutDesktop("user/applications/leser.desktop", entry.exec, entry.more);
        EXPECT_EQ(ShellCanOpen(".pdf"), entry.can) << entry.exec << " " << entry.more;
    }
    folder.Put("config/mimeapps.list",
               "[Default Applications]\napplication/pdf=../../leser.desktop;-.desktop;leser\n");
    EXPECT_FALSE(ShellCanOpen(".pdf"));
}

TEST_F(Shell, NothingWithoutFoldersAndNothingFromRelativeOnes)
{
    VARIABLE noConfig("XDG_CONFIG_HOME", "config"), noData("XDG_DATA_HOME", ""), noHome("HOME", "");
    EXPECT_FALSE(ShellCanOpen(".pdf"));
}

TEST_F(Shell, RandomDatabasesDoNoHarm)
{
    PutViewer("leser");
    std::mt19937 chance(7);
    const std::string pieces[] = {"[Default Applications]\n",
                                  "application/pdf=",
                                  "leser.desktop",
                                  ";",
                                  "\n",
                                  "[",
                                  "=",
                                  "[Desktop Entry]\n",
                                  "Exec=",
                                  "leser",
                                  "\\",
                                  "\"",
                                  "%",
                                  "%f",
                                  "\r",
                                  " ",
                                  "TryExec="};
    auto garbage = [&] {
        std::string text;
        for (unsigned i = 0; i < 30; ++i)
            text += chance() % 8 ? pieces[chance() % std::size(pieces)]
                                 : std::string(1, static_cast<char>(chance()));
        return text;
    };
    int opened = 0;
    for (int i = 0; i < 300; ++i) {
        folder.Put("config/mimeapps.list",
                   chance() % 2 ? garbage() : "[Default Applications]\napplication/pdf=leser.desktop");
        folder.Put("user/applications/leser.desktop", "[Desktop Entry]\nExec=leser" + garbage());
        folder.Put("system/mime/globs2", garbage());
        opened += !DesktopCommand(PDF, "/a").empty();
    }
    EXPECT_GT(opened, 0);
    EXPECT_LT(opened, 300);
}

TEST_F(Shell, OpensAFileWithItsProgram)
{
    PutViewer("leser");
    folder.Put("Torvane.PDF", "%PDF");
    std::string name = folder.Name("Torvane.PDF");
    EXPECT_EQ(ShellOpen(folder.Name("fehlt.pdf").c_str()), WIN_SHELL_NOFILE);
    EXPECT_EQ(ShellOpen(name.c_str()), WIN_SHELL_NOPROGRAM);
    PutDesktop("user/applications/leser.desktop", "leser %f");
    folder.Put("config/mimeapps.list", "[Default Applications]\napplication/pdf=leser.desktop\n");
    EXPECT_EQ(ShellOpen(folder.Name("bin").c_str()), WIN_SHELL_DENIED) << "a folder";
    folder.Put("Notiz", "");
    EXPECT_EQ(ShellOpen(folder.Name("Notiz").c_str()), WIN_SHELL_NOPROGRAM) << "no extension";
    ASSERT_GT(ShellOpen(name.c_str()), 32);
    EXPECT_EQ(Seen(), folder.Path("Torvane.PDF") + "\n");
}

TEST_F(Shell, AFileWithoutRightsIsDenied)
{
    folder.Put("a.pdf", "%PDF");
    chmod(folder.path.c_str(), 0755);
    chmod(folder.Path("a.pdf").c_str(), 0);
    std::string name = folder.Name("a.pdf");
    PLAINUSER user;
    // access() asks for the real user, whom this does not change: the superuser may read everything.
    EXPECT_EQ(ShellOpen(name.c_str()), getuid() == 0 ? WIN_SHELL_NOPROGRAM : WIN_SHELL_DENIED);
}

namespace
{
std::string started; // "program\narguments"

int NoteStart(const char *program, const char *arguments)
{
    started = std::string(program) + "\n" + arguments;
    return WIN_SHELL_OK;
}

/// The program lies in the folder, and starts are noted.
class Help : public Shell
{
protected:
    Help()
    {
        started.clear();
        SetProgramPath(folder.Path("Zulerion").c_str());
    }
    ~Help() override
    {
        SetShellDoor({});
        FindProgramPath();
    }
};
} // namespace

TEST_F(Help, ComesFromTheViewerBesideTheProgram)
{
    TShellDoor door;
    door.start = NoteStart;
    SetShellDoor(door);
    std::string file = folder.Name("Zulerio.hlp"), path = folder.Path("Zulerio.hlp");
    EXPECT_EQ(WinHelp(file.c_str(), 0), WIN_SHELL_OK);
    EXPECT_EQ(started, folder.Path("zulhelp") + "\n" + path);
    EXPECT_EQ(WinHelp(file.c_str(), 11), WIN_SHELL_OK);
    EXPECT_EQ(started, folder.Path("zulhelp") + "\n" + path + "\n11");
    folder.Put("Winhlp32.exe", "");
    EXPECT_EQ(WinHelp(file.c_str(), 10), WIN_SHELL_OK);
    EXPECT_EQ(started, folder.Path("Winhlp32.exe") + "\n-n\n10\n" + path);
    EXPECT_EQ(WinHelp(file.c_str(), 0), WIN_SHELL_OK);
    EXPECT_EQ(started, folder.Path("Winhlp32.exe") + "\n" + path);
}

TEST_F(Help, MissingViewerIsToldByItsNumber)
{
    EXPECT_EQ(WinHelp(folder.Name("Zulerio.hlp").c_str(), 11), WIN_SHELL_NOFILE);
    folder.Put("zulhelp", "");
    EXPECT_EQ(WinHelp(folder.Name("Zulerio.hlp").c_str(), 11), WIN_SHELL_DENIED);
}

TEST_F(Help, ViewerGetsFileAndContext)
{
    PutViewer("leser");
    std::filesystem::rename(folder.Path("bin/leser"), folder.Path("zulhelp"));
    ASSERT_GT(WinHelp(folder.Name("Zulerio.hlp").c_str(), 11), 32);
    EXPECT_EQ(Seen(), folder.Path("Zulerio.hlp") + "\n11\n");
}

TEST_F(Help, DoorStandsForTheWholeDesktopUntilItIsTakenAway)
{
    TShellDoor door;
    door.canOpen = [](const char *extension) { return std::string(extension) == ".gim"; };
    door.open = [](const char *) { return 7; };
    TShellDoor former = SetShellDoor(door);
    EXPECT_EQ(former.open, nullptr);
    EXPECT_TRUE(ShellCanOpen(".gim"));
    EXPECT_FALSE(ShellCanOpen(".pdf"));
    EXPECT_EQ(ShellOpen("fehlt"), 7);
    EXPECT_EQ(SetShellDoor(former).open("x"), 7);
    EXPECT_EQ(ShellOpen(folder.Name("fehlt").c_str()), WIN_SHELL_NOFILE);
}
