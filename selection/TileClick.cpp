// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/TileClick.h"

#include "catalogue/ConfigReader.h"
#include "device/DeviceSearch.h"
#include "device/DeviceState.h"
#include "device/FirmwareSearch.h"
#include "device/Worker.h"
#include "device/hidusb/HIDUsb.h"
#include "environment/DataRoot.h"
#include "hub/PostMsg.h"
#include "presentation/Notices.h"
#include "presentation/Spin.h"
#include "selection/DialogChange.h"
#include "selection/OfflineTile.h"
#include "service/Match.h"

#include <QDir>

namespace
{

constexpr int PageChangeMs = 150;
constexpr QPoint WarningOffset{-20, 0};

// The models that have pictures and a screen of their own.
bool hasScreenClass(int mid) { return mid >= 6 && mid <= 9; }

bool answers(const DeviceAllInfo &device)
{
    return UsbFinderC_GetDeviceOnLine(device.DevicePath.toLocal8Bit().constData()) != 0;
}

// Tells the settings page the receiver's version and whether the firmware folder holds another.
void announceReceiverFirmware(const DeviceAllInfo &device)
{
    if (!QDir(applicationFolder() + QStringLiteral("/bin")).exists())
        return;
    const bool isNew = checkForNew(TargetReceiver, device.DongleVersion, connectionKind(device.DeviceKind),
                                   driveSection(device));
    emit PostMsg::instance()->SigLabelTextB(device.DongleVersion, isNew ? QStringLiteral("true") : QString());
}

} // namespace

TileClick::TileClick(QWidget *page, AttachedDevices &devices) : page_(page), devices_(devices)
{
    connect(PostMsg::instance(), SIGNAL(SigChangeMainDialog(int)), this, SLOT(SlotChangeMainDialog(int)));
}

void TileClick::SlotChangeMainDialog(int index) { leftAgain_ = index == 0; }

void TileClick::open(int index)
{
    if (index >= 0 && index < int(devices_.tiles().size()))
        take(index, false);
}

void TileClick::openOnlyReceiver()
{
    if (devices_.tiles().size() == 1 && !devices_.tiles().front().Usb)
        take(0, true);
}

void TileClick::take(int index, bool asOffline)
{
    emit PostMsg::instance()->SigIsUsb(false, true);
    emit PostMsg::instance()->SigSetver(6);
    const DeviceAllInfo device = devices_.tiles()[std::size_t(index)];
    const int mid = ConfigReader::instance().ReadConfig(driveSection(device), QStringLiteral("MID")).toInt();
    if (hasScreenClass(mid)) {
        emit PostMsg::instance()->SigMouseIndex(mid);
        ScreenClass = mid;
    }
    if ((asOffline || isOfflineTile(index)) && !settleOfflineTile(device))
        return;
    if (device.DriveIndex != unknownIndex())
        enter(device);
}

// A silent device blocks the window until its time-out, so devices are asked only where the answers decide.
bool TileClick::isOfflineTile(int index) const
{
    const DeviceAllInfo &device = devices_.tiles()[std::size_t(index)];
    if (device.DriveIndex == unknownIndex() && !device.Usb)
        return true;
    const DeviceAllInfo *twin = twinOf(devices_.tiles(), index);
    return twin && !answers(device) && answers(*twin);
}

bool TileClick::settleOfflineTile(const DeviceAllInfo &device)
{
    switch (offlineTileAction(device)) {
    case OfflineTileAction::EnterReceiver:
        return true;
    case OfflineTileAction::WarnToWire:
        notice::ask<UpDateWarning>(page_, WarningOffset,
                                   language::text(language::Section::home, "WiredMode", LanguageIndex));
        return false;
    case OfflineTileAction::AskForPairing:
        if (notice::ask<RePair>(page_))
            pair(device);
        return false;
    case OfflineTileAction::Pair:
        pair(device);
        return false;
    }
    return false;
}

void TileClick::pair(const DeviceAllInfo &receiver)
{
    devices_.choosePairingTarget(receiver);
    pairing::pairAttached(page_, devices_, &DialogChange::UsbChanged);
}

void TileClick::enter(const DeviceAllInfo &device)
{
    PostMsg *hub = PostMsg::instance();
    emit hub->SigSelectMouseInfo(device);
    if (!isWiredKind(device.DeviceKind))
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
