// What the status bar tells of a plan: on the left what the active tool will do, on the right where the pointer
// is.
#include "usr/edcdraw.h"
#include "usr/edcdraw_places.h"

#include "usr/edcapp.h"
#include "usr/edcutils.h"
#include "win/gadgets.h"

#include "lib/xon.h"

namespace
{
enum { TEXT_POINT = 21610, TEXT_SHIFT = 21611, TEXT_TURN = 21612 };
/// What a tool does with things that have no properties, and with those that have some.
struct TOOLTEXTS {
    int tool;
    int texts[2];
};
const TOOLTEXTS toolTexts[] = {{EDC_TlSELECT, {21620, 21621}},
                               {EDC_TlALIGN, {21622, 21622}},
                               {EDC_TlSTOCK, {21623, 21624}},
                               {EDC_TlRECT, {21625, 21626}}};

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

/// On each move too, for what long work has told since then, and taken back, stood in the same place.
void EdcShowTool(int toolId, const TEdcSpriteLayer *layer)
{
    TStatusBar *bar = AppStatusBar();
    if (!bar || !layer)
        return;
    __enter
        for (const TOOLTEXTS &each : toolTexts)
            if (each.tool == toolId) {
                const char *text = GetResString(each.texts[layer->Options() & EDC_LoNOOPEN ? 0 : 1]);
                if (bar->Text() != text)
                    bar->SetText(text);
            }
    __point
    __treat
}

void EdcHideTool()
{
    TStatusBar *bar = AppStatusBar();
    if (!bar || bar->Text().empty())
        return;
    for (const TOOLTEXTS &each : toolTexts)
        for (int text : each.texts)
            if (bar->Text() == GetResString(text))
                bar->SetText("");
}
