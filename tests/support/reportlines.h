// What a printed report says, line by line, and whether it says what zulcalc says of the same hall.
#ifndef TESTS_SUPPORT_REPORTLINES_H
#define TESTS_SUPPORT_REPORTLINES_H

#include "support/pdftext.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <sstream>
#include <string>
#include <vector>

inline std::string Format(const char *format, ...) __attribute__((format(printf, 1, 2)));
inline std::string Format(const char *format, ...)
{
    char text[256];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

/// The words of a report line by line, each line from the left.
class Lines
{
public:
    explicit Lines(const std::string &pdf) : words(PdfWords(pdf))
    {
        std::stable_sort(words.begin(), words.end(), [](const PdfWord &a, const PdfWord &b) {
            return a.page != b.page ? a.page < b.page : std::fabs(a.y - b.y) > 3 ? a.y < b.y : a.x < b.x;
        });
        for (const PdfWord &word : words)
            all += word.text + " ";
    }

    /// Whether these words stand one behind the other.
    bool Has(const std::string &text) const { return (" " + all).find(" " + text + " ") != std::string::npos; }
    int Count(const std::string &word) const
    {
        return static_cast<int>(
            std::count_if(words.begin(), words.end(), [&](const PdfWord &w) { return w.text == word; }));
    }
    /// The word behind the one that ends with `label`.
    std::string Behind(const std::string &label) const
    {
        for (size_t i = 0; i + 1 < words.size(); ++i)
            if (words[i].text == label)
                return words[i + 1].text;
        return "(no " + label + ")";
    }
    int PageOf(const std::string &text) const
    {
        for (const PdfWord &word : words)
            if (word.text == text)
                return word.page;
        return 0;
    }
    const std::vector<PdfWord> &Words() const { return words; }

private:
    std::vector<PdfWord> words;
    std::string all;
};

/// A row of a list as it shows: single blanks.
inline std::string Squeezed(const std::string &row)
{
    std::string text;
    for (char c : row)
        if (c != '~')
            text += c;
        else if (!text.empty() && text.back() != ' ')
            text += ' ';
    return text;
}

inline void CompareInfo(const Lines &lines, const nlohmann::json &info)
{
    auto number = [&info](const char *name) { return info[name].get<double>(); };
    const struct {
        const char *label;
        std::string value;
    } rows[] = {
        {"Wärmeverlust:", Format("%.0lf", std::round(number("loss")))},
        {"Grundfläche:", Format("%.8lg", number("area"))},
        {"Rauminhalt:", Format("%.8lg", number("volume"))},
        {"Infrarotstrahler:", Format("%.10lg", number("emittPower"))},
        {"Warmluftaggregate:", Format("%.10lg", number("airhtPower"))},
        {"Insgesamt:", Format("%.10lg", number("emittPower") + number("airhtPower"))},
        {"Maximal:", Format("%.2lf", number("maxFuel"))},
        {"Jährlich:", Format("%.0lf", std::round(number("yearFuel")))},
        {"Jahreskosten:", Format("%.0lf", std::round(number("yearCost") * 0.001))},
        {"Mindestintensität:", Format("%.1lf", number("minInte"))},
        {"Höchstintensität:", Format("%.1lf", number("maxInte"))},
        {"Intensität:", Format("%.1lf", number("meanInte"))},
        {"Intensitätsstreuung:", Format("%d", static_cast<int>(std::fabs(number("spread")) * 100))},
        {"erreichbar:", Format("%.1lf", number("maxAirTemp"))},
        {"Entworfen:", Format("%.1lf", number("airTemp"))},
    };
    for (const auto &row : rows)
        EXPECT_EQ(lines.Behind(row.label), row.value) << row.label;
}

inline void CompareScale(const Lines &lines, const nlohmann::json &map)
{
    ASSERT_TRUE(map.is_object());
    for (const nlohmann::json &row : map["scale"])
        EXPECT_TRUE(lines.Has(row[0].get<std::string>() + " " + row[1].get<std::string>())) << row;
    EXPECT_TRUE(lines.Has(map["line1"].get<std::string>())) << map["line1"];
    EXPECT_TRUE(lines.Has(map["line2"].get<std::string>())) << map["line2"];
}

inline void CompareLists(const Lines &lines, const nlohmann::json &lists)
{
    std::string all;
    for (const char *name : {"emitters", "airheaters"})
        for (const nlohmann::json &block : lists[name])
            all += block.get<std::string>() + "\n";
    for (const nlohmann::json &surface : lists["holes"])
        for (const nlohmann::json &block : surface)
            all += block.get<std::string>() + "\n";
    std::istringstream rows(all);
    int count = 0;
    for (std::string row; std::getline(rows, row); ++count)
        EXPECT_TRUE(lines.Has(Squeezed(row))) << row;
    EXPECT_GT(count, 10);
}

inline void CompareHygiene(const Lines &lines, const nlohmann::json &hygiene)
{
    double share = hygiene["passed"].get<double>() / hygiene["pixels"].get<double>() * 100;
    EXPECT_TRUE(lines.Has(Format("alle Kriterien sind erfüllt - %.0lf%% Grundriß", share))) << share;
    for (const char *title :
         {"Zusammenfass. aller Kriterien", "Operative Temperatur in Kopfhöhe",
          "Differenz operativer Temp. zwischen Kopf und Knöcheln", "Intensität der Kopfbestrahlung"})
        EXPECT_TRUE(lines.Has(title)) << title;
}

/// Everything in a report that zulcalc has a figure for.
inline void CompareAll(const Lines &lines, const nlohmann::json &figures)
{
    CompareInfo(lines, figures["info"]);
    CompareScale(lines, figures["map"]);
    CompareLists(lines, figures["lists"]);
    CompareHygiene(lines, figures["hygiene"]);
}

#endif
