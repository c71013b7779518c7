// Menus, keys, pictures and dialogs of the resources, as the window system layer looks them up.
#ifndef WIN_RESOURCES_H
#define WIN_RESOURCES_H

#include "lib/restable.h"
#include "win/geometry.h"
#include <span>
#include <vector>

/// The tables must outlive the use; NULL takes them off. @return the former ones
const ResTABLES *SetResourceTables(const ResTABLES *tables);

const ResMENU *FindMenu(int id); // NULL where there is none
const char *FindAccelerator(int command);
std::span<const ResACCEL> Accelerators();
const ResPICTURE *FindPicture(int id);
const ResDIALOG *FindDialog(int id); // NULL where there is none

inline constexpr int PICTURE_MAX = 1024; // px, the largest extent that pictures are drawn at

/// A picture in pixels, for buttons, icons and cursors. What the drawing leaves free is transparent.
struct TDrawnPicture {
    TSize size;                   // px; 0 x 0 where there is no such picture
    TPoint hot;                   // px, a cursor's hot spot
    std::vector<uint32_t> pixels; // row by row from the top: alpha, red, green, blue, premultiplied
};
/// Drawn anew at `scale` device pixels per pixel of the resource. Throws std::bad_alloc.
TDrawnPicture DrawPicture(int id, double scale);

#endif
