// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/HidrawBus.h"

#include "device/hidusb/ReportWriter.h"
#include "device/hidusb/Udev.h"
#include "device/hidusb/WaitableFile.h"
#include "device/hidusb/WireLog.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/hidraw.h>
#include <mutex>
#include <set>
#include <sys/ioctl.h>
#include <unistd.h>

namespace hidusb
{

namespace
{

class UdevChanges;

// The watches of this process. A read that fails reports a removal to them, often before udev does.
struct Watches {
    std::mutex mutex;
    std::set<UdevChanges *> all;
};

Watches &watches()
{
    static auto *all = new Watches;
    return *all;
}

void notifyNodeGone();

// A duplicate that child processes do not inherit.
int copyOf(int file) { return fcntl(file, F_DUPFD_CLOEXEC, 0); }

class HidrawPort : public ReportPort
{
public:
    HidrawPort(int node, const std::string &path) : path_(path), node_(node), writer_(copyOf(node), path) {}

    bool write(const uint8_t *bytes, std::size_t size) override { return writer_.post(bytes, size); }

    // A read error is a removal, which udev may announce seconds later.
    Received read(uint8_t *bytes, std::size_t capacity, int timeoutMs) override
    {
        const Received received = readNode(bytes, capacity, timeoutMs);
        if (received.outcome == Outcome::Gone && !notifiedGone_.exchange(true))
            notifyNodeGone();
        return received;
    }

    void interrupt() override { node_.interrupt(); }
    bool isGone() const override { return node_.isHungUp(); }

private:
    Received readNode(uint8_t *bytes, std::size_t capacity, int timeoutMs)
    {
        switch (node_.wait(timeoutMs)) {
        case WaitableFile::Outcome::Nothing:
            return {Outcome::Nothing, 0};
        case WaitableFile::Outcome::Gone:
            return {Outcome::Gone, 0};
        case WaitableFile::Outcome::Readable:
            break;
        }
        const ssize_t size = ::read(node_.file(), bytes, capacity);
        if (size >= 0)
            return {Outcome::Report, static_cast<std::size_t>(size)};
        if (errno == EAGAIN || errno == EINTR)
            return {Outcome::Nothing, 0};
        logFailure(path_, "read", errno);
        return {Outcome::Gone, 0};
    }

    const std::string path_;
    WaitableFile node_;
    ReportWriter writer_;
    std::atomic<bool> notifiedGone_{false};
};

class UdevChanges : public ChangeSource
{
public:
    UdevChanges(UdevHandle<udev> context, UdevHandle<udev_monitor> monitor)
        : context_(std::move(context))
        , monitor_(std::move(monitor))
        , events_(copyOf(udev_monitor_get_fd(monitor_.get())))
    {
        const std::lock_guard lock(watches().mutex);
        watches().all.insert(this);
    }
    ~UdevChanges() override
    {
        {
            const std::lock_guard lock(watches().mutex);
            watches().all.erase(this);
        }
        const auto lock = lockUdev();
        monitor_.reset();
        context_.reset();
    }

    bool wait(int timeoutMs) override
    {
        const bool readable = events_.wait(timeoutMs) == WaitableFile::Outcome::Readable;
        bool changed = nodeGone_.exchange(false);
        if (!readable)
            return changed;
        const auto lock = lockUdev();
        while (const UdevHandle<udev_device> device{udev_monitor_receive_device(monitor_.get())}) {
            const char *action = udev_device_get_action(device.get());
            changed = changed || (action != nullptr &&
                                  (std::strcmp(action, "add") == 0 || std::strcmp(action, "remove") == 0));
        }
        return changed;
    }

    void interrupt() override { events_.interrupt(); }
    void noteGone()
    {
        nodeGone_ = true;
        interrupt();
    }

private:
    UdevHandle<udev> context_;
    UdevHandle<udev_monitor> monitor_;
    WaitableFile events_;
    std::atomic<bool> nodeGone_{false};
};

void notifyNodeGone()
{
    const std::lock_guard lock(watches().mutex);
    for (UdevChanges *watch : watches().all)
        watch->noteGone();
}

} // namespace

std::vector<InterfaceInfo> HidrawBus::enumerate() { return nodes_.list(); }

// The kernel opens one node at a time, for a USB device in some 60 ms, and a report to any node waits behind
// all openings that were asked for before it. With one opening at a time it waits for one.
static int openAlone(const std::string &path)
{
    static auto *mutex = new std::mutex;
    const std::lock_guard lock(*mutex);
    return ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
}

// A device may be unplugged while its node is opened: open() then succeeds, but no request to the node does.
static int openNode(const std::string &path)
{
    const int node = openAlone(path);
    int descriptorSize = 0;
    if (node >= 0 && ::ioctl(node, HIDIOCGRDESCSIZE, &descriptorSize) >= 0)
        return node;
    logFailure(path, node < 0 ? "open" : "HIDIOCGRDESCSIZE", errno);
    if (node >= 0)
        ::close(node);
    return -1;
}

std::unique_ptr<ReportPort> HidrawBus::open(const std::string &path)
{
    static const std::string nodes = "/dev/hidraw";
    if (path.compare(0, nodes.size(), nodes) != 0)
        return nullptr;
    const int node = openNode(path);
    return node >= 0 ? std::make_unique<HidrawPort>(node, path) : nullptr;
}

std::unique_ptr<ChangeSource> HidrawBus::watch()
{
    const auto lock = lockUdev();
    UdevHandle<udev> context(udev_new());
    if (!context) {
        logFailure({}, "udev_new", errno);
        return nullptr;
    }
    // Where no udev daemon runs, as in a container, there are only the kernel's own events. With a daemon
    // these would come too early: the node does not have its permissions yet.
    UdevHandle<udev_monitor> monitor(
        udev_monitor_new_from_netlink(context.get(), udevRuns() ? "udev" : "kernel"));
    if (!monitor || udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), "hidraw", nullptr) < 0 ||
        udev_monitor_enable_receiving(monitor.get()) < 0) {
        logFailure({}, "udev_monitor", errno);
        return nullptr;
    }
    return std::make_unique<UdevChanges>(std::move(context), std::move(monitor));
}

} // namespace hidusb
