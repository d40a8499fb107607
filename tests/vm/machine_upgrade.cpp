// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Firmware over the kernel's nodes: the device leaves as one USB device and comes back as another, twice.
#include "tests/support/Firmware.h"
#include "tests/vm/MachineFixture.h"

#include <atomic>

using support::eventually;

static std::atomic<int> result;
static void onUpgrade(const uint8_t *data)
{
    if (data[1] == 2)
        result = data[2];
}

struct TargetRow {
    const char *id;
    const char *mouse;
    uint8_t target;
    uint8_t mid; // as the family has it
    uint8_t kHz;
};
constexpr TargetRow Targets[] = {{"wired", "wired", wire::TargetMouse, 6, 0},
                                 {"rx4k", "air4", wire::TargetReceiver, 8, 4}};

class Firmware : public MachineTest, public testing::WithParamInterface<TargetRow>
{
protected:
    Firmware()
    {
        int32_t count = 1;
        UsbFinderC_FindHidDevicesByDefaultDeviceId("1209", "0001", &count); // names the vendor
    }
    static int bootDevices(const std::vector<uint8_t> &file)
    {
        int32_t count = 5;
        UsbUpgradeC_FindBootDevices(file.data(), &count);
        return count;
    }
    void upgrade(const std::vector<uint8_t> &file)
    {
        result = -1;
        ASSERT_TRUE(UsbUpgrade_Start(file.data(), onUpgrade, 10000));
        ASSERT_TRUE(eventually([] { return result != -1; }));
        EXPECT_EQ(result, 1);
    }
};

TEST_P(Firmware, GoesThroughTheBootLoaderAndBack)
{
    const TargetRow &row = GetParam();
    plug(row.id);
    const auto file = support::makeFirmware(row.target, 12000, 18, row.mid, 0x0203, row.kHz);
    EXPECT_EQ(bootDevices(file), 0);
    upgrade(file);
    expectHealthy(row.id, row.mouse);
    uint32_t version = UsbFinderC_GetVersion(nodeOf(row.id).c_str());
    if (row.target == wire::TargetReceiver) {
        EXPECT_TRUE(UsbFinderC_GetSlaveVersion(nodeOf(row.id).c_str(), &version));
    }
    EXPECT_EQ(version, 0x0203U);
}

// What an upgrade that was cut off leaves behind.
TEST_P(Firmware, ADeviceThatWaitsInItsBootLoaderIsRepaired)
{
    const TargetRow &row = GetParam();
    plug(row.id);
    order(std::string("boot ") + row.id + " enter");
    settle();
    const auto file = support::makeFirmware(row.target, 12000, 18, row.mid, 0x0203, row.kHz);
    EXPECT_EQ(bootDevices(file), 1);
    EXPECT_EQ(bootDevices(support::makeFirmware(row.target, 12000, 17, row.mid, 0x0203, row.kHz)), 0);
    upgrade(file);
    expectHealthy(row.id, row.mouse);
}

INSTANTIATE_TEST_SUITE_P(Targets, Firmware, testing::ValuesIn(Targets),
                         [](const auto &what) { return std::string(what.param.id); });
