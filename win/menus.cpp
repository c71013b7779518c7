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
constexpr char GREY[] = "grey"; // of an action: its item is disabled, whatever the enablers say
constexpr char TICKED[] = "ticked";

QString ItemText(const TMenu::ITEM &item)
{
    std::string text = ToUtf8(item.text.c_str());
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
        bool checked = enabler.IsChecked() || action->property(TICKED).toBool();
        action->setEnabled(enabler.IsAnswered() && enabler.IsEnabled() && !action->property(GREY).toBool());
        action->setCheckable(checked);
        action->setChecked(checked);
    }
}

void AskBeforeShowing(QMenu &menu, const TMenuHandlers &handlers)
{
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu, handlers] { AskItems(menu, handlers); });
}

QAction *MakeItem(QWidget &target, const TMenu::ITEM &item, const TMenuHandlers &handlers)
{
    auto *action = new QAction(&target);
    action->setSeparator(item.text.empty());
    if (item.text.empty())
        return action;
    action->setText(ItemText(item));
    action->setData(item.id);
    action->setProperty(GREY, !item.enabled);
    action->setProperty(TICKED, item.checked);
    QObject::connect(action, &QAction::triggered, &target,
                     [choose = handlers.choose, id = item.id] { choose(id); });
    return action;
}

QAction *MakePopup(QWidget &target, const TMenu::ITEM &item, const TMenuHandlers &handlers)
{
    auto *popup = new QMenu(QString::fromStdString(ToUtf8(item.text.c_str())), &target);
    AskBeforeShowing(*popup, handlers);
    FillMenu(reinterpret_cast<TNativeWidget *>(static_cast<QWidget *>(popup)), *item.popup, handlers);
    popup->menuAction()->setEnabled(item.enabled);
    return popup->menuAction();
}

/// Takes what stands at `level` and below it. @return the item behind
const ResMENUITEM *LoadLevel(TMenu &menu, const ResMENUITEM *item, const ResMENUITEM *end, int level)
{
    while (item != end && item->level >= level) {
        TMenu::ITEM &loaded = menu.items.emplace_back();
        loaded.id = item->id;
        loaded.text = item->text ? item->text : "";
        bool isPopup = item->text && item->id == 0;
        ++item;
        if (!isPopup)
            continue;
        loaded.popup = std::make_unique<TMenu>();
        item = LoadLevel(*loaded.popup, item, end, level + 1);
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
    TNativeWidget *Widget() const override
    {
        return reinterpret_cast<TNativeWidget *>(static_cast<QWidget *>(&menu));
    }
    int Default() const override { return menu.defaultAction() ? menu.defaultAction()->data().toInt() : 0; }

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

TMenu LoadMenu(int menuId)
{
    TMenu menu;
    if (const ResMENU *found = FindMenu(menuId))
        LoadLevel(menu, found->items, found->items + found->count, 0);
    return menu;
}

void FillMenu(TNativeWidget *menuOrBar, const TMenu &menu, const TMenuHandlers &handlers)
{
    QWidget &target = *reinterpret_cast<QWidget *>(menuOrBar);
    for (const TMenu::ITEM &item : menu.items)
        target.addAction(item.popup ? MakePopup(target, item, handlers) : MakeItem(target, item, handlers));
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

void TrackMenu(TWindow &window, const TMenu &menu, TPoint at, int defaultItem)
{
    TDecoratedFrame *frame = TApplication::Current() ? TApplication::Current()->MainWindow() : NULL;
    if (!frame || !window.IsCreated() || menu.items.empty())
        return;
    QMenu popup(reinterpret_cast<QWidget *>(window.Native()));
    // The command comes once the event that opened the menu is through.
    TMenuHandlers handlers = {[frame](TCommandEnabler &enabler) { frame->EvCommandEnable(enabler); },
                              [frame](int id) { frame->PostCommand(id); }};
    FillMenu(reinterpret_cast<TNativeWidget *>(static_cast<QWidget *>(&popup)), menu, handlers);
    AskBeforeShowing(popup, handlers);
    if (QAction *item = defaultItem ? FindItem(popup, defaultItem) : NULL)
        popup.setDefaultAction(item);
    TPopupFace face(popup);
    TModalScope scope(face);
    TPoint screen = window.ClientToScreen(at);
    popup.exec(QPoint(screen.x, screen.y));
}
