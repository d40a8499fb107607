// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/WaitableFile.h"

#include <cerrno>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace hidusb
{

WaitableFile::WaitableFile(int file) : file_(file), call_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

WaitableFile::~WaitableFile()
{
    close(file_);
    if (call_ >= 0)
        close(call_);
}

WaitableFile::Outcome WaitableFile::wait(int timeoutMs)
{
    pollfd waited[] = {{file_, POLLIN, 0}, {call_, POLLIN, 0}};
    const int count = poll(waited, 2, timeoutMs);
    if (count < 0)
        return errno == EINTR ? Outcome::Nothing : Outcome::Gone;
    if (waited[0].revents & POLLIN)
        return Outcome::Readable;
    if (waited[0].revents != 0)
        return Outcome::Gone;
    if (waited[1].revents != 0) {
        uint64_t calls = 0;
        [[maybe_unused]] const ssize_t size = read(call_, &calls, sizeof calls);
    }
    return Outcome::Nothing;
}

bool WaitableFile::isHungUp() const
{
    pollfd looked{file_, 0, 0};
    return poll(&looked, 1, 0) > 0;
}

void WaitableFile::interrupt()
{
    const uint64_t once = 1;
    [[maybe_unused]] const ssize_t size = write(call_, &once, sizeof once);
}

} // namespace hidusb
