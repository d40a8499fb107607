// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/Sensor.h"

#include "app/hub/PostMsg.h"
#include "device/DeviceState.h"
#include "presentation/FirstShow.h"
#include "presentation/PageSurface.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "ui_Sensor.h"

namespace
{
// A mouse on its cable does not run at these, whatever its flash says.
constexpr bool tooFastForCable(uint8_t code) { return code == 16 || code == 32; }
} // namespace

Sensor::Sensor(QWidget *parent) : QWidget(parent), ui(std::make_unique<Ui::Sensor>())
{
    ui->setupUi(this);
    setAccessibleName(QStringLiteral("Sensor"));
    onFirstShow(this, [this] {
        ui->frameSensor->setStyleSheet(style::dialogBackground(style::pictureFolder(QStringLiteral("Sensor")),
                                                               QStringLiteral("frameSensor")));
    });
    listen();
    SlotAllLanguage(LanguageIndex);
}

Sensor::~Sensor() = default;

void Sensor::listen()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigUpDataLightSensor(FlashDataMap)), this,
            SLOT(SlotUpDataSenSorUISensor(FlashDataMap)), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigFormReset()), this, SLOT(SlotFormReset()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataReportRate(int)), this, SLOT(SlotUpDataReportRate(int)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigUpDataSensorUIB(FlashDataMap)), this, SLOT(SlotUpDataSenSorUIB(FlashDataMap)));
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
}

void Sensor::SlotUpDataSenSorUISensor(FlashDataMap DataMap)
{
    SensorPageLoaded = false;
    paint(DataMap);
    SensorPageLoaded = true;
}

void Sensor::SlotUpDataSenSorUIB(FlashDataMap DataMap) { paint(DataMap); }

void Sensor::paint(const FlashDataMap &map)
{
    const PageFilling filling(SensorPageBusy);
    paintRate(map.ReportRate);
    ui->sensorRate->SetRateVisibility(rateLevelOf(SelectedDevice::info().DeviceKind));
}

void Sensor::paintRate(uint8_t code)
{
    ui->sensorRate->SetRate(rateIndexOf(code));
    if (SelectedDevice::info().Usb && tooFastForCable(code))
        ui->sensorRate->SetRate(Rate1000);
}

void Sensor::SlotUpDataReportRate(int code) { ui->sensorRate->SetRate(rateIndexOf(code)); }

void Sensor::SlotFormReset()
{
    const PageFilling filling(SensorPageBusy);
    const int level = rateLevelOf(SelectedDevice::info().DeviceKind);
    if (level < 0)
        return;
    ui->sensorRate->SetRateVisibility(level);
    ui->sensorRate->SetRate(Rate1000);
}

void Sensor::SlotAllLanguage(int index)
{
    ui->sensorRate->setTitle(language::text(language::Section::sensor, "ReportRate", index));
}
