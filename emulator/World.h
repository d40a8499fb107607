// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Everything that an order can act on.
#pragma once

#include "emulator/Scene.h"
#include "emulator/Traffic.h"

namespace emulator
{

struct World {
    Scene scene;
    std::map<std::string, Traffic> traffic; // by device id; an entry for each device
    bool pace = false;                      // one report per millisecond, device and direction
    bool log = false;                       // show each report
    bool quit = false;
};

} // namespace emulator
