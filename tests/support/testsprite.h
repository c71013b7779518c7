// Sprites, layers, tools and a block around them that write down what is asked of them, and fail where a test
// wants it. A log is words with a blank behind each. A sprite is a rectangle in device pixels of its block:
// grey when idle, blue when active, green when selected; a drag moves it, with Ctrl a copy of it.
#ifndef TESTS_SUPPORT_TESTSPRITE_H
#define TESTS_SUPPORT_TESTSPRITE_H

#include "support/testblock.h"
#include "usr/edcsprit.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

/// What the objects of one test share.
struct SpriteLog {
    std::string text;
    bool queries = false; // HitTest and InRect are logged too, and may fail
    bool states = false;  // SetState is logged; it cannot fail
    int failAt = 0;       // the call from now, 1 for the next, that fails with XALLOC; 0 for none
    bool onwards = false; // every later one too
    int fired = 0;        // calls that failed

    void Add(const std::string &word);
    void Note(const std::string &word) { text += word + " "; } // of what cannot fail
    std::string Take() { return std::exchange(text, std::string()); }
};

class TTestSprite : public TEdcSprite
{
public:
    TTestSprite(std::string aName, const TRect &aPlace, SpriteLog &aLog)
        : name(std::move(aName)), place(aPlace), log(aLog)
    {
    }
    ~TTestSprite() override { log.Note(name + ".gone"); }

    void Discard() override { log.Add(name + ".discard"); }
    void SetTool(int toolId) override { log.Add(name + ".tool" + std::to_string(toolId)); }
    void Layout(TDC &) override { log.Add(name + ".layout"); }
    void Reload(void *) override { log.Add(name + ".reload"); }
    bool InRect(const TRect &rect) override;
    bool HitTest(TPoint point) override;
    void DragBegin(TDC &dc, unsigned mode, TPoint start, TPoint shift) override;
    void DragMove(TDC &dc, unsigned mode, TPoint start, TPoint shift) override;
    void DragEnd(TDC &dc, unsigned mode, TPoint start, TPoint shift) override;
    void DragHide(TDC &dc, bool hidden) override;
    void SetState(uint16_t mask, bool on) override;
    void Decorate(TDC &dc) override; // four little squares
    void Paint(TDC &dc) override;

    const std::string name;
    TRect place; // px
    SpriteLog &log;
    int number = 0;      // what a test calls it; a copy that a drag makes has none
    bool draws = true;   // else it only logs
    bool drags = false;  // takes part in a drag
    bool hidden = false; // and is not to be seen

private:
    void Step(const char *what, unsigned mode, TPoint start, TPoint shift);
    void Ghost(TDC &dc) const;
    void Drop(unsigned mode);

    TPoint offset; // px, of the drag
};

class TTestLayer : public TEdcSpriteLayer
{
public:
    TTestLayer(std::string aName, int anId, uint16_t anOptions, SpriteLog &aLog)
        : TEdcSpriteLayer(anId, anOptions), name(std::move(aName)), log(aLog)
    {
    }

    void Reset() override;
    void SetTool(int aToolId) override;
    void Layout(TDC &dc) override;
    void Reload(void *arg) override;
    void OpenAt(unsigned keys, TPoint point) override;
    void MenuAt(unsigned keys, TPoint point) override;
    void Paint(TDC &dc, const TRect &rect) override;
    void PaintPlain(TDC &dc, const TRect &rect) override;

    TTestSprite *Put(const char *spriteName, const TRect &place); // adds a new one
    // The lists as names, one behind the other.
    std::string Lnk() const;
    std::string Pnt() const;
    std::string Sel() const;
    std::string FocusName() const; // "-" for none
    bool Unlocked() const { return repaintLock == 0 && decorateLock == 0; }
    void Miscount() { ++countLnk, ++countSel; } // for the checks that find it
    /// Lists linked both ways, counts, states and focus fit together, and nothing is locked.
    testing::AssertionResult IsSound() const;

    const std::string name;
    SpriteLog &log;
    bool logs = true; // its own calls, beside those of its sprites

private:
    template <class WORK>
    void Logged(const std::string &word, WORK work);
};

class TTestSpriteTool : public TEdcSpriteTool
{
public:
    TTestSpriteTool(std::string aName, int anId, SpriteLog &aLog)
        : TEdcSpriteTool(anId), name(std::move(aName)), log(aLog)
    {
    }
    void LeftDown(TDC &, unsigned, TPoint) override { log.Add(name + ".down"); }
    void Activate(bool on) override { log.Add(name + (on ? ".on" : ".off")); }

    const std::string name;
    SpriteLog &log;
};

/// The selector with a look inside.
class TTestSelector : public TEdcSpriteSelector
{
public:
    using TEdcSpriteSelector::TEdcSpriteSelector;
    /// "left right", with "drag", "band" and "outside" where they are set: "1 0 drag".
    std::string States() const;
    bool IsIdle() const { return leftState == 0 && rightState == 0 && !dragging && !rubber; }
};

/// A manager over two layers, each with tools of its own kind. It resumes when it is opened and suspends when
/// it is closed.
class TSpriteBlock : public TEdcBlock
{
public:
    enum { MAIN = 31, SIDE = 32, SELECT = 41, OTHER = 42 }; // command ids
    TSpriteBlock(SpriteLog &aLog, double width, double height);

    void Open() override { manager.Resume(true); }
    void Close() override { manager.Suspend(false); }
    void Layout(TDC &dc, TEdcSize &trueSize, double scale) override;
    void Paint(TDC &dc, const TRect &part) override;
    void Print(TDC &dc, const TRect &part) override;
    bool DoCommand(int id) override { return manager.Command(id); }
    void EnableCommand(TCommandEnabler &ce) override { manager.CommandEnable(ce); }

    TTestLayer main, side;
    TTestSelector selector{SELECT};
    TTestSpriteTool other;
    TEdcSpriteManager manager{this};
};

#endif
