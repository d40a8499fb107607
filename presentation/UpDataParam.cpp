// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/UpDataParam.h"

#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/ImageCache.h"
#include "device/ImageFile.h"
#include "hub/PostMsg.h"
#include "presentation/Notices.h"
#include "presentation/Spin.h"

#include <QThread>

namespace
{

constexpr NoticeKind WaitRow = {"UpDataParamA", language::Section::infoTips, "DialogUpdating",
                                "Please wait, we are updating the setting", NoticeButtons::None};

constexpr char ImportKey[] = "DialogImporting";

constexpr int TimerMs = 2500;
constexpr int PageRounds = 12;
constexpr int ImportRounds = 5;
constexpr int PollMs = 500;
constexpr int RefreshHoldMs = 2000;

bool pagesLoaded() { return LightPageLoaded && SensorPageLoaded && ButtonPageLoaded; }

// The receivers run inside these emissions, since they live on the main thread as well.
void feedPages(const FlashDataMap &record)
{
    PostMsg *hub = PostMsg::instance();
    emit hub->SigUpDataLightUIA(record);
    emit hub->SigUpDataSensorUIB(record);
    emit hub->SigUpDataButtonUIC(record);
    emit hub->SigFormB();
}

} // namespace

UpDataParam::UpDataParam() : NoticeDialog(WaitRow)
{
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &UpDataParam::onTimeupDestroy);
}

void UpDataParam::startTimer() { timer_.start(TimerMs); }

void UpDataParam::setImport(const QString &path)
{
    importPath_ = path;
    Importing_ = true;
    SlotAllLanguage(LanguageIndex);
}

// A language file may lack the text for an import in all its languages; the dialog then shows that of a load.
const char *UpDataParam::textKey() const
{
    const bool told = !language::text(WaitRow.section, ImportKey, LanguageIndex).isEmpty();
    return Importing_ && told ? ImportKey : NoticeDialog::textKey();
}

void UpDataParam::onTimeupDestroy()
{
    emit PostMsg::instance()->SigSetver(4);
    if (Refreshing_)
        endRefresh();
    else if (Importing_)
        endImport();
    else if (DataLoaded)
        endLoad();
    else
        endLoss();
}

bool UpDataParam::waitForPages()
{
    for (int round = 0; round < PageRounds; ++round) {
        if (pagesLoaded())
            return true;
        spinEventLoop(PollMs);
    }
    return false;
}

// The device writes its flash after a reset and drops requests during that time.
void UpDataParam::endRefresh()
{
    const bool loaded = waitForPages();
    QThread::msleep(RefreshHoldMs);
    close();
    if (!loaded)
        emit PostMsg::instance()->SigMouseOffLineo(0);
}

void UpDataParam::endImport()
{
    FlashDataMap image;
    const QString section = driveSection(SelectedDevice::info());
    ImportResult = checkImageFile(importPath_, section, &image);
    if (ImportResult == ImageAccepted) {
        DeviceRecord::update([&image](FlashDataMap &record) { record = image; });
        feedPages(image);
        for (int round = 0; round < ImportRounds; ++round)
            spinEventLoop(PollMs);
    } else {
        notice::ask<InportFail>(this);
    }
    Importing_ = false;
    close();
}

void UpDataParam::endLoad()
{
    const bool loaded = waitForPages();
    if (loaded)
        LightPageLoaded = SensorPageLoaded = ButtonPageLoaded = false;
    close();
    if (!loaded)
        emit PostMsg::instance()->SigMouseOffLineo(1);
    FlashDataMap cached{};
    if (MouseOnline && !ImageCacheRead(SelectedDevice::cacheName(), &cached))
        ImageCacheWrite(SelectedDevice::imageName(), DeviceRecord::copy());
}

void UpDataParam::endLoss()
{
    FlashDataMap cached{};
    if (ImageCacheRead(SelectedDevice::cacheName(), &cached))
        feedPages(cached);
    emit PostMsg::instance()->SigMouseOffLineo(0);
    close();
}
