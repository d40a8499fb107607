// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/DebounceTime.h"

#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "hub/PostMsg.h"
#include "presentation/Edit.h"
#include "presentation/FirstShow.h"
#include "presentation/NamedWidgets.h"
#include "presentation/Notices.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "ui_DebounceTime.h"

namespace
{

// From the panel in the corner of its page to the page's middle.
constexpr QPoint WarningOffset{-409, -202};

} // namespace

DebounceTime::DebounceTime(QWidget *parent) : QFrame(parent), ui(std::make_unique<Ui::DebounceTime>())
{
    ui->setupUi(this);
    onFirstShow(this, [this] {
        styleComboBox(ui->Debunce, style::pictureFolder(QStringLiteral("Buttoninterface")));
    });
}

DebounceTime::~DebounceTime() = default;

void DebounceTime::showIndex(int index)
{
    const QSignalBlocker silent(ui->Debunce);
    ui->Debunce->setCurrentIndex(index);
}

void DebounceTime::tellShown() { emit PostMsg::instance()->SigDebunce(ui->Debunce->currentText()); }

void DebounceTime::SetDebounce(int index)
{
    lastIndex_ = index;
    showIndex(index);
    tellShown();
}

void DebounceTime::on_Debunce_currentIndexChanged(int index)
{
    if (index < 0)
        return;
    if (edit(
            ui->Debunce, [index] { return SetDebounceTime(uint8_t(index)); },
            [this] { showIndex(lastIndex_); }) != EditResult::Written)
        return;
    lastIndex_ = index;
    tellShown();
    if (index < SafeDebounce && !ButtonPageBusy)
        warnOfDoubleClicks();
}

void DebounceTime::warnOfDoubleClicks() { notice::ask<LessThree>(this, WarningOffset); }

void DebounceTime::SlotAllLanguage(int index)
{
    const QString name = language::text(language::Section::key, "DebounceTime", index);
    if (!name.isEmpty())
        nameControl(ui->Debunce, name);
    for (int i = 0; i < DebounceItems; ++i)
        ui->Debunce->setItemText(i, QString::number(i) + QStringLiteral("ms"));
}
