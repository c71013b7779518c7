// The test door to the main window: menus are really opened and items taken by key, buttons by the mouse.
#include "win/frame.h"
#include "win/testdoor.h"

#include "lib/xassert.h"
#include "win/utf8.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QToolButton>
#include <algorithm>

namespace
{
QWidget *FrameWidget(TDecoratedFrame &frame)
{
    auto *widget = reinterpret_cast<QWidget *>(frame.Native());
    ASSERT(widget != NULL);
    return widget;
}

/// A menu that is open while this lives; opening it asks for its commands.
class OpenMenu
{
public:
    explicit OpenMenu(QMenu &aMenu) : menu(aMenu) { menu.popup(QPoint(0, 0)); }
    ~OpenMenu() { menu.close(); }

private:
    QMenu &menu;
};

void AddEntries(QMenu &menu, std::vector<testdoor::MenuEntry> &entries)
{
    OpenMenu open(menu);
    for (QAction *action : menu.actions()) {
        std::string text = FromUtf8(action->text().toUtf8().constData());
        entries.push_back(
            {action->data().toInt(), text, action->isEnabled() && !action->isSeparator(), action->isChecked()});
        if (action->menu())
            AddEntries(*action->menu(), entries);
    }
}

void TypeInto(QWidget &widget, int key)
{
    for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
}

bool ChooseIn(QMenu &menu, int id)
{
    OpenMenu open(menu);
    for (QAction *action : menu.actions()) {
        if (action->menu() && ChooseIn(*action->menu(), id))
            return true;
        if (action->menu() || action->isSeparator() || action->data().toInt() != id)
            continue;
        menu.setActiveAction(action);
        TypeInto(menu, Qt::Key_Return);
        return true;
    }
    return false;
}
std::vector<QToolButton *> Buttons(TDecoratedFrame &frame, int command)
{
    std::vector<QToolButton *> buttons;
    for (auto *button : FrameWidget(frame)->findChildren<QToolButton *>())
        if (button->property("command").toInt() == command)
            buttons.push_back(button);
    return buttons;
}
} // namespace

namespace testdoor
{

std::vector<MenuEntry> Menu(TDecoratedFrame &frame, int popup)
{
    std::vector<MenuEntry> entries;
    auto *bar = FrameWidget(frame)->findChild<QMenuBar *>();
    if (bar && popup >= 0 && popup < bar->actions().size())
        AddEntries(*bar->actions()[popup]->menu(), entries);
    return entries;
}

void ChooseMenu(TDecoratedFrame &frame, int id)
{
    auto *bar = FrameWidget(frame)->findChild<QMenuBar *>();
    bool found = false;
    for (QAction *popup : bar ? bar->actions() : QList<QAction *>())
        found = found || ChooseIn(*popup->menu(), id);
    ASSERT(found);
}

bool ClickGadget(TDecoratedFrame &frame, int command)
{
    std::vector<QToolButton *> buttons = Buttons(frame, command);
    if (buttons.empty() || !buttons.front()->isEnabled())
        return false;
    QPointF at = QRectF(buttons.front()->rect()).center();
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, at, buttons.front()->mapToGlobal(at), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(buttons.front(), &event);
    }
    return true;
}

void PointAtGadget(TDecoratedFrame &frame, int command, bool on)
{
    for (QToolButton *button : Buttons(frame, command)) {
        QPointF at = QRectF(button->rect()).center();
        QEnterEvent enter(at, at, button->mapToGlobal(at));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(button, on ? &enter : &leave);
    }
}

std::vector<Gadget> Gadgets(TDecoratedFrame &frame, int command)
{
    std::vector<Gadget> gadgets;
    for (QToolButton *button : Buttons(frame, command))
        gadgets.push_back({button->isEnabled(), button->isChecked(),
                           FromUtf8(button->toolTip().toUtf8().constData()),
                           FromUtf8(button->text().toUtf8().constData())});
    return gadgets;
}

} // namespace testdoor
