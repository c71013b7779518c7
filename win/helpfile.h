// The help file: pages of text with a number each, in one UTF-8 file of some hundred kilobytes that is read
// whole and checked before anything of it is shown.
//
//     ZULERION-HILFE 1
//     Hilfe zu Zulerion                  the title of all
//     @10 1 Zulerion ?                   a page: number, level in the contents (1 or 2), title
//     <p>Text in a small part of HTML</p>
//
// A page's text is made of h2 h3 p ul ol li table tr th td pre b i code kbd sub sup, each closed where it was
// opened, br, <a href="#NUMBER"> for another page and <img src="NUMBER"> for a picture of the program. There
// are no other tags, no other attributes, and of the entities &lt; &gt; &amp; &quot; &nbsp;.
#ifndef WIN_HELPFILE_H
#define WIN_HELPFILE_H

#include <string>
#include <string_view>
#include <vector>

struct THelpPage {
    int context;       // 1 to 65535, each once
    int level;         // 1 or 2: below the page of level 1 before it
    std::string title; // UTF-8, as the body
    std::string body;
};

class THelpFile
{
public:
    /// Reads a file: XFOPEN, or XFREAD for one that is damaged. What was read before stays then.
    void Read(const char *name);
    /// Takes the bytes of a file. @return "" or what is wrong and in which line, in UTF-8; then nothing
    /// changed. Throws std::bad_alloc.
    std::string Parse(std::string_view bytes);

    const std::string &Title() const { return title; }
    const std::vector<THelpPage> &Pages() const { return pages; } // at least one behind a successful reading
    int IndexOf(int context) const;                               // -1 where there is no such page

private:
    std::string title;
    std::vector<THelpPage> pages;
};

/// The bytes of a file for it: XFOPEN, XFREAD.
void ReadHelpBytes(const char *name, std::string &bytes);

#endif
