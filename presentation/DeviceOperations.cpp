// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/DeviceOperations.h"

#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/ImageFile.h"
#include "device/Worker.h"
#include "hub/PostMsg.h"
#include "presentation/FileDialog.h"
#include "presentation/Notices.h"
#include "presentation/UpDataParam.h"

namespace
{

bool reachable()
{
    if (UsbFinderC_GetDeviceOnLine(CurrentDevicePath()))
        return true;
    emit PostMsg::instance()->SigMouseOffLineo(0);
    return false;
}

// Stops the off-line watch, which would start the worker during a reset.
class QuietWatch
{
public:
    QuietWatch()
    {
        SettingsBusy = true;
        if (Worker::instance())
            Worker::instance()->checkTimer().stop();
    }
    ~QuietWatch()
    {
        SettingsBusy = false;
        if (Worker::instance())
            Worker::instance()->checkTimer().start();
    }
    QuietWatch(const QuietWatch &) = delete;
    QuietWatch &operator=(const QuietWatch &) = delete;
};

} // namespace

QString imageFilter() { return QStringLiteral("File(*.bin)"); }

void runFactoryReset(QWidget *page)
{
    if (!reachable() || !notice::ask<ContainReset>(page, PageNoticeOffset))
        return;
    const QuietWatch quiet;
    UsbServer_SetBatteryOptimizeEnable(0);
    DeviceRecord::push();
    UsbServer_SetClearSetting();
    UpDataParam wait;
    wait.startTimer();
    wait.setRefreshing();
    if (Worker::instance())
        Worker::instance()->startPass();
    wait.openOver(page, PageNoticeOffset);
}

void runImageImport(QWidget *page)
{
    if (!reachable())
        return;
    SettingsBusy = true;
    const QString path = filedialog::askForFile(page, imageFilter());
    if (!path.isEmpty())
        importImage(page, path);
    SettingsBusy = false;
}

void importImage(QWidget *page, const QString &path)
{
    UpDataParam wait;
    wait.startTimer();
    wait.setImport(path);
    wait.openOver(page, PageNoticeOffset);
}

void runImageExport(QWidget *page)
{
    const DeviceAllInfo selected = SelectedDevice::info();
    const QString path = filedialog::askForNewFile(page, imageFilter(), QStringLiteral("bin"),
                                                   imageFileName(selected.Cid, selected.Mid));
    if (!path.isEmpty())
        writeImageFile(path, driveSection(selected), DeviceRecord::copy());
}
