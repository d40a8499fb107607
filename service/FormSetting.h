// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FormSetting: the page of the program's and the device's settings. Main thread.
#pragma once

#include "presentation/PageSurface.h"

class FormSetting : public PageSurface
{
    Q_OBJECT

public:
    explicit FormSetting(QWidget *parent = nullptr);
};
