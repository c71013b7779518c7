// Compiles res/strings.txt into the C++ table of res/strings.h. The source is UTF-8, so that it reads in any
// editor; the table is in the system's character set, so that the program needs no conversion. A few hundred
// lines: read whole, one pass. Nothing is written unless every line is sound.
#include "lib/disk.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace
{
constexpr size_t TEXT_MAX = 1023; // characters; the buffer of GetResString holds no more

struct Line {
    const char *file;
    int number;

    /// Shows what is wrong with this line and ends the program: no table is better than a wrong one.
    [[noreturn]] void Refuse(const char *format, ...) const __attribute__((format(printf, 2, 3)))
    {
        std::fprintf(stderr, "%s:%d: ", file, number);
        va_list args;
        va_start(args, format);
        std::vfprintf(stderr, format, args);
        va_end(args);
        std::fputc('\n', stderr);
        std::exit(1);
    }
};

/// The text between the quotes at `pos`, escapes resolved; behind the closing quote nothing may stand.
std::string QuotedText(const Line &line, const std::string &source, size_t pos)
{
    std::string text;
    if (pos >= source.size() || source[pos] != '"')
        line.Refuse("a text in quotes is expected");
    for (++pos; pos < source.size() && source[pos] != '"'; ++pos) {
        char c = source[pos];
        if (c == '\\') {
            c = ++pos < source.size() ? source[pos] : '\0';
            if (c == 'n')
                text += '\n';
            else if (c == 't')
                text += '\t';
            else if (c == '"' || c == '\\')
                text += c;
            else
                line.Refuse("unknown escape; \\n \\t \\\" \\\\ are known");
        } else if (static_cast<unsigned char>(c) < ' ') {
            line.Refuse("a control character stands in the text");
        } else {
            text += c;
        }
    }
    if (pos >= source.size())
        line.Refuse("the closing quote is missing");
    if (source.find_first_not_of(" \t\r", pos + 1) != std::string::npos)
        line.Refuse("something stands behind the closing quote");
    return text;
}

/// The text in the system's character set.
std::string SystemText(const Line &line, const std::string &utf8)
{
    std::vector<char> held(utf8.size() + 1);
    if (!TextFromUtf8(held.data(), utf8.c_str(), static_cast<int>(held.size())))
        line.Refuse("a character is outside Windows-1252, or not UTF-8");
    return held.data();
}

int TextNumber(const Line &line, const std::string &source, size_t *pos)
{
    long number = 0;
    for (*pos = 0; *pos < source.size() && std::isdigit(static_cast<unsigned char>(source[*pos])); ++*pos) {
        number = number * 10 + (source[*pos] - '0');
        if (number > 65535)
            line.Refuse("numbers end at 65535");
    }
    if (*pos == 0)
        line.Refuse("a number is expected");
    size_t quote = source.find_first_not_of(" \t", *pos);
    if (quote == *pos || quote == std::string::npos)
        line.Refuse("a blank and a text in quotes are expected behind the number");
    *pos = quote;
    return static_cast<int>(number);
}

using Table = std::map<int, std::string>;

Table ReadTexts(const char *file)
{
    Line line{file, 0};
    std::ifstream in(file, std::ios::binary);
    if (!in)
        line.Refuse("the file cannot be read");
    Table table;
    std::string source;
    std::string *current = NULL; // the text that a continuation line adds to
    while (std::getline(in, source)) {
        ++line.number;
        size_t pos = source.find_first_not_of(" \t\r");
        if (pos == std::string::npos || source[pos] == '#') {
            current = NULL;
            continue;
        }
        if (source[pos] == '"' && current == NULL)
            line.Refuse("this text continues none");
        if (source[pos] != '"') {
            int number = TextNumber(line, source.erase(0, pos), &pos);
            auto [place, fresh] = table.emplace(number, "");
            if (!fresh)
                line.Refuse("number %d stands twice", number);
            current = &place->second;
        }
        *current += SystemText(line, QuotedText(line, source, pos));
        if (current->size() > TEXT_MAX)
            line.Refuse("the text has more than %zu characters", TEXT_MAX);
    }
    if (in.bad())
        line.Refuse("the file cannot be read");
    if (table.empty())
        line.Refuse("there is no text in this file");
    return table;
}

/// A C++ literal in plain ASCII. Octal escapes have a fixed length, so that no digit behind one can join it.
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

bool WriteTable(const char *file, const Table &table)
{
    std::ofstream out(file, std::ios::binary);
    out << "// Made by tools/rescompile.\n#include \"res/strings.h\"\n\nconst ResSTRING resStrings[] = {\n";
    for (const auto &[number, text] : table)
        out << "    {" << number << ", " << Literal(text) << "},\n";
    out << "};\nconst int resStringCount = " << table.size() << ";\n";
    out.close();
    return out.good();
}
} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: rescompile STRINGS.txt TABLE.cpp\n");
        return 2;
    }
    Table table = ReadTexts(argv[1]);
    if (!WriteTable(argv[2], table)) {
        std::fprintf(stderr, "%s: cannot be written\n", argv[2]);
        std::remove(argv[2]);
        return 1;
    }
    return 0;
}
