// A menu apart from any window: items with their state, popups within. Menus of the resources are loaded into
// one and shown at the pointer.
#ifndef WIN_MENU_H
#define WIN_MENU_H

#include "win/geometry.h"
#include <memory>
#include <string>
#include <vector>

class TWindow;

class TMenu
{
public:
    struct ITEM {
        int id = 0;       // 0 for a separator or a popup
        std::string text; // Windows-1252, & before the mnemonic; empty: a separator
        bool enabled = true;
        bool checked = false;
        std::unique_ptr<TMenu> popup; // NULL for a plain item
    };
    std::vector<ITEM> items;
};

/// The menu of that number; empty where there is none. Throws std::bad_alloc.
TMenu LoadMenu(int menuId);

/// Shows the menu at a point of the window's client area; what is chosen goes to the main frame as a command.
/// Its enablers are asked first, and what is disabled or ticked here stays so; `defaultItem` is drawn bold, 0
/// for none. Nothing without a window or items.
void TrackMenu(TWindow &window, const TMenu &menu, TPoint at, int defaultItem);

#endif
