// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// TrayHost: the tray of a desktop on $DISPLAY, as far as an icon needs one. To be made before the toolkit
// first asks for a tray. One thread.
#pragma once

struct _XDisplay;

class TrayHost
{
public:
    TrayHost();
    ~TrayHost();
    TrayHost(const TrayHost &) = delete;
    TrayHost &operator=(const TrayHost &) = delete;

    // Icons that asked for a place since the tray was made. Each gets one by this call.
    int docked();

private:
    unsigned long atom(const char *name) const;

    _XDisplay *const display;
    const unsigned long window;
    int icons = 0;
};
