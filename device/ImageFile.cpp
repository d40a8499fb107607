// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/ImageFile.h"

#include "app/environment/SafeFile.h"
#include "catalogue/config/ConfigReader.h"

#include <QDebug>
#include <QtEndian>
#include <cstring>

namespace
{

constexpr int FileSizeLimit = 64 * 1024; // a sound file has some 10 KB

// Takes one item, a 32-bit big-endian length and that many bytes, off the front. Null when cut short.
QByteArray takeItem(QByteArray &rest)
{
    if (rest.size() < 4)
        return QByteArray();
    const quint32 length = qFromBigEndian<quint32>(rest.constData());
    if (length > quint32(rest.size() - 4))
        return QByteArray();
    const QByteArray item = rest.mid(4, int(length));
    rest.remove(0, 4 + int(length));
    return item;
}

// The text in front of the NUL, or the whole item when it holds none.
QByteArray text(const QByteArray &item)
{
    return item.left(int(qstrnlen(item.constData(), uint(item.size()))));
}

} // namespace

ImageFileResult checkImageFile(const QString &path, const QString &section, FlashDataMap *record)
{
    QByteArray rest;
    if (readFile(path, FileSizeLimit, &rest) != ReadResult::Read) {
        qDebug("failed");
        return ImageUnreadable;
    }
    const QByteArray marker = takeItem(rest);
    const QByteArray sensor = takeItem(rest);
    const QByteArray image = takeItem(rest);
    if (text(marker) != "Taigri")
        return ImageUnreadable;
    ConfigReader &config = ConfigReader::instance();
    if (QString::fromLocal8Bit(text(sensor)) != config.ReadConfig(section, QStringLiteral("Sensor")))
        return ImageMismatch;
    if (image.size() != int(sizeof *record))
        return ImageUnreadable;
    FlashDataMap candidate;
    std::memcpy(&candidate, image.constData(), sizeof candidate);
    if (candidate.DpiStageCount > config.ReadConfig(section, QStringLiteral("DPIMaxGrade")).toInt())
        return ImageMismatch;
    *record = candidate;
    return ImageAccepted;
}
