// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Emulator.h"

#include "emulator/BusSockets.h"
#include "emulator/Orders.h"
#include "emulator/Scenario.h"
#include "emulator/usb/UsbBus.h"
#include "emulator/usb/VirtualHub.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <sys/eventfd.h>
#include <sys/prctl.h>

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
        bus_ = std::make_unique<UsbBus>([ports = UsbPorts()](const std::string &device) mutable {
            return plugIntoKernel(device, ports);
        });
    else
        bus_ = std::make_unique<BusSockets>(folder_);
    eventfd_t before = 0;
    ::eventfd_read(ended_.get(), &before);
    world_.quit = false;
    stopping_ = false;
    serving_ = true;
    world_.scene.run(Clock::now());
    apply();
    // Nobody waits for events of the time before there was a bus.
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

// ---- The thread: polls all sockets, then handles the reports received and the events that are due

void Emulator::loop()
{
    // The default timer slack of 50 us is 5 % of the pace of 1 ms.
    ::prctl(PR_SET_TIMERSLACK, 1000UL);
    for (bool ends = false; !ends;) {
        // Taken before poll(): clients that connected before an order then receive the reports it causes.
        const std::vector<Job *> jobs = takeJobs();
        poll(!jobs.empty());
        for (const Job *job : jobs)
            (*job->run)();
        carry();
        finish(jobs);
        const std::lock_guard<std::mutex> lock(mutex_);
        ends = stopping_ || world_.quit;
    }
    bus_->sync({}, [this](const Interface &face) { world_.traffic[face.device].clear(); });
    control_.close(folder_);
    folder_.close();
    const std::lock_guard<std::mutex> lock(mutex_);
    serving_ = false;
    for (Job *job : jobs_) {
        (*job->run)();
        job->done = true;
    }
    jobs_.clear();
    done_.notify_all();
    ::eventfd_write(ended_.get(), 1);
}

static timespec spanUntil(Clock::time_point due)
{
    const auto span = std::max(due - Clock::now(), Clock::duration::zero());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(span);
    return {static_cast<time_t>(seconds.count()),
            static_cast<long>(std::chrono::nanoseconds(span - seconds).count())};
}

void Emulator::poll(bool hasJobs)
{
    std::vector<pollfd> polled{{wake_.get(), POLLIN, 0}};
    control_.addTo(polled);
    bus_->addTo(polled, [this](const Interface &face) {
        return world_.traffic[face.device].in.size() < Traffic::InLimit;
    });
    const auto due = hasJobs ? Clock::time_point{} : nextDue();
    const timespec span = spanUntil(due.value_or(Clock::time_point{}));
    ::ppoll(polled.data(), polled.size(), due ? &span : nullptr, nullptr);

    ReadyMap ready;
    for (const pollfd &each : polled) {
        if (each.revents != 0)
            ready[each.fd] = each.revents;
    }
    eventfd_t woken = 0;
    ::eventfd_read(wake_.get(), &woken);
    world_.scene.run(Clock::now());
    bus_->service(ready, [this](const Interface &face, const uint8_t *bytes, std::size_t size) {
        take(face, bytes, size);
    });
    control_.service(ready, [this](const std::string &line) {
        Control::Answer answer{runOrder(world_, line), world_.followed};
        carry();
        return answer;
    });
}

std::vector<Emulator::Job *> Emulator::takeJobs()
{
    std::vector<Job *> jobs;
    const std::lock_guard<std::mutex> lock(mutex_);
    jobs.swap(jobs_);
    return jobs;
}

void Emulator::finish(const std::vector<Job *> &jobs)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    for (Job *job : jobs)
        job->done = true;
    done_.notify_all();
}

std::optional<Emulator::TimePoint> Emulator::nextDue() const
{
    std::optional<TimePoint> next = world_.scene.nextDue();
    const auto earlier = [&next](const std::optional<TimePoint> &due) {
        if (due && (!next || *due < *next))
            next = due;
    };
    earlier(bus_->nextDue());
    for (const auto &[id, traffic] : world_.traffic) {
        earlier(traffic.nextDue(world_.pace));
    }
    return next;
}

void Emulator::take(const Interface &face, const uint8_t *bytes, std::size_t size)
{
    Traffic &traffic = world_.traffic[face.device];
    const uint16_t page = face.name.usagePage;
    const TimePoint now = world_.scene.now();
    if (page == wire::ScreenUsagePage) {
        // A screen echoes a report, padded to full size: hosts drop shorter ones.
        show("->", face.device, bytes, size);
        Bytes answer(bytes, bytes + size);
        answer.resize(wire::ReportSize);
        if (size <= wire::ReportSize)
            traffic.out.push({page, std::move(answer)}, now);
        return;
    }
    const bool known = page == wire::SettingsUsagePage || page == wire::BootUsagePage;
    if (!known || !wire::isSound(bytes, size))
        return show("-> ignored", face.device, bytes, size);
    show("->", face.device, bytes, size);
    wire::Report report;
    std::copy_n(bytes, size, reinterpret_cast<uint8_t *>(&report));
    traffic.count(report);
    traffic.in.push({page, report}, now);
}

void Emulator::carry()
{
    const TimePoint now = world_.scene.now();
    for (auto &[id, traffic] : world_.traffic) {
        Device *device = world_.scene.find(id);
        while (!traffic.isStalled(now)) {
            const auto incoming = traffic.in.take(now, world_.pace);
            if (!incoming)
                break;
            process(traffic, *device, *incoming);
        }
    }
    apply();
    for (auto &[id, traffic] : world_.traffic)
        sendDue(id, traffic);
}

// After any change: pairing, reach and notices, then the sockets.
void Emulator::apply()
{
    for (const RoutedNotice &notice : world_.scene.settle())
        world_.traffic[notice.device].out.push({wire::SettingsUsagePage, bytesOf(notice.report)},
                                               world_.scene.now());
    if (!serving_)
        return;
    bus_->sync(world_.scene.interfaces(),
               [this](const Interface &face) { world_.traffic[face.device].clear(); });
}

void Emulator::process(Traffic &traffic, Device &device, const Incoming &incoming)
{
    const auto hit = traffic.faults.match(incoming.report.CommandCode);
    if (!hit) {
        const wire::Report answer = world_.scene.answer(device, incoming.report);
        return traffic.out.push({incoming.usagePage, bytesOf(answer)}, world_.scene.now());
    }
    if (hit->kind == FaultKind::Unplug || hit->kind == FaultKind::PowerCut) {
        if (hit->kind == FaultKind::Unplug)
            world_.scene.setPlugged(device, false);
        else
            world_.scene.cutPower(device);
        return traffic.clear();
    }
    const wire::Report answer = answerTo(traffic, device, incoming.report, *hit);
    reply(traffic, {incoming.usagePage, spoil(answer, *hit)}, *hit);
}

wire::Report Emulator::answerTo(Traffic &traffic, Device &device, const wire::Report &request,
                                const FaultHit &hit)
{
    switch (hit.kind) {
    case FaultKind::Refuse:
        return makeReply(request, wire::Status::Refused);
    case FaultKind::Busy:
        return makeReply(request, wire::Status::Busy);
    case FaultKind::Unstored:
        return makeReply(request, wire::Status::Ok);
    case FaultKind::Stall:
        traffic.stalledUntil = world_.scene.now() + std::chrono::milliseconds(hit.ms);
        break;
    case FaultKind::Radio:
        if (const auto *receiver = dynamic_cast<Receiver *>(&device)) {
            if (Mouse *mouse = world_.scene.mouseInReach(*receiver))
                mouse->state.radio = false;
        }
        break;
    default:
        break;
    }
    return world_.scene.answer(device, request);
}

void Emulator::reply(Traffic &traffic, const Outgoing &outgoing, const FaultHit &hit)
{
    const int copies = hit.kind == FaultKind::NoReply ? 0 : hit.kind == FaultKind::Doubled ? 2 : 1;
    const auto push = [this, &traffic, outgoing, plugging = traffic.plugging] {
        if (traffic.plugging == plugging)
            traffic.out.push(outgoing, world_.scene.now());
    };
    if (hit.kind == FaultKind::Late)
        return world_.scene.after(std::chrono::milliseconds(hit.ms), push);
    for (int i = 0; i < copies; ++i)
        push();
}

void Emulator::sendDue(const std::string &id, Traffic &traffic)
{
    while (!traffic.isStalled(world_.scene.now())) {
        const auto outgoing = traffic.out.take(world_.scene.now(), world_.pace);
        if (!outgoing)
            break;
        show("<-", id, outgoing->bytes.data(), outgoing->bytes.size());
        bus_->send(id, outgoing->usagePage, outgoing->bytes);
    }
}

void Emulator::show(const char *arrow, const std::string &id, const uint8_t *bytes, std::size_t size)
{
    if (!world_.log && !control_.hasFollowers())
        return;
    const std::chrono::duration<double> time = world_.scene.now() - began_;
    const CommandRow *row = size > 1 ? findCommand(bytes[1]) : nullptr;
    char part[32];
    std::snprintf(part, sizeof part, "%10.4f ", time.count());
    std::string line = part + std::string(arrow) + " " + id + " " + (row != nullptr ? row->name : "unknown");
    for (std::size_t i = 0; i < size; ++i) {
        std::snprintf(part, sizeof part, " %02x", bytes[i]);
        line += part;
    }
    line += "\n";
    control_.publish(id, line);
    if (!world_.log)
        return;
    std::fputs(line.c_str(), logFile_);
    std::fflush(logFile_);
}

} // namespace emulator
