// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/RepairRoute.h"

#include "device/DeviceState.h"
#include "device/FirmwareImage.h"
#include "device/FirmwareSearch.h"
#include "hub/PostMsg.h"
#include "service/FlashRun.h"
#include "service/GateFiles.h"
#include "service/ModelDevices.h"
#include "service/UpgradeState.h"
#include "service/WiredMarriage.h"

#include <algorithm>

namespace
{

enum AutoRepair : int { Repaired = 0, NotRepaired = 1 };

struct Plan {
    UpdateFailRecord failed;
    QByteArray receiverImage; // empty: the receiver is left as it is
    QByteArray mouseImage;
};

UpdateFailRecord recordOf(const Plan &plan, int target)
{
    UpdateFailRecord record = plan.failed;
    record.target = target;
    return record;
}

void endRun()
{
    RepairRunning = false;
    RepairBusy = false;
    NotUpgrading = true;
}

void tellSuccess()
{
    endRun();
    PostMsg *hub = PostMsg::instance();
    emit hub->SigAutoRepair(Repaired);
    emit hub->SigUpDateButton(UpdateFailRecord::storedTexts().isEmpty());
    emit hub->SigProgress(0, int(Progress::Succeeded));
}

void tellFailure()
{
    flashrun::emptyLog();
    endRun();
    PostMsg *hub = PostMsg::instance();
    emit hub->SigAutoRepair(NotRepaired);
    emit hub->SigUpDateButton(false);
    emit hub->SigProgress(0, int(Progress::RepairFailed));
}

ModelFirmware modelOf(const UpdateFailRecord &record)
{
    return {record.cid, record.mid, record.connectionKind};
}

// Searched now: what the selection page knows may be older than the receiver's restart.
bool mouseIsThere(const Plan &plan)
{
    const std::vector<DeviceAllInfo> devices = attachedOfModel(modelOf(plan.failed));
    return std::any_of(devices.cbegin(), devices.cend(),
                       [](const DeviceAllInfo &device) { return device.Usb; }) ||
           findBootDevices(plan.mouseImage, BootLoaderLimit) == 1;
}

void flash(const Plan &plan, int target);

void showProgress(int target, int percent)
{
    const int half = percent / 2;
    const int value = Stages != 2 ? percent : target == TargetMouse ? half + 50 : half;
    emit PostMsg::instance()->SigAutoRepairProgress(value);
}

void onRepairProgress(int target, int percent)
{
    RepairBusy = true;
    showProgress(target, percent);
}

void onSuccess(const Plan &plan, int target)
{
    const bool goesOn = target == TargetReceiver && !plan.mouseImage.isEmpty() &&
                        (plan.failed.target != TargetReceiver || mouseIsThere(plan));
    // A mouse in its boot loader must not be without its record while the questions below are asked.
    if (goesOn)
        recordOf(plan, TargetMouse).putFirst();
    recordOf(plan, target).takeAway();
    WiredMarriage().marry(attachedOfModel(modelOf(plan.failed)));
    if (goesOn)
        flash(plan, TargetMouse);
    else
        tellSuccess();
}

void onFailure(const Plan &plan, int target, bool started)
{
    if (started)
        recordOf(plan, target).putFirst();
    tellFailure();
}

// The receiver of a mouse that failed is flashed under the mouse's record: a cut leaves both of them in their
// boot loaders, and the repair then does both.
void flash(const Plan &plan, int target)
{
    UpgradeTarget = target;
    showProgress(target, 0);
    const FlashHandlers handlers = {[target](int percent) { onRepairProgress(target, percent); },
                                    [plan, target](bool succeeded, bool started) {
                                        if (succeeded)
                                            onSuccess(plan, target);
                                        else
                                            onFailure(plan, target, started);
                                    }};
    const bool isReceiver = target == TargetReceiver;
    flashrun::start(isReceiver ? plan.receiverImage : plan.mouseImage,
                    isReceiver ? plan.failed : recordOf(plan, target), handlers);
}

GateVerdict checkRecord(const std::vector<DeviceAllInfo> &attached, const QString &text)
{
    const UpdateFailRecord record = UpdateFailRecord::parse(text).value_or(UpdateFailRecord());
    GateFiles files([&record](int target, int, bool) { return modelOf(record).findForRepair(target); });
    GateVerdict verdict = repairGate(attached, text, files.questions());
    const auto offer = [&verdict, &files](bool isWritten, int target) {
        if (verdict.ready && isWritten)
            verdict.offers.push_back(
                {target, {}, firmwareVersion(files.image(target, verdict.connectionKind, true))});
    };
    offer(verdict.receiverNew, TargetReceiver);
    offer(verdict.mouseNew, TargetMouse);
    return verdict;
}

} // namespace

// Of several devices that wait, the first that can be repaired now; when none can, the last one that failed
// says why.
RepairRoute::Check RepairRoute::check(const std::vector<DeviceAllInfo> &attached)
{
    QStringList texts = UpdateFailRecord::storedTexts();
    if (texts.isEmpty())
        texts << QString();
    Check check;
    for (const QString &text : qAsConst(texts)) {
        const GateVerdict verdict = checkRecord(attached, text);
        if (verdict.recordIsSenseless)
            check.senseless << text;
        const bool saysMore = check.verdict.recordIsSenseless && !verdict.recordIsSenseless;
        if (text == texts.first() || verdict.ready || saysMore) {
            check.verdict = verdict;
            check.record = text;
        }
        if (verdict.ready)
            break;
    }
    return check;
}

void RepairRoute::take(const Check &check)
{
    last_ = check;
    for (const QString &text : check.senseless)
        UpdateFailRecord::takeAway(text);
}

bool RepairRoute::start()
{
    const auto record = UpdateFailRecord::parse(last_.record);
    if (!last_.verdict.ready || !record)
        return false;
    Plan plan;
    plan.failed = *record;
    const ModelFirmware firmware = modelOf(*record);
    if (last_.verdict.receiverNew)
        plan.receiverImage = firmware.findForRepair(TargetReceiver);
    plan.mouseImage = firmware.findForRepair(TargetMouse);
    if ((record->target == TargetReceiver ? plan.receiverImage : plan.mouseImage).isEmpty())
        return false;
    UpgradeKind = record->connectionKind;
    UpgradeCid = record->cid;
    UpgradeMid = record->mid;
    Stages = plan.receiverImage.isEmpty() || plan.mouseImage.isEmpty() ? 1 : 2;
    RepairRunning = true;
    NotUpgrading = false;
    flash(plan, plan.receiverImage.isEmpty() ? TargetMouse : TargetReceiver);
    return true;
}
