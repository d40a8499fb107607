// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/SystemEnd.h"

#include "app/DialogMain.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <sys/eventfd.h>
#include <unistd.h>

namespace
{

constexpr unsigned EndLimitS = 3;
constexpr int EndSignals[] = {SIGTERM, SIGINT, SIGHUP};

int wakeUp = -1; // an event file: a handler may write to it, and the event loop waits for it
DialogMain *openWindow = nullptr;

void onEndSignal(int)
{
    const int error = errno;
    alarm(EndLimitS);
    const uint64_t one = 1;
    if (write(wakeUp, &one, sizeof one) < 0)
        _exit(EXIT_FAILURE); // it cannot end in order
    errno = error;
}

void installHandlers()
{
    for (const int number : EndSignals)
        if (signal(number, onEndSignal) == SIG_IGN)
            signal(number, SIG_IGN);
    // A write to an X server that has just gone would end the process; so it fails, and the toolkit calls
    // exit().
    signal(SIGPIPE, SIG_IGN);
}

// The toolkit calls exit() from within the event loop when the X server is gone.
void letGoAtExit()
{
    if (openWindow)
        openWindow->letGo();
}

int openedWakeUp()
{
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return wakeUp;
}

} // namespace

SystemEnd::SystemEnd(DialogMain *window) : notifier_(openedWakeUp(), QSocketNotifier::Read)
{
    openWindow = window;
    std::atexit(letGoAtExit);
    QObject::connect(&notifier_, &QSocketNotifier::activated, window, [this, window] {
        uint64_t count = 0;
        if (read(wakeUp, &count, sizeof count) < 0)
            return;
        notifier_.setEnabled(false);
        window->endProcess();
        // It stays, since it writes firmware.
        alarm(0);
        notifier_.setEnabled(true);
    });
    if (wakeUp >= 0)
        installHandlers();
}

SystemEnd::~SystemEnd() { openWindow = nullptr; }
