// The readable report of an evaluation, in the order of the printed one.
#ifndef TOOLS_ZULCALC_REPORT_H
#define TOOLS_ZULCALC_REPORT_H

#include "tools/zulcalc_evaluation.h"

#include <string>

/// UTF-8, at most 76 characters a line as long as the hall's figures fit their columns. Throws std::bad_alloc.
std::string ReportText(const ZulcalcEvaluation &evaluation, const ZulcalcOptions &options);

#endif
