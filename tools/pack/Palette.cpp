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
constexpr int FrequentColours = 192; // taken first; the rest of the table is chosen among the rare ones

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
QVector<QRgb> tableFor(std::vector<Colour> &colours)
{
    QVector<QRgb> table;
    while (table.size() < std::min(int(colours.size()), MostColours)) {
        const auto next =
            table.size() < FrequentColours
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

} // namespace

QImage withPalette(const QImage &picture)
{
    const QImage source = picture.convertToFormat(QImage::Format_ARGB32);
    std::vector<Colour> colours = coloursOf(source);
    const QVector<QRgb> table = tableFor(colours);
    if (!changesLittle(colours, source.width() * source.height()))
        return {};
    QHash<QRgb, uchar> places;
    for (const Colour &colour : colours)
        places.insert(colour.value, uchar(colour.place));
    QImage packed(source.size(), QImage::Format_Indexed8);
    packed.setColorTable(table);
    for (int y = 0; y < source.height(); ++y) {
        const auto *const from = reinterpret_cast<const QRgb *>(source.constScanLine(y));
        uchar *const to = packed.scanLine(y);
        for (int x = 0; x < source.width(); ++x)
            to[x] = places.value(from[x]);
    }
    return packed;
}
