// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Another library with the exports of the device layer: one scripted receiver, and a line for each call in
// the file that OTHER_LIBRARY_LOG names.
#include "tests/support/FakeHidUsb.h"

#include <cstdio>
#include <cstdlib>

namespace
{

struct Setup {
    Setup()
    {
        const char *const name = std::getenv("OTHER_LIBRARY_LOG");
        static std::FILE *const log = name ? std::fopen(name, "w") : nullptr;
        FakeDevice receiver;
        receiver.path = "other";
        receiver.vid = "0x1209";
        receiver.pid = "0x0002";
        receiver.identity = {18, 6, 0};
        FakeHidUsb::instance().setDevices({receiver});
        FakeHidUsb::instance().setHook([](const std::string &call) {
            if (log) {
                std::fprintf(log, "%s\n", call.c_str());
                std::fflush(log);
            }
        });
    }
};
const Setup setup;

} // namespace
