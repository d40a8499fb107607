// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/Buttoninterface.h"

#include "app/hub/PostMsg.h"
#include "device/DeviceState.h"
#include "device/Worker.h"
#include "device/hidusb/HIDUsb.h"
#include "presentation/DeviceOperations.h"
#include "presentation/FirstShow.h"
#include "presentation/PageSurface.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "ui_Buttoninterface.h"

namespace
{
constexpr int SleepUnitSeconds = 10;
constexpr int DefaultSleepSeconds = 60;
} // namespace

Buttoninterface::Buttoninterface(QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::Buttoninterface>()), worker(std::make_unique<Worker>())
{
    ui->setupUi(this);
    setAccessibleName(QStringLiteral("Buttons"));
    onFirstShow(this, [this] { dress(); });
    listen();
    SlotAllLanguage(LanguageIndex);
}

// A pass may be delivering to this very thread, so the end of it is waited for with the event loop turning.
Buttoninterface::~Buttoninterface()
{
    worker->shutDown();
    worker.reset();
    StopUsbChanged();
}

void Buttoninterface::dress()
{
    const QString folder = style::pictureFolder(QStringLiteral("Buttoninterface"));
    const QString button = style::textButton(folder, style::color("ButtonColor"), QStringLiteral("Confirm"));
    ui->frameButton->setStyleSheet(style::dialogBackground(folder, QStringLiteral("frameButton")));
    ui->label_8->setStyleSheet(style::label(style::color("LabelColor")));
    ui->Reset->setStyleSheet(button);
    ui->ImportData->setStyleSheet(button);
    dressComboBox(ui->ProjectChoose, folder);
}

void Buttoninterface::listen()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigUpDataLightUIButton(FlashDataMap)), this,
            SLOT(SlotUpDataButtonUIButton(FlashDataMap)), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataButtonUIC(FlashDataMap)), this, SLOT(SlotUpDataButtonUIB(FlashDataMap)));
    connect(hub, SIGNAL(SigUpDataConfigUI(int, int, bool)), this, SLOT(SlotUpDataConfigUI(int, int, bool)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigFormReset()), this, SLOT(SlotFormResetButton()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
}

void Buttoninterface::SlotUpDataButtonUIButton(FlashDataMap DataMap)
{
    ButtonPageLoaded = false;
    paint(DataMap);
    ButtonPageLoaded = true;
}

void Buttoninterface::SlotUpDataButtonUIB(FlashDataMap DataMap) { paint(DataMap); }

void Buttoninterface::paint(const FlashDataMap &map)
{
    const PageFilling filling(ButtonPageBusy);
    emit PostMsg::instance()->SigLightToFrom(map.StopCloseTime * SleepUnitSeconds);
}

void Buttoninterface::SlotFormResetButton()
{
    const PageFilling filling(ButtonPageBusy);
    emit PostMsg::instance()->SigLightToFrom(DefaultSleepSeconds);
}

// ---- Profiles -----------------------------------------------------------------------------------

void Buttoninterface::fillProfiles(int count)
{
    ui->ProjectChoose->clear();
    for (int i = 1; i <= qMax(count, 1); ++i)
        ui->ProjectChoose->addItem(ConfigPrefix + QString::number(i));
}

void Buttoninterface::SlotUpDataConfigUI(int ToTalItem, int SelectIndex, bool ItemEnable)
{
    const QSignalBlocker silent(ui->ProjectChoose);
    fillProfiles(ToTalItem);
    ui->ProjectChoose->setEnabled(ItemEnable);
    if (ToTalItem > 0)
        ui->ProjectChoose->setCurrentIndex(SelectIndex);
    profile = ui->ProjectChoose->currentIndex();
    emit PostMsg::instance()->SigAddConfig(ui->ProjectChoose->currentText());
}

void Buttoninterface::on_ProjectChoose_activated(int index)
{
    if (!ButtonPageBusy && !UsbFinderC_GetDeviceOnLine(CurrentDevicePath())) {
        const QSignalBlocker silent(ui->ProjectChoose);
        ui->ProjectChoose->setCurrentIndex(profile);
        emit PostMsg::instance()->SigMouseOffLineo(0);
        return;
    }
    UsbServer_SetCurrentConfig(uint8_t(index));
    profile = index;
    emit PostMsg::instance()->SigAddConfig(ui->ProjectChoose->currentText());
}

// ---- The whole device ---------------------------------------------------------------------------

void Buttoninterface::on_Reset_clicked() { runFactoryReset(this); }

void Buttoninterface::on_ImportData_clicked() { runImageImport(this); }

void Buttoninterface::SlotAllLanguage(int index)
{
    ConfigPrefix = language::choice("ProfileOptions", QStringLiteral("0"), index).remove(QLatin1Char('1'));
    ui->label_8->setText(language::text(language::Section::key, "configName", index));
    ui->ImportData->setText(language::text(language::Section::key, "Import", index));
    ui->Reset->setText(language::text(language::Section::Settings, "Restore", index));
    const QSignalBlocker silent(ui->ProjectChoose);
    fillProfiles(ui->ProjectChoose->count());
    ui->ProjectChoose->setCurrentIndex(profile);
}
