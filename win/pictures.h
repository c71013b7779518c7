// Pictures of the resources as icons of the toolkit.
#ifndef WIN_PICTURES_H
#define WIN_PICTURES_H

#include "win/geometry.h"
#include "win/native.h"

/// Gives a button or a window its icon, drawn anew at whatever size and display scale it is shown, and grey
/// while a button is disabled. @return false, and the icon untouched, where there is no such picture
bool SetNativeIcon(TNativeWidget *widget, int pictureId);

/// Draws a picture as large as it fits into the rectangle, in its middle and in its proportions; nothing where
/// there is no such picture. `area` in the toolkit's units. Throws std::bad_alloc.
void PaintPicture(TNativePainter *painter, int pictureId, const TRect &area, bool grey);

#endif
