// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What is asked of the X server over a connection of its own, beside the toolkit's. Xlib's macros are names
// of Qt's too, so a source includes this last, and no header does.
#pragma once

#include <memory>

#include <X11/Xlib.h>

struct DisplayCloser {
    void operator()(Display *display) const { XCloseDisplay(display); }
};
using XDisplay = std::unique_ptr<Display, DisplayCloser>;

// None without a server. Waits for it as long as it takes. Any thread; a connection belongs to one.
inline XDisplay openDisplay()
{
    XInitThreads();
    return XDisplay(XOpenDisplay(nullptr));
}

// What is asked for can disappear between two requests; Xlib's default handler would then end the process.
class QuietErrors
{
public:
    QuietErrors() : previous_(XSetErrorHandler(ignoreError)) {}
    ~QuietErrors() { XSetErrorHandler(previous_); }
    QuietErrors(const QuietErrors &) = delete;
    QuietErrors &operator=(const QuietErrors &) = delete;

private:
    static int ignoreError(Display *, XErrorEvent *) { return 0; }

    XErrorHandler previous_;
};
