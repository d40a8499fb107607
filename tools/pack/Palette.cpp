// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tools/pack/Palette.h"

#include <QHash>
#include <QVector>
#include <algorithm>
#include <cstdlib>
#include <vector>

namespace
{

constexpr int MostColours = 256;
// Taken first; the rest of the table is chosen among the rare ones. A picture that is dithered has many
// shades, and its table more of these.
constexpr int FrequentColours = 192;
constexpr int FrequentDithered = 96;
// From so many pixels on the table is filled up: libpng looks whether a pixel's colour lies outside a table
// with room, which takes it longer than to read some unused colours.
constexpr int FullTablePixels = 128 * 128;

struct Colour {
    QRgb value;
    int count;
    int place = 0; // index of the nearest colour in the table
    int away = 256;
};

int distance(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
}

// The most frequent first.
std::vector<Colour> coloursOf(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *const line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x)
            ++counts[line[x]];
    }
    std::vector<Colour> colours;
    for (auto each = counts.cbegin(); each != counts.cend(); ++each)
        colours.push_back({each.key(), each.value()});
    std::sort(colours.begin(), colours.end(), [](const Colour &a, const Colour &b) {
        return a.count != b.count ? a.count > b.count : a.value < b.value;
    });
    return colours;
}

// The frequent colours first, then repeatedly the colour that is farthest from all in the table.
QVector<QRgb> tableFor(std::vector<Colour> &colours, int frequent)
{
    QVector<QRgb> table;
    while (table.size() < std::min(int(colours.size()), MostColours)) {
        const auto next =
            table.size() < frequent
                ? colours.cbegin() + table.size()
                : std::max_element(colours.cbegin(), colours.cend(),
                                   [](const Colour &a, const Colour &b) { return a.away < b.away; });
        const QRgb value = next->value;
        for (Colour &colour : colours) {
            const int away = distance(colour.value, value);
            if (away < colour.away) {
                colour.away = away;
                colour.place = table.size();
            }
        }
        table.append(value);
    }
    return table;
}

bool changesLittle(const std::vector<Colour> &colours, int pixels)
{
    int moved = 0;
    for (const Colour &colour : colours) {
        if (colour.away > PaletteTolerance)
            return false;
        moved += colour.away > 0 ? colour.count : 0;
    }
    return moved <= pixels / PaletteRarity;
}

bool isDense(const std::vector<Colour> &colours)
{
    return std::all_of(colours.cbegin(), colours.cend(),
                       [](const Colour &colour) { return colour.away <= DitherTolerance; });
}

QImage indexed(QSize size, QVector<QRgb> table)
{
    if (size.width() * size.height() >= FullTablePixels)
        table.insert(table.size(), MostColours - table.size(), qRgb(0, 0, 0));
    QImage packed(size, QImage::Format_Indexed8);
    packed.setColorTable(table);
    return packed;
}

const QRgb *lineOf(const QImage &picture, int y)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}

// Red, green and blue in sixteenths of a step.
struct Light {
    int red = 0;
    int green = 0;
    int blue = 0;

    void add(const Light &other, int sixteenths)
    {
        red += other.red * sixteenths / 16;
        green += other.green * sixteenths / 16;
        blue += other.blue * sixteenths / 16;
    }
    QRgb colour(int alpha) const
    {
        const auto step = [](int light) { return std::clamp((light + 8) / 16, 0, 255); };
        return qRgba(step(red), step(green), step(blue), alpha);
    }
};
Light lightOf(QRgb colour) { return {16 * qRed(colour), 16 * qGreen(colour), 16 * qBlue(colour)}; }

// Finds the nearest colour of a table, each only once.
class Nearest
{
public:
    explicit Nearest(const QVector<QRgb> &table) : table_(table)
    {
        for (int i = 0; i < table.size(); ++i)
            known_.insert(table[i], uchar(i));
    }
    bool isInTable(QRgb colour) const
    {
        const auto known = known_.constFind(colour);
        return known != known_.cend() && table_[*known] == colour;
    }
    uchar placeOf(QRgb colour)
    {
        auto known = known_.find(colour);
        if (known == known_.end()) {
            const auto isNearer = [colour](QRgb a, QRgb b) { return away(a, colour) < away(b, colour); };
            const auto best = std::min_element(table_.cbegin(), table_.cend(), isNearer);
            known = known_.insert(colour, uchar(best - table_.cbegin()));
        }
        return *known;
    }

private:
    static int away(QRgb a, QRgb b)
    {
        const int red = qRed(a) - qRed(b), green = qGreen(a) - qGreen(b), blue = qBlue(a) - qBlue(b),
                  alpha = qAlpha(a) - qAlpha(b);
        return red * red + green * green + blue * blue + 4 * alpha * alpha;
    }

    const QVector<QRgb> table_;
    QHash<QRgb, uchar> known_;
};

// Floyd and Steinberg's diffusion. A pixel whose colour is in the table keeps it, so flat areas and edges get
// no grain.
QImage dithered(const QImage &source, const QVector<QRgb> &table)
{
    QImage packed = indexed(source.size(), table);
    Nearest nearest(table);
    const auto width = std::size_t(source.width());
    std::vector<Light> here(width + 2), below(width + 2); // with a place beside either end
    for (int y = 0; y < source.height(); ++y) {
        const QRgb *const from = lineOf(source, y);
        uchar *const to = packed.scanLine(y);
        std::fill(below.begin(), below.end(), Light());
        for (std::size_t x = 0; x < width; ++x) {
            Light wanted = lightOf(from[x]);
            const bool exact = nearest.isInTable(from[x]);
            if (!exact)
                wanted.add(here[x + 1], 16);
            to[x] = nearest.placeOf(exact ? from[x] : wanted.colour(qAlpha(from[x])));
            wanted.add(lightOf(table[to[x]]), -16); // what is missing
            here[x + 2].add(wanted, 7);
            below[x].add(wanted, 3);
            below[x + 1].add(wanted, 5);
            below[x + 2].add(wanted, 1);
        }
        std::swap(here, below);
    }
    return packed;
}

} // namespace

QImage withPalette(const QImage &picture)
{
    const QImage source = picture.convertToFormat(QImage::Format_ARGB32);
    const std::vector<Colour> counted = coloursOf(source);
    std::vector<Colour> colours = counted;
    const QVector<QRgb> table = tableFor(colours, FrequentColours);
    if (!changesLittle(colours, source.width() * source.height())) {
        colours = counted;
        const QVector<QRgb> shades = tableFor(colours, FrequentDithered);
        return isDense(colours) ? dithered(source, shades) : QImage();
    }
    QHash<QRgb, uchar> places;
    for (const Colour &colour : colours)
        places.insert(colour.value, uchar(colour.place));
    QImage packed = indexed(source.size(), table);
    for (int y = 0; y < source.height(); ++y) {
        const QRgb *const from = lineOf(source, y);
        uchar *const to = packed.scanLine(y);
        for (int x = 0; x < source.width(); ++x)
            to[x] = places.value(from[x]);
    }
    return packed;
}
