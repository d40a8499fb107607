// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/usb/UsbPorts.h"

#include <algorithm>

namespace emulator
{

bool UsbPorts::isKept(int port) const
{
    return std::any_of(places_.begin(), places_.end(),
                       [port](const auto &each) { return each.second.port == port; });
}

std::optional<int> UsbPorts::choose(const std::string &device, const std::vector<int> &freePorts)
{
    const auto known = places_.find(device);
    if (known != places_.end()) {
        Place &place = known->second;
        const bool isFree = std::find(freePorts.begin(), freePorts.end(), place.port) != freePorts.end();
        if (!isFree && ++place.refusals < Patience)
            return std::nullopt;
        place.refusals = 0;
        if (isFree)
            return place.port;
        places_.erase(known);
    }
    if (freePorts.empty())
        return std::nullopt;
    // Preferably none that a device may come back to.
    auto port = std::find_if(freePorts.begin(), freePorts.end(), [this](int each) { return !isKept(each); });
    if (port == freePorts.end())
        port = freePorts.begin();
    for (auto place = places_.begin(); place != places_.end();)
        place = place->second.port == *port ? places_.erase(place) : std::next(place);
    places_[device].port = *port;
    return *port;
}

} // namespace emulator
