// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Raw reports to one opened interface, for a mouse with a screen. Their format is not this protocol's, so
// nothing but the report id is checked.
#pragma once

#include <cstddef>
#include <cstdint>

namespace hidusb
{

// Opens the interface and closes the one before.
bool openRaw(const char *path);
// Sends up to 64 bytes and waits up to 150 ms for a report that begins as they do, cut to `size` bytes of
// `reply`, which otherwise stays as it is. Without a `reply` it does not wait.
void exchangeRaw(const uint8_t *request, uint8_t *reply, std::size_t size);

} // namespace hidusb
