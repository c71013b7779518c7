// Legends of the maps. One has a handful of boxes, so each layout measures all of them anew.
#include "usr/zulroom.h"

#include "lib/charstr.h"
#include "lib/xassert.h"
#include "win/dc.h"

#include <algorithm>

#include "lib/xon.h"

/// Measures that follow from the font, px.
struct TZulLegend::MEASURES {
    int line;   // of a text, and of a swatch
    int gap;    // between the parts of a row
    int rowGap; // between rows

    MEASURES(TDC &dc, const char *face, int size)
    {
        TFont font;
        font.face = face;
        font.height = -size;
        TFont former = dc.SetFont(font);
        line = std::max(dc.FontMetrics().height, 1);
        gap = std::max(dc.CharWidth('0') / 3, 1);
        rowGap = std::max(line / 12, 1);
        dc.SetFont(former);
    }
};

void TZulLegend::SetTitle(const char *str)
{
    ASSERT(str != NULL);
    StrCopy(title, str, TEXTMAX);
}

void TZulLegend::SetFont(const char *name, int size)
{
    ASSERT(name != NULL && size >= 0);
    StrCopy(font, name, TEXTMAX);
    fontSize = std::max(size, 1);
}

void TZulLegend::Add(TColor color, const char *str)
{
    ASSERT(str != NULL);
    if (count == MAX)
        return;
    TZulLegendBox &box = boxes[count++];
    StrCopy(box.text, str, TZulLegendBox::TEXTMAX);
    box.color = color;
    box.label.SetText(box.text);
}

void TZulLegend::Layout(TDC &dc, TRect &rect, int mode)
{
    __enter
        ASSERT(mode == ROW || mode == COLUMN);
        topLeft = bottomRight = rect.TopLeft();
        if (count > 0) {
            MEASURES measures(dc, font, fontSize);
            TRect room = {rect.left, rect.top, std::max(rect.left + 1, rect.right), rect.top}; // no bottom
            TRect head = room;
            titleText.SetText(title[0] != EOS ? title : NULL);
            titleText.SetFormat(EDC_TfBOLD);
            LayoutText(dc, titleText, head, EDC_HLEFT); __test;
            bottomRight = head.BottomRight();
            room.top = head.bottom + (title[0] != EOS ? measures.rowGap : 0);
            if (mode == ROW) {
                LayoutRow(dc, room, measures); __test;
            } else {
                LayoutColumn(dc, room, measures); __test;
            }
        }
        rect = Rect();
    __point
        bottomRight = topLeft;
    __treat
}

/// Breaks the text to the width of `rect`, which becomes what the text takes.
void TZulLegend::LayoutText(TDC &dc, TEdcText &text, TRect &rect, int hAlign) const
{
    __enter
        text.SetFont(font, fontSize, edcDefaultFont.charset);
        text.Layout(dc, rect, EDC_BREAKWIDTH, hAlign, EDC_VTOP); __test;
    __point
    __treat
}

/// Cells of equal width over the whole of `rect`. A label stands at the end of its cell, for it is the upper
/// limit of what the cell means.
void TZulLegend::LayoutRow(TDC &dc, const TRect &rect, const MEASURES &measures)
{
    __enter
        int cell = std::max((rect.Width() - (count - 1) * measures.gap) / count, 1);
        int bottom = rect.top;
        for (int i = 0; i < count; ++i) {
            TZulLegendBox &box = boxes[i];
            int left = rect.left + i * (cell + measures.gap);
            box.box = {left, rect.top, left + cell, rect.top + measures.line};
            int top = box.box.bottom + measures.rowGap;
            TRect label = {left, top, left + cell, top};
            box.label.SetFormat(EDC_TfRIGHT);
            LayoutText(dc, box.label, label, EDC_HRIGHT); __test;
            bottom = std::max(bottom, label.bottom);
        }
        bottomRight = {std::max(bottomRight.x, boxes[count - 1].box.right), bottom};
    __point
    __treat
}

/// A label of several lines has its swatch beside the first one.
void TZulLegend::LayoutColumn(TDC &dc, const TRect &rect, const MEASURES &measures)
{
    __enter
        int top = rect.top;
        for (int i = 0; i < count; ++i) {
            TZulLegendBox &box = boxes[i];
            box.box = {rect.left, top, rect.left + 2 * measures.line, top + measures.line};
            int left = box.box.right + measures.gap;
            TRect label = {left, top, std::max(left + 1, rect.right), top};
            box.label.SetFormat(0);
            LayoutText(dc, box.label, label, EDC_HLEFT); __test;
            bottomRight = {std::max(bottomRight.x, label.right), std::max(label.bottom, box.box.bottom)};
            top = bottomRight.y + measures.rowGap;
        }
    __point
    __treat
}

void TZulLegend::MoveBy(int dx, int dy)
{
    auto move = [dx, dy](TEdcText &text) {
        text.x += dx;
        text.y += dy;
    };
    topLeft = topLeft + TPoint{dx, dy};
    bottomRight = bottomRight + TPoint{dx, dy};
    move(titleText);
    for (int i = 0; i < count; ++i) {
        boxes[i].box = boxes[i].box.Offset(dx, dy);
        move(boxes[i].label);
    }
}

void TZulLegend::Paint(TDC &dc) const
{
    enum { THIN = 20 }; // of the font's height: a pixel on a screen, and still seen on paper
    TPen pen;
    TBrush brush;
    __enter
        pen = dc.SetPen({.color = WIN_BLACK, .width = std::max(fontSize / THIN, 1)});
        brush = dc.State().brush;
        if (count > 0) {
            titleText.Paint(dc); __test;
        }
        for (int i = 0; i < count; ++i) {
            dc.SetBrush(SolidBrush(boxes[i].color));
            dc.Rectangle(boxes[i].box);
            boxes[i].label.Paint(dc); __test;
        }
        dc.SetPen(pen);
        dc.SetBrush(brush);
    __point
    __treat
}
