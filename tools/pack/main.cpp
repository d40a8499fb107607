// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// pack-picture FILE…: converts each PNG to a palette within the limits of Palette.h. Runs at build time.
#include "tools/pack/Palette.h"

#include <QSaveFile>
#include <cstdio>

namespace
{

bool pack(const QString &path)
{
    const QImage picture(path);
    if (picture.isNull())
        return false;
    const QImage packed = withPalette(picture);
    if (packed.isNull())
        return true;
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && packed.save(&file, "PNG") && file.commit();
}

} // namespace

int main(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        if (pack(QString::fromLocal8Bit(argv[i])))
            continue;
        std::fprintf(stderr, "%s: cannot be packed\n", argv[i]);
        return 1;
    }
    return 0;
}
