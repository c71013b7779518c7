// The widget of drop-down lists. It keeps to the toolkit's combo box for looks, place and popup, and does by
// itself what a user does to it, so that every step is told in the order that dialogs rely on.
#include "win/listparts.h"

#include "lib/charstr.h"
#include "win/guard.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QProxyStyle>
#include <QScreen>
#include <QScrollBar>
#include <QWheelEvent>
#include <utility>

namespace
{
constexpr int ENTRIES_SHOWN = 12; // of a dropped list, beyond which it scrolls
constexpr int NOTCH = 120;        // the toolkit's units of one notch of the wheel

/// A list that drops below its field and scrolls, with an edit field or without.
class TDropStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_ComboBox_Popup ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

QStyle *DropStyle()
{
    static QPointer<TDropStyle> style;
    if (!style) {
        style = new TDropStyle(QApplication::style()->name());
        style->setParent(qApp);
    }
    return style;
}

bool IsToggle(const QKeyEvent &event)
{
    bool alt = event.modifiers().testFlag(Qt::AltModifier);
    return alt ? event.key() == Qt::Key_Down || event.key() == Qt::Key_Up : event.key() == Qt::Key_F4;
}

/// In the widget's font; -1 without entries.
int WidestEntry(const QAbstractItemModel &entries, const QWidget &widget)
{
    QFontMetrics metrics = widget.fontMetrics();
    int widest = -1;
    int width = -1;
    for (int i = 0; i < entries.rowCount(); ++i) {
        int advance = metrics.horizontalAdvance(entries.index(i, 0).data().toString());
        if (advance > width) {
            width = advance;
            widest = i;
        }
    }
    return widest;
}

const TNativeKey *Native(const QKeyEvent &event)
{
    return reinterpret_cast<const TNativeKey *>(&event);
}

class TDropWidget : public QComboBox, public TDropFace
{
public:
    TDropWidget(QWidget *parent, const ResCONTROL &line, TControlSite &aSite);

    HWND Handle() { return reinterpret_cast<HWND>(static_cast<QWidget *>(this)); }

    TListStore &Store() override { return store; }
    int Selected() const override { return currentIndex(); }
    void Select(int index) override;
    void Insert(int index, const char *text) override;
    void Delete(int index) override;
    void Clear() override { store.Clear(); } // which empties the field
    TNativeWidget *Field() const override;
    void SetFieldText(const char *text) override;
    bool IsDropped() const override { return dropped; }
    void Drop(bool down) override;

    void showPopup() override;
    void hidePopup() override { RollUp(LEFT); }
    bool eventFilter(QObject *object, QEvent *event) override;

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    enum END { TAKEN, LEFT };
    bool Tell(int code) { return TellSite(site, Handle(), code); }
    int Highlighted() const;
    void Highlight(int index) { view()->setCurrentIndex(model()->index(index, 0)); }
    template <class CHANGE>
    void ChangeStore(CHANGE change);
    void Release();
    void Pick(int index);
    void StepTo(int index);
    bool MoveByKey(const QKeyEvent &event);
    void KeyInList(QKeyEvent &event);
    bool MouseInList(const QMouseEvent &event);
    bool EventOfList(const QObject *object, QEvent &event);
    bool IsLeftBy(const QEvent &event) const;
    bool CanDrop() const;
    void PrepareList();
    void KeepOnScreen();
    void RollUp(END end);
    void Restore();

    TListStore store;
    TControlSite &site;
    TTypedText typed;
    bool watched = false; // the list's events come here
    bool dropped = false;
    bool pointed = false; // the button went down in the list, or was dragged there
    int before = -1;      // what was selected when the list dropped
    QString textBefore;   // and what stood in the edit field
    int wheelRest = 0;    // what a fine wheel has turned short of a notch
};

TDropWidget::TDropWidget(QWidget *parent, const ResCONTROL &line, TControlSite &aSite)
    : QComboBox(parent), store((line.style & RES_SORT) != 0), site(aSite)
{
    setStyle(DropStyle());
    setModel(reinterpret_cast<QAbstractItemModel *>(store.Model()));
    setInsertPolicy(NoInsert);
    setMaxVisibleItems(ENTRIES_SHOWN);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    if (line.kind != RES_COMBO)
        return;
    setLineEdit(qobject_cast<QLineEdit *>(reinterpret_cast<QWidget *>(MakeLineField(Handle()))));
    setCompleter(NULL);
    // The combo box would take an entry that reads like what was typed.
    QObject::disconnect(lineEdit(), &QLineEdit::editingFinished, this, NULL);
    QObject::connect(lineEdit(), &QLineEdit::textEdited, this, [this] { Release(); });
}

void TDropWidget::Select(int index)
{
    setCurrentIndex(index);
    if (lineEdit())
        lineEdit()->setCursorPosition(0);
    if (dropped)
        Highlight(index);
}

/// The combo box brings its field up to date when the first entry comes and the last one goes. A text that was
/// typed must outlive that, and nothing is selected that was not before.
template <class CHANGE>
void TDropWidget::ChangeStore(CHANGE change)
{
    bool none = Selected() < 0;
    QString text = currentText();
    change();
    if (none)
        Release();
    if (lineEdit() && lineEdit()->text() != text)
        lineEdit()->setText(text);
}

void TDropWidget::Insert(int index, const char *text)
{
    ChangeStore([&] { store.Insert(index, text); });
}

void TDropWidget::Delete(int index)
{
    if (index == Selected())
        Release();
    ChangeStore([&] { store.Delete(index); });
}

/// Nothing is selected any more, but the text of an edit field stays.
void TDropWidget::Release()
{
    store.Release(Selected());
    update();
    if (dropped)
        view()->viewport()->update();
}

TNativeWidget *TDropWidget::Field() const
{
    return reinterpret_cast<TNativeWidget *>(static_cast<QWidget *>(lineEdit()));
}

void TDropWidget::SetFieldText(const char *text)
{
    if (!lineEdit())
        return;
    Release();
    FieldFace(Field())->SetText(text);
}

void TDropWidget::Drop(bool down)
{
    if (down)
        showPopup();
    else
        hidePopup();
}

/// What the user selects stands ready to be typed over.
void TDropWidget::Pick(int index)
{
    Select(index);
    if (lineEdit())
        lineEdit()->selectAll();
}

bool TDropWidget::CanDrop() const
{
    return !dropped && isVisible() && isEnabled() && count() > 0;
}

/// Who hears of it may fill the list yet, or think better of it.
void TDropWidget::showPopup()
{
    if (!CanDrop() || !Tell(WIN_CBN_DROPDOWN))
        return;
    before = Selected();
    textBefore = currentText();
    pointed = false;
    typed.Forget();
    if (CanDrop()) {
        PrepareList();
        QComboBox::showPopup();
        KeepOnScreen();
        dropped = view()->isVisible();
    }
    if (!dropped)
        Tell(WIN_CBN_CLOSEUP);
}

/// Wide enough for the longest entry, as far as the screen goes.
void TDropWidget::PrepareList()
{
    QAbstractItemView *list = view();
    if (!watched) {
        list->installEventFilter(this);
        list->viewport()->installEventFilter(this);
        list->window()->installEventFilter(this);
        list->viewport()->setMouseTracking(true);
        watched = true;
    }
    QModelIndex widest = model()->index(WidestEntry(*model(), *list), 0);
    int bar = store.Count() > ENTRIES_SHOWN ? list->verticalScrollBar()->sizeHint().width() : 0;
    int wide = list->sizeHintForIndex(widest).width() + 2 * list->frameWidth() + bar;
    list->setMinimumWidth(qMin(wide, screen()->availableGeometry().width()));
}

void TDropWidget::KeepOnScreen()
{
    QWidget *list = view()->window();
    QRect room = screen()->availableGeometry();
    int beyond = list->geometry().right() - room.right();
    if (beyond > 0)
        list->move(qMax(room.left(), list->x() - beyond), list->y());
}

/// The entry that Return takes, -1 for none. The toolkit's own present entry need not show.
int TDropWidget::Highlighted() const
{
    QModelIndex index = view()->currentIndex();
    return view()->selectionModel()->isSelected(index) ? index.row() : -1;
}

/// The list closes: with the highlighted entry taken, or left as it is.
void TDropWidget::RollUp(END end)
{
    bool open = std::exchange(dropped, false);
    int taken = open && end == TAKEN ? Highlighted() : -1;
    QComboBox::hidePopup();
    if (!open)
        return;
    if (taken >= 0 && taken != Selected()) {
        Pick(taken);
        if (!Tell(WIN_CBN_SELCHANGE))
            return;
    }
    if (Tell(end == TAKEN ? WIN_CBN_SELENDOK : WIN_CBN_SELENDCANCEL))
        Tell(WIN_CBN_CLOSEUP);
}

void TDropWidget::Restore()
{
    if (before >= 0 || !lineEdit())
        Select(before);
    else if (lineEdit()->text() != textBefore) {
        Release();
        lineEdit()->setText(textBefore);
    }
}

/// Keys and wheel on the closed list.
void TDropWidget::StepTo(int index)
{
    if (index < 0 || index == Selected())
        return;
    Pick(index);
    if (Tell(WIN_CBN_SELENDOK))
        Tell(WIN_CBN_SELCHANGE);
}

/// Arrow keys and, where they are not typed into a field, letters. @return whether the key was one
bool TDropWidget::MoveByKey(const QKeyEvent &event)
{
    bool forField = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right ||
                    event.key() == Qt::Key_Home || event.key() == Qt::Key_End;
    if (lineEdit() && forField)
        return false;
    int present = dropped && Highlighted() >= 0 ? Highlighted() : Selected();
    int to = StepByKey(Native(event), present, store.Count(), ENTRIES_SHOWN - 1);
    char letter = lineEdit() ? EOS : LetterOf(Native(event));
    if (to >= 0)
        typed.Forget();
    else if (letter != EOS)
        to = store.FindTyped(typed.Add(letter), present);
    else
        return false;
    if (!dropped) {
        StepTo(to);
    } else if (to >= 0 && to != Selected()) {
        Pick(to);
        Tell(WIN_CBN_SELCHANGE);
    } else if (to >= 0) {
        Highlight(to);
    }
    return true;
}

void TDropWidget::KeyInList(QKeyEvent &event)
{
    int key = event.key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        RollUp(TAKEN);
    } else if (key == Qt::Key_Escape) {
        Restore();
        RollUp(LEFT);
    } else if (IsToggle(event)) {
        RollUp(LEFT);
    } else if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
        QPointer<TDropWidget> self(this);
        RollUp(LEFT);
        if (self)
            focusNextPrevChild(key == Qt::Key_Tab && !event.modifiers().testFlag(Qt::ShiftModifier));
    } else if (!MoveByKey(event) && lineEdit()) {
        lineEdit()->event(&event);
    }
}

/// An entry is taken where the button goes up. The press that dropped the list does not count before the
/// pointer has moved into it.
bool TDropWidget::MouseInList(const QMouseEvent &event)
{
    QModelIndex entry = view()->indexAt(event.pos());
    bool left = event.button() == Qt::LeftButton || event.buttons().testFlag(Qt::LeftButton);
    if (event.type() != QEvent::MouseButtonRelease) {
        pointed = pointed || left;
        if (entry.isValid())
            Highlight(entry.row());
    } else if (left && pointed && entry.isValid()) {
        Highlight(entry.row());
        RollUp(TAKEN);
    }
    return true;
}

/// The events of the dropped list: of its view, of the view's inner part, and of the window round them.
bool TDropWidget::EventOfList(const QObject *object, QEvent &event)
{
    bool inner = object == view()->viewport();
    bool outer = object == view()->window();
    switch (event.type()) {
    case QEvent::KeyPress:
        event.accept();
        KeyInList(static_cast<QKeyEvent &>(event));
        return true;
    case QEvent::ShortcutOverride:
        event.accept();
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        return inner && MouseInList(static_cast<QMouseEvent &>(event));
    case QEvent::MouseButtonRelease: // on the frame the combo box would take the entry beside it
        return inner ? MouseInList(static_cast<QMouseEvent &>(event)) : outer;
    case QEvent::FocusOut: // somebody took the focus away from the list
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
        if (outer || event.type() == QEvent::FocusOut)
            RollUp(LEFT);
        return false;
    default:
        return false;
    }
}

bool TDropWidget::eventFilter(QObject *object, QEvent *event)
{
    bool done = false;
    if (dropped)
        GuardedCall([&] { done = EventOfList(object, *event); });
    return done;
}

/// With its window the list goes too, unless it is the list itself that has become the active one.
bool TDropWidget::IsLeftBy(const QEvent &event) const
{
    return dropped && event.type() == QEvent::WindowDeactivate &&
           QApplication::activeWindow() != view()->window();
}

bool TDropWidget::event(QEvent *event)
{
    bool done = false;
    GuardedCall([&] {
        bool left = IsLeftBy(*event);
        done = QComboBox::event(event);
        if (left)
            RollUp(LEFT);
    });
    return done;
}

void TDropWidget::keyPressEvent(QKeyEvent *event)
{
    event->accept();
    if (dropped)
        KeyInList(*event);
    else if (IsToggle(*event))
        showPopup();
    else if (MoveByKey(*event))
        return;
    else if (lineEdit())
        lineEdit()->event(event);
    else
        event->ignore();
}

/// Only with the focus, so that a dialog that scrolls past changes nothing.
void TDropWidget::wheelEvent(QWheelEvent *event)
{
    if (dropped || !hasFocus())
        return event->ignore();
    event->accept();
    wheelRest += event->angleDelta().y();
    int notches = wheelRest / NOTCH;
    wheelRest -= notches * NOTCH;
    QPointer<TDropWidget> self(this);
    for (int i = 0; self && i < qAbs(notches) && store.Count() > 0; ++i)
        StepTo(qBound(0, Selected() + (notches > 0 ? -1 : 1), store.Count() - 1));
}

/// Told where it is the user who goes there. The list takes the focus and gives it back, some desktops with
/// the activation of its window, which is no news.
void TDropWidget::focusInEvent(QFocusEvent *event)
{
    QComboBox::focusInEvent(event);
    wheelRest = 0;
    switch (event->reason()) {
    case Qt::MouseFocusReason:
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        Tell(WIN_CBN_SETFOCUS);
        break;
    default:
        break;
    }
}

void TDropWidget::focusOutEvent(QFocusEvent *event)
{
    QComboBox::focusOutEvent(event);
    typed.Forget();
    if (dropped && event->reason() != Qt::PopupFocusReason) // while it drops, the list takes the focus itself
        RollUp(LEFT);
}
} // namespace

HWND MakeDropDown(const ResCONTROL &line, TNativeWidget *dialog, TControlSite &site)
{
    return (new TDropWidget(reinterpret_cast<QWidget *>(dialog), line, site))->Handle(); // the dialog's
}
