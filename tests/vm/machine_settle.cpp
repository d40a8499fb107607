// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the other tests rest on: that a device is settled only when udev has dealt with it.
#include "tests/vm/MachineFixture.h"

class Settling : public MachineTest
{
protected:
    void TearDown() override
    {
        signalUdev("CONT");
        MachineTest::TearDown();
    }
    static void signalUdev(const std::string &name)
    {
        const std::string command = "pkill -" + name + " -x systemd-udevd || pkill -" + name + " udevd";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
    // The kernel's part, of which a daemon that is stopped hears nothing.
    void waitForNodes()
    {
        ASSERT_TRUE(support::eventually(
            [this] { return usbnodes::present() == usbnodes::wanted(emulator_.interfaces()); }));
    }
};

TEST_F(Settling, ANodeThatUdevHasNotHeardOf)
{
    signalUdev("STOP");
    order("plug rx8k");
    waitForNodes();
    EXPECT_FALSE(usbnodes::udevIsDone());
    signalUdev("CONT");
    settle();
    EXPECT_TRUE(usbnodes::udevIsDone());
}

TEST_F(Settling, ANodeThatCameInThePlaceOfAnother)
{
    plug("rx8k");
    const std::string path = nodeOf("rx8k");
    signalUdev("STOP");
    order("unplug rx8k");
    waitForNodes();
    order("plug rx4k");
    waitForNodes();
    ASSERT_EQ(nodeOf("rx4k"), path);
    EXPECT_FALSE(usbnodes::udevIsDone());
    signalUdev("CONT");
    expectHealthy("rx4k", "air4");
}
