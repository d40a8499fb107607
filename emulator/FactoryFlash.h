// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The factory settings of a mouse's flash.
#pragma once

#include "device/hidusb/wire/FlashLayout.h"

namespace emulator
{

constexpr int FactoryStageCount = 6;

FlashImage factoryFlash();

} // namespace emulator
