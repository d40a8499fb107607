// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The program's own sources as text, for tests that hold what the code names against what is shipped.
// SOURCE_FOLDER is the root of the tree.
#pragma once

#include <QDirIterator>
#include <QFile>

// Every file with one of these endings in the modules of the program.
inline QString programSources(const QStringList &endings = {QStringLiteral("*.cpp"), QStringLiteral("*.h")})
{
    QString all;
    for (const char *module : {"app", "binding", "catalogue", "device", "environment", "hub", "keys",
                               "lighting", "macro", "presentation", "selection", "sensor", "service"}) {
        QDirIterator files(QStringLiteral(SOURCE_FOLDER "/") + QLatin1String(module), endings, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly))
                all += QString::fromUtf8(file.readAll()) + QLatin1Char('\n');
        }
    }
    return all;
}
