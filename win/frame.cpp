#include "win/frame.h"

#include "lib/xfail.h"
#include "win/application.h"
#include "win/gadgets.h"
#include "win/guard.h"
#include "win/menubuild.h"
#include "win/pictures.h"
#include "win/resources.h"
#include "win/utf8.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

namespace
{
enum { RETRY_TIME = 20 }; // ms between two looks whether a posted command may come

struct TKeyCommand {
    QKeyCombination key;
    int command;
};

std::vector<TKeyCommand> ReadKeys()
{
    std::vector<TKeyCommand> keys;
    for (const ResACCEL &accel : Accelerators()) {
        QKeySequence sequence(QString::fromLatin1(accel.key), QKeySequence::PortableText);
        if (sequence.count() == 1)
            keys.push_back({sequence[0], accel.command});
    }
    return keys;
}

/// The main window. Keys are caught before the widget that has the focus sees them, and only those whose
/// command may be given just now; the others stay keys.
class TFrameWidget : public QMainWindow
{
public:
    explicit TFrameWidget(TDecoratedFrame &aFrame) : frame(aFrame) { qApp->installEventFilter(this); }

    std::vector<TKeyCommand> keys;

protected:
    void closeEvent(QCloseEvent *event) override
    {
        bool may = false;
        GuardedCall([this, &may] {
            bool answer = frame.CanClose();
            may = answer && !XPending();
        });
        event->setAccepted(may);
        TApplication *application = TApplication::Current();
        if (may && application && application->MainWindow() == &frame)
            application->Quit(0);
    }

    bool eventFilter(QObject *target, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress || !target->isWidgetType() ||
            !IsOurs(static_cast<QWidget *>(target)))
            return false;
        auto *press = static_cast<QKeyEvent *>(event);
        QKeyCombination pressed(press->modifiers() & ~Qt::KeypadModifier, static_cast<Qt::Key>(press->key()));
        for (const TKeyCommand &key : keys) {
            if (key.key != pressed || !Give(key.command, press->isAutoRepeat()))
                continue;
            press->accept();
            return true;
        }
        return false;
    }

private:
    /// A gesture with the mouse is finished first: its tool would not know what became of its block.
    bool IsOurs(const QWidget *target) const
    {
        return target->window() == this && !QApplication::activePopupWidget() &&
               !QApplication::activeModalWidget() && !frame.Client().HasCapture();
    }

    /// A key that is held down gives its command once.
    bool Give(int command, bool again) { return again ? frame.MayCommand(command) : frame.TryCommand(command); }

    TDecoratedFrame &frame;
};

/// "[*]" stands for the mark of a changed document in the toolkit's titles; twice it is the text itself.
QString TitleText(const char *caption)
{
    return QString::fromStdString(ToUtf8(caption)).replace("[*]", "[*][*]");
}
} // namespace

struct TDecoratedFrame::FrameImpl {
    struct Bar {
        TWindow *window; // view
        Place place;
    };

    TFrameWidget *widget = NULL; // owned by the window; takes the widgets of client and bars along
    std::vector<Bar> bars;
    int menuId = 0;
    int iconId = 0;
    QSize wantedSize = {1400, 1050};
    QObject mailbox; // where posted commands wait

    static void AddPart(TWindow &window, QVBoxLayout &column, int stretch)
    {
        window.Create();
        column.addWidget(reinterpret_cast<QWidget *>(window.Native()), stretch);
    }

    void AddBars(QVBoxLayout &column, Place place)
    {
        for (const Bar &bar : bars)
            if (bar.place == place)
                AddPart(*bar.window, column, 0);
    }

    void BuildMenu(TDecoratedFrame &owner)
    {
        TMenu menu = LoadMenu(menuId);
        if (menu.items.empty())
            return;
        QMenuBar *bar = widget->menuBar();
        bar->setNativeMenuBar(false);
        bar->clear();
        FillMenu(reinterpret_cast<TNativeWidget *>(static_cast<QWidget *>(bar)), menu,
                 {[&owner](TCommandEnabler &enabler) { owner.EvCommandEnable(enabler); },
                  [&owner](int id) { owner.EvCommand(id); }});
        widget->keys = ReadKeys();
    }

    void ApplyIcon()
    {
        if (iconId)
            SetNativeIcon(reinterpret_cast<TNativeWidget *>(static_cast<QWidget *>(widget)), iconId);
    }

    /// A posted command waits until nothing modal is up: a failure over a repair section would end the process.
    void Deliver(TDecoratedFrame &owner, int id)
    {
        if (xDepth == 0 && !XPending() && !QApplication::activeModalWidget() &&
            !QApplication::activePopupWidget())
            return owner.EvCommand(id);
        QTimer::singleShot(RETRY_TIME, &mailbox, [this, &owner, id] { Deliver(owner, id); });
    }

    /// Most of the screen, and all of the frame on a screen of 1024 x 768.
    void SetSize()
    {
        QSize room = widget->screen()->availableSize();
        widget->resize(wantedSize.boundedTo(room * 9 / 10));
    }
};

TDecoratedFrame::TDecoratedFrame(const char *title, TWindow &aClient)
    : TWindow(NULL, title), client(aClient), frame(std::make_unique<FrameImpl>())
{
    client.SetParent(this);
}

TDecoratedFrame::~TDecoratedFrame() = default;

void TDecoratedFrame::AssignMenu(int menuId)
{
    frame->menuId = menuId;
    if (frame->widget)
        frame->BuildMenu(*this);
}

void TDecoratedFrame::SetIcon(int pictureId)
{
    frame->iconId = pictureId;
    if (frame->widget)
        frame->ApplyIcon();
}

void TDecoratedFrame::SetWantedSize(TSize size)
{
    frame->wantedSize = {size.cx, size.cy};
}

void TDecoratedFrame::Insert(TWindow &bar, Place place)
{
    bar.SetParent(this);
    frame->bars.push_back({&bar, place});
}

void TDecoratedFrame::Remove(TWindow &bar)
{
    std::erase_if(frame->bars, [&bar](const FrameImpl::Bar &entry) { return entry.window == &bar; });
}

void TDecoratedFrame::Create()
{
    if (IsCreated())
        return;
    frame->widget = new TFrameWidget(*this);
    AdoptWidget(reinterpret_cast<TNativeWidget *>(static_cast<QWidget *>(frame->widget)));
    frame->widget->setWindowTitle(TitleText(Caption().c_str()));
    frame->ApplyIcon();
    frame->BuildMenu(*this);
    auto *center = new QWidget(frame->widget);
    auto *column = new QVBoxLayout(center);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    frame->AddBars(*column, TOP);
    frame->AddPart(client, *column, 1);
    frame->AddBars(*column, BOTTOM);
    frame->widget->setCentralWidget(center);
    frame->SetSize();
    frame->widget->show();
    client.SetFocus();
}

void TDecoratedFrame::SetCaption(const char *text)
{
    TWindow::SetCaption(text);
    if (frame->widget)
        frame->widget->setWindowTitle(TitleText(text));
}

void TDecoratedFrame::EvCommand(int id)
{
    GuardedCall([this, id] { client.EvCommand(id); });
}

void TDecoratedFrame::EvCommandEnable(TCommandEnabler &ce)
{
    GuardedCall([this, &ce] { client.EvCommandEnable(ce); });
}

bool TDecoratedFrame::CanClose()
{
    return client.CanClose();
}

bool TDecoratedFrame::IdleAction(long idleCount)
{
    return client.IdleAction(idleCount);
}

bool TDecoratedFrame::MayCommand(int id)
{
    TCommandEnabler enabler(id);
    EvCommandEnable(enabler);
    return enabler.IsAnswered() && enabler.IsEnabled();
}

bool TDecoratedFrame::TryCommand(int id)
{
    if (!MayCommand(id))
        return false;
    EvCommand(id);
    return true;
}

bool TDecoratedFrame::PressGadget(int command)
{
    return std::any_of(frame->bars.begin(), frame->bars.end(), [command](const FrameImpl::Bar &bar) {
        auto *controls = dynamic_cast<TControlBar *>(bar.window);
        return controls && controls->Press(command);
    });
}

void TDecoratedFrame::PostCommand(int id)
{
    QTimer::singleShot(0, &frame->mailbox, [this, id] { frame->Deliver(*this, id); });
}

void TDecoratedFrame::CloseWindow()
{
    if (frame->widget)
        frame->widget->close();
}

void TDecoratedFrame::IdleEnable()
{
    for (const FrameImpl::Bar &bar : frame->bars)
        if (auto *controls = dynamic_cast<TControlBar *>(bar.window))
            controls->IdleEnable(*this);
}
