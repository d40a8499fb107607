// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/UpgradeStage.h"

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/RegistryStore.h"
#include "device/FirmwareImage.h"
#include "device/FirmwareSearch.h"
#include "device/hidusb/HIDUsb.h"
#include "hub/PostMsg.h"
#include "service/FlashRun.h"
#include "service/ModelDevices.h"
#include "service/WiredMarriage.h"

#include <algorithm>

DeviceFlag<UpgradeStatus> &statusOf(int target)
{
    return target == TargetReceiver ? ReceiverStatus : MouseStatus;
}

int fittingDevices(int target, const QByteArray &image, const std::vector<DeviceAllInfo> &devices)
{
    const auto listed =
        std::count_if(devices.cbegin(), devices.cend(), [target](const DeviceAllInfo &device) {
            return device.Usb == (target == TargetMouse);
        });
    return int(listed) + findBootDevices(image, BootLoaderLimit);
}

bool aReceiverRuns(const QByteArray &image, const std::vector<DeviceAllInfo> &devices)
{
    return std::any_of(devices.cbegin(), devices.cend(), [&image](const DeviceAllInfo &device) {
        uint32_t version = 0;
        return !device.Usb &&
               UsbFinderC_GetSlaveVersion(device.DevicePath.toLocal8Bit().constData(), &version) &&
               versionText(version) == firmwareVersion(image);
    });
}

namespace
{

// ---- On the layer's upgrade thread

void onProgress(int target, int percent)
{
    const bool isHalf = Stages != 1;
    const int start = isHalf && target == TargetMouse ? 50 : 0;
    emit PostMsg::instance()->SigProgress(start + (isHalf ? percent / 2 : percent), int(Progress::Percent));
}

// The record of the other target stays: it may wait in its boot loader for its turn.
void onSuccess(int target, const UpdateFailRecord &record, const QString &version)
{
    PostMsg *hub = PostMsg::instance();
    if (target == TargetMouse) {
        const DeviceCatalogue catalogue;
        const QString name = registry::mouseVersionName(catalogue, catalogue.find(UpgradeCid, UpgradeMid));
        RegistryStore::instance().setValue(registry::BaseGroup, name, version);
    }
    record.takeAway();
    if (target == TargetMouse)
        WiredMarriage().marry(attachedOfModel({UpgradeCid, UpgradeMid, UpgradeKind}));
    if (target == TargetMouse || Stages == 1)
        emit hub->SigProgress(0, int(Progress::Succeeded));
    emit hub->SigLabelText(target == TargetMouse ? 1 : 0, version);
    statusOf(target) = UpgradeStatus::Succeeded;
}

void onFailure(int target, const UpdateFailRecord &record, bool started)
{
    flashrun::emptyLog();
    if (started)
        record.putFirst();
    MouseNew = false;
    ReceiverNew = false;
    emit PostMsg::instance()->SigProgress(0, int(Progress::Failed));
    statusOf(target) = UpgradeStatus::Failed;
}

} // namespace

// The status is set before the start: the result may come before the next step.
void flashStage(int target, const QByteArray &image, const ModelFirmware &firmware,
                const std::function<void()> &told)
{
    UpgradeTarget = target;
    UpgradeCid = firmware.cid;
    UpgradeMid = firmware.mid;
    const UpdateFailRecord record{target, UpgradeKind, firmware.cid, firmware.mid};
    statusOf(target) = UpgradeStatus::Running;
    flashrun::start(image, record,
                    {[target](int percent) { onProgress(target, percent); },
                     [target, record, told, version = firmwareVersion(image)](bool succeeded, bool started) {
                         if (succeeded)
                             onSuccess(target, record, version);
                         else
                             onFailure(target, record, started);
                         told();
                     }});
}
