// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Finder: which interfaces are attached, by ids and kind of interface.
#pragma once

#include "device/hidusb/Bus.h"

#include <optional>

namespace hidusb
{

// A vendor or product id as text: up to four hexadecimal digits, "0x" in front allowed.
std::optional<uint16_t> parseId(const char *text);

// The HID paths that fit, in an array of this thread's own that stays until its next search. Of *count
// the most wanted is read and the number found is written. Ends with a null pointer.
const char *const *findPaths(const char *vendorId, const char *productId, int interfaceNumber, int usagePage,
                             int32_t *count);
std::vector<InterfaceInfo> findByUsagePage(uint16_t usagePage);
std::optional<InterfaceInfo> findByPath(const char *path);

} // namespace hidusb
