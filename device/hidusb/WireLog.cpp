// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/WireLog.h"

#include "device/hidusb/Bus.h"
#include "device/hidusb/ErrorText.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>
#include <sys/utsname.h>
#include <unistd.h>

namespace hidusb
{

std::atomic<WireLog *> processLog{nullptr};

// The program may enter another folder before the log's thread opens the file.
static std::string absolutePath(const std::string &file)
{
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(file, error);
    return error ? file : absolute.string();
}

static std::string wallClock()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    const auto seconds = static_cast<std::time_t>(ms / 1000);
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    char date[32], zone[8], text[48];
    std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", &parts);
    std::strftime(zone, sizeof zone, "%z", &parts);
    std::snprintf(text, sizeof text, "%s.%03d %s", date, static_cast<int>(ms % 1000), zone);
    return text;
}

static std::string headOf(const std::string &bus)
{
    utsname system{};
    ::uname(&system);
    return std::string(LogFile::Signature) + ", " + wallClock() + ", process " + std::to_string(::getpid()) +
           " (" + program_invocation_short_name + "), " + system.sysname + " " + system.release + " " +
           system.machine + ", bus " + bus + "; times are seconds since then";
}

WireLog::WireLog(const std::string &file, const std::string &bus, std::size_t limit)
    : file_(absolutePath(file)), process_(::getpid()), start_(Clock::now()), lines_(file_, headOf(bus), limit)
{
}

void WireLog::add(const std::string &path, Text text)
{
    if (refused_)
        return;
    const uint64_t before = dropped_.exchange(0);
    const bool queued = queue_.post(
        [this, when = Clock::now(), before, path, text = std::move(text)] {
            writeMissing(before, "the queue was full");
            writeLine(when, path, text());
        },
        QueueLimit);
    if (!queued)
        dropped_ += before + 1;
}

void WireLog::introduce(const InterfaceInfo &info)
{
    char ids[16];
    std::snprintf(ids, sizeof ids, " %04x:%04x", info.vendorId, info.productId);
    queue_.post([this, path = info.path,
                 name = info.path.substr(info.path.rfind('/') + 1) + ids] { names_[path] = name; },
                QueueLimit);
}

void WireLog::flush()
{
    struct Flushed {
        std::mutex mutex;
        std::condition_variable changed;
        bool done = false;
    };
    if (::getpid() != process_)
        return;
    const auto flushed = std::make_shared<Flushed>();
    queue_.post([this, flushed] {
        writeMissing(dropped_.exchange(0), "the queue was full");
        const std::lock_guard lock(flushed->mutex);
        flushed->done = true;
        flushed->changed.notify_all();
    });
    std::unique_lock lock(flushed->mutex);
    flushed->changed.wait_for(lock, FlushLimit, [&flushed] { return flushed->done; });
}

// ---- The log's thread

static std::string missingText(uint64_t count, const std::string &reason)
{
    return std::to_string(count) + " lines are missing here: " + reason;
}

bool WireLog::isOpen()
{
    if (opened_)
        return !refused_;
    opened_ = true;
    const std::string reason = lines_.open();
    refused_ = !reason.empty();
    if (refused_)
        ::dprintf(STDERR_FILENO, "HIDUSB_LOG: %s cannot be used: %s\n", file_.c_str(), reason.c_str());
    return !refused_;
}

// Lines that were dropped are announced where they are missing.
void WireLog::writeMissing(uint64_t count, const std::string &reason)
{
    if (count > 0)
        writeLine(Clock::now(), {}, missingText(count, reason));
}

void WireLog::writeLine(Clock::time_point when, const std::string &path, const std::string &text)
{
    if (!isOpen())
        return;
    const bool room =
        unwritten_ == 0 || append(when, {}, missingText(unwritten_, errorText(unwrittenError_)));
    if (room)
        unwritten_ = 0;
    if (!room || !append(when, path, text)) {
        ++unwritten_;
        unwrittenError_ = errno;
    }
}

bool WireLog::append(Clock::time_point when, const std::string &path, const std::string &text)
{
    // Integers, because the decimal sign of a floating-point number depends on the locale.
    const auto passed = std::chrono::duration_cast<std::chrono::microseconds>(when - start_).count();
    char time[32];
    std::snprintf(time, sizeof time, "%5lld.%06lld ", static_cast<long long>(passed / 1000000),
                  static_cast<long long>(passed % 1000000));
    const auto known = names_.find(path);
    const std::string &name = known != names_.end() ? known->second : path;
    return lines_.append(time + name + (name.empty() ? "" : " ") + text);
}

// ---- The log of the process

WireLog &startWireLog(const std::string &file, const std::string &bus)
{
    auto *log = new WireLog(file, bus);
    processLog.store(log, std::memory_order_release);
    std::atexit([] {
        if (WireLog *current = wireLog())
            current->flush();
    });
    return *log;
}

void logFailure(const std::string &path, const char *call, int error)
{
    logLine(path, [call, error] { return std::string(call) + ": " + errorText(error); });
    errno = error;
}

} // namespace hidusb
