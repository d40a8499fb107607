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

enum EffectMode { EffectOff, EffectSteady, EffectBreathing };

void setTextOf(QLabel *label, const QString &text)
{
    if (!text.isEmpty())
        label->setText(text);
}

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
    const auto mouse = LightScale::Owner::Mouse;
    speed_ = {{ui->speedCaption, ui->SpeedH, ui->SpeedSpinBox, ui->SpeedPlaceholder}, mouse};
    light_ = {{ui->lightCaption, ui->LightH, ui->LightSpinBox, ui->LightPlaceholder}, mouse};
    showMode(EffectOff);
    onFirstShow(this, [this] { applyStyle(); });
}

SensorEffect::~SensorEffect() = default;

void SensorEffect::applyStyle()
{
    ui->title->setStyleSheet(style::heading());
    styleComboBox(ui->Model, style::pictureFolder(QStringLiteral("Sensor")));
    speed_.applyStyle();
    light_.applyStyle();
}

// ---- What is shown ------------------------------------------------------------------------------

void SensorEffect::showMode(int mode)
{
    speed_.setShown(mode == EffectBreathing);
    light_.setShown(mode == EffectSteady);
}

void SensorEffect::SetModel(int mode)
{
    const QSignalBlocker silent(ui->Model);
    lastMode_ = mode;
    ui->Model->setCurrentIndex(mode);
    showMode(mode);
}

void SensorEffect::SetSpeed(int value) { speed_.set(value); }

void SensorEffect::SetLight(int value) { light_.set(value); }

void SensorEffect::SetEffect(const FlashDataMap &map)
{
    setEnabled(true);
    speed_.setEnabled(true);
    light_.setEnabled(true);
    if (map.DpiLedEnable == 0)
        SetModel(EffectOff);
    else if (map.DpiLedMode == EffectSteady || map.DpiLedMode == EffectBreathing)
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

void SensorEffect::on_SpeedH_sliderMoved(int position) { speed_.follow(position); }
void SensorEffect::on_LightH_sliderMoved(int position) { light_.follow(position); }

void SensorEffect::on_SpeedH_valueChanged(int value)
{
    speed_.change(SensorPageBusy, value, [value] { return SetDpiLedSpeed(uint8_t(value)); });
}

void SensorEffect::on_LightH_valueChanged(int value)
{
    light_.change(SensorPageBusy, value,
                  [value] { return SetDpiLedBrightness(BrightnessCurve[std::size_t(value - 1)]); });
}

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
