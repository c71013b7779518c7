// The window: a scrollable client area with a backing image, and the messages it gets. A window object lives
// without a widget until Create(); until then every operation works and does nothing to the screen, and the
// client area is empty. Pixels are device pixels: positions are rounded down from the toolkit's, so that they
// hit the backing image's pixels at every display scale.
#ifndef WIN_WINDOW_H
#define WIN_WINDOW_H

#include "win/geometry.h"
#include "win/native.h"
#include <memory>
#include <string>

class TCommandEnabler;
class TDC;
class TScroller;
class TSurface;

enum { WIN_KEY_SHIFT = 4, WIN_KEY_CTRL = 8 }; // bits of the mouse-key word
enum TBar { WIN_BAR_HORIZONTAL, WIN_BAR_VERTICAL, WIN_BAR_BOTH };
enum TScrollCode {
    WIN_SCROLL_LINEUP,
    WIN_SCROLL_LINEDOWN,
    WIN_SCROLL_PAGEUP,
    WIN_SCROLL_PAGEDOWN,
    WIN_SCROLL_TOP,
    WIN_SCROLL_BOTTOM
}; // up is left on the horizontal bar
enum TSizeKind { WIN_SIZE_RESTORED, WIN_SIZE_MINIMIZED, WIN_SIZE_MAXIMIZED, WIN_SIZE_HIDDEN };
enum TVirtualKey {
    WIN_VK_OTHER,
    WIN_VK_PRIOR,
    WIN_VK_NEXT,
    WIN_VK_END,
    WIN_VK_HOME,
    WIN_VK_LEFT,
    WIN_VK_UP,
    WIN_VK_RIGHT,
    WIN_VK_DOWN,
    WIN_VK_ESCAPE,
    WIN_VK_DELETE,
    WIN_VK_RETURN
};

/// A cursor: one of the platform's or a picture of the resources with its hot spot.
struct TCursor {
    enum Shape { ARROW, WAIT, CROSS, RESOURCE };
    Shape shape = ARROW;
    int resource = 0; // picture number, RESOURCE only

    bool operator==(const TCursor &) const = default;
};

class TWindow
{
public:
    explicit TWindow(TWindow *parent = NULL, const char *title = "");
    TWindow(const TWindow &) = delete;
    TWindow &operator=(const TWindow &) = delete;
    virtual ~TWindow(); // takes the widget with it

    /// Makes the widget, shown within the parent's. Needs a running TApplication.
    virtual void Create();
    bool IsCreated() const;
    TNativeWidget *Native() const; // NULL before Create()
    HWND GetHandle() const { return Native(); }
    TWindow *Parent() const { return parent; }
    void SetParent(TWindow *window);           // before Create()
    virtual void SetCaption(const char *text); // Windows-1252
    const std::string &Caption() const { return caption; }

    TRect GetClientRect() const; // from (0, 0)
    int Dpi() const;             // of the backing image: 96 times the display scale, rounded
    void Invalidate(bool erase = true);
    void InvalidateRect(const TRect &rect, bool erase = true);
    /// Paints what is invalid now; within the paint event of any window, behind that.
    void UpdateWindow();
    bool NeedsPaint() const;
    void SetCapture();
    void ReleaseCapture();
    bool HasCapture() const;
    TCursor SetCursor(const TCursor &cursor); // returns the former
    void SetFocus();
    TPoint ClientToScreen(TPoint p) const; // device pixels in, the toolkit's screen units out

    // Scroll bars, of a window that has a scroller when it is created.
    TScroller *Scroller() const { return scroller.get(); }
    void SetScroller(std::unique_ptr<TScroller> s);
    void EnableScrollBar(TBar bar, bool on);        // a disabled bar is shown grey and scrolls nothing
    bool IsScrollBarEnabled(TBar bar) const;        // of one bar
    void ScrollMessage(TBar bar, TScrollCode code); // as if the bar had been used

    /// Asks all children.
    virtual bool CanClose();
    /// Called in idle time; true asks for more. Base: false.
    virtual bool IdleAction(long idleCount);
    virtual void EvCommand(int id);
    virtual void EvCommandEnable(TCommandEnabler &ce);
    /// Paints the invalid rectangle, from the paint event only. `erase` tells that it has been filled with
    /// white.
    virtual void Paint(TDC &dc, bool erase, const TRect &rect);

    // Messages. `keys` holds WIN_KEY_SHIFT and WIN_KEY_CTRL. Base: nothing but what is said.
    virtual void EvLButtonDown(unsigned keys, TPoint point);
    virtual void EvLButtonUp(unsigned keys, TPoint point);
    virtual void EvLButtonDblClk(unsigned keys, TPoint point);
    virtual void EvRButtonDown(unsigned keys, TPoint point);
    virtual void EvRButtonUp(unsigned keys, TPoint point);
    virtual void EvMouseMove(unsigned keys, TPoint point);
    /// Wheel, in notches (positive: away from the user, or to the left). Base: scrolls three lines a notch,
    /// with Shift sideways; nothing with Ctrl.
    virtual void EvMouseWheel(unsigned keys, TPoint point, double notchesX, double notchesY);
    virtual void EvSize(TSizeKind kind, TSize size);
    virtual void EvSetFocus();
    virtual void EvKeyDown(TVirtualKey key, unsigned keys);
    virtual void EvDropFile(const char *path); // in the system's character set and form
    virtual void EvCaptureLost();              // the platform took the mouse away, say through a modal box

    TSurface *BackingSurface() const; // NULL before Create(); for TClientDC and tests

protected:
    struct Impl;
    /// For windows that are no client area with a backing image (frame, bars): called by their Create() instead
    /// of the base's, the widget is theirs from now on and goes with them. Their client area is the widget.
    /// NULL lets go of it.
    void AdoptWidget(TNativeWidget *widget);

    TWindow *parent; // view
    std::string caption;
    std::unique_ptr<TScroller> scroller;
    std::unique_ptr<Impl> impl; // the widget and its backing image

private:
    friend class TScroller;
    void ShiftPicture(int64_t dx, int64_t dy); // px; what comes into view is invalid
    void ShowBars();                           // as the scroller stands
};

/// Maps scroll bars to a position in units. Track mode off: the thumb scrolls when it is let go. Auto mode off:
/// a drag out of the window scrolls nothing by itself.
class TScroller
{
public:
    TScroller(TWindow &window, int xUnit, int yUnit, int xRange, int yRange);

    int XPos() const { return xPos; } // units, 0 to the range
    int YPos() const { return yPos; }
    int XRange() const { return xRange; }
    int YRange() const { return yRange; }
    int XLine() const { return xLine; }
    int YLine() const { return yLine; }
    int XPage() const; // what the client area shows, at least 1
    int YPage() const;
    void SetLine(int x, int y);
    void SetRange(int x, int y); // at least 1; the position is limited to it
    void ScrollTo(int x, int y); // limited; moves the picture and paints the uncovered strips
    void ScrollBy(int dx, int dy);
    bool autoMode = true;
    bool trackMode = true;

private:
    TWindow &window;
    int xUnit, yUnit; // px
    int xPos = 0, yPos = 0;
    int xRange, yRange;
    int xLine = 1, yLine = 1;
    double xRest = 0, yRest = 0; // what a fine wheel has moved short of a unit
    friend class TWindow;
};

#endif
