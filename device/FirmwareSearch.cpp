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

constexpr int FilesLookedAt = 1000; // their heads
constexpr int FilesRead = 8;        // as a whole; it is read on only past damaged ones

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
    bool isFlashed;       // the class counts too
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

// The names of the files whose heads count, in the order of the folder.
QStringList candidates(const QDir &folder, const Wanted &wanted)
{
    QStringList found;
    const QStringList names =
        folder.entryList({QStringLiteral("*.bin")}, QDir::Files | QDir::NoSymLinks).mid(0, FilesLookedAt);
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const wire::FirmwareHead head = readHead(file);
        const QString offered = fileVersion(head);
        if (!isFor(head, wanted) || offered == wanted.version)
            continue;
        if (wanted.comparesNumbers && sameNumber(offered, wanted.version))
            break;
        found << name;
    }
    return found;
}

// The last file that counts is the one, so the others are not read unless it is damaged.
QByteArray lastSound(const QDir &folder, const QStringList &names)
{
    for (int i = names.size() - 1; i >= qMax(0, names.size() - FilesRead); --i) {
        QFile file(folder.filePath(names[i]));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QByteArray image = readWhole(file);
        if (!image.isEmpty())
            return image;
    }
    return {};
}

QDir firmwareFolder() { return QDir(applicationFolder() + QStringLiteral("/bin")); }

QByteArray searchToFlash(const Wanted &wanted)
{
    return lastSound(firmwareFolder(), candidates(firmwareFolder(), wanted));
}

} // namespace

bool hasNewFirmware(int target, const QString &version, const QString &baseName, int cid, int mid,
                    int connectionKind)
{
    return !version.isEmpty() && !candidates(firmwareFolder(), {target, bareVersion(version), baseName, cid,
                                                                mid, connectionKind, true, false})
                                      .isEmpty();
}

QByteArray findFirmware(int target, const QString &version, const QString &baseName, int cid, int mid,
                        int connectionKind)
{
    return searchToFlash({target, bareVersion(version), baseName, cid, mid, connectionKind, true, true});
}

QByteArray findRepairFirmware(int target, const QString &version, const QString &baseName, int cid, int mid,
                              int connectionKind)
{
    return searchToFlash({target, bareVersion(version), baseName, cid, mid, connectionKind, false, true});
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
