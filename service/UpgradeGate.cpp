// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/UpgradeGate.h"

#include "device/FirmwareSearch.h"

#include <algorithm>

namespace
{

using Devices = std::vector<DeviceAllInfo>;

bool isWired(const DeviceAllInfo &device) { return device.Usb; }
bool isReceiver(const DeviceAllInfo &device) { return !device.Usb; }

int count(const Devices &devices, bool (*kind)(const DeviceAllInfo &))
{
    return int(std::count_if(devices.cbegin(), devices.cend(), kind));
}

const DeviceAllInfo *first(const Devices &devices, bool (*kind)(const DeviceAllInfo &))
{
    const auto found = std::find_if(devices.cbegin(), devices.cend(), kind);
    return found == devices.cend() ? nullptr : &*found;
}

GateVerdict says(UpgradeText text)
{
    GateVerdict verdict;
    verdict.text = text;
    return verdict;
}

GateVerdict senseless(UpgradeText text)
{
    GateVerdict verdict = says(text);
    verdict.recordIsSenseless = true;
    return verdict;
}

int otherThan(int target) { return target == TargetMouse ? TargetReceiver : TargetMouse; }

// A device in its boot loader is not listed; the one beside it must be.
UpgradeText missingBeside(int failedTarget)
{
    return failedTarget == TargetReceiver ? UpgradeText::NoUSB : UpgradeText::NoRecieve;
}

bool isBeside(const DeviceAllInfo &device, const UpdateFailRecord &record)
{
    return device.Mid == record.mid && device.Usb == (record.target == TargetReceiver);
}

GateVerdict afterFailure(const DeviceAllInfo &device, const UpdateFailRecord &record,
                         const GateQuestions &questions)
{
    if (record.target != TargetReceiver && record.target != TargetMouse)
        return senseless(UpgradeText::Error);
    if (!record.makesSense())
        return senseless(UpgradeText::Error1);
    if (!isBeside(device, record))
        return says(missingBeside(record.target));
    if (device.Cid != record.cid)
        return says(UpgradeText::Error);
    if (!questions.hasFile(record.target, record.connectionKind, true))
        return says(UpgradeText::ErrorFile);
    const int inBootLoader = questions.bootLoaders(record.target, record.connectionKind);
    if (inBootLoader != 1)
        return says(inBootLoader == 0 ? UpgradeText::NoDevice : UpgradeText::SameDevice);
    GateVerdict verdict;
    verdict.ready = true;
    verdict.text = UpgradeText::ReadyUpdate;
    verdict.connectionKind = record.connectionKind;
    verdict.failedTarget = record.target;
    const bool other = questions.hasFile(otherThan(record.target), record.connectionKind, false);
    verdict.receiverNew = other || record.target == TargetReceiver;
    verdict.mouseNew = other || record.target == TargetMouse;
    verdict.stages = other ? 2 : 1;
    return verdict;
}

GateVerdict overTwo(const Devices &devices, const GateQuestions &questions)
{
    if (count(devices, isWired) == 0)
        return says(UpgradeText::NoUSB);
    const DeviceAllInfo *receiver = first(devices, isReceiver);
    if (!receiver || devices.front().Mid != devices.back().Mid)
        return says(UpgradeText::NoRecieve);
    GateVerdict verdict;
    verdict.connectionKind = connectionKind(receiver->DeviceKind);
    verdict.receiverNew = questions.hasFile(TargetReceiver, verdict.connectionKind, false);
    verdict.mouseNew = questions.hasFile(TargetMouse, verdict.connectionKind, false);
    verdict.ready = verdict.receiverNew || verdict.mouseNew;
    verdict.text = verdict.ready ? UpgradeText::ReadyUpdate : UpgradeText::newTips;
    verdict.stages = verdict.receiverNew && verdict.mouseNew ? 2 : 1;
    return verdict;
}

// The text of the first reason why the devices beside the failed one do not fit, or None.
UpgradeText besideMismatch(const Devices &devices, const UpdateFailRecord &record)
{
    if (devices.size() == 1) {
        const DeviceAllInfo &device = devices.front();
        if (!isBeside(device, record))
            return missingBeside(record.target);
        return device.Cid == record.cid ? UpgradeText::None : UpgradeText::Error;
    }
    if (count(devices, isWired) > 1)
        return UpgradeText::MultiMouse;
    if (count(devices, isReceiver) > 1)
        return UpgradeText::MultiDongle;
    const bool receiverFailed = record.target == TargetReceiver;
    const DeviceAllInfo *beside = first(devices, receiverFailed ? isWired : isReceiver);
    if (beside && isBeside(*beside, record) && beside->Cid == record.cid)
        return UpgradeText::None;
    return receiverFailed ? UpgradeText::MultiMouse : UpgradeText::MultiDongle;
}

// A device that failed before its image was erased is listed as itself.
int stillThemselves(const Devices &devices, const UpdateFailRecord &record)
{
    return int(std::count_if(devices.cbegin(), devices.cend(), [&record](const DeviceAllInfo &device) {
        const bool isModel = device.Cid == record.cid && device.Mid == record.mid;
        const bool fits = isModel || (device.Mid == 0 && !device.Usb);
        return record.target == TargetMouse
                   ? device.Usb && fits
                   : !device.Usb && fits && connectionKind(device.DeviceKind) == record.connectionKind;
    }));
}

} // namespace

GateVerdict upgradeGate(const Devices &devices, const QString &record, const GateQuestions &questions)
{
    if (devices.size() >= 3)
        return says(count(devices, isReceiver) > 1 ? UpgradeText::MultiDongle : UpgradeText::MultiMouse);
    if (devices.size() == 2)
        return overTwo(devices, questions);
    if (record.isEmpty())
        return says(!devices.empty() && !devices.front().Usb ? UpgradeText::NoUSB : UpgradeText::NoRecieve);
    const auto failed = UpdateFailRecord::parse(record);
    if (!failed)
        return senseless(UpgradeText::Error1);
    return devices.empty() ? says(UpgradeText::Error) : afterFailure(devices.front(), *failed, questions);
}

bool asksBootLoaders(const Devices &devices, const QString &record)
{
    return devices.size() == 1 && !record.isEmpty();
}

GateVerdict repairGate(const Devices &devices, const QString &record, const GateQuestions &questions)
{
    const auto failed = UpdateFailRecord::parse(record);
    if (!failed)
        return senseless(UpgradeText::Error1);
    const int target = failed->target;
    if (devices.empty() && target != TargetMouse && target != TargetReceiver)
        return says(UpgradeText::NotDevice);
    if (!failed->makesSense())
        return senseless(UpgradeText::Error1);
    const int kHz = failed->connectionKind;
    const int other = otherThan(target);
    const bool otherFile = questions.hasFile(other, kHz, true);
    // A second cut may have left both of them in their boot loaders.
    const bool otherWaits = otherFile && questions.bootLoaders(other, kHz) == 1;
    const UpgradeText mismatch = devices.empty() ? missingBeside(target) : besideMismatch(devices, *failed);
    if (mismatch != UpgradeText::None && !(mismatch == missingBeside(target) && otherWaits))
        return says(mismatch);
    if (!questions.hasFile(target, kHz, true))
        return says(UpgradeText::ErrorFile);
    const int found = questions.bootLoaders(target, kHz) + stillThemselves(devices, *failed);
    if (found != 1)
        return says(found == 0 ? UpgradeText::NotDevice : UpgradeText::SameDevice);
    const DeviceAllInfo *receiver = first(devices, isReceiver);
    const bool receiverFits =
        receiver ? connectionKind(receiver->DeviceKind) == kHz : other == TargetReceiver && otherWaits;
    GateVerdict verdict;
    verdict.ready = true;
    verdict.text = UpgradeText::ReadyUpdate;
    verdict.connectionKind = kHz;
    verdict.failedTarget = target;
    verdict.receiverNew = target == TargetReceiver || (otherFile && receiverFits);
    verdict.mouseNew = target == TargetMouse || otherFile;
    verdict.stages = verdict.receiverNew && verdict.mouseNew ? 2 : 1;
    return verdict;
}
