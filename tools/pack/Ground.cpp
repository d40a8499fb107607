// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tools/pack/Ground.h"

#include <QPainter>

namespace
{

// Each pixel of two by two rounds up from another remainder; those of two remainders lie on a diagonal.
constexpr int Added[2][2] = {{0, 2}, {3, 1}};
static_assert(GroundLight == 4, "one place in the square for each remainder");

QImage dithered(const QImage &brightGround)
{
    QImage ground = brightGround.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < ground.height(); ++y) {
        auto *const line = reinterpret_cast<QRgb *>(ground.scanLine(y));
        for (int x = 0; x < ground.width(); ++x) {
            const int added = Added[y % 2][x % 2];
            const auto dark = [added](int bright) { return (bright + added) / GroundLight; };
            line[x] =
                qRgba(dark(qRed(line[x])), dark(qGreen(line[x])), dark(qBlue(line[x])), qAlpha(line[x]));
        }
    }
    return ground;
}

} // namespace

QImage onGround(const QImage &picture, const QImage &brightGround)
{
    QImage whole = dithered(brightGround).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter(&whole).drawImage(0, 0, picture);
    return whole.convertToFormat(QImage::Format_ARGB32);
}
