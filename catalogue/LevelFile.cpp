// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/LevelFile.h"

#include "environment/DataRoot.h"
#include "environment/SafeFile.h"

namespace
{
constexpr qint64 LevelFileLimit = 4096; // bytes
} // namespace

QString levelFilePath() { return dataRoot() + QStringLiteral("/usersetting/SensorPage/Level.ini"); }

int LoadDpiStageCount()
{
    const QByteArray content = readFile(levelFilePath(), LevelFileLimit).value_or(QByteArray());
    const QByteArray line = content.split('\n').first().trimmed();
    return line.isEmpty() ? 1 : line.toInt();
}

bool SaveDpiStageCount(int count) { return writeFileSafely(levelFilePath(), QByteArray::number(count)); }
