// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/Worker.h"

#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/EventDispatch.h"
#include "device/ImageCache.h"
#include "hub/PostMsg.h"

#include <QCoreApplication>
#include <QDebug>

namespace
{
constexpr int CheckIntervalMs = 1300;
std::atomic<Worker *> theWorker{nullptr};
} // namespace

Worker *Worker::instance() { return theWorker; }

Worker::Worker(QObject *parent) : QThread(parent)
{
    WorkerArmed = true;
    startStatusTimer();
    pointCurrentDeviceAtNothing();
    MouseOnline = false;

    CheckTimer_.setInterval(CheckIntervalMs);
    connect(&CheckTimer_, &QTimer::timeout, this, &Worker::SlotCheckOnline);
    CheckTimer_.start();
    // start() does nothing while a pass is ending, so a request that comes then is repeated when it has
    // ended.
    connect(this, &QThread::finished, this, [this] {
        if (requestedPasses_ != begunPasses_)
            start(QThread::InheritPriority);
    });
    connect(PostMsg::instance(), SIGNAL(SigSelectMouseInfo(DeviceAllInfo)), this,
            SLOT(SlotSelectMouseInfo(DeviceAllInfo)));
    connect(PostMsg::instance(), SIGNAL(SigMainPageChange()), this, SLOT(SlotMainPageChange()));
    BatteryAsNumber = DeviceCatalogue().option("ShowBatteryValue");
    theWorker = this;
}

Worker::~Worker()
{
    shutDown();
    theWorker = nullptr;
}

void Worker::startPass()
{
    if (stopped_)
        return;
    ++requestedPasses_;
    WorkerArmed = true;
    start(QThread::InheritPriority);
}

void Worker::stop()
{
    stopped_ = true;
    CheckTimer_.stop();
    disconnect(this, &QThread::finished, this, nullptr);
    WorkerArmed = false;
    ++departures_;
}

void Worker::shutDown()
{
    stop();
    while (!wait(1))
        QCoreApplication::processEvents();
}

void Worker::SlotSelectMouseInfo(const DeviceAllInfo &SelectInfo)
{
    forgetReset();
    SelectedDevice::set(SelectInfo);
    pointCurrentDeviceAt(
        SelectInfo.DevicePath); // the pass may start before the device page's search has set the path
    SelectedDevice::setCacheName(imageFileName(SelectInfo.Cid, SelectInfo.Mid));
}

void Worker::SlotMainPageChange()
{
    ReadStartedOnline = false;
    ++departures_;
}

void Worker::SlotCheckOnline()
{
    if (AwaitingMouse) {
        if (OnDevicePage == 0) {
            if (SelectedDevice::info().DeviceKind & 0xFF)
                AwaitingMouse = false;
        } else if (NotUpgrading) {
            MouseOnline = UsbFinderC_GetDeviceOnLine(CurrentDevicePath()) != 0;
            ReadStartedOnline = false;
            if (!MouseOnline)
                return;
            emit PostMsg::instance()->SigCloseOffOnline();
            AwaitingMouse = false;
        }
    }
    if (MouseOnline && RestartWorker) {
        RestartWorker = false;
        startPass();
    }
}

void Worker::run()
{
    begunPasses_ = requestedPasses_.load();
    begunDepartures_ = departures_;
    if (!WorkerArmed)
        return;
    if (!MouseOnline)
        MouseOnline = UsbFinderC_GetDeviceOnLine(CurrentDevicePath()) != 0;
    const DeviceAllInfo selected = SelectedDevice::info();
    if (!nothingNew(selected) && OnDevicePage == 1)
        pass(selected);
    DataLoaded = MouseOnline.load();
    if (requestedPasses_ == begunPasses_)
        WorkerArmed = false;
}

bool Worker::nothingNew(const DeviceAllInfo &selected) const
{
    return selected.DevicePath == lastPath_ && selected.DeviceKind == lastKind_ &&
           lastDepartures_ == begunDepartures_ && ReadStartedOnline == MouseOnline && !ConfigChanged;
}

void Worker::pass(const DeviceAllInfo &selected)
{
    const bool online = UsbFinderC_GetDeviceOnLine(CurrentDevicePath()) != 0;
    if (isLeft())
        return;
    FullReadAwaited = true;
    SelectedDevice::setOnline(online);
    if (selected.DevicePath != lastPath_)
        forgetReceiver();
    if (online) {
        announceLoad();
    } else {
        AwaitingMouse = true;
        feedFromCache();
    }
    lastPath_ = selected.DevicePath;
    lastKind_ = selected.DeviceKind;
    lastDepartures_ = begunDepartures_;
    UsbServerC_Start(CurrentDevicePath(), CurrentDevicePath(), ProtocolCallback);
    qDebug("OnlinA");
    UsbServer_SetPCDriverStatus(1);
    UsbServer_ReadAllFlashData();
    ReadStartedOnline = MouseOnline.load();
    qDebug("OnlinB");
    // The main thread may have ended the connection before this pass opened its own.
    if (isLeft()) {
        UsbServer_SetPCDriverStatus(0);
        UsbServer_Exit();
    }
}

// The wait dialog covers the pages until they have been sent the record.
void Worker::announceLoad()
{
    if (ConfigChanged.exchange(false))
        emit PostMsg::instance()->SigUpDataParam(1);
    else if (!SettingsBusy)
        emit PostMsg::instance()->SigUpDataParam(0);
}

void Worker::feedFromCache()
{
    FlashDataMap cached{};
    PostMsg *const hub = PostMsg::instance();
    if (!ImageCacheRead(SelectedDevice::cacheName(), &cached)) {
        emit hub->SigFormReset();
        return;
    }
    emit hub->SigUpDataLightUIButton(cached);
    emit hub->SigUpDataLightLight(cached);
    emit hub->SigUpDataLightSensor(cached);
    emit hub->SigForm();
}
