// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The process-wide state of an upgrade. The layer's upgrade thread and the main thread read and write it.
#pragma once

#include "device/DeviceFlag.h"

#include <cstdint>

constexpr int BootLoaderLimit = 5; // a search counts no more

// What the second number of SigProgress tells.
enum class Progress : int {
    Percent,
    Failed,
    Succeeded,
    NoCancel,
    NoCancelAtStart,
    FailedHalfWay,
    RepairFailed
};

enum class UpgradeStatus : uint8_t { None, Running, Succeeded, Failed, NothingToDo };

inline DeviceFlag<UpgradeStatus> ReceiverStatus{UpgradeStatus::None}; // outcome of the receiver's last step
inline DeviceFlag<UpgradeStatus> MouseStatus{UpgradeStatus::None};
inline DeviceFlag<bool> ReceiverNew{false}; // the last check has found firmware for the receiver
inline DeviceFlag<bool> MouseNew{false};
inline DeviceFlag<int32_t> Stages{1};      // targets of this upgrade; 2 splits the bar at 50
inline DeviceFlag<int32_t> UpgradeKind{0}; // class of the receiver in the upgrade: 1, 2, 4 or 8
inline DeviceFlag<int32_t> UpgradeCid{0};  // for UpdateFailInfo, as the next two
inline DeviceFlag<int32_t> UpgradeMid{0};
inline DeviceFlag<int32_t> UpgradeTarget{0};
inline DeviceFlag<bool> RepairRunning{false}; // from the start of a repair to its result
inline DeviceFlag<bool> RepairBusy{false};    // a repair has begun to write
