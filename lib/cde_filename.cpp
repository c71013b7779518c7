// The value `name` is always normal: every operation that changes more than case builds a text and assigns it,
// so a name equals its own copy. Whatever does not fit into 255 characters is cut off.
#include "lib/cde.h"
#include "lib/charstr.h"
#include "lib/disk.h"
#include "lib/xassert.h"

#include <unistd.h>

#include "lib/xon.h"

namespace
{
enum { NAME_MAX_SIZE = 256 }; // terminator included

bool IsSpace(char c)
{
    return ChrClass(c) & CHR_SPACE;
}

bool IsBorder(char c)
{
    return c == '\\' || c == ':';
}

/// Drops what may stand before or behind a component but means nothing there. The text does not get longer.
char *CopyWithoutIdleBlanks(char *to, const char *from)
{
    int pending = 0; // blanks read behind a word and not yet written
    bool inWord = false;
    for (; *from != EOS; ++from) {
        if (IsSpace(*from)) {
            if (inWord || pending > 0)
                ++pending;
            inWord = false;
            continue;
        }
        if (IsBorder(*from)) { // in a word it stays there, and nothing is pending
            pending = 0;
        } else {
            for (; pending > 0; --pending)
                *to++ = ' ';
            inWord = true;
        }
        *to++ = *from;
    }
    *to = EOS;
    return to;
}

/// Whether the last character of a name of that length has no meaning. The '\' of a root has one, and so have
/// "." and ".." as components.
bool EndsIdly(const char *name, int length)
{
    if (length == 0)
        return false;
    char last = name[length - 1];
    if (IsSpace(last))
        return true;
    if (length == 1)
        return false;
    char before = name[length - 2];
    if (last == '\\')
        return before != ':';
    return last == '.' && !IsBorder(before) && before != '.';
}

/// The whole text against a pattern of `*` for any run and `?` for any one character, case ignored. It goes
/// back to the last `*` only, so the time is at worst the product of the lengths.
bool MatchesWildcards(const char *s, const char *pattern)
{
    const char *runText = NULL;    // the first character that the last run did not take
    const char *runPattern = NULL; // behind the last `*`
    while (*s != EOS) {
        if (*pattern == '*') {
            runPattern = ++pattern;
            runText = s;
        } else if (*pattern != EOS && (*pattern == '?' || ChrLower(*pattern) == ChrLower(*s))) {
            ++pattern;
            ++s;
        } else if (runPattern != NULL) {
            pattern = runPattern;
            s = ++runText;
        } else {
            return false;
        }
    }
    while (*pattern == '*')
        ++pattern;
    return *pattern == EOS;
}

const char *WithoutBlanks(const char *s)
{
    while (IsSpace(*s))
        ++s;
    return s;
}

CdeFILENAME programFolder;
CdeFILENAME programName;
} // namespace

CdeFILENAME &CdeFILENAME::operator=(const char *s)
{
    ASSERT(s != NULL);
    char text[NAME_MAX_SIZE]; // `s` may point into this name
    StrCopy(text, s, NAME_MAX_SIZE);
    StrMove(name, text);
    Normalise();
    return *this;
}

/// What goes at the end may uncover more that goes: "a ." is "a" and not "a ", or a copy would differ from it.
void CdeFILENAME::Normalise()
{
    int length = static_cast<int>(CopyWithoutIdleBlanks(name, name) - name);
    while (EndsIdly(name, length))
        --length;
    name[length] = EOS;
}

void CdeFILENAME::Lower()
{
    StrLower(name);
}

void CdeFILENAME::Upper()
{
    StrUpper(name);
}

void CdeFILENAME::Capitalize()
{
    bool first = true;
    for (char *c = name; *c != EOS; ++c) {
        *c = first ? ChrUpper(*c) : ChrLower(*c);
        if (IsBorder(*c))
            first = true;
        else if (!IsSpace(*c))
            first = false;
    }
}

/// Behind the ':' of the drive. A ':' behind a '\' is part of a component: file names here may hold one.
int CdeFILENAME::DriveEnd() const
{
    int end = static_cast<int>(StrFindAny(name, "\\:", EOS, 0) - name);
    return name[end] == ':' ? end + 1 : 0;
}

int CdeFILENAME::NameStart() const
{
    const char *last = StrFindChar(name, '\\', STR_LAST);
    return last != NULL ? static_cast<int>(last - name) + 1 : DriveEnd();
}

int CdeFILENAME::ExtStart() const
{
    int start = NameStart();
    while (name[start] == '.')
        ++start;
    const char *dot = StrFindChar(name + start, '.', STR_LAST);
    return dot != NULL ? static_cast<int>(dot - name) : start + StrLength(name + start);
}

CdeFILENAME CdeFILENAME::GetExt() const
{
    const char *dot = name + ExtStart();
    return *dot == '.' ? dot + 1 : dot;
}

bool CdeFILENAME::HasExt(const char *pattern) const
{
    ASSERT(pattern != NULL);
    const char *dot = name + ExtStart();
    if (*dot == EOS)
        return false;
    pattern = WithoutBlanks(pattern);
    return MatchesWildcards(dot + 1, *pattern == '.' ? pattern + 1 : pattern);
}

void CdeFILENAME::CutExt()
{
    name[ExtStart()] = EOS;
    Normalise();
}

void CdeFILENAME::AddExt(const char *ext)
{
    ASSERT(ext != NULL);
    int length = StrLength(name);
    if (length > 0 && (IsBorder(name[length - 1]) || name[length - 1] == '.'))
        return;
    char text[NAME_MAX_SIZE];
    StrCopy(text, name, NAME_MAX_SIZE);
    ext = WithoutBlanks(ext);
    if (*ext != '.')
        StrCat(text, ".", NAME_MAX_SIZE);
    StrCat(text, ext, NAME_MAX_SIZE);
    *this = text;
}

void CdeFILENAME::SetExt(const char *ext)
{
    CdeFILENAME result = *this; // `ext` may point into this name
    result.CutExt();
    result.AddExt(ext);
    *this = result;
}

void CdeFILENAME::DefaultExt(const char *ext)
{
    if (name[ExtStart()] == EOS)
        AddExt(ext);
}

CdeFILENAME CdeFILENAME::GetName() const
{
    return name + NameStart();
}

bool CdeFILENAME::HasName(const char *pattern) const
{
    ASSERT(pattern != NULL);
    return MatchesWildcards(name + NameStart(), pattern);
}

void CdeFILENAME::CutName()
{
    name[NameStart()] = EOS;
    Normalise(); // takes the '\' behind a folder and leaves that of a root
}

/// An empty name has no folder that a '\' could part from the component: the result stays relative.
void CdeFILENAME::AddName(const char *component)
{
    ASSERT(component != NULL);
    char text[NAME_MAX_SIZE];
    StrCopy(text, name, NAME_MAX_SIZE);
    int length = StrLength(text);
    if (length > 0 && !IsBorder(text[length - 1]))
        StrCat(text, "\\", NAME_MAX_SIZE);
    StrCat(text, component, NAME_MAX_SIZE);
    *this = text;
}

/// CutName and AddName in one: a folder that would not stay as it is without a component behind it, because its
/// name ends in '.', is not touched.
void CdeFILENAME::SetName(const char *component)
{
    ASSERT(component != NULL);
    char text[NAME_MAX_SIZE];
    StrCopy(text, name, NameStart() + 1);
    StrCat(text, component, NAME_MAX_SIZE);
    *this = text;
}

CdeFILENAME CdeFILENAME::GetDrive() const
{
    CdeFILENAME drive = *this;
    drive.name[DriveEnd()] = EOS;
    return drive;
}

void CdeFILENAME::CutDrive()
{
    *this = name + DriveEnd();
}

/// The ':' may be left out; an empty drive leaves the name without one.
void CdeFILENAME::SetDrive(const char *drive)
{
    ASSERT(drive != NULL);
    char text[NAME_MAX_SIZE];
    StrCopy(text, drive, NAME_MAX_SIZE);
    *StrFindAny(text, ":", EOS, 0) = EOS;
    if (!StrIsBlank(drive))
        StrCat(text, ":", NAME_MAX_SIZE);
    StrCat(text, name + DriveEnd(), NAME_MAX_SIZE);
    *this = text;
}

bool CdeFILENAME::IsRooted() const
{
    return name[DriveEnd()] == '\\';
}

void CdeFILENAME::MakeRooted()
{
    if (IsRooted())
        return;
    char text[NAME_MAX_SIZE];
    StrCopy(text, name, DriveEnd() + 1);
    StrCat(text, "\\", NAME_MAX_SIZE);
    StrCat(text, name + DriveEnd(), NAME_MAX_SIZE);
    *this = text;
}

void CdeFILENAME::MakeRelative()
{
    char *root = name + DriveEnd();
    const char *rest = root;
    while (*rest == '\\')
        ++rest;
    StrMove(root, rest);
    Normalise();
}

bool CdeFILENAME::Match(const char *pattern) const
{
    ASSERT(pattern != NULL);
    return MatchesWildcards(name, pattern);
}

/// The folder keeps its spelling: the file system here tells upper from lower case, and in lower case nothing
/// beside the program would be found. A path that a file name cannot hold as it stands, because of its length,
/// its characters, or blanks or a '.' at the end of a component, is refused and the former one stays.
bool SetProgramPath(const char *nativePath)
{
    ASSERT(nativePath != NULL);
    char path[NAME_MAX_SIZE];
    if (!NameFromNative(path, nativePath, NAME_MAX_SIZE))
        return false;
    CdeFILENAME folder = path;
    CdeFILENAME program = folder.GetName();
    folder.CutName();
    CdeFILENAME whole = folder;
    whole.AddName(program);
    if (!StrMatch(whole, path, 0))
        return false;
    programFolder = folder;
    programName = program;
    programName.Lower();
    return true;
}

void FindProgramPath()
{
    __enter
        char path[NATIVE_MAX];
        ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
        path[length < 0 ? 0 : length] = EOS;
        if (length < 0 || !SetProgramPath(path)) {
            NameFromNative(xFOpenName, path, X_NAME);
            __raise(XFOPEN);
        }
    __point
    __treat
}

const CdeFILENAME &ProgramFolder()
{
    return programFolder;
}

const CdeFILENAME &ProgramName()
{
    return programName;
}
