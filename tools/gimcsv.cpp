#include "tools/gimcsv.h"

#include "usr/edcutils.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace
{
enum { ANGLES_MAX = 1000 };       // a tenth of a degree is finer than any measurement
const double INTENSITY_MAX = 1e7; // W/sr, above any emitter
const char BLANKS[] = " \t\r\v\f";
const char BYTE_ORDER_MARK[] = "\xEF\xBB\xBF";

using FIELDS = std::vector<std::string>;

struct LINE {
    int number; // in the file, from 1
    FIELDS fields;
};

std::string Trim(const std::string &text)
{
    size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

/// A field as a message may show it: short, and without what a terminal would not show.
std::string Shown(std::string field)
{
    if (field.size() > 20)
        field = field.substr(0, 20) + "...";
    std::replace_if(
        field.begin(), field.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return field;
}

char Separator(const std::string &text)
{
    if (text.find(';') != std::string::npos)
        return ';';
    return text.find('\t') != std::string::npos ? '\t' : ',';
}

FIELDS Split(const std::string &line, char separator)
{
    FIELDS fields;
    size_t from = 0;
    for (size_t at; (at = line.find(separator, from)) != std::string::npos; from = at + 1)
        fields.push_back(line.substr(from, at - from));
    fields.push_back(line.substr(from));
    for (std::string &field : fields) {
        if (separator != ',')
            std::replace(field.begin(), field.end(), ',', '.');
        field = Trim(field);
    }
    return fields;
}

/// The lines that count, taken apart. Reads no more of them than a table may have.
std::vector<LINE> Lines(const std::string &text)
{
    std::vector<LINE> lines;
    char separator = 0;
    size_t from = text.compare(0, 3, BYTE_ORDER_MARK) == 0 ? 3 : 0;
    for (int number = 1; from < text.size() && lines.size() <= ANGLES_MAX + 1; ++number) {
        size_t end = std::min(text.find('\n', from), text.size());
        std::string line = text.substr(from, end - from);
        from = end + 1;
        if (Trim(line).empty() || Trim(line)[0] == '#')
            continue;
        if (separator == 0)
            separator = Separator(line);
        lines.push_back({number, Split(line, separator)});
    }
    return lines;
}

/// Takes one more angle, in degrees, onto a list.
std::string AddAngle(std::vector<double> &list, const LINE &line, size_t field)
{
    int column = static_cast<int>(field) + 1;
    double degrees;
    if (!ParseNumber(line.fields[field], degrees))
        return EdcFormat("Zeile %d, Feld %d: \"%s\" ist kein Winkel.", line.number, column,
                         Shown(line.fields[field]).c_str());
    if (list.empty() ? degrees != 0 : !(degrees > list.back()))
        return EdcFormat("Zeile %d, Feld %d: Die Winkel müssen mit 0 beginnen und steigen.", line.number,
                         column);
    if (degrees > 90)
        return EdcFormat("Zeile %d, Feld %d: Der Winkel %g liegt über 90 Grad.", line.number, column, degrees);
    list.push_back(degrees);
    return "";
}

std::string AddIntensity(std::vector<double> &list, const LINE &line, size_t field)
{
    int column = static_cast<int>(field) + 1;
    double value;
    if (!ParseNumber(line.fields[field], value))
        return EdcFormat("Zeile %d, Feld %d: \"%s\" ist keine Strahlstärke.", line.number, column,
                         Shown(line.fields[field]).c_str());
    if (value < 0 || value > INTENSITY_MAX)
        return EdcFormat("Zeile %d, Feld %d: Die Strahlstärke %g W/sr liegt nicht zwischen 0 und %.0f.",
                         line.number, column, value, INTENSITY_MAX);
    list.push_back(value);
    return "";
}

/// Degrees to radians; the last angle must have come to the edge of the lower half space.
bool CloseAngles(std::vector<double> &list)
{
    if (list.empty() || list.back() != 90)
        return false;
    for (double &angle : list)
        angle *= AgPI / 180;
    return true;
}

std::string ReadHead(const LINE &head, GimTABLE &table)
{
    if (head.fields.size() > ANGLES_MAX + 1)
        return EdcFormat("Zeile %d: Mehr als %d Winkel.", head.number, ANGLES_MAX);
    for (size_t i = 1; i < head.fields.size(); ++i) {
        std::string wrong = AddAngle(table.along, head, i);
        if (!wrong.empty())
            return wrong;
    }
    if (!CloseAngles(table.along))
        return EdcFormat("Zeile %d: Die Winkel längs müssen von 0 bis 90 Grad reichen.", head.number);
    return "";
}

std::string ReadRow(const LINE &row, GimTABLE &table)
{
    if (row.fields.size() != table.along.size() + 1)
        return EdcFormat("Zeile %d: %d Felder statt %d.", row.number, static_cast<int>(row.fields.size()),
                         static_cast<int>(table.along.size()) + 1);
    std::string wrong = AddAngle(table.across, row, 0);
    for (size_t i = 1; i < row.fields.size() && wrong.empty(); ++i)
        wrong = AddIntensity(table.intensity, row, i);
    return wrong;
}
} // namespace

bool ParseNumber(std::string text, double &value)
{
    text = Trim(text);
    const char *end = text.data() + text.size();
    auto parsed = std::from_chars(text.data(), end, value);
    return parsed.ec == std::errc() && parsed.ptr == end && std::isfinite(value);
}

std::string ReadGimTable(const std::string &text, GimTABLE &table)
{
    table = GimTABLE();
    std::vector<LINE> lines = Lines(text);
    if (lines.empty())
        return "Die Datei enthält keine Tabelle.";
    if (lines.size() > ANGLES_MAX + 1)
        return EdcFormat("Mehr als %d Zeilen mit Strahlstärken.", ANGLES_MAX);
    std::string wrong = ReadHead(lines[0], table);
    for (size_t i = 1; i < lines.size() && wrong.empty(); ++i)
        wrong = ReadRow(lines[i], table);
    if (!wrong.empty())
        return wrong;
    if (!CloseAngles(table.across))
        return EdcFormat("Zeile %d: Die Winkel quer müssen von 0 bis 90 Grad reichen.", lines.back().number);
    if (!(table.Peak() > 0))
        return "Alle Strahlstärken sind 0.";
    return "";
}
