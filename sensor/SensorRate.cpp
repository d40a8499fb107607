// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/SensorRate.h"

#include "catalogue/DeviceKinds.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "hub/PostMsg.h"
#include "presentation/Edit.h"
#include "presentation/FirstShow.h"
#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"
#include "ui_SensorRate.h"

namespace
{

struct LevelRow {
    int kHz;       // the fastest rate of the device
    bool shows[3]; // 2000, 4000, 8000
};
constexpr LevelRow LevelRows[] = {
    {1, {false, false, false}}, {4, {true, true, false}}, {2, {true, false, false}}, {8, {true, true, true}}};
constexpr int FirstFastRate = 4;

} // namespace

int rateIndexOf(int code)
{
    for (std::size_t i = 0; i < RateRows.size(); ++i)
        if (RateRows[i].code == code)
            return int(i);
    return -1;
}

int rateLevelOf(int code)
{
    for (std::size_t i = 0; i < std::size(LevelRows); ++i)
        if (LevelRows[i].kHz == deviceKind(code).kHz)
            return int(i);
    return -1;
}

SensorRate::SensorRate(QWidget *parent) : QFrame(parent), ui(std::make_unique<Ui::SensorRate>())
{
    ui->setupUi(this);
    buttons_ = {ui->Button125HZ,  ui->Button250HZ,  ui->Button500HZ, ui->Button1000HZ,
                ui->Button2000HZ, ui->Button4000HZ, ui->Button8000HZ};
    tabEntersAtChecked({buttons_.begin(), buttons_.end()});
    onFirstShow(this, [this] { applyStyle(); });
}

void SensorRate::applyStyle()
{
    const QString folder = style::pictureFolder(QStringLiteral("Sensor"));
    const QString ink = style::color("ButtonColor");
    const QString sheet = style::stateButton(folder, QStringLiteral("RateButton"), ink, ink);
    for (QToolButton *button : buttons_)
        button->setStyleSheet(sheet);
    ui->label->setStyleSheet(style::heading());
}

SensorRate::~SensorRate() = default;

void SensorRate::setTitle(const QString &title)
{
    if (!title.isEmpty())
        ui->label->setText(title);
}

void SensorRate::SetRate(int index)
{
    if (index < 0 || index >= int(buttons_.size()))
        return;
    lastIndex_ = index;
    button(index)->setChecked(true);
    emit PostMsg::instance()->SigAddReport(RateRows[std::size_t(index)].hertz);
}

void SensorRate::SetRateVisibility(int level)
{
    if (level < 0 || level >= int(std::size(LevelRows)))
        return;
    for (int i = 0; i < 3; ++i)
        button(FirstFastRate + i)->setVisible(LevelRows[level].shows[i]);
}

void SensorRate::choose(int index, bool checked)
{
    if (!checked)
        return;
    const RateRow &row = RateRows[std::size_t(index)];
    if (edit(
            SensorPageBusy, button(index), [&row] { return SetReportRate(row.code); },
            [this] { SetRate(lastIndex_); }) != EditResult::Written)
        return;
    lastIndex_ = index;
    emit PostMsg::instance()->SigAddReport(row.hertz);
    emit PostMsg::instance()->SigHideModel(row.hidesModel);
}
