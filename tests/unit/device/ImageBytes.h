// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Files and records as bytes, for the tests of images.
#pragma once

#include "device/hidusb/FlashDataMap.h"

#include <QtTest>

// A new file each time: some file systems wait for the disk when one is written over.
inline void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile::remove(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

inline QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

inline QByteArray asBytes(const FlashDataMap &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), sizeof record);
}
