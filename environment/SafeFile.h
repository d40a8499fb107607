// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Reads and writes whole files. Any thread; of two concurrent writers the last one to finish wins.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

// Replaces the file's content. On false the old content stands: a full disk, a kill or a power loss at
// any moment leaves the old content or the new one.
bool writeFileSafely(const QString &path, const QByteArray &bytes);

enum class ReadResult : uint8_t {
    Read,
    Missing, // there is no such file, so a new one destroys nothing
    Refused, // larger than allowed, no regular file, or not readable
};

// The whole content, of at most `maxSize` bytes. Never blocks on a FIFO or a device.
ReadResult readFile(const QString &path, qint64 maxSize, QByteArray *content);
// The same without the kind of failure.
std::optional<QByteArray> readFile(const QString &path, qint64 maxSize);
