#include "win/testdialog.h"

#include "win/controlparts.h"
#include "win/dialog.h"
#include "win/modal.h"
#include "win/utf8.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QWindow>
#include <cstdio>
#include <cstdlib>
#include <cstring>

/// The toolkit's way of a key to the shortcuts and mnemonics, which its own tests take too.
QT_BEGIN_NAMESPACE
Q_GUI_EXPORT bool qt_sendShortcutOverrideEvent(QObject *object, ulong timestamp, int key,
                                               Qt::KeyboardModifiers modifiers, const QString &text, bool again,
                                               ushort count);
QT_END_NAMESPACE

namespace
{
enum { FREE_STEP = 4 }; // toolkit's units between two looks for a free place of the dialog

QWidget *ToWidget(TNativeWidget *widget)
{
    return reinterpret_cast<QWidget *>(widget);
}

TNativeWidget *FromWidget(QWidget *widget)
{
    return reinterpret_cast<TNativeWidget *>(widget);
}

std::string Held(const QString &text)
{
    return FromUtf8(text.toUtf8().constData());
}

/// A test that acts on what is not there has gone wrong; going on would only hide where.
[[noreturn]] void Fail(const QWidget *dialog, int id, const char *reason)
{
    std::fprintf(stderr, "dialog \"%s\", control %d: %s\n", dialog->windowTitle().toUtf8().constData(), id,
                 reason);
    std::abort();
}

QWidget *Control(TNativeWidget *dialog, int id)
{
    for (QObject *child : ToWidget(dialog)->children()) {
        auto *widget = qobject_cast<QWidget *>(child);
        if (widget && WindowClass(FromWidget(widget)) && WindowId(FromWidget(widget)) == id)
            return widget;
    }
    Fail(ToWidget(dialog), id, "is not there");
}

template <class WIDGET>
WIDGET *ControlOf(TNativeWidget *dialog, int id, const char *reason)
{
    auto *widget = qobject_cast<WIDGET *>(Control(dialog, id));
    if (!widget)
        Fail(ToWidget(dialog), id, reason);
    return widget;
}

QComboBox *Combo(TNativeWidget *dialog, int id)
{
    return ControlOf<QComboBox>(dialog, id, "is no combo box");
}

/// The list of a list box or of a combo box.
QAbstractItemView *List(TNativeWidget *dialog, int id)
{
    if (auto *combo = qobject_cast<QComboBox *>(Control(dialog, id)))
        return combo->view();
    return ControlOf<QAbstractItemView>(dialog, id, "has no entries");
}

/// As the desktop sends it: to the window, whose toolkit finds out who gets it.
void SendMouse(QWidget *window, QEvent::Type type, QPointF at, unsigned keys = 0)
{
    if (!window->windowHandle())
        return;
    bool move = type == QEvent::MouseMove;
    bool released = type == QEvent::MouseButtonRelease;
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ShiftModifier, (keys & WIN_KEY_SHIFT) != 0);
    modifiers.setFlag(Qt::ControlModifier, (keys & WIN_KEY_CTRL) != 0);
    QMouseEvent event(type, at, window->mapToGlobal(at), move ? Qt::NoButton : Qt::LeftButton,
                      move || released ? Qt::NoButton : Qt::LeftButton, modifiers);
    QApplication::sendEvent(window->windowHandle(), &event);
}

void ClickAt(QWidget *window, QPointF at, unsigned keys = 0)
{
    QPointer<QWidget> there(window);
    SendMouse(window, QEvent::MouseMove, at, keys);
    SendMouse(window, QEvent::MouseButtonPress, at, keys);
    if (there)
        SendMouse(window, QEvent::MouseButtonRelease, at, keys);
}

void DoubleClickAt(QWidget *window, QPointF at)
{
    QPointer<QWidget> there(window);
    ClickAt(window, at);
    if (there)
        SendMouse(window, QEvent::MouseButtonDblClick, at);
    if (there)
        SendMouse(window, QEvent::MouseButtonRelease, at);
}

/// A place of a control in its dialog, where a user can hit it.
QPoint Reachable(TNativeWidget *dialog, int id, QPoint at)
{
    QWidget *widget = Control(dialog, id);
    QWidget *window = ToWidget(dialog);
    if (!widget->isVisible())
        Fail(window, id, "is not shown");
    QPoint place = widget->mapTo(window, at);
    QWidget *hit = window->childAt(place);
    if (!hit || (hit != widget && !widget->isAncestorOf(hit)))
        Fail(window, id, "is covered");
    return place;
}

QPoint MiddleOf(TNativeWidget *dialog, int id)
{
    return Reachable(dialog, id, Control(dialog, id)->rect().center());
}

/// Where a combo box opens its list.
QPoint ArrowOf(TNativeWidget *dialog, int id)
{
    QComboBox *combo = Combo(dialog, id);
    QStyleOptionComboBox option;
    option.initFrom(combo);
    option.editable = combo->isEditable();
    option.subControls = QStyle::SC_All;
    QRect arrow = combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, combo);
    return Reachable(dialog, id, arrow.center());
}

/// A place of the dialog where neither a control nor an open list is.
QPoint FreePlace(QWidget *dialog)
{
    const QWidget *popup = QApplication::activePopupWidget();
    for (int y = 1; y < dialog->height(); y += FREE_STEP)
        for (int x = 1; x < dialog->width(); x += FREE_STEP)
            if (!dialog->childAt(x, y) &&
                (!popup || !popup->geometry().contains(dialog->mapToGlobal(QPoint(x, y)))))
                return {x, y};
    return {0, 0};
}

/// The window that gets the keys: an open list, or the dialog.
QWidget *KeyWindow(QWidget *dialog)
{
    QWidget *popup = QApplication::activePopupWidget();
    return popup ? popup : dialog;
}

QWidget *KeyReceiver(QWidget *window)
{
    return window->focusWidget() ? window->focusWidget() : window;
}

/// A key that is pressed and let go.
void SendKey(QWidget *dialog, int key, Qt::KeyboardModifiers modifiers, const QString &text)
{
    if (QApplication::activeWindow() != dialog && !QApplication::activePopupWidget())
        QApplication::setActiveWindow(dialog); // mnemonics are the active window's
    QPointer<QWidget> window(KeyWindow(dialog));
    if (qt_sendShortcutOverrideEvent(KeyReceiver(window), 0, key, modifiers, text, false, 1))
        return;
    for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (!window || !window->windowHandle())
            return;
        QKeyEvent event(type, key, modifiers, text);
        QApplication::sendEvent(window->windowHandle(), &event);
    }
}

void SendCharacter(QWidget *dialog, char32_t code)
{
    if (code == U'\n' || code == U'\r')
        return SendKey(dialog, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    if (code == U'\t')
        return SendKey(dialog, Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
    QString text = QString::fromUcs4(&code, 1);
    int key = code < 0x80 ? QChar(static_cast<char16_t>(code)).toUpper().unicode() : int{Qt::Key_unknown};
    SendKey(dialog, key, Qt::NoModifier, text);
}

/// What a key types; nothing together with Ctrl.
QString TextOf(QKeyCombination key)
{
    if (key.keyboardModifiers().testFlag(Qt::ControlModifier))
        return {};
    switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return QStringLiteral("\r");
    case Qt::Key_Escape:
        return QStringLiteral("\x1b");
    case Qt::Key_Tab:
        return QStringLiteral("\t");
    case Qt::Key_Backspace:
        return QStringLiteral("\b");
    case Qt::Key_Delete:
        return QStringLiteral("\x7f");
    default:
        break;
    }
    if (key.key() >= 0x100)
        return {};
    QChar c(static_cast<char16_t>(key.key()));
    return key.keyboardModifiers().testFlag(Qt::ShiftModifier) ? c : c.toLower();
}

/// Goes to a field as Tab does, and selects what is there. False where the user cannot get there.
bool EnterField(TNativeWidget *dialog, int id)
{
    QWidget *widget = Control(dialog, id);
    if (!widget->isVisible())
        Fail(ToWidget(dialog), id, "is not shown");
    if (!widget->isEnabled())
        return false;
    widget->setFocus(Qt::TabFocusReason);
    SendKey(ToWidget(dialog), Qt::Key_A, Qt::ControlModifier, QString());
    return true;
}

/// The place of an entry in the list's window, scrolled to where it shows.
QPoint PlaceOf(QAbstractItemView *list, int entry)
{
    QModelIndex index = list->model()->index(entry, 0, list->rootIndex());
    if (!index.isValid()) {
        std::fprintf(stderr, "a list has no entry %d\n", entry);
        std::abort();
    }
    list->scrollTo(index);
    return list->viewport()->mapTo(list->window(), list->visualRect(index).center());
}

QAbstractItemView *OpenList(TNativeWidget *dialog, int id)
{
    QComboBox *combo = Combo(dialog, id);
    if (!combo->view()->isVisible())
        Fail(ToWidget(dialog), id, "has not dropped its list");
    return combo->view();
}

/// Where mnemonics and selected text of an editable control are.
const QLineEdit *LineOf(const QWidget *widget)
{
    auto *combo = qobject_cast<const QComboBox *>(widget);
    return combo ? combo->lineEdit() : qobject_cast<const QLineEdit *>(widget);
}
} // namespace

namespace testdoor
{

void DesktopClick(TWindow &window, TPoint at)
{
    QWidget *widget = ToWidget(window.Native());
    double ratio = widget->devicePixelRatioF();
    QPointF place((at.x + 0.5) / ratio, (at.y + 0.5) / ratio);
    ClickAt(widget->window(), widget->mapTo(widget->window(), place));
}

DialogBox::DialogBox(ModalBox &box) : dialog(box.face.Widget()) {}

DialogBox::DialogBox(TDialog &aDialog) : dialog(aDialog.Native()) {}

void DialogBox::Click(int id, unsigned keys)
{
    ClickAt(ToWidget(dialog), MiddleOf(dialog, id), keys);
}

void DialogBox::DoubleClick(int id)
{
    DoubleClickAt(ToWidget(dialog), MiddleOf(dialog, id));
}

void DialogBox::ClickEntry(int id, int entry, bool twice)
{
    QPoint at = PlaceOf(ControlOf<QAbstractItemView>(dialog, id, "is no list box"), entry);
    at = Reachable(dialog, id, Control(dialog, id)->mapFrom(ToWidget(dialog), at));
    if (twice)
        DoubleClickAt(ToWidget(dialog), at);
    else
        ClickAt(ToWidget(dialog), at);
}

void DialogBox::Type(int id, const std::string &utf8)
{
    if (!EnterField(dialog, id))
        return;
    if (utf8.empty())
        SendKey(ToWidget(dialog), Qt::Key_Delete, Qt::NoModifier, QStringLiteral("\x7f"));
    TypeKeys(utf8);
}

void DialogBox::TypeKeys(const std::string &utf8)
{
    for (uint code : QString::fromStdString(utf8).toUcs4())
        SendCharacter(ToWidget(dialog), code);
}

void DialogBox::Paste(int id, const std::string &utf8)
{
    QApplication::clipboard()->setText(QString::fromStdString(utf8));
    if (EnterField(dialog, id))
        SendKey(ToWidget(dialog), Qt::Key_V, Qt::ControlModifier, QString());
}

void DialogBox::Press(const char *key)
{
    QKeySequence sequence(QString::fromUtf8(key), QKeySequence::PortableText);
    if (sequence.count() != 1) {
        std::fprintf(stderr, "no key is called \"%s\"\n", key);
        std::abort();
    }
    SendKey(ToWidget(dialog), sequence[0].key(), sequence[0].keyboardModifiers(), TextOf(sequence[0]));
}

void DialogBox::Drop(int id)
{
    ClickAt(ToWidget(dialog), ArrowOf(dialog, id));
}

void DialogBox::PointAt(int id, int entry)
{
    QAbstractItemView *list = OpenList(dialog, id);
    SendMouse(list->window(), QEvent::MouseMove, PlaceOf(list, entry));
}

void DialogBox::ClickDropped(int id, int entry)
{
    QAbstractItemView *list = OpenList(dialog, id);
    ClickAt(list->window(), PlaceOf(list, entry));
}

/// The open list gets what is clicked anywhere, as it holds the mouse.
void DialogBox::ClickBeside(int id)
{
    QWidget *popup = OpenList(dialog, id)->window();
    ClickAt(popup, popup->mapFromGlobal(ToWidget(dialog)->mapToGlobal(FreePlace(ToWidget(dialog)))));
}

void DialogBox::Choose(int id, int entry)
{
    Drop(id);
    ClickDropped(id, entry);
}

void DialogBox::CloseByFrame()
{
    QCloseEvent event;
    QApplication::sendEvent(ToWidget(dialog)->windowHandle(), &event);
}

int DialogBox::Focus() const
{
    for (QWidget *widget = ToWidget(dialog)->focusWidget(); widget; widget = widget->parentWidget())
        if (WindowClass(FromWidget(widget)))
            return WindowId(FromWidget(widget));
    return 0;
}

std::string DialogBox::Text(int id) const
{
    return ControlText(FromWidget(Control(dialog, id)));
}

std::string DialogBox::SelectedText(int id) const
{
    QWidget *widget = Control(dialog, id);
    if (const QLineEdit *line = LineOf(widget))
        return Held(line->selectedText());
    auto *memo = qobject_cast<QPlainTextEdit *>(widget);
    QString text = memo ? memo->textCursor().selectedText() : QString();
    return Held(text.replace(QChar::ParagraphSeparator, QStringLiteral("\r\n")));
}

std::vector<std::string> DialogBox::Entries(int id) const
{
    const QAbstractItemView *list = List(dialog, id);
    std::vector<std::string> entries;
    for (int i = 0; i < list->model()->rowCount(list->rootIndex()); ++i)
        entries.push_back(Held(list->model()->index(i, 0, list->rootIndex()).data().toString()));
    return entries;
}

int DialogBox::Selected(int id) const
{
    if (auto *combo = qobject_cast<QComboBox *>(Control(dialog, id)))
        return combo->currentIndex();
    QModelIndexList selected = List(dialog, id)->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.front().row();
}

bool DialogBox::IsDropped(int id) const
{
    return Combo(dialog, id)->view()->isVisible();
}

TCheckState DialogBox::Check(int id) const
{
    const TCheckFace *face = CheckFace(FromWidget(Control(dialog, id)));
    if (!face)
        Fail(ToWidget(dialog), id, "cannot be checked");
    return face->State();
}

bool DialogBox::IsEnabled(int id) const
{
    return Control(dialog, id)->isEnabled();
}

bool DialogBox::IsShown(int id) const
{
    return Control(dialog, id)->isVisible();
}

std::string DialogBox::Tip(int id) const
{
    return Held(Control(dialog, id)->toolTip());
}

/// What a screen reader says: its label, where it has one; by name a drop-down list is called as its entry.
std::string DialogBox::AccessibleName(int id) const
{
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(Control(dialog, id));
    if (!face)
        return {};
    if (face->role() == QAccessible::ComboBox)
        for (const auto &relation : face->relations(QAccessible::Label))
            return Held(relation.first->text(QAccessible::Name));
    return Held(face->text(QAccessible::Name));
}

std::string DialogBox::Caption() const
{
    return Held(ToWidget(dialog)->windowTitle().replace(QLatin1String("[*][*]"), QLatin1String("[*]")));
}

TSize DialogBox::Extent() const
{
    return {ToWidget(dialog)->width(), ToWidget(dialog)->height()};
}

std::vector<Placed> DialogBox::Layout() const
{
    std::vector<Placed> placed;
    for (QObject *child : ToWidget(dialog)->children()) {
        auto *widget = qobject_cast<QWidget *>(child);
        HWND control = FromWidget(widget);
        const char *name = WindowClass(control);
        if (!name)
            continue;
        QRect r = widget->geometry();
        bool frame =
            std::strcmp(name, "BUTTON") == 0 && (WindowStyle(control) & WIN_STYLE_KIND) == WIN_BS_GROUP;
        placed.push_back({WindowId(control),
                          name,
                          ControlText(control),
                          !widget->isHidden(),
                          {r.left(), r.top(), r.left() + r.width(), r.top() + r.height()},
                          NeededExtent(control),
                          frame});
    }
    return placed;
}

bool DialogBox::SaveScreenshot(const char *nativePath) const
{
    return ToWidget(dialog)->grab().save(QString::fromUtf8(nativePath), "PNG");
}

} // namespace testdoor
