// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DispatchFixture: the message dispatch with a device that is selected and connected.
#pragma once

#include "device/EventDispatch.h"
#include "device/hidusb/wire/FlashLayout.h"
#include "tests/support/DeviceFixture.h"

class DispatchFixture : public DeviceFixture
{
protected:
    using Bytes = std::vector<uint8_t>;
    const Bytes Image = Bytes(FlashSize, 0);

    void begin()
    {
        DeviceFixture::begin();
        plugMouse();
        startStatusTimer();
    }
    void select(int driveIndex, uint16_t kind)
    {
        DeviceAllInfo info;
        info.DevicePath = QStringLiteral("mouse");
        info.Cid = 18;
        info.Mid = uint8_t(driveIndex + 6);
        info.DriveIndex = driveIndex;
        info.DeviceKind = kind;
        info.Usb = isWiredKind(kind);
        SelectedDevice::set(info);
        pointCurrentDeviceAt(info.DevicePath);
        UsbServerC_Start("mouse", "mouse", ProtocolCallback);
        layer.clearCalls();
    }
    // Runs the callback with a message and waits until it has returned.
    void deliver(uint8_t code, uint16_t address, const Bytes &payload)
    {
        layer.deliver(code, address, payload);
        QTRY_VERIFY(layer.idle());
        QCoreApplication::processEvents(); // the queued signals
    }
};
