// A plain picture of a plan: two layers of shapes, the selector and the creators of rectangles and lines as the
// mouse drives them, without links, locks, handles or drawing. Random programs compare the real ones with it
// after each event.
#ifndef TESTS_USR_PLANMODEL_H
#define TESTS_USR_PLANMODEL_H

#include "plainplan.h"
#include "spritemodel.h"

#include <map>
#include <string>
#include <vector>

struct ModelShape {
    std::vector<plain::SHAPE> may; // what it may be; one, but for what an event has just made
    bool drags = false;            // takes part in the drag
    bool hidden = false;

    const plain::SHAPE &Now() const { return may.front(); }
    bool Adopt(const plain::SHAPE &real); // false where it is none of these
};

/// Layer 0 has rectangles, layer 1 lines.
class PlanModel
{
public:
    enum TOOL { SELECTOR, CREATOR }; // the creator makes rectangles on layer 0 and lines on layer 1
    enum { HANDLE = 7, REACH = 3 };  // px

    int Add(int ly, const plain::SHAPE &shape);
    void Remove(int ly, int spr);
    void Command(int id); // those of layers
    void SetLayer(int ly);
    void SetTool(TOOL tl);
    bool IsDoubtful(TPoint at) const; // a click there may or may not hit something
    bool IsIdle() const { return leftState == 0 && rightState == 0 && !dragging && !band; }

    void LeftDown(unsigned keys, TPoint at);
    void LeftUp(unsigned keys, TPoint at);
    void LeftDouble();
    void RightDown(unsigned keys, TPoint at);
    void RightUp(unsigned keys, TPoint at);
    void MouseMove(unsigned keys, TPoint at);
    void Outside(bool on);

    plain::AXES axes;
    PlainLayer layers[2];
    std::map<int, ModelShape> sprites; // by number
    int active = 0;
    TOOL tool = SELECTOR;

    TPoint start, last, bandEnd;
    bool dragging = false, band = false, outside = false;
    int leftState = 0, rightState = 0, button = 0;
    int drops[4] = {}; // that made something, by the kind of the step
    int copies = 0, made = 0;

private:
    PlainLayer &Layer() { return layers[active]; }
    void Idle();
    bool IsHit(int spr, TPoint at) const;
    int TopAt(TPoint at) const;
    void Pick(TPoint at);
    void PickToggle(TPoint at, bool toggle);
    std::vector<int> FocusFirst();
    void Begin(TPoint at);
    void Drop(unsigned keys, TPoint at);
    void DropOne(int spr, const plain::STEP &step);
    void BandEnd();
    void TakeBack(unsigned keys, TPoint at);
    void Constrain(unsigned keys);
    void Create();

    plain::STEP grip; // what the running drag is
    plain::POINT origin, from, to;
    int count = 0;
};

#endif
