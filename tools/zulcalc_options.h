// The command line of zulcalc.
#ifndef TOOLS_ZULCALC_OPTIONS_H
#define TOOLS_ZULCALC_OPTIONS_H

#include "lib/ag.h"
#include "usr/zulpass.h"

#include <string>
#include <vector>

struct ZulcalcOptions {
    // Native paths, as they were given; "" where none was.
    std::string hall;
    std::string models; // "": the model folder beside the program
    std::string json;   // "-": standard output
    std::string map;
    std::string hygiene; // prefix of four files
    std::string rewrite;

    ZulPassParams params;
    std::vector<AgPOINT> points; // m
    bool timing = false;

    bool IsReport() const { return json.empty(); }
};

enum ZulcalcUsage { ZULCALC_RUN, ZULCALC_HELP, ZULCALC_WRONG };

/// Reads the arguments. Help goes to standard output, what is wrong to standard error. Throws std::bad_alloc.
ZulcalcUsage ReadOptions(int argc, char **argv, ZulcalcOptions &options);

/// The files that --hygiene makes of its prefix: summary, headtemp, difftemp, headinte.
std::vector<std::string> HygieneFiles(const std::string &prefix);

#endif
