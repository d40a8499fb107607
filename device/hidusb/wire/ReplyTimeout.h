// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// How long a device has for its answer to a request before the request is sent again.
#pragma once

#include <chrono>

namespace hidusb
{

constexpr std::chrono::milliseconds ReplyTimeout{150};

} // namespace hidusb
