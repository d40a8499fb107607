// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The clock of a mouse with a screen: the packet that sets it, how it is sent, and the screens that are
// attached. Nothing in the program sets a clock. Any thread.
#pragma once

#include <QDateTime>
#include <QStringList>
#include <array>

constexpr int ScreenPacketSize = 40;
using ScreenPacket = std::array<uint8_t, ScreenPacketSize>;

// The packet for that time; what it does not use is 0.
ScreenPacket clockPacket(const QDateTime &time);

// Puts the checksum into the last byte before the packet's first zero and sends the bytes up to it, at most
// five times. Gives `reply` once it is accepted, else null. A packet whose second byte is 0, as a clock
// packet's is, is one byte long by this measure, so nothing of it but the checksum is sent, and no reply is
// accepted. `reply` has room for ScreenPacketSize bytes, or is null: then none can be read.
const uint8_t *SendScreenPacket(ScreenPacket &packet, uint8_t *reply);

namespace screens
{

// The hot-plug callback of the clock: looks for the screens again. Gives how many there are.
int RefreshScreenPaths();
QStringList paths(); // ScreenPaths: the result of the last search
int pathIndex();     // ScreenPathIndex: which of them is meant

// ScreenVid: the vendor of the screens. No device of the catalogue has one, so the program sets none.
QString vendor();
void setVendor(const QString &vendor);

} // namespace screens
