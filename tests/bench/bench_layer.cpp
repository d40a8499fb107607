// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the layer costs: conversions, the time that ProtocolDataUpdate holds its caller, reports on the
// wire for edits, a full read and an upgrade when each direction carries one report in a millisecond.
#include "emulator/Emulator.h"
#include "tests/bench/LoadedRecord.h"
#include "tests/support/Firmware.h"

#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstring>

namespace
{

using bench::loaded;
using bench::waitFor;

constexpr const char *Scenario = "mouse m cid 18 mid 6 version 1.05 battery 80\n"
                                 "receiver r class 8k mouse m version 1.02 address a10001\n"
                                 "plug r\n"
                                 "mouse cable cid 18 mid 8\n"
                                 "plug cable\n";

// One emulated receiver with its mouse, connected and loaded.
class World
{
public:
    World()
    {
        char folder[] = "/tmp/morlen-bench-XXXXXX";
        if (mkdtemp(folder) == nullptr)
            std::abort();
        setenv("HIDUSB_BUS", folder, 1);
        std::string error;
        if (!emulated.loadText(std::string(bench::Ids) + Scenario, "bench", error) ||
            !emulated.start(folder, error))
            std::abort();
        int32_t count = 1;
        path = UsbFinderC_FindHidDevicesByDefaultDeviceId("1209", "0005", &count)[0];
        UsbServerC_Start(path.c_str(), path.c_str(), bench::takeFullRead);
        bench::read();
    }
    uint64_t writes() { return emulated.reportCount("r", wire::Command::FlashWrite); }
    bool agrees(uint8_t rate) { return emulated.flash("m")->ReportRate == rate; }

    emulator::Emulator emulated;
    std::string path;
};

World &world()
{
    static auto *const instance = new World;
    return *instance;
}

void decode(benchmark::State &state)
{
    const std::vector<uint8_t> image(FlashSize, 0x5A);
    FlashDataMap record;
    for (auto _ : state) {
        ProtocolDataParser(image.data(), &record);
        benchmark::DoNotOptimize(record);
    }
}

void encode(benchmark::State &state)
{
    FlashDataMap record;
    std::memset(&record, 0x5A, sizeof record);
    FlashImage image{};
    for (auto _ : state) {
        hidusb::encode(record, image);
        benchmark::DoNotOptimize(image);
    }
}

// The caller's time for an edit of one byte; the report goes out meanwhile.
void updateHoldsItsCaller(benchmark::State &state)
{
    world();
    FlashDataMap record = loaded;
    for (auto _ : state) {
        record.ReportRate = static_cast<uint8_t>(record.ReportRate == 1 ? 2 : 1);
        ProtocolDataUpdate(&record);
        state.PauseTiming();
        waitFor([&] { return world().agrees(record.ReportRate); });
        state.ResumeTiming();
    }
}

// From the call to the changed byte in the emulated flash.
void editReachesTheFlash(benchmark::State &state)
{
    world().emulated.order(state.range(0) ? "pace on" : "pace off");
    FlashDataMap record = loaded;
    const uint64_t before = world().writes();
    for (auto _ : state) {
        record.ReportRate = static_cast<uint8_t>(record.ReportRate == 1 ? 2 : 1);
        ProtocolDataUpdate(&record);
        waitFor([&] { return world().agrees(record.ReportRate); });
    }
    state.counters["reports"] = benchmark::Counter(static_cast<double>(world().writes() - before) /
                                                   static_cast<double>(state.iterations()));
    world().emulated.order("pace off");
}

// A slider dragged over 100 values, as fast as the caller can and at a hand's speed.
void sliderDrag(benchmark::State &state)
{
    world().emulated.order("pace on");
    FlashDataMap record = loaded;
    const uint64_t before = world().writes();
    for (auto _ : state) {
        for (int value = 0; value < 100; ++value) {
            record.ReportRate = static_cast<uint8_t>(value); // any byte: the layer knows no meaning
            ProtocolDataUpdate(&record);
            usleep(static_cast<useconds_t>(state.range(0)));
        }
        waitFor([&] { return world().agrees(99); });
    }
    state.counters["reports"] = benchmark::Counter(static_cast<double>(world().writes() - before) /
                                                   static_cast<double>(state.iterations()));
    world().emulated.order("pace off");
}

void fullRead(benchmark::State &state)
{
    world().emulated.order(state.range(0) ? "pace on" : "pace off");
    for (auto _ : state)
        bench::read();
    world().emulated.order("pace off");
    if (state.range(0))
        state.counters["of124ms"] =
            benchmark::Counter(124e-3 * static_cast<double>(state.iterations()),
                               benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

std::atomic<int> upgradeEnd;

void onUpgrade(const uint8_t *data)
{
    if (data[1] == 2)
        upgradeEnd = data[2];
}

// A whole upgrade of 128 KiB, paced. The device is off the bus for 2 x 90 ms of it, or with `away` 0 for 4
// ms.
void upgrade(benchmark::State &state)
{
    emulator::Emulator &emulated = world().emulated;
    emulated.order("pace on");
    emulated.order(state.range(0) ? "boottimes 30 60" : "boottimes 1 1");
    const auto file = support::makeFirmware(wire::TargetMouse, 128 * 1024, 18, 8);
    int32_t most = 1;
    UsbFinderC_FindHidDevicesByDefaultDeviceId("1209", "0001", &most); // names the vendor
    const uint64_t before = emulated.reportCount("cable");
    for (auto _ : state) {
        upgradeEnd = -1;
        if (UsbUpgrade_Start(file.data(), onUpgrade, 10000) == 0)
            std::abort();
        waitFor([] { return upgradeEnd != -1; });
        if (upgradeEnd != 1)
            std::abort();
    }
    emulated.order("pace off");
    const auto reports = static_cast<double>(emulated.reportCount("cable") - before);
    state.counters["reports"] = reports / static_cast<double>(state.iterations());
    state.counters["ofLimit"] =
        benchmark::Counter(reports * 1e-3, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void onLineQuestion(benchmark::State &state)
{
    world().emulated.order(state.range(0) ? "pace on" : "pace off");
    for (auto _ : state)
        benchmark::DoNotOptimize(UsbFinderC_GetDeviceOnLine(world().path.c_str()));
    world().emulated.order("pace off");
}

// A macro of 70 events, from the record to the flash: onto a button with another action, which is put back
// each time, or over another macro of the same button. One report in a millisecond and direction.
void macroReachesTheFlash(benchmark::State &state)
{
    world().emulated.order("pace on");
    FlashDataMap record = loaded;
    uint8_t round = 0;
    uint64_t reports = 0;
    const auto put = [&record](const KeyBinding &binding) {
        record.KeyBindings[1] = binding;
        ProtocolDataUpdate(&record);
        waitFor([&binding] {
            return std::memcmp(&world().emulated.flash("m")->KeyBindings[1], &binding, sizeof binding) == 0;
        });
    };
    for (auto _ : state) {
        put(state.range(0) ? KeyBinding{MacroBlockClass, 1, round} : KeyBinding{1, 2, 0});
        std::memset(&record.MacroBlocks[1], ++round, sizeof record.MacroBlocks[1]);
        const uint64_t before = world().writes();
        const auto began = std::chrono::steady_clock::now();
        put({MacroBlockClass, 1, round});
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count());
        reports += world().writes() - before;
    }
    state.counters["reports"] =
        benchmark::Counter(static_cast<double>(reports) / static_cast<double>(state.iterations()));
    put({1, 2, 0});
    world().emulated.order("pace off");
}

// UsbServer_Exit with nothing waiting, and right after a macro of 70 events was bound. One report in a
// millisecond and direction.
void leaving(benchmark::State &state)
{
    world().emulated.order("pace on");
    uint8_t round = 0;
    for (auto _ : state) {
        UsbServerC_Start(world().path.c_str(), world().path.c_str(), bench::takeFullRead);
        bench::read();
        UsbServer_SetPCDriverStatus(1);
        FlashDataMap record = loaded;
        if (state.range(0)) {
            std::memset(&record.MacroBlocks[1], ++round, sizeof record.MacroBlocks[1]);
            record.KeyBindings[1] = {MacroBlockClass, 1, round};
        } else {
            const auto told = [before = world().emulated.reportCount("r", wire::Command::DriverStatus)] {
                return world().emulated.reportCount("r", wire::Command::DriverStatus) > before;
            };
            UsbServer_SetPCDriverStatus(0);
            waitFor(told);
        }
        const auto began = std::chrono::steady_clock::now();
        if (state.range(0)) {
            ProtocolDataUpdate(&record);
            UsbServer_SetPCDriverStatus(0);
        }
        UsbServer_Exit();
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
        state.SetIterationTime(took.count());
        if (state.range(0) && world().emulated.flash("m")->KeyBindings[1].Second != round)
            state.SkipWithError("not stored");
    }
    UsbServerC_Start(world().path.c_str(), world().path.c_str(), bench::takeFullRead);
    bench::read();
    world().emulated.order("pace off");
}

BENCHMARK(decode);
BENCHMARK(encode);
BENCHMARK(updateHoldsItsCaller)->Iterations(2000);
BENCHMARK(editReachesTheFlash)
    ->ArgName("paced")
    ->Arg(0)
    ->Arg(1)
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(sliderDrag)->ArgName("pause_us")->Arg(0)->Arg(8000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(fullRead)->ArgName("paced")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(upgrade)->ArgName("away")->Arg(0)->Arg(1)->Iterations(3)->UseRealTime()->Unit(
    benchmark::kMillisecond);
BENCHMARK(macroReachesTheFlash)
    ->ArgName("inuse")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(50)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(leaving)->ArgName("macro")->Arg(0)->Arg(1)->Iterations(50)->UseManualTime()->Unit(
    benchmark::kMillisecond);
BENCHMARK(onLineQuestion)->ArgName("paced")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
