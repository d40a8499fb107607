// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The rules by which udev lets the user at the screen use the devices of the catalogue. Without them the
// nodes belong to root alone.
#pragma once

#include <istream>
#include <string>

struct UdevRules {
    std::string text;
    std::string error; // what the source lacks; empty for nothing
};

// `source` is the readable catalogue. Its general values name the ids: VID, the keys that end in "_PID" and,
// for devices that wait for firmware, Boot_PID. `group`: may use the devices too; empty for none.
UdevRules udevRules(std::istream &source, const std::string &group = {});
