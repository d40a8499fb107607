// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Orders: one line each, from the console, a file, the control socket, a scenario or a test. docs/emulator.md
// lists them.
#pragma once

#include "emulator/World.h"

namespace emulator
{

// Runs one line. The last line of the answer is "ok", or "error" and a reason; an order that ends in an error
// changes nothing. An empty line is "ok".
std::string runOrder(World &world, const std::string &line);
bool isOrder(const std::string &word);

} // namespace emulator
