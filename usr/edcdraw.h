// Things of a plan in metres: sprites on a pair of axes, with handles, and the protocol by which a drag moves,
// turns, copies and reshapes them; the tools that select, align and create; the dialogs for exact places.
// Model coordinates are metres with y up, angles radians counter-clockwise in (-pi, pi]; device coordinates are
// pixels of the block with y down. During a drag only inverted outlines are drawn; a sprite is repainted when
// it is dropped.
#ifndef USR_EDCDRAW_H
#define USR_EDCDRAW_H

#include "lib/ag.h"
#include "lib/array.h"
#include "usr/edcdlg.h"
#include "usr/edcitem.h"
#include "usr/edcsprit.h"
#include "win/gdi.h"

enum {
    EDC_TlSELECT = 21011,
    EDC_TlALIGN = 21503,
    EDC_TlSTOCK = 21511,
    EDC_TlRECT = 21515,
    EDC_CmOPEN = 21801,
    EDC_CmLOCATE = 21803,
    EDC_CmALIGN = 21805
};

/// The geometry of a sprite as seen from outside, in a frame turned by `refAngle`.
struct TEdcDrawDesc {
    AgPOINT position;                                   // lower left corner of the bounding rectangle, m
    AgVECTOR size;                                      // its extents, m
    double refAngle = 0;                                // of the frame, rad
    double angle = 0;                                   // the sprite's own rotation, rad
    AgPOINT topLeft, topRight, bottomLeft, bottomRight; // m
    AgPOINT topMid, bottomMid, leftMid, rightMid, centre;
};
/// Fills in the nine points.
void Complete(TEdcDrawDesc &desc);

/// Where a sprite can be grasped.
struct TEdcDrawHandle {
    enum : uint16_t { SNAPS = 1, DRAWN = 2 };
    uint16_t flags = 0;
    int32_t x = 0, y = 0; // px, of the centre
    int32_t width = 0, height = 0;
    AgPOINT point;     // m
    int32_t index = 0; // in the shape

    TRect Box() const { return {x - width / 2, y - height / 2, x + width / 2, y + height / 2}; }
};

enum : uint32_t {
    EDC_DRAWDRAGMOVE = 1,     // by `shift`
    EDC_DRAWDRAGHANDLE = 2,   // only the grabbed handle
    EDC_DRAWDRAGROTATE = 4,   // about `pivot` by `angle`
    EDC_DRAWDRAGABSOLUTE = 8, // `angle` is the new rotation
    EDC_DRAWDRAGCOPY = 16     // the original stays
};
/// One step of a drag, in metres.
struct TEdcDrawDrag {
    uint32_t mode = 0;
    int tool = 0;
    AgVECTOR shift;
    TEdcDrawHandle *handle = NULL; // view
    AgPOINT pivot;
    double angle = 0; // rad
};

/// What a creating tool hands to a layer. `stock` is the layer's own record of parameters.
struct TEdcDrawCreation {
    int type = 0; // of the tool; a layer may put the sprite's in its place
    uint16_t flags = 0;
    ARRAY<AgPOINT> points; // m
    void *stock = NULL;    // view
};

/// Turned about the origin, counter-clockwise seen from above; angle in rad.
AgPOINT EdcTurned(const AgPOINT &p, double angle);

/// Place and extents of the points in a frame turned by `refAngle` about `centre`.
void EdcDescribe(TEdcDrawDesc &desc, const AgPOINT *points, int n, const AgPOINT &centre, double refAngle);
/// The copy takes the original's place in the selection and the layer owns it.
void EdcSelectCopy(class TEdcDrawSprite &original, class TEdcDrawSprite &copy);
/// Applies a step with the sprite's own centre as the pivot.
void EdcApplyAbout(class TEdcDrawSprite &sprite, TEdcDrawDrag &drag);
/// Tells the user where the pointer is (m), and what the running drag has come to; `drag` NULL for none.
void EdcShowPointer(const AgPOINT &point, const TEdcDrawDrag *drag);
void EdcHidePointer();
/// Tells the user what the next click of a tool on a layer will do, where that does not stand there yet.
void EdcShowTool(int toolId, const TEdcSpriteLayer *layer);
void EdcHideTool();
/// White and exclusive-or, without a brush: what is drawn twice with it leaves no trace.
void EdcSetGhostPen(TDC &dc, TPenStyle style, int width = 1); // px
void EdcInvertGhost(TDC &dc, const TPoint *points, int n);

/// Both dialogs for exact places forget what was entered last.
void EdcForgetPlaces();
/// Given to the main window once the present message is done.
void EdcPostCommand(int id);

/// What the align dialog answers.
struct TEdcDrawAlign {
    enum : uint32_t {
        BELOW = 1,     // top middle on the line
        MIDDLE = 2,    // centre on the line
        ABOVE = 4,     // bottom middle on the line
        STRETCH = 8,   // spread along the line
        SELORDER = 16, // in the order of selecting, else as they lie along the line
        GAPS = 32,     // equal gaps, else equal distances of the centres
        VALUE = 64,    // by `value`, else over the whole line
        ROTATE = 128,
        TOXAXIS = 256 // `angle` counts from the x axis, else from the line
    };
    uint32_t mode = 0;
    AgPOINT org, end; // m, z 0
    double angle = 0; // rad
    double value = 0; // m
};

class TEdcDrawSprite;

class TEdcDrawLayer : public TEdcSpriteLayer
{
public:
    TEdcDrawLayer(int aId, uint16_t anOptions, TEdcAxes *aAxes);

    void Reset() override;
    void Layout(TDC &dc) override;
    void OpenAt(unsigned keys, TPoint point) override;
    void MenuAt(unsigned keys, TPoint point) override;
    bool Command(int id) override;
    void CommandEnable(TCommandEnabler &ce) override;

    /// Whether there are parameters for new objects; says so where there are none.
    virtual bool CanCreate(const TEdcDrawCreation &creation);
    virtual TEdcDrawSprite *CreateSprite(const TEdcDrawCreation &creation); // the caller adds it; NULL: none
    /// Asks for the parameters of new objects; `first` forgets the former ones. @return them, or NULL
    virtual void *QueryCreation(int toolId, bool first);
    virtual void Open(); // the parameters of the selection
    virtual void ShowMenu();

    /// Asks where the focus, or one of its handles, is to go. @return whether `drag` holds an answer
    bool Locate(TEdcDrawDrag &drag, TEdcDrawHandle *handle);
    void ApplyDrag(TEdcDrawDrag &drag); // to the focus and then to the rest of the selection
    /// Asks how to align along a line. `count` NULL: the selection; else it gets the number to make.
    bool AlignQuery(TEdcDrawAlign &spec, const AgPOINT &org, const AgPOINT &end, int *count);
    void Align(const TEdcDrawAlign &spec);

    TEdcAxes *Axes() const { return axes; }
    TEdcDrawSprite *DrawFocus() const;
    double PickTolerance() const { return pickTolerance; }
    int HandleWidth() const { return handleWidth; }
    int HandleHeight() const { return handleHeight; }
    // Of a sprite in its state: black when idle, blue when active, green on black when selected.
    TColor LineColor(uint16_t spriteState) const;
    TColor FillColor(uint16_t spriteState) const;

protected:
    TPoint menuPoint;                  // px, of the last right click or double click
    TEdcDrawHandle *menuHandle = NULL; // view; what was under it
    TEdcAxes *axes;                    // view
    TColor colorIdle = WIN_BLACK;
    TColor colorActive = {0, 0, 255};
    TColor colorSelected = {0, 255, 0};
    TColor fillIdle = WIN_WHITE;
    TColor fillSelected = WIN_BLACK;
    int32_t handleWidth = 0, handleHeight = 0; // px
    double pickTolerance = 0;                  // m

private:
    void PlaceExactly();
};

class TEdcDrawSprite : public TEdcSprite
{
public:
    explicit TEdcDrawSprite(int aType);
    TEdcDrawSprite(const TEdcDrawSprite &other); // takes the type alone

    void SetTool(int id) override;
    void Layout(TDC &dc) override;
    bool InRect(const TRect &rect) override;
    bool HitTest(TPoint point) override; // a handle of the focus
    void DragBegin(TDC &dc, unsigned mode, TPoint start, TPoint shift) override;
    void DragMove(TDC &dc, unsigned mode, TPoint start, TPoint shift) override;
    void DragEnd(TDC &dc, unsigned mode, TPoint start, TPoint shift) override;
    void DragHide(TDC &dc, bool on) override;
    void Decorate(TDC &dc) override;

    virtual void Recompute() {} // metres, from the shape's parameters
    virtual void Describe(TEdcDrawDesc &d, double refAngle);
    /// Carries out a step for good. @return who took it, this or its new copy
    virtual TEdcDrawSprite *Apply(TEdcDrawDrag &drag);
    virtual void Commit(TDC &dc);                // what follows a drop
    virtual void DragUpdate(TEdcDrawDrag &drag); // computes the ghost
    virtual void DragPaint(TDC &dc);             // inverts it

    TEdcDrawHandle *HandleAt(TPoint point); // the first one there, NULL for none
    const TEdcDrawDesc &Desc() const { return desc; }
    int Type() const { return type; }
    TEdcDrawLayer *DrawLayer() const; // asserts that there is one
    TEdcAxes &Axes() const;           // of the layer

    static bool IsDragging() { return dragging; }
    static bool IsCopying() { return dragCopy; }
    static const TEdcDrawDrag *RunningDrag(); // the focus' last step; NULL while nothing is dragged
    static void ForgetDrag() { dragging = dragCopy = false; }

protected:
    void MakeHandles(const AgPOINT *points, const TPoint *device, int n);
    bool MakeDrag(TEdcDrawDrag &drag, unsigned mode, TPoint start, TPoint shift, bool first);

    TEdcDrawDesc desc;
    int type; // what kind of thing it is
    int toolId = 0;
    ARRAY<TEdcDrawHandle> handles;
    bool hidden = false; // the pointer is outside
    bool dragOk = false; // takes part in the drag

private:
    void ChooseDrag(unsigned mode, TPoint start, TPoint shift);
    void MakeMove(TEdcDrawDrag &drag, unsigned mode, TPoint shift) const;
    void MakeTurn(TEdcDrawDrag &drag, unsigned mode, TPoint pointer) const;
    AgVECTOR NearestSnap(std::initializer_list<AgPOINT> points, const AgVECTOR &move) const;
    void ShowGhost(TDC &dc, TEdcDrawDrag &drag);

    static bool dragging; // one drag at a time
    static bool dragCopy;
};

/// A shape between corners, each of them a handle: what lines and rectangles have in common. A drag moves it,
/// turns it about a pivot, or takes one corner along while the opposite one stays.
class TEdcDrawShape : public TEdcDrawSprite
{
public:
    enum : uint16_t { FRAMEONLY = 1, SOLID = 2 }; // FRAMEONLY: the inside cannot be hit

    void SetTool(int id) override;
    void Layout(TDC &dc) override;
    bool HitTest(TPoint point) override;
    void Recompute() override;
    void Describe(TEdcDrawDesc &d, double refAngle) override;
    TEdcDrawSprite *Apply(TEdcDrawDrag &drag) override;
    void DragUpdate(TEdcDrawDrag &drag) override;
    void DragPaint(TDC &dc) override;
    virtual void Store() {}             // into the object of the model
    virtual TEdcDrawShape *Clone() = 0; // with a copy of that object

    const AgPOINT &Centre() const { return centre; }

protected:
    enum { CORNERSMAX = 4 };
    struct SHAPE {     // what a drag changes
        AgVECTOR size; // m, signed; of a line its length and 0
        AgPOINT centre;
        double angle = 0; // rad
    };
    /// Where a shape keeps what follows from that. The outline runs through the corners in turn.
    struct POINTS {
        int corners, outline; // how many
        AgPOINT *model;       // m, the corners
        TPoint *device;       // px, the outline
        TPoint *ghost;        // px, that of the ghost
    };
    TEdcDrawShape(int aType, uint16_t aKind) : TEdcDrawSprite(aType), kind(aKind) {}
    TEdcDrawShape(const TEdcDrawShape &other);

    virtual POINTS Points() = 0;
    virtual AgVECTOR Extents() const = 0;
    virtual void SetExtents(const AgVECTOR &extents) = 0;
    /// A corner is taken along: size and angle for `d` (m) from the opposite one to it.
    virtual void Reshape(SHAPE &s, int corner, const AgVECTOR &d) const = 0;

    uint16_t kind;
    AgPOINT centre;
    double angle = 0; // rad

private:
    SHAPE Now() const { return {Extents(), centre, angle}; }
    SHAPE Dragged(const TEdcDrawDrag &drag);
    void Take(const SHAPE &s);
    void FindOutline(TPoint *outline, const AgPOINT *corners);
};

class TEdcDrawLine : public TEdcDrawShape
{
public:
    TEdcDrawLine(int aType, const AgPOINT &from, const AgPOINT &to);
    TEdcDrawLine(int aType, const TEdcDrawCreation &creation); // two points
    TEdcDrawLine(const TEdcDrawLine &other);

    void Paint(TDC &dc) override;
    TEdcDrawLine *Clone() override;

    double Length() const { return length; }
    double LineAngle() const { return angle; }

protected:
    POINTS Points() override;
    AgVECTOR Extents() const override { return {length, 0}; }
    void SetExtents(const AgVECTOR &extents) override { length = extents.x; }
    void Reshape(SHAPE &s, int corner, const AgVECTOR &d) const override;

    double length; // m
    AgPOINT ends[2];
    TPoint devEnds[2];  // px
    TPoint dragEnds[2]; // px, of the ghost
};

class TEdcDrawRect : public TEdcDrawShape
{
public:
    explicit TEdcDrawRect(int aType);                          // the shape comes from the object of the model
    TEdcDrawRect(int aType, const TEdcDrawCreation &creation); // two opposite corners
    TEdcDrawRect(const TEdcDrawRect &other);

    void Paint(TDC &dc) override;
    TEdcDrawRect *Clone() override;

    const AgVECTOR &Size() const { return size; }
    double RectAngle() const { return angle; }

protected:
    POINTS Points() override;
    AgVECTOR Extents() const override { return size; }
    void SetExtents(const AgVECTOR &extents) override { size = extents; }
    void Reshape(SHAPE &s, int corner, const AgVECTOR &d) const override;

    AgVECTOR size; // m; negative where a handle was dragged across
    AgPOINT corners[4];
    TPoint devCorners[5];  // px, the fifth closes
    TPoint dragCorners[5]; // px, of the ghost
};

/// Shows a tool's cursor while the tool is active, and what was there before afterwards.
void EdcSwapCursor(bool on, bool &active, const TCursor &cursor, TCursor &saved);

/// The selector with the cursors of plans.
class TEdcDrawSelector : public TEdcSpriteSelector
{
public:
    TEdcDrawSelector(int aId, int cursorId, int copyId); // copyId 0: none
    void Activate(bool on) override;
    void MouseMove(TDC &dc, unsigned keys, TPoint point) override;
    void Drop(TDC &dc, unsigned keys, TPoint point) override;

private:
    void Show(TPoint point);
    bool activeNow = false;
    TCursor cursor, cursorCopy, cursorSaved;
    bool hasCopy;
};

class TEdcDrawTool : public TEdcSpriteTool
{
public:
    TEdcDrawTool(int aId, int cursorId);
    void Activate(bool on) override; // swaps the document window's cursor

protected:
    TEdcAxes &Axes() const;
    TEdcDrawLayer *DrawLayer() const;
    bool activeNow = false;
    TCursor cursor, cursorSaved;
};

/// Follows a press of the left button to its release and draws meanwhile what will come of it; drawn twice that
/// is gone. The other button takes the gesture back. A click of that button leads to the next tool, or asks
/// anew for the parameters of what will be made.
class TEdcDrawGestureTool : public TEdcDrawTool
{
public:
    TEdcDrawGestureTool(int aId, int cursorId, int aNextCommand);
    void Activate(bool on) override;
    void LeftDown(TDC &dc, unsigned keys, TPoint point) override;
    void LeftUp(TDC &dc, unsigned keys, TPoint point) override;
    void RightDown(TDC &dc, unsigned keys, TPoint point) override;
    void RightUp(TDC &dc, unsigned keys, TPoint point) override;
    void MouseMove(TDC &dc, unsigned keys, TPoint point) override;
    void Outside(TDC &dc, bool on) override;
    virtual bool Finish() = 0; // whether the tool is done

protected:
    virtual void Begin(TPoint point) = 0; // a press
    virtual bool IsMove(unsigned keys, TPoint point) const;
    virtual void Follow(unsigned keys, TPoint point) = 0; // a move
    virtual void Draw(TDC &dc) = 0;
    virtual AgPOINT Place(TPoint point) const; // m, what an event there stands for
    virtual void Ask(bool first);              // for parameters; `first` forgets the former ones
    TEdcDrawSprite *Make(const TEdcDrawCreation &creation);

    int nextCommand;                       // given when the tool is done; 0 for none
    int32_t leftState = 0, rightState = 0; // 0 idle, 1 pressed
    bool drawn = false;                    // and not yet taken away, but for being hidden while outside
    bool outside = false;

private:
    void Erase(TDC &dc);
};

/// Draws a line and aligns the selection along it.
class TEdcDrawAligner : public TEdcDrawGestureTool
{
public:
    using TEdcDrawGestureTool::TEdcDrawGestureTool;
    bool Finish() override;
    virtual void DrawLine(TDC &dc);

protected:
    void Begin(TPoint point) override { start = end = point; }
    bool IsMove(unsigned keys, TPoint point) const override { return Pulled(keys, point) != end; }
    void Follow(unsigned keys, TPoint point) override { end = Pulled(keys, point); }
    void Draw(TDC &dc) override { DrawLine(dc); }

    TPoint start, end; // px

private:
    TPoint Pulled(unsigned keys, TPoint point) const;
};

/// Places one new object at a click, a row of them along a line.
class TEdcDrawStockCreator : public TEdcDrawAligner
{
public:
    using TEdcDrawAligner::TEdcDrawAligner;
    void Activate(bool on) override;
    bool Finish() override;

protected:
    void Ask(bool first) override;
    void *stock = NULL; // view: the layer's parameters for new objects

private:
    void PlaceOne(const AgPOINT &at);
    void PlaceRow(const AgPOINT &from, const AgPOINT &to);
    TEdcDrawSprite *CreateOne();
};

/// Creates a shape from a drawn line.
class TEdcDrawLineCreator : public TEdcDrawGestureTool
{
public:
    TEdcDrawLineCreator(int aId, int cursorId, int aNextCommand, uint16_t someFlags);
    void Activate(bool on) override;
    bool Finish() override;
    virtual void Constrain(unsigned keys); // Shift: an axis; Ctrl: the press is the middle
    virtual void DrawShape(TDC &dc);

protected:
    void Begin(TPoint point) override { origin = start = end = Place(point); }
    void Follow(unsigned keys, TPoint point) override;
    void Draw(TDC &dc) override { DrawShape(dc); }
    AgPOINT Place(TPoint point) const override; // on the grid
    void Ask(bool first) override;

    uint16_t flags;             // of what it creates
    void *stock = NULL;         // view: the layer's parameters for new objects
    AgPOINT origin, start, end; // m, on the grid
};

/// Creates a shape from a drawn rectangle; Shift makes it square.
class TEdcDrawRectCreator : public TEdcDrawLineCreator
{
public:
    TEdcDrawRectCreator(int aId, int cursorId, int aNextCommand, uint16_t someFlags);
    void Constrain(unsigned keys) override;
    void DrawShape(TDC &dc) override;
};

#endif
