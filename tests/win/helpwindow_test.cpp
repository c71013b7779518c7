// The help file as it is read, and the window that shows it.
#include "lib/xfail.h"
#include "support/fault.h"
#include "support/folder.h"
#include "support/testapp.h"
#include "win/application.h"
#include "win/frame.h"
#include "win/helpwindow.h"
#include "win/testdoor.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "lib/xon.h"

namespace
{
const std::string HEAD = "ZULERION-HILFE 1\nHilfe zur Probe\n";
const std::string PAGES = HEAD + "@10 1 Über das Programm\n"
                                 "<p>Erste Seite mit <b>Wärme</b> und <a href=\"#12\">einem Verweis</a>.</p>\n"
                                 "<p>Wärme &lt; Kälte &amp; mehr. wärme</p>\n"
                                 "@11 2 Kurze Vorgehensweise\n"
                                 "<ol><li>Zweite<br>Seite</li></ol><img src=\"1600\">\n"
                                 "@12 1 Dritte\n"
                                 "<table><tr><th>a</th><td>b</td></tr></table>\n";

std::string Complaint(const std::string &bytes)
{
    return THelpFile().Parse(bytes);
}

std::string Body(const std::string &body)
{
    return HEAD + "@1 1 Seite\n" + body;
}

/// Runs what raises. @return the code that it left, taken off
XCODE Failure(const std::function<void()> &body)
{
    XCODE code = XNULL;
    __enter
        body(); __test;
    __point
        __repair;
        code = xRepaired;
    __treat
    return code;
}
} // namespace

TEST(HelpFile, HoldsItsPages)
{
    THelpFile file;
    ASSERT_EQ(file.Parse(PAGES), "");
    EXPECT_EQ(file.Title(), "Hilfe zur Probe");
    ASSERT_EQ(file.Pages().size(), 3u);
    EXPECT_EQ(file.Pages()[0].title, "Über das Programm");
    EXPECT_EQ(file.Pages()[1].level, 2);
    EXPECT_EQ(file.Pages()[2].body, "<table><tr><th>a</th><td>b</td></tr></table>\n");
    EXPECT_EQ(file.IndexOf(11), 1);
    EXPECT_EQ(file.IndexOf(13), -1);
}

TEST(HelpFile, TakesLinesOfEitherKindAndNoLastBreak)
{
    THelpFile file;
    ASSERT_EQ(file.Parse("ZULERION-HILFE 1\r\nTitel\r\n@1 1 Seite\r\n<p>a\r\nb</p>\r\n@2 1 Leer"), "");
    EXPECT_EQ(file.Title(), "Titel");
    EXPECT_EQ(file.Pages()[0].body, "<p>a\r\nb</p>\r\n");
    EXPECT_EQ(file.Pages()[1].title, "Leer");
    EXPECT_EQ(file.Pages()[1].body, "");
}

TEST(HelpFile, SaysWhatIsWrongAndWhere)
{
    const struct {
        std::string bytes;
        const char *complaint;
    } cases[] = {
        {"", "Zeile 1: keine Hilfedatei"},
        {"ZULERION-HILFE 2\nTitel\n", "Zeile 1: keine Hilfedatei"},
        {"ZULERION-HILFE 1\n\n@1 1 a", "Zeile 2: der Titel fehlt"},
        {HEAD, "Zeile 3: keine Seite"},
        {HEAD + "Text\n@1 1 a", "Zeile 3: Text vor der ersten Seite"},
        {HEAD + "@1\n", "Zeile 3: eine Seite ohne Nummer, Stufe und Titel"},
        {HEAD + "@1 1\n", "Zeile 3: eine Seite ohne Nummer, Stufe und Titel"},
        {HEAD + "@1 1 \n", "Zeile 3: eine Seite ohne Nummer, Stufe und Titel"},
        {HEAD + "@0 1 a\n", "Zeile 3: eine Seite mit falscher Nummer oder Stufe"},
        {HEAD + "@65536 1 a\n", "Zeile 3: eine Seite mit falscher Nummer oder Stufe"},
        {HEAD + "@-1 1 a\n", "Zeile 3: eine Seite mit falscher Nummer oder Stufe"},
        {HEAD + "@9999999999 1 a\n", "Zeile 3: eine Seite mit falscher Nummer oder Stufe"},
        {HEAD + "@1x 1 a\n", "Zeile 3: eine Seite mit falscher Nummer oder Stufe"},
        {HEAD + "@1 3 a\n", "Zeile 3: eine Seite mit falscher Nummer oder Stufe"},
        {HEAD + "@1 1 a\n@1 1 b\n", "Zeile 4: zwei Seiten mit derselben Nummer"},
        {Body("<p>\n\xFF"), "Zeile 5: kein UTF-8"},
        {Body("\xC3"), "Zeile 4: kein UTF-8"},
        {Body("\xC0\x80"), "Zeile 4: kein UTF-8"},
        {Body("\xED\xA0\x80"), "Zeile 4: kein UTF-8"},
        {Body("\xF4\x90\x80\x80"), "Zeile 4: kein UTF-8"},
        {Body(std::string(1, '\0')), "Zeile 4: ein Steuerzeichen"},
        {Body("\x1B"), "Zeile 4: ein Steuerzeichen"},
        {Body("a > b"), "Zeile 4: ein > ohne <"},
        {Body("a < b"), "Zeile 4: ein < ohne >"},
        {Body("<p>a"), "Zeile 4: eine Auszeichnung bleibt offen"},
        {Body("</p>"), "Zeile 4: eine Auszeichnung endet, die hier nicht offen ist"},
        {Body("<p>\n<b></p></b>"), "Zeile 5: eine Auszeichnung endet, die hier nicht offen ist"},
        {Body("a & b"), "Zeile 4: ein unbekanntes Zeichen hinter &"},
        {Body("&copy;"), "Zeile 4: ein unbekanntes Zeichen hinter &"},
        {Body("<script></script>"), "Zeile 4: eine unbekannte Auszeichnung"},
        {Body("<p class=\"x\"></p>"), "Zeile 4: eine unbekannte Auszeichnung"},
        {Body("<P></P>"), "Zeile 4: eine unbekannte Auszeichnung"},
        {Body("<br/>"), "Zeile 4: eine unbekannte Auszeichnung"},
        {Body("<a href=\"http://a\">b</a>"), "Zeile 4: eine unbekannte Auszeichnung"},
        {Body("<a href=\"#1\" x>b</a>"), "Zeile 4: eine unbekannte Auszeichnung"},
        {Body("<a href=\"#2\">b</a>"), "Zeile 4: ein Verweis auf eine Seite, die es nicht gibt"},
        {Body("<a href=\"#99999999\">b</a>"), "Zeile 4: ein Verweis auf eine Seite, die es nicht gibt"},
        {Body("<img src=\"/etc/passwd\">"), "Zeile 4: eine unbekannte Auszeichnung"},
        {Body("<img src=\"\">"), "Zeile 4: eine unbekannte Auszeichnung"},
        {Body("<img src=\"1"), "Zeile 4: ein < ohne >"},
    };
    for (const auto &entry : cases)
        EXPECT_EQ(Complaint(entry.bytes), entry.complaint) << entry.bytes;
}

TEST(HelpFile, NestsAsDeepAsALayoutMayGo)
{
    auto nested = [](int depth) {
        std::string text;
        for (int i = 0; i < depth; ++i)
            text += "<b>";
        for (int i = 0; i < depth; ++i)
            text += "</b>";
        return Body(text);
    };
    EXPECT_EQ(Complaint(nested(12)), "");
    EXPECT_EQ(Complaint(nested(13)), "Zeile 4: zu viele Auszeichnungen ineinander");
}

TEST(HelpFile, ARefusedFileLeavesTheFormerOne)
{
    THelpFile file;
    ASSERT_EQ(file.Parse(PAGES), "");
    EXPECT_NE(file.Parse(PAGES + "<p>"), "");
    EXPECT_EQ(file.Title(), "Hilfe zur Probe");
    EXPECT_EQ(file.Pages().size(), 3u);
}

TEST(HelpFile, EachCutAndEachChangedByteIsTakenOrRefused)
{
    std::mt19937 chance(11);
    int taken = 0, refused = 0;
    auto count = [&](const std::string &bytes) { ++(Complaint(bytes).empty() ? taken : refused); };
    for (size_t end = 0; end < PAGES.size(); ++end) {
        count(PAGES.substr(0, end));
        std::string changed = PAGES;
        changed[end] = static_cast<char>(chance());
        count(changed);
    }
    EXPECT_GT(taken, 0);
    EXPECT_GT(refused, 0);
}

TEST(HelpFile, ReadingNamesTheFileThatFails)
{
    FOLDER folder;
    THelpFile file;
    std::string name = folder.Name("Probe.hlp");
    EXPECT_STREQ(Failure([&] { file.Read(name.c_str()); }), XFOPEN);
    EXPECT_EQ(xFOpenName, name);
    folder.Put("Probe.hlp", PAGES.substr(0, PAGES.size() - 3));
    EXPECT_STREQ(Failure([&] { file.Read(name.c_str()); }), XFREAD);
    EXPECT_EQ(xFReadName, name);
    EXPECT_STREQ(Failure([&] { file.Read(folder.Name(".").c_str()); }), XFREAD) << "a folder";
    folder.Put("Probe.hlp", Body(std::string(2 << 20, 'a')));
    EXPECT_STREQ(Failure([&] { file.Read(name.c_str()); }), XFREAD) << "larger than any help";
    folder.Put("Probe.hlp", PAGES);
    EXPECT_STREQ(Failure([&] { file.Read(name.c_str()); }), XNULL);
    EXPECT_EQ(file.Pages().size(), 3u);
}

namespace
{
/// The help of above in a window.
class HelpWindow : public testing::Test
{
protected:
    HelpWindow()
    {
        TestApplication();
        folder.Put("Probe.hlp", PAGES);
        help.OpenFile(folder.Name("Probe.hlp").c_str());
        frame.SetWantedSize({400, 300});
        frame.Create();
        testdoor::Settle();
    }

    bool Contains(const char *text) const { return help.PageText().find(text) != std::string::npos; }

    FOLDER folder;
    THelpWindow help;
    TDecoratedFrame frame{"Hilfe", help};
};
} // namespace

TEST_F(HelpWindow, BeginsWithTheFirstPage)
{
    EXPECT_EQ(help.Context(), 10);
    EXPECT_TRUE(help.PageText().starts_with("\xDC"
                                            "ber das Programm\nErste Seite mit W\xE4rme und einem Verweis.\n"
                                            "W\xE4rme < K\xE4lte & mehr. w\xE4rme"))
        << help.PageText();
}

TEST_F(HelpWindow, HasTheSizeThatWasWanted)
{
    EXPECT_EQ(frame.GetClientRect().Width(), static_cast<int>(400 * TestScale()));
    EXPECT_EQ(frame.GetClientRect().Height(), static_cast<int>(300 * TestScale()));
}

TEST_F(HelpWindow, GoesToPagesAndBackAndForward)
{
    EXPECT_FALSE(help.Back());
    EXPECT_TRUE(help.ShowContext(11));
    EXPECT_TRUE(Contains("Zweite"));
    help.FollowLink("#12");
    EXPECT_EQ(help.Context(), 12);
    EXPECT_FALSE(help.Forward());
    EXPECT_TRUE(help.Back());
    EXPECT_EQ(help.Context(), 11);
    EXPECT_TRUE(Contains("Zweite"));
    testdoor::Key(help, "Alt+Left");
    EXPECT_EQ(help.Context(), 10);
    testdoor::Key(help, "Alt+Left");
    EXPECT_EQ(help.Context(), 10);
    testdoor::Key(help, "Alt+Right");
    EXPECT_EQ(help.Context(), 11);
    EXPECT_TRUE(help.ShowContext(10));
    EXPECT_FALSE(help.Forward()) << "a new way begins";
    EXPECT_TRUE(help.Back());
    EXPECT_EQ(help.Context(), 11);
}

TEST_F(HelpWindow, SaysSoWhereThereIsNoSuchPage)
{
    EXPECT_FALSE(help.ShowContext(99));
    EXPECT_EQ(help.Context(), 10);
    EXPECT_EQ(help.Note(), "Die Hilfe hat keine Seite 99.");
    EXPECT_TRUE(help.ShowContext(0));
    EXPECT_EQ(help.Note(), "");
}

TEST_F(HelpWindow, FollowsNoOtherLinks)
{
    for (const char *link : {"", "#", "#x", "#-12", "12", "http://12", "Probe.hlp#12", "file:///etc/passwd"}) {
        help.FollowLink(link);
        EXPECT_EQ(help.Context(), 10) << link;
    }
}

TEST_F(HelpWindow, FindsInThePageRoundItsEnds)
{
    EXPECT_TRUE(help.FindText("W\xC4RME", false));
    EXPECT_EQ(help.SelectedText(), "W\xE4rme");
    EXPECT_TRUE(help.FindText("w\xE4rme", false));
    EXPECT_TRUE(help.FindText("w\xE4rme", false));
    EXPECT_EQ(help.SelectedText(), "w\xE4rme");
    EXPECT_TRUE(help.FindText("w\xE4rme", false)) << "from the beginning again";
    EXPECT_EQ(help.SelectedText(), "W\xE4rme");
    EXPECT_TRUE(help.FindText("w\xE4rme", true)) << "round the beginning";
    EXPECT_EQ(help.SelectedText(), "w\xE4rme");
    EXPECT_EQ(help.Note(), "");
    EXPECT_FALSE(help.FindText("Dritte", false));
    EXPECT_EQ(help.Note(), "Auf dieser Seite nicht gefunden.");
    EXPECT_EQ(help.SelectedText(), "w\xE4rme") << "stays";
    EXPECT_FALSE(help.FindText("", false));
}

TEST_F(HelpWindow, ZoomsByWheelAndKeysWithinLimits)
{
    testdoor::Wheel(help, {20, 20}, 1);
    EXPECT_EQ(help.Zoom(), 100);
    testdoor::Wheel(help, {20, 20}, 2, WIN_KEY_CTRL);
    EXPECT_EQ(help.Zoom(), 120);
    testdoor::Key(help, "Ctrl++");
    EXPECT_EQ(help.Zoom(), 130);
    testdoor::Key(help, "Ctrl+-");
    testdoor::Key(help, "Ctrl+-");
    EXPECT_EQ(help.Zoom(), 110);
    testdoor::Wheel(help, {20, 20}, -60, WIN_KEY_CTRL);
    EXPECT_EQ(help.Zoom(), 50);
    testdoor::Wheel(help, {20, 20}, 60, WIN_KEY_CTRL);
    EXPECT_EQ(help.Zoom(), 300);
    testdoor::Key(help, "Ctrl+0");
    EXPECT_EQ(help.Zoom(), 100);
}

TEST_F(HelpWindow, KeepsWhatItShowsWhereAnotherFileFails)
{
    help.ShowContext(12);
    folder.Put("Schaden.hlp", HEAD + "@1 1 a\n<p>");
    EXPECT_STREQ(Failure([&] { help.OpenFile(folder.Name("Schaden.hlp").c_str()); }), XFREAD);
    EXPECT_EQ(help.Context(), 12);
    EXPECT_TRUE(help.Back());
    folder.Put("Neu.hlp", HEAD + "@5 1 Neu\n<p>Andere</p>");
    help.OpenFile(folder.Name("Neu.hlp").c_str());
    EXPECT_EQ(help.Context(), 5);
    EXPECT_TRUE(Contains("Andere"));
    EXPECT_FALSE(help.Back());
}

TEST(HelpWindowAlone, EscClosesTheWindow)
{
    struct ASKED : THelpWindow {
        bool CanClose() override
        {
            ++times;
            return true;
        }
        int times = 0;
    };
    TestApplication();
    ASKED help;
    TDecoratedFrame frame("Hilfe", help);
    frame.Create();
    testdoor::Key(help, "Left");
    EXPECT_EQ(help.times, 0);
    testdoor::Key(help, "Esc");
    EXPECT_EQ(help.times, 1);
}

TEST(HelpWindowAlone, WorksBeforeItHasAWidgetOrAFile)
{
    TestApplication();
    FOLDER folder;
    folder.Put("Probe.hlp", PAGES);
    THelpWindow help;
    EXPECT_FALSE(help.ShowContext(10));
    EXPECT_EQ(help.Context(), 0);
    EXPECT_FALSE(help.Back());
    EXPECT_FALSE(help.FindText("a", false));
    EXPECT_EQ(help.PageText(), "");
    help.OpenFile(folder.Name("Probe.hlp").c_str());
    EXPECT_TRUE(help.ShowContext(11));
    EXPECT_EQ(help.Context(), 11);
    help.Create();
    EXPECT_NE(help.PageText().find("Zweite"), std::string::npos);
    EXPECT_TRUE(help.Back());
}

TEST(HelpWindowAlone, FilesBesideItAreNoPictures)
{
    TestApplication();
    FOLDER folder;
    folder.Put("Probe.hlp", Body("<p>a<img src=\"77777\">b</p>"));
    std::filesystem::path former = std::filesystem::current_path();
    std::filesystem::current_path(folder.path);
    std::string shots[2];
    for (int i : {0, 1}) {
        if (i == 1)
            folder.Put("77777", "P1\n2 2\n1 1 1 1\n"); // a picture, where the toolkit would look for one
        THelpWindow help;
        help.OpenFile(folder.Name("Probe.hlp").c_str());
        TDecoratedFrame frame("Hilfe", help);
        frame.Create();
        testdoor::Settle();
        EXPECT_TRUE(testdoor::SaveScreenshot(help, folder.Path("shot.png").c_str()));
        shots[i] = folder.Get("shot.png");
    }
    std::filesystem::current_path(former);
    EXPECT_GT(shots[0].size(), 1000u);
    EXPECT_TRUE(shots[0] == shots[1]);
}
