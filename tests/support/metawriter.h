// Metafiles made in memory, record by record, and damage done to them.
//
// The enhanced ones are recorded on a device of 1600 x 1600 pixels, 10 a millimetre, and their frame is all of
// it: played into a rectangle of 100 x 100 px a logical unit is 1/16 px, so that numbers come out as they went
// in.
#ifndef TESTS_SUPPORT_METAWRITER_H
#define TESTS_SUPPORT_METAWRITER_H

#include "support/chance.h"

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

using META32 = std::vector<uint32_t>;
using META16 = std::vector<uint16_t>;

inline uint32_t MetaPair(int x, int y) // a point of 16-bit coordinates
{
    return static_cast<uint16_t>(x) | static_cast<uint32_t>(static_cast<uint16_t>(y)) << 16;
}
inline uint32_t MetaReal(float v)
{
    return std::bit_cast<uint32_t>(v);
}

struct EnhancedRecord {
    uint32_t type;
    META32 words; // behind type and size
};

/// A sound file of these records: the header is set in front of them and the end behind.
/// @param handles  as the header gives it: one more than there are objects
std::string EnhancedFile(const std::vector<EnhancedRecord> &records, uint16_t handles = 9);

struct PlainRecord {
    uint16_t function;
    META16 words; // behind size and function
};

/// @param slots  of objects
std::string PlainFile(const std::vector<PlainRecord> &records, uint16_t slots = 9);

/// Numbers in a file.
uint32_t MetaGet32(const std::string &file, size_t at);
void MetaPut32(std::string &file, size_t at, uint32_t value);
void MetaPut16(std::string &file, size_t at, uint16_t value);

/// Sound files of all kinds of records, some 30 of them.
std::string RandomEnhanced(CHANCE &chance);
std::string RandomPlain(CHANCE &chance);

/// Damages a file in one to four places: bits, numbers, lengths and counts of records, parts left out, doubled
/// or moved, the end cut off. `narrow` tells a plain file's records from an enhanced file's.
void DamageMetafile(std::string &file, bool narrow, CHANCE &chance);

#endif
