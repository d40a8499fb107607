// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Text output of the orders that show the scene.
#pragma once

#include "emulator/World.h"

namespace emulator
{

// A line for each device.
std::string listScene(const Scene &scene);
// The same for programs: lines of key=value words, first the switches, then each device. Keys may be added
// but not removed.
std::string describeWorld(const World &world);
// Lines of an address and 16 bytes; the range must lie in the flash.
std::string dumpFlash(const FlashImage &image, std::size_t address, std::size_t count);

} // namespace emulator
