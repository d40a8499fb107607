// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The keys as tests/data/keys.tsv writes them down, apart from the program's own table.
#pragma once

#include <QFile>
#include <QStringList>
#include <vector>

struct ExpectedKey {
    QString name;
    int kind;
    QString codeText;
    int virtualKey;
    int evdev;

    int code() const { return codeText.toInt(nullptr, 16); }
};

// Empty when the file is not there.
inline std::vector<ExpectedKey> readKeysFile()
{
    std::vector<ExpectedKey> rows;
    QFile file(QStringLiteral(KEYS_FILE));
    if (!file.open(QIODevice::ReadOnly))
        return rows;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QStringList cells = line.split(QLatin1Char('\t'));
        if (cells.size() == 5 && !line.startsWith(QLatin1String("# ")))
            rows.push_back(
                {cells[0], cells[1].toInt(), cells[2], cells[3].toInt(nullptr, 16), cells[4].toInt()});
    }
    return rows;
}
