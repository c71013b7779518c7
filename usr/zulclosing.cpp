// The closing text, up to 16 KB, cut where pages may part it: behind paragraphs, behind pairs of short lines,
// and inside a paragraph that runs on for too long. One walk over the text, each stretch looked at twice at
// most.
#include "lib/charstr.h"
#include "lib/platform.h"
#include "lib/xassert.h"
#include "usr/edcutils.h"
#include "usr/zulreport.h"

#include <ctime>

namespace
{
enum {
    TEXT_CLOSING_LINE = 1760,
    LINE_LIMIT = 600, // non-blank characters after which a line is parted
    BACK_UP = 200,    // characters that a parted line may give back to end at a blank
    LONG_LINE = 90,   // non-blank characters that make a line a paragraph of its own
};

bool IsBlank(char c)
{
    return (ChrClass(c) & CHR_SPACE) != 0;
}

bool AtLineBreak(const char *p)
{
    return p[0] == '\r' && p[1] == '\n';
}

/// One line or the part of it up to the limit.
struct ClosingLine {
    const char *end; // behind its line break, if it has one
    int count;       // non-blank characters
};

/// Where a line that has reached its limit is parted: behind the last blank, or here if that is too far back.
const char *BackUp(const char *limit)
{
    for (const char *p = limit; limit - p <= BACK_UP; --p) {
        if (IsBlank(p[-1]))
            return p;
    }
    return limit;
}

ClosingLine ScanLine(const char *p)
{
    int count = 0;
    while (*p != EOS && !AtLineBreak(p)) {
        if (count == LINE_LIMIT) {
            // The stretch lies within this line: it has three times as many characters.
            const char *parted = BackUp(p);
            return {parted, count - static_cast<int>(p - parted)};
        }
        if (!IsBlank(*p))
            ++count;
        ++p;
    }
    return {*p == EOS ? p : p + 2, count};
}

struct ClosingScan {
    const char *end;
    int total; // non-blank characters in all
    int last;  // of them in the last line that is not empty
};

ClosingScan Scan(const char *begin)
{
    ClosingScan scan{begin, 0, 0};
    for (int number = 1;; ++number) {
        ClosingLine line = ScanLine(scan.end);
        bool hasText = line.count > 0;
        bool isBehindText = scan.total > 0;
        scan.end = line.end;
        scan.total += line.count;
        if (hasText)
            scan.last = line.count;
        if (*scan.end == EOS)
            return scan;
        if (hasText && (line.count >= LONG_LINE || number > 1))
            return scan;
        if (!hasText && (isBehindText || number >= 3)) {
            ASSERT_AS(*(scan.end - 1) == '\n', "*(pCur-1) == '\\n'");
            scan.end -= 2; // the empty line opens the next piece
            return scan;
        }
    }
}

/// A short line behind a paragraph stays with it.
bool IsShortTail(const ClosingScan &scan)
{
    return scan.last == scan.total && scan.total > 0 && scan.total < LONG_LINE;
}

/// The end of a piece that more text follows: its last line break goes, since the next piece starts a new line
/// anyway. A piece parted inside a line keeps its blank.
const char *WithoutLineBreak(const char *begin, const char *end)
{
    const char *p = end;
    while (p > begin && IsBlank(p[-1])) {
        if (p - begin >= 2 && AtLineBreak(p - 2))
            return p - 2;
        --p;
    }
    return p == begin ? p : end;
}
} // namespace

std::vector<std::string> ZulClosingPieces(const char *text)
{
    std::vector<std::string> pieces;
    while (*text != EOS) {
        ClosingScan first = Scan(text);
        ClosingScan second = Scan(first.end);
        const char *end = first.total > 0 && IsShortTail(second) ? second.end : first.end;
        pieces.emplace_back(text, *end == EOS ? end : WithoutLineBreak(text, end));
        text = end;
    }
    return pieces;
}

std::string ZulClosingLine(const EmCONCLUSION &conclusion)
{
    return EdcResFormat(TEXT_CLOSING_LINE, ZulDateText(conclusion.date).c_str(), conclusion.author);
}

std::string ZulDateText(int date)
{
    int year = date / 10000;
    int month = date / 100 % 100;
    int day = date % 100;
    bool isLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    const int days[12] = {31, isLeap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < 1 || month < 1 || month > 12 || day < 1 || day > days[month - 1])
        return EdcFormat("%d", date);
    char text[64];
    ShortDate(year, month, day, text, sizeof text);
    return text;
}

int ZulToday()
{
    time_t now = time(NULL);
    tm local = {};
    localtime_r(&now, &local);
    return ((local.tm_year + 1900) * 100 + local.tm_mon + 1) * 100 + local.tm_mday;
}
