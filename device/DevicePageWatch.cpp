// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The hot-plug callback while the device page shows: follows the selected device from its receiver to
// its cable, and leaves the page when it is gone.
#include "device/EventDispatch.h"

#include "device/DeviceSearch.h"
#include "device/DeviceState.h"
#include "device/FirmwareSearch.h"
#include "device/SideBySide.h"
#include "device/Worker.h"
#include "device/hidusb/HIDUsb.h"
#include "hub/PostMsg.h"

namespace
{

constexpr int AddressSize = 3;

struct Found {
    DeviceAllInfo device;
    DeviceMatch match;
};

// The found devices without those of other models.
std::vector<DeviceAllInfo> rebuildDeviceList(const DeviceAllInfo &selected)
{
    std::vector<Found> found;
    for (const DeviceAllInfo &device : findDevices(DeviceFinder::ByInterface))
        found.push_back({device, DeviceMatch::LeftOut});
    if (!selected.DevicePath.isEmpty())
        sideBySide(found, [](Found &each) { each.match = refreshDevice(each.device); });
    std::vector<DeviceAllInfo> kept;
    for (const auto &[device, match] : found) {
        if (match == DeviceMatch::Known) {
            if (device.DriveIndex != selected.DriveIndex)
                continue;
            DeviceMatched = true;
            if (device.DevicePath == selected.DevicePath)
                pointCurrentDeviceAt(device.DevicePath);
        }
        kept.push_back(device);
    }
    return kept;
}

// True when the entry is the cable of the selected mouse, which was used through its receiver so far.
bool isCableOf(const DeviceAllInfo &entry, const DeviceAllInfo &selected)
{
    return entry.DriveIndex == selected.DriveIndex && entry.Usb && entry.Online && !selected.Usb &&
           entry.UsbAddress.size() == AddressSize && entry.UsbAddress == selected.UsbAddress;
}

bool shouldSwitchTo(const DeviceAllInfo &entry, const DeviceAllInfo &selected)
{
    if (!selected.DevicePath.isEmpty())
        return isCableOf(entry, selected);
    if (selected.Online && !selected.Usb && isCableOf(entry, selected))
        return true;
    return entry.Online && entry.DevicePath == selected.DevicePath;
}

void switchTo(const DeviceAllInfo &entry)
{
    if (UsbFinderC_GetDeviceOnLine(entry.DevicePath.toLocal8Bit().constData())) {
        SelectedDevice::set(entry);
        pointCurrentDeviceAt(entry.DevicePath);
    }
    if (Worker *const worker = Worker::instance())
        worker->startPass();
}

void leavePage()
{
    if (!NotUpgrading)
        return;
    DeviceUnplugged = true;
    emit PostMsg::instance()->SigChangeMainDialog(0);
}

void followSelection(const std::vector<DeviceAllInfo> &list)
{
    std::size_t others = 0;
    for (const DeviceAllInfo &entry : list) {
        if (shouldSwitchTo(entry, SelectedDevice::info()))
            switchTo(entry);
        if (entry.DevicePath != SelectedDevice::info().DevicePath)
            ++others;
    }
    if (others == list.size() && !SelectedDevice::info().DevicePath.isEmpty())
        leavePage();
}

void announceFirmware()
{
    const DeviceAllInfo receiver = selectedReceiver();
    const bool isNew = checkForNew(TargetReceiver, receiver.DongleVersion,
                                   connectionKind(receiver.DeviceKind), driveSection(receiver));
    emit PostMsg::instance()->SigLabelTextB(receiver.DongleVersion,
                                            isNew ? QStringLiteral("true") : QString());
    if (UpgradeDialogOpen && !UpdateBusy)
        emit PostMsg::instance()->SigCheckUpdate();
}

} // namespace

void DevicePageUsbChanged()
{
    emit PostMsg::instance()->SigSetver(4);
    const DeviceAllInfo selected = SelectedDevice::info();
    const std::vector<DeviceAllInfo> list = rebuildDeviceList(selected);
    // The user may have selected another device while slow ones were asked.
    if (SelectedDevice::info().DevicePath != selected.DevicePath)
        return;
    setDeviceList(list);
    if (!list.empty()) {
        followSelection(list);
    } else if (NotUpgrading) {
        SelectedDevice::set(DeviceAllInfo());
        leavePage();
    } else {
        return; // an upgrade restarts the device; its labels stay until it is back
    }
    announceFirmware();
}
