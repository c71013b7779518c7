// The application: start and end, the loop with its idle time, the pump. Each test has an application of its
// own.
#include "lib/platform.h"
#include "lib/xfail.h"
#include "win/application.h"
#include "win/frame.h"
#include "win/testdoor.h"

#include <clocale>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "lib/xon.h"

namespace
{
struct Client : public TWindow {
    bool IdleAction(long idleCount) override
    {
        counts.push_back(idleCount);
        return onIdle && onIdle();
    }
    bool CanClose() override
    {
        ++asked;
        return mayClose;
    }
    std::vector<long> counts;
    std::function<bool()> onIdle;
    int asked = 0;
    bool mayClose = true;
};

int argCount = 1;
char argName[] = "zulerion";
char *args[] = {argName, NULL};

class App : public TApplication
{
public:
    App() : TApplication("Zulerion", argCount, args) { testdoor::Enable(); }
    void InitMainWindow() override
    {
        ++starts;
        if (onStart)
            onStart();
        frame = std::make_unique<TDecoratedFrame>("Blatt", client);
        SetMainWindow(frame.get());
    }
    Client client;
    std::unique_ptr<TDecoratedFrame> frame;
    std::function<void()> onStart;
    int starts = 0;
};

int reported = 0;
} // namespace

TEST(Application, OneAtATimeAndGoneAfterwards)
{
    EXPECT_EQ(TApplication::Current(), static_cast<TApplication *>(NULL));
    {
        App app;
        EXPECT_EQ(TApplication::Current(), &app);
        EXPECT_EQ(app.Name(), "Zulerion");
    }
    EXPECT_EQ(TApplication::Current(), static_cast<TApplication *>(NULL));
    App again;
    EXPECT_EQ(TApplication::Current(), &again);
}

TEST(Application, ServicesAreItsOwnWhileItLives)
{
    MessageSink standard = SetMessageSink(NULL);
    {
        App app;
        MessageSink sink = SetMessageSink(NULL);
        EXPECT_NE(sink, standard);
        SetMessageSink(sink);
    }
    EXPECT_EQ(SetMessageSink(NULL), standard);
}

TEST(Application, NumberFormatOfTheCLibraryStaysUntouched)
{
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    {
        App app;
        EXPECT_STREQ(std::setlocale(LC_NUMERIC, NULL), "C");
        EXPECT_STREQ(std::localeconv()->decimal_point, ".");
    }
    setenv("LC_ALL", "C", 1);
}

TEST(Application, IdleActionKeepsComingWhileItSaysTrue)
{
    App app;
    app.client.onIdle = [&app] {
        if (app.client.counts.size() == 20)
            app.Quit(5);
        return true;
    };
    EXPECT_EQ(app.Run(), 5);
    EXPECT_EQ(app.starts, 1);
    ASSERT_GE(app.client.counts.size(), 20U);
    EXPECT_EQ(app.client.counts.front(), 0);
}

TEST(Application, IdleCountGoesUpUntilSomethingHappens)
{
    App app;
    app.InitMainWindow();
    app.frame->Create();
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(app.IdleStep());
    EXPECT_EQ(app.client.counts, (std::vector<long>{0, 1, 2}));
}

TEST(Application, FailingIdleActionIsReportedAndStops)
{
    App app;
    app.InitMainWindow();
    app.frame->Create();
    reported = 0;
    SetFailureHook([] { ++reported; });
    app.client.onIdle = [] {
        __enter
            __raise(XLIMIT);
        __point
        __treat
        return true;
    };
    EXPECT_FALSE(app.IdleStep());
    EXPECT_EQ(reported, 1);
    SetFailureHook(NULL);
}

TEST(Application, QuitDuringTheStartEndsAtOnce)
{
    App app;
    app.onStart = [&app] { app.Quit(3); };
    EXPECT_EQ(app.Run(), 3);
}

TEST(Application, FailingStartIsReportedAndEndsWithOne)
{
    App app;
    reported = 0;
    SetFailureHook([] { ++reported; });
    app.onStart = [] { throw 1; };
    EXPECT_EQ(app.Run(), 1);
    EXPECT_EQ(reported, 1);
    SetFailureHook(NULL);
}

TEST(Application, ClosingTheMainWindowEndsTheLoop)
{
    App app;
    bool asked = false;
    app.client.onIdle = [&] {
        if (!asked) {
            asked = true;
            app.client.mayClose = false;
            app.frame->CloseWindow();
            EXPECT_EQ(app.client.asked, 1);
            app.client.mayClose = true;
            app.frame->CloseWindow();
        }
        return true;
    };
    EXPECT_EQ(app.Run(), 0);
}

TEST(Application, PumpDoesNotCloseTheMainWindow)
{
    App app;
    app.InitMainWindow();
    app.frame->Create();
    testdoor::Settle();
    testdoor::PostClose(*app.frame); // as the desktop does it, through the queue
    app.PumpWaitingMessages();
    EXPECT_EQ(app.client.asked, 0);
    testdoor::PostClose(*app.frame);
    testdoor::Settle();
    EXPECT_EQ(app.client.asked, 1);
}

TEST(Application, PumpPaintsWhatIsInvalid)
{
    App app;
    app.InitMainWindow();
    app.frame->Create();
    testdoor::Settle();
    app.client.Invalidate();
    EXPECT_TRUE(app.client.NeedsPaint());
    app.PumpWaitingMessages();
    EXPECT_FALSE(app.client.NeedsPaint());
}

TEST(Application, KeysAndButtonsAreNamedInGerman)
{
    App app;
    static const struct {
        const char *key, *shown;
    } table[] = {
        {"Ctrl+N", "Strg+N"}, {"Ctrl+Shift+S", "Strg+Umschalt+S"},
        {"Del", "Entf"},      {"Alt+F4", "Alt+F4"},
        {"PgUp", "Bild auf"}, {"F5", "F5"},
    };
    for (const auto &row : table)
        EXPECT_EQ(testdoor::KeyName(row.key), row.shown);
}
