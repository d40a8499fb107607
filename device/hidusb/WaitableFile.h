// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// WaitableFile: a file descriptor that one thread waits on and any thread can call off.
#pragma once

namespace hidusb
{

class WaitableFile
{
public:
    enum class Outcome { Readable, Nothing, Gone };

    explicit WaitableFile(int file); // takes ownership
    ~WaitableFile();
    WaitableFile(const WaitableFile &) = delete;
    WaitableFile &operator=(const WaitableFile &) = delete;

    int file() const { return file_; }
    // `timeoutMs` below 0 waits without end. What can still be read comes before Gone.
    Outcome wait(int timeoutMs);
    // True when the other side has hung up, even if there is something left to read. From any thread.
    bool isHungUp() const;
    // Ends the running wait, or the next one.
    void interrupt();

private:
    const int file_;
    const int call_;
};

} // namespace hidusb
