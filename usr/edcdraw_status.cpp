// What the right field of the status bar tells of the pointer on a plan.
#include "usr/edcdraw.h"
#include "usr/edcdraw_places.h"

#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "win/gadgets.h"

#include "lib/xon.h"

namespace
{
enum { TEXT_POINT = 21610, TEXT_SHIFT = 21611, TEXT_TURN = 21612 };
enum { CENTIMETRES = -2, TENTHS = -1 }; // exponents of what is shown

double Shown(double value, int exponent)
{
    return EdcRound(value, exponent) + 0.0; // no negative 0
}

std::string PointText(const AgPOINT &point, const TEdcDrawDrag *drag)
{
    std::string text = EdcResFormat(TEXT_POINT, Shown(point.x, CENTIMETRES), Shown(point.y, CENTIMETRES));
    if (drag && (drag->mode & EDC_DRAWDRAGMOVE))
        text += EdcResFormat(TEXT_SHIFT, Shown(drag->shift.x, CENTIMETRES), Shown(drag->shift.y, CENTIMETRES));
    if (drag && (drag->mode & EDC_DRAWDRAGROTATE))
        text += EdcResFormat(TEXT_TURN, Shown(EdcDegrees(drag->angle), TENTHS));
    return text;
}
} // namespace

void EdcShowPointer(const AgPOINT &point, const TEdcDrawDrag *drag)
{
    __enter
        if (TStatusBar *bar = AppStatusBar())
            bar->SetRightText(PointText(point, drag).c_str());
    __point
    __treat
}

void EdcHidePointer()
{
    if (TStatusBar *bar = AppStatusBar())
        bar->SetRightText("");
}
