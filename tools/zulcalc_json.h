// All figures of an evaluation as JSON; docs/figures.md describes the keys.
#ifndef TOOLS_ZULCALC_JSON_H
#define TOOLS_ZULCALC_JSON_H

#include "tools/zulcalc_evaluation.h"

#include <string>

/// UTF-8 with a line break at the end. Throws std::bad_alloc.
std::string JsonText(const ZulcalcEvaluation &evaluation, const ZulcalcOptions &options);

#endif
