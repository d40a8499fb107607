// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/dialogs/addKey.h"

#include "keys/KeyVocabulary.h"
#include "ui_addKey.h"

addKey::addKey()
    : KeyDialog({{"label", language::Section::home, "EnterKey"}}), ui(std::make_unique<Ui::addKey>())
{
    ui->setupUi(this);
    finishKeyForm();
}

addKey::~addKey() = default;

void addKey::UpdateCapslockTip(int keyCode, bool, bool)
{
    const std::optional<QString> touched = KeyNameFromVirtualKey(keyCode);
    if (!touched || *touched == name_)
        return;
    before_ = std::exchange(name_, *touched);
    ui->lineEdit->setText(name_);
}

void addKey::fieldLeft()
{
    name_ = before_;
    ui->lineEdit->setText(name_);
}
