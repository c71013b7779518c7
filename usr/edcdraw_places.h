// What the two dialogs for exact places share.
#ifndef USR_EDCDRAW_PLACES_H
#define USR_EDCDRAW_PLACES_H

#include "lib/ag.h"
#include "usr/edcdlg.h"

inline double EdcDegrees(double radians)
{
    return radians * 180 / AgPI;
}
inline double EdcRadians(double degrees)
{
    return degrees * AgPI / 180;
}

TEdcEdit *EdcAnyNumber(TEdcDialog &dialog, int id); // a field that must hold a number, of any size
void EdcShowNumber(TEdcEdit &edit, double value);   // without the noise of sums
bool EdcIsChecked(const TEdcInt &chk);              // a box that is neither is a fault of the dialog
void EdcForgetAlign();

#endif
