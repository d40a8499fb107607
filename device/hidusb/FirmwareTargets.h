// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FirmwareTargets: which attached devices a firmware file fits. All are asked at the same time, so a search
// of open devices takes as long as one silent device. The kernel opens one node at a time, which takes some
// 60 ms each; SearchTimes says how long a search may take.
#pragma once

#include "device/hidusb/Firmware.h"

#include <chrono>
#include <string>

namespace hidusb
{

struct SearchTimes {
    std::chrono::milliseconds silent{500}; // after the last device was opened
    std::chrono::milliseconds whole{3000}; // from the start, however many devices there are
};

struct FirmwareTarget {
    std::string path;
    std::string port; // as in InterfaceInfo
    bool inBootLoader;
};

// The number of attached boot loaders that the file fits.
int countBootLoaders(const Firmware &firmware, const SearchTimes &times = {});
// The one boot loader that the file fits; if there is none, the one device. Empty when there are several,
// and when the search ends before all of them have answered: another may be the second one.
std::optional<FirmwareTarget> findTarget(const Firmware &firmware, const SearchTimes &times = {});

} // namespace hidusb
