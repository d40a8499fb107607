// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A process that upgrades the device that a firmware file fits and ends with the result. Tests kill it.
#include "device/hidusb/HIDUsb.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <unistd.h>
#include <vector>

static void onUpgrade(const uint8_t *data)
{
    if (data[1] == 2)
        ::_exit(data[2]);
}

int main(int count, char **arguments)
{
    if (count != 2)
        return EXIT_FAILURE;
    std::ifstream file(arguments[1], std::ios::binary);
    const std::vector<char> image(std::istreambuf_iterator<char>(file), {});
    int32_t most = 1;
    UsbFinderC_FindHidDevicesByDefaultDeviceId("1209", "0001", &most); // names the vendor
    if (UsbUpgrade_Start(reinterpret_cast<const uint8_t *>(image.data()), onUpgrade, 1000) == 0)
        return 3;
    for (;;)
        ::pause();
}
