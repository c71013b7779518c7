// A client window for tests of frame, menus and bars: it allows and ticks what it is told to and writes down
// what it hears. With it come small resources of its own.
#ifndef TESTS_WIN_FRAMECLIENT_H
#define TESTS_WIN_FRAMECLIENT_H

#include "support/testapp.h"
#include "win/application.h"
#include "win/frame.h"
#include "win/resources.h"
#include "win/testdoor.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

class FrameClient : public TWindow
{
public:
    FrameClient() { TestApplication(); }

    void EvCommand(int id) override
    {
        heard += std::to_string(id) + " ";
        if (onCommand)
            onCommand(id);
    }

    void EvCommandEnable(TCommandEnabler &ce) override
    {
        ++questions;
        if (refused.contains(ce.id))
            ce.Enable(false);
        if (!allowed.contains(ce.id))
            return;
        ce.Enable(true);
        ce.SetCheck(ticked.contains(ce.id));
    }

    bool CanClose() override
    {
        heard += "close? ";
        return mayClose;
    }

    bool IdleAction(long count) override
    {
        heard += "idle" + std::to_string(count) + " ";
        return true;
    }

    void EvKeyDown(TVirtualKey key, unsigned) override { heard += "key" + std::to_string(key) + " "; }

    void EvSize(TSizeKind kind, TSize) override
    {
        if (kind == WIN_SIZE_HIDDEN)
            heard += "hidden ";
    }

    std::string Heard() { return std::exchange(heard, std::string()); }

    std::set<int> allowed;
    std::set<int> refused;
    std::set<int> ticked;
    bool mayClose = true;
    int questions = 0;
    std::function<void(int)> onCommand;

private:
    std::string heard;
};

inline const ResMENUITEM clientItems[] = {
    {0, 0, "&Datei"}, {1, 101, "\326&ffnen..."}, {1, 0, NULL},     {1, 102, "&Schlie\337en"},
    {1, 0, "&Mehr"},  {2, 103, "&Liste"},        {0, 0, "&Hilfe"}, {1, 104, "&Themen"},
};
inline const ResMENUITEM popupItems[] = {{0, 101, "\326&ffnen..."}, {0, 105, "&Beseitigen"}};
inline const ResMENUITEM otherItems[] = {{0, 0, NULL}, {0, 103, "&Liste"}};
inline const ResMENU clientMenus[] = {{1, clientItems, 8}, {2, popupItems, 2}, {3, otherItems, 2}};
inline const ResACCEL clientKeys[] = {{101, "Ctrl+O"}, {102, "Ctrl+Shift+S"}, {104, "F1"},
                                      {105, "Del"},    {106, "Esc"},          {107, "F5"}};

/// The resources above while it lives, and no others.
class ClientResources
{
public:
    ClientResources() : former(SetResourceTables(&tables)) {}
    ~ClientResources() { SetResourceTables(former); }
    ClientResources(const ClientResources &) = delete;
    ClientResources &operator=(const ClientResources &) = delete;

    ResTABLES tables = {clientMenus, 3, clientKeys, 6, NULL, 0};

private:
    const ResTABLES *former;
};

/// A frame around a client, on the screen, with menu 1.
struct ShownFrame {
    ShownFrame() : frame("Fenster", client)
    {
        frame.AssignMenu(1);
        TestApplication().SetMainWindow(&frame);
    }
    ~ShownFrame() { TestApplication().SetMainWindow(NULL); }

    void Show()
    {
        frame.Create();
        testdoor::Settle();
        client.Heard();
        client.questions = 0;
    }

    ClientResources resources;
    FrameClient client;
    TDecoratedFrame frame;
};

#endif
