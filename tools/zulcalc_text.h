// Report texts on a terminal: markup becomes characters that a terminal has, lines are broken to a width, and
// texts stand beside each other. In: the system's character set with markup. Out: lines of UTF-8. Width counts
// characters.
#ifndef TOOLS_ZULCALC_TEXT_H
#define TOOLS_ZULCALC_TEXT_H

#include <string>
#include <vector>

using TextLines = std::vector<std::string>;

int TextWidth(const std::string &utf8);
std::string TextPadded(const std::string &utf8, int width);

/// The text's lines, broken at blanks where they are longer than `width`; 0 breaks at line breaks only.
TextLines MarkupLines(const std::string &text, int width);

/// Two texts in columns of a page, or one below the other where the left one is too wide.
TextLines BesideLines(const TextLines &left, const TextLines &right, int leftWidth);

#endif
