// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/SystemEnd.h"

#include "app/DialogMain.h"
#include "environment/MainThread.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

constexpr unsigned EndLimitS = 3;
constexpr int EndSignals[] = {SIGTERM, SIGINT, SIGHUP};

int wakeUp = -1; // an event file: a handler may write to it, and the event loop waits for it
std::atomic<DialogMain *> openWindow{nullptr};
const pid_t process = getpid(); // as the kernel numbers the main thread, too

void onEndSignal(int)
{
    const int error = errno;
    alarm(EndLimitS);
    const uint64_t one = 1;
    if (write(wakeUp, &one, sizeof one) < 0)
        std::_Exit(EXIT_FAILURE); // it cannot end in order
    errno = error;
}

void installHandlers()
{
    for (const int number : EndSignals)
        if (signal(number, onEndSignal) == SIG_IGN)
            signal(number, SIG_IGN);
    // A write to an X server that has just gone would end the process; so it fails, and the toolkit ends it.
    signal(SIGPIPE, SIG_IGN);
}

// The toolkit ends the process from within the event loop when the X server or the compositor is gone.
void letGoAtExit()
{
    DialogMain *const window = openWindow;
    if (!window)
        return;
    alarm(EndLimitS);
    window->letGo();
}

int openedWakeUp()
{
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return wakeUp;
}

// Ends the process on the main thread, which lets the device go; the caller's own one does not go on.
[[noreturn]] void exitOnMainThread(int status)
{
    alarm(EndLimitS);
    runOnMainThread([status] { std::exit(status); });
    for (;;)
        pause();
}

} // namespace

// In place of the C library's. The toolkit's Wayland plug-in calls it when the compositor is gone, on the
// main thread or on one of its own, and it runs no handler of exit(). So does a child process that cannot
// start its program. Unlike the C library's it is not for signal handlers, which call std::_Exit().
extern "C" Q_DECL_EXPORT void _exit(int status) // NOLINT(bugprone-reserved-identifier)
{
    if (openWindow && getpid() == process) {
        if (syscall(SYS_gettid) != process)
            exitOnMainThread(status);
        letGoAtExit();
    }
    for (;;)
        syscall(SYS_exit_group, status);
}

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

// The end of a session can end the event loop of a hidden window, which nobody closes.
SystemEnd::~SystemEnd()
{
    letGoAtExit();
    alarm(0);
    openWindow = nullptr;
}
