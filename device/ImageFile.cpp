// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/ImageFile.h"

#include "catalogue/ConfigReader.h"
#include "device/hidusb/RecordLimits.h"
#include "environment/SafeFile.h"

#include <QDataStream>
#include <QDebug>
#include <QtEndian>
#include <cstring>

namespace
{

constexpr int TextFieldSize = 12;
constexpr char Marker[] = "Taigri";

// Cut or padded with NULs, so that no memory behind the text is written to the file.
QByteArray textField(const QByteArray &text)
{
    QByteArray field = text.left(TextFieldSize);
    field.append(TextFieldSize - field.size(), '\0');
    return field;
}

QByteArray sensorField(const QString &section)
{
    return textField(ConfigReader::instance().ReadConfig(section, QStringLiteral("Sensor")).toLocal8Bit());
}

// Removes one item, a 32-bit big-endian length and that many bytes, from the front. Null when it is cut
// short.
QByteArray takeItem(QByteArray &rest)
{
    if (rest.size() < 4)
        return QByteArray();
    const quint32 length = qFromBigEndian<quint32>(rest.constData());
    if (length > quint32(rest.size() - 4))
        return QByteArray();
    QByteArray item = rest.mid(4, int(length));
    rest.remove(0, 4 + int(length));
    return item;
}

// The text up to the first NUL, or the whole item without one.
QByteArray text(const QByteArray &item)
{
    return item.left(int(qstrnlen(item.constData(), uint(item.size()))));
}

} // namespace

bool writeImageFile(const QString &path, const QString &section, const FlashDataMap &record)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    const QByteArray image(reinterpret_cast<const char *>(&record), sizeof record);
    for (const QByteArray &item : {textField(Marker), sensorField(section), image})
        stream.writeBytes(item.constData(), uint(item.size()));
    return writeFileSafely(path, bytes);
}

ImageFileResult checkImageFile(const QString &path, const QString &section, FlashDataMap *record)
{
    QByteArray rest;
    if (readFile(path, ImageFileLimit, &rest) != ReadResult::Read) {
        qDebug("failed");
        return ImageUnreadable;
    }
    const QByteArray marker = takeItem(rest);
    const QByteArray sensor = takeItem(rest);
    const QByteArray image = takeItem(rest);
    if (text(marker) != Marker)
        return ImageUnreadable;
    if (text(sensor) != text(sensorField(section)))
        return ImageMismatch;
    if (image.size() != int(sizeof *record))
        return ImageUnreadable;
    FlashDataMap candidate;
    std::memcpy(&candidate, image.constData(), sizeof candidate);
    const QString stages = ConfigReader::instance().ReadConfig(section, QStringLiteral("DPIMaxGrade"));
    if (candidate.DpiStageCount > stages.toInt())
        return ImageMismatch;
    hidusb::clamp(candidate);
    *record = candidate;
    return ImageAccepted;
}
