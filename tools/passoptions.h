// What the command lines of the programs that evaluate a hall have in common: the hall, the folder of models
// and the parameters of a run.
#ifndef TOOLS_PASSOPTIONS_H
#define TOOLS_PASSOPTIONS_H

#include "usr/zulpass.h"

#include <string>
#include <string_view>
#include <vector>

namespace CLI
{
class App;
class ParseError;
} // namespace CLI

/// Arguments as they stand on the command line, paths native; numbers are read afterwards, so that every fault
/// is named in the same words.
struct PassArguments {
    std::string hall;
    std::string models; // "": the model folder beside the program
    std::string height = "0";
    std::string minInte;
    std::string maxInte;
    std::string airTemp;
    bool fineGrid = false;
    bool coarseScale = false;
};

/// Thrown at arguments that parse but cannot be meant.
struct WrongUsage {
    std::string text; // UTF-8
};

/// The arguments from the last to the first, as the parser takes them; "-.5" with a zero, since it would be an
/// option else. All of these throw std::bad_alloc.
std::vector<std::string> ArgumentsToParse(int argc, char **argv);
/// Head of the help, and the hall.
void DescribeHall(CLI::App &app, PassArguments &pass);
void DescribePass(CLI::App &app, PassArguments &pass);
void AddFile(CLI::App &app, const char *option, std::string &path, const char *description, const char *type);
void AddNumber(CLI::App &app, const char *option, std::string &text, const char *description, const char *type);
/// What the parser refuses, in the words of the other messages.
std::string RefusalText(const CLI::App &app, const CLI::ParseError &error);

double ReadNumber(const std::string &option, std::string_view text); // throws WrongUsage
void ReadPass(const PassArguments &pass, ZulPassParams &params);     // likewise
/// One spelling for each file, as far as it can be known.
std::string CanonicalPath(const std::string &path);

/// The folder of --models for this process, or the one beside the program. Raises.
void ChooseModelFolder(const std::string &path);

#endif
