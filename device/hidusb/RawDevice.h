// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Raw reports to one opened interface, for a mouse with a screen: no report of this protocol, no checks.
#pragma once

#include <cstddef>
#include <cstdint>

namespace hidusb
{

// Opens the interface in place of the one before.
bool openRaw(const char *path);
// Sends up to 64 bytes and waits up to 150 ms for one report, cut to `size` bytes of `reply`.
void exchangeRaw(const uint8_t *request, uint8_t *reply, std::size_t size);

} // namespace hidusb
