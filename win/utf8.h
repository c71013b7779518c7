// Texts on their way to the toolkit and back.
#ifndef WIN_UTF8_H
#define WIN_UTF8_H

#include "lib/disk.h"
#include <cstring>
#include <string>

/// UTF-8 of a text in the system's character set. Throws std::bad_alloc.
inline std::string ToUtf8(const char *text)
{
    std::string utf8(3 * std::strlen(text) + 1, '\0'); // no character of the set needs more than three bytes
    TextToUtf8(utf8.data(), text, static_cast<int>(utf8.size()));
    utf8.resize(std::strlen(utf8.c_str()));
    return utf8;
}

/// The way back; '?' stands for what the set lacks.
inline std::string FromUtf8(const char *utf8)
{
    std::string text(std::strlen(utf8) + 1, '\0');
    TextFromUtf8(text.data(), utf8, static_cast<int>(text.size()));
    text.resize(std::strlen(text.c_str()));
    return text;
}

#endif
