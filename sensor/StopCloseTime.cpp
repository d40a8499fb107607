// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/StopCloseTime.h"

#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "presentation/Edit.h"
#include "presentation/FirstShow.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "ui_StopCloseTime.h"

int sleepIndexOf(uint8_t code)
{
    for (int i = 0; i < SleepItems; ++i)
        if (SleepCodes[std::size_t(i)] == code)
            return i;
    return -1;
}

StopCloseTime::StopCloseTime(QWidget *parent) : QFrame(parent), ui(std::make_unique<Ui::StopCloseTime>())
{
    ui->setupUi(this);
    onFirstShow(this,
                [this] { styleComboBox(ui->StopClose, style::pictureFolder(QStringLiteral("Advanced"))); });
}

StopCloseTime::~StopCloseTime() = default;

void StopCloseTime::SetStopClose(int index)
{
    if (index < 0 || index >= SleepItems)
        return;
    lastIndex_ = index;
    const QSignalBlocker silent(ui->StopClose);
    ui->StopClose->setCurrentIndex(index);
}

void StopCloseTime::setItemText(int index, const QString &text)
{
    if (!text.isEmpty())
        ui->StopClose->setItemText(index, text);
}

QComboBox *StopCloseTime::box() const { return ui->StopClose; }

// Tests the flag of the page of buttons although the panel lies on the advanced page.
void StopCloseTime::on_StopClose_activated(int index)
{
    if (index < 0 || index >= int(SleepCodes.size()))
        return;
    if (edit(
            ButtonPageBusy, ui->StopClose,
            [index] { return SetStopCloseTime(SleepCodes[std::size_t(index)]); },
            [this] { SetStopClose(lastIndex_); }) == EditResult::Written)
        lastIndex_ = index;
}
