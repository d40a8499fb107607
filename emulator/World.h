// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The state that orders act on.
#pragma once

#include "emulator/Scene.h"
#include "emulator/Traffic.h"

namespace emulator
{

// The name that follows all devices at once.
constexpr const char *Everything = "all";

struct World {
    Scene scene;
    std::map<std::string, Traffic> traffic; // by device id; an entry for each device
    bool pace = false;                      // one report per millisecond, device and direction
    bool log = false;                       // show each report
    bool quit = false;
    std::string followed; // by the order that ran last: a device id, Everything, or none when empty
};

} // namespace emulator
