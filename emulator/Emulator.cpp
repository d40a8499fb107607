// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Emulator.h"

#include "emulator/BusSockets.h"
#include "emulator/Orders.h"
#include "emulator/Scenario.h"
#include "emulator/usb/UsbBus.h"
#include "emulator/usb/VirtualHub.h"

#include <fstream>
#include <sstream>
#include <sys/eventfd.h>

namespace emulator
{

Emulator::Emulator(std::FILE *logFile)
    : logFile_(logFile)
    , wake_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
    , ended_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
}

Emulator::~Emulator() { stop(); }

bool Emulator::load(const std::string &file, std::string &error)
{
    std::ifstream stream(file);
    if (stream && !loadStream(stream, file, error))
        return false;
    // A folder opens, but does not read.
    const bool wasRead = stream.is_open() && !stream.bad();
    if (!wasRead)
        error = file + ": cannot be read";
    return wasRead;
}

bool Emulator::loadText(const std::string &text, const std::string &name, std::string &error)
{
    std::istringstream stream(text);
    return loadStream(stream, name, error);
}

bool Emulator::loadStream(std::istream &stream, const std::string &name, std::string &error)
{
    bool loaded = false;
    onLoop([&] {
        loaded = loadScenario(world_, stream, name, error);
        apply();
    });
    return loaded;
}

bool Emulator::start(const std::string &folder, std::string &error, BusKind kind)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (thread_.joinable()) {
        error = "the emulator runs already";
        return false;
    }
    if (!folder_.open(folder, error))
        return false;
    if (!control_.open(folder_)) {
        folder_.close();
        error = folder + ": no socket can be made there";
        return false;
    }
    if (kind == BusKind::Usb)
        bus_ = std::make_unique<UsbBus>(plugIntoKernel);
    else
        bus_ = std::make_unique<BusSockets>(folder_);
    eventfd_t before = 0;
    ::eventfd_read(ended_.get(), &before);
    world_.quit = false;
    stopping_ = false;
    serving_ = true;
    world_.scene.run(Clock::now());
    apply();
    // What happened before there was a bus is nobody's news.
    for (auto &[id, traffic] : world_.traffic)
        traffic.clear();
    thread_ = std::thread(&Emulator::loop, this);
    return true;
}

void Emulator::stop()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    ::eventfd_write(wake_.get(), 1);
    if (thread_.joinable())
        thread_.join();
}

std::string Emulator::order(const std::string &line)
{
    std::string answer;
    onLoop([&] {
        answer = runOrder(world_, line);
        apply();
    });
    return answer;
}

std::optional<MouseState> Emulator::mouse(const std::string &id)
{
    std::optional<MouseState> state;
    onLoop([&] {
        if (const Mouse *mouse = world_.scene.findMouse(id))
            state = mouse->state;
    });
    return state;
}

std::optional<ReceiverState> Emulator::receiver(const std::string &id)
{
    std::optional<ReceiverState> state;
    onLoop([&] {
        if (const Receiver *receiver = world_.scene.findReceiver(id))
            state = receiver->state;
    });
    return state;
}

std::optional<FlashImage> Emulator::flash(const std::string &id, std::optional<int> profile)
{
    const auto state = mouse(id);
    const int index = profile.value_or(state ? state->profile : 0);
    if (!state || index < 0 || index >= ProfileCount)
        return std::nullopt;
    return state->flash[static_cast<std::size_t>(index)];
}

template <typename Count> uint64_t Emulator::ofTraffic(const std::string &id, Count count)
{
    uint64_t result = 0;
    onLoop([&] {
        const auto found = world_.traffic.find(id);
        result = found == world_.traffic.end() ? 0 : count(found->second);
    });
    return result;
}

uint64_t Emulator::reportCount(const std::string &id)
{
    return ofTraffic(id, [](const Traffic &traffic) { return traffic.total(); });
}

uint64_t Emulator::reportCount(const std::string &id, wire::Command command)
{
    return ofTraffic(
        id, [command](const Traffic &traffic) { return traffic.countOf(static_cast<uint8_t>(command)); });
}

uint64_t Emulator::requestCount(const std::string &id, wire::Command command)
{
    return ofTraffic(
        id, [command](const Traffic &traffic) { return traffic.requestsOf(static_cast<uint8_t>(command)); });
}

std::size_t Emulator::clientCount()
{
    std::size_t count = 0;
    onLoop([&] { count = bus_ ? bus_->clientCount() : 0; });
    return count;
}

std::vector<Interface> Emulator::interfaces()
{
    std::vector<Interface> all;
    onLoop([&] { all = world_.scene.interfaces(); });
    return all;
}

void Emulator::onLoop(const std::function<void()> &job)
{
    std::unique_lock<std::mutex> lock(mutex_);
    if (!serving_) {
        world_.scene.run(Clock::now());
        job();
        return;
    }
    Job entry{&job, false};
    jobs_.push_back(&entry);
    ::eventfd_write(wake_.get(), 1);
    done_.wait(lock, [&entry] { return entry.done; });
}

} // namespace emulator
