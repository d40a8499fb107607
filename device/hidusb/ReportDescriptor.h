// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The usage pages of a HID report descriptor. The bytes come from the device and are not trusted.
#pragma once

#include <cstdint>
#include <vector>

namespace hidusb
{

// The usage page of each top-level collection, in their order and each page once. An item that is cut off
// ends the evaluation.
std::vector<uint16_t> usagePages(const std::vector<uint8_t> &descriptor);

} // namespace hidusb
