// The painting context on paper, read back from the PDF: every mix paints as copy, bitmaps stay crisp and
// lossless, texts stand where they were measured.
#include "support/folder.h"
#include "support/pdftext.h"
#include "support/testapp.h"
#include "win/dc.h"
#include "win/printer.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>

namespace
{
class OnePage : public TPrintout
{
public:
    explicit OnePage(std::function<void(TDC &)> aDraw) : TPrintout("Blatt"), draw(std::move(aDraw)) {}

    void GetDialogInfo(int &minPage, int &maxPage, int &selFrom, int &selTo) override
    {
        minPage = maxPage = 1;
        selFrom = selTo = 0;
    }
    void BeginPrinting() override {}
    bool HasPage(int page) override { return page == 1; }
    void PrintPage(int, const TRect &, unsigned) override { draw(*dc); }
    void EndPrinting() override {}

private:
    std::function<void(TDC &)> draw;
};

/// Prints one page at 600 dpi into a PDF of the folder.
std::string Printed(const FOLDER &folder, const std::function<void(TDC &)> &draw)
{
    TestApplication();
    OnePage page(draw);
    TPrinter printer;
    printer.SetPdf(folder.Path("blatt.pdf"));
    printer.Print(NULL, page, false);
    EXPECT_EQ(printer.Result(), WIN_PRINT_DONE);
    return folder.Path("blatt.pdf");
}

const TColor RED = {255, 0, 0};
} // namespace

TEST(Paper, EveryMixPaintsAsCopyButTheOneThatDoesNothing)
{
    const FOLDER folder;
    int left = 0;
    int top = 0;
    const std::string pdf = Printed(folder, [&](TDC &dc) {
        EXPECT_FALSE(dc.HasMixes());
        EXPECT_EQ(dc.DpiX(), 600);
        left = dc.PhysicalOffset().x;
        top = dc.PhysicalOffset().y;
        dc.SetBrush(SolidBrush(WIN_BLACK));
        for (int mix = WIN_MIX_BLACK; mix <= WIN_MIX_WHITE; ++mix) {
            dc.SetMix(static_cast<TMix>(mix));
            dc.FillRect({600 + 200 * mix, 1200, 700 + 200 * mix, 1300}, SolidBrush(WIN_BLACK));
            dc.Rectangle({600 + 200 * mix, 1400, 700 + 200 * mix, 1500});
            dc.InvertRect({600 + 200 * mix, 1600, 700 + 200 * mix, 1700});
        }
    });
    const PdfRaster page = PdfPixels(pdf, 1, 600);
    for (int mix = WIN_MIX_BLACK; mix <= WIN_MIX_WHITE; ++mix) {
        const int x = left + 650 + 200 * mix;
        EXPECT_EQ(page.At(x, top + 1250), mix == WIN_MIX_NOP ? 255 : 0) << mix;
        EXPECT_EQ(page.At(x, top + 1450), mix == WIN_MIX_NOP ? 255 : 0) << mix;
        EXPECT_EQ(page.At(x, top + 1650), 255) << "nothing is there to be inverted";
    }
}

TEST(Paper, ABitmapIsHeldLosslesslyAndItsPixelsAreCrisp)
{
    const FOLDER folder;
    TBitmap bitmap(10, 6);
    TPalette palette;
    for (int i = 0; i < 60; ++i) {
        palette.entries.push_back(
            {static_cast<uint8_t>(4 * i), static_cast<uint8_t>(4 * i), static_cast<uint8_t>(4 * i)});
        bitmap.SetPixel(i % 10, i / 10, static_cast<uint8_t>(i));
    }
    bitmap.SetPalette(palette);
    int left = 0;
    int top = 0;
    const std::string pdf = Printed(folder, [&](TDC &dc) {
        left = dc.PhysicalOffset().x;
        top = dc.PhysicalOffset().y;
        dc.StretchBitmap({600, 600, 1600, 1200}, bitmap); // 100 px a pixel
        dc.SetViewportOrg({2000, 1600});
        dc.SetTurn(1);
        dc.StretchBitmap({0, 0, 1000, 600}, bitmap);
    });
    const std::vector<PdfImage> images = PdfImages(pdf);
    ASSERT_EQ(images.size(), 2u);
    EXPECT_EQ(images[0].encoding, "image");
    EXPECT_EQ(images[0].width, 10);
    EXPECT_EQ(images[0].height, 6);
    EXPECT_EQ(images[1].width, 6);
    EXPECT_EQ(images[1].height, 10);
    const PdfRaster page = PdfPixels(pdf, 1, 600);
    for (int i = 0; i < 60; ++i) {
        for (int edge : {4, 50, 95}) {
            const int x = 100 * (i % 10) + edge;
            const int y = 100 * (i / 10) + edge;
            EXPECT_NEAR(page.At(left + 600 + x, top + 600 + y), 4 * i, 1) << i << " " << edge;
            EXPECT_NEAR(page.At(left + 2000 + y, top + 1600 - x), 4 * i, 1) << i << " " << edge;
        }
    }
}

TEST(Paper, ATextIsAsWideAsMeasured)
{
    const FOLDER folder;
    const std::string text = "AVATo\xE4Wff";
    int left = 0;
    int width = 0;
    const std::string pdf = Printed(folder, [&](TDC &dc) {
        left = dc.PhysicalOffset().x;
        for (int i = 0; i < 3; ++i) {
            const char *const faces[] = {"Arial", "Courier New", "Times New Roman"};
            dc.SetFont({.face = faces[i], .height = -83});
            dc.SetOpaque(false);
            dc.TextOut(600, 1000 + 300 * i, text.data(), static_cast<int>(text.size()));
            width = dc.TextWidth(text.data(), static_cast<int>(text.size()));
            dc.FillRect({600 + width, 1000 + 300 * i, 604 + width, 1080 + 300 * i}, SolidBrush(WIN_BLACK));
        }
    });
    const std::vector<PdfWord> words = PdfWords(pdf);
    ASSERT_EQ(words.size(), 3u);
    for (const PdfWord &word : words) {
        EXPECT_EQ(word.text, "AVAToäWff");
        EXPECT_NEAR(word.x, (left + 600) * 0.12, 0.05); // 0.12 pt a pixel
    }
    EXPECT_NEAR(words[2].right, (left + 600 + width) * 0.12, 0.15);
}

TEST(Paper, GapsHatchesAndCellsAreFilledInOpaqueMode)
{
    const FOLDER folder;
    int left = 0;
    int top = 0;
    const TBrush hatch = {.style = WIN_BRUSH_HATCH, .color = WIN_BLACK, .hatch = WIN_HATCH_VERTICAL};
    const std::string pdf = Printed(folder, [&](TDC &dc) {
        left = dc.PhysicalOffset().x;
        top = dc.PhysicalOffset().y;
        dc.SetBackground({128, 128, 128});
        for (int i = 0; i < 2; ++i) {
            dc.SetOpaque(i == 0);
            dc.SetViewportOrg({600, 600 + 1000 * i});
            dc.SetPen({WIN_BLACK, 20, WIN_PEN_DOT});
            dc.Line({0, 0}, {1000, 0});
            dc.FillRect({0, 200, 200, 400}, hatch);
            dc.SetTextColor(WIN_WHITE);
            dc.TextOut(0, 600, " ", 1);
        }
    });
    const PdfRaster page = PdfPixels(pdf, 1, 600);
    const int y = top + 600;
    const int x = left + 600;
    EXPECT_EQ(page.At(x + 30, y), 0);
    EXPECT_EQ(page.At(x + 90, y), 128);
    EXPECT_EQ(page.At(x + 30, y + 1000), 0);
    EXPECT_EQ(page.At(x + 90, y + 1000), 255);
    int opaque[3] = {};
    int transparent[3] = {};
    for (int i = 0; i < 96; ++i) { // black, grey, white
        const auto kind = [](int gray) { return gray < 64 ? 0 : gray < 192 ? 1 : 2; };
        ++opaque[kind(page.At(x + 50 + i, y + 300))];
        ++transparent[kind(page.At(x + 50 + i, y + 1300))];
    }
    EXPECT_NEAR(opaque[0], 12, 2) << "a stroke in each 12th of an inch";
    EXPECT_EQ(opaque[2], 0);
    EXPECT_NEAR(transparent[0], 12, 2);
    EXPECT_EQ(transparent[1], 0);
    EXPECT_EQ(page.At(x + 1, y + 605), 128);
    EXPECT_EQ(page.At(x + 1, y + 1605), 255);
}

TEST(Paper, FiguresCoverTheSamePixelsAsOnAnImage)
{
    const FOLDER folder;
    const TPoint triangle[] = {{100, 1400}, {500, 1400}, {300, 1700}};
    const auto draw = [&](TDC &dc) {
        dc.SetPen({WIN_BLACK, 5});
        dc.SetBrush(SolidBrush(RED));
        dc.Rectangle({100, 100, 500, 400});
        dc.Ellipse({100, 500, 500, 800});
        dc.SetPen(NoPen());
        dc.Rectangle({100, 900, 500, 1200});
        dc.Polygon(triangle, 3);
        dc.SetPen({WIN_BLACK, 9});
        dc.Line({600, 100}, {900, 100});
        dc.Line({600, 200}, {600, 200});
        dc.SetPen({WIN_BLACK, 1});
        dc.Rectangle({600, 300, 900, 600});
        dc.Shape({{{{9600, 11200}, {14400, 11200}, {14400, 16000}, {9600, 16000}}, true}}, true);
    };
    TPoint corner;
    const std::string pdf = Printed(folder, [&](TDC &dc) {
        corner = dc.PhysicalOffset();
        draw(dc);
    });
    TMemoryDC image({1000, 1800}, 600);
    draw(image);
    const PdfRaster page = PdfPixels(pdf, 1, 600);
    int different = 0;
    for (int y = 0; y < 1800; ++y) {
        for (int x = 0; x < 1000; ++x)
            different += (page.At(corner.x + x, corner.y + y) > 200) != (image.Pixel({x, y}).green > 200);
    }
    EXPECT_LT(different, 2500); // slanted edges and hairlines, which the reader draws its own way
}

TEST(Paper, TheClipHoldsAndFarCoordinatesDoNoHarm)
{
    const FOLDER folder;
    TPoint corner;
    const std::string pdf = Printed(folder, [&](TDC &dc) {
        corner = dc.PhysicalOffset();
        const TPoint far[] = {{INT_MIN, INT_MIN}, {INT_MAX, INT_MIN}, {INT_MAX, INT_MAX}};
        dc.SetClip({100, 100, 300, 300});
        dc.SetBrush(SolidBrush(WIN_BLACK));
        dc.FillRect({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, SolidBrush(WIN_BLACK));
        dc.ClearClip();
        dc.SetBrush(NoBrush());
        for (const TPen &pen : {TPen{WIN_BLACK, 3}, TPen{WIN_BLACK, 1, WIN_PEN_DOT}}) {
            dc.SetPen(pen);
            dc.Polyline(far, 3);
            dc.Polygon(far, 3);
            dc.Rectangle({INT_MIN, INT_MIN, INT_MAX, INT_MAX});
            dc.Ellipse({INT_MIN, INT_MIN, INT_MAX, INT_MAX});
        }
        dc.StretchBitmap({-1000000000, 1000, 1000000000, 1001}, TBitmap(2, 2));
    });
    const PdfRaster page = PdfPixels(pdf, 1, 600);
    EXPECT_EQ(page.At(corner.x + 210, corner.y + 150), 0);
    EXPECT_EQ(page.At(corner.x + 350, corner.y + 150), 255);
    EXPECT_EQ(page.At(corner.x + 2000, corner.y + 1500), 255);
}
