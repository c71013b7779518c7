// Runs the poppler programs on a PDF and reads what they print. What cannot be read throws, so that a test
// fails with the reason.
#include "support/pdftext.h"

#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace
{
std::string Replaced(std::string text, const std::string &what, const std::string &by)
{
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
    return text;
}

std::string Output(const std::string &program, const std::string &path)
{
    std::string quoted = Replaced(path, "'", "'\\''");
    std::string command = program + " '" + quoted + "'";
    if (program.rfind("pdftotext", 0) == 0)
        command += " -";       // or it writes a file
    command += " 2>/dev/null"; // notes of pages without words
    FILE *pipe = popen(command.c_str(), "r");
    if (!pipe)
        throw std::runtime_error("cannot run " + command);
    std::string text;
    char part[4096];
    for (size_t size; (size = fread(part, 1, sizeof part, pipe)) > 0;)
        text.append(part, size);
    if (pclose(pipe) != 0)
        throw std::runtime_error(command + " fails");
    return text;
}

std::string Unescaped(std::string text)
{
    const char *const names[][2] = {{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}};
    for (const auto &name : names)
        text = Replaced(text, name[0], name[1]);
    return text;
}

/// The value of name="..." in a line.
double Attribute(const std::string &line, const std::string &name)
{
    size_t at = line.find(" " + name + "=\"");
    if (at == std::string::npos)
        throw std::runtime_error("no " + name + " in " + line);
    return std::stod(line.substr(at + name.size() + 3));
}

/// Calls `take` with each line and the number of the page it stands on.
template <class TAKE>
void EachLine(const std::string &text, const TAKE &take)
{
    std::istringstream lines(text);
    int page = 0;
    for (std::string line; std::getline(lines, line);) {
        page += line.find("<page ") != std::string::npos;
        take(line, page);
    }
}

PdfWord WordOf(const std::string &line, int page)
{
    size_t start = line.find('>') + 1;
    std::string text = line.substr(start, line.rfind("</word>") - start);
    return {page,
            Attribute(line, "xMin"),
            Attribute(line, "yMin"),
            Attribute(line, "xMax"),
            Attribute(line, "yMax"),
            Unescaped(text)};
}
} // namespace

std::vector<PdfPage> PdfPages(const std::string &path)
{
    std::vector<PdfPage> pages;
    EachLine(Output("pdftotext -bbox", path), [&](const std::string &line, int) {
        if (line.find("<page ") != std::string::npos)
            pages.push_back({Attribute(line, "width"), Attribute(line, "height")});
    });
    return pages;
}

std::vector<PdfWord> PdfWords(const std::string &path)
{
    std::vector<PdfWord> words;
    EachLine(Output("pdftotext -bbox", path), [&](const std::string &line, int page) {
        if (line.find("<word ") != std::string::npos)
            words.push_back(WordOf(line, page));
    });
    return words;
}

std::vector<PdfImage> PdfImages(const std::string &path)
{
    std::vector<PdfImage> images;
    std::istringstream lines(Output("pdfimages -list", path));
    std::string line;
    std::getline(lines, line); // heads and a rule
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        PdfImage image;
        int number, components, bits;
        std::string type, color;
        fields >> image.page >> number >> type >> image.width >> image.height >> color >> components >> bits >>
            image.encoding;
        if (!fields)
            throw std::runtime_error("cannot read " + line);
        images.push_back(image);
    }
    return images;
}

std::string PdfTitle(const std::string &path)
{
    std::istringstream lines(Output("pdfinfo", path));
    for (std::string line; std::getline(lines, line);) {
        size_t value = line.find_first_not_of(' ', 6);
        if (line.rfind("Title:", 0) == 0 && value != std::string::npos)
            return line.substr(value);
    }
    return {};
}

PdfRaster PdfPixels(const std::string &path, int page, int dpi)
{
    std::string number = std::to_string(page);
    std::string text = Output("pdftoppm -gray -aa no -aaVector no -r " + std::to_string(dpi) + " -f " + number +
                                  " -l " + number,
                              path);
    std::istringstream fields(text);
    PdfRaster raster;
    std::string kind;
    int white = 0;
    fields >> kind >> raster.width >> raster.height >> white;
    raster.gray = text.substr(static_cast<size_t>(fields.tellg()) + 1);
    if (kind != "P5" || white != 255 ||
        raster.gray.size() != static_cast<size_t>(raster.width) * static_cast<size_t>(raster.height))
        throw std::runtime_error("no page " + number + " in " + path);
    return raster;
}
