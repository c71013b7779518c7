// A plain picture of two layers of rectangles, a selector and their manager. Random programs compare the real
// ones with it after each event.
#ifndef TESTS_USR_SPRITEMODEL_H
#define TESTS_USR_SPRITEMODEL_H

#include "plainselector.h"

#include <vector>

struct PlainSprite {
    TRect place; // px
    bool drags = false;
    bool hidden = false;
};

/// Layer numbers are 0 and 1, -1 is none. The selector may work on both layers, the other tool on layer 0.
class PlainManager : public PlainSelector
{
public:
    enum Tool { NONE, SELECTOR, OTHER };

    int AddSprite(int ly, const TRect &place);
    bool Command(int id); // those of layers
    void SetLayer(int ly);
    void SetTool(Tool tl);
    void Suspend(bool forget);
    void Resume(bool reset);

    const TRect &PlaceOf(int spr) const { return sprites[static_cast<size_t>(spr)].place; }

    PlainLayer layers[2];
    std::vector<PlainSprite> sprites{1}; // by number; 0 is none
    int lyActive = -1;
    Tool tlActive = NONE;
    bool suspended = true;

protected:
    PlainLayer *Layer() override;
    bool IsHit(int spr, TPoint at) const override { return PlaceOf(spr).Contains(at); }
    bool IsIn(int spr, const TRect &rect) const override { return (PlaceOf(spr) & rect) == PlaceOf(spr); }
    void Grip(TPoint at) override;
    void Hide(int spr, bool on) override { At(spr).hidden = on; }
    void DropOne(int spr, unsigned keys, TPoint at) override;

private:
    PlainSprite &At(int spr) { return sprites[static_cast<size_t>(spr)]; }
};

#endif
