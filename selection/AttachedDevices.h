// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The devices that the last search found, in its order. Main thread only.
#pragma once

#include "device/record/DeviceAllInfo.h"

#include <optional>
#include <vector>

inline std::vector<DeviceAllInfo> AttachedDevices;     // one for each tile; the index is the tile's number
inline std::vector<DeviceAllInfo> AttachedDevicesCopy; // also the receivers that a cable hides

// The receiver class of the selected device, 1, 2, 4 or 8. A cable leaves it as it was.
inline int CurrentConnectionKind = 0;

// The receiver whose mouse is to be paired, once the selection page has chosen one. Main thread.
inline std::optional<DeviceAllInfo> PairingTarget;
inline void choosePairingTarget(const DeviceAllInfo &device) { PairingTarget = device; }
