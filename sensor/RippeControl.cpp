// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/RippeControl.h"

#include "device/WriteFamily.h"

namespace
{
constexpr SwitchRow RippleRow = {"RippeControl_2", "波纹控制",           "Ripple",
                                 "RippleTips",     {175, 120, 100, 175}, SetRippeControl};
} // namespace

RippeControl::RippeControl(QWidget *parent) : SwitchPanel(RippleRow, parent)
{
    QMetaObject::connectSlotsByName(this);
}
