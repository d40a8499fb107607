// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The emulator: a scene on a bus with a thread of its own, used by tests and by mouse-emulator. Any other
// thread may call the public functions; the emulator's thread runs them one at a time, and their effect is on
// the bus when they return. Only the owner calls start() and stop().
#pragma once

#include "emulator/Control.h"
#include "emulator/World.h"

#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

namespace emulator
{

enum class BusKind {
    Sockets, // interfaces are sockets in the bus folder
    Usb,     // devices are plugged into the kernel's virtual host controller; for root
};

class Emulator
{
public:
    // `logFile` gets the report dump; the caller owns it, and it must outlive the emulator.
    explicit Emulator(std::FILE *logFile = stderr);
    ~Emulator();
    Emulator(const Emulator &) = delete;
    Emulator &operator=(const Emulator &) = delete;

    // A scenario file, or its text; `name` stands in error messages. False with a reason in `error`.
    bool load(const std::string &file, std::string &error);
    bool loadText(const std::string &text, const std::string &name, std::string &error);
    // Locks the bus folder and starts serving; all plugged devices exist on return. With Usb the folder has
    // only the control socket, and the kernel may take some moments to enumerate the devices.
    bool start(const std::string &folder, std::string &error, BusKind kind = BusKind::Sockets);
    // Ends serving; no socket is left in the folder. Also after the order "quit", which ends it too.
    void stop();
    // Becomes readable when serving ends.
    int endDescriptor() const { return ended_.get(); }

    // One order; see runOrder.
    std::string order(const std::string &line);

    // Copies of the devices' states; none for an unknown id.
    std::optional<MouseState> mouse(const std::string &id);
    std::optional<ReceiverState> receiver(const std::string &id);
    // Of the current profile when none is given.
    std::optional<FlashImage> flash(const std::string &id, std::optional<int> profile = std::nullopt);
    // Valid reports from the host to this plug, all or of one command; 0 for an unknown id.
    uint64_t reportCount(const std::string &id);
    uint64_t reportCount(const std::string &id, wire::Command command);
    // The same without repeats, which reuse a recent sequence number because the answer was late.
    uint64_t requestCount(const std::string &id, wire::Command command);
    std::size_t clientCount();
    // The interfaces on the bus now.
    std::vector<Interface> interfaces();

private:
    using TimePoint = Clock::time_point;
    struct Job {
        const std::function<void()> *run;
        bool done;
    };

    bool loadStream(std::istream &stream, const std::string &name, std::string &error);
    void onLoop(const std::function<void()> &job);
    template <typename Count> uint64_t ofTraffic(const std::string &id, Count count);
    void loop();
    void poll(bool hasJobs);
    std::vector<Job *> takeJobs();
    void finish(const std::vector<Job *> &jobs);
    void carry();
    void apply();
    void take(const Interface &face, const uint8_t *bytes, std::size_t size);
    void process(Traffic &traffic, Device &device, const Incoming &incoming);
    wire::Report answerTo(Traffic &traffic, Device &device, const wire::Report &request, const FaultHit &hit);
    void reply(Traffic &traffic, const Outgoing &outgoing, const FaultHit &hit);
    void sendDue(const std::string &id, Traffic &traffic);
    std::optional<TimePoint> nextDue() const;
    void show(const char *arrow, const std::string &id, const uint8_t *bytes, std::size_t size);

    // Used by the emulator's thread only while it runs.
    World world_;
    BusFolder folder_;
    std::unique_ptr<DeviceBus> bus_;
    Control control_;
    std::FILE *const logFile_;
    const TimePoint began_ = Clock::now();

    FileDescriptor wake_;
    FileDescriptor ended_;
    std::thread thread_;
    std::mutex mutex_; // guards the members below
    std::condition_variable done_;
    std::vector<Job *> jobs_;
    bool serving_ = false;
    bool stopping_ = false;
};

} // namespace emulator
