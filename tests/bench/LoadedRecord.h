// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the benchmarks of the layer share: the ids of their family, a callback that takes full reads into one
// record, and waits of ten seconds at most, after which the figures would say nothing.
#pragma once

#include "device/hidusb/Codec.h"
#include "device/hidusb/HIDUsb.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace bench
{

constexpr const char *Ids = "usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot 0006 "
                            "receiverboot 0007\n";

inline std::atomic<int> fullReads{0};
inline FlashDataMap loaded;

inline void takeFullRead(const uint8_t *header, int32_t, const uint8_t *payload, uint32_t length)
{
    if (header[1] != 8 || length != FlashSize)
        return;
    ProtocolDataParser(payload, &loaded);
    ++fullReads;
}

template <typename Condition> void waitFor(Condition condition)
{
    for (int i = 0; !condition(); ++i) {
        if (i == 500000) {
            std::puts("no answer");
            std::exit(1);
        }
        ::usleep(20);
    }
}

inline void read()
{
    const int before = fullReads;
    UsbServer_ReadAllFlashData();
    waitFor([before] { return fullReads > before; });
}

} // namespace bench
