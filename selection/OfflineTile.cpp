// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/OfflineTile.h"

#include "catalogue/ConfigReader.h"
#include "catalogue/RegistryStore.h"
#include "device/DeviceState.h"
#include "device/FirmwareSearch.h"

OfflineTileAction offlineTileAction(const QString &mouseVersion, bool mouseIsNew, bool receiverIsNew)
{
    if (mouseVersion.isEmpty())
        return OfflineTileAction::Pair;
    if (mouseIsNew == receiverIsNew)
        return OfflineTileAction::AskForPairing;
    return receiverIsNew ? OfflineTileAction::EnterReceiver : OfflineTileAction::WarnToWire;
}

OfflineTileAction offlineTileAction(const DeviceAllInfo &device)
{
    ConfigReader &config = ConfigReader::instance();
    const QString section = driveSection(device);
    const QString cid = config.ReadConfig(QStringLiteral("Option"), QStringLiteral("CID"));
    const QString mid = config.ReadConfig(section, QStringLiteral("MID"));
    const QString mouseVersion =
        RegistryStore::instance().value(registry::BaseGroup, QStringLiteral("MouseVer") + cid + mid);
    const auto isNew = [&](int target, const QString &version, const char *key) {
        const QString baseName = config.ReadConfig(section, QLatin1String(key));
        return hasNewFirmware(target, version, baseName, cid.toInt(), mid.toInt());
    };
    const char *receiverKey = deviceKind(device.DeviceKind).firmwareKey;
    const bool receiverHasName = !config.ReadConfig(section, QLatin1String(receiverKey)).isEmpty();
    return offlineTileAction(mouseVersion, isNew(TargetMouse, mouseVersion, OtherCable.firmwareKey),
                             receiverHasName && isNew(TargetReceiver, device.DongleVersion, receiverKey));
}

bool hasLiveTwin(const std::vector<DeviceAllInfo> &devices, int clicked)
{
    if (devices.size() != 2 || (clicked != 0 && clicked != 1))
        return false;
    const DeviceAllInfo &device = devices[std::size_t(clicked)];
    const DeviceAllInfo &twin = devices[std::size_t(1 - clicked)];
    return device.Cid == twin.Cid && device.Mid == twin.Mid && twin.Online;
}
