// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tests/support/TrayHost.h"

#include <X11/Xlib.h>

namespace
{
constexpr int Side = 32;
constexpr long DockRequest = 0;
} // namespace

TrayHost::TrayHost()
    : display(XOpenDisplay(nullptr))
    , window(XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, Side, Side, 0, 0, 0))
{
    XMapWindow(display, window);
    XSetSelectionOwner(display, atom("_NET_SYSTEM_TRAY_S0"), window, CurrentTime);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = DefaultRootWindow(display);
    event.xclient.message_type = atom("MANAGER");
    event.xclient.format = 32;
    event.xclient.data.l[0] = CurrentTime;
    event.xclient.data.l[1] = long(atom("_NET_SYSTEM_TRAY_S0"));
    event.xclient.data.l[2] = long(window);
    XSendEvent(display, DefaultRootWindow(display), False, StructureNotifyMask, &event);
    XSync(display, False);
}

TrayHost::~TrayHost() { XCloseDisplay(display); }

unsigned long TrayHost::atom(const char *name) const { return XInternAtom(display, name, False); }

int TrayHost::docked()
{
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type != ClientMessage || event.xclient.message_type != atom("_NET_SYSTEM_TRAY_OPCODE") ||
            event.xclient.data.l[1] != DockRequest)
            continue;
        const auto icon = Window(event.xclient.data.l[2]);
        XReparentWindow(display, icon, window, 0, 0);
        XMapRaised(display, icon);
        ++icons;
    }
    XSync(display, False);
    return icons;
}
