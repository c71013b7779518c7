// What the parts of the resource compiler share: the line that is being read, texts in quotes, numbers, words
// and C++ literals. A fault ends the program at once with its file and line: no table is better than a wrong
// one.
#ifndef TOOLS_RESCOMPILE_H
#define TOOLS_RESCOMPILE_H

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

inline constexpr int NUMBER_MAX = 65535; // of texts, menus, commands, dialogs and controls

struct Line {
    const char *file;
    int number;

    /// Shows what is wrong with this line and ends the program.
    [[noreturn]] void Refuse(const char *format, ...) const __attribute__((format(printf, 2, 3)));
};

/// The text between the quotes at `*pos`, escapes resolved, in the system's character set; steps over it.
std::string QuotedText(const Line &line, const std::string &source, size_t *pos);
/// The same of a text that ends its line.
std::string LastText(const Line &line, const std::string &source, size_t pos);
/// The number at `*pos` and the blanks behind it, up to a quote.
int TextNumber(const Line &line, const std::string &source, size_t *pos);
/// Steps over the word and the blanks behind it.
bool TakeWord(const std::string &source, size_t *pos, std::string_view word);

/// A C++ literal in plain ASCII.
std::string Literal(const std::string &text);

/// Reads the dialogs of a file and writes their table.
void CompileDialogs(const char *file, std::ostream &out);

#endif
