// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/dialogs/FireKey.h"

#include "ui_FireKey.h"

using language::Section;

FireKey::FireKey()
    : InputDialog({{"label_3", Section::key, "DialogFireKeyTips"},
                   {"label", Section::key, "DialogFireKeyInterval"},
                   {"label_2", Section::key, "DialogFireKeyTimes"}})
    , ui(std::make_unique<Ui::FireKey>())
{
    ui->setupUi(this);
    finishForm();
    ui->Time->setFocus();
}

FireKey::~FireKey() = default;

void FireKey::setValues(int interval, int count)
{
    ui->Time->setValue(interval);
    ui->Count->setValue(count);
}

int FireKey::interval() const { return ui->Time->value(); }

int FireKey::count() const { return ui->Count->value(); }
