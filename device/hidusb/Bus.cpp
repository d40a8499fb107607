// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/Bus.h"

#include "device/hidusb/HidrawBus.h"
#include "device/hidusb/LoggedBus.h"
#include "device/hidusb/SocketBus.h"

#include <cstdlib>

namespace hidusb
{

// Null when the variable is empty or not set.
static const char *setting(const char *variable)
{
    const char *value = std::getenv(variable);
    return value != nullptr && *value != '\0' ? value : nullptr;
}

static Bus *chooseBus()
{
    const char *folder = setting("HIDUSB_BUS");
    const char *log = setting("HIDUSB_LOG");
    Bus *chosen = folder != nullptr ? static_cast<Bus *>(new SocketBus(folder)) : new HidrawBus;
    return log != nullptr ? new LoggedBus(*chosen, startWireLog(log, folder != nullptr ? folder : "hidraw"))
                          : chosen;
}

Bus &bus()
{
    static Bus *chosen = chooseBus();
    return *chosen;
}

} // namespace hidusb
