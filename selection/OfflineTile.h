// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a click on the tile of an off-line mouse does, and when a tile counts as one.
#pragma once

#include "device/record/DeviceAllInfo.h"

#include <vector>

enum class OfflineTileAction : uint8_t {
    Pair,          // this computer has never read the mouse's version
    AskForPairing, // neither or both of mouse and receiver have new firmware
    EnterReceiver, // only the receiver has new firmware; its pages offer it
    WarnToWire,    // only the mouse has new firmware; it must be on its cable
};

// mouseVersion: as last read from a mouse of that model; empty when never.
OfflineTileAction offlineTileAction(const QString &mouseVersion, bool mouseIsNew, bool receiverIsNew);

// The same from the catalogue, the stored versions and the firmware folder.
OfflineTileAction offlineTileAction(const DeviceAllInfo &device);

// The one that was not clicked, where exactly two devices are attached, both of one model; else null.
const DeviceAllInfo *twinOf(const std::vector<DeviceAllInfo> &devices, int clicked);
