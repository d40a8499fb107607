// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The layer on this machine's own kernel, with emulated devices that the kernel takes for real ones. For
// root on a machine of its own.
#pragma once

#include "device/hidusb/Codec.h"
#include "device/hidusb/HIDUsb.h"
#include "emulator/Emulator.h"
#include "tests/support/Messages.h"
#include "tests/support/TempFolder.h"
#include "tests/support/UsbFolder.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>

constexpr const char *Family = R"(
usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot 0006 receiverboot 0007
mouse air1 cid 18 mid 6 version 1.05 battery 80
mouse air2 cid 18 mid 7 version 1.06 battery 60
mouse air4 cid 18 mid 8 version 1.07 battery 40
mouse air8 cid 18 mid 9 version 1.08 battery 20
mouse wired cid 18 mid 6 version 1.0A battery 100 address c0ffee screen on
receiver rx1k class 1k mouse air1 version 2.01 address a10001
receiver rx2k class 2k mouse air2 version 2.02 address a10002
receiver rx4k class 4k mouse air4 version 2.03 address a10004
receiver rx8k class 8k mouse air8 version 2.04 address a10008
)";

class MachineTest : public testing::Test
{
protected:
    // One thread is the test's own, and the layer's row of callbacks keeps one from its first message on; the
    // thread sanitizer has one too.
#ifdef __SANITIZE_THREAD__
    static constexpr std::size_t LastingThreads = 3;
#else
    static constexpr std::size_t LastingThreads = 2;
#endif

    void SetUp() override
    {
        log().clear();
        files_ = files_ == 0 ? countIn("/proc/self/fd") : files_;
        serve(Family);
        startLastingThread();
    }
    void TearDown() override
    {
        UsbServer_Exit();
        StopUsbChanged();
        emulator_.stop();
        EXPECT_TRUE(usbnodes::settle({}));
        EXPECT_TRUE(support::eventually([] { return countIn("/proc/self/task") == LastingThreads; }))
            << countIn("/proc/self/task") << " threads";
        EXPECT_TRUE(support::eventually([] { return countIn("/proc/self/fd") == files_; }))
            << countIn("/proc/self/fd") << " descriptors, at first " << files_;
    }

    // Other devices in place of those that were there.
    void serve(const std::string &scenario)
    {
        emulator_.stop();
        std::string error;
        ASSERT_TRUE(emulator_.loadText(scenario, "scenario", error)) << error;
        ASSERT_TRUE(emulator_.start(folder_.path(), error, emulator::BusKind::Usb)) << error;
        settle();
    }
    // Until the thread that lasts is there, another could hide in its place.
    void startLastingThread()
    {
        static bool started = false;
        if (started)
            return;
        plug("rx8k");
        ASSERT_TRUE(load(nodeOf("rx8k")));
        started = true;
        UsbServer_Exit();
        unplug("rx8k");
    }

    static std::size_t countIn(const char *folder)
    {
        std::error_code error;
        const std::filesystem::directory_iterator all(folder, error);
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }
    static support::MessageLog &log() { return support::messageLog<0>(); }

    void order(const std::string &line) { ASSERT_EQ(emulator_.order(line), "ok\n") << line; }
    void settle() { ASSERT_TRUE(usbnodes::settle(emulator_.interfaces())); }
    void plug(const std::string &id)
    {
        order("plug " + id);
        settle();
    }
    void unplug(const std::string &id)
    {
        order("unplug " + id);
        settle();
    }

    static std::string nodeOf(const std::string &id, int interfaceNumber = 1)
    {
        return usbnodes::nodeOf(id, interfaceNumber);
    }
    static std::vector<std::string> find(const char *product, int usage = 5)
    {
        int32_t count = 16;
        const char *const *paths = UsbFinderC_FindHidDevicesByDeviceId("1209", product, 1, usage, &count);
        return {paths, paths + count};
    }

    // Begins a watch whose callback searches, as the program's own do.
    static void watch(const char *product)
    {
        {
            const std::lock_guard lock(sight().mutex);
            sight().product = product;
            sight().looks = 0;
            sight().paths.clear();
        }
        StartUsbChanged(look, 600);
        ASSERT_TRUE(support::eventually([] {
            const std::lock_guard lock(sight().mutex);
            return sight().looks == 1;
        }));
    }
    // True once the last callback found exactly these.
    static bool watchSees(const std::vector<std::string> &paths)
    {
        return support::eventually([&paths] {
            const std::lock_guard lock(sight().mutex);
            return sight().paths == paths;
        });
    }

    // Reads the whole flash into the record. False when it does not come.
    bool load(const std::string &path)
    {
        log().clear();
        UsbServerC_Start(path.c_str(), path.c_str(), support::logMessage<0>);
        UsbServer_ReadAllFlashData();
        return support::eventually([this] { return takeFullRead(); });
    }
    bool takeFullRead()
    {
        for (const support::Message &message : log().all()) {
            if (message.code() != 8 || message.payload.size() != FlashSize)
                continue;
            ProtocolDataParser(message.payload.data(), record_.get());
            return true;
        }
        return false;
    }
    void edit(uint8_t rate)
    {
        record_->ReportRate = rate;
        ProtocolDataUpdate(record_.get());
    }
    FlashDataMap flashOf(const std::string &mouse)
    {
        const FlashImage image = *emulator_.flash(mouse);
        FlashDataMap parsed{};
        ProtocolDataParser(reinterpret_cast<const uint8_t *>(&image), &parsed);
        return parsed;
    }
    bool agrees(const std::string &mouse)
    {
        return support::eventually([&] {
            const FlashDataMap flash = flashOf(mouse);
            return std::memcmp(&flash, record_.get(), sizeof flash) == 0;
        });
    }
    // What every trouble ends in: the device is there again, is read whole, and takes an edit.
    void expectHealthy(const std::string &id, const std::string &mouse)
    {
        settle();
        const std::string path = nodeOf(id);
        ASSERT_TRUE(support::eventually([&] { return UsbFinderC_GetDeviceOnLine(path.c_str()) != 0; }));
        ASSERT_TRUE(load(path));
        EXPECT_TRUE(agrees(mouse));
        edit(record_->ReportRate == 8 ? 4 : 8);
        EXPECT_TRUE(agrees(mouse));
    }

    TempFolder folder_;
    emulator::Emulator emulator_;
    std::unique_ptr<FlashDataMap> record_ = std::make_unique<FlashDataMap>();

private:
    struct Sight {
        std::mutex mutex;
        const char *product = nullptr;
        int looks = 0;
        std::vector<std::string> paths;
    };
    static Sight &sight()
    {
        static Sight last;
        return last;
    }
    static void look()
    {
        std::unique_lock lock(sight().mutex);
        const char *const product = sight().product;
        lock.unlock();
        const std::vector<std::string> paths = find(product);
        lock.lock();
        sight().paths = paths;
        ++sight().looks;
    }

    static inline std::size_t files_ = 0; // before the first device
};
