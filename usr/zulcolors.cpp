#include "usr/zulcolors.h"

namespace
{
const ZulRGB hall[] = {{100, 100, 100}};
const ZulRGB mapFine[] = {{112, 0, 120}, {112, 0, 0},   {150, 0, 0},   {188, 0, 0},
                          {218, 0, 0},   {235, 32, 0},  {235, 65, 0},  {235, 95, 0},
                          {235, 125, 0}, {235, 155, 0}, {235, 185, 0}, {235, 185, 175}};
const ZulRGB mapCoarse[] = {{112, 0, 120}, {235, 32, 0}, {235, 185, 175}};
const ZulRGB criterion[] = {{230, 160, 125}, {155, 155, 215}, {125, 125, 185}};
const ZulRGB grey[] = {{0, 0, 0},       {50, 50, 50},    {66, 66, 66},    {82, 82, 82},
                       {98, 98, 98},    {114, 114, 114}, {130, 130, 130}, {146, 146, 146},
                       {162, 162, 162}, {178, 178, 178}, {194, 194, 194}, {255, 255, 255}};
} // namespace

const ZulCOLORS hallColors = {hall, sizeof hall / sizeof *hall};
const ZulCOLORS mapColors = {mapFine, sizeof mapFine / sizeof *mapFine};
const ZulCOLORS mapColorsCoarse = {mapCoarse, sizeof mapCoarse / sizeof *mapCoarse};
const ZulCOLORS criterionColors = {criterion, sizeof criterion / sizeof *criterion};
const ZulCOLORS greyColors = {grey, sizeof grey / sizeof *grey};
