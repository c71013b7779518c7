#include "win/helpfile.h"

#include "lib/charstr.h"
#include "lib/disk.h"
#include "lib/xfail.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <fcntl.h>

#include "lib/xon.h"

namespace
{
enum { FILE_MAX = 1 << 20 }; // bytes; far above any help
enum { DEPTH_MAX = 12 };     // open tags: whoever lays out the text goes down by them
enum { CONTEXT_MAX = 65535 };
const std::string_view MARK = "ZULERION-HILFE 1";

const std::string_view pairedTags[] = {"h2", "h3",  "p", "ul", "ol",   "li",  "table", "tr", "th",
                                       "td", "pre", "b", "i",  "code", "kbd", "sub",   "sup"};
const std::string_view entities[] = {"lt;", "gt;", "amp;", "quot;", "nbsp;"};

/// Numbers of pages that there are.
using Known = std::vector<bool>;

struct WRONG {
    size_t at; // offset of the first byte that does not fit
    const char *text;
};

/// Bytes of the UTF-8 character at `at`, 0 where there is none: cut short, longer than needed, a surrogate.
size_t CharacterBytes(std::string_view text, size_t at)
{
    auto byte = [&](size_t i) { return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0u; };
    unsigned lead = byte(0);
    size_t count = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    for (size_t i = 1; i < count; ++i)
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    bool isLong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    bool isOutside = (lead == 0xED && byte(1) > 0x9F) || (lead == 0xF4 && byte(1) > 0x8F);
    return isLong || isOutside ? 0 : count;
}

void CheckCharacters(std::string_view bytes)
{
    for (size_t at = 0; at < bytes.size();) {
        size_t count = CharacterBytes(bytes, at);
        unsigned char c = static_cast<unsigned char>(bytes[at]);
        if (count == 0)
            throw WRONG{at, "kein UTF-8"};
        if ((c < ' ' && c != '\n' && c != '\r' && c != '\t') || c == 0x7F)
            throw WRONG{at, "ein Steuerzeichen"};
        at += count;
    }
}

/// The text as a number, -1 where it is none.
int Number(std::string_view text)
{
    int value = -1;
    auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    bool isWhole = fault == std::errc() && end == text.data() + text.size() && !text.empty();
    return isWhole && value >= 0 ? value : -1;
}

/// The number in <tag name="...">, -1 where the tag is another one.
int Attribute(std::string_view tag, std::string_view start)
{
    if (!tag.starts_with(start) || !tag.ends_with("\"") || tag.size() <= start.size())
        return -1;
    return Number(tag.substr(start.size(), tag.size() - start.size() - 1));
}

/// Walks the text of a page: tags that pair, known entities, links to pages that there are.
class TextCheck
{
public:
    TextCheck(std::string_view aText, size_t anOffset, const Known &aKnown)
        : text(aText), offset(anOffset), known(aKnown)
    {
    }

    void Run()
    {
        for (size_t at = 0; at < text.size(); ++at) {
            if (text[at] == '<')
                at = Tag(at);
            else if (text[at] == '&')
                Entity(at);
            else if (text[at] == '>')
                Refuse(at, "ein > ohne <");
        }
        if (!open.empty())
            Refuse(text.size(), "eine Auszeichnung bleibt offen");
    }

private:
    [[noreturn]] void Refuse(size_t at, const char *what) const { throw WRONG{offset + at, what}; }

    void Entity(size_t at) const
    {
        std::string_view rest = text.substr(at + 1);
        if (std::none_of(std::begin(entities), std::end(entities),
                         [rest](std::string_view entity) { return rest.starts_with(entity); }))
            Refuse(at, "ein unbekanntes Zeichen hinter &");
    }

    /// @return where the tag ends
    size_t Tag(size_t at)
    {
        size_t end = text.find('>', at);
        if (end == std::string_view::npos)
            Refuse(at, "ein < ohne >");
        std::string_view tag = text.substr(at + 1, end - at - 1);
        if (tag.starts_with('/'))
            Close(at, tag.substr(1));
        else
            Open(at, tag);
        return end;
    }

    void Close(size_t at, std::string_view tag)
    {
        if (open.empty() || open.back() != tag)
            Refuse(at, "eine Auszeichnung endet, die hier nicht offen ist");
        open.pop_back();
    }

    void Open(size_t at, std::string_view tag)
    {
        bool isPaired = std::find(std::begin(pairedTags), std::end(pairedTags), tag) != std::end(pairedTags);
        if (tag == "br" || Attribute(tag, "img src=\"") >= 0)
            return;
        if (!isPaired)
            CheckLink(at, tag);
        if (open.size() == DEPTH_MAX)
            Refuse(at, "zu viele Auszeichnungen ineinander");
        open.push_back(isPaired ? tag : "a");
    }

    void CheckLink(size_t at, std::string_view tag) const
    {
        int context = Attribute(tag, "a href=\"#");
        if (context < 0)
            Refuse(at, "eine unbekannte Auszeichnung");
        if (context > CONTEXT_MAX || !known[static_cast<size_t>(context)])
            Refuse(at, "ein Verweis auf eine Seite, die es nicht gibt");
    }

    std::string_view text;
    size_t offset; // of the text in the file
    const Known &known;
    std::vector<std::string_view> open;
};

/// The file line by line.
class Reader
{
public:
    explicit Reader(std::string_view someBytes) : bytes(someBytes) {}

    std::string_view Line()
    {
        begin = next;
        size_t end = std::min(bytes.find('\n', begin), bytes.size());
        next = std::min(end + 1, bytes.size());
        std::string_view line = bytes.substr(begin, end - begin);
        return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
    }
    bool IsOver() const { return next >= bytes.size(); }
    size_t Begin() const { return begin; } // of the line
    size_t Next() const { return next; }

private:
    std::string_view bytes;
    size_t begin = 0, next = 0;
};

/// "@10 1 Title"
THelpPage PageOf(std::string_view line, size_t at, Known &known)
{
    size_t levelAt = line.find(' ') + 1, titleAt = levelAt > 0 ? line.find(' ', levelAt) + 1 : 0;
    if (titleAt == 0 || titleAt == line.size())
        throw WRONG{at, "eine Seite ohne Nummer, Stufe und Titel"};
    int context = Number(line.substr(1, levelAt - 2)),
        level = Number(line.substr(levelAt, titleAt - 1 - levelAt));
    if (context < 1 || context > CONTEXT_MAX || level < 1 || level > 2)
        throw WRONG{at, "eine Seite mit falscher Nummer oder Stufe"};
    if (known[static_cast<size_t>(context)])
        throw WRONG{at, "zwei Seiten mit derselben Nummer"};
    known[static_cast<size_t>(context)] = true;
    return {context, level, std::string(line.substr(titleAt)), {}};
}

struct PARSED {
    std::string title;
    std::vector<THelpPage> pages;
    Known known = Known(CONTEXT_MAX + 1);
    std::vector<size_t> starts; // of the bodies in the file
    std::vector<size_t> ends;   // of what stands before each head; ends[0] is that of the title
};

PARSED ParsePages(std::string_view bytes)
{
    PARSED parsed;
    Reader reader(bytes);
    if (reader.Line() != MARK)
        throw WRONG{0, "keine Hilfedatei"};
    parsed.title = reader.Line();
    if (parsed.title.empty())
        throw WRONG{reader.Begin(), "der Titel fehlt"};
    while (!reader.IsOver()) {
        std::string_view line = reader.Line();
        if (line.starts_with('@')) {
            parsed.ends.push_back(reader.Begin());
            parsed.pages.push_back(PageOf(line, reader.Begin(), parsed.known));
            parsed.starts.push_back(reader.Next());
        } else if (parsed.pages.empty()) {
            throw WRONG{reader.Begin(), "Text vor der ersten Seite"};
        }
    }
    if (parsed.pages.empty())
        throw WRONG{bytes.size(), "keine Seite"};
    return parsed;
}

/// A body goes up to the next head; it is checked when all pages are known.
void TakeBodies(std::string_view bytes, PARSED &parsed)
{
    parsed.ends.push_back(bytes.size());
    for (size_t i = 0; i < parsed.pages.size(); ++i) {
        size_t start = parsed.starts[i];
        std::string_view body = bytes.substr(start, parsed.ends[i + 1] - start);
        TextCheck(body, start, parsed.known).Run();
        parsed.pages[i].body = body;
    }
}

std::string Complaint(std::string_view bytes, const WRONG &wrong)
{
    std::string_view before = bytes.substr(0, wrong.at);
    return "Zeile " + std::to_string(1 + std::count(before.begin(), before.end(), '\n')) + ": " + wrong.text;
}

void RaiseOpen(const char *name)
{
    __enter
        StrCopy(xFOpenName, name, X_NAME);
        __raise(XFOPEN);
    __point
    __treat
}

void RaiseRead(const char *name)
{
    __enter
        StrCopy(xFReadName, name, X_NAME);
        __raise(XFREAD);
    __point
    __treat
}

/// Appends what can be read, up to a byte more than a file may have. False if the disk does not answer.
bool ReadFrom(int fd, std::string &bytes)
{
    enum { PIECE = 1 << 16 };
    ssize_t got = 1;
    while (got > 0 && bytes.size() <= FILE_MAX) {
        size_t there = bytes.size();
        bytes.resize(there + PIECE);
        do
            got = disk->read(fd, bytes.data() + there, PIECE);
        while (got < 0 && errno == EINTR);
        bytes.resize(there + static_cast<size_t>(std::max<ssize_t>(got, 0)));
    }
    return got >= 0;
}
} // namespace

void ReadHelpBytes(const char *name, std::string &bytes)
{
    int fd = -1;
    __enter
        char path[NATIVE_MAX];
        bytes.clear();
        if (!NameToNative(path, name, sizeof path)) {
            RaiseOpen(name); __test;
        }
        do
            fd = disk->open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY, 0);
        while (fd < 0 && errno == EINTR);
        if (fd < 0) {
            RaiseOpen(name); __test;
        }
        if (!ReadFrom(fd, bytes) || bytes.size() > FILE_MAX) {
            RaiseRead(name); __test;
        }
        disk->close(fd);
        fd = -1;
    __point
        if (fd >= 0)
            disk->close(fd);
    __treat
}

void THelpFile::Read(const char *name)
{
    __enter
        std::string bytes;
        ReadHelpBytes(name, bytes); __test;
        if (!Parse(bytes).empty()) {
            RaiseRead(name); __test;
        }
    __point
    __treat
}

std::string THelpFile::Parse(std::string_view bytes)
{
    try {
        CheckCharacters(bytes);
        PARSED parsed = ParsePages(bytes);
        TakeBodies(bytes, parsed);
        title.swap(parsed.title);
        pages.swap(parsed.pages);
    } catch (const WRONG &wrong) {
        return Complaint(bytes, wrong);
    }
    return {};
}

int THelpFile::IndexOf(int context) const
{
    for (size_t i = 0; i < pages.size(); ++i)
        if (pages[i].context == context)
            return static_cast<int>(i);
    return -1;
}
