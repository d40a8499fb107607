// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// EmulatedBus: an emulator inside the test, on the one bus folder that the process's layer speaks to. The
// layer reads the folder's name at its first call, so the folder stays for the whole process.
#pragma once

#include "device/hidusb/HIDUsb.h"
#include "emulator/Emulator.h"

#include <QTemporaryDir>
#include <cstring>

class EmulatedBus
{
public:
    // The folder's name, set for the layer before its first call.
    static QString folder()
    {
        static QTemporaryDir directory;
        qputenv("HIDUSB_BUS", directory.path().toLocal8Bit());
        return directory.path();
    }

    // Serves a scenario; aborts on a scenario that is wrong, which is a mistake of the test.
    explicit EmulatedBus(const char *scenario)
    {
        std::string error;
        if (!emulated.loadText(scenario, "test", error) || !emulated.start(folder().toStdString(), error))
            qFatal("%s", error.c_str());
    }

    // One order, which must be a good one.
    std::string order(const std::string &line)
    {
        const std::string answer = emulated.order(line);
        if (answer.find("error") == 0)
            qFatal("%s: %s", line.c_str(), answer.c_str());
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
};

inline bool sameBytes(const FlashDataMap &a, const FlashDataMap &b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}
