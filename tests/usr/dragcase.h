// Three rectangles on a plan for tests of drags, and gestures on them as words.
#ifndef TESTS_USR_DRAGCASE_H
#define TESTS_USR_DRAGCASE_H

#include "gesture.h"
#include "plancase.h"

/// Rectangle a, 4 x 2 m at (10, 10), b of the same size at (20, 10), c at (30.1, 10.2), on no line of the grid.
/// Places: A, B, C middles, E nothing, P Q R S the corners of a from the lower left one on, W X two of b.
inline TPoint DragPlace(char name)
{
    switch (name) {
    case 'A':
        return {120, 200};
    case 'B':
        return {220, 200};
    case 'C':
        return {321, 198};
    case 'P':
        return {100, 210};
    case 'Q':
        return {140, 210};
    case 'R':
        return {140, 190};
    case 'S':
        return {100, 190};
    case 'W':
        return {200, 210};
    case 'X':
        return {240, 190};
    default:
        return {500, 60};
    }
}

class DragCase : public PlanCase
{
protected:
    void Send(TEdcMouseTool &tool, const GestureEvent &event)
    {
        PlayEvent(tool, dc, event);
        if (event.kind == GestureEvent::LEAVE || event.kind == GestureEvent::COME_BACK)
            tool.MouseMove(dc, event.keys, event.at);
    }
    void Send(const char *events)
    {
        for (const GestureEvent &event : ParseGesture(events, DragPlace))
            Send(Tool(), event);
    }
    void Fill(const char *selected, char focus, double turn = 0)
    {
        Rects().DeleteAll(false);
        names = "abc";
        sprites = {PutRect(AgPOINT(10, 10), 4, 2, turn * AgPI / 180), PutRect(AgPOINT(20, 10), 4, 2),
                   PutRect(AgPOINT(30.1, 10.2), 4, 2)};
        for (const char *name = selected; *name; ++name)
            Rects().Select(ByName(*name), true, NULL);
        Rects().SetFocus(focus ? ByName(focus) : NULL, NULL);
        former.clear();
        for (SeenRect *spr : sprites)
            former.push_back(Place(spr));
        LayOut();
    }
    SeenRect *ByName(char name) { return sprites[names.find(name)]; }
    char NameOf(const TEdcSprite *spr)
    {
        for (size_t i = 0; i < sprites.size(); ++i)
            if (sprites[i] == spr)
                return names[i];
        return '+';
    }
    /// What is not where it was, and what is new.
    std::string Changes()
    {
        std::string text;
        size_t i = 0;
        for (TEdcSprite *spr = Rects().LnkFirst(); spr; spr = spr->lnkNext, ++i)
            if (i >= former.size() || Place(spr) != former[i])
                text += (text.empty() ? "" : ";") + std::string(1, NameOf(spr)) + " " + Place(spr);
        return text;
    }
    std::string Lists()
    {
        std::string text;
        for (TEdcSprite *spr = Rects().SelFirst(); spr; spr = spr->selNext)
            text += NameOf(spr);
        return text + " " + (Rects().Focus() ? NameOf(Rects().Focus()) : '-');
    }

    /// How many were drawn since the last call.
    int CountGhosts()
    {
        int count = 0;
        for (const auto &[line, times] : GhostsOf(TakeCalls()))
            count += times;
        return count;
    }

    std::vector<SeenRect *> sprites;
    std::string names;
    std::vector<std::string> former;
};

#endif
