// The services that the core library takes from whatever it runs under: a window system, a command line, a
// test. Each is a plain pointer with a default that needs nothing, so that the core and the kernel work and
// test without a window. A setter returns the former value; NULL brings the default back.
#ifndef LIB_PLATFORM_H
#define LIB_PLATFORM_H

/// Shows a message box; `error` asks for the beep and the stop icon. Default: a line on standard error.
using MessageSink = void (*)(const char *text, bool error);
/// Shows a status text at once, "" clears it. Default: nothing.
using StatusSink = void (*)(const char *text, bool beep);
/// Ends the process. Default: abort().
using TerminateSink = void (*)();
/// Locale order of two texts, below 0, 0 or above 0. Default: code order of the lower-cased characters, then of
/// the characters themselves.
using CollateSink = int (*)(const char *s1, const char *s2, bool ignoreCase);
/// The short form of a date, at most max - 1 characters. Default: "21.11.2026".
using ShortDateSink = void (*)(int year, int month, int day, char *text, int max);
/// The numbered text of the program's resources, NULL where there is none. Default: none.
using ResTextSink = const char *(*)(int id);

MessageSink SetMessageSink(MessageSink sink);
StatusSink SetStatusSink(StatusSink sink);
TerminateSink SetTerminateSink(TerminateSink sink);
CollateSink SetCollateSink(CollateSink sink);
ShortDateSink SetShortDateSink(ShortDateSink sink);
ResTextSink SetResTextSink(ResTextSink sink);
const char *SetCurrencySymbol(const char *symbol); // weak; default the euro sign

int Collate(const char *s1, const char *s2, bool ignoreCase); // -1, 0 or 1
void ShortDate(int year, int month, int day, char *text, int max);
const char *ResText(int id); // never NULL: an unknown number is an empty text
const char *CurrencySymbol();

#endif
