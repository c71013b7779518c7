// Opaque names for objects of the toolkit, which the sources of this folder hand to each other. No other layer
// touches them; the sources cast them back.
#ifndef WIN_NATIVE_H
#define WIN_NATIVE_H

struct TNativeWidget;  // a widget
struct TNativePainter; // a painter
struct TNativeDevice;  // anything that can be painted on
struct TNativeImage;   // an image
struct TNativeModel;   // what a list shows

using HWND = TNativeWidget *; // where only a window's identity counts; NULL while it has no widget

#endif
