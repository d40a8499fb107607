// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/dialogs/AddDelayTime.h"

#include "ui_AddDelayTime.h"

AddDelayTime::AddDelayTime()
    : InputDialog({{"label", language::Section::home, "EnterDelay"}})
    , ui(std::make_unique<Ui::AddDelayTime>())
{
    ui->setupUi(this);
    finishForm();
    ui->spinBox->setFocus();
}

AddDelayTime::~AddDelayTime() = default;

int AddDelayTime::milliseconds() const { return ui->spinBox->value(); }
