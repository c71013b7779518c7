// Cursors of the resources as cursors of the toolkit.
#ifndef WIN_CURSOR_H
#define WIN_CURSOR_H

#include "win/window.h"

/// The pointer over a widget; the arrow where the resources have no such picture.
void SetNativeCursor(TNativeWidget *widget, const TCursor &cursor);

#endif
