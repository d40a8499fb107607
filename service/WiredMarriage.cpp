// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/WiredMarriage.h"

#include "catalogue/DeviceKinds.h"
#include "device/hidusb/HIDUsb.h"

#include <algorithm>

namespace
{

uint8_t receiverClass(int kHz) { return kHz == 8 ? 4 : kHz == 1 ? 0 : 1; }

// The result of the question tells whether the mouse answers by radio, and a mouse on its cable does not; the
// address is there whenever the receiver itself has answered.
std::optional<DonglePairing> addressOf(const DeviceAllInfo &receiver)
{
    OnlineAddress answer{};
    UsbFinderC_GetDeviceOnLineWithUsbAddress(receiver.DevicePath.toUtf8().constData(), &answer);
    const auto *const begin = std::begin(answer.Address), *const end = std::end(answer.Address);
    if (std::all_of(begin, end, [](uint8_t byte) { return byte == 0; }))
        return std::nullopt;
    DonglePairing pairing{};
    std::reverse_copy(begin, end, pairing.Address);
    pairing.ReceiverClass = receiverClass(connectionKind(receiver.DeviceKind));
    return pairing;
}

} // namespace

int WiredMarriage::marry(const std::vector<DeviceAllInfo> &devices)
{
    int writes = 0;
    for (const DeviceAllInfo &receiver : devices) {
        if (receiver.Usb)
            continue;
        if (const auto pairing = addressOf(receiver)) {
            record_ = pairing;
            writes += marryAgain(devices);
        }
    }
    return writes;
}

int WiredMarriage::marryAgain(const std::vector<DeviceAllInfo> &devices) const
{
    if (!record_)
        return 0;
    int writes = 0;
    for (const DeviceAllInfo &mouse : devices) {
        if (!mouse.Usb)
            continue;
        UsbFinderC_SetDongleIDToMouse(mouse.DevicePath.toUtf8().constData(),
                                      reinterpret_cast<const uint8_t *>(&*record_));
        ++writes;
    }
    return writes;
}
