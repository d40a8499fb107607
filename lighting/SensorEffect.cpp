// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/SensorEffect.h"

#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "presentation/Edit.h"
#include "presentation/FirstShow.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "ui_SensorEffect.h"

namespace
{

enum Mode { Off, Steady, Breathing };

void setTextOf(QLabel *label, const QString &text)
{
    if (!text.isEmpty())
        label->setText(text);
}

bool writeSpeed(int value) { return SetDpiLedSpeed(uint8_t(value)); }
bool writeLight(int value) { return SetDpiLedBrightness(BrightnessCurve[std::size_t(value - 1)]); }

} // namespace

int brightnessOf(uint8_t code)
{
    for (std::size_t i = 0; i < BrightnessCurve.size(); ++i)
        if (BrightnessCurve[i] == code)
            return int(i) + 1;
    return 1;
}

SensorEffect::SensorEffect(QWidget *parent) : QFrame(parent), ui(std::make_unique<Ui::SensorEffect>())
{
    ui->setupUi(this);
    speed_ = {ui->speedCaption, ui->SpeedH, ui->SpeedSpinBox, ui->SpeedPlaceholder, Breathing};
    light_ = {ui->lightCaption, ui->LightH, ui->LightSpinBox, ui->LightPlaceholder, Steady};
    showMode(Off);
    onFirstShow(this, [this] { applyStyle(); });
}

SensorEffect::~SensorEffect() = default;

void SensorEffect::applyStyle()
{
    ui->title->setStyleSheet(style::heading());
    styleComboBox(ui->Model, style::pictureFolder(QStringLiteral("Sensor")));
    for (const Scale &scale : {speed_, light_}) {
        scale.caption->setStyleSheet(style::caption());
        scale.slider->setStyleSheet(style::slider());
        scale.spinBox->setStyleSheet(style::readout());
        scale.placeholder->setStyleSheet(style::emptySlider());
    }
}

// ---- What is shown ------------------------------------------------------------------------------

void SensorEffect::showMode(int mode)
{
    for (const Scale &scale : {speed_, light_}) {
        const bool shown = scale.shownInMode == mode;
        scale.caption->setEnabled(shown);
        scale.slider->setVisible(shown);
        scale.spinBox->setVisible(shown);
        scale.placeholder->setVisible(!shown);
    }
}

void SensorEffect::set(const Scale &scale, int value)
{
    const QSignalBlocker silent(scale.slider);
    scale.slider->setValue(value);
    scale.spinBox->setValue(value);
}

void SensorEffect::SetModel(int mode)
{
    const QSignalBlocker silent(ui->Model);
    lastMode_ = mode;
    ui->Model->setCurrentIndex(mode);
    showMode(mode);
}

void SensorEffect::SetSpeed(int value) { set(speed_, value); }

void SensorEffect::SetLight(int value) { set(light_, value); }

void SensorEffect::SetEffect(const FlashDataMap &map)
{
    setEnabled(true);
    speed_.slider->setEnabled(true);
    light_.slider->setEnabled(true);
    if (map.DpiLedEnable == 0)
        SetModel(Off);
    else if (map.DpiLedMode == Steady || map.DpiLedMode == Breathing)
        SetModel(map.DpiLedMode);
    SetSpeed(map.DpiLedSpeed);
    SetLight(brightnessOf(map.DpiLedBrightness));
}

// ---- What the user changes --------------------------------------------------------------------

void SensorEffect::on_Model_currentIndexChanged(int index)
{
    const EditResult result = edit(
        SensorPageBusy, ui->Model, [index] { return SetDpiLedMode(uint8_t(index)); },
        [this] { SetModel(lastMode_); });
    if (result == EditResult::Written)
        lastMode_ = index;
    if (result != EditResult::Refused)
        showMode(index);
}

void SensorEffect::follow(const Scale &scale, int position)
{
    if (scale.slider->enabledBy(CheckOnline))
        scale.spinBox->setValue(position);
    else
        scale.slider->giveBack(scale.spinBox->value());
}

void SensorEffect::change(const Scale &scale, int value, bool (*write)(int value))
{
    const auto giveBack = [&scale] { scale.slider->giveBack(scale.spinBox->value()); };
    if (!scale.slider->isEnabled())
        giveBack();
    else if (edit(
                 SensorPageBusy, scale.slider, [=] { return write(value); }, giveBack) == EditResult::Written)
        scale.spinBox->setValue(value);
}

void SensorEffect::on_SpeedH_sliderMoved(int position) { follow(speed_, position); }
void SensorEffect::on_LightH_sliderMoved(int position) { follow(light_, position); }
void SensorEffect::on_SpeedH_valueChanged(int value) { change(speed_, value, writeSpeed); }
void SensorEffect::on_LightH_valueChanged(int value) { change(light_, value, writeLight); }

// ---- Texts --------------------------------------------------------------------------------------

void SensorEffect::SlotAllLanguage(int index)
{
    using namespace language;
    setTextOf(ui->title, text(Section::light, "DPIEffect", index));
    setTextOf(ui->lightCaption, text(Section::light, "Brightness", index));
    setTextOf(ui->speedCaption, text(Section::light, "Speed", index));
    for (int i = 0; i < ui->Model->count(); ++i) {
        const QString mode = choice("DPIEffectOptions", QString::number(i), index);
        if (!mode.isEmpty())
            ui->Model->setItemText(i, mode);
    }
}
