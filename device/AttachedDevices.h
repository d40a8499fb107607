// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// AttachedDevices: the result of the last search, and the receiver chosen for pairing. The selection page
// owns the one object of the program; other pages get it by reference. Main thread.
#pragma once

#include "device/record/DeviceAllInfo.h"

#include <optional>
#include <vector>

class AttachedDevices
{
public:
    // The devices that have a tile, in the order of the search; the index is the tile's number.
    const std::vector<DeviceAllInfo> &tiles() const { return tiles_; }
    // The same with the receivers that a cable of their model hides.
    const std::vector<DeviceAllInfo> &all() const { return all_; }

    void set(std::vector<DeviceAllInfo> all, std::vector<DeviceAllInfo> tiles);
    // Replaces the entries of the device's path.
    void update(const DeviceAllInfo &device);

    // The receiver whose mouse is to be paired; empty until the selection page has chosen one.
    const std::optional<DeviceAllInfo> &pairingTarget() const { return pairingTarget_; }
    void choosePairingTarget(const DeviceAllInfo &receiver) { pairingTarget_ = receiver; }

private:
    std::vector<DeviceAllInfo> tiles_;
    std::vector<DeviceAllInfo> all_;
    std::optional<DeviceAllInfo> pairingTarget_;
};
