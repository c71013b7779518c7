// Blocks, tools and a document that write down what is asked of them, and fail where a test wants it. A log is
// words with a blank behind each, so that a test compares a whole event as one text.
#ifndef TESTS_SUPPORT_TESTBLOCK_H
#define TESTS_SUPPORT_TESTBLOCK_H

#include "lib/xfail.h"
#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/dc.h"
#include "win/frame.h"

#include <functional>
#include <string>
#include <utility>

/// What the objects of one test share.
struct TestLog {
    std::string text;
    std::string failing; // the word that fails with XLIMIT when it is logged; empty for none

    void Add(const std::string &word)
    {
        text += word + " ";
        if (word == failing)
            XRaise(XLIMIT, __FILE__, __LINE__);
    }
    std::string Take() { return std::exchange(text, std::string()); }
};

inline std::string PlaceText(TPoint p)
{
    return std::to_string(p.x) + "," + std::to_string(p.y);
}

class TTestTool : public TEdcMouseTool
{
public:
    TTestTool(std::string aName, TestLog &aLog) : name(std::move(aName)), log(aLog) {}

    void LeftDown(TDC &dc, unsigned keys, TPoint p) override { Event("down", dc, keys, p); }
    void LeftUp(TDC &dc, unsigned keys, TPoint p) override { Event("up", dc, keys, p); }
    void LeftDouble(TDC &dc, unsigned keys, TPoint p) override { Event("double", dc, keys, p); }
    void RightDown(TDC &dc, unsigned keys, TPoint p) override { Event("rdown", dc, keys, p); }
    void RightUp(TDC &dc, unsigned keys, TPoint p) override { Event("rup", dc, keys, p); }
    void MouseMove(TDC &dc, unsigned keys, TPoint p) override { Event("move", dc, keys, p); }
    void Outside(TDC &dc, bool outside) override
    {
        log.Add(name + (outside ? ".outside" : ".inside"));
        if (hiding)
            hiding(dc, outside);
    }
    void Activate(bool on) override { log.Add(name + (on ? ".on" : ".off")); }

    TPoint lastPoint; // of the last event
    unsigned lastKeys = 0;
    TDCState lastState;                 // of the context it came with
    std::function<void()> onEvent;      // runs behind the log
    std::function<void(TDC &)> drawing; // likewise
    std::function<void(TDC &, bool)> hiding;

private:
    void Event(const char *what, TDC &dc, unsigned keys, TPoint p)
    {
        lastPoint = p;
        lastKeys = keys;
        lastState = dc.State();
        log.Add(name + "." + what);
        if (drawing)
            drawing(dc);
        if (onEvent)
            onEvent();
    }

    std::string name;
    TestLog &log;
};

/// A block of a fixed size that fills itself with a colour; it logs what is not asked all the time.
class TTestBlock : public TEdcBlock
{
public:
    TTestBlock(std::string aName, TestLog &aLog, unsigned someOptions = 0, double width = 1, double height = 1)
        : name(std::move(aName)), log(aLog)
    {
        options = someOptions;
        size = TEdcSize(width, height);
    }
    ~TTestBlock() override
    {
        if (onDeath)
            onDeath(this);
    }

    void Execute() override
    {
        busyInside = state & EDC_BsBUSY;
        log.Add(name + ".execute");
        if (onExecute)
            onExecute();
    }
    void Open() override
    {
        busyInside = state & EDC_BsBUSY;
        log.Add(name + ".open");
    }
    void Close() override { log.Add(name + ".close"); }
    void Update(bool partial) override
    {
        log.Add(name + (partial ? ".partial" : ".update"));
        if (onUpdate)
            onUpdate();
    }
    void Layout(TDC &, TEdcSize &, double) override
    {
        ++layouts;
        if (log.failing == name + ".layout")
            log.Add(name + ".layout");
    }
    void Paint(TDC &dc, const TRect &part) override
    {
        ++paints;
        lastPart = part;
        lastState = dc.State();
        if (log.failing == name + ".paint")
            log.Add(name + ".paint");
        if (onPaint)
            onPaint(dc);
        else
            dc.FillRect({0, 0, rect.width, rect.height}, SolidBrush({200, 220, 240}));
    }
    bool DoCommand(int id) override
    {
        log.Add(name + ".command" + std::to_string(id));
        return command != 0 && id == command;
    }
    void EnableCommand(TCommandEnabler &ce) override
    {
        if (command != 0 && ce.id == command)
            ce.Enable(true);
    }

    const std::string name;
    TestLog &log;
    int command = 0; // the one that it knows
    int layouts = 0; // since the start
    int paints = 0;
    bool busyInside = false; // its state while it was opened or executed
    TRect lastPart;
    TDCState lastState; // of the context that it painted on
    std::function<void()> onExecute, onUpdate;
    std::function<void(TDC &)> onPaint;
    std::function<void(TTestBlock *)> onDeath;
};

class TTestDoc : public TEdcDocument
{
public:
    explicit TTestDoc(TWindow *aParent = NULL) : TEdcDocument(aParent)
    {
        TestApplication();
        SetAppDocument(this);
    }
    ~TTestDoc() override { RemoveAllBlocks(); }

    void Reconstruct(bool partial, bool before) override
    {
        log.Add(std::string(partial ? "partial" : "full") + (before ? ".before" : ".after"));
        if (onReconstruct)
            onReconstruct();
    }
    bool NewDocument(bool create) override
    {
        log.Add(create ? "new.create" : "new.ask");
        return create ? creates : mayCreate;
    }
    bool ReadFile(const char *name) override
    {
        log.Add("read");
        lastName = name;
        return reads;
    }
    void WriteFile(const char *name) override
    {
        lastName = name;
        log.Add("write");
    }
    void ClearDocument() override
    {
        log.Add("clear");
        RemoveAllBlocks();
    }
    const char *FileType() override { return fileType.c_str(); }
    void PaintEmpty(TDC &dc, const TRect &rect) override
    {
        log.Add("empty");
        dc.FillRect(rect, SolidBrush({10, 20, 30}));
    }
    bool DoCommand(int id) override
    {
        if (id == ownCommand)
            log.Add("command");
        return id == ownCommand || TEdcDocument::DoCommand(id);
    }

    /// A document under that name, as if it had been opened, with nothing obsolete.
    void Start(const char *name = "")
    {
        delete[] path;
        path = new char[std::string(name).size() + 1];
        std::string(name).copy(path, std::string::npos);
        path[std::string(name).size()] = '\0';
        Refresh(EDC_LAYOUT);
        log.Take();
    }
    TTestBlock *Append(const char *name, unsigned someOptions = 0, double width = 1, double height = 1)
    {
        auto *blk = new TTestBlock(name, log, someOptions, width, height);
        LinkBlock(blk, NULL, true);
        return blk;
    }

    TestLog log;
    std::string fileType = "TST Testfile";
    std::string lastName; // that was read or written
    bool mayCreate = true, creates = true, reads = true;
    int ownCommand = 0;
    std::function<void()> onReconstruct;
};

/// Counts what the failure hook is told, while it lives.
class TestHook
{
public:
    TestHook()
    {
        Count() = 0;
        SetFailureHook([] { ++Count(); });
    }
    ~TestHook() { SetFailureHook(NULL); }
    TestHook(const TestHook &) = delete;
    TestHook &operator=(const TestHook &) = delete;
    int Reports() const { return Count(); }

private:
    static int &Count()
    {
        static int count;
        return count;
    }
};

#endif
