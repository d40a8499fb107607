// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The road of a click on a tile.
#include "device/DeviceSearch.h"
#include "device/DeviceState.h"
#include "device/Worker.h"
#include "device/hidusb/HIDUsb.h"
#include "hub/PostMsg.h"
#include "presentation/Notices.h"
#include "presentation/Spin.h"
#include "selection/AttachedDevices.h"
#include "selection/AttachedList.h"
#include "selection/DialogChange.h"
#include "selection/TileFacts.h"

namespace
{

constexpr int PageChangeMs = 150;
constexpr QPoint WarningOffset{-20, 0};

} // namespace

void DialogChange::slotButtonClicked()
{
    if (const auto *tile = qobject_cast<mytoolButtonEnter *>(sender()))
        openDevice(tile->deviceIndex());
}

void DialogChange::openDevice(int index)
{
    if (index < 0 || index >= int(AttachedDevices.size()))
        return;
    emit PostMsg::instance()->SigIsUsb(false, true);
    emit PostMsg::instance()->SigSetver(6);
    const DeviceAllInfo device = AttachedDevices[std::size_t(index)];
    const int mid = catalogueMid(device).toInt();
    if (hasScreenClass(mid))
        emit PostMsg::instance()->SigMouseIndex(mid);
    if (asksOfflineTile(index) && !settleOfflineTile(device))
        return;
    if (device.DriveIndex != unknownIndex())
        enterDevice(device);
}

bool DialogChange::asksOfflineTile(int index) const
{
    const DeviceAllInfo &device = AttachedDevices[std::size_t(index)];
    if (device.DriveIndex == unknownIndex() && !device.Usb)
        return true;
    if (AttachedDevices.size() != 2)
        return false;
    const auto answers = [](const DeviceAllInfo &asked) {
        return UsbFinderC_GetDeviceOnLine(asked.DevicePath.toLocal8Bit().constData()) != 0;
    };
    return isSilentTwin(AttachedDevices, index, {answers(AttachedDevices[0]), answers(AttachedDevices[1])});
}

bool DialogChange::settleOfflineTile(const DeviceAllInfo &device)
{
    switch (offlineTileDecision(device)) {
    case TileDecision::EnterReceiver:
        return true;
    case TileDecision::WarnToWire:
        notice::ask<UpDateWarning>(this, WarningOffset,
                                   language::text(language::Section::home, "WiredMode", LanguageIndex));
        return false;
    case TileDecision::AskForPairing:
        if (notice::ask<RePair>(this))
            choosePairingTarget(device);
        return false;
    case TileDecision::Pair:
        choosePairingTarget(device);
        return false;
    }
    return false;
}

void DialogChange::askOnlyDevice()
{
    if (AttachedDevices.size() != 1 || AttachedDevices[0].Usb)
        return;
    const DeviceAllInfo device = AttachedDevices[0];
    if (settleOfflineTile(device) && device.DriveIndex != unknownIndex())
        enterDevice(device);
}

void DialogChange::enterDevice(const DeviceAllInfo &device)
{
    PostMsg *hub = PostMsg::instance();
    emit hub->SigSelectMouseInfo(device);
    if (connectionKind(device.DeviceKind) != 0)
        CurrentConnectionKind = connectionKind(device.DeviceKind);
    announceReceiverFirmware(device);
    emit hub->SigChangeMainDialog(1);
    leftAgain_ = false;
    spinEventLoop(PageChangeMs);
    if (leftAgain_)
        return;
    OnDevicePage = 1;
    if (Worker::instance())
        Worker::instance()->startPass();
}
