#include "win/fonts.h"
#include "lib/charstr.h"
#include <QCoreApplication>
#include <QFont>
#include <QFontInfo>
#include <QFontMetrics>
#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

constexpr int EM_MAX = 10000;     // px; a letter of more than a screen
constexpr int EM_DESIGN = 2048;   // px; a size at which rounding to pixels does not show
constexpr size_t CACHE_SIZE = 64; // tables

QString FaceName(const std::string &face)
{
    QString name;
    for (char c : face)
        name += QChar(DrawnCode(static_cast<unsigned char>(c)));
    return name;
}

QFont MakeFont(const TFont &font, int em)
{
    QFont made(FaceName(font.face));
    made.setPixelSize(em);
    made.setWeight(static_cast<QFont::Weight>(std::clamp(font.weight, 1, 1000)));
    made.setItalic(font.italic);
    made.setUnderline(font.underline);
    made.setKerning(false);
    made.setHintingPreference(QFont::PreferFullHinting);
    made.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferNoShaping | QFont::NoSubpixelAntialias));
    return made;
}

/// Ascent and descent as parts of the em square.
struct Proportions {
    double ascent;
    double height; // ascent plus descent
};

Proportions ProportionsOf(const TFont &font)
{
    const QFontMetricsF large(MakeFont(font, EM_DESIGN));
    return {large.ascent() / EM_DESIGN, (large.ascent() + large.descent()) / EM_DESIGN};
}

/// Rounded as a sum, not each part: the height then grows with every pixel of the em square (the faces are
/// taller than it), and a height names one em square only.
int CellHeight(const Proportions &p, int em)
{
    return static_cast<int>(std::lround(p.height * em));
}

int EmOf(const TFont &font, const Proportions &p)
{
    if (font.height <= 0)
        return font.height <= -EM_MAX ? EM_MAX : std::max(1, -font.height);
    const double above = (font.height + 1.0) / p.height;
    int em = above >= EM_MAX ? EM_MAX : static_cast<int>(above) + 1;
    while (em > 1 && CellHeight(p, em) > font.height)
        --em;
    return em;
}

QFont &Unwrap(TNativeFont *font)
{
    return *reinterpret_cast<QFont *>(font);
}

struct Entry {
    TFont font;
    std::unique_ptr<TFontTable> table;
    unsigned long used; // the clock at the last use
};

struct Cache {
    std::vector<Entry> entries;
    size_t last = 0; // index of the entry that was asked last
    unsigned long clock = 0;
};

/// Never destroyed, for an application that is static itself forgets its fonts after the other statics have
/// gone.
Cache &TheCache()
{
    static Cache *cache = new Cache;
    return *cache;
}

/// Fonts must not outlive the application.
void ForgetFonts()
{
    TheCache() = Cache();
}

Entry Fresh(const TFont &font)
{
    static const bool watched = (qAddPostRoutine(ForgetFonts), true);
    (void)watched;
    return {font, std::make_unique<TFontTable>(font), 0};
}

size_t Oldest(const Cache &cache)
{
    const auto older = [](const Entry &a, const Entry &b) { return a.used < b.used; };
    return static_cast<size_t>(std::min_element(cache.entries.begin(), cache.entries.end(), older) -
                               cache.entries.begin());
}

size_t IndexOf(Cache &cache, const TFont &font)
{
    for (size_t i = 0; i < cache.entries.size(); ++i) {
        if (cache.entries[i].font == font)
            return i;
    }
    Entry fresh = Fresh(font);
    if (cache.entries.size() < CACHE_SIZE) {
        cache.entries.push_back(std::move(fresh));
        return cache.entries.size() - 1;
    }
    const size_t i = Oldest(cache);
    cache.entries[i] = std::move(fresh);
    return i;
}

} // namespace

void TFontTable::Deleter::operator()(TNativeFont *font) const
{
    delete &Unwrap(font);
}

TFontTable::TFontTable(const TFont &font)
{
    const Proportions proportions = ProportionsOf(font);
    em = EmOf(font, proportions);
    native.reset(reinterpret_cast<TNativeFont *>(new QFont(MakeFont(font, em))));
    metrics.height = CellHeight(proportions, em);
    metrics.ascent = std::min(metrics.height, static_cast<int>(std::lround(proportions.ascent * em)));
    metrics.descent = metrics.height - metrics.ascent;
    widths.fill(-1);
}

TFontTable::~TFontTable() = default;

int TFontTable::Measure(unsigned char c)
{
    const int width = QFontMetrics(Unwrap(native.get())).horizontalAdvance(QChar(DrawnCode(c)));
    widths[c] = static_cast<int16_t>(std::clamp(width, 0, INT16_MAX));
    return widths[c];
}

TFontTable &FontTable(const TFont &font)
{
    Cache &cache = TheCache();
    if (cache.last >= cache.entries.size() || !(cache.entries[cache.last].font == font)) {
        cache.last = IndexOf(cache, font);
        cache.entries[cache.last].used = ++cache.clock;
    }
    return *cache.entries[cache.last].table;
}

int FontTablesInCache()
{
    return static_cast<int>(TheCache().entries.size());
}

char16_t DrawnCode(unsigned char c)
{
    const bool open = c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D;
    if (c < 0x20 || c == 0x7F || c == 0xA0 || open)
        return u' ';
    return c == 0xAD ? u'-' : static_cast<char16_t>(ChrCode(static_cast<char>(c)));
}

std::string ResolvedFamily(const TFont &font)
{
    return QFontInfo(Unwrap(const_cast<TNativeFont *>(FontTable(font).Native()))).family().toStdString();
}
