// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// bench_usb: the same requests over the kernel's nodes and over sockets, in one run. As root on a machine of
// its own with vhci-hcd; a layer keeps to its first bus, so each back end has a process of its own.
#include "device/SideBySide.h"
#include "emulator/Emulator.h"
#include "tests/bench/LoadedRecord.h"
#include "tests/support/TempFolder.h"
#include "tests/support/UsbNodes.h"

#include <algorithm>
#include <atomic>
#include <ctime>
#include <fcntl.h>
#include <sys/wait.h>
#include <thread>

namespace
{

double milliseconds(clockid_t clock)
{
    timespec now{};
    ::clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// Prints the median of the time that `task` takes and of the processor time of the whole process therein.
template <typename Task> void measure(const char *what, int rounds, Task task)
{
    std::vector<double> times;
    std::vector<double> busy;
    for (int i = 0; i < rounds; ++i) {
        const double began = milliseconds(CLOCK_MONOTONIC);
        const double cpu = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
        task();
        times.push_back(milliseconds(CLOCK_MONOTONIC) - began);
        busy.push_back(milliseconds(CLOCK_PROCESS_CPUTIME_ID) - cpu);
    }
    const auto middle = static_cast<std::size_t>(rounds / 2);
    std::sort(times.begin(), times.end());
    std::sort(busy.begin(), busy.end());
    std::printf("  %-30s %8.3f ms, of these %8.3f ms in this process\n", what, times[middle], busy[middle]);
}

std::vector<std::string> find(const char *product)
{
    int32_t count = 16;
    const char *const *paths = UsbFinderC_FindHidDevicesByDeviceId("1209", product, 1, 5, &count);
    return {paths, paths + count};
}

class World
{
public:
    World(const std::string &scenario, emulator::BusKind kind)
    {
        std::string error;
        ::setenv("HIDUSB_BUS", kind == emulator::BusKind::Sockets ? folder.path().c_str() : "", 1);
        if (!emulated.loadText(scenario, "bench", error) || !emulated.start(folder.path(), error, kind)) {
            std::puts(error.c_str());
            std::exit(1);
        }
        if (kind == emulator::BusKind::Usb && !usbnodes::settle(emulated.interfaces()))
            std::exit(1);
    }

    TempFolder folder;
    emulator::Emulator emulated;
};

// What one report costs without any layer: written to the node, and its answer read from it.
void echo(const std::string &path)
{
    const int node = ::open(path.c_str(), O_RDWR);
    wire::Report request{};
    request.Id = wire::ReportId;
    request.CommandCode = static_cast<uint8_t>(wire::Command::OnLine);
    request.Sequence = 1;
    wire::seal(request);
    uint8_t answer[wire::ReportSize];
    measure("a report, without the layer", 200, [&] {
        if (::write(node, &request, sizeof request) != sizeof request ||
            ::read(node, answer, sizeof answer) != sizeof answer)
            std::exit(1);
    });
    ::close(node);
}

void requests(emulator::BusKind kind)
{
    World world(std::string(bench::Ids) + "mouse m cid 18 mid 9\nreceiver r class 8k mouse m\nplug r\n",
                kind);
    const std::string path = find("0005").at(0);
    measure("enumeration, one device", 50, [] { find("0005"); });
    if (kind == emulator::BusKind::Usb)
        echo(path);
    UsbServerC_Start(path.c_str(), path.c_str(), bench::takeFullRead);
    bench::read();
    measure("a full read, 124 reports", 20, bench::read);
    measure("the on-line question", 200, [&path] { UsbFinderC_GetDeviceOnLine(path.c_str()); });
    FlashDataMap record = bench::loaded;
    measure("an edit, until the flash", 100, [&] {
        record.ReportRate = static_cast<uint8_t>(record.ReportRate == 1 ? 2 : 1);
        ProtocolDataUpdate(&record);
        bench::waitFor([&] { return world.emulated.flash("m")->ReportRate == record.ReportRate; });
    });
    UsbServer_Exit();
}

void tenDevices(emulator::BusKind kind)
{
    std::string scenario = bench::Ids;
    for (int i = 0; i < 10; ++i)
        scenario += "mouse m" + std::to_string(i) + " cid 18 mid 6\nplug m" + std::to_string(i) + "\n";
    const World world(scenario, kind);
    const auto findAll = [] {
        if (find("0001").size() != 10)
            std::exit(1);
    };
    measure("ten devices for the first time", 1, findAll);
    measure("enumeration, ten devices", 50, findAll);
    // The kernel wakes a device up at its first opening, and the layer keeps it open for some seconds.
    // As the search does.
    const auto askAll = [paths = find("0001")]() mutable {
        sideBySide(paths, [](const std::string &path) {
            if (UsbFinderC_GetDeviceInfo(path.c_str(), 0).Mid != 6)
                std::exit(1);
        });
    };
    measure("ten devices opened and asked", 1, askAll);
    measure("ten devices asked", 20, askAll);
}

std::atomic<int> calls{0};

void watch(emulator::BusKind kind)
{
    const World world(std::string(bench::Ids) + "mouse m cid 18 mid 6\nplug m\n", kind);
    measure("a watch's first call", 20, [] {
        const int before = calls;
        StartUsbChanged([] { ++calls; }, 600);
        bench::waitFor([before] { return calls > before; });
    });
    StopUsbChanged();
}

// What the kernel takes to open nodes, without any layer.
void openings(emulator::BusKind kind)
{
    if (kind != emulator::BusKind::Usb)
        return;
    const World world(
        std::string(bench::Ids) + "mouse m cid 18 mid 6\nmouse n cid 18 mid 6\nplug m\nplug n\n", kind);
    const std::vector<std::string> paths = find("0001");
    if (paths.size() != 2)
        std::exit(1);
    const auto open = [](const std::string &path) { return ::open(path.c_str(), O_RDWR | O_CLOEXEC); };
    const auto openAndClose = [&open](const std::string &path) { ::close(open(path)); };
    measure("a node", 20, [&] { openAndClose(paths[0]); });
    measure("two nodes by one thread", 20, [&] {
        const int first = open(paths[0]);
        openAndClose(paths[1]);
        ::close(first);
    });
    measure("two nodes by two threads", 20, [&] {
        std::thread other(openAndClose, paths[0]);
        openAndClose(paths[1]);
        other.join();
    });
    const int held = open(paths[0]);
    measure("a node that is open already", 20, [&] { openAndClose(paths[0]); });
    ::close(held);
}

// In a process of its own.
int inChild(void (*task)(emulator::BusKind), emulator::BusKind kind)
{
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0) {
        task(kind);
        std::fflush(stdout);
        ::_exit(0);
    }
    int status = 1;
    ::waitpid(child, &status, 0);
    return status;
}

} // namespace

int main()
{
    int failed = 0;
    for (const auto kind : {emulator::BusKind::Sockets, emulator::BusKind::Usb}) {
        std::puts(kind == emulator::BusKind::Usb ? "hidraw" : "sockets");
        for (const auto task : {requests, tenDevices, openings, watch})
            failed |= inChild(task, kind);
    }
    return failed != 0 ? 1 : 0;
}
