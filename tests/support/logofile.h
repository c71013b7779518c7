// Logo files in memory, written without the code under test.
#ifndef TESTS_SUPPORT_LOGOFILE_H
#define TESTS_SUPPORT_LOGOFILE_H

#include "support/metawriter.h"

#include <string>

/// The header and the picture. The mask is an upper-case letter, the name's first one.
inline std::string LogoFile(const std::string &name, char mask, const std::string &image)
{
    std::string tag = "LOGOFILE", own = name;
    tag.resize(32);
    own.resize(32);
    for (char &c : own)
        c = static_cast<char>(c ^ mask);
    return tag + own + image;
}

/// Corners in units of which `inch` make an inch.
struct PlaceableHeader {
    int left = 0, top = 0, right = 1600, bottom = 800, inch = 1600;
};

inline std::string PlaceableFile(const PlaceableHeader &header, const std::string &plain)
{
    std::string file(22, '\0');
    MetaPut32(file, 0, 0x9AC6CDD7);
    size_t at = 6;
    for (int word : {header.left, header.top, header.right, header.bottom, header.inch}) {
        MetaPut16(file, at, static_cast<uint16_t>(word));
        at += 2;
    }
    return file + plain;
}

/// A rectangle of 100 x 50 units with a line through it.
inline std::string SmallEnhanced()
{
    return EnhancedFile({{43, {16, 32, 48, 64}}, {27, {0, 0}}, {54, {160, 320}}});
}

inline std::string SmallPlain()
{
    return PlainFile({{0x020B, {0, 0}}, {0x020C, {50, 100}}, {0x041B, {40, 80, 10, 20}}, {0x0213, {50, 100}}});
}

#endif
