// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// USB descriptors of one full-speed device with an HID interface for each interface number.
#pragma once

#include "emulator/Scene.h"

namespace emulator
{

// One HID interface of the device, with all collections of its number.
struct UsbFace {
    int number = 0;
    std::vector<Interface> collections; // told apart by their report ids
    std::vector<uint8_t> report;        // its report descriptor
};

struct UsbDescription {
    std::vector<uint8_t> device;
    std::vector<uint8_t> configuration;
    std::vector<UsbFace> faces;                // in the order of the configuration descriptor
    std::vector<std::vector<uint8_t>> strings; // descriptors by index; 0 lists the languages
};

// `interfaces` are those of one device, at least one.
UsbDescription describeUsb(const std::vector<Interface> &interfaces);

// Endpoint numbers: an interface's own, for both directions.
constexpr uint8_t endpointOf(std::size_t face) { return static_cast<uint8_t>(face + 1); }

// The report id of an interface's collection; 0 when its reports have none.
uint8_t reportIdOf(uint16_t usagePage);

} // namespace emulator
