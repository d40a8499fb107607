// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What orders show of the scene, as text.
#pragma once

#include "emulator/World.h"

namespace emulator
{

// A line for each device.
std::string listScene(const Scene &scene);
// The same for a program: lines of key=value words, first the switches, then each device. Keys are never
// taken away; new ones may come.
std::string describeWorld(const World &world);
// Lines of 16 bytes with their address in front; the range lies in the flash.
std::string dumpFlash(const FlashImage &image, std::size_t address, std::size_t count);

} // namespace emulator
