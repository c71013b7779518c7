// cdedump: prints the items of any typed data file, one a line, behind their offsets and indented by their
// sections, as far as the file is sound, and tells where it is not. Files may hold millions of items and nest
// as deeply as they like, so nothing is collected: what is printed is forgotten.
#include "lib/cde.h"
#include "lib/disk.h"
#include "tools/console.h"
#include "tools/console_german.h"
#include "usr/edcutils.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>
#include <string>

#include "lib/xon.h"

namespace
{
enum { SOUND = 0, UNSOUND = 1, MISUSED = 2 }; // exit status

enum {
    DEEPEST = 32,  // levels that are shown by indentation; behind that the number of the level stands
    PIECE = 65536, // bytes of output, and of a text, that are held at a time
};

/// One byte of a text as it is printed: what would steer the terminal, or is no character, as an escape.
std::string Shown(unsigned char byte)
{
    switch (byte) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    }
    const char text[2] = {static_cast<char>(byte), '\0'};
    std::string utf8 = ConsoleUtf8(text);
    bool upperControl = utf8.size() == 2 && utf8[0] == '\xC2' && static_cast<unsigned char>(utf8[1]) < 0xA0;
    return byte < ' ' || byte == 0x7F || upperControl ? EdcFormat("\\x%02X", byte) : utf8;
}

/// The shortest decimals that give the same number.
std::string Shortest(double real)
{
    char digits[32];
    return std::string(digits, std::to_chars(digits, digits + sizeof digits, real).ptr);
}

std::string OpenSections(int count)
{
    return count == 1 ? "einem offenen Abschnitt" : EdcFormat("%d offenen Abschnitten", count);
}

class DUMP
{
public:
    std::string flaw; // what is not sound, UTF-8; "" as long as all is
    int flawAt = 0;   // its offset in the file, bytes

    DUMP();
    void Run(const char *path);

private:
    CdeFILE file;
    std::string out;        // that is not printed yet
    std::string shown[256]; // each byte of a text as it is printed
    int depth = 0;          // open sections

    bool Has(long long bytes);
    void Item(int at);
    void Begin(int at, const char *what);
    void End();
    void Characters(int length);
    void Short(const char *what, int at);
    void Text(int at);
    void Section(int at);
    void SectionEnd(int at);
    void Flaw(int at, const std::string &what);
    void Flush(size_t most);
};

DUMP::DUMP()
{
    for (int byte = 0; byte < 256; ++byte)
        shown[byte] = Shown(static_cast<unsigned char>(byte));
}

void DUMP::Flaw(int at, const std::string &what)
{
    flaw = what;
    flawAt = at;
}

void DUMP::Flush(size_t most)
{
    __enter
        if (out.size() > most) {
            ConsoleWrite(out); __test;
            out.clear();
        }
    __point
    __treat
}

/// Whether so many bytes follow. A disk that does not answer is the end of the file for us.
bool DUMP::Has(long long bytes)
{
    bool has = false;
    __enter
        file.Require(bytes);
        __repair;
        has = xRepaired == XNULL;
    __point
    __treat
    return has;
}

void DUMP::Begin(int at, const char *what)
{
    out += EdcFormat("%10d  %*s", at, 2 * std::min<int>(depth, DEEPEST), "");
    if (depth > DEEPEST)
        out += EdcFormat("[%d] ", depth);
    out += what;
}

void DUMP::End()
{
    __enter
        out += '\n';
        Flush(PIECE); __test;
    __point
    __treat
}

/// Bytes of a text that are known to be there, in quotes.
void DUMP::Characters(int length)
{
    __enter
        out += '"';
        while (length > 0) {
            unsigned char piece[4096];
            int count = std::min<int>(length, sizeof piece);
            file.Read(piece, count); __test;
            for (int i = 0; i < count; ++i)
                out += shown[piece[i]];
            Flush(PIECE); __test;
            length -= count;
        }
        out += '"';
    __point
    __treat
}

/// A short string, or the type of a header with what follows it.
void DUMP::Short(const char *what, int at)
{
    __enter
        unsigned char head[2];
        int version = 0;
        bool header = *what == 'h';
        bool there = Has(2);
        if (there) {
            file.Read(head, 2); __test;
            there = Has(head[1] + (header ? 4 : 0));
        }
        if (!there) {
            Flaw(at, EdcFormat("die Datei endet mitten in einem Element (%s)", what));
        } else {
            Begin(at, what);
            out += ' ';
            Characters(head[1]); __test;
            if (header) {
                file.Read(&version, sizeof version); __test;
                out += EdcFormat(" version %d", version);
            }
            End(); __test;
        }
    __point
    __treat
}

void DUMP::Text(int at)
{
    __enter
        unsigned char tag;
        int length = 0;
        bool there = Has(5);
        if (there) {
            file.Read(&tag, 1); __test;
            file.Read(&length, sizeof length); __test;
            there = Has(length);
        }
        if (length < 0) {
            Flaw(at, EdcFormat("die Länge eines Textes ist negativ (%d)", length));
        } else if (!there) {
            Flaw(at, "die Datei endet mitten in einem Element (text)");
        } else {
            Begin(at, "text ");
            Characters(length); __test;
            End(); __test;
        }
    __point
    __treat
}

void DUMP::Section(int at)
{
    __enter
        int number = file.GetSection(); __test;
        Begin(at, "section ");
        out += std::to_string(number);
        End(); __test;
        ++depth;
    __point
    __treat
}

void DUMP::SectionEnd(int at)
{
    __enter
        char tag;
        if (depth == 0) {
            Flaw(at, "ein Abschnitt endet, der nicht begonnen hat");
        } else {
            file.Read(&tag, 1); __test;
            --depth;
            Begin(at, "end");
            End(); __test;
        }
    __point
    __treat
}

/// The item at the present position, whose first byte is there.
void DUMP::Item(int at)
{
    __enter
        unsigned char tag = static_cast<unsigned char>(file.Peek()); __test;
        int size = tag == CDE_REAL ? 9 : tag == CDE_INT || tag == CDE_SECTION ? 5 : 1;
        if (!Has(size)) {
            const char *what = tag == CDE_REAL ? "real" : tag == CDE_INT ? "int" : "section";
            Flaw(at, EdcFormat("die Datei endet mitten in einem Element (%s)", what));
        } else if (tag == CDE_SECTION) {
            Section(at); __test;
        } else if (tag == CDE_END) {
            SectionEnd(at); __test;
        } else if (tag == CDE_INT) {
            int value = file.GetInt(); __test;
            Begin(at, "int ");
            out += std::to_string(value);
            End(); __test;
        } else if (tag == CDE_REAL) {
            double value = file.GetReal(); __test;
            Begin(at, "real ");
            out += Shortest(value);
            End(); __test;
        } else if (tag == CDE_STR) {
            Short("string", at); __test;
        } else if (tag == CDE_TEXT) {
            Text(at); __test;
        } else if (tag == CDE_HEADER && depth == 0) {
            Short("header", at); __test;
        } else if (tag == CDE_HEADER) {
            Flaw(at, "ein Typkopf steht in " + OpenSections(depth));
        } else {
            Flaw(at, EdcFormat("das Byte 0x%02X ist kein Element", tag));
        }
    __point
    __treat
}

void DUMP::Run(const char *path)
{
    __enter
        CdeFILENAME name;
        int at = 0;
        ConsoleName(name, path, XFOPEN); __test;
        file.Open(name, "o"); __test;
        while (flaw.empty() && Has(1)) {
            Item(at); __test;
            at = file.Tell(); __test;
        }
        if (flaw.empty() && depth > 0)
            Flaw(at, "die Datei endet in " + OpenSections(depth));
        if (flaw.empty()) {
            depth = 0;
            Begin(at, "eof");
            out += '\n';
        }
        Flush(0); __test;
        file.Close(); __test;
    __point
    __treat
}

int Dump(const std::string &path)
{
    int status = UNSOUND;
    __enter
        std::unique_ptr<DUMP> dump = std::make_unique<DUMP>();
        dump->Run(path.c_str()); __test;
        if (dump->flaw.empty()) {
            status = SOUND;
        } else {
            std::string message = EdcFormat("Datei \"%s\" ist ab Byte %d nicht in Ordnung: %s", path.c_str(),
                                            dump->flawAt, dump->flaw.c_str());
            ConsoleDisarm(message.data());
            std::fprintf(stderr, "%s\n", message.c_str());
        }
    __point
        __repair;
        __report;
    __treat
    return status;
}

int Start(int argc, char **argv)
{
    int status = UNSOUND;
    __enter
        std::string path;
        CLI::App app("Zeigt die Elemente einer typisierten Datei (.sc1, .gim, .zec) mit ihren Positionen.",
                     "cdedump");
        ConsoleSpeakGerman(app);
        app.add_option("DATEI", path, "Datei")->required()->type_name("");
        try {
            app.parse(argc, argv);
            status = Dump(path);
        } catch (const CLI::CallForHelp &) {
            ConsoleWrite(app.help()); __test;
            status = SOUND;
        } catch (const CLI::ParseError &) {
            std::fprintf(stderr, "Genau eine Datei wird gebraucht.\nAufruf: cdedump DATEI\n");
            status = MISUSED;
        }
    __point
        __repair;
        __report;
    __treat
    return status;
}
} // namespace

int main(int argc, char **argv)
{
    ConsoleStart();
    return Start(argc, argv);
}
