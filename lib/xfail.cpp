#include "lib/xfail.h"
#include "lib/platform.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <utility>

XCODE xCode = XNULL;
XCODE xRepaired = XNULL;
const char *xFile = "";
int xLine = 0;
int xDepth = 0;
int xHit = 0;
void (*xHook)() = NULL;

char xFFoundName[X_NAME];
char xFOpenName[X_NAME];
char xFCreateName[X_NAME];
char xFReadName[X_NAME];
char xFWriteName[X_NAME];
char xDCreateName[X_NAME];
char xGeneralText[X_NAME];

namespace
{
const char missingFormat[] = "!Missing: __point/__treat, file %s, line %d";
const char terminateFormat[] = "!Terminate on exception: %s, file %s, line %d";
const char duringRepairFormat[] = "!Exception during repair!\n"
                                  "Repaired exception: %s, file %s, line %d\n"
                                  "New exception: %s, file %s, line %d";
[[maybe_unused]] const char unhandledFormat[] = // for an exception outside all guarded frames; no path shows it
    "!Unhandled exception %s in file %s at line %d";
const char assertionFormat[] = "Assertion failed: %s, file %s, line %d";

void MessageToStandardError(const char *text, bool)
{
    std::fprintf(stderr, "%s\n", text);
}

void StatusToNowhere(const char *, bool) {}

MessageSink messageSink = MessageToStandardError;
StatusSink statusSink = StatusToNowhere;
TerminateSink terminateSink = std::abort;

char formatted[512]; // the one buffer of Message and StatusMessage

void SetPending(XCODE code, const char *file, int line)
{
    xCode = code;
    xRepaired = XNULL;
    xFile = file;
    xLine = line;
}
} // namespace

MessageSink SetMessageSink(MessageSink sink)
{
    return std::exchange(messageSink, sink != NULL ? sink : MessageToStandardError);
}

StatusSink SetStatusSink(StatusSink sink)
{
    return std::exchange(statusSink, sink != NULL ? sink : StatusToNowhere);
}

TerminateSink SetTerminateSink(TerminateSink sink)
{
    return std::exchange(terminateSink, sink != NULL ? sink : std::abort);
}

void SetFailureHook(void (*hook)())
{
    xHook = hook;
}

void Message(const char *format, ...)
{
    bool error = *format == '!';
    va_list args;
    va_start(args, format);
    std::vsnprintf(formatted, sizeof formatted, format + error, args);
    va_end(args);
    messageSink(formatted, error);
}

void StatusMessage(const char *format, ...)
{
    if (format == NULL)
        return statusSink("", false);
    bool beep = *format == '!';
    va_list args;
    va_start(args, format);
    std::vsnprintf(formatted, sizeof formatted, format + beep, args);
    va_end(args);
    statusSink(formatted, beep);
}

void Terminate()
{
    terminateSink();
    std::abort(); // a sink that returns must not let the process go on
}

void TerminateOn(XCODE code, const char *file, int line)
{
    if (xCode != XNULL)
        Message(duringRepairFormat, xCode, xFile, xLine, code, file, line);
    else
        Message(terminateFormat, code, file, line);
    Terminate();
}

void AssertFailed(const char *condition, const char *file, int line)
{
    Message(assertionFormat, condition, file, line);
    Terminate();
}

void XMissing(const char *file, int line) noexcept
{
    Message(missingFormat, file, line);
    Terminate();
}

void XRaise(XCODE code, const char *file, int line) noexcept
{
    if (xDepth != 0)
        TerminateOn(code, file, line);
    if (xCode != XNULL)
        XMissing(file, line);
    SetPending(code, file, line);
}

void XCaught(XCODE code, const char *file, int line) noexcept
{
    XRaise(code, file, line); // an exception that arrives at __point counts as raised there
}
