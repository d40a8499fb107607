// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/MotionSync.h"

#include "device/WriteFamily.h"

namespace
{
constexpr SwitchRow MotionSyncRow = {"MotionSync_2",   "motion sync",        "MotionSync",
                                     "MotionSyncTips", {160, 150, 100, 175}, SetMotionSync};
} // namespace

MotionSync::MotionSync(QWidget *parent) : SwitchPanel(MotionSyncRow, parent)
{
    QMetaObject::connectSlotsByName(this);
}
