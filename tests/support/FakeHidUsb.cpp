// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tests/support/FakeHidUsbState.h"

FakeHidUsb::FakeHidUsb() : world(new State) {}

FakeHidUsb &FakeHidUsb::instance()
{
    static FakeHidUsb fake;
    return fake;
}

void FakeHidUsb::reset()
{
    {
        const std::lock_guard<std::mutex> guard(world->lock);
        world->protocol = nullptr;
        world->watch = nullptr;
        world->upgrade = nullptr;
        world->hook = nullptr;
    }
    world->protocolRow.waitIdle();
    world->watchRow.waitIdle();
    world->upgradeRow.waitIdle();
    const std::lock_guard<std::mutex> guard(world->lock);
    world->devices.clear();
    world->log.clear();
    world->updates.clear();
    world->parsed = FlashDataMap{};
    world->connectedPath.clear();
    world->watchRunsAtStart = true;
    world->bootDevices = 0;
    world->upgradeStarts = false;
}

void FakeHidUsb::setDevices(std::vector<FakeDevice> devices)
{
    const std::lock_guard<std::mutex> guard(world->lock);
    world->devices = std::move(devices);
}

void FakeHidUsb::addDevice(const FakeDevice &device)
{
    const std::lock_guard<std::mutex> guard(world->lock);
    world->devices.push_back(device);
}

void FakeHidUsb::edit(const std::string &path, const std::function<void(FakeDevice &)> &change)
{
    world->with(path.c_str(), change);
}

void FakeHidUsb::setOnline(const std::string &path, bool online)
{
    edit(path, [online](FakeDevice &device) { device.online = online; });
}

FakeDevice FakeHidUsb::device(const std::string &path) const
{
    FakeDevice copy;
    world->with(path.c_str(), [&copy](const FakeDevice &device) { copy = device; });
    return copy;
}

void FakeHidUsb::setParsed(const FlashDataMap &record)
{
    const std::lock_guard<std::mutex> guard(world->lock);
    world->parsed = record;
}

void FakeHidUsb::setUpgrade(int32_t bootDevices, bool starts)
{
    const std::lock_guard<std::mutex> guard(world->lock);
    world->bootDevices = bootDevices;
    world->upgradeStarts = starts;
}

void FakeHidUsb::setRunsWatchAtStart(bool runs)
{
    const std::lock_guard<std::mutex> guard(world->lock);
    world->watchRunsAtStart = runs;
}

void FakeHidUsb::setHook(std::function<void(const std::string &)> hook)
{
    const std::lock_guard<std::mutex> guard(world->lock);
    world->hook = std::move(hook);
}

std::vector<std::string> FakeHidUsb::calls() const
{
    const std::lock_guard<std::mutex> guard(world->lock);
    return world->log;
}

int FakeHidUsb::count(const std::string &name) const
{
    const std::vector<std::string> all = calls();
    return static_cast<int>(std::count_if(all.begin(), all.end(), [&name](const std::string &call) {
        return call == name || call.compare(0, name.size() + 1, name + ' ') == 0;
    }));
}

void FakeHidUsb::clearCalls()
{
    const std::lock_guard<std::mutex> guard(world->lock);
    world->log.clear();
    world->updates.clear();
}

std::vector<FlashDataMap> FakeHidUsb::updates() const
{
    const std::lock_guard<std::mutex> guard(world->lock);
    return world->updates;
}

bool FakeHidUsb::connected() const
{
    const std::lock_guard<std::mutex> guard(world->lock);
    return world->protocol != nullptr;
}

std::string FakeHidUsb::connectedPath() const
{
    const std::lock_guard<std::mutex> guard(world->lock);
    return world->connectedPath;
}

// A connection that was ended meanwhile calls no more.
bool FakeHidUsb::connectedTo(ProtocolCallback_t callback) const
{
    const std::lock_guard<std::mutex> guard(world->lock);
    return world->protocol == callback;
}

bool FakeHidUsb::deliver(uint8_t message, uint16_t address, std::vector<uint8_t> payload)
{
    ProtocolCallback_t callback;
    {
        const std::lock_guard<std::mutex> guard(world->lock);
        callback = world->protocol;
    }
    if (!callback)
        return false;
    const auto length = static_cast<uint32_t>(payload.size());
    // Behind its end stands whatever the buffer held before.
    payload.resize(std::max<std::size_t>(payload.size(), 56), 0xEE);
    world->protocolRow.post([=] {
        const uint8_t header[8] = {0x08, message, 0, static_cast<uint8_t>(address >> 8),
                                   static_cast<uint8_t>(address & 0xFF)};
        if (connectedTo(callback))
            callback(header, sizeof header, payload.data(), length);
    });
    return true;
}

bool FakeHidUsb::changeUsb()
{
    UsbChangedCallback_t callback;
    {
        const std::lock_guard<std::mutex> guard(world->lock);
        callback = world->watch;
    }
    if (callback)
        world->watchRow.post(callback);
    return callback != nullptr;
}

UpgradeCallback_t FakeHidUsb::upgradeCallback() const
{
    const std::lock_guard<std::mutex> guard(world->lock);
    return world->upgrade;
}

bool FakeHidUsb::upgradeReport(std::vector<uint8_t> data)
{
    UpgradeCallback_t callback;
    {
        const std::lock_guard<std::mutex> guard(world->lock);
        callback = world->upgrade;
    }
    data.resize(std::max<std::size_t>(data.size(), 8));
    if (callback)
        world->upgradeRow.post([=] { callback(data.data()); });
    return callback != nullptr;
}

bool FakeHidUsb::idle() const
{
    return world->protocolRow.idle() && world->watchRow.idle() && world->upgradeRow.idle();
}
