// A picture of colour indices as an 8-bit palette PNG, one pixel a raster point.
#ifndef TOOLS_ZULCALC_PNG_H
#define TOOLS_ZULCALC_PNG_H

#include "usr/zulpass.h"

class CdeFILENAME;

/// Writes the picture; the file appears when it is complete. XFCREATE, XFWRITE, XALLOC.
void WritePng(const CdeFILENAME &name, const ZulPixels &pixels, const ZulCOLORS &colors);

#endif
