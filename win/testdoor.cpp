#include "win/testdoor.h"

#include "lib/xassert.h"
#include "win/application.h"
#include "win/surface.h"
#include "win/utf8.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QBackingStore>
#include <QCloseEvent>
#include <QCursor>
#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QImage>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMimeData>
#include <QMouseEvent>
#include <QPalette>
#include <QPixmap>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QThread>
#include <QUrl>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>

namespace
{
enum { SETTLE_TURNS = 4 };   // turns of the loop: an event, what it posts, and what that posts
enum { EXPOSE_TIME = 2000 }; // ms until a window must be on the screen
enum { RESIZE_TRIES = 3 };   // layouts that give way to a new size in steps
enum { NOTCH = 120 };        // the toolkit's units of one wheel notch

QWidget *WidgetOf(TWindow &window)
{
    auto *widget = reinterpret_cast<QWidget *>(window.Native());
    ASSERT(widget != NULL);
    return widget;
}

/// The widget whose pixels are the client area.
QWidget *ClientOf(TWindow &window)
{
    QWidget *widget = WidgetOf(window);
    auto *area = dynamic_cast<QAbstractScrollArea *>(widget);
    return area && window.BackingSurface() ? area->viewport() : widget;
}

/// The middle of a device pixel.
QPointF Middle(const QWidget *widget, TPoint at)
{
    double ratio = widget->devicePixelRatioF();
    return {(at.x + 0.5) / ratio, (at.y + 0.5) / ratio};
}

Qt::KeyboardModifiers Modifiers(unsigned keys)
{
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ShiftModifier, (keys & WIN_KEY_SHIFT) != 0);
    modifiers.setFlag(Qt::ControlModifier, (keys & WIN_KEY_CTRL) != 0);
    return modifiers;
}

void SendMouse(TWindow &window, QEvent::Type type, TPoint at, Qt::MouseButton button, Qt::MouseButtons buttons,
               unsigned keys)
{
    QWidget *client = ClientOf(window);
    QPointF position = Middle(client, at);
    QMouseEvent event(type, position, client->mapToGlobal(position), button, buttons, Modifiers(keys));
    QApplication::sendEvent(client, &event);
}

Qt::MouseButton ButtonOf(testdoor::Button button)
{
    return button == testdoor::LEFT ? Qt::LeftButton : Qt::RightButton;
}

/// A platform with a display server shows a window some time after it was asked to.
void WaitUntilExposed()
{
    QElapsedTimer timer;
    timer.start();
    auto isHidden = [](const QWidget *widget) {
        return widget->isVisible() && !widget->isMinimized() && widget->windowHandle() &&
               !widget->windowHandle()->isExposed();
    };
    auto anyHidden = [isHidden] { // asked anew, for an event may delete a window
        const QWidgetList widgets = QApplication::topLevelWidgets();
        return std::any_of(widgets.begin(), widgets.end(), isHidden);
    };
    while (anyHidden() && timer.elapsed() < EXPOSE_TIME) {
        QApplication::processEvents();
        QThread::msleep(1);
    }
}

/// The nearest extent in the toolkit's units; with a broken display scale not every one in pixels exists.
QSize InUnits(TSize size, double ratio)
{
    return {qRound(size.cx / ratio), qRound(size.cy / ratio)};
}
} // namespace

namespace testdoor
{

void ResizeClient(TWindow &window, TSize size)
{
    QWidget *client = ClientOf(window);
    QWidget *top = client->window();
    for (int i = 0; i < RESIZE_TRIES; ++i) {
        QSize missing = InUnits(size, client->devicePixelRatioF()) - client->size();
        if (missing.isNull())
            break;
        top->resize(top->size() + missing);
        Settle();
    }
}

void Press(TWindow &window, TPoint at, Button button, unsigned keys)
{
    SendMouse(window, QEvent::MouseButtonPress, at, ButtonOf(button), ButtonOf(button), keys);
}

void Release(TWindow &window, TPoint at, Button button, unsigned keys)
{
    SendMouse(window, QEvent::MouseButtonRelease, at, ButtonOf(button), Qt::NoButton, keys);
}

void Click(TWindow &window, TPoint at, Button button, unsigned keys)
{
    Press(window, at, button, keys);
    Release(window, at, button, keys);
}

void DoubleClick(TWindow &window, TPoint at, unsigned keys)
{
    Click(window, at, LEFT, keys);
    SendMouse(window, QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton, keys);
    Release(window, at, LEFT, keys);
}

void Move(TWindow &window, TPoint at, unsigned keys, bool leftDown, bool rightDown)
{
    Qt::MouseButtons buttons;
    buttons.setFlag(Qt::LeftButton, leftDown);
    buttons.setFlag(Qt::RightButton, rightDown);
    SendMouse(window, QEvent::MouseMove, at, Qt::NoButton, buttons, keys);
}

void Wheel(TWindow &window, TPoint at, int notches, unsigned keys)
{
    QWidget *client = ClientOf(window);
    QPointF position = Middle(client, at);
    QWheelEvent event(position, client->mapToGlobal(position), QPoint(), QPoint(0, notches * NOTCH),
                      Qt::NoButton, Modifiers(keys), Qt::NoScrollPhase, false);
    QApplication::sendEvent(client, &event);
}

void DragThumb(TWindow &window, TBar bar, int position, bool letGo)
{
    auto *area = dynamic_cast<QAbstractScrollArea *>(WidgetOf(window));
    ASSERT(area != NULL);
    QScrollBar *thumb = bar == WIN_BAR_HORIZONTAL ? area->horizontalScrollBar() : area->verticalScrollBar();
    thumb->setSliderDown(true);
    thumb->setSliderPosition(position);
    if (letGo)
        thumb->setSliderDown(false);
}

void Drop(TWindow &window, const char *nativePath)
{
    QWidget *client = ClientOf(window);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromUtf8(nativePath))});
    QDragEnterEvent enter({1, 1}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(client, &enter);
    if (!enter.isAccepted())
        return;
    QDropEvent drop({1, 1}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(client, &drop);
}

void LoseActivation(TWindow &window)
{
    QEvent event(QEvent::WindowDeactivate);
    QApplication::sendEvent(WidgetOf(window)->window(), &event);
}

void Minimize(TWindow &window, bool on)
{
    QWidget *top = WidgetOf(window)->window();
    top->setWindowState(on ? Qt::WindowMinimized : Qt::WindowNoState);
    Settle();
}

void MoveToScreen(TWindow &window, int screen)
{
    QWidget *top = WidgetOf(window)->window();
    QScreen *target = QGuiApplication::screens().value(screen);
    ASSERT(target != NULL);
    top->setScreen(target);
    top->move(target->geometry().topLeft());
    Settle();
}

void DarkTheme(bool on)
{
    ASSERT(TApplication::Current() != NULL);
    QPalette palette = QApplication::style()->standardPalette();
    if (on)
        palette = QPalette(QColor(30, 30, 30));
    QApplication::setPalette(palette);
}

/// Between the press and the release that the hand makes, the keyboard makes its own.
void HoldKey(TWindow &window, const char *name, int repeats, unsigned keys)
{
    QKeySequence sequence(QString::fromLatin1(name), QKeySequence::PortableText);
    ASSERT(sequence.count() == 1);
    QKeyCombination key = sequence[0];
    Qt::KeyboardModifiers modifiers = key.keyboardModifiers() | Modifiers(keys);
    auto send = [&](QEvent::Type type, bool again) {
        QKeyEvent event(type, key.key(), modifiers, QString(), again);
        QApplication::sendEvent(WidgetOf(window), &event);
    };
    send(QEvent::KeyPress, false);
    for (int i = 0; i < repeats; ++i) {
        send(QEvent::KeyRelease, true);
        send(QEvent::KeyPress, true);
    }
    send(QEvent::KeyRelease, false);
}

void Key(TWindow &window, const char *name, unsigned keys)
{
    HoldKey(window, name, 0, keys);
}

std::string KeyName(const char *key)
{
    QKeySequence sequence(QString::fromLatin1(key), QKeySequence::PortableText);
    return FromUtf8(sequence.toString(QKeySequence::NativeText).toUtf8().constData());
}

bool IsWaitCursor()
{
    const QCursor *cursor = QApplication::overrideCursor();
    return cursor && cursor->shape() == Qt::WaitCursor;
}

void PostClose(TWindow &window)
{
    QApplication::postEvent(WidgetOf(window)->window(), new QCloseEvent);
}

void Settle()
{
    WaitUntilExposed();
    for (int i = 0; i < SETTLE_TURNS; ++i) {
        QApplication::sendPostedEvents();
        QApplication::processEvents();
    }
    QApplication::sendPostedEvents(NULL, QEvent::DeferredDelete);
}

bool IdleStep()
{
    TApplication *application = TApplication::Current();
    ASSERT(application != NULL);
    return application->IdleStep();
}

TColor Pixel(TWindow &window, TPoint at)
{
    TSurface *surface = window.BackingSurface();
    ASSERT(surface != NULL);
    return surface->Pixel(at);
}

std::vector<TColor> Pixels(TWindow &window)
{
    std::vector<TColor> pixels;
    TRect client = window.GetClientRect();
    for (int y = 0; y < client.bottom; ++y)
        for (int x = 0; x < client.right; ++x)
            pixels.push_back(Pixel(window, {x, y}));
    return pixels;
}

std::vector<TColor> ShownPixels(TWindow &window)
{
    QWidget *client = ClientOf(window);
    QWidget *top = client->window();
    auto *store = dynamic_cast<QImage *>(top->backingStore() ? top->backingStore()->paintDevice() : NULL);
    QImage shown = store ? *store : QImage(); // what was last sent to the screen
    QPointF origin = QPointF(client->mapTo(top, QPoint())) * client->devicePixelRatioF();
    std::vector<TColor> pixels;
    TRect area = window.GetClientRect();
    for (int y = 0; y < area.bottom; ++y) {
        for (int x = 0; x < area.right; ++x) {
            QPoint at(qRound(origin.x()) + x, qRound(origin.y()) + y);
            QRgb rgb = shown.rect().contains(at) ? shown.pixel(at) : 0;
            pixels.push_back({static_cast<uint8_t>(qRed(rgb)), static_cast<uint8_t>(qGreen(rgb)),
                              static_cast<uint8_t>(qBlue(rgb))});
        }
    }
    return pixels;
}

bool SaveScreenshot(TWindow &window, const char *nativePath)
{
    return WidgetOf(window)->window()->grab().save(QString::fromUtf8(nativePath), "PNG");
}

} // namespace testdoor
