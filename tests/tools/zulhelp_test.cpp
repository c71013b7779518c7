// The help viewer as a program, and the help that the build leaves in the program folder.
#include "support/folder.h"
#include "support/runprogram.h"

#include "res/tables.h"
#include "win/helpfile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <set>
#include <thread>

namespace
{
const std::string program = ZULHELP_PROGRAM;
const std::string programFolder = ZUL_PROGRAM_FOLDER;
const std::string GOOD = "ZULERION-HILFE 1\nProbe\n@1 1 Eins\n<p>a</p>\n@11 1 Elf\n<p>b</p>\n";

class ZulHelp : public testing::Test
{
protected:
    ProgramRun Run(std::vector<std::string> args, const std::function<void()> &before = {})
    {
        args.insert(args.begin(), program);
        return RunProgram(args, folder.path, before);
    }

    FOLDER folder;
};

struct ENTRY {
    const char *text;
    int context;
};

/// The menu's commands, each with the page that it should have.
std::vector<ENTRY> MenuEntries()
{
    std::vector<ENTRY> entries;
    for (int i = 0; i < resMenuCount; ++i)
        for (int j = 0; resMenus[i].id == 1000 && j < resMenus[i].count; ++j) {
            const ResMENUITEM &item = resMenus[i].items[j];
            int context = item.id == 1519 ? 11 : item.id == 1521 ? 10 : item.id;
            if (context != 0)
                entries.push_back({item.text, context});
        }
    return entries;
}
} // namespace

TEST_F(ZulHelp, ProgramFolderHasAHelpThatIsSound)
{
    ProgramRun run = Run({"--check", programFolder + "/Zulerio.hlp"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "");
}

TEST_F(ZulHelp, EachCommandAndToolHasAPage)
{
    THelpFile help;
    std::ifstream in(programFolder + "/Zulerio.hlp", std::ios::binary);
    ASSERT_EQ(help.Parse(std::string(std::istreambuf_iterator<char>(in), {})), "");
    std::vector<ENTRY> entries = MenuEntries();
    EXPECT_EQ(entries.size(), 21u);
    for (const ENTRY &entry : entries)
        EXPECT_GE(help.IndexOf(entry.context), 0) << entry.text;
    for (int tool : {21011, 21511, 21515, 21001, 2001, 2501, 3001, 5001, 20035, 1525})
        EXPECT_GE(help.IndexOf(tool), 0) << tool;
    EXPECT_EQ(help.Pages()[static_cast<size_t>(help.IndexOf(10))].title, "Zulerion ?");
    EXPECT_EQ(help.Pages()[static_cast<size_t>(help.IndexOf(11))].title, "Kurze Vorgehensweise");
}

TEST_F(ZulHelp, PicturesOfTheHelpAreInTheProgram)
{
    std::ifstream in(programFolder + "/Zulerio.hlp", std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(in), {}), start = "<img src=\"";
    std::set<int> known;
    for (int i = 0; i < resPictureCount; ++i)
        known.insert(resPictures[i].id);
    int count = 0;
    for (size_t at = text.find(start); at != std::string::npos; at = text.find(start, at + 1), ++count)
        EXPECT_TRUE(known.contains(std::stoi(text.substr(at + start.size())))) << text.substr(at, 20);
    EXPECT_GE(count, 20);
}

TEST_F(ZulHelp, CheckSaysWhatIsWrong)
{
    folder.Put("gut.hlp", GOOD);
    folder.Put("schlecht.hlp", GOOD + "<p>");
    EXPECT_EQ(Run({"--check", "gut.hlp"}).exitCode, 0);
    ProgramRun run = Run({"--check", "schlecht.hlp"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, "schlecht.hlp: Zeile 7: eine Auszeichnung bleibt offen\n");
    run = Run({"--check", "fehlt.hlp"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, "Datei \"fehlt.hlp\" kann nicht geöffnet werden!\nWahrscheinlich falscher Name.\n");
}

TEST_F(ZulHelp, WrongUsageHasExitStatusTwo)
{
    folder.Put("gut.hlp", GOOD);
    const std::vector<std::string> cases[] = {{},
                                              {"gut.hlp", "x"},
                                              {"gut.hlp", "-1"},
                                              {"gut.hlp", "65536"},
                                              {"gut.hlp", "1", "2"},
                                              {"--falsch", "gut.hlp"}};
    for (const auto &args : cases) {
        ProgramRun run = Run(args);
        EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(args);
        EXPECT_EQ(run.err, "zulhelp: Gebraucht werden eine Hilfedatei und höchstens die Nummer einer Seite.\n"
                           "Hilfe: zulhelp --help\n");
    }
    ProgramRun help = Run({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.out.find("Aufruf"), std::string::npos) << help.out;
}

TEST_F(ZulHelp, WithoutAScreenItSaysSo)
{
    folder.Put("gut.hlp", GOOD);
    ProgramRun run = Run({"gut.hlp"}, [] {
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            unsetenv(name);
    });
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, "zulhelp: Es gibt keinen Bildschirm, auf dem die Hilfe erscheinen könnte.\n");
}

TEST_F(ZulHelp, ShowsAPageUntilItIsClosed)
{
    folder.Put("gut.hlp", GOOD);
    FOLDER outputs;
    pid_t pid = StartProgram({program, "gut.hlp", "11"}, folder.path, outputs,
                             [] { setenv("QT_QPA_PLATFORM", "offscreen", 1); });
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    int status = 0;
    EXPECT_EQ(waitpid(pid, &status, WNOHANG), 0) << "it is still there";
    kill(pid, SIGTERM);
    waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}
