// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/ScreenClock.h"

#include "device/DeviceSearch.h"
#include "device/hidusb/HIDUsb.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <numeric>

namespace
{

constexpr uint8_t ClockCommand = 0x0A;
constexpr uint8_t ClockLength = 0x10;
constexpr uint8_t ChecksumBase = 0x55;
constexpr int Attempts = 5;
constexpr int HeadSize = 7; // of a packet; a reply repeats it
constexpr int ScreenInterface = 1;
constexpr int ScreenUsage = 8;
constexpr int MostOfAProduct = 5;

struct Screens {
    std::mutex lock;
    QString vendor;
    QStringList paths;
    int index = 0;
};

Screens &known()
{
    static auto *const instance = new Screens; // a hot-plug callback may run while the process ends
    return *instance;
}

int textLength(const uint8_t *bytes)
{
    return int(strnlen(reinterpret_cast<const char *>(bytes), ScreenPacketSize));
}

uint8_t checksum(const uint8_t *bytes, int count)
{
    return uint8_t(ChecksumBase - std::accumulate(bytes, bytes + count, 0));
}

bool isAccepted(const ScreenPacket &packet, const uint8_t *reply)
{
    if (!reply || textLength(packet.data()) != ScreenPacketSize)
        return false;
    const int last = textLength(reply) - 1;
    return last >= 0 && std::equal(reply, reply + HeadSize, packet.begin()) &&
           checksum(reply, last) == reply[last];
}

} // namespace

ScreenPacket clockPacket(const QDateTime &time)
{
    const QDate day = time.date();
    const QTime clock = time.time();
    return {ClockCommand,
            0,
            ClockLength,
            uint8_t(day.year() >> 8),
            uint8_t(day.year()),
            uint8_t(day.month()),
            uint8_t(day.day()),
            uint8_t(clock.hour()),
            uint8_t(clock.minute()),
            uint8_t(clock.second()),
            uint8_t(day.dayOfWeek())};
}

const uint8_t *SendScreenPacket(ScreenPacket &packet, uint8_t *reply)
{
    const int length = textLength(packet.data());
    if (length == 0)
        return nullptr;
    const auto last = std::size_t(length - 1);
    packet[last] = checksum(packet.data(), length - 1);
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        UsbFinderC_ReadWriteDeviceData(packet.data(), reply, uint8_t(length));
        if (isAccepted(packet, reply))
            return reply;
    }
    return nullptr;
}

namespace screens
{

int RefreshScreenPaths()
{
    const QByteArray vid = vendor().toLatin1();
    QStringList found;
    for (const QString &pid : searchedProductIds()) {
        int32_t count = MostOfAProduct;
        const char *const *list = UsbFinderC_FindHidDevicesByDeviceId(
            vid.constData(), pid.toLatin1().constData(), ScreenInterface, ScreenUsage, &count);
        const int listed = list ? qBound(0, int(count), MostOfAProduct) : 0;
        for (int i = 0; i < listed; ++i)
            found << QString::fromLocal8Bit(list[i]);
    }
    Screens &all = known();
    const std::lock_guard<std::mutex> guard(all.lock);
    all.paths = found;
    if (found.isEmpty())
        all.index = 0;
    return found.size();
}

QStringList paths()
{
    const std::lock_guard<std::mutex> guard(known().lock);
    return known().paths;
}

int pathIndex()
{
    const std::lock_guard<std::mutex> guard(known().lock);
    return known().index;
}

QString vendor()
{
    const std::lock_guard<std::mutex> guard(known().lock);
    return known().vendor;
}

void setVendor(const QString &vendor)
{
    const std::lock_guard<std::mutex> guard(known().lock);
    known().vendor = vendor;
}

} // namespace screens
