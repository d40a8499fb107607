// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/FirmwareSearch.h"

#include "catalogue/ConfigReader.h"
#include "catalogue/DeviceKinds.h"
#include "device/FirmwareImage.h"
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

struct Wanted {
    int target;
    QString version; // without "v"; empty when unknown
    QString baseName;
    int cid;
    int mid;
    int connectionKind;   // of a receiver; 0 for any
    bool comparesNumbers; // the same number in another writing ends the search
    bool isFlashed;       // complete, undamaged files alone count
};

// A file shorter than a head gives zeros, which match no device.
wire::FirmwareHead readHead(QFile &file)
{
    wire::FirmwareHead head{};
    if (file.read(reinterpret_cast<char *>(&head), sizeof head) != qint64(sizeof head))
        head = wire::FirmwareHead{};
    return head;
}

bool isFor(const wire::FirmwareHead &head, const Wanted &wanted)
{
    const QByteArray base(head.BaseName, int(strnlen(head.BaseName, sizeof head.BaseName)));
    const bool hasClass = wanted.connectionKind == 0 || wanted.target == TargetMouse ||
                          head.ReceiverKHz == wanted.connectionKind;
    return head.Target == wanted.target && head.Cid == wanted.cid && head.Mid == wanted.mid &&
           QString::fromUtf8(base) == wanted.baseName && (hasClass || !wanted.isFlashed);
}

QByteArray readWhole(QFile &file)
{
    if (file.size() > qint64(wire::FirmwareSizeLimit) || !file.seek(0))
        return {};
    const QByteArray image = file.readAll();
    return isSoundFirmware(image) ? image : QByteArray();
}

// The bytes of the last file that counts; its name where it is not flashed.
QByteArray search(const Wanted &wanted)
{
    QByteArray found;
    const QDir folder(applicationFolder() + QStringLiteral("/bin"));
    const QStringList names =
        folder.entryList({QStringLiteral("*.bin")}, QDir::Files | QDir::NoSymLinks).mid(0, FilesLookedAt);
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const wire::FirmwareHead head = readHead(file);
        if (!isFor(head, wanted))
            continue;
        const QString offered = fileVersion(head);
        if (offered == wanted.version)
            continue;
        if (wanted.comparesNumbers && sameNumber(offered, wanted.version))
            return found;
        const QByteArray image = wanted.isFlashed ? readWhole(file) : name.toUtf8();
        if (!image.isEmpty())
            found = image;
    }
    return found;
}

} // namespace

bool hasNewFirmware(int target, const QString &version, const QString &baseName, int cid, int mid,
                    int connectionKind)
{
    return !version.isEmpty() &&
           !search({target, bareVersion(version), baseName, cid, mid, connectionKind, true, false}).isEmpty();
}

QByteArray findFirmware(int target, const QString &version, const QString &baseName, int cid, int mid,
                        int connectionKind)
{
    return search({target, bareVersion(version), baseName, cid, mid, connectionKind, true, true});
}

QByteArray findRepairFirmware(int target, const QString &version, const QString &baseName, int cid, int mid,
                              int connectionKind)
{
    return search({target, bareVersion(version), baseName, cid, mid, connectionKind, false, true});
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
    return hasNewFirmware(target, version, config.ReadConfig(section, key), cid, mid, connectionKind);
}
