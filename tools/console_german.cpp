#include "tools/console_german.h"

#include <CLI/CLI.hpp>
#include <memory>

void ConsoleSpeakGerman(CLI::App &app)
{
    auto format = std::make_shared<CLI::Formatter>();
    format->label("Usage", "Aufruf");
    format->label("OPTIONS", "OPTIONEN");
    format->label("Positionals", "Argumente");
    format->label("REQUIRED", "");
    app.formatter(format);
    app.set_help_flag("-h,--help", "zeigt diese Hilfe");
    app.get_help_ptr()->group("Optionen");
}
