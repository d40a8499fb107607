// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/StraightLine.h"

#include "device/WriteFamily.h"

namespace
{
constexpr SwitchRow AngleSnapRow = {"StraightLine_2", "直线修正",           "Angle",
                                    "AngleTips",      {170, 120, 100, 175}, SetStraightLine};
} // namespace

StraightLine::StraightLine(QWidget *parent) : SwitchPanel(AngleSnapRow, parent)
{
    QMetaObject::connectSlotsByName(this);
}
