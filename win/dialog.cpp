#include "win/dialog.h"

#include "lib/platform.h"
#include "win/application.h"
#include "win/boxes.h"
#include "win/controlparts.h"
#include "win/guard.h"
#include "win/modal.h"
#include "win/resources.h"
#include "win/validator.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QEventLoop>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <cmath>
#include <cstring>
#include <deque>
#include <utility>

#include "lib/xassert.h"
#include "lib/xon.h"

namespace
{
enum { RETRY_TIME = 20 };           // ms between two looks whether a repair section has ended
enum { FONT_SIZE = 9 };             // points
constexpr char NAMING[] = "naming"; // property of a label that names the field it leads to

QWidget *ToWidget(HWND window)
{
    return reinterpret_cast<QWidget *>(window);
}

HWND FromWidget(QWidget *widget)
{
    return reinterpret_cast<HWND>(widget);
}

/// From dialog units to the toolkit's. Both edges of a control are rounded, not its width, so that what touches
/// in the resource touches in the dialog.
class Units
{
public:
    explicit Units(const QFont &font)
    {
        QFontMetrics metrics(font);
        QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
        x = metrics.horizontalAdvance(letters) / static_cast<double>(letters.size()) / 4;
        y = metrics.height() / 8.0;
    }
    int Across(int units) const { return static_cast<int>(std::lround(units * x)); }
    int Down(int units) const { return static_cast<int>(std::lround(units * y)); }
    QRect Place(const ResCONTROL &line) const
    {
        QPoint start(Across(line.x), Down(line.y));
        QPoint end(Across(line.x + line.width), Down(line.y + line.height));
        return {start, QSize(end.x() - start.x(), end.y() - start.y())};
    }

private:
    double x; // toolkit's units in one dialog unit
    double y;
};

bool CanTakeFocus(ResCONTROLKIND kind)
{
    return kind != RES_LABEL && kind != RES_PICTURE && kind != RES_FRAME;
}

/// What has no text of its own that says what it is for.
bool IsField(ResCONTROLKIND kind)
{
    return kind >= RES_EDIT && kind <= RES_LIST;
}

bool IsButtonOf(HWND control, unsigned kind)
{
    const char *name = WindowClass(control);
    return name && std::strcmp(name, "BUTTON") == 0 && (WindowStyle(control) & WIN_STYLE_KIND) == kind;
}

bool IsDefault(HWND control)
{
    return IsButtonOf(control, WIN_BS_DEFPUSH);
}

bool IsPushButton(HWND control)
{
    return IsButtonOf(control, WIN_BS_PUSH) || IsDefault(control);
}

/// A press and a release of the left button in the middle, by the way that the desktop's events take.
void ClickWithMouse(QWidget &widget)
{
    QPointer<QWidget> there(&widget);
    QWidget *top = widget.window();
    QPointF at = widget.mapTo(top, QPointF(widget.rect().center()));
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        if (!there || !top->windowHandle())
            return;
        Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, at, top->mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
        QApplication::sendEvent(top->windowHandle(), &event);
    }
}
} // namespace

void NameBuddy(HWND label)
{
    auto *shown = qobject_cast<QLabel *>(ToWidget(label));
    if (!shown || !shown->buddy() || !shown->property(NAMING).toBool())
        return;
    QString spoken = shown->text().replace(QLatin1String("&&"), QLatin1String("\n"));
    shown->buddy()->setAccessibleName(spoken.remove(u'&').replace(u'\n', u'&'));
}

/// A dialog's window and what becomes of its messages. The shell keeps it alive as long as there are widgets
/// that can report something; by then the object may be gone.
struct TDialog::DialogImpl : public TControlSite, public std::enable_shared_from_this<DialogImpl> {
    class Shell;
    class Face;

    explicit DialogImpl(TDialog &anOwner) : owner(&anOwner) {}
    void MakeShell(const ResDIALOG &resource);
    void MakeControls(const ResDIALOG &resource);
    void NameBuddies(const ResDIALOG &resource);
    void ChooseDefault();
    void OrderTabs();
    void Report(HWND control, int code) override;
    void Open();
    void FocusFirst();
    void Wait();
    void End(int aResult);
    void ShellGone();
    void PressReturn();
    void Post(const TDialogMessage &notice);
    void PostDelivery(int delay);
    void DeliverNotice();
    void Leave();
    void LetGo();
    bool IsUp() const { return owner && !ended; }
    template <class MESSAGE>
    void Send(MESSAGE message);
    void Send(const TDialogMessage &message);

    TDialog *owner;                       // view; NULL once the object has let go of the window
    Shell *shell = NULL;                  // owned by its parent and by TakeDown
    std::vector<QPointer<QWidget>> lines; // what each line of the resource has made
    QEventLoop *loop = NULL;
    std::deque<TDialogMessage> notices; // posted, not delivered yet
    bool delivering = false;            // a delivery is in the queue
    bool ended = false;
    int busy = 0; // messages under way
    int result = WIN_ID_CANCEL;
};

/// The dialog's window. Keys that no control has used arrive here.
class TDialog::DialogImpl::Shell : public QDialog
{
public:
    Shell(std::shared_ptr<DialogImpl> anImpl, QWidget *parent)
        : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                              Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
          impl(std::move(anImpl))
    {
        QFont font(QStringLiteral("Arial"));
        font.setPointSize(FONT_SIZE);
        setFont(font);
    }

    ~Shell() override
    {
        impl->ShellGone();
        qDeleteAll(findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)); // they may still report
    }

    void reject() override { close(); }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        std::shared_ptr<DialogImpl> keep = impl; // it may all go with the key
        bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
        event->accept();
        if (plain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
            keep->PressReturn();
        else if (plain && event->key() == Qt::Key_Escape)
            keep->Send({TDialogMessage::COMMAND, WIN_ID_CANCEL, WIN_BN_CLICKED, NULL});
        else if (event->key() == Qt::Key_F4 && event->modifiers() == Qt::AltModifier)
            close();
        else
            event->ignore();
    }

    /// The dialog decides what becomes of it.
    void closeEvent(QCloseEvent *event) override
    {
        std::shared_ptr<DialogImpl> keep = impl;
        event->ignore();
        keep->Send({TDialogMessage::CLOSE});
    }

private:
    std::shared_ptr<DialogImpl> impl;
};

class TDialog::DialogImpl::Face : public TModalFace
{
public:
    explicit Face(DialogImpl &anImpl) : impl(anImpl) {}

    const char *Kind() const override { return "dialog"; }
    bool IsUp() const override { return impl.IsUp() && impl.shell && impl.shell->isVisible(); }
    TNativeWidget *Widget() const override { return FromWidget(impl.shell); }
    std::string Caption() const override { return impl.owner ? impl.owner->Caption() : std::string(); }
    void Answer(int id) override
    {
        HWND button = IsUp() ? impl.owner->Item(id) : NULL;
        if (IsPushButton(button) && ToWidget(button)->isVisible())
            ClickWithMouse(*ToWidget(button));
    }
    /// A dialog that has another use for Esc ends all the same, or nobody would ever end it.
    void Cancel() override
    {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(impl.shell, &escape);
        if (IsUp())
            impl.End(WIN_ID_CANCEL);
    }

private:
    DialogImpl &impl;
};

/// Hands a message over. While a message box stands over a repair section there is no input.
template <class MESSAGE>
void TDialog::DialogImpl::Send(MESSAGE message)
{
    if (!IsUp() || xDepth != 0)
        return;
    std::shared_ptr<DialogImpl> keep = shared_from_this();
    ++busy;
    GuardedCall([&] { message(*owner); });
    if (busy == 1)
        GuardedCall([this] { Leave(); });
    --busy;
}

void TDialog::DialogImpl::Send(const TDialogMessage &message)
{
    Send([&message](TDialog &to) { to.DialogProc(message); });
}

/// Behind the outermost message: does what had to wait for its end.
void TDialog::DialogImpl::Leave()
{
    if (!owner)
        return;
    if (!ended) {
        if (!notices.empty())
            PostDelivery(0);
    } else if (!owner->modal) { // else whoever waits for it takes it down
        LetGo();
    }
}

/// The object lets go of the window, and goes itself where it was told to.
void TDialog::DialogImpl::LetGo()
{
    TDialog *dialog = owner;
    bool alone = dialog->autoDelete && !dialog->modal;
    dialog->TakeDown();
    if (alone)
        TApplication::Current()->Condemn(dialog);
}

void TDialog::DialogImpl::Report(HWND control, int code)
{
    Send([control, code](TDialog &to) { to.SendCommand(control, code); });
}

void TDialog::DialogImpl::MakeShell(const ResDIALOG &resource)
{
    shell = new Shell(shared_from_this(), ToWidget(ModalParent(owner->Parent())));
    owner->AdoptWidget(FromWidget(shell));
    owner->SetCaption(std::string(owner->Caption().empty() ? resource.caption : owner->Caption()).c_str());
    shell->setWindowModality(owner->modal ? Qt::ApplicationModal : Qt::NonModal);
    Units units(shell->font());
    shell->setFixedSize(units.Across(resource.width), units.Down(resource.height));
}

void TDialog::DialogImpl::MakeControls(const ResDIALOG &resource)
{
    __enter
        Units units(shell->font());
        for (int i = 0; i < resource.count; ++i) {
            HWND made = MakeControl(resource.controls[i], FromWidget(shell), *this); __test;
            ToWidget(made)->setGeometry(units.Place(resource.controls[i]));
            lines.push_back(ToWidget(made));
        }
        NameBuddies(resource);
        ChooseDefault();
        OrderTabs();
    __point
    __treat
}

/// A label leads to the next line that can take the focus. Of several the nearest one names it;
/// a unit that stands between says nothing about it.
void TDialog::DialogImpl::NameBuddies(const ResDIALOG &resource)
{
    QWidget *field = NULL; // the nearest behind the present line
    bool named = true;     // by a label
    for (int i = resource.count - 1; i >= 0; --i) {
        QWidget *widget = lines[static_cast<size_t>(i)];
        if (CanTakeFocus(resource.controls[i].kind)) {
            field = widget;
            named = !IsField(resource.controls[i].kind); // others speak for themselves
        }
        auto *label = qobject_cast<QLabel *>(widget);
        if (!label || !field)
            continue;
        bool naming = !std::exchange(named, true);
        if (naming || label->text().contains(u'&'))
            label->setBuddy(field);
        label->setProperty(NAMING, naming);
        NameBuddy(FromWidget(label));
    }
}

/// The push button that has the focus looks like the default; the frame goes back when it leaves.
void TDialog::DialogImpl::ChooseDefault()
{
    QPushButton *chosen = NULL;
    for (QWidget *widget : lines)
        if (!chosen && IsDefault(FromWidget(widget)))
            chosen = qobject_cast<QPushButton *>(widget);
    for (QWidget *widget : lines)
        if (auto *button = qobject_cast<QPushButton *>(widget))
            button->setAutoDefault(chosen && IsPushButton(FromWidget(button)));
    if (chosen)
        chosen->setDefault(true);
}

void TDialog::DialogImpl::OrderTabs()
{
    for (size_t i = 1; i < lines.size(); ++i)
        QWidget::setTabOrder(lines[i - 1], lines[i]);
}

/// Says that the controls are there, and shows the window.
void TDialog::DialogImpl::Open()
{
    Send({TDialogMessage::INIT});
    if (!IsUp())
        return;
    if (!shell->focusWidget())
        FocusFirst();
    shell->show();
}

/// The first that Tab would stop at; what stands in it is selected, so that typing replaces it.
void TDialog::DialogImpl::FocusFirst()
{
    for (QWidget *widget : lines) {
        if (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisibleTo(shell) || !widget->isEnabled())
            continue;
        widget->setFocus(Qt::TabFocusReason);
        auto *combo = qobject_cast<QComboBox *>(widget);
        if (QLineEdit *field = combo ? combo->lineEdit() : qobject_cast<QLineEdit *>(widget))
            field->selectAll();
        return;
    }
}

/// The modal loop. It also ends with the program's own.
void TDialog::DialogImpl::Wait()
{
    QEventLoop waiting;
    Face face(*this);
    TModalScope scope(face);
    loop = &waiting;
    waiting.exec(QEventLoop::DialogExec);
    loop = NULL;
    if (IsUp())
        End(WIN_ID_CANCEL);
}

void TDialog::DialogImpl::End(int aResult)
{
    ended = true;
    result = aResult;
    if (shell)
        shell->hide();
    if (loop)
        loop->exit();
    if (busy == 0)
        Leave();
}

/// The parent's window has taken the dialog's along.
void TDialog::DialogImpl::ShellGone()
{
    shell = NULL;
    if (owner)
        GuardedCall([this] { LetGo(); });
}

/// Return in the dialog: a push button with the focus, else the default button, else what the dialog makes of
/// it. A grey default button lets nothing happen.
void TDialog::DialogImpl::PressReturn()
{
    if (!IsUp() || xDepth != 0)
        return;
    QPushButton *pressed = NULL;
    for (QWidget *widget : lines) {
        auto *button = qobject_cast<QPushButton *>(widget);
        if (!button || !IsPushButton(FromWidget(button)) || !button->isVisible())
            continue;
        if (button == shell->focusWidget() || (!pressed && IsDefault(FromWidget(button))))
            pressed = button;
    }
    if (pressed)
        pressed->click();
    else
        Send({TDialogMessage::COMMAND, WIN_ID_OK, WIN_BN_CLICKED, NULL});
}

void TDialog::DialogImpl::Post(const TDialogMessage &notice)
{
    notices.push_back(notice);
    if (busy == 0)
        PostDelivery(0);
}

void TDialog::DialogImpl::PostDelivery(int delay)
{
    if (delivering || !shell)
        return;
    QTimer::singleShot(delay, shell, [this] { DeliverNotice(); });
    delivering = true;
}

/// One at a time, the message that posted it being through. What comes while a failure is on its way waits.
void TDialog::DialogImpl::DeliverNotice()
{
    delivering = false;
    if (busy > 0 || notices.empty() || !IsUp())
        return;
    if (xDepth != 0 || XPending())
        return PostDelivery(RETRY_TIME);
    TDialogMessage notice = notices.front();
    notices.pop_front();
    Send(notice);
}

TDialog::TDialog(TWindow *aParent, int aResId) : TWindow(aParent), resId(aResId) {}

TDialog::~TDialog()
{
    TakeDown();
    while (!controls.empty())
        delete controls.back();
}

int TDialog::Execute()
{
    ASSERT(!IsCreated());
    int result = WIN_ID_CANCEL;
    std::shared_ptr<DialogImpl> run; // outlives the object, should a handler delete it
    __enter
        if (xDepth == 0) { // over a repair section it would wait for input that it does not get
            modal = true;
            Build(); __test;
            run = dialog;
            SetupWindow(); __test;
            run->Open();
            if (run->IsUp())
                run->Wait();
            result = run->result;
            if (run->owner)
                TakeDown();
        }
    __point
        TakeDown();
    __treat
    return result;
}

void TDialog::Create()
{
    if (IsCreated() || xDepth != 0)
        return;
    std::shared_ptr<DialogImpl> up; // as in Execute
    __enter
        modal = false;
        Build(); __test;
        up = dialog;
        SetupWindow(); __test;
        up->Open();
    __point
        TakeDown();
    __treat
}

/// Makes the window with all lines of the resource, and binds the control objects.
void TDialog::Build()
{
    const ResDIALOG *resource = FindDialog(resId);
    ASSERT(resource != NULL);
    __enter
        dialog = std::make_shared<DialogImpl>(*this);
        dialog->MakeShell(*resource);
        dialog->MakeControls(*resource); __test;
        for (TControl *control : controls) {
            HWND item = Item(control->Id());
            ASSERT(item != NULL);
            control->AdoptWidget(item);
        }
    __point
    __treat
}

/// Lets go of the widgets. An event of theirs may be on its way still, so they go behind it.
void TDialog::TakeDown()
{
    if (!dialog)
        return;
    dialog->ended = true;
    for (size_t i = 0; i < controls.size(); ++i) {
        if (!controls[i]->IsCreated())
            continue;
        GuardedCall([this, i] { controls[i]->CleanupWindow(); });
        controls[i]->AdoptWidget(NULL);
    }
    AdoptWidget(NULL);
    modal = false;
    std::shared_ptr<DialogImpl> gone = std::move(dialog);
    gone->owner = NULL;
    if (gone->loop)
        gone->loop->exit();
    DialogImpl::Shell *shell = gone->shell;
    if (!shell)
        return;
    shell->hide();
    if (gone->busy > 0)
        shell->deleteLater();
    else
        delete shell;
}

void TDialog::SetupWindow()
{
    __enter
        for (size_t i = 0; i < controls.size(); ++i) {
            controls[i]->SetupWindow(); __test;
        }
        TransferData(WIN_TRANSFER_SETDATA); __test;
    __point
    __treat
}

void TDialog::TransferData(int direction)
{
    __enter
        auto *field = static_cast<char *>(record);
        for (size_t i = 0; field && i < controls.size(); ++i) {
            int size = controls[i]->Transfer(field, direction); __test;
            field += size;
        }
    __point
    __treat
}

bool TDialog::CanClose()
{
    std::shared_ptr<DialogImpl> up = dialog;
    bool may = up != NULL;
    for (size_t i = 0; may && i < controls.size(); ++i)
        may = controls[i]->CanClose() && up->IsUp() && !XPending();
    return may || !up;
}

bool TDialog::CloseWindow(int result)
{
    bool closed = !dialog || dialog->ended;
    __enter
        if (!closed) {
            bool may = CanClose(); __test;
            if (may) {
                TransferData(WIN_TRANSFER_GETDATA); __test;
                Destroy(result);
                closed = true;
            }
        }
    __point
    __treat
    return closed;
}

void TDialog::Destroy(int result)
{
    if (dialog && !dialog->ended)
        dialog->End(result);
}

HWND TDialog::Item(int id) const
{
    if (dialog)
        for (QWidget *widget : dialog->lines)
            if (widget && WindowId(FromWidget(widget)) == id)
                return FromWidget(widget);
    return NULL;
}

TControl *TDialog::FindControl(HWND item) const
{
    for (TControl *control : controls)
        if (item && control->GetHandle() == item)
            return control;
    return NULL;
}

void TDialog::SendCommand(HWND control, int code)
{
    std::shared_ptr<DialogImpl> up = dialog;
    __enter
        if (up && up->IsUp()) {
            if (TControl *object = FindControl(control)) {
                object->EvNotify(code); __test;
            }
            if (up->IsUp()) { // a control may have ended the dialog
                DialogProc({TDialogMessage::COMMAND, WindowId(control), code, control}); __test;
            }
        }
    __point
    __treat
}

void TDialog::PostNotify(int id, int code)
{
    if (dialog && !dialog->ended)
        dialog->Post({TDialogMessage::NOTIFY, id, code, NULL});
}

void TDialog::DialogProc(const TDialogMessage &message)
{
    bool pressed = message.kind == TDialogMessage::COMMAND && message.code == WIN_BN_CLICKED &&
                   (!message.control || IsPushButton(message.control));
    if (pressed && message.id == WIN_ID_OK)
        CloseWindow(WIN_ID_OK);
    else if ((pressed && message.id == WIN_ID_CANCEL) || message.kind == TDialogMessage::CLOSE)
        Destroy(WIN_ID_CANCEL);
}
