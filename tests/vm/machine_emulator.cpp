// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// mouse-emulator as a program beside the layer: its end, however it comes, pulls the cables of all its
// devices.
#include "tests/support/EmulatorProgram.h"
#include "tests/vm/MachineFixture.h"

using support::eventually;

class ProgramOfDevices : public MachineTest
{
protected:
    static constexpr const char *Ids[] = {"rx4k", "rx8k", "wired"};

    void SetUp() override
    {
        MachineTest::SetUp();
        std::ofstream scenario(scenario_);
        scenario << Family;
        for (const char *id : Ids)
            scenario << "plug " << id << "\n";
    }
    std::unique_ptr<EmulatorProgram> begin() const
    {
        auto program = std::make_unique<EmulatorProgram>(
            std::vector<std::string>{"--bus", folder_ / "other", "--usb", "--scenario", scenario_});
        EXPECT_EQ(program->line(), "ready");
        for (const char *id : Ids)
            EXPECT_TRUE(eventually([id] { return !nodeOf(id).empty(); })) << id;
        return program;
    }
    void expectEdit(const EmulatorProgram &program, uint8_t rate)
    {
        ASSERT_TRUE(eventually([] { return UsbFinderC_GetDeviceOnLine(nodeOf("rx8k").c_str()) != 0; }));
        ASSERT_TRUE(load(nodeOf("rx8k")));
        edit(rate);
        const std::string held = "0000: 0" + std::to_string(rate);
        EXPECT_TRUE(eventually([&] {
            program.write("show air8 flash 0 1\n");
            const std::string line = program.line();
            return program.line() == "ok" && line == held;
        }));
    }

    const std::string scenario_ = folder_ / "family.scenario";
};

TEST_F(ProgramOfDevices, ItsEndPullsTheCables)
{
    uint8_t rate = 2;
    for (const int signal : {SIGKILL, SIGTERM}) {
        const auto program = begin();
        expectEdit(*program, rate);
        const std::string path = nodeOf("rx8k");
        if (signal == SIGKILL)
            UsbServer_ReadAllFlashData(); // in the middle of it; the kernel keeps what is under way for 5 s
        program->end(signal);
        EXPECT_TRUE(eventually([] { return usbnodes::present().empty(); }));
        EXPECT_FALSE(UsbFinderC_GetDeviceOnLine(path.c_str()));
        EXPECT_TRUE(find("0005").empty());
        rate = 4;
    }
    expectEdit(*begin(), 8);
}
