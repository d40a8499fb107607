// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/DeviceOperations.h"

#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/ImageFile.h"
#include "device/Worker.h"
#include "hub/PostMsg.h"
#include "presentation/Notices.h"
#include "presentation/UpDataParam.h"

#include <QFileDialog>
#include <QStandardPaths>

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

QString documentsFolder() { return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation); }

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
    const QString path = QFileDialog::getOpenFileName(page, QStringLiteral("SelectFile"), documentsFolder(),
                                                      QStringLiteral("File(*.bin)"));
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
    QFileDialog dialog(page, QStringLiteral("FileSave"), documentsFolder(), QStringLiteral("File(*.bin)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("bin"));
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
        writeImageFile(dialog.selectedFiles().first(), driveSection(SelectedDevice::info()),
                       DeviceRecord::copy());
}
