// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Bus.h"

#include "device/hidusb/HidrawBus.h"
#include "device/hidusb/SocketBus.h"

#include <cstdlib>

namespace hidusb
{

static Bus *chooseBus()
{
    const char *folder = std::getenv("HIDUSB_BUS");
    if (folder != nullptr && *folder != '\0')
        return new SocketBus(folder);
    return new HidrawBus;
}

Bus &bus()
{
    static Bus *chosen = chooseBus();
    return *chosen;
}

} // namespace hidusb
