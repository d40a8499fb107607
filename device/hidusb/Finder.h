// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Finder: searches the attached interfaces by ids, interface number and usage page.
#pragma once

#include "device/hidusb/Bus.h"

#include <optional>

namespace hidusb
{

// A vendor or product id as text: up to four hexadecimal digits, "0x" in front allowed.
std::optional<uint16_t> parseId(const char *text);

// The paths that fit, in an array that ends with a null pointer and is valid until the same thread searches
// again. *count holds the most paths wanted on entry and the number found on return.
const char *const *findPaths(const char *vendorId, const char *productId, int interfaceNumber, int usagePage,
                             int32_t *count);
// Interfaces of the vendors that the program has searched for: other makers' devices are not asked.
std::vector<InterfaceInfo> findOfKnownVendors();
std::optional<InterfaceInfo> findByPath(const char *path);

} // namespace hidusb
