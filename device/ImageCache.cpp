// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/ImageCache.h"

#include "device/hidusb/RecordLimits.h"
#include "environment/DataRoot.h"
#include "environment/SafeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace
{

constexpr int LengthSize = 4;

// With an empty name the path is the folder, which cannot be opened as a file.
QString cachePath(const QString &fileName) { return dataRoot() + QStringLiteral("/Device_Info/") + fileName; }

} // namespace

bool ImageCacheRead(const QString &fileName, FlashDataMap *record)
{
    QFile file(cachePath(fileName));
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(LengthSize);
    if (head.size() == LengthSize) {
        const qint64 length = qFromBigEndian<quint32>(head.constData());
        file.read(reinterpret_cast<char *>(record), qMin(length, qint64(sizeof *record)));
        hidusb::clamp(*record);
    }
    return true;
}

void ImageCacheWrite(const QString &fileName, const FlashDataMap &record)
{
    QByteArray bytes(LengthSize, '\0');
    qToBigEndian<quint32>(sizeof record, bytes.data());
    bytes.append(reinterpret_cast<const char *>(&record), sizeof record);
    writeFileSafely(cachePath(fileName), bytes);
}
