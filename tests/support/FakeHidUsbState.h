// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the two halves of the fake layer share: its world and the rows in which callbacks wait.
#pragma once

#include "tests/support/FakeHidUsb.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

// A thread that runs what it is given, one after the other.
class JobThread
{
public:
    void post(std::function<void()> job)
    {
        const std::lock_guard<std::mutex> guard(lock);
        jobs.push_back(std::move(job));
        if (!started) {
            started = true;
            std::thread([this] { loop(); }).detach();
        }
        changed.notify_all();
    }
    bool idle() const
    {
        const std::lock_guard<std::mutex> guard(lock);
        return jobs.empty() && !running;
    }
    void waitIdle()
    {
        std::unique_lock<std::mutex> guard(lock);
        changed.wait(guard, [this] { return jobs.empty() && !running; });
    }

private:
    void loop()
    {
        std::unique_lock<std::mutex> guard(lock);
        for (;;) {
            changed.wait(guard, [this] { return !jobs.empty(); });
            const std::function<void()> job = std::move(jobs.front());
            jobs.pop_front();
            running = true;
            guard.unlock();
            job();
            guard.lock();
            running = false;
            changed.notify_all();
        }
    }

    mutable std::mutex lock;
    std::condition_variable changed;
    std::deque<std::function<void()>> jobs;
    bool started = false;
    bool running = false;
};

struct FakeHidUsb::State {
    mutable std::mutex lock;
    std::vector<FakeDevice> devices;
    std::vector<std::string> log;
    std::vector<FlashDataMap> updates;
    FlashDataMap parsed{};
    std::function<void(const std::string &)> hook;
    ProtocolCallback_t protocol = nullptr;
    std::string connectedPath;
    UsbChangedCallback_t watch = nullptr;
    UpgradeCallback_t upgrade = nullptr;
    bool watchRunsAtStart = true;
    int32_t bootDevices = 0;
    bool upgradeStarts = false;
    JobThread protocolRow, watchRow, upgradeRow;

    void note(const std::string &name, const std::string &arguments = {})
    {
        std::function<void(const std::string &)> call;
        {
            const std::lock_guard<std::mutex> guard(lock);
            log.push_back(arguments.empty() ? name : name + ' ' + arguments);
            call = hook;
        }
        if (call)
            call(name);
    }
    // change(FakeDevice &) on the device of that path; false when there is none.
    template <typename Change> bool with(const char *path, Change change)
    {
        const std::lock_guard<std::mutex> guard(lock);
        const auto found = std::find_if(devices.begin(), devices.end(), [&](const FakeDevice &device) {
            return path && device.path == path;
        });
        if (found == devices.end())
            return false;
        change(*found);
        return true;
    }
};
