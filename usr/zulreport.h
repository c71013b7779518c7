// The texts of the report that carry the hall's data: lists in blocks of five rows, input and evaluation texts,
// and the closing text cut into pieces. No drawing: the document makes blocks of them, the command line prints
// them. Texts are in the system's character set, with the inline markup ^superscript^, _subscript_ and the hard
// blank ~.
#ifndef USR_ZULREPORT_H
#define USR_ZULREPORT_H

#include "ker/emfield.h"

#include <string>
#include <vector>

/// A list of the report: finished block texts of at most five rows each; none for an empty set.
using ZulListBlocks = std::vector<std::string>;

ZulListBlocks ZulEmitterList(const EmEMITTERSET &set);
ZulListBlocks ZulAirHeaterList(const EmAIRHEATERSET &set);
ZulListBlocks ZulHoleList(const EmHOLESET &set);

enum ZulLIST { ZUL_EMITTER_LIST, ZUL_AIR_HEATER_LIST, ZUL_HOLE_LIST };

/// The title of a column.
struct ZulTITLE {
    int place;        // where it begins, px
    std::string text; // with hard blanks behind it that reach to the next title, so that an underline is whole
};

/// The titles over a list's columns; `rowChar` is the width of the rows' characters, `headChar` that of the
/// titles' own, px. Titles of names begin with them, titles of numbers end with them; one that is wider than
/// its column stands over the middle of it.
std::vector<ZulTITLE> ZulColumnTitles(ZulLIST list, int rowChar, int headChar);
/// The titles in one line over rows of the same characters.
std::string ZulColumnHead(ZulLIST list);

/// A text cut to `max` characters: as it is, or its first max - 3 and "...".
std::string ZulCut(const char *text, int max);

/// The six input texts: floor, ceiling, walls, air change, climate and operating mode, fuel with gain and
/// sizes.
std::vector<std::string> ZulInputTexts(const EmROOM &room);
/// The four evaluation texts: hall, installed power, fuel use, irradiation map.
std::vector<std::string> ZulEvaluationTexts(const TZulMapInfo &info);
/// The two texts of the hygiene evaluation: working place, conditions; none without a working class.
std::vector<std::string> ZulHygieneTexts(const EmROOM &room);

/// The closing text in the pieces that may be parted between pages.
std::vector<std::string> ZulClosingPieces(const char *text);
/// "Den 21.11.2026, Ersteller: ..."; a date that is none is shown as its number.
std::string ZulClosingLine(const EmCONCLUSION &conclusion);

/// The short form of a stored date, (year * 100 + month) * 100 + day; the plain number where that is no date.
std::string ZulDateText(int date);

/// Today's local date, (year * 100 + month) * 100 + day.
int ZulToday();

#endif
