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

bool isSilentTwin(const std::vector<DeviceAllInfo> &devices, int clicked, TwinAnswers online)
{
    if (devices.size() != 2 || devices[0].Cid != devices[1].Cid || devices[0].Mid != devices[1].Mid)
        return false;
    return clicked == 1 ? online.first && !online.second : clicked == 0 && !online.first && online.second;
}
