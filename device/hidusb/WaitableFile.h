// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// WaitableFile: a file descriptor on which one thread waits; any thread can interrupt that wait.
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
    // `timeoutMs` below 0 waits without end. Readable has precedence over Gone, so that no received data is
    // lost.
    Outcome wait(int timeoutMs);
    // True when the other side has hung up, even while received data is left. From any thread.
    bool isHungUp() const;
    // Ends the running wait, or the next one.
    void interrupt();

private:
    const int file_;
    const int wakeup_; // an eventfd
};

} // namespace hidusb
