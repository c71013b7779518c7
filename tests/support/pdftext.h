// What a PDF says, read back by the poppler programs.
#ifndef TESTS_SUPPORT_PDFTEXT_H
#define TESTS_SUPPORT_PDFTEXT_H

#include <string>
#include <vector>

struct PdfWord {
    int page;    // from 1
    double x, y; // points from the page's left upper corner, of the word's left upper corner
    double right, bottom;
    std::string text; // UTF-8
};
struct PdfImage {
    int page;
    int width, height;    // pixels
    std::string encoding; // "jpeg", "image" (lossless) ...
};
struct PdfPage {
    double width, height; // points
};
struct PdfRaster {
    int width = 0; // px
    int height = 0;
    std::string gray; // a byte a pixel, 0 is black

    int At(int x, int y) const { return static_cast<unsigned char>(gray[static_cast<size_t>(y * width + x)]); }
};

std::vector<PdfPage> PdfPages(const std::string &path);
std::vector<PdfWord> PdfWords(const std::string &path);
std::vector<PdfImage> PdfImages(const std::string &path);
std::string PdfTitle(const std::string &path);                   // UTF-8
PdfRaster PdfPixels(const std::string &path, int page, int dpi); // without smoothing

#endif
