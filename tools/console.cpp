#include "tools/console.h"
#include "lib/charstr.h"
#include "lib/platform.h"
#include "usr/edcutils.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

#include "lib/xon.h"

namespace
{
/// A file opened later must not take the number of a standard stream: what is meant for the terminal would go
/// into it. A stream opened here for reading only refuses whatever is written.
void OpenStandardStreams()
{
    int fd;
    do
        fd = open("/dev/null", O_RDONLY);
    while (fd >= 0 && fd <= STDERR_FILENO);
    if (fd >= 0)
        close(fd);
}

void SetFailedName(XCODE code, const char *name)
{
    StrCopy(code == XFCREATE ? xFCreateName : xFOpenName, name, X_NAME);
}

/// Names know no '\' at the end, and native paths may have a '/' there.
void DropLastSlashes(char *name)
{
    int length = StrLength(name);
    while (length > 1 && name[length - 1] == '\\')
        name[--length] = EOS;
}
} // namespace

/// Runs while memory may be exhausted, so its buffer stands ready.
void ConsoleMessage(const char *text, bool)
{
    static char shown[4 * 512]; // a message has at most 511 characters, each of at most three bytes
    TextToUtf8(shown, text, sizeof shown);
    ConsoleDisarm(shown);
    std::fprintf(stderr, "%s\n", shown);
}

void ConsoleStart()
{
    OpenStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);
    EdcUseResources();
    SetMessageSink(ConsoleMessage);
    SetFailureHook(EdcFailureHook);
}

void ConsoleName(CdeFILENAME &name, const char *path, XCODE code)
{
    __enter
        char given[X_NAME];
        bool isSound = NameFromNative(given, path, X_NAME);
        DropLastSlashes(given);
        name = given;
        if (!isSound || !StrMatch(name, given, 0)) {
            SetFailedName(code, given);
            __raise(code);
        }
    __point
    __treat
}

std::string ConsoleUtf8(const char *text)
{
    std::string utf8(3 * static_cast<size_t>(StrLength(text)) + 1, EOS);
    TextToUtf8(utf8.data(), text, static_cast<int>(utf8.size()));
    utf8.resize(static_cast<size_t>(StrLength(utf8.c_str())));
    return utf8;
}

void ConsoleDisarm(char *text)
{
    for (; *text != EOS; ++text) {
        unsigned char c = static_cast<unsigned char>(text[0]);
        unsigned char next = static_cast<unsigned char>(text[1]);
        bool isUpperControl = c == 0xC2 && next >= 0x80 && next < 0xA0; // two bytes of UTF-8
        if ((c < ' ' && c != '\n') || c == 0x7F || isUpperControl)
            text[0] = '?';
        if (isUpperControl)
            *++text = '?';
    }
}

void ConsoleWrite(const std::string &text)
{
    __enter
        bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
        if (std::fflush(stdout) != 0 || !isWritten) {
            StrCopy(xFWriteName, "Standardausgabe", X_NAME);
            __raise(XFWRITE);
        }
    __point
    __treat
}
