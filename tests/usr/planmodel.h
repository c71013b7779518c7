// A plain picture of a plan: two layers of shapes, the selector and the creators of rectangles and lines as the
// mouse drives them, without links, locks, handles or drawing. Random programs compare the real ones with it
// after each event.
#ifndef TESTS_USR_PLANMODEL_H
#define TESTS_USR_PLANMODEL_H

#include "plainplan.h"
#include "plainselector.h"

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
class PlanModel : public PlainSelector
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

    void LeftDown(unsigned keys, TPoint at) override;
    void LeftUp(unsigned keys, TPoint at) override;
    void LeftDouble(unsigned keys, TPoint at) override;
    void LeftDouble() { LeftDouble(0, last); } // where no gesture is under way
    void RightDown(unsigned keys, TPoint at) override;
    void RightUp(unsigned keys, TPoint at) override;
    void MouseMove(unsigned keys, TPoint at) override;

    plain::AXES axes;
    PlainLayer layers[2];
    std::map<int, ModelShape> sprites; // by number
    int active = 0;
    TOOL tool = SELECTOR;
    int drops[4] = {}; // that made something, by the kind of the step
    int copies = 0, made = 0;

protected:
    PlainLayer *Layer() override { return &layers[active]; }
    bool IsHit(int spr, TPoint at) const override;
    bool IsIn(int spr, const TRect &rect) const override;
    void Grip(TPoint at) override;
    void Hide(int spr, bool on) override { sprites[spr].hidden = on; }
    void DropOne(int spr, unsigned keys, TPoint at) override;

private:
    void Idle();
    void Constrain(unsigned keys);
    void Create();

    plain::STEP grip; // what the running drag is
    plain::POINT origin, from, to;
    int count = 0;
};

#endif
