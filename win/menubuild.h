// How menus of the resources become menus of the toolkit, for the main window's bar and for popups. Each item
// carries its command number as the action's data.
#ifndef WIN_MENUBUILD_H
#define WIN_MENUBUILD_H

#include "win/menu.h"
#include "win/native.h"
#include <functional>
#include <string>

class TCommandEnabler;

struct TMenuHandlers {
    std::function<void(TCommandEnabler &)> ask; // for each item when its popup is about to open
    std::function<void(int)> choose;            // the user took an item
};

/// Adds the items to a menu or a menu bar.
void FillMenu(TNativeWidget *menuOrBar, const TMenu &menu, const TMenuHandlers &handlers);

/// A key as the German keyboard names it, in the system's character set: "Strg+Umschalt+S" of "Ctrl+Shift+S".
std::string KeyText(const char *key);

#endif
