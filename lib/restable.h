// What the build compiles out of res/ for a window: menus, keys, pictures and dialogs. Plain tables sorted by
// number, in the system's character set; whoever starts a window hands them to it.
#ifndef LIB_RESTABLE_H
#define LIB_RESTABLE_H

#include <cstddef>
#include <cstdint>

/// One item of a menu; the items of a popup follow it one level deeper. Text NULL: a separator. Id 0 with a
/// text: a popup.
struct ResMENUITEM {
    int level;
    int id;
    const char *text; // & before the mnemonic
};
struct ResMENU {
    int id;
    const ResMENUITEM *items;
    int count;
};
/// A key that gives a command, named as "Ctrl+N" or "F5".
struct ResACCEL {
    int command;
    const char *key;
};
/// An enhanced metafile, the size it is meant for and a cursor's hot spot, at 96 pixels an inch.
struct ResPICTURE {
    int id;
    const uint8_t *bytes;
    size_t size;
    int width;
    int height;
    int hotX;
    int hotY;
};

/// What a line of a dialog makes; gives the window class and the low four bits of its style.
enum ResCONTROLKIND {
    RES_LABEL,   // static text; its mnemonic leads to the control behind it
    RES_PICTURE, // static with a picture
    RES_FRAME,   // frame with a title round other controls
    RES_EDIT,
    RES_MEMO,    // edit of many lines
    RES_COMBO,   // drop-down list with an edit field
    RES_CHOICE,  // drop-down list without one
    RES_LIST,    // list box
    RES_BUTTON,  // push button
    RES_DEFAULT, // push button that Return presses
    RES_CHECK,   // check box that switches itself
    RES_CHECK3,  // the same with a third state
    RES_RADIO    // radio button; its group switches it
};
enum ResCONTROLSTYLE : unsigned {
    RES_SORT = 1,    // a list keeps its entries in the platform's order
    RES_RIGHT = 2,   // a label's text stands at its right edge
    RES_CENTER = 4,  // ... in its middle
    RES_BITMAP = 8,  // a button shows a picture in place of a text
    RES_PUSH = 16,   // a check box or radio button looks like a push button
    RES_NOTAB = 32,  // Tab passes it by
    RES_HIDDEN = 64, // made, but not shown
    RES_GREY = 128   // made, but disabled
};
struct ResCONTROL {
    ResCONTROLKIND kind;
    int id;           // -1 for what nobody asks for
    const char *text; // & before the mnemonic; "" where there is none
    int picture;      // number; 0 for none
    int x;            // dialog units: average character width / 4, character height / 8
    int y;
    int width;
    int height;     // of a drop-down list: closed
    unsigned style; // ResCONTROLSTYLE
};
struct ResDIALOG {
    int id;
    const char *caption;
    int width; // dialog units, of the client area
    int height;
    const ResCONTROL *controls; // in the order of Tab
    int count;
};

struct ResTABLES {
    const ResMENU *menus;
    int menuCount;
    const ResACCEL *accels;
    int accelCount;
    const ResPICTURE *pictures;
    int pictureCount;
    const ResDIALOG *dialogs = NULL;
    int dialogCount = 0;
};

#endif
