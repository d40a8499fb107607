// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LinkTally: how many attached devices of each link (a cable, or a receiver of one class) carry each model.
// It recognises duplicates, and the receivers that are hidden while a mouse of their model is on its cable.
#pragma once

#include "catalogue/DeviceKinds.h"
#include "device/record/DeviceAllInfo.h"

#include <array>
#include <vector>

class LinkTally
{
public:
    static constexpr std::size_t Links = ReceiverKinds + 1; // the cable, then the receivers by rate
    static constexpr int Models = 15;

    void count(const DeviceAllInfo &device);

    // Checks as many links as the catalogue has models, so a small catalogue leaves some out. Returns true
    // when one of them has two devices of a model; otherwise removes the hidden receivers from the list.
    bool settle(std::vector<DeviceAllInfo> &devices, int deviceTotal) const;

private:
    std::array<std::array<uint32_t, Models>, Links> counters_{};
};
