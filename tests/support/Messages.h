// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the library told its callbacks. They are plain functions, so the logs are the process's own.
#pragma once

#include "device/hidusb/HIDUsb.h"
#include "tests/support/Eventually.h"

#include <functional>
#include <mutex>
#include <vector>

namespace support
{

struct Message {
    std::vector<uint8_t> header;
    std::vector<uint8_t> payload;

    int code() const { return header.at(1); }
    int address() const { return header.at(3) << 8 | header.at(4); }
};

class MessageLog
{
public:
    void add(const uint8_t *header, int32_t headerLength, const uint8_t *payload, uint32_t payloadLength)
    {
        Message message{{header, header + headerLength}, {payload, payload + payloadLength}};
        std::function<void(const Message &)> hook;
        {
            const std::lock_guard lock(mutex_);
            messages_.push_back(message);
            hook = hook_;
        }
        if (hook)
            hook(message);
    }
    std::vector<Message> all() const
    {
        const std::lock_guard lock(mutex_);
        return messages_;
    }
    std::size_t size() const { return all().size(); }
    bool waitFor(std::size_t count) const
    {
        return eventually([this, count] { return size() >= count; });
    }
    // Runs inside the callback, behind the entry in the log.
    void setHook(std::function<void(const Message &)> hook)
    {
        const std::lock_guard lock(mutex_);
        hook_ = std::move(hook);
    }
    void clear()
    {
        const std::lock_guard lock(mutex_);
        messages_.clear();
        hook_ = nullptr;
    }

private:
    mutable std::mutex mutex_;
    std::vector<Message> messages_;
    std::function<void(const Message &)> hook_;
};

// Two logs with a callback each.
template <int N> MessageLog &messageLog()
{
    static MessageLog log;
    return log;
}

template <int N>
void logMessage(const uint8_t *header, int32_t headerLength, const uint8_t *payload, uint32_t payloadLength)
{
    messageLog<N>().add(header, headerLength, payload, payloadLength);
}

} // namespace support
