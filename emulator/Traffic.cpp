// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Traffic.h"

namespace emulator
{

static constexpr std::size_t ShortSize = 20;
static constexpr std::size_t OversizedSize = 100;

Bytes bytesOf(const wire::Report &report)
{
    const auto *first = reinterpret_cast<const uint8_t *>(&report);
    return Bytes(first, first + sizeof report);
}

Bytes spoil(const wire::Report &reply, const FaultHit &hit)
{
    wire::Report other = reply;
    if (hit.kind == FaultKind::WrongSeq) {
        other.Sequence = static_cast<uint8_t>(reply.Sequence % 255 + 1);
        wire::seal(other);
    }
    Bytes bytes = bytesOf(other);
    if (hit.kind == FaultKind::Short)
        bytes.resize(ShortSize);
    if (hit.kind == FaultKind::Oversized)
        bytes.resize(OversizedSize, 0xFF);
    if (hit.kind == FaultKind::FlipBit)
        bytes[hit.chance / 8 % bytes.size()] ^= static_cast<uint8_t>(1U << hit.chance % 8);
    return bytes;
}

} // namespace emulator
