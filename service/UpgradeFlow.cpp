// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/UpgradeFlow.h"

#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceSearch.h"
#include "device/DeviceState.h"
#include "device/EventDispatch.h"
#include "device/FirmwareImage.h"
#include "device/FirmwareSearch.h"
#include "device/SideBySide.h"
#include "device/Worker.h"
#include "device/hidusb/HIDUsb.h"
#include "environment/DataRoot.h"
#include "environment/MainThread.h"
#include "hub/PostMsg.h"
#include "service/GateFiles.h"
#include "service/ModelDevices.h"
#include "service/UpgradeStage.h"

#include <QDir>
#include <QPointer>
#include <QWidget>
#include <algorithm>

namespace
{

constexpr int StepMs = 1000;
constexpr int KindsTried[] = {4, 8, 2, 1};

bool mayFollow(UpgradeStatus status)
{
    return status == UpgradeStatus::Succeeded || status == UpgradeStatus::NothingToDo;
}

// The class of the receiver in use: the one beside a mouse on its cable, else the selected one.
int attachedKind()
{
    const DeviceAllInfo selected = SelectedDevice::info();
    if (!selected.Usb)
        return connectionKind(selected.DeviceKind);
    for (const DeviceAllInfo &device : deviceList())
        if (!device.Usb)
            return connectionKind(device.DeviceKind);
    return 0;
}

// As far as the last search knows.
bool isSelectedAttached()
{
    const std::vector<DeviceAllInfo> devices = deviceList();
    return std::any_of(devices.cbegin(), devices.cend(),
                       [path = SelectedDevice::info().DevicePath](const DeviceAllInfo &device) {
                           return device.DevicePath == path;
                       });
}

// The record of the model that is attached; another model's waits until that one is.
QString recordBeside(const std::vector<DeviceAllInfo> &devices)
{
    const QStringList texts = UpdateFailRecord::storedTexts();
    for (const QString &text : texts)
        if (const auto record = UpdateFailRecord::parse(text);
            record && !devices.empty() && record->mid == devices.front().Mid &&
            devices.front().Usb == (record->target == TargetReceiver))
            return text;
    return texts.value(0);
}

} // namespace

UpgradeFlow::UpgradeFlow(UpgradePage &page) : page_(page)
{
    dongleTimer_.setObjectName(QStringLiteral("DongleCheckTimer"));
    mouseTimer_.setObjectName(QStringLiteral("MouseCheckTimer"));
    for (QTimer *timer : {&dongleTimer_, &mouseTimer_}) {
        timer->setParent(this);
        timer->setInterval(StepMs);
    }
    connect(&dongleTimer_, &QTimer::timeout, this, &UpgradeFlow::onDongleCheckTimer);
    connect(&mouseTimer_, &QTimer::timeout, this, &UpgradeFlow::onMouseCheckTimer);
}

UpgradeFlow::~UpgradeFlow() = default;

ModelFirmware UpgradeFlow::model() const
{
    const DeviceCatalogue catalogue;
    return {catalogue.option("CID"), catalogue.number(SelectedDevice::info().DriveIndex, "MID"), UpgradeKind};
}

// What is in a boot loader runs no version.
QString UpgradeFlow::currentVersion(int target) const
{
    return target == failedTarget_ ? QString() : page_.shownVersion(target);
}

// ---- Offers -------------------------------------------------------------------------------------

void UpgradeFlow::showOffers()
{
    if (dialog_.isBusy() || UpdateBusy || !QDir(applicationFolder() + QStringLiteral("/bin")).exists())
        return;
    const QString section = driveSection(SelectedDevice::info());
    ReceiverNew = checkForNew(TargetReceiver, page_.shownVersion(TargetReceiver), attachedKind(), section);
    MouseNew = checkForNew(TargetMouse, page_.shownVersion(TargetMouse), 0, section);
    const bool waits = ReceiverNew || MouseNew;
    PostMsg *hub = PostMsg::instance();
    emit hub->SigAddUpdate(0, MouseNew);
    emit hub->SigAddUpdate(1, ReceiverNew);
    page_.showWaiting(waits);
    emit hub->SigUpdateFrame(waits);
}

void UpgradeFlow::forgetTargets()
{
    if (!UpdateBusy)
        receiverActive_ = mouseActive_ = false;
}

void UpgradeFlow::SlotUpdateFrame(bool IsVis)
{
    if (dialog_.isBusy() || dialog_.showsResult())
        return;
    // Nobody asked for it, so it does not open on a desktop without the program's window.
    const QWidget *const window = page_.place()->window();
    if (!IsVis)
        dialog_.close();
    else if (window->isVisible() && !window->isMinimized())
        on_Receive_2_clicked();
}

void UpgradeFlow::on_Receive_2_clicked()
{
    if (page_.isUpToDate() || dialog_.isBusy())
        return;
    dialog_.resetForm();
    const bool ready = ChechIsUpDate();
    if (ready)
        dialog_.readyForm(offered_.offers);
    if (!ready && noNewVersion_) {
        page_.showUpToDate();
        dialog_.close();
    } else {
        dialog_.showOver(page_.place(), PageNoticeOffset);
    }
}

// The gate with its questions, to be asked on any thread.
std::function<GateVerdict()> UpgradeFlow::gate(const QString &record) const
{
    const UpdateFailRecord failed = UpdateFailRecord::parse(record).value_or(UpdateFailRecord());
    const auto shown = [receiver = page_.shownVersion(TargetReceiver),
                        mouse = page_.shownVersion(TargetMouse)](int target) {
        return target == TargetMouse ? mouse : receiver;
    };
    const auto search = [failed, firmware = model(), shown](int target, int kHz, bool anyVersion) {
        const ModelFirmware wanted{anyVersion ? failed.cid : firmware.cid,
                                   anyVersion ? failed.mid : firmware.mid, kHz};
        return wanted.find(target, anyVersion ? QString() : shown(target));
    };
    return [devices = deviceList(), record, search, shown] {
        GateFiles files(search);
        GateVerdict verdict = upgradeGate(devices, record, files.questions());
        const auto offer = [&](int target, bool isNew) {
            const bool waits = target == verdict.failedTarget; // in its boot loader
            if (verdict.ready && isNew)
                verdict.offers.push_back(
                    {target, waits ? QString() : shown(target),
                     firmwareVersion(files.image(target, verdict.connectionKind, waits))});
        };
        offer(TargetReceiver, verdict.receiverNew);
        offer(TargetMouse, verdict.mouseNew);
        return verdict;
    };
}

// A check never changes what is being flashed.
bool UpgradeFlow::ChechIsUpDate()
{
    if (dialog_.isBusy() || UpdateBusy || RepairRunning)
        return false;
    const std::vector<DeviceAllInfo> devices = deviceList();
    const QString record = recordBeside(devices);
    failedTarget_ = 0;
    noNewVersion_ = false;
    if (!asksBootLoaders(devices, record))
        return takeVerdict(gate(record)(), record);
    dialog_.askingForm([this, record, ask = gate(record)]() -> Inquiry::Answer {
        const GateVerdict verdict = ask();
        return [this, verdict, record] {
            if (takeVerdict(verdict, record))
                dialog_.readyForm(offered_.offers);
        };
    });
    return false;
}

bool UpgradeFlow::takeVerdict(const GateVerdict &verdict, const QString &record)
{
    if (verdict.recordIsSenseless)
        UpdateFailRecord::takeAway(record);
    offered_ = verdict;
    noNewVersion_ = verdict.text == UpgradeText::newTips;
    if (verdict.connectionKind != 0)
        UpgradeKind = verdict.connectionKind;
    if (verdict.ready) {
        failedTarget_ = verdict.failedTarget;
        Stages = verdict.stages;
        ReceiverNew = verdict.receiverNew;
        MouseNew = verdict.mouseNew;
    } else {
        dialog_.noticeForm(verdict.text);
    }
    return verdict.ready;
}

void UpgradeFlow::SlotCheckUpdate()
{
    // The word may have been on its way when the dialog was closed, and the selection page may have it now.
    if (!dialog_.isVisible() || dialog_.isForRepair() || dialog_.isBusy() || dialog_.showsResult())
        return;
    if (ChechIsUpDate())
        dialog_.readyForm(offered_.offers);
}

// ---- Start --------------------------------------------------------------------------------------

void UpgradeFlow::on_Start()
{
    if (UpdateBusy || RepairRunning || receiverActive_ || mouseActive_)
        return;
    ReceiverStatus = UpgradeStatus::None;
    MouseStatus = UpgradeStatus::None;
    following_ = false;
    images_ = takeImages();
    // Half of what was offered would be called a success.
    if ((offered_.receiverNew && images_->receiver.isEmpty()) ||
        (offered_.mouseNew && images_->mouse.isEmpty())) {
        dialog_.noticeForm(UpgradeText::ErrorFile);
        return;
    }
    UpgradeTarget = TargetReceiver;
    dialog_.busyForm();
    if (failedTarget_ == TargetMouse && images_->receiver.isEmpty())
        on_Mouse_clicked();
    else
        startTarget(TargetReceiver);
}

const QByteArray &UpgradeFlow::Images::of(int target) const
{
    return target == TargetReceiver ? receiver : mouse;
}

UpgradeFlow::Images UpgradeFlow::takeImages() const
{
    ModelFirmware firmware = model();
    const auto find = [this, &firmware](int target) { return firmware.find(target, currentVersion(target)); };
    Images images{find(TargetReceiver), find(TargetMouse)};
    for (const int kind : KindsTried) {
        if (!images.receiver.isEmpty() || UpgradeKind != 0)
            break;
        firmware.connectionKind = kind;
        images.receiver = find(TargetReceiver);
        if (!images.receiver.isEmpty())
            UpgradeKind = kind;
    }
    return images;
}

void UpgradeFlow::startTarget(int target)
{
    if (receiverActive_ || mouseActive_)
        return;
    if (!images_)
        images_ = takeImages();
    if (!dialog_.isBusy())
        dialog_.busyForm();
    asked_.drop(); // the run before may still look for what it has restarted; this one's end does it
    UpdateBusy = true;
    NotUpgrading = false;
    step_ = Step::Search;
    page_.showMark(TargetReceiver, false);
    page_.showMark(TargetMouse, false);
    UpgradeTarget = target;
    dialog_.showTarget();
    (target == TargetReceiver ? receiverActive_ : mouseActive_) = true;
    (target == TargetReceiver ? dongleTimer_ : mouseTimer_).start();
}

void UpgradeFlow::on_Receive_clicked()
{
    if (const int kind = attachedKind())
        UpgradeKind = kind;
    startTarget(TargetReceiver);
}

// A mouse in its boot loader is not listed; the check has found it there.
void UpgradeFlow::on_Mouse_clicked()
{
    if (receiverActive_ || mouseActive_)
        return;
    const std::vector<DeviceAllInfo> devices = deviceList();
    const bool isThere = SelectedDevice::info().Usb && !devices.empty() && devices.front().Usb &&
                         devices.front().Mid == model().mid;
    if (isThere || failedTarget_ == TargetMouse) {
        startTarget(TargetMouse);
        return;
    }
    emit PostMsg::instance()->SigProgress(0, int(Progress::FailedHalfWay));
}

void UpgradeFlow::SlotContinue(int index)
{
    if (index != 0)
        return;
    following_ = true;
    if (MouseNew && mayFollow(ReceiverStatus))
        on_Mouse_clicked();
    else if (ReceiverNew && mayFollow(MouseStatus))
        on_Receive_clicked();
}

// ---- Steps --------------------------------------------------------------------------------------

void UpgradeFlow::onDongleCheckTimer() { UpgradeStep(TargetReceiver); }

void UpgradeFlow::onMouseCheckTimer() { UpgradeStep(TargetMouse); }

void UpgradeFlow::UpgradeStep(int target)
{
    switch (step_) {
    case Step::Search:
        search(target);
        break;
    case Step::Count:
        count(target);
        break;
    case Step::Counting:
        break;
    case Step::Started:
        step_ = Step::Running;
        break;
    case Step::Running:
        if (statusOf(target) != UpgradeStatus::Running)
            step_ = Step::Finish;
        break;
    case Step::Finish:
        finish(target);
        break;
    }
}

void UpgradeFlow::search(int target)
{
    if (images_->of(target).isEmpty())
        endWithNothing(target);
    else
        step_ = Step::Count;
}

// The answer leads on; until then no step does.
void UpgradeFlow::count(int target)
{
    step_ = Step::Counting;
    const bool asksVersion = target == TargetReceiver && target != failedTarget_;
    asked_.ask([this, target, asksVersion, image = images_->of(target),
                devices = deviceList()]() -> Inquiry::Answer {
        const int found = fittingDevices(target, image, devices);
        const bool runs = found == 1 && asksVersion && aReceiverRuns(image, devices);
        return [this, target, found, runs] { takeCount(target, found, runs); };
    });
}

void UpgradeFlow::takeCount(int target, int found, bool alreadyRuns)
{
    if (found != 1)
        endWithCount(target, found);
    else if (alreadyRuns)
        endWithNothing(target);
    else
        flash(target, images_->of(target));
}

void UpgradeFlow::flash(int target, const QByteArray &image)
{
    step_ = Step::Started;
    flashed_.insert(target);
    flashStage(target, image, model(), [flow = QPointer<UpgradeFlow>(this)] {
        runOnMainThread([flow] {
            if (flow)
                flow->endToldRun();
        });
    });
}

// A run whose end the dialog has told is over: the user may open it again before the next tick.
void UpgradeFlow::endToldRun()
{
    const int target = receiverActive_ ? TargetReceiver : TargetMouse;
    while (UpdateBusy && !dialog_.isBusy() && step_ >= Step::Started &&
           statusOf(target) != UpgradeStatus::Running)
        UpgradeStep(target);
}

// ---- Ends ---------------------------------------------------------------------------------------

void UpgradeFlow::endWithNothing(int target)
{
    statusOf(target) = UpgradeStatus::NothingToDo;
    showResult(target);
    step_ = Step::Finish;
}

void UpgradeFlow::endWithCount(int target, int found)
{
    statusOf(target) = UpgradeStatus::None;
    step_ = Step::Finish;
    const UpgradeText none = target == TargetMouse ? UpgradeText::WiredMode : UpgradeText::NoDevice;
    const UpgradeText text = found == 0 ? none : UpgradeText::SameDevice;
    dialog_.noticeForm(text);
    if (following_) {
        warning_.setText(upgradeText(text, LanguageIndex));
        warning_.placeOver(page_.place(), PageNoticeOffset);
        warning_.setModal(true);
        warning_.show();
    } else {
        page_.showMark(target, true);
    }
    endToldRun();
}

void UpgradeFlow::showNothingWaits(int target)
{
    page_.showMark(target, false);
    page_.showWaiting(false);
    emit PostMsg::instance()->SigAddUpdate(0, false);
    emit PostMsg::instance()->SigAddUpdate(1, false);
}

void UpgradeFlow::showResult(int target)
{
    const UpgradeStatus status = statusOf(target);
    if (mayFollow(status))
        showNothingWaits(target);
    if (status == UpgradeStatus::Succeeded)
        (target == TargetReceiver ? ReceiverNew : MouseNew) = false;
}

void UpgradeFlow::finish(int target)
{
    (target == TargetReceiver ? receiverActive_ : mouseActive_) = false;
    showResult(target);
    dongleTimer_.stop();
    mouseTimer_.stop();
    UpdateBusy = false;
    if (target == TargetReceiver && mayFollow(ReceiverStatus)) {
        if (failedTarget_ == TargetMouse)
            on_Mouse_clicked();
        else
            SlotContinue(0);
    }
    if (!UpdateBusy)
        endRun();
}

// Tells a result where none was told yet.
void UpgradeFlow::endRun()
{
    failedTarget_ = 0;
    images_.reset();
    const auto is = [](UpgradeStatus status) { return ReceiverStatus == status || MouseStatus == status; };
    if (dialog_.isBusy() && !RepairRunning) {
        if (is(UpgradeStatus::Failed))
            emit PostMsg::instance()->SigProgress(0, int(Progress::Failed));
        else if (is(UpgradeStatus::Succeeded))
            emit PostMsg::instance()->SigProgress(0, int(Progress::Succeeded));
        else
            dialog_.noticeForm(UpgradeText::ErrorFile);
    }
    if (!flashed_.empty())
        findRestarted();
    else
        givePagesBack();
}

// What was flashed has come back, maybe under another path. The pages are held until the selection points at
// it, else the watch would take it for another device and leave the page.
void UpgradeFlow::findRestarted()
{
    asked_.ask([this, flashed = ModelFirmware{UpgradeCid, UpgradeMid, UpgradeKind}]() -> Inquiry::Answer {
        std::vector<DeviceAllInfo> devices = attachedOfModel(flashed);
        // The watch tells a mouse on its cable from another one by the address of the selected device.
        sideBySide(devices, refreshDevice);
        return [this, flashed, devices] { takeRestarted(flashed, devices); };
    });
}

// Another model may have been opened meanwhile; the selection then stays there.
void UpgradeFlow::takeRestarted(const ModelFirmware &flashed, const std::vector<DeviceAllInfo> &devices)
{
    const ModelFirmware selected = model();
    const bool isFlashed = selected.cid == flashed.cid && selected.mid == flashed.mid;
    const bool wired = SelectedDevice::info().Usb;
    const auto isSelected = [wired](const DeviceAllInfo &device) { return device.Usb == wired; };
    if (OnDevicePage == 1 && !RepairRunning && isFlashed &&
        std::count_if(devices.cbegin(), devices.cend(), isSelected) == 1)
        selectAgain(*std::find_if(devices.cbegin(), devices.cend(), isSelected));
    givePagesBack();
}

// A mouse on its cable does not restart with its receiver: a pass would only hide the result behind its wait.
void UpgradeFlow::selectAgain(const DeviceAllInfo &device)
{
    const bool isSame = device.DevicePath == SelectedDevice::info().DevicePath;
    if (isSame && device.Usb && flashed_.count(TargetMouse) == 0)
        return;
    SelectedDevice::set(device);
    pointCurrentDeviceAt(device.DevicePath);
    ReadStartedOnline = false; // a restart ends the connection
    if (Worker *const worker = Worker::instance())
        worker->startPass();
}

// The user may have gone on to the repair meanwhile. What was pulled during the run is noticed now.
void UpgradeFlow::givePagesBack()
{
    if (!RepairRunning)
        NotUpgrading = true;
    if ((!flashed_.empty() || !isSelectedAttached()) && OnDevicePage == 1)
        StartUsbChanged(&DevicePageUsbChanged, UsbSettleMs);
    flashed_.clear();
}
