#include "win/window.h"

#include "lib/disk.h"
#include "lib/platform.h"
#include "lib/xassert.h"
#include "win/cursor.h"
#include "win/guard.h"
#include "win/paintdc.h"
#include "win/surface.h"
#include "win/utf8.h"

#include <QAbstractScrollArea>
#include <QCloseEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QRegion>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace
{
enum { REGION_MAX = 8 };      // rectangles of an invalid region, beyond which it is its bounds
enum { RETRY_TIME = 20 };     // ms between two looks whether a repair section has ended
constexpr double NOTCH = 120; // the toolkit's units of one notch

TWindow *captureWindow = NULL; // view; who has the mouse
int paintsUnderWay = 0;

QWidget *ToWidget(TNativeWidget *widget)
{
    return reinterpret_cast<QWidget *>(widget);
}

QRect ToQt(const TRect &r)
{
    return {r.left, r.top, r.Width(), r.Height()};
}

TRect FromQt(const QRect &r)
{
    return {r.left(), r.top(), r.left() + r.width(), r.top() + r.height()};
}

/// All toolkit units that the device pixels touch.
QRect Outward(const TRect &r, double ratio)
{
    auto floor = [ratio](int v) { return static_cast<int>(std::floor(v / ratio)); };
    auto ceil = [ratio](int v) { return static_cast<int>(std::ceil(v / ratio)); };
    int left = floor(r.left), top = floor(r.top);
    return {left, top, ceil(r.right) - left, ceil(r.bottom) - top};
}

/// All device pixels that the toolkit's units touch.
TRect Covering(const QRect &r, double ratio)
{
    auto floor = [ratio](int v) { return static_cast<int>(std::floor(v * ratio)); };
    auto ceil = [ratio](int v) { return static_cast<int>(std::ceil(v * ratio)); };
    return {floor(r.left()), floor(r.top()), ceil(r.left() + r.width()), ceil(r.top() + r.height())};
}

unsigned KeysOf(Qt::KeyboardModifiers modifiers)
{
    return (modifiers.testFlag(Qt::ShiftModifier) ? unsigned{WIN_KEY_SHIFT} : 0U) |
           (modifiers.testFlag(Qt::ControlModifier) ? unsigned{WIN_KEY_CTRL} : 0U);
}

TVirtualKey KeyOf(int key)
{
    static const struct {
        int native;
        TVirtualKey key;
    } table[] = {
        {Qt::Key_PageUp, WIN_VK_PRIOR},  {Qt::Key_PageDown, WIN_VK_NEXT}, {Qt::Key_End, WIN_VK_END},
        {Qt::Key_Home, WIN_VK_HOME},     {Qt::Key_Left, WIN_VK_LEFT},     {Qt::Key_Up, WIN_VK_UP},
        {Qt::Key_Right, WIN_VK_RIGHT},   {Qt::Key_Down, WIN_VK_DOWN},     {Qt::Key_Escape, WIN_VK_ESCAPE},
        {Qt::Key_Delete, WIN_VK_DELETE}, {Qt::Key_Return, WIN_VK_RETURN}, {Qt::Key_Enter, WIN_VK_RETURN},
    };
    for (const auto &entry : table)
        if (entry.native == key)
            return entry.key;
    return WIN_VK_OTHER;
}

/// The one local file that is dragged; empty for anything else.
QString DroppedFile(const QMimeData *data)
{
    QList<QUrl> urls = data->urls();
    return urls.size() == 1 && urls.front().isLocalFile() ? urls.front().toLocalFile() : QString();
}

/// Now, or once no failure is on its way any more: what a handler raises in a repair section ends the process.
void WhenWhole(QObject *context, std::function<void()> notice)
{
    if (xDepth == 0 && !XPending())
        return notice();
    QTimer::singleShot(RETRY_TIME, context,
                       [context, notice = std::move(notice)] { WhenWhole(context, notice); });
}
} // namespace

/// What a window has behind it. A window of other widgets (frame, bars) has `widget` only.
struct TWindow::Impl {
    class Area;

    explicit Impl(TWindow &aWindow) : window(aWindow) {}
    double Ratio() const { return widget ? widget->devicePixelRatioF() : 1.0; }
    QRegion All() const { return QRegion(0, 0, extent.cx, extent.cy); }
    void Invalidate(const QRegion &region, bool withErase);
    void PaintInvalid();
    void PaintNow(const QRegion &region, bool erased);
    void ShowCursor();

    TWindow &window;
    std::vector<TWindow *> children; // views
    QPointer<QWidget> widget;        // owned; NULL before Create(), or when its parent took it along
    Area *area = NULL;               // view: `widget`, where it is a client area
    std::unique_ptr<TSurface> backing;
    TSize extent;          // px, of the client area
    QRegion invalid;       // px
    bool erase = false;    // the invalid region is filled with white before it is painted
    bool painting = false; // Paint is under way
    bool retrying = false; // a paint event waits for the end of a repair section
    bool barOn[2] = {true, true};
    TCursor cursor;
};

/// The client area's widget: turns the toolkit's events into the window's messages.
class TWindow::Impl::Area : public QAbstractScrollArea
{
public:
    Area(Impl &anImpl, QWidget *parent);
    ~Area() override;

    Impl *impl;   // view; NULL once the window is gone
    int busy = 0; // messages of the window under way

    double Ratio() const { return viewport()->devicePixelRatioF(); }
    void Update(const TRect &part) { viewport()->update(Outward(part, Ratio())); }
    /// The backing image follows the viewport's extent and the screen's scale. True where they changed.
    bool MatchBacking();
    void ShowDamage();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    template <class MESSAGE>
    void Send(MESSAGE message);
    template <class MESSAGE>
    void Notify(MESSAGE message);
    using BUTTON = void (TWindow::*)(unsigned, TPoint);
    void SendButton(QMouseEvent *event, BUTTON left, BUTTON right);
    TPoint PointOf(QPointF position) const;
    void CatchUp();
    void PaintOrWait(const QRegion &shown);
    void SendSize(TSizeKind kind);
    TSizeKind ShownKind() const;
    void LoseCapture();
};

/// Passes an input message on. While a message box stands over a repair section there is no input.
template <class MESSAGE>
void TWindow::Impl::Area::Send(MESSAGE message)
{
    if (!impl || xDepth != 0)
        return;
    ++busy;
    GuardedCall([&] { message(impl->window); });
    --busy;
}

/// Passes on what must not get lost, later where it has to be.
template <class MESSAGE>
void TWindow::Impl::Area::Notify(MESSAGE message)
{
    WhenWhole(this, [this, message] { Send(message); });
}

TWindow::Impl::Area::Area(Impl &anImpl, QWidget *parent) : QAbstractScrollArea(parent), impl(&anImpl)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    setContextMenuPolicy(Qt::PreventContextMenu);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setAttribute(Qt::WA_NoSystemBackground);
    viewport()->setAutoFillBackground(false);
}

TWindow::Impl::Area::~Area()
{
    if (impl)
        impl->area = NULL;
}

TPoint TWindow::Impl::Area::PointOf(QPointF position) const
{
    double ratio = Ratio();
    return {static_cast<int>(std::floor(position.x() * ratio)),
            static_cast<int>(std::floor(position.y() * ratio))};
}

bool TWindow::Impl::Area::MatchBacking()
{
    double ratio = Ratio();
    TSize wanted = {qRound(viewport()->width() * ratio), qRound(viewport()->height() * ratio)};
    int dpi = qRound(96 * ratio);
    if (impl->extent == wanted && impl->backing->DpiX() == dpi)
        return false;
    impl->backing->Resize(wanted, dpi);
    impl->extent = wanted;
    impl->Invalidate(impl->All(), true);
    return true;
}

void TWindow::Impl::Area::ShowDamage()
{
    if (!impl || !impl->backing)
        return;
    TRect damage = impl->backing->TakeDamage();
    if (!damage.IsEmpty())
        Update(damage);
}

/// A handler of the mouse finds what is on the screen up to date: what it draws by exclusive-or would else be
/// painted over.
void TWindow::Impl::Area::CatchUp()
{
    if (impl && !impl->painting && !impl->invalid.isEmpty())
        impl->window.UpdateWindow();
}

void TWindow::Impl::Area::PaintOrWait(const QRegion &shown)
{
    if (impl->painting || impl->invalid.isEmpty())
        return;
    if (xDepth == 0 && !XPending()) {
        QRegion rest = QRegion(Outward(FromQt(impl->invalid.boundingRect()), Ratio())) - shown;
        viewport()->update(rest);
        return impl->PaintInvalid();
    }
    if (impl->retrying)
        return;
    impl->retrying = true;
    WhenWhole(this, [this] {
        if (!impl)
            return;
        impl->retrying = false;
        viewport()->update();
    });
}

void TWindow::Impl::Area::paintEvent(QPaintEvent *event)
{
    if (!impl || !impl->backing)
        return;
    bool changed = false;
    GuardedCall([&] { changed = MatchBacking(); });
    if (changed)
        QTimer::singleShot(0, this, [this] { SendSize(ShownKind()); });
    PaintOrWait(event->region());
    if (!impl)
        return;

    double ratio = Ratio();
    QPainter painter(viewport());
    // Where the scale leaves a fraction of a pixel at the right and at the bottom, no image covers it.
    QRect all = viewport()->rect();
    if (ratio != std::floor(ratio)) {
        painter.fillRect(all.right(), 0, 1, all.height(), Qt::white);
        painter.fillRect(0, all.bottom(), all.width(), 1, Qt::white);
    }
    TRect part = Covering(event->rect(), ratio) & TRect{0, 0, impl->extent.cx, impl->extent.cy};
    if (!part.IsEmpty())
        impl->backing->BlitTo(reinterpret_cast<TNativePainter *>(&painter), part, ratio);
}

TSizeKind TWindow::Impl::Area::ShownKind() const
{
    if (window()->isMinimized())
        return WIN_SIZE_MINIMIZED;
    return window()->isMaximized() || window()->isFullScreen() ? WIN_SIZE_MAXIMIZED : WIN_SIZE_RESTORED;
}

void TWindow::Impl::Area::SendSize(TSizeKind kind)
{
    bool gone = kind == WIN_SIZE_MINIMIZED || kind == WIN_SIZE_HIDDEN;
    Notify([kind, gone](TWindow &to) { to.EvSize(kind, gone ? TSize() : to.impl->extent); });
}

void TWindow::Impl::Area::resizeEvent(QResizeEvent *)
{
    if (!impl || !impl->backing)
        return;
    GuardedCall([this] {
        MatchBacking();
        impl->window.ShowBars();
    });
    SendSize(ShownKind());
}

void TWindow::Impl::Area::showEvent(QShowEvent *event)
{
    window()->installEventFilter(this);
    QAbstractScrollArea::showEvent(event);
}

void TWindow::Impl::Area::hideEvent(QHideEvent *event)
{
    QAbstractScrollArea::hideEvent(event);
    if (!impl || event->spontaneous())
        return;
    LoseCapture();
    SendSize(WIN_SIZE_HIDDEN);
}

void TWindow::Impl::Area::closeEvent(QCloseEvent *event)
{
    bool close = false;
    Send([&close](TWindow &to) { close = to.CanClose(); });
    event->setAccepted(close);
}

bool TWindow::Impl::Area::event(QEvent *event)
{
    if (event->type() == QEvent::ScreenChangeInternal && impl && impl->backing) {
        bool changed = false;
        GuardedCall([&] { changed = MatchBacking(); });
        if (changed)
            SendSize(ShownKind());
    }
    return QAbstractScrollArea::event(event);
}

/// What happens to the whole window on the desktop.
bool TWindow::Impl::Area::eventFilter(QObject *object, QEvent *event)
{
    if (impl && object == window()) {
        if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::WindowDeactivate)
            LoseCapture();
        if (event->type() == QEvent::WindowStateChange) {
            auto before = static_cast<QWindowStateChangeEvent *>(event)->oldState();
            if (window()->isMinimized() || before.testFlag(Qt::WindowMinimized))
                SendSize(ShownKind());
        }
    }
    return QAbstractScrollArea::eventFilter(object, event);
}

void TWindow::Impl::Area::LoseCapture()
{
    if (!impl || captureWindow != &impl->window)
        return;
    captureWindow = NULL;
    Notify([](TWindow &to) { to.EvCaptureLost(); });
}

/// The bars were used.
void TWindow::Impl::Area::scrollContentsBy(int, int)
{
    Send([this](TWindow &to) {
        if (to.scroller)
            to.scroller->ScrollTo(horizontalScrollBar()->value(), verticalScrollBar()->value());
    });
}

void TWindow::Impl::Area::SendButton(QMouseEvent *event, BUTTON left, BUTTON right)
{
    CatchUp();
    unsigned keys = KeysOf(event->modifiers());
    TPoint at = PointOf(event->position());
    if (event->button() == Qt::LeftButton)
        Send([=](TWindow &to) { (to.*left)(keys, at); });
    if (event->button() == Qt::RightButton)
        Send([=](TWindow &to) { (to.*right)(keys, at); });
}

void TWindow::Impl::Area::mousePressEvent(QMouseEvent *event)
{
    SendButton(event, &TWindow::EvLButtonDown, &TWindow::EvRButtonDown);
}

void TWindow::Impl::Area::mouseReleaseEvent(QMouseEvent *event)
{
    SendButton(event, &TWindow::EvLButtonUp, &TWindow::EvRButtonUp);
}

void TWindow::Impl::Area::mouseDoubleClickEvent(QMouseEvent *event)
{
    SendButton(event, &TWindow::EvLButtonDblClk, &TWindow::EvRButtonDown);
}

/// The toolkit holds the mouse while a button is down; only who has captured it hears of what is outside.
void TWindow::Impl::Area::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() != Qt::NoButton)
        CatchUp();
    unsigned keys = KeysOf(event->modifiers());
    TPoint at = PointOf(event->position());
    Send([=](TWindow &to) {
        if (to.HasCapture() || to.GetClientRect().Contains(at))
            to.EvMouseMove(keys, at);
    });
}

void TWindow::Impl::Area::wheelEvent(QWheelEvent *event)
{
    unsigned keys = KeysOf(event->modifiers());
    TPoint at = PointOf(event->position());
    QPointF notches = QPointF(event->angleDelta()) / NOTCH;
    Send([=](TWindow &to) { to.EvMouseWheel(keys, at, notches.x(), notches.y()); });
    event->accept();
}

/// Keys without a meaning here stay free for the frame.
void TWindow::Impl::Area::keyPressEvent(QKeyEvent *event)
{
    unsigned keys = KeysOf(event->modifiers());
    TVirtualKey key = KeyOf(event->key());
    event->setAccepted(key != WIN_VK_OTHER);
    Send([=](TWindow &to) { to.EvKeyDown(key, keys); });
}

void TWindow::Impl::Area::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    Notify([](TWindow &to) { to.EvSetFocus(); });
}

void TWindow::Impl::Area::dragEnterEvent(QDragEnterEvent *event)
{
    event->setAccepted(!DroppedFile(event->mimeData()).isEmpty());
}

void TWindow::Impl::Area::dragMoveEvent(QDragMoveEvent *event)
{
    event->setAccepted(!DroppedFile(event->mimeData()).isEmpty());
}

/// The message comes once the drop is done with: it may ask the user, and the other program waits for us.
void TWindow::Impl::Area::dropEvent(QDropEvent *event)
{
    QByteArray native = DroppedFile(event->mimeData()).toUtf8();
    event->setAccepted(!native.isEmpty());
    if (native.isEmpty())
        return;
    QTimer::singleShot(0, this, [this, native] {
        Send([&native](TWindow &to) {
            char name[NATIVE_MAX];
            if (NameFromNative(name, native.constData(), NATIVE_MAX))
                to.EvDropFile(name);
            else
                Message(ResText(1014), name);
        });
    });
}

void TWindow::Impl::Invalidate(const QRegion &region, bool withErase)
{
    QRegion part = region & All();
    if (part.isEmpty())
        return;
    invalid |= part;
    if (invalid.rectCount() > REGION_MAX)
        invalid = invalid.boundingRect();
    erase |= withErase;
    if (area)
        area->Update(FromQt(part.boundingRect()));
}

/// Paints into the backing image, in the paint event. The region counts as painted whatever comes of it, or a
/// window that cannot paint would do nothing else any more.
void TWindow::Impl::PaintInvalid()
{
    QRegion region = std::exchange(invalid, QRegion());
    bool erased = std::exchange(erase, false);
    area->ShowDamage();
    painting = true;
    ++paintsUnderWay;
    QPointer<Area> alive = area;
    XCODE failed = GuardedFailure([&] { PaintNow(region, erased); });
    --paintsUnderWay;
    if (failed != XNULL) // a box must not open within a paint event
        QTimer::singleShot(0, qApp, [failed] { ReportFailure(failed); });
    if (!alive || !alive->impl)
        return;
    painting = false;
    backing->TakeDamage();  // what was painted is shown by the paint event
    if (!invalid.isEmpty()) // under a message box, whose events only blit
        area->Update(FromQt(invalid.boundingRect()));
}

void TWindow::Impl::PaintNow(const QRegion &region, bool erased)
{
    if (erased) {
        TPaintDC dc(*backing, FromQt(region.boundingRect()));
        for (const QRect &rect : region)
            dc.FillRect(FromQt(rect), SolidBrush(WIN_WHITE));
    }
    for (const QRect &rect : region) {
        TPaintDC dc(*backing, FromQt(rect));
        window.Paint(dc, erased, FromQt(rect));
        if (XPending())
            break;
    }
}

void TWindow::Impl::ShowCursor()
{
    if (area)
        SetNativeCursor(reinterpret_cast<TNativeWidget *>(area->viewport()), cursor);
}

TWindow::TWindow(TWindow *aParent, const char *title)
    : parent(aParent), caption(title), impl(std::make_unique<Impl>(*this))
{
    if (parent)
        parent->impl->children.push_back(this);
}

TWindow::~TWindow()
{
    SetParent(NULL);
    for (TWindow *child : impl->children)
        child->parent = NULL;
    if (captureWindow == this)
        captureWindow = NULL;
    Impl::Area *area = std::exchange(impl->area, static_cast<Impl::Area *>(NULL));
    if (area)
        area->impl = NULL;
    if (area && area->busy > 0) { // it stands below us on the stack
        area->hide();
        area->deleteLater();
    } else {
        delete impl->widget.data();
    }
}

void TWindow::SetParent(TWindow *window)
{
    if (parent)
        std::erase(parent->impl->children, this);
    parent = window;
    if (parent)
        parent->impl->children.push_back(this);
}

void TWindow::Create()
{
    if (IsCreated())
        return;
    impl->backing = TSurface::Image({1, 1}, Dpi());
    auto *area = new Impl::Area(*impl, parent ? ToWidget(parent->Native()) : NULL);
    impl->area = area;
    impl->widget = area;
    impl->backing->onDamage = [this] {
        if (impl->area && !impl->painting)
            QMetaObject::invokeMethod(
                impl->area, [shown = impl->area] { shown->ShowDamage(); }, Qt::QueuedConnection);
    };
    impl->ShowCursor();
    ShowBars();
    SetCaption(std::string(caption).c_str());
    area->MatchBacking();
    area->show();
}

void TWindow::AdoptWidget(TNativeWidget *widget)
{
    ASSERT(!widget || !IsCreated());
    impl->widget = ToWidget(widget);
}

bool TWindow::IsCreated() const
{
    return !impl->widget.isNull();
}

TNativeWidget *TWindow::Native() const
{
    return reinterpret_cast<TNativeWidget *>(impl->widget.data());
}

void TWindow::SetCaption(const char *text)
{
    caption = text;
    if (impl->widget && impl->widget->isWindow())
        impl->widget->setWindowTitle(QString::fromStdString(ToUtf8(text)).replace("[*]", "[*][*]"));
}

TRect TWindow::GetClientRect() const
{
    if (impl->area || !impl->widget)
        return {0, 0, impl->extent.cx, impl->extent.cy};
    double ratio = impl->Ratio();
    return {0, 0, qRound(impl->widget->width() * ratio), qRound(impl->widget->height() * ratio)};
}

int TWindow::Dpi() const
{
    if (impl->widget)
        return qRound(96 * impl->Ratio());
    QScreen *screen = qGuiApp ? QGuiApplication::primaryScreen() : NULL;
    return screen ? qRound(96 * screen->devicePixelRatio()) : 96;
}

void TWindow::Invalidate(bool erase)
{
    InvalidateRect(GetClientRect(), erase);
}

void TWindow::InvalidateRect(const TRect &rect, bool erase)
{
    TRect part = rect & GetClientRect();
    if (!part.IsEmpty())
        impl->Invalidate(QRegion(ToQt(part)), erase);
}

void TWindow::UpdateWindow()
{
    if (!impl->area && impl->widget)
        impl->widget->repaint();
    if (!impl->area)
        return;
    impl->area->ShowDamage();
    if (NeedsPaint() && paintsUnderWay == 0) // else the next paint event does it
        impl->area->viewport()->repaint(Outward(FromQt(impl->invalid.boundingRect()), impl->Ratio()));
}

bool TWindow::NeedsPaint() const
{
    return !impl->invalid.isEmpty();
}

TSurface *TWindow::BackingSurface() const
{
    return impl->backing.get();
}

void TWindow::SetCapture()
{
    TWindow *former = std::exchange(captureWindow, this);
    if (former && former != this)
        former->EvCaptureLost();
}

void TWindow::ReleaseCapture()
{
    if (HasCapture())
        captureWindow = NULL;
}

bool TWindow::HasCapture() const
{
    return captureWindow == this;
}

TCursor TWindow::SetCursor(const TCursor &cursor)
{
    TCursor former = std::exchange(impl->cursor, cursor);
    if (!(former == cursor))
        impl->ShowCursor();
    return former;
}

void TWindow::SetFocus()
{
    if (impl->widget)
        impl->widget->setFocus();
}

TPoint TWindow::ClientToScreen(TPoint p) const
{
    if (!impl->widget)
        return p;
    QWidget *client = impl->area ? impl->area->viewport() : impl->widget.data();
    double ratio = impl->Ratio();
    QPoint at = client->mapToGlobal(QPointF(p.x / ratio, p.y / ratio)).toPoint();
    return {at.x(), at.y()};
}

void TWindow::SetScroller(std::unique_ptr<TScroller> s)
{
    scroller = std::move(s);
    ShowBars();
}

void TWindow::EnableScrollBar(TBar bar, bool on)
{
    if (bar != WIN_BAR_VERTICAL)
        impl->barOn[WIN_BAR_HORIZONTAL] = on;
    if (bar != WIN_BAR_HORIZONTAL)
        impl->barOn[WIN_BAR_VERTICAL] = on;
    ShowBars();
}

bool TWindow::IsScrollBarEnabled(TBar bar) const
{
    ASSERT(bar != WIN_BAR_BOTH);
    return scroller && impl->barOn[bar];
}

bool TWindow::CanClose()
{
    std::vector<TWindow *> children = impl->children;
    return std::all_of(children.begin(), children.end(), [](TWindow *child) { return child->CanClose(); });
}

bool TWindow::IdleAction(long)
{
    return false;
}

void TWindow::EvCommand(int) {}
void TWindow::EvCommandEnable(TCommandEnabler &) {}
void TWindow::Paint(TDC &, bool, const TRect &) {}
void TWindow::EvLButtonDown(unsigned, TPoint) {}
void TWindow::EvLButtonUp(unsigned, TPoint) {}
void TWindow::EvLButtonDblClk(unsigned, TPoint) {}
void TWindow::EvRButtonDown(unsigned, TPoint) {}
void TWindow::EvRButtonUp(unsigned, TPoint) {}
void TWindow::EvMouseMove(unsigned, TPoint) {}
void TWindow::EvSize(TSizeKind, TSize) {}
void TWindow::EvSetFocus() {}
void TWindow::EvKeyDown(TVirtualKey, unsigned) {}
void TWindow::EvDropFile(const char *) {}
void TWindow::EvCaptureLost() {}

void TWindow::ShiftPicture(int64_t dx, int64_t dy)
{
    if (!impl->area)
        return;
    TSize extent = impl->extent;
    if (std::abs(dx) >= extent.cx || std::abs(dy) >= extent.cy)
        return Invalidate();
    int x = static_cast<int>(dx);
    int y = static_cast<int>(dy);
    impl->area->ShowDamage();
    impl->backing->Shift(x, y);
    QRegion moved = impl->invalid.translated(x, y);
    impl->invalid = QRegion();
    impl->Invalidate(moved, false);
    impl->Invalidate(impl->All() - impl->All().translated(x, y), true);
    impl->area->viewport()->update();
    if (HasCapture()) // a drag draws on at once, so the strips must be there
        UpdateWindow();
}

void TWindow::ShowBars()
{
    if (!impl->area)
        return;
    Impl::Area &area = *impl->area;
    Qt::ScrollBarPolicy policy = scroller ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff;
    area.setHorizontalScrollBarPolicy(policy);
    area.setVerticalScrollBarPolicy(policy);
    if (!scroller)
        return;
    auto show = [this](QScrollBar &bar, TBar which, int range, int line, int page, int pos) {
        QSignalBlocker quiet(bar);
        bar.setTracking(scroller->trackMode);
        bar.setEnabled(impl->barOn[which]);
        bar.setSingleStep(line);
        bar.setPageStep(page);
        bar.setRange(0, range);
        bar.setValue(pos);
    };
    show(*area.horizontalScrollBar(), WIN_BAR_HORIZONTAL, scroller->xRange, scroller->xLine, scroller->XPage(),
         scroller->xPos);
    show(*area.verticalScrollBar(), WIN_BAR_VERTICAL, scroller->yRange, scroller->yLine, scroller->YPage(),
         scroller->yPos);
}
