// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// StraightLine: the switch that straightens movements that are almost straight. Main thread.
#pragma once

#include "sensor/SwitchPanel.h"

class StraightLine : public SwitchPanel
{
    Q_OBJECT

public:
    explicit StraightLine(QWidget *parent = nullptr);

public slots:
    void on_StraightLine_2_clicked(bool checked) { choose(checked); }
};
