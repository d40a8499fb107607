// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the page paints into the DPI editor.
#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceState.h"
#include "sensor/MarkerTrack.h"
#include "sensor/SensorDPI.h"
#include "ui_SensorDPI.h"

namespace
{
constexpr int StopRadius = 4; // of the track's stops, each at the middle of a stage
}

void SensorDPI::setTitle(const QString &title) { ui->label->setText(title); }

void SensorDPI::SetStageText(int stage, const QString &text)
{
    if (isStage(stage))
        row_->setText(stage, text);
}

void SensorDPI::SetStageColor(int stage, const QString &color)
{
    if (isStage(stage))
        row_->setColor(stage, listedColor(QColor(color)));
}

void SensorDPI::ShowStages(int lastIndex)
{
    const int last = qBound(0, lastIndex, DpiStageLimit - 1);
    row_->show(last);
    ui->groove->resize(MarkerPitch * last + 2 * StopRadius, ui->groove->height());
}

void SensorDPI::SelectStage(int stage)
{
    if (!isStage(stage))
        return;
    CurrentStage_ = LastStage_ = stage;
    showStage(stage);
    ArmWrite_ = true; // nothing of this was sent, so the slider's next change is the user's
}

void SensorDPI::RestyleStages() { row_->selectOnly(CurrentStage_); }

void SensorDPI::ResetDefaults()
{
    const DeviceCatalogue catalogue;
    const int model = SelectedDevice::info().DriveIndex;
    const QStringList colors = catalogue.list(model, "DPIColor");
    for (int stage = 0; stage < DpiStageLimit && 3 * stage + 2 < colors.size(); ++stage)
        row_->setColor(stage, QStringList(colors.mid(3 * stage, 3)).join(QLatin1Char(',')));
    const QStringList texts = catalogue.list(model, "DPIGrade");
    if (texts.size() < DpiStageLimit)
        return;
    for (int stage = 0; stage < DpiStageLimit; ++stage) {
        row_->selectButton(stage, false);
        row_->setText(stage, texts[stage]);
    }
}

void SensorDPI::setMaximum(int dpi) { ui->horizontalSliderC->setMaximum(dpi); }

void SensorDPI::setMinimum(int dpi) { ui->horizontalSliderC->setMinimum(dpi); }

void SensorDPI::SetSliderValue(int dpi) { ui->horizontalSliderC->setValue(dpi); }

void SensorDPI::SetSpinValue(int dpi) { ui->spinBoxA->setValue(dpi); }

void SensorDPI::SetSliderEnabled(bool enabled) { ui->horizontalSliderC->setEnabled(enabled); }

void SensorDPI::BlockSlider(bool blocked) { ui->horizontalSliderC->blockSignals(blocked); }

void SensorDPI::BlockStages(bool blocked) { row_->blockSignals(blocked); }

void SensorDPI::BlockChoice(bool blocked) { ui->ChooseEvent->blockSignals(blocked); }

void SensorDPI::ClearChoices() { ui->ChooseEvent->clear(); }

void SensorDPI::InsertChoice(int index, const QString &text) { ui->ChooseEvent->insertItem(index, text); }

void SensorDPI::SetChoice(int index)
{
    const QSignalBlocker quiet(ui->ChooseEvent);
    ui->ChooseEvent->setCurrentIndex(index);
    ChooseIndex_ = ui->ChooseEvent->currentIndex();
}
