// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a HID report descriptor says of an interface. The bytes come from the device and may be anything.
#pragma once

#include <cstdint>
#include <vector>

namespace hidusb
{

// The usage page of each top-level collection, in their order and each page once. What follows an item that
// the descriptor cuts off is not looked at.
std::vector<uint16_t> usagePages(const std::vector<uint8_t> &descriptor);

} // namespace hidusb
