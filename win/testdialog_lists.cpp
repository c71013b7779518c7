#include "win/testdialog.h"

#include "win/controlparts.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QMouseEvent>
#include <QScreen>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QWindow>
#include <cstdio>
#include <cstdlib>

namespace
{
template <class WIDGET>
WIDGET *FindList(TNativeWidget *dialog, int id)
{
    for (QObject *child : reinterpret_cast<QWidget *>(dialog)->children())
        if (auto *widget = qobject_cast<WIDGET *>(child))
            if (WindowId(reinterpret_cast<HWND>(static_cast<QWidget *>(widget))) == id)
                return widget;
    std::fprintf(stderr, "control %d is no such list\n", id);
    std::abort();
}

TRect FromQt(const QRect &r)
{
    return {r.left(), r.top(), r.left() + r.width(), r.top() + r.height()};
}

QRect OnScreen(const QWidget *widget)
{
    return {widget->mapToGlobal(QPoint(0, 0)), widget->size()};
}

/// With the left button: pressed, moved while it is held, or let go.
void SendHeld(QWidget *window, QEvent::Type type, QPoint at)
{
    bool move = type == QEvent::MouseMove;
    bool released = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, at, window->mapToGlobal(at), move ? Qt::NoButton : Qt::LeftButton,
                      released ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window->windowHandle(), &event);
}

QPoint MiddleOf(QAbstractItemView *list, int entry)
{
    QModelIndex index = list->model()->index(entry, 0);
    list->scrollTo(index);
    return list->viewport()->mapTo(list->window(), list->visualRect(index).center());
}
} // namespace

namespace testdoor
{

void DialogBox::DragFromArrow(int id, int entry)
{
    auto *combo = FindList<QComboBox>(dialog, id);
    QStyleOptionComboBox option;
    option.initFrom(combo);
    option.editable = combo->isEditable();
    option.subControls = QStyle::SC_All;
    QRect arrow = combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, combo);
    SendHeld(combo->window(), QEvent::MouseButtonPress, combo->mapTo(combo->window(), arrow.center()));
    QWidget *list = combo->view()->window();
    QPoint at = MiddleOf(combo->view(), entry);
    SendHeld(list, QEvent::MouseMove, at);
    SendHeld(list, QEvent::MouseButtonRelease, at);
}

DroppedList DialogBox::Dropped(int id) const
{
    auto *combo = FindList<QComboBox>(dialog, id);
    QAbstractItemView *list = combo->view();
    QRect first = list->visualRect(list->model()->index(0, 0));
    int widest = 0;
    for (int i = 0; i < list->model()->rowCount(); ++i)
        widest = qMax(widest, list->sizeHintForIndex(list->model()->index(i, 0)).width());
    return {FromQt(OnScreen(list->window())), FromQt(OnScreen(combo)),
            FromQt(combo->screen()->availableGeometry()), list->viewport()->height() / qMax(1, first.height()),
            widest > list->viewport()->width()};
}

void DialogBox::DragEntries(int id, int from, int to)
{
    auto *list = FindList<QAbstractItemView>(dialog, id);
    SendHeld(list->window(), QEvent::MouseButtonPress, MiddleOf(list, from));
    QPoint inside(list->viewport()->rect().center());
    QPoint at = list->viewport()->mapTo(list->window(), QPoint(inside.x(), to < 0 ? -5 : list->height() + 5));
    if (to >= 0 && to < list->model()->rowCount())
        at = MiddleOf(list, to);
    SendHeld(list->window(), QEvent::MouseMove, at);
    SendHeld(list->window(), QEvent::MouseButtonRelease, at);
}

} // namespace testdoor
