// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// EmulatedBus: an emulator inside the test, on the one bus folder that the process's layer speaks to. The
// layer reads the folder's name at its first call, so the folder stays for the whole process. With
// EMULATED_USB in the environment the devices are plugged into this machine's kernel instead, and the layer
// meets them as it meets any others.
#pragma once

#include "device/hidusb/HIDUsb.h"
#include "emulator/Emulator.h"
#include "tests/support/UsbIdsLine.h"
#include "tests/support/UsbNodes.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <cstring>

class EmulatedBus
{
public:
    // The folder's name, set for the layer before its first call.
    static QString folder()
    {
        static QTemporaryDir directory;
        if (!isUsb())
            qputenv("HIDUSB_BUS", directory.path().toLocal8Bit());
        return directory.path();
    }
    static bool isUsb() { return qEnvironmentVariableIsSet("EMULATED_USB"); }

    // What the path of a plugged device's interface holds: the device's id, or the node's name.
    static QString pathPart(const QString &id)
    {
        return isUsb() ? QString::fromStdString(usbnodes::nodeOf(id.toStdString())) : id;
    }

    // Serves a scenario, whose line of USB ids is put before it; aborts on a scenario that is wrong, which is
    // a mistake of the test.
    explicit EmulatedBus(const char *scenario)
    {
        std::string error;
        const auto kind = isUsb() ? emulator::BusKind::Usb : emulator::BusKind::Sockets;
        if (!emulated.loadText(std::string(UsbIdsLine) + scenario, "test", error) ||
            !emulated.start(folder().toStdString(), error, kind))
            qFatal("%s", error.c_str());
        settle(emulated.interfaces());
    }
    ~EmulatedBus()
    {
        emulated.stop();
        settle({});
    }

    // One order, which must be a good one.
    std::string order(const std::string &line)
    {
        const std::string answer = emulated.order(line);
        if (answer.find("error") == 0)
            qFatal("%s: %s", line.c_str(), answer.c_str());
        settle(emulated.interfaces());
        return answer;
    }

    FlashImage flash(const char *mouse) { return *emulated.flash(mouse); }

    // The record that the mouse's flash stands for.
    FlashDataMap record(const char *mouse)
    {
        const FlashImage image = flash(mouse);
        FlashDataMap parsed{};
        ProtocolDataParser(reinterpret_cast<const uint8_t *>(&image), &parsed);
        return parsed;
    }

    emulator::Emulator emulated;

private:
    // The kernel takes some tenths of a second to know what was plugged in or out. The program goes on
    // meanwhile.
    static void settle(const std::vector<emulator::Interface> &interfaces)
    {
        const auto pause = [] {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            ::usleep(1000);
        };
        if (isUsb() && !usbnodes::settle(interfaces, pause))
            qFatal("The kernel does not know the devices that are plugged in.");
    }
};

inline bool sameBytes(const FlashDataMap &a, const FlashDataMap &b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}
