// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/FirmwareSearch.h"

#include "catalogue/ConfigReader.h"
#include "catalogue/DeviceKinds.h"
#include "device/hidusb/wire/FirmwareFile.h"
#include "environment/DataRoot.h"

#include <QDir>
#include <QFile>
#include <cstring>

namespace
{

constexpr int FilesLookedAt = 1000;

QString bareVersion(QString version) { return version.remove(QLatin1Char('v')); }

QString fileVersion(const wire::FirmwareHead &head)
{
    const uint16_t version = head.Version.get();
    const QString minor = QString::number(version & 0xFF, 16).toUpper().rightJustified(2, QLatin1Char('0'));
    return QStringLiteral("%1.%2").arg(version >> 8).arg(minor);
}

bool sameNumber(const QString &left, const QString &right)
{
    bool leftIsNumber = false;
    bool rightIsNumber = false;
    const double leftNumber = left.toDouble(&leftIsNumber);
    const double rightNumber = right.toDouble(&rightIsNumber);
    return leftIsNumber && rightIsNumber && leftNumber == rightNumber;
}

// A file shorter than a head gives zeros, which match no device.
bool readHead(const QString &path, wire::FirmwareHead &head)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    head = wire::FirmwareHead{};
    if (file.read(reinterpret_cast<char *>(&head), sizeof head) != qint64(sizeof head))
        head = wire::FirmwareHead{};
    return true;
}

} // namespace

bool hasNewFirmware(int target, const QString &version, const QString &baseName, int cid, int mid)
{
    const QDir folder(applicationFolder() + QStringLiteral("/bin"));
    if (version.isEmpty() || !folder.exists())
        return false;
    const QString current = bareVersion(version);
    bool found = false;
    const QStringList names =
        folder.entryList({QStringLiteral("*.bin")}, QDir::Files | QDir::NoSymLinks).mid(0, FilesLookedAt);
    for (const QString &name : names) {
        wire::FirmwareHead head;
        if (!readHead(folder.filePath(name), head))
            return false;
        const QByteArray base(head.BaseName, int(strnlen(head.BaseName, sizeof head.BaseName)));
        if (head.Target != target || head.Cid != cid || head.Mid != mid ||
            QString::fromUtf8(base) != baseName)
            continue;
        const QString offered = fileVersion(head);
        if (offered == current)
            continue;
        if (sameNumber(offered, current))
            return found;
        found = true;
    }
    return found;
}

QString firmwareKey(int target, int connectionKind)
{
    if (target == TargetMouse)
        return QLatin1String(OtherCable.firmwareKey);
    for (const DeviceKindRow &row : DeviceKinds)
        if (target == TargetReceiver && !row.wired && row.kHz == connectionKind)
            return QLatin1String(row.firmwareKey);
    return {};
}

bool checkForNew(int target, const QString &version, int connectionKind, const QString &section)
{
    const QString key = firmwareKey(target, connectionKind);
    if (key.isEmpty())
        return false;
    ConfigReader &config = ConfigReader::instance();
    const int cid = config.ReadConfig(QStringLiteral("Option"), QStringLiteral("CID")).toInt();
    const int mid = config.ReadConfig(section, QStringLiteral("MID")).toInt();
    return hasNewFirmware(target, version, config.ReadConfig(section, key), cid, mid);
}
