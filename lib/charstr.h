// Zero-terminated text in the system's character set, Windows-1252, one byte a character. Classes and case come
// from the C library's wide classes, independent of any locale setting; collation from the platform. Texts are
// short (names, lines of a report), so every function walks plainly.
#ifndef LIB_CHARSTR_H
#define LIB_CHARSTR_H

inline constexpr char EOS = '\0';

// Character classes, as ChrClass reports them and as masks in the low byte of a flag word.
enum {
    CHR_ALPHA = 1,
    CHR_DIGIT = 2,
    CHR_HEX = 4,
    CHR_PUNCT = 8, // a separator; also what has no other class
    CHR_SPACE = 16,
    CHR_CONTROL = 32,
    CHR_LOWER = 64,
    CHR_UPPER = 128,
    CHR_WORD = CHR_ALPHA | CHR_DIGIT | CHR_HEX, // letters and digits
};

// Flag word of the search and compare functions.
enum {
    STR_START = 0x100,
    STR_END = 0x200, // for trimming; in a search: the last match
    STR_LAST = 0x200,
    STR_NOCASE = 0x400,
    STR_NOSPACE = 0x800,  // ignore white space, or collapse it beside separators
    STR_NOPUNCT = 0x1000, // ignore separators
    STR_NOBLANK = 0x2000, // collapse to nothing
    STR_WORDS = 0x4000,   // whole words only
    STR_PATTERN = 0x8000, // `?`, `*` and `\` in the pattern
};

/// The Unicode of a character. The five places that Windows-1252 leaves open stand for themselves.
unsigned ChrCode(char c);
/// The character of a Unicode; false, and `c` untouched, for one outside the set.
bool ChrOfCode(char *c, unsigned code);

int ChrClass(char c);
/// A character whose other case is not in the set stays as it is.
char ChrLower(char c);
char ChrUpper(char c);

int StrLength(const char *s);
/// The classes within `mask` that all characters share, with the classes of those characters that have none of
/// the mask; 0 for an empty text.
int StrClass(const char *s, int mask);
bool StrIsBlank(const char *s);
void StrUpper(char *s);
void StrLower(char *s);
void StrCapitalize(char *s); // the first letter or digit upper case, all the rest lower case
/// Cuts white space at the ends that STR_START and STR_END name, at both if neither is given.
void StrTrim(char *s, int flags);
/// Cuts white space at both ends and makes one blank of each run inside; with STR_NOSPACE nothing beside a
/// separator, with STR_NOBLANK nothing at all.
void StrCollapse(char *s, int flags);
/// At most max - 1 characters and the terminator; true if all of `src` fitted.
bool StrCopy(char *dest, const char *src, int max);
bool StrCat(char *dest, const char *src, int max);
void StrMove(char *dest, const char *src);                 // the ranges may overlap
const char *StrFindChar(const char *s, char c, int flags); // finds the terminator too
/// NULL if there is none, or if either text is empty. Takes STR_LAST, STR_NOCASE and STR_WORDS.
const char *StrFind(const char *s, const char *pat, int flags);
/// A character of the classes in the low byte of `flags` or of `set`; what stands behind a `quote` is no hit,
/// and a `quote` of EOS quotes nothing. The terminator's place if there is none.
const char *StrFindAny(const char *s, const char *set, char quote, int flags);
int StrCompare(const char *s1, const char *s2, int flags); // locale order: -1, 0 or 1
/// Equal as a whole. White space and separators that are ignored still part words: "a  b" is "a b" and not
/// "ab". In a pattern `\` takes the next character as it is, `?` is any one character and `*` any run.
bool StrMatch(const char *s, const char *pat, int flags);

inline char *StrFindChar(char *s, char c, int flags)
{
    return const_cast<char *>(StrFindChar(static_cast<const char *>(s), c, flags));
}
inline char *StrFind(char *s, const char *pat, int flags)
{
    return const_cast<char *>(StrFind(static_cast<const char *>(s), pat, flags));
}
inline char *StrFindAny(char *s, const char *set, char quote, int flags)
{
    return const_cast<char *>(StrFindAny(static_cast<const char *>(s), set, quote, flags));
}

/// A tokeniser that cuts a text in place and puts it together again.
struct TOKEN {
    int mod;    // 0 fresh, 1 cut by TokInit, 2 cut by TokNext
    char *cur;  // view; the present token, NULL after TokEnd
    char saved; // the character under the terminator
    int len;    // of the present token
};

/// With len of 0 or more the text is cut there and only TokEnd may follow; -1 takes all of it.
void TokInit(TOKEN *tok, char *s, int len);
/// Cuts off the next token; true while there is one.
bool TokNext(TOKEN *tok, const char *set, char quote, int flags);
void TokEnd(TOKEN *tok);

#endif
