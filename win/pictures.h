// Pictures of the resources as icons of the toolkit.
#ifndef WIN_PICTURES_H
#define WIN_PICTURES_H

#include "win/native.h"

/// Gives a button or a window its icon, drawn anew at whatever size and display scale it is shown, and grey
/// while a button is disabled. @return false, and the icon untouched, where there is no such picture
bool SetNativeIcon(TNativeWidget *widget, int pictureId);

#endif
