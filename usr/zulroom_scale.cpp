// The colour table of the irradiation map. It has a dozen rows and is laid out with the plan, so nothing of it
// is kept between layouts but places.
#include "usr/zulroom.h"

#include "lib/charstr.h"
#include "lib/xassert.h"
#include "win/dc.h"

#include <algorithm>
#include <cstring>

#include "lib/xon.h"

void TColorScale::Add(bool hasColor, TColor color, const char *str1, const char *str2)
{
    ASSERT(str1 != NULL && str2 != NULL);
    if (count >= MAX)
        return;
    ROW &row = rows[count++];
    row.hasColor = hasColor;
    row.color = color;
    StrCopy(row.texts[0], str1, TEXTMAX);
    StrCopy(row.texts[1], str2, TEXTMAX);
}

void TColorScale::SetLines(const char *above, const char *below)
{
    ASSERT(above != NULL && below != NULL);
    StrCopy(line1.text, above, TEXTMAX);
    StrCopy(line2.text, below, TEXTMAX);
}

void TColorScale::SetFont(const char *name, int size)
{
    ASSERT(name != NULL && size >= 0);
    StrCopy(font, name, TEXTMAX);
    fontSize = std::max(1, size);
}

/// At blanks, so that no piece is wider than `width` px; a longer word is a piece of its own.
void TColorScale::Break(TDC &dc, LINE &line, int width)
{
    const char *text = line.text;
    auto skip = [text](int at) { return at + static_cast<int>(std::strspn(text + at, " ")); };
    auto wordEnd = [text](int at) { return at + static_cast<int>(std::strcspn(text + at, " ")); };
    line.pieces.clear();
    int start = skip(0);
    int end = wordEnd(start);
    while (text[start] != EOS) {
        int word = skip(end);
        int next = wordEnd(word);
        if (text[word] == EOS || dc.TextWidth(text + start, next - start) > width) {
            line.pieces.push_back({start, end - start});
            start = word;
        }
        end = next;
    }
}

/// From `corner` down, with `pitch` px from row to row. @return the right edge
int TColorScale::PlaceColumn(TDC &dc, int column, TPoint corner, int pitch)
{
    int widths[MAX] = {};
    int all = 0;     // widest text
    int colored = 0; // widest text of the rows with a colour
    for (int i = 0; i < count; ++i) {
        widths[i] = dc.TextWidth(rows[i].texts[column], StrLength(rows[i].texts[column]));
        all = std::max(all, widths[i]);
        colored = std::max(colored, rows[i].hasColor ? widths[i] : 0);
    }
    int height = dc.FontMetrics().height;
    for (int i = 0; i < count; ++i) {
        int right = corner.x + (all + (rows[i].hasColor ? colored : widths[i])) / 2;
        int top = corner.y + i * pitch;
        rows[i].rects[column] = {right - widths[i], top, right, top + height};
    }
    return corner.x + all;
}

int TColorScale::Layout(TDC &dc, const TRect &rect)
{
    int height = 0;
    TFont former;
    __enter
        former = dc.SetFont({.face = font, .height = -fontSize});
        int text = dc.FontMetrics().height;
        int pitch = text + std::max(1, text / 12);
        int space = std::max(1, text / 3); // between the rows and what stands above and below them
        Break(dc, line1, rect.Width());
        Break(dc, line2, rect.Width());
        int above = static_cast<int>(line1.pieces.size()) * text;
        int below = static_cast<int>(line2.pieces.size()) * text;
        height = above + (above > 0 ? space : 0) + count * pitch + (below > 0 ? space : 0) + below;
        line1.rect = {rect.left, rect.bottom - height, rect.right, rect.bottom - height + above};
        line2.rect = {rect.left, rect.bottom - below, rect.right, rect.bottom};
        TPoint corner = {rect.left, line1.rect.bottom + (above > 0 ? space : 0)};
        for (int i = 0; i < count; ++i)
            rows[i].swatch = {corner.x, corner.y + i * pitch, corner.x + 2 * text, corner.y + i * pitch + text};
        corner.x += 3 * text;
        corner.x = PlaceColumn(dc, 0, corner, pitch) + 2 * text;
        PlaceColumn(dc, 1, corner, pitch);
        dc.SetFont(former);
    __point
        height = 0;
        dc.SetFont(former);
    __treat
    return height;
}

void TColorScale::PaintLine(TDC &dc, const LINE &line)
{
    int y = line.rect.top;
    int height = dc.FontMetrics().height;
    for (const PIECE &piece : line.pieces) {
        dc.TextOut(line.rect.left, y, line.text + piece.start, piece.length);
        y += height;
    }
}

void TColorScale::Paint(TDC &dc) const
{
    TDCState former = dc.State();
    __enter
        dc.SetFont({.face = font, .height = -fontSize});
        dc.SetPen(TPen());
        dc.SetTextColor(WIN_BLACK);
        dc.SetTextAlign(WIN_TEXT_TOP);
        dc.SetOpaque(false);
        PaintLine(dc, line1);
        for (int i = 0; i < count; ++i) {
            const ROW &row = rows[i];
            dc.SetBrush(SolidBrush(row.color));
            if (row.hasColor)
                dc.Rectangle(row.swatch);
            for (int k = 0; k < COLUMNS; ++k)
                dc.TextOut(row.rects[k].left, row.rects[k].top, row.texts[k], StrLength(row.texts[k]));
        }
        PaintLine(dc, line2);
    __point
    __treat
    dc.SetState(former);
}

std::unique_ptr<TColorScale> ZulMakeColorScale(const ZulScaleTexts &texts, const TEdcColorScale &colors)
{
    std::unique_ptr<TColorScale> table;
    __enter
        if (!texts.rows.empty()) {
            table = std::make_unique<TColorScale>();
            table->SetLines(texts.line1.c_str(), texts.line2.c_str());
            int color = -1; // the first row is the head
            for (const auto &[intensity, temperature] : texts.rows) {
                bool hasColor = color >= 0;
                table->Add(hasColor, hasColor ? colors.Color(color) : WIN_WHITE, intensity.c_str(),
                           temperature.c_str());
                ++color;
            }
        }
    __point
        table.reset();
    __treat
    return table;
}
