// A plain picture of two layers, a selector and their manager: vectors of numbers, without links, locks or
// drawing. Random programs compare the real ones with it after each event.
#ifndef TESTS_USR_SPRITEMODEL_H
#define TESTS_USR_SPRITEMODEL_H

#include "win/geometry.h"

#include <string>
#include <vector>

struct PlainSprite {
    TRect place; // px
    bool drags = false;
    bool hidden = false;
};

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
};

/// Layer numbers are 0 and 1, -1 is none. The selector may work on both layers, the other tool on layer 0.
class PlainManager
{
public:
    enum Tool { NONE, SELECTOR, OTHER };

    int AddSprite(int ly, const TRect &place);
    bool Command(int id); // those of layers
    void SetLayer(int ly);
    void SetTool(Tool tl);
    void Suspend(bool forget);
    void Resume(bool reset);

    // The selector; nothing where it is not the block's tool.
    void LeftDown(unsigned keys, TPoint at);
    void LeftUp(unsigned keys, TPoint at);
    void LeftDouble(unsigned keys, TPoint at);
    void RightDown(unsigned keys, TPoint at);
    void RightUp(unsigned keys, TPoint at);
    void MouseMove(unsigned keys, TPoint at);
    void Outside(bool on);
    std::string States() const;

    const TRect &PlaceOf(int spr) const { return sprites[static_cast<size_t>(spr)].place; }

    PlainLayer layers[2];
    std::vector<PlainSprite> sprites{1}; // by number; 0 is none
    int lyActive = -1;
    Tool tlActive = NONE;
    bool suspended = true;
    std::string asked; // "menu" and "open", each with a blank

    TPoint start, last, bandEnd;
    bool dragging = false, band = false, outside = false;
    int leftState = 0, rightState = 0, button = 0;

private:
    bool Works() const { return !suspended && tlActive == SELECTOR; }
    PlainLayer &Layer() { return layers[lyActive]; }
    void Activate();
    int TopAt(TPoint at);
    void Pick(TPoint at);
    void PickToggle(TPoint at, bool toggle);
    std::vector<int> FocusFirst();
    void Drop(unsigned keys, TPoint at);
    void BandEnd();
    void TakeBack(unsigned keys, TPoint at);
    PlainSprite &At(int spr) { return sprites[static_cast<size_t>(spr)]; }
};

#endif
