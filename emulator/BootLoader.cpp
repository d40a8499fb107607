// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/BootLoader.h"

#include <algorithm>
#include <cstring>

namespace emulator
{

uint32_t crc32(const uint8_t *bytes, std::size_t count)
{
    uint32_t crc = 0xFFFFFFFFU;
    for (std::size_t i = 0; i < count; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1U) != 0 ? (crc >> 1) ^ 0xEDB88320U : crc >> 1;
    }
    return ~crc;
}

void BootLoader::reset()
{
    image_.clear();
    received_.clear();
    erased_ = {};
    leaving_ = false;
}

wire::Report BootLoader::answer(const wire::Report &request, const wire::BootIdentityReply &identity,
                                TimePoint now)
{
    if (request.command() == wire::Command::BootIdentity)
        return replyWith(request, identity);
    return makeReply(request, execute(request, identity, now));
}

wire::Status BootLoader::execute(const wire::Report &request, const wire::BootIdentityReply &identity,
                                 TimePoint now)
{
    const auto status = [](bool done) { return done ? wire::Status::Ok : wire::Status::Refused; };
    if (request.command() == wire::Command::BootBegin)
        return begin(argumentOf<wire::BootBeginRequest>(request), now);
    if (now < erased_)
        return wire::Status::Busy;
    switch (request.command()) {
    case wire::Command::BootData:
        return status(store(request));
    case wire::Command::BootEnd:
        // A repeated BootEnd, whose first acknowledgement was lost, is not a failure.
        return status(accepted_ || finish(identity));
    case wire::Command::BootLeave:
        leaving_ = holdsImage_;
        return status(leaving_);
    default:
        return wire::Status::Refused;
    }
}

std::optional<uint16_t> BootLoader::takeAcceptedVersion()
{
    const auto version = accepted_;
    accepted_.reset();
    return version;
}

wire::Status BootLoader::begin(const wire::BootBeginRequest &request, TimePoint now)
{
    const uint32_t length = request.Length.get();
    const bool announced = !image_.empty() && image_.size() == length && crc_ == request.Crc32.get();
    if (now < erased_)
        return wire::Status::Busy;
    if (announced)
        return wire::Status::Ok;
    if (accepted_ || leaving_ || length < sizeof(wire::FirmwareHead) || length > wire::FirmwareSizeLimit)
        return wire::Status::Refused;
    crc_ = request.Crc32.get();
    image_.assign(length, 0xFF);
    received_.assign((length + wire::PayloadSize - 1) / wire::PayloadSize, false);
    holdsImage_ = false;
    erased_ = now + eraseTime;
    return now < erased_ ? wire::Status::Busy : wire::Status::Ok;
}

bool BootLoader::store(const wire::Report &request)
{
    const std::size_t block = request.address();
    if (block >= received_.size())
        return false;
    const std::size_t offset = block * wire::PayloadSize;
    if (request.Length != std::min(wire::PayloadSize, image_.size() - offset))
        return false;
    std::copy_n(request.Payload, request.Length, image_.begin() + static_cast<std::ptrdiff_t>(offset));
    received_[block] = true;
    return true;
}

bool BootLoader::finish(const wire::BootIdentityReply &identity)
{
    const bool whole = std::find(received_.begin(), received_.end(), false) == received_.end();
    if (image_.empty() || !whole)
        return false;
    holdsImage_ = check(identity);
    // Written flash can't be written again: the next BootBegin erases a wrong image.
    if (!holdsImage_)
        reset();
    return holdsImage_;
}

bool BootLoader::check(const wire::BootIdentityReply &identity)
{
    if (crc32(image_.data(), image_.size()) != crc_)
        return false;
    wire::FirmwareHead head;
    std::memcpy(&head, image_.data(), sizeof head);
    constexpr std::size_t covered = offsetof(wire::FirmwareHead, Version);
    if (head.Magic.get() != wire::FirmwareMagic || head.FileLength.get() != image_.size() ||
        head.Crc32.get() != crc32(image_.data() + covered, image_.size() - covered))
        return false;
    const wire::BootIdentityReply made{head.Target, head.Cid, head.Mid, head.ReceiverKHz};
    if (std::memcmp(&made, &identity, sizeof made) != 0)
        return false;
    accepted_ = head.Version.get();
    return true;
}

} // namespace emulator
