// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FakeHidUsb: every function of HIDUsb.h with answers that a test sets, a log of the calls, and the
// callbacks run on threads of the fake's own, as the layer does. A program that links it needs no layer.
// Everything may be used from any thread; no lock is held while a callback or a hook runs.
#pragma once

#include "device/hidusb/HIDUsb.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct FakeDevice {
    std::string path;
    std::string vid, pid;
    DeviceIdentity identity{};
    bool online = true;
    uint8_t address[3] = {};
    uint16_t receiverVersion = 0x0100; // of the connected interface, also in its USB descriptor
    uint16_t mouseVersion = 0x0100;
    DongleRGB rgb{};
    DongleRgbBar bar{};
    DongleIndicator indicator{};
    uint8_t longRange = 0;
    bool answersLongRange = true;
    bool answersColor = true; // reads of its colour scheme
    bool answersBar = true;   // of its light bar
    bool answersLamps = true; // and of its lamps
    bool takesLights = true;  // writes of both
};

class FakeHidUsb
{
public:
    static FakeHidUsb &instance();

    // No devices, an empty log, no hooks, no callbacks. Waits for running callbacks, so a test whose main
    // thread they need calls it only when idle() is true.
    void reset();

    // ---- the world
    void setDevices(std::vector<FakeDevice> devices);
    void addDevice(const FakeDevice &device);
    void edit(const std::string &path, const std::function<void(FakeDevice &)> &change);
    void setOnline(const std::string &path, bool online);
    FakeDevice device(const std::string &path) const; // a default one when unknown
    // What ProtocolDataParser gives.
    void setParsed(const FlashDataMap &record);
    // What UsbUpgradeC_FindBootDevices counts, and UsbUpgrade_Start answers.
    void setUpgrade(int32_t bootDevices, bool starts);
    // Whether StartUsbChanged runs its callback at once, as the layer does; true after reset().
    void setRunsWatchAtStart(bool runs);
    // Called on the caller's thread after each call has been logged, with its name.
    void setHook(std::function<void(const std::string &name)> hook);

    // ---- the log: "Name" or "Name argument argument"
    std::vector<std::string> calls() const;
    int count(const std::string &name) const; // of calls with this name, whatever the arguments
    void clearCalls();
    std::vector<FlashDataMap> updates() const; // the records given to ProtocolDataUpdate

    // ---- the callbacks
    bool connected() const;
    std::string connectedPath() const;
    // Queue a call of the callback of the connection as it stands then; false without a connection.
    bool deliver(uint8_t message, uint16_t address, std::vector<uint8_t> payload);
    // The same for the hot-plug callback; false without a watch.
    bool changeUsb();
    bool upgradeReport(std::vector<uint8_t> data);
    UpgradeCallback_t upgradeCallback() const; // of the last start; null when it was refused
    // No callback is queued or running.
    bool idle() const;

    // For the exported functions.
    struct State;
    State &state() { return *world; }

private:
    FakeHidUsb();
    bool connectedTo(ProtocolCallback_t callback) const;

    State *world; // never freed: a callback may still run when the process ends
};
