// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UsbPorts: which port each device has. A device that comes back as its boot loader, or from there, comes
// back at its port, as one does that stays in its socket.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace emulator
{

class UsbPorts
{
public:
    // A device's own port becomes free a while after it has left it; after this many refusals it is given up.
    static constexpr int Patience = 40;

    // One of the free ports, or none until the device's own one is free.
    std::optional<int> choose(const std::string &device, const std::vector<int> &freePorts);

private:
    struct Place {
        int port = -1;
        int refusals = 0;
    };
    bool isKept(int port) const;

    std::map<std::string, Place> places_;
};

} // namespace emulator
