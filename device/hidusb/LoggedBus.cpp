// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/LoggedBus.h"

#include <algorithm>
#include <cstdio>

namespace hidusb
{

namespace
{

std::string hexadecimal(const std::vector<uint8_t> &bytes)
{
    static const char digits[] = "0123456789abcdef";
    std::string text;
    for (const uint8_t byte : bytes)
        text.append({' ', digits[byte >> 4], digits[byte & 0xF]});
    return text;
}

class LoggedPort : public ReportPort
{
public:
    LoggedPort(std::string path, std::unique_ptr<ReportPort> port, WireLog &log)
        : path_(std::move(path)), port_(std::move(port)), log_(log)
    {
        log_.add(path_, [] { return "opened"; });
    }
    ~LoggedPort() override
    {
        port_.reset();
        log_.add(path_, [] { return "closed"; });
    }

    // Logged before it goes out, since its answer may be logged at once.
    bool write(const uint8_t *bytes, std::size_t size) override
    {
        logReport("->", bytes, size, size);
        const bool written = port_->write(bytes, size);
        if (!written)
            log_.add(path_, [] { return "not sent"; });
        return written;
    }

    Received read(uint8_t *bytes, std::size_t capacity, int timeoutMs) override
    {
        const Received received = port_->read(bytes, capacity, timeoutMs);
        if (received.outcome == Outcome::Report)
            logReport("<-", bytes, std::min(received.size, capacity), received.size);
        if (received.outcome == Outcome::Gone && !gone_) {
            gone_ = true;
            log_.add(path_, [] { return "gone"; });
        }
        return received;
    }

    void interrupt() override { port_->interrupt(); }
    bool isGone() const override { return port_->isGone(); }

private:
    void logReport(const char *direction, const uint8_t *bytes, std::size_t size, std::size_t whole)
    {
        log_.add(path_, [direction, report = std::vector<uint8_t>(bytes, bytes + size), whole] {
            const std::string text = direction + hexadecimal(report);
            return whole > report.size() ? text + " ... " + std::to_string(whole) + " bytes" : text;
        });
    }

    const std::string path_;
    std::unique_ptr<ReportPort> port_;
    WireLog &log_;
    bool gone_ = false; // the reading thread's
};

bool isSame(const InterfaceInfo &one, const InterfaceInfo &other)
{
    return one.path == other.path && one.vendorId == other.vendorId && one.productId == other.productId &&
           one.release == other.release && one.interfaceNumber == other.interfaceNumber &&
           one.usagePage == other.usagePage;
}

std::string description(const InterfaceInfo &info)
{
    char text[80];
    std::snprintf(text, sizeof text, "interface %d, usage page %04x, release %x.%02x", info.interfaceNumber,
                  info.usagePage, info.release >> 8, info.release & 0xFF);
    return text;
}

template <typename Visit>
void forEachMissing(const std::vector<InterfaceInfo> &some, const std::vector<InterfaceInfo> &others,
                    Visit visit)
{
    for (const InterfaceInfo &info : some) {
        if (std::none_of(others.begin(), others.end(),
                         [&info](const InterfaceInfo &other) { return isSame(info, other); }))
            visit(info);
    }
}

} // namespace

void LoggedBus::logChanges(const std::vector<InterfaceInfo> &before, const std::vector<InterfaceInfo> &now)
{
    forEachMissing(before, now, [this](const InterfaceInfo &info) {
        log_.add(info.path, [info] { return "detached: " + description(info); });
    });
    forEachMissing(now, before, [this](const InterfaceInfo &info) {
        log_.introduce(info);
        log_.add(info.path, [info] { return "attached: " + description(info); });
    });
}

std::vector<InterfaceInfo> LoggedBus::enumerate()
{
    std::vector<InterfaceInfo> found = bus_.enumerate();
    // Held while the lines are queued, so that they keep the order of the searches.
    const std::lock_guard lock(mutex_);
    logChanges(present_, found);
    present_ = found;
    return found;
}

std::unique_ptr<ReportPort> LoggedBus::open(const std::string &path)
{
    std::unique_ptr<ReportPort> port = bus_.open(path);
    if (port)
        return std::make_unique<LoggedPort>(path, std::move(port), log_);
    log_.add(path, [] { return "cannot be opened"; });
    return nullptr;
}

std::unique_ptr<ChangeSource> LoggedBus::watch()
{
    std::unique_ptr<ChangeSource> changes = bus_.watch();
    if (!changes)
        log_.add({}, [] { return "attached and removed devices cannot be watched"; });
    return changes;
}

} // namespace hidusb
