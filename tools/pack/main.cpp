// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// pack-picture [--ground GROUND] FILE…: draws a PNG on its ground, if it has one, converts it to a palette
// within the limits of Palette.h, densely compressed, because less to inflate loads faster. A ground counts
// for the file behind it. Runs at build time.
#include "tools/pack/Ground.h"
#include "tools/pack/Palette.h"

#include <QSaveFile>
#include <cstdio>

namespace
{

constexpr int Densest = 0; // as a quality, which for a PNG is the degree of compression

bool save(const QImage &picture, const QString &path)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && picture.save(&file, "PNG", Densest) && file.commit();
}

bool pack(const QString &path, const QString &groundPath)
{
    QImage picture(path);
    const bool hasGround = !groundPath.isEmpty();
    const QImage ground = hasGround ? QImage(groundPath) : QImage();
    if (picture.isNull() || ground.isNull() == hasGround)
        return false;
    if (hasGround)
        picture = onGround(picture, ground);
    const QImage packed = withPalette(picture);
    if (!packed.isNull())
        return save(packed, path);
    return !hasGround || save(picture, path);
}

} // namespace

int main(int argc, char **argv)
{
    QString ground;
    for (int i = 1; i < argc; ++i) {
        if (qstrcmp(argv[i], "--ground") == 0 && i + 1 < argc) {
            ground = QString::fromLocal8Bit(argv[++i]);
            continue;
        }
        if (pack(QString::fromLocal8Bit(argv[i]), ground)) {
            ground.clear();
            continue;
        }
        std::fprintf(stderr, "%s: cannot be packed\n", argv[i]);
        return 1;
    }
    return 0;
}
