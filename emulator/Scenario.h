// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Scenario files: a line for the USB ids, a line for each device, then orders. docs/emulator.md has the form.
#pragma once

#include "emulator/World.h"

#include <istream>

namespace emulator
{

// Adds what the text describes to the world. False at the first bad line, with "NAME:LINE: reason" in
// `error`; the lines before it have taken effect.
bool loadScenario(World &world, std::istream &text, const std::string &name, std::string &error);

} // namespace emulator
