// The colour table of the irradiation map. It has a dozen rows and is laid out with the plan, so nothing of it
// is kept between layouts but places.
#include "usr/zulroom.h"

#include "lib/charstr.h"
#include "lib/xassert.h"
#include "usr/edcutils.h"
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

void TColorScale::SetPitch(double px)
{
    ASSERT(px >= 0);
    pitch = px;
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
            line.pieces.push_back({start, end - start, {}});
            start = word;
        }
        end = next;
    }
}

/// The wanted font, or the largest that stands in a row. @return the height of its texts, px
int TColorScale::ChooseFont(TDC &dc)
{
    for (usedSize = fontSize;; --usedSize) {
        dc.SetFont({.face = font, .height = -usedSize});
        int height = dc.FontMetrics().height;
        if (usedSize == 1 || pitch == 0 || height <= pitch)
            return height;
    }
}

/// Left and right edges. @return the right edge of all
int TColorScale::PlaceColumn(TDC &dc, int column, int left)
{
    int widths[MAX] = {};
    int all = 0;     // widest text
    int colored = 0; // widest text of the rows with a colour
    for (int i = 0; i < count; ++i) {
        widths[i] = dc.TextWidth(rows[i].texts[column], StrLength(rows[i].texts[column]));
        all = std::max(all, widths[i]);
        colored = std::max(colored, rows[i].hasColor ? widths[i] : 0);
    }
    for (int i = 0; i < count; ++i) {
        TRect &rect = rows[i].rects[column];
        rect.right = left + (all + (rows[i].hasColor ? colored : widths[i])) / 2;
        rect.left = rect.right - widths[i];
    }
    return left + all;
}

/// Everything one below the other, `step` px apart, with a third of that between rows and lines. Places are
/// rounded singly, so that the table is as tall at each zoom as the zoom says. @return its height, px
int TColorScale::PlaceDown(const TRect &rect, double step, int text)
{
    const double gap = 1.0 / 3;
    double above = static_cast<double>(line1.pieces.size());
    double below = static_cast<double>(line2.pieces.size());
    double first = above > 0 ? above + gap : 0; // row, in steps from the top
    double end = first + count + (below > 0 ? gap : 0);
    int height = EdcNearest((end + below) * step);
    auto down = [&](double steps) { return rect.bottom - height + EdcNearest(steps * step); };
    for (size_t i = 0; i < line1.pieces.size(); ++i)
        line1.pieces[i].at = {rect.left, down(static_cast<double>(i))};
    for (int i = 0; i < count; ++i) {
        int top = down(first + i);
        rows[i].swatch = {rect.left, top, rect.left + 2 * text, top + text};
        for (TRect &cell : rows[i].rects) {
            cell.top = top;
            cell.bottom = top + text;
        }
    }
    for (size_t i = 0; i < line2.pieces.size(); ++i)
        line2.pieces[i].at = {rect.left, down(end + static_cast<double>(i))};
    return height;
}

int TColorScale::Layout(TDC &dc, const TRect &rect)
{
    int height = 0;
    TFont former;
    __enter
        former = dc.State().font;
        int text = ChooseFont(dc);
        Break(dc, line1, rect.Width());
        Break(dc, line2, rect.Width());
        int right = PlaceColumn(dc, 0, rect.left + 3 * text);
        PlaceColumn(dc, 1, right + 2 * text);
        height = PlaceDown(rect, pitch > 0 ? pitch : text + std::max(1, text / 12), text);
        dc.SetFont(former);
    __point
        dc.SetFont(former);
    __treat
    return height;
}

void TColorScale::PaintLine(TDC &dc, const LINE &line)
{
    for (const PIECE &piece : line.pieces)
        dc.TextOut(piece.at.x, piece.at.y, line.text + piece.start, piece.length);
}

void TColorScale::Paint(TDC &dc) const
{
    TDCState former = dc.State();
    __enter
        dc.SetFont({.face = font, .height = -usedSize});
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
