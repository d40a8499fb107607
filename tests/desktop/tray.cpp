// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A tray on $DISPLAY, in the upper left corner where no window manager moves it. Writes a line once it is
// there and one for each icon that gets a place. Runs until it is killed.
#include "tests/support/TrayHost.h"

#include <chrono>
#include <cstdio>
#include <thread>

int main()
{
    TrayHost tray;
    std::puts("ready");
    for (int icons = 0;; std::this_thread::sleep_for(std::chrono::milliseconds(20))) {
        std::fflush(stdout);
        for (const int now = tray.docked(); icons < now; ++icons)
            std::puts("icon");
    }
}
