// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DeviceFixture: the device core on the scripted layer, with a catalogue of three models and a log of what
// the hub carried.
#pragma once

#include "device/DeviceState.h"
#include "tests/support/FakeHidUsb.h"
#include "tests/support/HubLog.h"
#include "tests/support/ProductFolder.h"

#include <QtTest>

class DeviceFixture : public QObject
{
protected:
    FakeHidUsb &layer = FakeHidUsb::instance();
    ProductFolder product{smallCatalogue()};
    std::unique_ptr<HubLog> hub;

    // Before each test: nothing is attached.
    void begin()
    {
        layer.reset();
        resetDeviceState();
        hub = std::make_unique<HubLog>();
    }
    // The one device that most tests need, at the path "mouse".
    void plugMouse()
    {
        FakeDevice mouse;
        mouse.path = "mouse";
        layer.setDevices({mouse});
    }
    // What the layer was called for.
    QStringList callNames() const
    {
        QStringList names;
        for (const std::string &call : layer.calls())
            names.append(QString::fromStdString(call));
        return names;
    }
};
