// The failure protocol: one pending code for the whole program, tested after every call that can fail.
// Nothing unwinds. A function that fails sets xCode and leaves through its repair section; its caller tests
// and does the same, up to a frame that takes the failure off and reports it. While a repair section runs,
// xDepth is above 0 and the tests are off, so that clean-up may call ordinary functions.
// This header holds state, codes and functions; the macros that carry the protocol are in lib/xon.h.
#ifndef LIB_XFAIL_H
#define LIB_XFAIL_H

/// A code is the address of its own name; codes are compared by address.
using XCODE = const char *;

inline constexpr char XNULL[] = "XNULL";                 // none pending
inline constexpr char XUNKNOWN[] = "XUNKNOWN";           // an exception of any other kind
inline constexpr char XALLOC[] = "XALLOC";               // out of memory
inline constexpr char XLIMIT[] = "XLIMIT";               // an internal table is full
inline constexpr char XCDE_INVOLVED[] = "XCDE_INVOLVED"; // a typed file holds something else
inline constexpr char XFFOUND[] = "XFFOUND";             // file not found
inline constexpr char XFOPEN[] = "XFOPEN";               // an existing file cannot be opened
inline constexpr char XFCREATE[] = "XFCREATE";           // a file cannot be made
inline constexpr char XFREAD[] = "XFREAD";               // a read fell short
inline constexpr char XFWRITE[] = "XFWRITE";             // a write or close failed
inline constexpr char XDCREATE[] = "XDCREATE";           // a directory cannot be made
inline constexpr char XGENERAL[] = "XGENERAL";           // free text, in xGeneralText

extern XCODE xCode;       // the pending failure
extern XCODE xRepaired;   // the failure last taken off; XNULL again with the next raise
extern const char *xFile; // where it was raised
extern int xLine;
extern int xDepth; // repair sections entered and not yet left
extern int xHit;   // the reporting hook has matched a code
extern void (*xHook)();

enum { X_NAME = 256 }; // size of each parameter buffer, terminator included

// The parameter of the last failure of each kind, set by the raiser with StrCopy; never cleared.
extern char xFFoundName[X_NAME];
extern char xFOpenName[X_NAME];
extern char xFCreateName[X_NAME];
extern char xFReadName[X_NAME];
extern char xFWriteName[X_NAME];
extern char xDCreateName[X_NAME];
extern char xGeneralText[X_NAME]; // the whole message text, used as the format

/// Stores the hook that __report calls; NULL makes reports silent.
void SetFailureHook(void (*hook)());

/// Shows a formatted text, at most 511 characters of it. A leading '!' asks for a beep and the error look.
void Message(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Shows a formatted text in the status line at once; NULL empties the line, a leading '!' beeps.
void StatusMessage(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Ends the process abnormally at once, without saving or repairing.
[[noreturn]] void Terminate();

/// A failure where none may arise: shows it, with the failure under repair if there is one, and ends the
/// process.
[[noreturn]] void TerminateOn(XCODE code, const char *file, int line);

/// An assertion that does not hold is a fault of the program: shows the condition and ends the process.
[[noreturn]] void AssertFailed(const char *condition, const char *file, int line);

// What the macros are made of.

inline bool XPending() noexcept
{
    return xCode != XNULL && xDepth == 0;
}

void XRaise(XCODE code, const char *file, int line) noexcept;
void XCaught(XCODE code, const char *file, int line) noexcept;
[[noreturn]] void XMissing(const char *file, int line) noexcept;

inline void XClosed(const char *file, int line) noexcept
{
    if (XPending())
        XMissing(file, line);
}

/// Takes the pending failure off; `section` is 1 in a repair section and 0 in a body.
inline void XTakeOff(int section) noexcept
{
    if (xDepth != section)
        return;
    xRepaired = xCode;
    xCode = XNULL;
    xHit = 0;
}

/// One repair section: raises xDepth for its life. True when the repair statements are to run.
class XSection
{
public:
    XSection() noexcept { ++xDepth; }
    ~XSection() { --xDepth; }
    XSection(const XSection &) = delete;
    XSection &operator=(const XSection &) = delete;
    explicit operator bool() const noexcept { return xDepth == 1 && xCode != XNULL; }
};

#endif
