// The colours of plans and maps, in scales. A map's pixel is an index into one scale.
#ifndef USR_ZULCOLORS_H
#define USR_ZULCOLORS_H

#include <cstdint>

struct ZulRGB {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
};

struct ZulCOLORS {
    const ZulRGB *colors; // view
    int count;
};

extern const ZulCOLORS hallColors;      // background of the hall's plan
extern const ZulCOLORS mapColors;       // irradiation map, fine scale
extern const ZulCOLORS mapColorsCoarse; // irradiation map, coarse scale
extern const ZulCOLORS criterionColors; // criterion met, tolerance band, neither
extern const ZulCOLORS greyColors;      // black-and-white output

#endif
