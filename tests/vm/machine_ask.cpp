// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// machine_ask PATH [COUNT]: asks a device what it is, once or COUNT times, as any other program might.
// Ends with 0 when every answer came and with 1 when one did not.
#include "device/hidusb/HIDUsb.h"

#include <cstdlib>

int main(int count, char **words)
{
    const int times = count > 2 ? std::atoi(words[2]) : 1;
    for (int i = 0; i < times; ++i) {
        const DeviceIdentity identity = count > 1 ? UsbFinderC_GetDeviceInfo(words[1], 0) : DeviceIdentity{};
        if (identity.Cid == 0)
            return 1;
    }
    return count > 1 ? 0 : 2;
}
