// Typed data files: a stream of tagged items, so that a reader sees what comes next, checks what it gets and
// skips what it does not know. Records are sections; a record read with fewer fields than it holds is left with
// EndSection, so later versions stay readable. All numbers are little-endian, nothing is aligned.
// Files are small (kilobytes to a few megabytes) and read at load time only, through one buffer a file.
#ifndef LIB_CDE_H
#define LIB_CDE_H

#include "lib/disk.h"

#include <cstddef>

enum { CdeMAXSTR = 256 }; // bound of a short string, terminator included

// Tags. Other bytes are no items.
enum : unsigned char {
    CDE_EOF = 0xA0,     // never stored; what Peek gives at the end
    CDE_SECTION = 0xA1, // int32 number
    CDE_END = 0xA2,
    CDE_INT = 0xA3,    // int32
    CDE_REAL = 0xA4,   // IEEE 754 double
    CDE_STR = 0xA5,    // uint8 length, bytes
    CDE_HEADER = 0xA6, // uint8 length, type name, int32 version
    CDE_TEXT = 0xA7,   // int32 length, bytes
};

/// A file name of at most 255 characters, normalised at each assignment: no blanks at its ends or before a '\'
/// or ':', no trailing '\' but a root's, no single '.' at the end of a name. What does not fit is cut off.
/// A ':' that no '\' precedes ends the drive; any other one is a character of its component.
class CdeFILENAME
{
public:
    CdeFILENAME() { name[0] = '\0'; }
    CdeFILENAME(const char *s) { *this = s; }
    CdeFILENAME &operator=(const char *s);
    operator const char *() const { return name; }

    bool IsBlank() const { return name[0] == '\0'; }
    void Lower();
    void Upper();
    void Capitalize(); // in each component the first non-blank upper case, the rest lower case

    /// The characters behind the last '.' of the last component, "" without extension; a leading '.' starts
    /// none.
    CdeFILENAME GetExt() const;
    bool HasExt(const char *pattern) const; // wildcards; white space and one '.' may stand before the pattern
    void CutExt();
    void AddExt(const char *ext);
    void SetExt(const char *ext);
    void DefaultExt(const char *ext); // if there is none

    CdeFILENAME GetName() const; // the last component
    bool HasName(const char *pattern) const;
    void CutName(); // leaves the folder, with the '\' of a root
    void AddName(const char *component);
    void SetName(const char *component);

    CdeFILENAME GetDrive() const; // up to and with the ':'
    void CutDrive();
    void SetDrive(const char *drive);

    bool IsRooted() const; // a '\' behind the drive or at the start
    void MakeRooted();
    void MakeRelative();

    bool Match(const char *pattern) const; // wildcards over drive and whole name, case ignored

private:
    char name[256];

    void Normalise();
    int NameStart() const;
    int ExtStart() const; // of the '.', or the length
    int DriveEnd() const;
};

/// Stores the program's path, native form: its folder and its file name are where everything beside the program
/// is looked up. Called once at start. False if the folder cannot be named.
bool SetProgramPath(const char *nativePath);
/// The same with the path of this process: XFOPEN and that path where it cannot be found or named.
void FindProgramPath();
const CdeFILENAME &ProgramFolder();
const CdeFILENAME &ProgramName();

/// A stream of typed items over three primitive operations. All typed operations are guarded.
class CdeMEDIUM
{
public:
    virtual ~CdeMEDIUM() = default;
    /// The next byte as a signed value, not consumed; CDE_EOF at the end.
    virtual signed char Peek() = 0;
    virtual void Write(const void *blk, int size) = 0;
    virtual void Read(void *blk, int size) = 0; // exactly `size` bytes

    void PutHeader(const char *type, int ver);
    void PutSection(int num);
    void PutEnd();
    void PutInt(int value);
    void PutReal(double value);
    void PutStr(const char *s, int len = -1);  // below 256 bytes; -1: up to the terminator
    void PutText(const char *s, int len = -1); // of any length

    // Each raises XCDE_INVOLVED on another tag than its own, with only that byte taken.
    int GetHeader(const char *type, int ver); // the stored version; a negative `ver` accepts any
    int GetSection();
    int GetInt();
    double GetReal();
    void GetStr(char *s, int max); // cut to max - 1 characters without a failure
    void GetText(char *s, int max);

    /// True when nothing more stands in this section: a section end, a type header or the end of the file. True
    /// too with a failure, so that loops over members end.
    bool GetOver();
    /// Passes over `count` items of this level; a nested section is one item. Trusts the items to be well
    /// formed: a byte that is no tag holds it for ever, so a file that is not ours is walked first, see
    /// CdeFILE::Walk.
    void Skip(int count);
    /// Leaves `count` sections, whatever still stands in them; a file that ends before that is left quietly.
    void EndSection(int count);

private:
    void GetTag(unsigned char tag);
};

/// A typed file on the disk, through one buffer. Lives on the stack of the function that reads or writes.
class CdeFILE : public CdeMEDIUM
{
public:
    CdeFILE();
    ~CdeFILE() override; // closes without any failure
    CdeFILE(const CdeFILE &) = delete;
    CdeFILE &operator=(const CdeFILE &) = delete;

    /// Modes: "o" opens what exists (XFOPEN), "a" appends, "c" creates or empties (XFCREATE), each for reading
    /// and writing. A NULL name makes a temporary file that goes when it is closed. Positions are int: what
    /// lies beyond 2 GB - 1 is neither read (XFREAD) nor written (XFWRITE).
    void Open(const char *name, const char *mode);
    /// Creates a file beside `name` that takes its place in Close, and only there: whatever fails before, what
    /// `name` held is still there.
    void OpenReplacing(const char *name);
    /// Only a Close that came to its end makes a written file trustworthy (XFWRITE). The file is closed in any
    /// case.
    void Close();

    // Written bytes wait in the buffer, so that a full disk may show later, at any of these or at Close:
    // XFWRITE.
    signed char Peek() override;                    // XFREAD if the disk does not answer
    void Write(const void *blk, int size) override; // XFWRITE
    void Read(void *blk, int size) override;        // XFREAD
    int Tell();
    void Seek(int pos);

    bool IsOpen() const { return f != NULL; }
    const CdeFILENAME &Name() const { return name; } // "???" while closed

    /// Walks the items from here to the end once and comes back: XCDE_INVOLVED if a byte inside a section is no
    /// tag or a length is negative. A file that merely ends early passes. Skip may be trusted afterwards. A
    /// type header inside a section counts as the end; outside of all sections the walk ends at the first byte
    /// that is no item, and the reader decides. XFREAD for a file above 2 GB - 1.
    void Walk();
    /// XFREAD if fewer than `bytes` bytes follow: before memory is taken for what they are to fill.
    void Require(long long bytes);

private:
    int temp;           // the file goes when it is closed
    CdeFILENAME name;   // "???" while closed
    class CdeSTREAM *f; // owner; NULL while closed
};

#endif
