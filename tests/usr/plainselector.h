// A plain picture of a layer and of a selector on it, as the mouse drives it: vectors of numbers, without
// links, locks, handles or drawing. What a sprite looks like and where a drag takes it says the model that
// derives.
#ifndef TESTS_USR_PLAINSELECTOR_H
#define TESTS_USR_PLAINSELECTOR_H

#include "win/geometry.h"

#include <string>
#include <vector>

struct PlainLayer {
    std::vector<int> lnk, pnt, sel; // numbers of sprites
    int focus = 0;                  // 0 for none
    bool active = false;

    bool Selected(int spr) const;
    void ToTop(int spr);
    void Select(int spr, bool on);
    void SelectAll(bool on);
    void Invert();
    void SetFocus(int spr);
    void RepaintSelection();
    void Add(int spr);
    void Remove(int spr);
    bool Command(int id); // whether it is one of a layer's
};

class PlainSelector
{
public:
    virtual ~PlainSelector() = default;
    virtual void LeftDown(unsigned keys, TPoint at);
    virtual void LeftUp(unsigned keys, TPoint at);
    virtual void LeftDouble(unsigned keys, TPoint at);
    virtual void RightDown(unsigned keys, TPoint at);
    virtual void RightUp(unsigned keys, TPoint at);
    virtual void MouseMove(unsigned keys, TPoint at);
    void Outside(bool on);
    bool IsIdle() const { return leftState == 0 && rightState == 0 && !dragging && !band; }
    std::string States() const;

    TPoint start, last, bandEnd;
    bool dragging = false, band = false, outside = false;
    int leftState = 0, rightState = 0, button = 0;
    std::string asked; // "menu" and "open", each with a blank

protected:
    virtual PlainLayer *Layer() = 0; // NULL: whatever comes is lost
    virtual bool IsHit(int spr, TPoint at) const = 0;
    virtual bool IsIn(int spr, const TRect &rect) const = 0;
    virtual void Grip(TPoint at) = 0; // FocusFirst() are dragged from now on
    virtual void Hide(int spr, bool on) = 0;
    virtual void DropOne(int spr, unsigned keys, TPoint at) = 0;
    void Rest(); // no gesture is under way
    std::vector<int> FocusFirst();

private:
    void Begin(int which, unsigned keys, TPoint at);
    void Leave();
    int TopAt(TPoint at);
    void Pick(TPoint at);
    void PickToggle(TPoint at, bool toggle);
    void Drop(unsigned keys, TPoint at);
    void BandEnd();
    void TakeBack(unsigned keys, TPoint at);
};

#endif
