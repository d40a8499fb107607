// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/OfflineTile.h"

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/DeviceKinds.h"
#include "catalogue/RegistryStore.h"
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
    const DeviceCatalogue catalogue;
    const int model = device.DriveIndex;
    const QString mouseVersion =
        RegistryStore::instance().value(registry::BaseGroup, registry::mouseVersionName(catalogue, model));
    const auto isNew = [&](int target, const QString &version, const char *key) {
        return hasNewFirmware(target, version, catalogue.text(model, key), catalogue.option("CID"),
                              catalogue.number(model, "MID"));
    };
    const char *receiverKey = deviceKind(device.DeviceKind).firmwareKey;
    const bool receiverHasName = !catalogue.text(model, receiverKey).isEmpty();
    return offlineTileAction(mouseVersion, isNew(TargetMouse, mouseVersion, OtherCable.firmwareKey),
                             receiverHasName && isNew(TargetReceiver, device.DongleVersion, receiverKey));
}

const DeviceAllInfo *twinOf(const std::vector<DeviceAllInfo> &devices, int clicked)
{
    if (devices.size() != 2 || (clicked != 0 && clicked != 1))
        return nullptr;
    const DeviceAllInfo &device = devices[std::size_t(clicked)];
    const DeviceAllInfo &other = devices[std::size_t(1 - clicked)];
    return device.Cid == other.Cid && device.Mid == other.Mid ? &other : nullptr;
}
