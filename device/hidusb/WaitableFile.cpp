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

WaitableFile::WaitableFile(int file) : file_(file), wakeup_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

WaitableFile::~WaitableFile()
{
    close(file_);
    if (wakeup_ >= 0)
        close(wakeup_);
}

WaitableFile::Outcome WaitableFile::wait(int timeoutMs)
{
    pollfd waited[] = {{file_, POLLIN, 0}, {wakeup_, POLLIN, 0}};
    const int ready = poll(waited, 2, timeoutMs);
    if (ready < 0)
        return errno == EINTR ? Outcome::Nothing : Outcome::Gone;
    if (waited[0].revents & POLLIN)
        return Outcome::Readable;
    if (waited[0].revents != 0)
        return Outcome::Gone;
    if (waited[1].revents != 0) {
        uint64_t count = 0;
        [[maybe_unused]] const ssize_t size = read(wakeup_, &count, sizeof count);
    }
    return Outcome::Nothing;
}

bool WaitableFile::isHungUp() const
{
    pollfd polled{file_, 0, 0};
    return poll(&polled, 1, 0) > 0;
}

void WaitableFile::interrupt()
{
    const uint64_t once = 1;
    [[maybe_unused]] const ssize_t size = write(wakeup_, &once, sizeof once);
}

} // namespace hidusb
