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
    if (!touched || *touched == name)
        return;
    before = std::exchange(name, *touched);
    ui->lineEdit->setText(name);
}

void addKey::fieldLeft()
{
    name = before;
    ui->lineEdit->setText(name);
}
