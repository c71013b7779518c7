// Typed data files item by item, written and taken apart without the code under test: goldens are tables of
// items, and damage is done where it hurts, to tags, lengths, nesting and values.
#ifndef TESTS_SUPPORT_CDEITEMS_H
#define TESTS_SUPPORT_CDEITEMS_H

#include "support/chance.h"

#include <cstdint>
#include <string>
#include <vector>

struct CdeITEM {
    unsigned char tag = 0; // 0: `text` stands in the file as it is, without a tag
    int32_t number = 0;    // of a section, an integer, a version
    double real = 0;
    std::string text;
};

using CdeITEMS = std::vector<CdeITEM>;

CdeITEM ItSection(int number = 0);
CdeITEM ItEnd();
CdeITEM ItInt(int number);
CdeITEM ItReal(double real);
CdeITEM ItStr(const std::string &text);
CdeITEM ItText(const std::string &text);
CdeITEM ItHeader(const std::string &type, int version);
CdeITEM ItRaw(const std::string &bytes);

/// Behind one another.
CdeITEMS operator+(CdeITEMS a, const CdeITEMS &b);
/// The items between a section's begin and end.
CdeITEMS ItGroup(const CdeITEMS &inner);
CdeITEMS ItReals(const std::vector<double> &values);

std::string EncodeItems(const CdeITEMS &items);
/// Of a sound file; what is no item comes as one raw item at the end.
CdeITEMS DecodeItems(const std::string &bytes);

/// One to three changes of items: lost, doubled, swapped, of another kind, with a value or a text from the edge
/// of what can be stored, sections torn open, filled or nested deeply, the end cut off.
void DamageItems(CdeITEMS &items, CHANCE &chance);
/// One to four changes of single bytes: a bit, a byte, a byte more, one less, the end cut off.
void DamageBytes(std::string &bytes, CHANCE &chance);

#endif
