#include "win/menubuild.h"

#include "win/application.h"
#include "win/frame.h"
#include "win/modal.h"
#include "win/resources.h"
#include "win/utf8.h"

#include <QAction>
#include <QMenu>
#include <algorithm>
#include <string_view>

namespace
{
QString ItemText(const ResMENUITEM &item)
{
    std::string text = ToUtf8(item.text);
    if (const char *key = FindAccelerator(item.id))
        text += '\t' + ToUtf8(KeyText(key).c_str());
    return QString::fromStdString(text);
}

/// Shows the answers of whoever knows the commands; what nobody answers is grey.
void AskItems(QMenu &menu, const TMenuHandlers &handlers)
{
    for (QAction *action : menu.actions()) {
        if (action->isSeparator() || action->menu())
            continue;
        TCommandEnabler enabler(action->data().toInt());
        handlers.ask(enabler);
        action->setEnabled(enabler.IsAnswered() && enabler.IsEnabled());
        action->setCheckable(enabler.IsChecked());
        action->setChecked(enabler.IsChecked());
    }
}

void AskBeforeShowing(QMenu &menu, const TMenuHandlers &handlers)
{
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu, handlers] { AskItems(menu, handlers); });
}

void AddItem(QWidget &target, const ResMENUITEM &item, const TMenuHandlers &handlers)
{
    auto *action = new QAction(&target);
    if (item.text) {
        action->setText(ItemText(item));
        action->setData(item.id);
        QObject::connect(action, &QAction::triggered, &target,
                         [choose = handlers.choose, id = item.id] { choose(id); });
    } else {
        action->setSeparator(true);
    }
    target.addAction(action);
}

/// Adds what stands at `level` and below it. @return the item behind
const ResMENUITEM *FillLevel(QWidget &target, const ResMENUITEM *item, const ResMENUITEM *end, int level,
                             const TMenuHandlers &handlers)
{
    while (item != end && item->level >= level) {
        if (!item->text || item->id != 0) {
            AddItem(target, *item++, handlers);
            continue;
        }
        auto *popup = new QMenu(QString::fromStdString(ToUtf8(item->text)), &target);
        AskBeforeShowing(*popup, handlers);
        target.addAction(popup->menuAction());
        item = FillLevel(*popup, item + 1, end, level + 1, handlers);
    }
    return item;
}

/// The item of a command in a menu or the popups below it, NULL where there is none.
QAction *FindItem(const QMenu &menu, int id)
{
    for (QAction *action : menu.actions()) {
        QAction *found = action->menu() ? FindItem(*action->menu(), id) : action;
        if (found && !found->isSeparator() && found->data().toInt() == id)
            return found;
    }
    return NULL;
}

class TPopupFace : public TModalFace
{
public:
    explicit TPopupFace(QMenu &aMenu) : menu(aMenu) {}
    const char *Kind() const override { return "popup"; }
    bool IsUp() const override { return menu.isVisible(); }
    void Cancel() override { menu.close(); }

    void Answer(int id) override
    {
        QAction *item = FindItem(menu, id);
        if (!item || !item->isEnabled())
            return;
        menu.close();
        item->trigger();
    }

    std::string Text() const override
    {
        std::string text;
        AddText(menu, text);
        return text;
    }

private:
    static void AddText(const QMenu &part, std::string &text)
    {
        for (QAction *action : part.actions()) {
            if (action->isSeparator())
                continue;
            text += FromUtf8(action->text().toUtf8().constData()) + '\n';
            if (action->menu())
                AddText(*action->menu(), text);
        }
    }

    QMenu &menu;
};
} // namespace

void FillMenu(TNativeWidget *menuOrBar, const ResMENU &menu, const TMenuHandlers &handlers)
{
    QWidget &target = *reinterpret_cast<QWidget *>(menuOrBar);
    FillLevel(target, menu.items, menu.items + menu.count, 0, handlers);
}

std::string KeyText(const char *key)
{
    static const struct {
        std::string_view key;
        const char *german;
    } names[] = {{"Ctrl", "Strg"},     {"Shift", "Umschalt"},  {"Del", "Entf"},        {"Ins", "Einfg"},
                 {"Home", "Pos1"},     {"End", "Ende"},        {"PgUp", "Bild auf"},   {"PgDown", "Bild ab"},
                 {"Up", "Nach oben"},  {"Down", "Nach unten"}, {"Left", "Nach links"}, {"Right", "Nach rechts"},
                 {"Return", "Eingabe"}};
    std::string text;
    for (std::string_view rest = key; !rest.empty();) {
        std::string_view part = rest.substr(0, rest.find('+', 1));
        rest.remove_prefix(std::min(part.size() + 1, rest.size()));
        auto known = std::find_if(std::begin(names), std::end(names),
                                  [part](const auto &name) { return name.key == part; });
        text += (text.empty() ? "" : "+") + (known != std::end(names) ? known->german : std::string(part));
    }
    return text;
}

TPopupMenu::TPopupMenu(int menuId)
{
    if (menuId)
        Load(menuId);
}

void TPopupMenu::Load(int menuId)
{
    menus.assign(1, menuId);
}

void TPopupMenu::Append(int menuId)
{
    menus.push_back(menuId);
}

void TPopupMenu::Track(TWindow &window, TPoint at, int defaultItem)
{
    TDecoratedFrame *frame = TApplication::Current() ? TApplication::Current()->MainWindow() : NULL;
    if (!frame || !window.IsCreated())
        return;
    QMenu menu(reinterpret_cast<QWidget *>(window.Native()));
    // The command comes once the event that opened the menu is through.
    TMenuHandlers handlers = {[frame](TCommandEnabler &enabler) { frame->EvCommandEnable(enabler); },
                              [frame](int id) { frame->PostCommand(id); }};
    for (int id : menus)
        if (const ResMENU *items = FindMenu(id))
            FillMenu(reinterpret_cast<TNativeWidget *>(&menu), *items, handlers);
    if (menu.isEmpty())
        return;
    AskBeforeShowing(menu, handlers);
    if (QAction *item = defaultItem ? FindItem(menu, defaultItem) : NULL)
        menu.setDefaultAction(item);
    TPopupFace face(menu);
    TModalScope scope(face);
    TPoint screen = window.ClientToScreen(at);
    menu.exec(QPoint(screen.x, screen.y));
}
