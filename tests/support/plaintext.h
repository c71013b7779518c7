// The plain twin of marked-up text: the same layout, character by character, over texts that are copied
// whenever they are parted. It asks the device for each character's width and knows no short cut.
#ifndef TESTS_SUPPORT_PLAINTEXT_H
#define TESTS_SUPPORT_PLAINTEXT_H

#include <ostream>
#include <string>
#include <vector>

class TDC;

struct PlainPiece {
    int x = 0;
    int y = 0;
    int width = 0;
    int style = 0;
    std::string text;

    bool operator==(const PlainPiece &) const = default;
};

std::ostream &operator<<(std::ostream &out, const PlainPiece &p);

struct PlainLayout {
    std::vector<PlainPiece> pieces;
    int width = 0;
    int height = 0;
};

struct PlainOrder {
    std::string source;
    std::string face = "Arial";
    int size = 1;
    int format = 0;
    int width = 0;
    int breakMode = 0;
};

/// What the twin can get wrong, to show that a difference would be seen.
enum PlainFault { PLAIN_SOUND, KEEPS_TILDES, BREAKS_LATE, FORGETS_PLACE };

int PlainLineHeight(TDC &dc, const PlainOrder &order); // px
int PlainCharWidth(TDC &dc, const PlainOrder &order, int lineHeight, int style, char c);

/// Lays the text out with the device's fonts.
PlainLayout LayPlainText(const PlainOrder &order, TDC &dc, PlainFault fault = PLAIN_SOUND);

#endif
