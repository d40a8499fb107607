// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// MotionSync: the switch that takes readings of the sensor at the moment the computer asks for them. Main
// thread.
#pragma once

#include "sensor/SwitchPanel.h"

class MotionSync : public SwitchPanel
{
    Q_OBJECT

public:
    explicit MotionSync(QWidget *parent = nullptr);

public slots:
    void on_MotionSync_2_clicked(bool checked) { choose(checked); }
};
