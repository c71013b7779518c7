#include "support/plaintext.h"

#include "win/dc.h"

#include <algorithm>
#include <cmath>

std::ostream &operator<<(std::ostream &out, const PlainPiece &p)
{
    return out << p.x << "," << p.y << " " << p.width << " " << p.style << " [" << p.text << "]";
}

int PlainLineHeight(TDC &dc, const PlainOrder &order)
{
    TFont font;
    font.face = order.face;
    font.height = -order.size;
    dc.SetFont(font);
    return dc.FontMetrics().height;
}

int PlainCharWidth(TDC &dc, const PlainOrder &order, int lineHeight, int style, char c)
{
    int flags = style | order.format;
    TFont font;
    font.face = order.face;
    font.height = flags & 3 ? std::max(1, static_cast<int>(std::floor(0.6 * lineHeight + 0.5))) : lineHeight;
    font.weight = flags & 4 ? 700 : 400;
    dc.SetFont(font);
    return dc.CharWidth(static_cast<unsigned char>(c));
}

namespace
{
class TWIN
{
public:
    TWIN(const PlainOrder &anOrder, TDC &aDc, PlainFault aFault) : order(anOrder), fault(aFault), dc(aDc)
    {
        Parse();
        Break();
        Align();
    }
    PlainLayout result;

private:
    static bool IsSpace(char c) { return std::string(" \t\n\v\f\r\xA0").find(c) != std::string::npos; }
    static std::string Clean(const std::string &raw)
    {
        std::string s;
        for (size_t i = 0; i < raw.size(); ++i) {
            bool space = IsSpace(raw[i]) && raw[i] != '\n';
            bool spaceNext = i + 1 < raw.size() && IsSpace(raw[i + 1]) && raw[i + 1] != '\n';
            if (raw[i] == '!' && i + 1 < raw.size() && (raw[i + 1] == '_' || raw[i + 1] == '^'))
                s += raw[++i];
            else if (!space)
                s += raw[i];
            else if (!spaceNext && (s.empty() || s.back() != '\n'))
                s += ' ';
        }
        return s;
    }
    static std::string Drawn(const std::string &s)
    {
        std::string drawn;
        for (size_t i = 0; i < s.size(); ++i) {
            if (s[i] == '!' && i + 1 < s.size() && s[i + 1] == '~')
                drawn += s[++i];
            else
                drawn += s[i] == '~' ? ' ' : s[i];
        }
        return drawn;
    }
    void Add(int style, const std::string &raw)
    {
        if (!raw.empty())
            result.pieces.push_back({0, 0, 0, style, Clean(raw)});
    }
    void Parse()
    {
        std::string s = order.source;
        while (!s.empty() && IsSpace(s[0]) && s[0] != '\n')
            s.erase(0, 1);
        std::string raw;
        int style = 0;
        for (size_t i = 0; i < s.size(); ++i) {
            if (s[i] == '!' && i + 1 < s.size() && (s[i + 1] == '_' || s[i + 1] == '^')) {
                raw += s[i++];
                raw += s[i];
            } else if (s[i] == '_' || s[i] == '^') {
                Add(style, raw);
                raw.clear();
                if (s[i] == '_')
                    style = style == 1 ? 0 : 1;
                else
                    style = style == 2 ? 0 : 2;
            } else {
                raw += s[i];
            }
        }
        while (!raw.empty() && IsSpace(raw.back()) && raw.back() != '\n')
            raw.pop_back();
        Add(style, raw);
    }
    int CharWidth(int style, char c) { return PlainCharWidth(dc, order, lineHeight, style, c); }
    /// The character at `at`, which becomes the place of the `~` for `!~`; a `~` that stands for a blank is
    /// one.
    static char CharAt(const std::string &s, size_t &at)
    {
        if (s[at] == '!' && at + 1 < s.size() && s[at + 1] == '~')
            return s[++at];
        return s[at] == '~' ? ' ' : s[at];
    }
    void Break()
    {
        lineHeight = PlainLineHeight(dc, order);
        std::vector<PlainPiece> &pieces = result.pieces;
        size_t breakPiece = 0, breakAt = 0;
        int breakX = -1, count = 0, x = 0, y = 0;
        for (size_t i = 0; i < pieces.size(); ++i) {
            pieces[i].x = x;
            pieces[i].y = y;
            for (size_t at = 0; at < pieces[i].text.size(); ++at) {
                size_t begin = at;
                bool isBlank = pieces[i].text[at] == ' ';
                if (order.breakMode == 1 && pieces[i].text[at] == '\n')
                    pieces[i].text[at] = ' ';
                char c = CharAt(pieces[i].text, at);
                int before = x;
                x += CharWidth(pieces[i].style, c);
                ++count;
                bool over = x > order.width + (fault == BREAKS_LATE) && count > 1;
                if (c != '\n' && (order.breakMode != 3 || !over)) {
                    if (isBlank && (begin == 0 || !IsSpace(pieces[i].text[begin - 1]))) {
                        breakPiece = i;
                        breakAt = begin;
                        breakX = before;
                    }
                    continue;
                }
                x = before;
                if (c != '\n' && breakX >= 0 && fault != FORGETS_PLACE) {
                    i = breakPiece;
                    begin = breakAt;
                    x = breakX;
                }
                pieces[i].width = x - pieces[i].x;
                result.width = std::max(result.width, x);
                PlainPiece tail = pieces[i];
                pieces[i].text.erase(begin);
                tail.text.erase(0, begin);
                while (!tail.text.empty() &&
                       (tail.text[0] == ' ' || (tail.text[0] == '~' && fault != KEEPS_TILDES)))
                    tail.text.erase(0, 1);
                if (!tail.text.empty() && tail.text[0] == '\n')
                    tail.text.erase(0, 1);
                y += lineHeight;
                x = count = 0;
                breakX = -1;
                tail.x = 0;
                tail.y = y;
                ++i;
                pieces.insert(pieces.begin() + static_cast<long>(i), tail);
                at = static_cast<size_t>(-1); // the next one is 0
            }
            pieces[i].width = x - pieces[i].x;
        }
        result.width = std::max(result.width, x);
        result.height = y + lineHeight;
        for (PlainPiece &piece : pieces)
            piece.text = Drawn(piece.text);
    }
    void Align()
    {
        for (PlainPiece &piece : result.pieces) {
            int line = 0, before = 0;
            for (const PlainPiece &other : result.pieces) {
                line += other.y == piece.y ? other.width : 0;
                before += other.y == piece.y && &other < &piece ? other.width : 0;
            }
            int free = result.width - line;
            piece.x = before + (order.format & 32    ? 0
                                : order.format & 64  ? free
                                : order.format & 128 ? free / 2
                                                     : 0);
        }
    }

    const PlainOrder &order;
    PlainFault fault;
    TDC &dc;
    int lineHeight = 0;
};
} // namespace

PlainLayout LayPlainText(const PlainOrder &order, TDC &dc, PlainFault fault)
{
    return TWIN(order, dc, fault).result;
}
