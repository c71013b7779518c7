#include "lib/charstr.h"
#include "lib/platform.h"
#include "lib/xassert.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <locale.h>
#include <wctype.h>

namespace
{
/// What Windows-1252 has at 0x80 to 0x9F, as Unicode; everywhere else a byte is its own code.
constexpr unsigned upperHalf[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, // 80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, // 90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178, // 98
};

constexpr char noBreakSpace = '\xA0';

int ClassOf(char c, locale_t locale)
{
    wint_t code = ChrCode(c);
    if (c == noBreakSpace) // the C library parts words by breaking; to a person it is a blank
        return CHR_SPACE;
    int found = (iswalpha_l(code, locale) ? CHR_ALPHA : 0) | (iswdigit_l(code, locale) ? CHR_DIGIT : 0) |
                (iswxdigit_l(code, locale) ? CHR_HEX : 0) | (iswpunct_l(code, locale) ? CHR_PUNCT : 0) |
                (iswspace_l(code, locale) ? CHR_SPACE : 0) | (iswcntrl_l(code, locale) ? CHR_CONTROL : 0) |
                (iswlower_l(code, locale) ? CHR_LOWER : 0) | (iswupper_l(code, locale) ? CHR_UPPER : 0);
    return found != 0 ? found : CHR_PUNCT;
}

/// Class and case of all characters, taken from the C library once: it must not depend on what locale the
/// process was started in, or names would compare differently from machine to machine.
struct CHARSET {
    unsigned char classes[256];
    char lower[256];
    char upper[256];

    CHARSET()
    {
        locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(0));
        if (locale == static_cast<locale_t>(0)) // built into the C library, so only memory can be missing
            TerminateOn(XALLOC, __FILE__, __LINE__);
        for (int i = 0; i < 256; ++i) {
            char c = static_cast<char>(i);
            classes[i] = static_cast<unsigned char>(ClassOf(c, locale));
            lower[i] = upper[i] = c; // also where the other case is not in the set, as with the micro sign
            ChrOfCode(&lower[i], towlower_l(ChrCode(c), locale));
            ChrOfCode(&upper[i], towupper_l(ChrCode(c), locale));
        }
        freelocale(locale);
    }
};

const CHARSET &Charset()
{
    static const CHARSET charset; // at first use: names are also made before main
    return charset;
}

bool IsSpace(char c)
{
    return ChrClass(c) & CHR_SPACE;
}

bool IsWord(char c)
{
    return ChrClass(c) & CHR_WORD;
}

bool SameChar(char a, char b, int flags)
{
    return a == b || ((flags & STR_NOCASE) && ChrLower(a) == ChrLower(b));
}

/// Whether max characters from `dest` on and the text `src` lie apart. As numbers, since two texts need not
/// belong to one object.
bool LieApart(const char *dest, const char *src, int max)
{
    auto to = reinterpret_cast<std::uintptr_t>(dest);
    auto from = reinterpret_cast<std::uintptr_t>(src);
    return from >= to + static_cast<std::uintptr_t>(max) || to > from + std::strlen(src);
}
} // namespace

unsigned ChrCode(char c)
{
    unsigned byte = static_cast<unsigned char>(c);
    return byte >= 0x80 && byte < 0xA0 ? upperHalf[byte - 0x80] : byte;
}

bool ChrOfCode(char *c, unsigned code)
{
    bool same = code < 0x80 || (code >= 0xA0 && code <= 0xFF);
    const unsigned *place = std::find(std::begin(upperHalf), std::end(upperHalf), code);
    if (!same && place == std::end(upperHalf))
        return false;
    *c = static_cast<char>(same ? code : 0x80 + static_cast<unsigned>(place - upperHalf));
    return true;
}

int ChrClass(char c)
{
    return Charset().classes[static_cast<unsigned char>(c)];
}

char ChrLower(char c)
{
    return Charset().lower[static_cast<unsigned char>(c)];
}

char ChrUpper(char c)
{
    return Charset().upper[static_cast<unsigned char>(c)];
}

int StrLength(const char *s)
{
    ASSERT(s != NULL);
    return static_cast<int>(std::strlen(s));
}

int StrClass(const char *s, int mask)
{
    ASSERT(s != NULL);
    if (*s == EOS)
        return 0;
    int shared = mask;
    int outside = 0;
    for (; *s != EOS; ++s) {
        shared &= ChrClass(*s);
        if (!(ChrClass(*s) & mask))
            outside |= ChrClass(*s);
    }
    return shared | outside;
}

bool StrIsBlank(const char *s)
{
    ASSERT(s != NULL);
    while (IsSpace(*s))
        ++s;
    return *s == EOS;
}

void StrUpper(char *s)
{
    ASSERT(s != NULL);
    for (; *s != EOS; ++s)
        *s = ChrUpper(*s);
}

void StrLower(char *s)
{
    ASSERT(s != NULL);
    for (; *s != EOS; ++s)
        *s = ChrLower(*s);
}

void StrCapitalize(char *s)
{
    ASSERT(s != NULL);
    StrLower(s);
    while (*s != EOS && !IsWord(*s))
        ++s;
    *s = ChrUpper(*s);
}

void StrTrim(char *s, int flags)
{
    ASSERT(s != NULL);
    bool both = !(flags & (STR_START | STR_END));
    if (both || (flags & STR_END)) {
        char *end = s + StrLength(s);
        while (end > s && IsSpace(end[-1]))
            --end;
        *end = EOS;
    }
    if (both || (flags & STR_START)) {
        const char *begin = s;
        while (IsSpace(*begin))
            ++begin;
        StrMove(s, begin);
    }
}

void StrCollapse(char *s, int flags)
{
    ASSERT(s != NULL);
    StrTrim(s, 0);
    char *to = s;
    for (const char *from = s; *from != EOS; ++from) {
        if (!IsSpace(*from)) {
            *to++ = *from;
            continue;
        }
        while (IsSpace(from[1]))
            ++from;
        // A trimmed text has a character on both sides of a run.
        bool beside = (ChrClass(to[-1]) | ChrClass(from[1])) & CHR_PUNCT;
        if (!(flags & STR_NOBLANK) && !((flags & STR_NOSPACE) && beside))
            *to++ = ' ';
    }
    *to = EOS;
}

bool StrCopy(char *dest, const char *src, int max)
{
    ASSERT(max > 0);
    ASSERT(src != NULL && dest != NULL);
    ASSERT_AS(LieApart(dest, src, max), "src >= dest+max || dest > src+StrLength(src)");
    int length = StrLength(src);
    int taken = length < max ? length : max - 1;
    std::memcpy(dest, src, static_cast<size_t>(taken));
    dest[taken] = EOS;
    return taken == length;
}

bool StrCat(char *dest, const char *src, int max)
{
    ASSERT(max > 0);
    ASSERT(src != NULL && dest != NULL);
    for (; *dest != EOS; ++dest, --max)
        ASSERT(max > 1);
    return StrCopy(dest, src, max);
}

void StrMove(char *dest, const char *src)
{
    ASSERT(src != NULL && dest != NULL);
    std::memmove(dest, src, std::strlen(src) + 1);
}

const char *StrFindChar(const char *s, char c, int flags)
{
    ASSERT(s != NULL);
    const char *found = NULL;
    for (;; ++s) {
        if (SameChar(*s, c, flags)) {
            found = s;
            if (!(flags & STR_LAST))
                break;
        }
        if (*s == EOS)
            break;
    }
    return found;
}

namespace
{
/// Behind the text that stands at `s`, NULL if another one does.
const char *Behind(const char *s, const char *text, int flags)
{
    for (; *text != EOS; ++s, ++text)
        if (!SameChar(*s, *text, flags))
            return NULL;
    return s;
}

/// A border inside a word: the hit from `begin` to `end` is only a piece of it.
bool CutsWord(const char *s, const char *begin, const char *end)
{
    return (begin > s && IsWord(begin[-1]) && IsWord(*begin)) || (IsWord(end[-1]) && IsWord(*end));
}
} // namespace

const char *StrFind(const char *s, const char *pat, int flags)
{
    ASSERT(s != NULL && pat != NULL);
    const char *found = NULL;
    if (*pat == EOS)
        return NULL;
    for (const char *at = s; *at != EOS; ++at) {
        const char *end = Behind(at, pat, flags);
        if (end == NULL || ((flags & STR_WORDS) && CutsWord(s, at, end)))
            continue;
        found = at;
        if (!(flags & STR_LAST))
            break;
    }
    return found;
}

const char *StrFindAny(const char *s, const char *set, char quote, int flags)
{
    ASSERT(s != NULL && set != NULL);
    const char *found = NULL;
    for (; *s != EOS; ++s) {
        if (*s == quote) {
            if (s[1] != EOS)
                ++s;
        } else if ((ChrClass(*s) & flags & 0xFF) || StrFindChar(set, *s, flags & STR_NOCASE) != NULL) {
            found = s;
            if (!(flags & STR_LAST))
                return found;
        }
    }
    ASSERT(*s == EOS);
    return found != NULL ? found : s;
}

int StrCompare(const char *s1, const char *s2, int flags)
{
    ASSERT(s1 != NULL && s2 != NULL);
    int iRes = Collate(s1, s2, flags & STR_NOCASE) + 2;
    ASSERT(iRes >= 1 && iRes <= 3);
    return iRes - 2;
}

namespace
{
enum ELEMENTKIND { ELEMENT_END, ELEMENT_LITERAL, ELEMENT_ANY, ELEMENT_RUN };

/// What stands at one place of a pattern.
struct ELEMENT {
    ELEMENTKIND kind;
    char c;   // of a literal
    int size; // characters of the pattern
};

ELEMENT ElementAt(const char *pat, int flags)
{
    if (*pat == EOS)
        return {ELEMENT_END, EOS, 0};
    if (flags & STR_PATTERN) {
        if (*pat == '*')
            return {ELEMENT_RUN, EOS, 1};
        if (*pat == '?')
            return {ELEMENT_ANY, EOS, 1};
        if (*pat == '\\' && pat[1] != EOS) // as the last character it stands for itself
            return {ELEMENT_LITERAL, pat[1], 2};
    }
    return {ELEMENT_LITERAL, *pat, 1};
}

/// Whether a word may or must begin at a place of the pattern.
enum WORDSTART { WORD_GOES_ON, WORD_BEGINS, WORD_EITHER };

/// One comparison in progress. A run lets go of nothing that stands before it: whatever the pieces before the
/// last `*` took first is as good as any other choice, so one place to go back to is enough and the walk is at
/// worst the product of the two lengths.
struct MATCHING {
    const char *s;
    const char *pat;
    WORDSTART start; // on the side of the pattern; the text shows it by itself
};

int SkipMask(int flags)
{
    return ((flags & STR_NOSPACE) ? CHR_SPACE : 0) | ((flags & STR_NOPUNCT) ? CHR_PUNCT : 0);
}

void PassOverText(MATCHING *at, int flags)
{
    while (*at->s != EOS && (ChrClass(*at->s) & SkipMask(flags)))
        ++at->s;
}

void PassOverPattern(MATCHING *at, int flags)
{
    ELEMENT e = ElementAt(at->pat, flags);
    while (e.kind == ELEMENT_LITERAL && (ChrClass(e.c) & SkipMask(flags))) {
        at->pat += e.size;
        at->start = WORD_BEGINS;
        e = ElementAt(at->pat, flags);
    }
}

/// Whether the next character matches the next element, which is no run.
bool Step(MATCHING *at, const char *text, int flags)
{
    ELEMENT e = ElementAt(at->pat, flags);
    char c = *at->s;
    if (c == EOS || e.kind == ELEMENT_END)
        return false;
    if (e.kind == ELEMENT_LITERAL && !SameChar(c, e.c, flags))
        return false;
    // What is passed over still parts words: "a b" is not "ab".
    bool begins = at->s == text || !IsWord(at->s[-1]);
    if (SkipMask(flags) && IsWord(c) && at->start != WORD_EITHER && (at->start == WORD_BEGINS) != begins)
        return false;
    ++at->s;
    at->pat += e.size;
    at->start = IsWord(c) ? WORD_GOES_ON : WORD_BEGINS;
    return true;
}
} // namespace

bool StrMatch(const char *s, const char *pat, int flags)
{
    ASSERT(s != NULL && pat != NULL);
    if (flags == 0)
        return std::strcmp(s, pat) == 0;
    MATCHING at = {s, pat, WORD_BEGINS};
    MATCHING run = {NULL, NULL, WORD_EITHER}; // behind the last `*`, with the first character it did not take
    for (;;) {
        PassOverText(&at, flags);
        PassOverPattern(&at, flags);
        ELEMENTKIND kind = ElementAt(at.pat, flags).kind;
        if (kind == ELEMENT_RUN) {
            ++at.pat;
            at.start = WORD_EITHER;
            run = at;
        } else if (kind == ELEMENT_END && *at.s == EOS) {
            return true;
        } else if (!Step(&at, s, flags)) {
            if (run.s == NULL || *at.s == EOS) // a longer run leaves even less text for the rest
                return false;
            ++run.s;
            PassOverText(&run, flags);
            at = run;
        }
    }
}

void TokInit(TOKEN *tok, char *s, int len)
{
    ASSERT(tok != NULL && s != NULL);
    ASSERT(len >= -1 && len <= StrLength(s));
    tok->mod = len >= 0;
    tok->cur = s;
    tok->len = len >= 0 ? len : StrLength(s);
    tok->saved = s[tok->len];
    s[tok->len] = EOS;
}

bool TokNext(TOKEN *tok, const char *set, char quote, int flags)
{
    ASSERT(tok != NULL);
    ASSERT(tok->mod == 0 || tok->mod == 2);
    ASSERT(tok->len >= 0);
    char *p = tok->cur + tok->len;
    ASSERT(*p == EOS);
    if (tok->mod == 2) {
        if (tok->saved == EOS)
            return false;
        *p = tok->saved;
        tok->cur = p + 1;
    }
    p = StrFindAny(tok->cur, set, quote, flags & ~STR_LAST);
    tok->len = static_cast<int>(p - tok->cur);
    tok->saved = *p;
    tok->mod = 2;
    *p = EOS;
    return true;
}

void TokEnd(TOKEN *tok)
{
    ASSERT(tok != NULL);
    ASSERT(tok->len >= 0);
    char *p = tok->cur + tok->len;
    ASSERT(*p == EOS);
    *p = tok->saved;
    tok->cur = NULL;
    tok->len = -1; // a tokeniser that has ended stops on the assertion above
}
