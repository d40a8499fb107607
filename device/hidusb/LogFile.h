// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LogFile: a text file of whole lines that never grows beyond a limit; when it is full, its older half goes.
// Not thread-safe.
#pragma once

#include <cstddef>
#include <string>

namespace hidusb
{

class LogFile
{
public:
    // `head` is the first line of each run and begins with Signature. `limit` in bytes is many times as long
    // as a line.
    LogFile(std::string path, std::string head, std::size_t limit);
    ~LogFile();
    LogFile(const LogFile &) = delete;
    LogFile &operator=(const LogFile &) = delete;

    // Opens or makes the file and appends the head. Empty on success, else the reason in words. Refused, and
    // left as it is: whatever is no regular file (a link is not followed), has other content than a log, or
    // is being written by another process. Never waits for the other end of a FIFO.
    std::string open();
    // Appends the line and a newline, or nothing of it. False, with errno, when the disk is full. A path in
    // the line may hold anything: control characters become '?', and what is longer than 1000 bytes is cut.
    bool append(const std::string &line);

    static constexpr const char *Signature = "HIDUsb log";

private:
    std::string check() const;
    bool dropOlderHalf();
    bool write(const std::string &text);

    const std::string path_;
    const std::string head_;
    const std::size_t limit_;
    int file_ = -1;
    std::size_t size_ = 0;
};

} // namespace hidusb
