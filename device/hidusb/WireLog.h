// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// WireLog: what passes between the layer and its devices, in a file that a user can send to a maintainer.
// Callers leave a copy of what happened in a bounded queue; a thread of the log's own makes the lines and
// writes them, so that neither a slow disk nor a missing one holds up a caller. docs/protocol.md describes
// the lines.
#pragma once

#include "device/hidusb/LogFile.h"
#include "device/hidusb/Thread.h"

#include <atomic>
#include <chrono>
#include <map>
#include <string>
#include <sys/types.h>

namespace hidusb
{

struct InterfaceInfo;

class WireLog
{
public:
    // Makes the text of a line, on the log's thread. It holds copies only: its caller may be gone by then.
    using Text = std::function<std::string()>;

    static constexpr std::size_t FileLimit = std::size_t{8} << 20; // bytes of the file
    static constexpr std::size_t QueueLimit = 4096;                // lines that wait to be written

    // `bus` is part of the head. The first line opens the file; when that fails, the reason goes to the
    // standard error output and nothing is logged.
    WireLog(const std::string &file, const std::string &bus, std::size_t limit = FileLimit);
    ~WireLog() = delete; // its thread may be writing

    // From any thread, never waits. `path` names the device or file that the line is about. When QueueLimit
    // lines wait, the line is dropped; the next one that finds room is preceded by the number of dropped
    // ones.
    void add(const std::string &path, Text text);
    // Later lines of this path show the device's ids.
    void introduce(const InterfaceInfo &info);
    // Returns when all lines so far are written, or after FlushLimit. Returns at once in a forked child,
    // which has no thread that would write.
    void flush();
    static constexpr std::chrono::milliseconds FlushLimit{500};

private:
    using Clock = std::chrono::steady_clock;

    // The following run on the log's thread.
    void writeLine(Clock::time_point when, const std::string &path, const std::string &text);
    void writeMissing(uint64_t count, const std::string &reason);
    bool append(Clock::time_point when, const std::string &path, const std::string &text);
    bool isOpen();

    const std::string file_;
    const pid_t process_;
    const Clock::time_point start_;
    std::atomic<uint64_t> dropped_{0}; // lines since the last one that found room in the queue
    std::atomic<bool> refused_{false}; // the file cannot be used

    // The log's thread alone uses these.
    LogFile lines_;
    bool opened_ = false;
    uint64_t unwritten_ = 0; // lines since the last one that found room on the disk
    int unwrittenError_ = 0;
    std::map<std::string, std::string> names_; // by path

    TaskQueue queue_; // last: its thread uses all the others
};

// The log of the process; null when there is none. One load, so that a layer without a log pays nothing.
extern std::atomic<WireLog *> processLog;
inline WireLog *wireLog() { return processLog.load(std::memory_order_acquire); }
// Makes the log of the process, which is never destroyed and is flushed at a normal exit.
WireLog &startWireLog(const std::string &file, const std::string &bus);

// A line in the log of the process, if there is one. `text` is what WireLog::Text is.
template <typename Text> void logLine(const std::string &path, Text text)
{
    if (WireLog *log = wireLog())
        log->add(path, std::move(text));
}
// A system call that failed. Leaves errno as it is.
void logFailure(const std::string &path, const char *call, int error);

} // namespace hidusb
