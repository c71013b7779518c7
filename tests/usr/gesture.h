// Gestures of the mouse as a test writes them down: events with a blank between, each of keys (s Shift, c
// Ctrl), kind (L+ L- LL R+ R- M, O+ for leaving the view, O- for coming back) and place (x,y or the name of
// one): "sL+A sM40,60 sL-40,60".
#ifndef TESTS_USR_GESTURE_H
#define TESTS_USR_GESTURE_H

#include "usr/edcsprit.h"
#include "win/window.h"

#include <cctype>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

struct GestureEvent {
    enum Kind { LEFT_DOWN, LEFT_UP, LEFT_DOUBLE, RIGHT_DOWN, RIGHT_UP, MOVE, LEAVE, COME_BACK };
    Kind kind = MOVE;
    unsigned keys = 0;
    TPoint at; // px, as the block counts them
};

/// Whoever leaves without a place goes to the left.
inline std::vector<GestureEvent> ParseGesture(const std::string &text, TPoint (*place)(char name))
{
    const struct {
        const char *word;
        GestureEvent::Kind kind;
    } kinds[] = {{"L+", GestureEvent::LEFT_DOWN},   {"L-", GestureEvent::LEFT_UP},
                 {"LL", GestureEvent::LEFT_DOUBLE}, {"R+", GestureEvent::RIGHT_DOWN},
                 {"R-", GestureEvent::RIGHT_UP},    {"M", GestureEvent::MOVE},
                 {"O+", GestureEvent::LEAVE},       {"O-", GestureEvent::COME_BACK}};
    std::vector<GestureEvent> events;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        GestureEvent event;
        for (; word[0] == 's' || word[0] == 'c'; word.erase(0, 1))
            event.keys |= word[0] == 's' ? WIN_KEY_SHIFT : WIN_KEY_CTRL;
        for (const auto &kind : kinds)
            if (word.starts_with(kind.word)) {
                event.kind = kind.kind;
                word.erase(0, std::string(kind.word).size());
                break;
            }
        if (word.empty())
            event.at = {-20, 15};
        else if (isalpha(static_cast<unsigned char>(word[0])))
            event.at = place(word[0]);
        else
            event.at = {atoi(word.c_str()), atoi(word.c_str() + word.find(',') + 1)};
        events.push_back(event);
    }
    return events;
}

inline void PlayEvent(TEdcMouseTool &tool, TDC &dc, const GestureEvent &event)
{
    switch (event.kind) {
    case GestureEvent::LEFT_DOWN:
        return tool.LeftDown(dc, event.keys, event.at);
    case GestureEvent::LEFT_UP:
        return tool.LeftUp(dc, event.keys, event.at);
    case GestureEvent::LEFT_DOUBLE:
        return tool.LeftDouble(dc, event.keys, event.at);
    case GestureEvent::RIGHT_DOWN:
        return tool.RightDown(dc, event.keys, event.at);
    case GestureEvent::RIGHT_UP:
        return tool.RightUp(dc, event.keys, event.at);
    case GestureEvent::MOVE:
        return tool.MouseMove(dc, event.keys, event.at);
    case GestureEvent::LEAVE:
    case GestureEvent::COME_BACK:
        return tool.Outside(dc, event.kind == GestureEvent::LEAVE);
    }
}

#endif
