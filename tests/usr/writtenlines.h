// What a block writes on a device with the real fonts: the pieces with their places, and whole lines.
#ifndef TESTS_USR_WRITTENLINES_H
#define TESTS_USR_WRITTENLINES_H

#include "support/testapp.h"
#include "usr/edcapp.h"
#include "usr/edcbase2.h"
#include "win/dc.h"

#include <cmath>
#include <string>
#include <vector>

struct WRITTEN {
    int x; // px
    int y;
    int right;
    std::string text;
    TFont font;
};

class TWriteDC : public TMeasureDC
{
public:
    explicit TWriteDC(int dpi) : TMeasureDC(dpi) {}
    void TextOut(int x, int y, const char *text, int length) override
    {
        written.push_back(
            {x, y, x + TextWidth(text, length), std::string(text, static_cast<size_t>(length)), State().font});
    }

    /// Lays the block out in so many inches and has it painted. @return its height, px
    int Write(TEdcBlock &blk, double inches, double scale = 1.0)
    {
        TEdcSize size(inches, 100);
        blk.Layout(*this, size, scale);
        written.clear();
        TSize pixels = size.ToPixels(*this, scale);
        blk.Paint(*this, {0, 0, pixels.cx, pixels.cy});
        return pixels.cy;
    }

    /// The lines that were written last, from top to bottom; raised and lowered text as it is.
    std::vector<std::string> Lines() const
    {
        std::vector<std::string> lines;
        for (size_t i = 0; i < written.size(); ++i) {
            if (i == 0 || written[i].y != written[i - 1].y)
                lines.emplace_back();
            lines.back() += written[i].text;
        }
        for (std::string &line : lines) // a line end leaves its blanks in the line
            if (size_t end = line.find_last_not_of(' '); end != std::string::npos)
                line.erase(end + 1);
        return lines;
    }

    /// Line height of a font of so many points on this device, px.
    int LineHeight(const char *face, double points, double scale = 1.0)
    {
        TFont font;
        font.face = face;
        font.height = -static_cast<int>(std::lround(points / 72 * scale * DpiY()));
        TFont former = SetFont(font);
        int height = FontMetrics().height;
        SetFont(former);
        return height;
    }

    /// Width of a text in a font, px.
    int Width(const TFont &font, const std::string &text)
    {
        TFont former = SetFont(font);
        int width = TextWidth(text.c_str(), static_cast<int>(text.size()));
        SetFont(former);
        return width;
    }

    std::vector<WRITTEN> written;
};

#endif
