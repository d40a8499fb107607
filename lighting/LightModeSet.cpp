// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/LightModeSet.h"

#include "device/DeviceState.h"
#include "hub/PostMsg.h"
#include "lighting/LightTables.h"
#include "lighting/PresetButton.h"
#include "presentation/FirstShow.h"
#include "presentation/NamedWidgets.h"
#include "presentation/ScreenFont.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "ui_LightModeSet.h"

#include <QMouseEvent>

namespace
{

constexpr QPoint PresetPlace{380, 128};
constexpr int PresetPitch = 33;
constexpr int PresetsInRow = 7;
constexpr QSize PresetSize{28, 28};
constexpr char SwatchSheet[] = "QLabel{background-color: rgb(%1,%2,%3);border: 2px solid  rgb(220,220,220);}";

// A text that the tables lack leaves the default of the form.
void setTextOf(QLabel *label, const char *key, int language)
{
    const QString text = language::text(language::Section::light, key, language);
    if (!text.isEmpty())
        label->setText(text);
}

} // namespace

LightModeSet::LightModeSet()
    : PicturePath_(style::pictureFolder(QStringLiteral("ScreeInfo")))
    , ui(std::make_unique<Ui::LightModeSet>())
{
    ui->setupUi(this);
    becomeNotice();
    buildPresets();
    colorControls_.insert(colorControls_.end(),
                          {ui->customCaption, ui->label_6, ui->label_7, ui->preview, ui->presetCaption,
                           ui->labelR, ui->labelG, ui->labelB, ui->RSpinBox, ui->GSpinBox, ui->BSpinBox,
                           ui->AddR, ui->AddG, ui->AddB, ui->ReduceR, ui->ReduceG, ui->ReduceB});
    on_LightMod_currentIndexChanged(LightOff);
    showColor();
    onFirstShow(this, [this] { applyStyle(); });
    connect(PostMsg::instance(), SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    SlotAllLanguage(LanguageIndex);
    scaleFontsToScreen(this);
}

LightModeSet::~LightModeSet() = default;

void LightModeSet::buildPresets()
{
    for (const Preset &preset : Presets) {
        const int number = int(presets_.size());
        auto *button = new PresetButton(QColor(preset.red, preset.green, preset.blue), ui->frame);
        button->setObjectName(QStringLiteral("toolButtonColor") + QLatin1Char(preset.letter));
        button->setGeometry(QRect(
            PresetPlace + QPoint(number % PresetsInRow, number / PresetsInRow) * PresetPitch, PresetSize));
        button->setProperty("nameKey", QString::fromLatin1(preset.nameKey));
        connect(button, &QToolButton::clicked, this, [this, button] { setColor(button->color()); });
        presets_.push_back(button);
        colorControls_.push_back(button);
    }
}

void LightModeSet::applyStyle()
{
    const QString steps = style::pictureFolder(QStringLiteral("Sensor"));
    const QString ink = style::label(style::color("LabelColor"));
    ui->frame->setStyleSheet(style::dialogBackground(PicturePath_, ui->frame->objectName()));
    ui->CloseButton->setStyleSheet(style::titleButton(PicturePath_, QStringLiteral("Close")));
    styleComboBox(ui->LightMod, steps);
    for (QLabel *caption : {ui->brightnessCaption, ui->speedCaption})
        caption->setStyleSheet(style::caption());
    for (QLabel *label :
         {ui->customCaption, ui->presetCaption, ui->label_6, ui->labelR, ui->labelG, ui->labelB})
        label->setStyleSheet(ink);
    for (QLabel *empty : {ui->line, ui->line_2})
        empty->setStyleSheet(style::emptySlider());
    for (QSlider *slider : {ui->horizontalLight, ui->horizontalSpeed})
        slider->setStyleSheet(style::slider());
    for (QSpinBox *box : {ui->LightSpinBox_2, ui->SpeedSpinBox_2})
        box->setStyleSheet(style::readout());
    for (QSpinBox *box : {ui->RSpinBox, ui->GSpinBox, ui->BSpinBox})
        box->setStyleSheet(style::numberBox());
    for (QToolButton *button : {ui->AddR, ui->AddG, ui->AddB})
        button->setStyleSheet(style::titleButton(steps, QStringLiteral("Add")));
    for (QToolButton *button : {ui->ReduceR, ui->ReduceG, ui->ReduceB})
        button->setStyleSheet(style::titleButton(steps, QStringLiteral("Reduce")));
}

// ---- What is shown ------------------------------------------------------------------------------

void LightModeSet::on_LightMod_currentIndexChanged(int index)
{
    if (index < 0 || index >= LightModeCount)
        return;
    const ModeControls &controls = ModeRows[std::size_t(index)];
    ui->brightnessCaption->setEnabled(controls.brightness);
    ui->horizontalLight->setVisible(controls.brightness);
    ui->LightSpinBox_2->setVisible(controls.brightness);
    ui->line->setVisible(!controls.brightness);
    ui->speedCaption->setEnabled(controls.speed);
    ui->horizontalSpeed->setVisible(controls.speed);
    ui->SpeedSpinBox_2->setVisible(controls.speed);
    ui->line_2->setVisible(!controls.speed);
    for (QWidget *control : colorControls_)
        control->setVisible(controls.color);
    showPreview();
}

void LightModeSet::on_horizontalLight_valueChanged(int value)
{
    ui->LightSpinBox_2->setValue(value);
    showPreview();
}

void LightModeSet::on_horizontalSpeed_valueChanged(int value)
{
    ui->SpeedSpinBox_2->setValue(value);
    showPreview();
}

QColor LightModeSet::color() const
{
    return {ui->RSpinBox->value(), ui->GSpinBox->value(), ui->BSpinBox->value()};
}

void LightModeSet::setColor(const QColor &color)
{
    ui->RSpinBox->setValue(color.red());
    ui->GSpinBox->setValue(color.green());
    ui->BSpinBox->setValue(color.blue());
}

void LightModeSet::showColor()
{
    const QColor now = color();
    ui->preview->setStyleSheet(
        QString::fromLatin1(SwatchSheet).arg(now.red()).arg(now.green()).arg(now.blue()));
    ui->label_7->setColor(now);
    for (PresetButton *preset : presets_)
        preset->setChecked(preset->color() == now);
    showPreview();
}

void LightModeSet::showPreview()
{
    ui->lightPreview->setLight(
        {ui->LightMod->currentIndex(), color(), ui->horizontalLight->value(), ui->horizontalSpeed->value()});
}

// ---- Controls -----------------------------------------------------------------------------------

void LightModeSet::on_AddR_clicked() { ui->RSpinBox->stepUp(); }
void LightModeSet::on_AddG_clicked() { ui->GSpinBox->stepUp(); }
void LightModeSet::on_AddB_clicked() { ui->BSpinBox->stepUp(); }
void LightModeSet::on_ReduceR_clicked() { ui->RSpinBox->stepDown(); }
void LightModeSet::on_ReduceG_clicked() { ui->GSpinBox->stepDown(); }
void LightModeSet::on_ReduceB_clicked() { ui->BSpinBox->stepDown(); }

void LightModeSet::mousePressEvent(QMouseEvent *event)
{
    const QColor picked = ui->label_7->colorAt(ui->label_7->mapFrom(this, event->pos()));
    if (ui->label_7->isVisible() && picked.isValid())
        setColor(picked);
    NoticeWindow::mousePressEvent(event);
}

void LightModeSet::on_CloseButton_clicked()
{
    emit PostMsg::instance()->SigButtonCheck();
    close();
}

void LightModeSet::SlotAllLanguage(int index)
{
    nameWidgets(this, index);
    setTextOf(ui->brightnessCaption, "Brightness", index);
    setTextOf(ui->speedCaption, "Speed", index);
    setTextOf(ui->label_6, "Preview", index);
    setTextOf(ui->customCaption, "CustomColor", index);
    setTextOf(ui->presetCaption, "Preset", index);
    setTextOf(ui->labelR, "R:", index);
    setTextOf(ui->labelG, "G:", index);
    setTextOf(ui->labelB, "B:", index);
    for (int i = 0; i < ui->LightMod->count(); ++i) {
        const QString mode = language::choice("LightModeOptions", QString::number(i), index);
        if (!mode.isEmpty())
            ui->LightMod->setItemText(i, mode);
    }
}
