// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the catalogue, the stored values and the firmware folder say about a device whose tile was clicked.
#pragma once

#include "selection/AttachedList.h"

// MID of the device's model as the catalogue writes it; empty for an unknown device.
QString catalogueMid(const DeviceAllInfo &device);

// The models that have pictures and a screen of their own.
bool hasScreenClass(int mid);

// What a click on the tile of a silent mouse means.
TileDecision offlineTileDecision(const DeviceAllInfo &device);

// Whether the folder "/bin" beside the program holds firmware other than the receiver's.
bool receiverFirmwareIsNew(const DeviceAllInfo &device);

// Tells the settings page the receiver's version and whether there is another; nothing without "/bin".
void announceReceiverFirmware(const DeviceAllInfo &device);
