// Reads a table of radiant intensity from the text of a CSV file, as goniometer programs and spreadsheets write
// it.
#ifndef TOOLS_GIMCSV_H
#define TOOLS_GIMCSV_H

#include "tools/gimfield.h"

#include <string>

/// The first row holds the angles along the body (gamma) behind one field that is not looked at, each further
/// row an angle across it (beta) and the intensities, W/sr. Angles in degrees, rising from 0 to 90. Fields are
/// parted by ';', a tab or ','; with the first two a decimal comma is understood. Empty lines and lines that
/// start with '#' are passed over.
/// @return  "" or what is wrong, in UTF-8; then the table is not to be used. Throws std::bad_alloc.
std::string ReadGimTable(const std::string &text, GimTABLE &table);

/// The number that a text is, blanks around it allowed; false for anything else or what is not finite.
bool ParseNumber(std::string text, double &value);

#endif
