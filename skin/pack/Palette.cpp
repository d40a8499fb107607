// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "Palette.h"

#include <QHash>
#include <QVector>
#include <algorithm>
#include <cstdlib>

namespace
{

constexpr int MostColours = 256;

bool isNear(QRgb a, QRgb b, int tolerance)
{
    const auto fits = [tolerance](int first, int second) { return std::abs(first - second) <= tolerance; };
    return fits(qRed(a), qRed(b)) && fits(qGreen(a), qGreen(b)) && fits(qBlue(a), qBlue(b)) &&
           fits(qAlpha(a), qAlpha(b));
}

// The most frequent first, so that these are the ones which stay as they are.
QVector<QRgb> coloursOf(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *const line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x)
            ++counts[line[x]];
    }
    QVector<QRgb> colours = counts.keys().toVector();
    std::sort(colours.begin(), colours.end(), [&counts](QRgb a, QRgb b) {
        const int more = counts.value(a) - counts.value(b);
        return more != 0 ? more > 0 : a < b;
    });
    return colours;
}

// The place of each colour; empty when the table would be too long.
QHash<QRgb, uchar> placesFor(const QVector<QRgb> &colours, int tolerance, QVector<QRgb> *table)
{
    QHash<QRgb, uchar> places;
    table->clear();
    for (const QRgb colour : colours) {
        const auto found = std::find_if(table->cbegin(), table->cend(),
                                        [&](QRgb known) { return isNear(colour, known, tolerance); });
        const auto place = int(found - table->cbegin());
        if (place == MostColours)
            return {};
        if (found == table->cend())
            table->append(colour);
        places.insert(colour, uchar(place));
    }
    return places;
}

} // namespace

QImage withPalette(const QImage &picture)
{
    const QImage source = picture.convertToFormat(QImage::Format_ARGB32);
    const QVector<QRgb> colours = coloursOf(source);
    QVector<QRgb> table;
    QHash<QRgb, uchar> places;
    for (int tolerance = 0; places.isEmpty() && tolerance <= PaletteTolerance; ++tolerance)
        places = placesFor(colours, tolerance, &table);
    if (places.isEmpty())
        return {};
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
