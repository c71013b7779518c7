// The words of which the resource files are made.
#include "tools/rescompile.h"

#include "lib/disk.h"

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <vector>

void Line::Refuse(const char *format, ...) const
{
    std::fprintf(stderr, "%s:%d: ", file, number);
    va_list args;
    va_start(args, format);
    std::vfprintf(stderr, format, args);
    va_end(args);
    std::fputc('\n', stderr);
    std::exit(1);
}

namespace
{
/// The text in the system's character set.
std::string SystemText(const Line &line, const std::string &utf8)
{
    std::vector<char> held(utf8.size() + 1);
    if (!TextFromUtf8(held.data(), utf8.c_str(), static_cast<int>(held.size())))
        line.Refuse("a character is outside Windows-1252, or not UTF-8");
    return held.data();
}

char Escaped(const Line &line, char c)
{
    switch (c) {
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case '"':
    case '\\':
        return c;
    default:
        line.Refuse("unknown escape; \\n \\t \\\" \\\\ are known");
    }
}
} // namespace

std::string QuotedText(const Line &line, const std::string &source, size_t *pos)
{
    std::string text;
    if (*pos >= source.size() || source[*pos] != '"')
        line.Refuse("a text in quotes is expected");
    for (++*pos; *pos < source.size() && source[*pos] != '"'; ++*pos) {
        char c = source[*pos];
        if (static_cast<unsigned char>(c) < ' ')
            line.Refuse("a control character stands in the text");
        if (c == '\\')
            c = Escaped(line, ++*pos < source.size() ? source[*pos] : '\0');
        text += c;
    }
    if (*pos >= source.size())
        line.Refuse("the closing quote is missing");
    ++*pos;
    return SystemText(line, text);
}

std::string LastText(const Line &line, const std::string &source, size_t pos)
{
    std::string text = QuotedText(line, source, &pos);
    if (source.find_first_not_of(" \t\r", pos) != std::string::npos)
        line.Refuse("something stands behind the closing quote");
    return text;
}

int TextNumber(const Line &line, const std::string &source, size_t *pos)
{
    int number = 0;
    size_t start = *pos;
    for (; *pos < source.size() && std::isdigit(static_cast<unsigned char>(source[*pos])); ++*pos) {
        number = number * 10 + (source[*pos] - '0');
        if (number > NUMBER_MAX)
            line.Refuse("numbers end at %d", NUMBER_MAX);
    }
    if (*pos == start)
        line.Refuse("a number is expected");
    size_t quote = source.find_first_not_of(" \t", *pos);
    if (quote == *pos || quote == std::string::npos)
        line.Refuse("a blank and a text in quotes are expected behind the number");
    *pos = quote;
    return number;
}

bool TakeWord(const std::string &source, size_t *pos, std::string_view word)
{
    if (source.compare(*pos, word.size(), word) != 0)
        return false;
    size_t behind = source.find_first_not_of(" \t\r", *pos + word.size());
    if (behind == *pos + word.size())
        return false;
    *pos = std::min(behind, source.size());
    return true;
}

/// Octal escapes have a fixed length, so that no digit behind one can join it.
std::string Literal(const std::string &text)
{
    std::string literal = "\"";
    for (char c : text) {
        unsigned char byte = static_cast<unsigned char>(c);
        if (byte < ' ' || byte >= 127 || c == '"' || c == '\\' || c == '?') {
            char octal[8];
            std::snprintf(octal, sizeof octal, "\\%03o", byte);
            literal += octal;
        } else {
            literal += c;
        }
    }
    return literal + '"';
}
