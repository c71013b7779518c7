// Small services that every part of the framework needs: numbered strings, rounding of numbers on their way to
// a reader, formatted text of any length, and the hook that turns a failure into its message.
#ifndef USR_EDCUTILS_H
#define USR_EDCUTILS_H

#include <string>

/// Numbered string of the program's resources, at most max - 1 characters of it, in one static buffer of 1024
/// that each call overwrites; `max` outside 0 to 1024 means 1024; an unknown number is an empty text.
const char *GetResString(int id, int max = -1);

/// Rounded to a multiple of 10^exponent, half away from zero. A value that has no digits below that place, or
/// that is not finite, comes back as it is.
double EdcRound(double value, int exponent);
/// The nearest integer, half away from zero, limited to the integers; no number is 0.
int EdcNearest(double value);
/// Splits x into a mantissa of size below 1 and a power of ten: x = mantissa * 10^exponent; 0 gives 0 and 0.
double Frexp10(double x, int &exponent);
enum { EDC_NOISE = -12 }; // exponent that takes the noise out of a sum

/// printf into a text as long as it needs to be. Throws std::bad_alloc.
std::string EdcFormat(const char *format, ...) __attribute__((format(printf, 1, 2)));
/// The same with a format from the resources; its conversions are those that the number's callers pass.
std::string EdcResFormat(int id, ...);

/// The reporting hook: shows messages 1010 to 1019, file names in their native form.
void EdcFailureHook();

/// Gives the core library the compiled string table (ResText). Called once at start.
void EdcUseResources();

#endif
