// The help of a companion program with arguments only, in German.
#ifndef TOOLS_CONSOLE_GERMAN_H
#define TOOLS_CONSOLE_GERMAN_H

namespace CLI
{
class App;
}

/// Throws std::bad_alloc.
void ConsoleSpeakGerman(CLI::App &app);

#endif
