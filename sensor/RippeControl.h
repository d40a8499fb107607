// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// RippeControl: the switch that smooths the jitter of a sensor at high DPI. Main thread.
#pragma once

#include "sensor/SwitchPanel.h"

class RippeControl : public SwitchPanel
{
    Q_OBJECT

public:
    explicit RippeControl(QWidget *parent = nullptr);

public slots:
    void on_RippeControl_2_clicked(bool checked) { choose(checked); }
};
