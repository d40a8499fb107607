// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FirmwareTargets: which attached devices a firmware file fits. All are asked at the same time, so a search
// takes as long as one silent device, and at most SearchLimit.
#pragma once

#include "device/hidusb/Firmware.h"

#include <chrono>
#include <string>

namespace hidusb
{

constexpr std::chrono::milliseconds SearchLimit{500};

struct FirmwareTarget {
    std::string path;
    std::string port; // as in InterfaceInfo
    bool inBootLoader;
};

// The number of attached boot loaders that the file fits.
int countBootLoaders(const Firmware &firmware);
// The one boot loader that the file fits; if there is none, the one device. Empty when there are several,
// and while a device is not opened and asked within SearchLimit: it may be the second one.
std::optional<FirmwareTarget> findTarget(const Firmware &firmware);

} // namespace hidusb
