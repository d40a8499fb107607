// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// How the page shows a record, and what it shows without one. The order of the steps counts: the last ones
// win over those before them.
#include "catalogue/DeviceCatalogue.h"
#include "catalogue/DpiCodes.h"
#include "device/DeviceState.h"
#include "hub/PostMsg.h"
#include "presentation/PageSurface.h"
#include "sensor/PerformanceTimes.h"
#include "sensor/Sensor.h"
#include "ui_Sensor.h"

#include <algorithm>

namespace
{

constexpr int PlainModel = 2; // of the key XIn1: rates and stages are all that this model has
constexpr int ResetMaximum = 42000;
constexpr int ResetMinimum = 50;
constexpr int ResetStages = 6;
constexpr int ResetStage = 1;
constexpr int ResetDpi = 2400;
constexpr int ResetOverviewDpi = 800; // not that of the slider: the overview shows what a new mouse has
constexpr int ResetTimeIndex = 2;
constexpr int ResetTimeFallback = 1;

constexpr char SmallLodSensor[] = "3950";

// A mouse on its cable does not run at these, whatever its flash says.
constexpr bool tooFastForCable(uint8_t code) { return code == 16 || code == 32; }

bool fixesMode(uint8_t code)
{
    const int index = rateIndexOf(code);
    return index >= 0 && RateRows[std::size_t(index)].hidesModel;
}

QString colorText(const DpiStage &stage) { return QColor(stage.Red, stage.Green, stage.Blue).name(); }

// No record holds more, whatever the catalogue claims.
int stagesOf(const DeviceAllInfo &info)
{
    return qBound(0, DeviceCatalogue().number(info.DriveIndex, "DPIMaxGrade"), DpiStageLimit);
}

} // namespace

void Sensor::paint(const FlashDataMap &map)
{
    const DeviceAllInfo info = SelectedDevice::info();
    const DeviceCatalogue catalogue;
    const int stages = stagesOf(info);
    const PageFilling filling(SensorPageBusy);
    silenceStages(true);
    ui->sensorDPI->ClearChoices();
    ui->sensorDPI->SetStageCount(map.DpiStageCount);
    if (map.CurrentDpiStage < DpiStageLimit)
        ui->sensorDPI->SetCurrentStage(map.CurrentDpiStage);
    paintRate(map.ReportRate, info.Usb);
    SensorName = catalogue.text(info.DriveIndex, "Sensor");
    offerSmallLod(SensorName == QLatin1String(SmallLodSensor));
    paintMode(map, info);
    ui->sensorLOD->SetLod(map.LiftOffDistance - 1);
    paintPerformance(map);
    ui->rippeControl->SetChecked(map.RippeControl != 0);
    ui->straightLine->SetChecked(map.StraightLine != 0);
    ui->motionSync->SetChecked(map.MotionSync != 0);
    paintStageColors(map, stages);
    showSettings(catalogue.number(info.DriveIndex, "XIn1") != PlainModel);
    ReadDpiRange(info.DriveIndex);
    ui->sensorDPI->setMaximum(SensorRanges.DpiSliderMax);
    ui->sensorDPI->setMinimum(SensorRanges.DpiSliderMin);
    paintStageValues(map, stages);
    ui->sensorDPI->ShowStages(map.DpiStageCount - 1);
    ui->sensorDPI->SetChoice(map.DpiStageCount - 1);
    ui->sensorDPI->SelectStage(map.CurrentDpiStage);
    ui->sensorRate->SetRateVisibility(rateLevelOf(info.DeviceKind));
    gateByCapability();
    silenceStages(false);
}

// A refresh sends nothing; the slider that an edit without an answer has disabled is usable again.
void Sensor::silenceStages(bool silent)
{
    ui->sensorDPI->SetSliderEnabled(true);
    ui->sensorDPI->BlockSlider(silent);
    ui->sensorDPI->BlockStages(silent);
    ui->sensorDPI->BlockChoice(silent);
}

void Sensor::paintRate(uint8_t code, bool wired)
{
    ui->sensorRate->SetRate(rateIndexOf(code));
    if (wired && tooFastForCable(code))
        ui->sensorRate->SetRate(Rate1000);
}

void Sensor::offerSmallLod(bool offered)
{
    if (offered)
        ui->sensorLOD->AddSmallLod();
    else
        ui->sensorLOD->RemoveSmallLod();
}

void Sensor::paintMode(const FlashDataMap &map, const DeviceAllInfo &info)
{
    if (!modeSelectable()) {
        ui->sensorDPI->SetChoice(0);
        ui->ModelChoose->setEnabled(false);
    } else if (info.Usb || (connectionKind(info.DeviceKind) > 1 && fixesMode(map.ReportRate))) {
        lockMode();
    } else {
        freeMode(map.ModelChoose);
    }
}

void Sensor::paintPerformance(const FlashDataMap &map)
{
    const bool on = map.Performance != 0;
    ui->Performance->setChecked(on);
    ui->PerformanceOpen->setEnabled(on);
    emit PostMsg::instance()->Sig20KOpen(on);
    const int index = performanceIndexOf(map.PerformanceOpen);
    if (index < 0)
        return;
    ui->PerformanceOpen->setCurrentIndex(index);
    PerformanceIndex_ = index;
}

void Sensor::paintStageColors(const FlashDataMap &map, int stages)
{
    for (int i = 0; i < stages; ++i) {
        ui->sensorDPI->SetStageColor(i, colorText(map.DpiStages[i]));
        ui->sensorDPI->InsertChoice(i, QString::number(i + 1));
    }
    ui->sensorDPI->RestyleStages();
}

void Sensor::paintStageValues(const FlashDataMap &map, int stages)
{
    for (int i = 0; i < stages; ++i) {
        const DpiStage &stage = map.DpiStages[i];
        const int value = SensorDpiDecode(stage.LevelX, stage.LevelFlags);
        ui->sensorDPI->SetStageText(i, QString::number(value));
        if (i == map.CurrentDpiStage)
            showDpi(value, value);
    }
}

void Sensor::showDpi(int shown, int announced)
{
    emit PostMsg::instance()->SigAddSensor(announced);
    ui->sensorDPI->SetSliderValue(shown);
    ui->sensorDPI->SetSpinValue(shown);
}

// ---- Which settings there are -------------------------------------------------------------------

void Sensor::showSettings(bool shown)
{
    for (QWidget *widget : settings())
        widget->setVisible(shown);
}

// What a sensor can do counts for more than what its model wants to show.
void Sensor::gateByCapability()
{
    ui->sensorLOD->setLodEnabled(capabilities_.LodSupport.contains(SensorName));
    ui->rippeControl->setVisible(capabilities_.RippleSupport.contains(SensorName));
    ui->straightLine->setVisible(capabilities_.FixLineSupport.contains(SensorName));
    ui->motionSync->setVisible(capabilities_.MotionSyncSupport.contains(SensorName));
    const auto all = settings();
    ui->settingsCard->setVisible(
        std::any_of(all.begin(), all.end(), [](const QWidget *widget) { return !widget->isHidden(); }));
}

std::array<QWidget *, 12> Sensor::settings() const
{
    return {ui->TitleButton_3,   ui->label_10,     ui->TitleButton_4, ui->label_11,
            ui->ModelChoose,     ui->sensorLOD,    ui->Performance,   ui->performanceTip,
            ui->PerformanceOpen, ui->rippeControl, ui->straightLine,  ui->motionSync};
}

// ---- Without a device ---------------------------------------------------------------------------

void Sensor::SlotFormReset()
{
    const PageFilling filling(SensorPageBusy);
    silenceStages(true);
    resetStages();
    showDpi(ResetDpi, ResetOverviewDpi);
    resetByKind(SelectedDevice::info());
    ui->PerformanceOpen->setCurrentIndex(ResetTimeIndex);
    PerformanceIndex_ = ResetTimeFallback;
    ui->sensorLOD->SetLod(0);
    ui->Performance->setEnabled(true);
    ui->Performance->setChecked(false);
    emit PostMsg::instance()->Sig20KOpen(false);
    ui->PerformanceOpen->setEnabled(false);
    ui->motionSync->SetChecked(true);
    ui->straightLine->SetChecked(false);
    ui->rippeControl->SetChecked(false);
    silenceStages(false);
}

void Sensor::resetStages()
{
    ui->sensorDPI->setMaximum(ResetMaximum);
    ui->sensorDPI->setMinimum(ResetMinimum);
    ui->sensorDPI->ResetDefaults();
    ui->sensorDPI->ClearChoices();
    for (int i = 0; i < ResetStages; ++i)
        ui->sensorDPI->InsertChoice(i, QString::number(i + 1));
    ui->sensorDPI->ShowStages(ResetStages - 1);
    ui->sensorDPI->SetChoice(ResetStages - 1);
    ui->sensorDPI->SelectStage(ResetStage);
}

void Sensor::resetByKind(const DeviceAllInfo &info)
{
    const int level = rateLevelOf(info.DeviceKind);
    if (level >= 0) {
        ui->sensorRate->SetRateVisibility(level);
        setMode(level == 0 ? LowPower : Corded);
        ui->sensorRate->SetRate(Rate1000);
    }
    if (info.Usb)
        setMode(Corded);
}
