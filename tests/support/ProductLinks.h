// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ProductLinks: a temporary application folder with everything of the built one but its firmware, which would
// be offered to the devices of every test. A test may put firmware of its own there.
#pragma once

#include "environment/DataRoot.h"

#include <QDir>
#include <QTemporaryDir>

class ProductLinks
{
public:
    explicit ProductLinks(const QString &product)
    {
        const QStringList names = QDir(product).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        for (const QString &name : names)
            if (name != QLatin1String("bin"))
                QFile::link(product + QLatin1Char('/') + name, folder_.filePath(name));
        setApplicationFolder(folder_.path());
    }

private:
    QTemporaryDir folder_;
};
