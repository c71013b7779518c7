#include "support/metawriter.h"

#include <algorithm>
#include <iterator>

namespace
{
void Append16(std::string &file, uint16_t value)
{
    file += static_cast<char>(value & 255);
    file += static_cast<char>(value >> 8);
}

void Append32(std::string &file, uint32_t value)
{
    Append16(file, static_cast<uint16_t>(value));
    Append16(file, static_cast<uint16_t>(value >> 16));
}

void AppendRecord(std::string &file, uint32_t type, const META32 &words)
{
    Append32(file, type);
    Append32(file, static_cast<uint32_t>(8 + 4 * words.size()));
    for (uint32_t word : words)
        Append32(file, word);
}

size_t AppendRecord(std::string &file, uint16_t function, const META16 &words)
{
    Append32(file, static_cast<uint32_t>(3 + words.size()));
    Append16(file, function);
    for (uint16_t word : words)
        Append16(file, word);
    return 3 + words.size();
}

// Random records.

/// A coordinate: mostly within the picture, at times anything.
int Place(CHANCE &chance)
{
    return chance.One(40) ? chance.Int(-32768, 32767) : chance.Int(-100, 1700);
}

uint32_t Wide(CHANCE &chance)
{
    static const int far[] = {INT32_MIN, INT32_MAX, -1, 1 << 30};
    return static_cast<uint32_t>(chance.One(40) ? chance.Of(far) : Place(chance));
}

META32 WideWords(CHANCE &chance, int count)
{
    META32 words;
    std::generate_n(std::back_inserter(words), count, [&chance] { return Wide(chance); });
    return words;
}

uint32_t Pair(CHANCE &chance)
{
    const int x = Place(chance);
    return MetaPair(x, Place(chance));
}

void AddPoints(META32 &words, int count, bool narrow, CHANCE &chance)
{
    for (int i = 0; i < count; ++i) {
        if (narrow) {
            words.push_back(Pair(chance));
        } else {
            words.push_back(Wide(chance));
            words.push_back(Wide(chance));
        }
    }
}

/// Lines, polygons and curves: types 2 to 6, and their narrow twins.
EnhancedRecord RandomLines(CHANCE &chance)
{
    const bool narrow = chance.One(2);
    const uint32_t type = static_cast<uint32_t>(chance.Int(2, 6));
    int count = chance.Int(1, 12);
    if (type == 2)
        count = 3 * chance.Int(0, 3) + 1;
    else if (type == 5)
        count = 3 * chance.Int(1, 3);
    META32 words = {0, 0, 0, 0, static_cast<uint32_t>(count)};
    AddPoints(words, count, narrow, chance);
    return {narrow ? type + 83 : type, words};
}

EnhancedRecord RandomGroup(CHANCE &chance)
{
    const bool narrow = chance.One(2);
    const uint32_t type = static_cast<uint32_t>(chance.Int(7, 8));
    META32 counts;
    int total = 0;
    for (int i = chance.Int(1, 3); i > 0; --i) {
        counts.push_back(static_cast<uint32_t>(chance.Int(0, 5)));
        total += static_cast<int>(counts.back());
    }
    META32 words = {0, 0, 0, 0, static_cast<uint32_t>(counts.size()), static_cast<uint32_t>(total)};
    words.insert(words.end(), counts.begin(), counts.end());
    AddPoints(words, total, narrow, chance);
    return {narrow ? type + 83 : type, words};
}

/// Moves, lines and curves in one, with a byte for each point.
EnhancedRecord RandomDraw(CHANCE &chance)
{
    const bool narrow = chance.One(2);
    META32 words = {0, 0, 0, 0, 8};
    AddPoints(words, 8, narrow, chance);
    words.push_back(0x04020206); // to, line, line, curve
    words.push_back(0x02060504); // curve, curve and close, to, line
    return {narrow ? 92u : 56u, words};
}

EnhancedRecord RandomFigure(CHANCE &chance)
{
    static const struct {
        uint32_t type;
        int words;
    } figures[] = {{42, 4}, {43, 4}, {44, 6}, {45, 8}, {46, 8}, {47, 8}, {54, 2}, {55, 8}, {27, 2}};
    const auto &figure = chance.Of(figures);
    return {figure.type, WideWords(chance, figure.words)};
}

uint32_t AnyColor(CHANCE &chance)
{
    return static_cast<uint32_t>(chance.Int(0, 0xFFFFFF));
}

/// Creates an object with handle 1 to 8 and selects it.
void AddObject(std::vector<EnhancedRecord> &records, CHANCE &chance)
{
    const uint32_t handle = static_cast<uint32_t>(chance.Int(1, 8));
    const uint32_t style = static_cast<uint32_t>(chance.Int(0, 6));
    const uint32_t width = static_cast<uint32_t>(chance.Int(0, 60));
    switch (chance.Int(0, 3)) {
    case 0:
        records.push_back({38, {handle, style, width, 0, AnyColor(chance)}});
        break;
    case 1:
        records.push_back(
            {95, {handle, 0, 0, 0, 0, 0x10000 | style, width, 0, AnyColor(chance), 0, 2, 20, 10}});
        break;
    case 2:
        records.push_back({39, {handle, style % 4, AnyColor(chance), 0}});
        break;
    default:
        records.push_back({82, {handle, 0, 0, 0}});
    }
    records.push_back({37, {chance.One(4) ? 0x80000000 | static_cast<uint32_t>(chance.Int(0, 8)) : handle}});
    if (chance.One(3))
        records.push_back({40, {handle}});
}

void AddPage(std::vector<EnhancedRecord> &records, CHANCE &chance)
{
    const uint32_t ext = static_cast<uint32_t>(chance.Int(1, 3000));
    switch (chance.Int(0, 6)) {
    case 0:
        records.push_back({17, {static_cast<uint32_t>(chance.Int(1, 8))}});
        break;
    case 1:
        records.push_back({9, {ext, ext}});
        break;
    case 2:
        records.push_back({11, {ext, ~ext}});
        break;
    case 3:
        records.push_back({chance.One(2) ? 10u : 12u, WideWords(chance, 2)});
        break;
    case 4:
        records.push_back({32, {3, 2, 5, 7}});
        break;
    default:
        records.push_back(
            {36,
             {MetaReal(static_cast<float>(chance.Real(0.5, 2))), MetaReal(0.25F), MetaReal(-0.25F), MetaReal(1),
              MetaReal(10), MetaReal(-20), static_cast<uint32_t>(chance.Int(1, 4))}});
    }
}

void AddPath(std::vector<EnhancedRecord> &records, CHANCE &chance)
{
    records.push_back({59, {}});
    records.push_back({27, WideWords(chance, 2)});
    for (int i = chance.Int(1, 4); i > 0; --i)
        records.push_back(chance.One(3) ? RandomFigure(chance) : RandomLines(chance));
    if (chance.One(2))
        records.push_back({61, {}});
    records.push_back({60, {}});
    static const uint32_t uses[] = {62, 63, 64, 68};
    records.push_back({chance.Of(uses), {}});
}

META16 NarrowWords(CHANCE &chance, int count)
{
    META16 words;
    std::generate_n(std::back_inserter(words), count,
                    [&chance] { return static_cast<uint16_t>(Place(chance)); });
    return words;
}

PlainRecord RandomPlainFigure(CHANCE &chance)
{
    static const struct {
        uint16_t function;
        int words;
    } figures[] = {{0x0213, 2}, {0x0214, 2}, {0x0418, 4}, {0x041B, 4}, {0x061C, 6}, {0x0817, 8},
                   {0x081A, 8}, {0x0830, 8}, {0x0416, 4}, {0x020B, 2}, {0x0211, 2}};
    const auto &figure = chance.Of(figures);
    return {figure.function, NarrowWords(chance, figure.words)};
}

PlainRecord RandomPlainLines(CHANCE &chance)
{
    const int count = chance.Int(0, 12);
    META16 words = {static_cast<uint16_t>(count)};
    const bool group = chance.One(3);
    if (group)
        words = {2, static_cast<uint16_t>(count / 2), static_cast<uint16_t>(count - count / 2)};
    const META16 points = NarrowWords(chance, 2 * count);
    words.insert(words.end(), points.begin(), points.end());
    if (group)
        return {0x0538, words};
    return {static_cast<uint16_t>(chance.One(2) ? 0x0324 : 0x0325), words};
}

void AddPlainObject(std::vector<PlainRecord> &records, CHANCE &chance)
{
    const uint16_t style = static_cast<uint16_t>(chance.Int(0, 6));
    if (chance.One(2))
        records.push_back({0x02FA, {style, static_cast<uint16_t>(chance.Int(0, 60)), 0, 0x1234, 0x56}});
    else
        records.push_back({0x02FC, {static_cast<uint16_t>(style % 4), 0x1234, 0x56, 0}});
    records.push_back({0x012D, {0}});
    if (chance.One(3)) {
        records.push_back({0x01F0, {0}});
        records.push_back({0x02FB, {0, 0}});
    }
}

// Damage.

size_t RecordSize(const std::string &file, size_t at, bool narrow)
{
    if (at + 8 > file.size())
        return 0;
    return narrow ? 2 * size_t(MetaGet32(file, at)) : MetaGet32(file, at + 4);
}

/// Where the records of a file begin that may be damaged already; never empty.
std::vector<size_t> RecordPlaces(const std::string &file, bool narrow)
{
    std::vector<size_t> places = {0};
    size_t at = narrow ? 18 : RecordSize(file, 0, false);
    while (at < file.size()) {
        places.push_back(at);
        const size_t size = RecordSize(file, at, narrow);
        if (size < 6 || size > file.size() - at)
            break;
        at += size;
    }
    return places;
}

uint32_t OddNumber(CHANCE &chance)
{
    static const uint32_t odd[] = {0,          1,          2,          3,          4,          7,
                                   8,          0x7FFF,     0x8000,     0xFFFF,     0x10000,    0x7FFFFFFF,
                                   0x80000000, 0xFFFFFFFF, 0xFFFFFFFC, 0xFFFFFFF8, 0x20000000, 0x40000000,
                                   0x7F800000, 0x7FC00000, 0x3FFFFFFF, 0x80000005};
    return chance.One(3) ? static_cast<uint32_t>(chance.Int(0, 64)) : chance.Of(odd);
}

void PutOdd(std::string &file, size_t at, bool narrow, CHANCE &chance)
{
    if (narrow && at + 2 <= file.size())
        MetaPut16(file, at, static_cast<uint16_t>(OddNumber(chance)));
    else if (at + 4 <= file.size())
        MetaPut32(file, at, OddNumber(chance));
}

void DamageOnce(std::string &file, bool narrow, CHANCE &chance)
{
    const std::vector<size_t> places = RecordPlaces(file, narrow);
    const int last = static_cast<int>(file.size()) - 1;
    const size_t record = places[static_cast<size_t>(chance.Int(0, static_cast<int>(places.size()) - 1))];
    const size_t any = static_cast<size_t>(chance.Int(0, last));
    const size_t length = std::min(static_cast<size_t>(chance.Int(1, 64)), file.size() - any);
    const size_t word = narrow ? 2 : 4;
    switch (chance.Int(0, 8)) {
    case 0:
        file[any] = static_cast<char>(file[any] ^ (1 << chance.Int(0, 7)));
        break;
    case 1:
        PutOdd(file, any / word * word, narrow, chance);
        break;
    case 2: // the record's length
        if (record + 8 <= file.size())
            MetaPut32(file, narrow ? record : record + 4, OddNumber(chance));
        break;
    case 3: // its counts
        PutOdd(file, record + (narrow ? 6u : 24u) + word * static_cast<size_t>(chance.Int(0, 2)), narrow,
               chance);
        break;
    case 4: // its type
        if (narrow)
            PutOdd(file, record + 4, true, chance);
        else if (record + 4 <= file.size())
            MetaPut32(file, record, static_cast<uint32_t>(chance.Int(0, 125)));
        break;
    case 5:
        PutOdd(file, record + word * static_cast<size_t>(chance.Int(0, 12)), narrow, chance);
        break;
    case 6: // a part of it once more, elsewhere
        file.insert(record, file.substr(any, length / word * word));
        break;
    case 7:
        file.erase(any / word * word, length / word * word);
        break;
    default:
        if (chance.One(4))
            file.resize(any);
    }
    if (file.empty())
        file = "x";
}
} // namespace

uint32_t MetaGet32(const std::string &file, size_t at)
{
    uint32_t value = 0;
    for (size_t i = 4; i-- > 0;)
        value = value << 8 | static_cast<uint8_t>(file[at + i]);
    return value;
}

void MetaPut16(std::string &file, size_t at, uint16_t value)
{
    file[at] = static_cast<char>(value & 255);
    file[at + 1] = static_cast<char>(value >> 8);
}

void MetaPut32(std::string &file, size_t at, uint32_t value)
{
    MetaPut16(file, at, static_cast<uint16_t>(value));
    MetaPut16(file, at + 2, static_cast<uint16_t>(value >> 16));
}

std::string EnhancedFile(const std::vector<EnhancedRecord> &records, uint16_t handles)
{
    const META32 header = {0,
                           0,
                           1599,
                           1599, // bounds, px
                           0,
                           0,
                           16000,
                           16000, // frame, 0.01 mm
                           0x464D4520,
                           0x10000,
                           0,                                         // bytes, set below
                           static_cast<uint32_t>(records.size() + 2), // records
                           handles,
                           0,
                           0,
                           0, // no description, no palette
                           1600,
                           1600,
                           160,
                           160}; // device, px and mm
    std::string file;
    AppendRecord(file, uint32_t(1), header);
    for (const EnhancedRecord &record : records)
        AppendRecord(file, record.type, record.words);
    AppendRecord(file, uint32_t(14), META32{0, 16, 20});
    MetaPut32(file, 48, static_cast<uint32_t>(file.size()));
    return file;
}

std::string PlainFile(const std::vector<PlainRecord> &records, uint16_t slots)
{
    std::string file;
    for (uint16_t word : {1, 9, 0x300, 0, 0, static_cast<int>(slots), 0, 0, 0})
        Append16(file, word);
    size_t longest = 3;
    for (const PlainRecord &record : records)
        longest = std::max(longest, AppendRecord(file, record.function, record.words));
    AppendRecord(file, uint16_t(0), META16{});
    MetaPut32(file, 6, static_cast<uint32_t>(file.size() / 2));
    MetaPut32(file, 12, static_cast<uint32_t>(longest));
    return file;
}

std::string RandomEnhanced(CHANCE &chance)
{
    std::vector<EnhancedRecord> records = {{33, {}}};
    while (records.size() < 30) {
        switch (chance.Int(0, 7)) {
        case 0:
            AddObject(records, chance);
            break;
        case 1:
            AddPage(records, chance);
            break;
        case 2:
            AddPath(records, chance);
            break;
        case 3:
            records.push_back(RandomGroup(chance));
            break;
        case 4:
            records.push_back(chance.One(2) ? RandomDraw(chance)
                                            : EnhancedRecord{70, {4, 0x41424344}}); // a comment
            break;
        case 5:
            records.push_back(RandomLines(chance));
            break;
        default:
            records.push_back(RandomFigure(chance));
        }
    }
    records.push_back({34, {static_cast<uint32_t>(-1)}});
    return EnhancedFile(records);
}

std::string RandomPlain(CHANCE &chance)
{
    std::vector<PlainRecord> records = {{0x001E, {}}};
    if (!chance.One(4))
        records.push_back({0x020C, {1600, 1600}});
    for (int objects = 0; records.size() < 30;) {
        const bool object = chance.One(4) && ++objects < 8;
        if (object)
            AddPlainObject(records, chance);
        else
            records.push_back(chance.One(2) ? RandomPlainLines(chance) : RandomPlainFigure(chance));
    }
    records.push_back({0x0127, {0xFFFF}});
    return PlainFile(records, 20);
}

void DamageMetafile(std::string &file, bool narrow, CHANCE &chance)
{
    for (int i = chance.Int(1, 4); i > 0; --i)
        DamageOnce(file, narrow, chance);
}
