// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/SwitchPanel.h"

#include "device/DeviceState.h"
#include "presentation/Edit.h"
#include "presentation/FirstShow.h"
#include "presentation/Motion.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "sensor/Tip.h"
#include "ui_SwitchPanel.h"

namespace
{

constexpr int CaptionGap = 4; // pixels
constexpr char PictureAtRight[] = "QLabel{background-position: right center;}";
constexpr int TipRight[] = {191, 166, 116, 191};           // as tipX: the rightmost tip and its 16 pixels
constexpr int TipXOfLanguage[] = {0, 1, 1, 2, 3, 3, 3, 3}; // of tipX, by language

} // namespace

SwitchPanel::SwitchPanel(const SwitchRow &rowOfPanel, QWidget *parent)
    : QFrame(parent), row_(rowOfPanel), ui(std::make_unique<Ui::SwitchPanel>())
{
    ui->setupUi(this);
    ui->button->setObjectName(QLatin1String(row_.buttonName));
    ui->caption->setText(QString::fromUtf8(row_.defaultCaption));
    ui->button->setAccessibleName(ui->caption->text());
    placeTip(0);
    onFirstShow(this, [this] { applyStyle(); });
}

SwitchPanel::~SwitchPanel() = default;

void SwitchPanel::applyStyle()
{
    const QString folder = style::pictureFolder(QStringLiteral("Sensor"));
    ui->button->setStyleSheet(style::switchButton(folder));
    switchSoftly(ui->button, folder);
    ui->caption->setStyleSheet(style::label(style::color("LabelColor")));
    styleTip(ui->tip);
    ui->tip->setStyleSheet(ui->tip->styleSheet() + QLatin1String(PictureAtRight));
}

QToolButton *SwitchPanel::button() const { return ui->button; }

void SwitchPanel::SetChecked(bool checked)
{
    const QSignalBlocker silent(ui->button);
    ui->button->setChecked(checked);
}

void SwitchPanel::choose(bool checked)
{
    edit(
        SensorPageBusy, ui->button, [this, checked] { return row_.write(checked ? 1 : 0); },
        [this, checked] { SetChecked(!checked); });
}

void SwitchPanel::SlotAllLanguage(int index)
{
    using namespace language;
    const QString caption = text(Section::sensor, row_.captionKey, index);
    if (!caption.isEmpty()) {
        ui->caption->setText(caption);
        ui->button->setAccessibleName(caption);
    }
    setTip(ui->tip, ui->button, text(Section::sensor, row_.tipKey, index));
    if (index >= 0 && index < int(std::size(TipXOfLanguage)))
        placeTip(TipXOfLanguage[index]);
}

// The caption ends where the tip begins. The tips of the panels begin at different places and end at the same
// one, where their pictures stand.
void SwitchPanel::placeTip(int width)
{
    const int x = row_.tipX[width];
    ui->tip->setGeometry(x, ui->tip->y(), TipRight[width] - x, ui->tip->height());
    ui->caption->resize(x - CaptionGap - ui->caption->x(), ui->caption->height());
}
