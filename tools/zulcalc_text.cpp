#include "tools/zulcalc_text.h"
#include "tools/console.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr char HARD_BLANK = '\x01'; // a blank that breaks no line, until lines are broken

struct Glyph {
    char plain;
    const char *raised;
    const char *lowered;
};

// What a terminal can show above and below the line. A raised o is the degree sign's ring.
const Glyph glyphs[] = {
    {'0', "⁰", "₀"}, {'1', "¹", "₁"}, {'2', "²", "₂"}, {'3', "³", "₃"}, {'4', "⁴", "₄"},
    {'5', "⁵", "₅"}, {'6', "⁶", "₆"}, {'7', "⁷", "₇"}, {'8', "⁸", "₈"}, {'9', "⁹", "₉"},
    {'+', "⁺", "₊"}, {'-', "⁻", "₋"}, {'n', "ⁿ", "n"}, {'o', "°", "o"},
};

enum STYLE { NORMAL = 0, SUBSCRIPT = 1, SUPERSCRIPT = 2 };

std::string Styled(char c, STYLE style)
{
    const Glyph *end = glyphs + sizeof glyphs / sizeof glyphs[0];
    const Glyph *found = std::find_if(glyphs, end, [c](const Glyph &g) { return g.plain == c; });
    if (style == NORMAL || found == end)
        return std::string(1, c);
    return style == SUPERSCRIPT ? found->raised : found->lowered;
}

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

/// The plain text behind the markup; a mark of the other kind within raised or lowered text ends that.
std::string Rendered(const std::string &utf8)
{
    std::string plain;
    STYLE style = NORMAL;
    for (size_t i = 0; i < utf8.size(); ++i) {
        char c = utf8[i];
        if (c == '!' && i + 1 < utf8.size() && strchr("^_~", utf8[i + 1]) != NULL)
            plain += utf8[++i];
        else if (c == '_')
            style = style == NORMAL ? SUBSCRIPT : NORMAL;
        else if (c == '^')
            style = style == NORMAL ? SUPERSCRIPT : NORMAL;
        else if (c == '~')
            plain += HARD_BLANK;
        else
            plain += Styled(c, style);
    }
    return plain;
}

void AppendLine(TextLines &lines, std::string line)
{
    std::replace(line.begin(), line.end(), HARD_BLANK, ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    lines.push_back(std::move(line));
}

/// One line of the text, in as many lines as it needs; a run of blanks is one.
void AppendBroken(TextLines &lines, const std::string &source, int width)
{
    std::string line;
    for (size_t i = 0; i < source.size();) {
        size_t end = i;
        while (end < source.size() && !IsBlank(source[end]))
            ++end;
        std::string word = source.substr(i, end - i);
        if (!line.empty() && width > 0 && TextWidth(line) + 1 + TextWidth(word) > width) {
            AppendLine(lines, line);
            line.clear();
        }
        line += line.empty() ? word : " " + word;
        for (i = end; i < source.size() && IsBlank(source[i]);)
            ++i;
    }
    AppendLine(lines, line);
}
} // namespace

int TextWidth(const std::string &utf8)
{
    return static_cast<int>(std::count_if(utf8.begin(), utf8.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string TextPadded(const std::string &utf8, int width)
{
    return utf8 + std::string(static_cast<size_t>(std::max(width - TextWidth(utf8), 0)), ' ');
}

TextLines MarkupLines(const std::string &text, int width)
{
    std::string plain = Rendered(ConsoleUtf8(text.c_str()));
    TextLines lines;
    size_t begin = 0;
    for (size_t end = 0; end != std::string::npos; begin = end + 1) {
        end = plain.find('\n', begin);
        AppendBroken(lines, plain.substr(begin, end == std::string::npos ? end : end - begin), width);
    }
    return lines;
}

TextLines BesideLines(const TextLines &left, const TextLines &right, int leftWidth)
{
    bool fits = std::all_of(left.begin(), left.end(),
                            [leftWidth](const std::string &line) { return TextWidth(line) < leftWidth; });
    TextLines lines = left;
    if (!fits) {
        lines.insert(lines.end(), right.begin(), right.end());
        return lines;
    }
    lines.resize(std::max(left.size(), right.size()));
    for (size_t i = 0; i < right.size(); ++i)
        if (!right[i].empty())
            lines[i] = TextPadded(lines[i], leftWidth) + right[i];
    return lines;
}
