// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/TileFacts.h"

#include "catalogue/ConfigReader.h"
#include "catalogue/FirmwareSearch.h"
#include "catalogue/RegistryStore.h"
#include "device/DeviceState.h"
#include "environment/DataRoot.h"
#include "hub/PostMsg.h"

#include <QDir>

namespace
{

QString catalogueCid()
{
    return ConfigReader::instance().ReadConfig(QStringLiteral("Option"), QStringLiteral("CID"));
}

QString firmwareName(const DeviceAllInfo &device)
{
    const QString key =
        device.Usb ? QStringLiteral("MM") : firmwareKey(TargetReceiver, connectionKind(device.DeviceKind));
    return ConfigReader::instance().ReadConfig(driveSection(device), key);
}

} // namespace

QString catalogueMid(const DeviceAllInfo &device)
{
    return ConfigReader::instance().ReadConfig(driveSection(device), QStringLiteral("MID"));
}

bool hasScreenClass(int mid) { return mid >= 6 && mid <= 9; }

TileDecision offlineTileDecision(const DeviceAllInfo &device)
{
    const QString cid = catalogueCid();
    const QString mid = catalogueMid(device);
    const QString version =
        RegistryStore::instance().value(registry::BaseGroup, QStringLiteral("MouseVer") + cid + mid);
    const QString receiverName = firmwareName(device);
    const bool mouseIsNew = hasNewFirmware(
        TargetMouse, version, ConfigReader::instance().ReadConfig(driveSection(device), QStringLiteral("MM")),
        cid.toInt(), mid.toInt());
    const bool receiverIsNew =
        !receiverName.isEmpty() &&
        hasNewFirmware(TargetReceiver, device.DongleVersion, receiverName, cid.toInt(), mid.toInt());
    return decideOfflineTile(version, mouseIsNew, receiverIsNew);
}

bool receiverFirmwareIsNew(const DeviceAllInfo &device)
{
    return checkForNew(TargetReceiver, device.DongleVersion, connectionKind(device.DeviceKind),
                       driveSection(device));
}

void announceReceiverFirmware(const DeviceAllInfo &device)
{
    if (!QDir(applicationFolder() + QStringLiteral("/bin")).exists())
        return;
    emit PostMsg::instance()->SigLabelTextB(
        device.DongleVersion, receiverFirmwareIsNew(device) ? QStringLiteral("true") : QString());
}
