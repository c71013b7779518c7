// What the build compiles out of res/ for a window: menus, keys and pictures. Plain tables sorted by number, in
// the system's character set; whoever starts a window hands them to it.
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

struct ResTABLES {
    const ResMENU *menus;
    int menuCount;
    const ResACCEL *accels;
    int accelCount;
    const ResPICTURE *pictures;
    int pictureCount;
};

#endif
