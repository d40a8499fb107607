// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// CoreFixture: worker, dispatch and the real layer on an emulated bus, without windows: HubLog stands for
// the pages. Made anew for each test function.
#pragma once

#include "device/DeviceRecord.h"
#include "device/DeviceSearch.h"
#include "device/DeviceState.h"
#include "device/EventDispatch.h"
#include "device/Worker.h"
#include "device/WriteFamily.h"
#include "tests/e2e/ProgramSettled.h"
#include "tests/support/EmulatedBus.h"
#include "tests/support/HubLog.h"
#include "tests/support/Leftovers.h"
#include "tests/support/TestMain.h"
#include "tests/support/Watchdog.h"

#include <QtTest>

class CoreFixture
{
public:
    explicit CoreFixture(const char *scenario) : bus(scenario)
    {
        resetDeviceState();
        worker = std::make_unique<Worker>();
        worker->checkTimer().stop();
        OnDevicePage = 1;
        UiArmed = true;
    }
    ~CoreFixture()
    {
        StopUsbChanged();
        UsbServer_Exit();
        worker.reset();
        spin(20); // what is still being delivered
    }

    // Chooses the n-th attached device, as a click on its tile does.
    bool select(std::size_t index = 0)
    {
        const std::vector<DeviceAllInfo> found = findDevices(DeviceFinder::Default);
        if (index >= found.size())
            return false;
        DeviceAllInfo device = found[index];
        refreshDevice(device);
        emit PostMsg::instance()->SigSelectMouseInfo(device);
        pointCurrentDeviceAt(device.DevicePath);
        return true;
    }

    // Starts a pass that reads everything again.
    void startLoad()
    {
        hub.lines.clear();
        MouseOnline = false;
        emit PostMsg::instance()->SigMainPageChange();
        worker->startPass();
    }
    bool loaded() const { return hub.lines.contains(QStringLiteral("form")) && DataLoaded; }
    bool loadOnce(int timeoutMs = 8000)
    {
        startLoad();
        return waitFor([this] { return loaded() && !worker->isRunning(); }, timeoutMs);
    }
    // On a busy machine a question may go without its answer in time; the mouse then counts as away.
    bool load()
    {
        bool done = loadOnce();
        for (int again = 0; again < 3 && !done; ++again)
            done = loadOnce();
        return done;
    }

    template <typename Condition> static bool waitFor(Condition condition, int timeoutMs = 8000)
    {
        return QTest::qWaitFor(condition, timeoutMs);
    }
    static void spin(int ms)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < ms)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    // An edit that is done again while the mouse does not answer in time.
    template <typename Edit> static bool edit(Edit write) { return waitFor(write); }
    // Until the program has finished what the mouse has caused so far.
    bool settle(const char *mouse)
    {
        if (!waitFor([this] { return !worker->isRunning(); }))
            return false;
        const ProgramSettled settled(bus, mouse);
        return waitFor([&settled] { return bool(settled); });
    }
    // For a device that may be gone or mute, of which nothing tells whether more comes: until the host has
    // sent nothing for a while. What is tested afterwards must hold without that.
    void waitQuiet(const char *plug, int quietMs)
    {
        QElapsedTimer quiet;
        quiet.start();
        uint64_t seen = bus.emulated.reportCount(plug);
        while (quiet.elapsed() < quietMs) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            const uint64_t count = bus.emulated.reportCount(plug);
            if (count != seen || worker->isRunning())
                quiet.restart();
            seen = count;
        }
    }
    // Record and flash hold the same, once everything that is wanted has been written.
    bool agrees(const char *mouse, int timeoutMs = 8000)
    {
        return waitFor([&] { return sameBytes(DeviceRecord::copy(), bus.record(mouse)); }, timeoutMs);
    }

    Leftovers leftovers;
    EmulatedBus bus;
    HubLog hub;
    Watchdog watchdog;
    std::unique_ptr<Worker> worker;
};

struct CoreFolder {
    CoreFolder() { EmulatedBus::folder(); } // before the layer's first call
};
struct CoreSetUp : private CoreFolder, testmain::CoreApplication {
    using CoreApplication::CoreApplication;
};
