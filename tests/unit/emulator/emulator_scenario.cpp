// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Scenario files: the two that are shipped, and lines that are none.
#include "emulator/Emulator.h"
#include "emulator/Scenario.h"
#include "tests/support/UsbIdsLine.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace emulator;

namespace
{

std::string failure(const std::string &text)
{
    World world;
    std::istringstream stream(text);
    std::string error;
    return loadScenario(world, stream, "file", error) ? "" : error;
}

std::vector<std::string> namesOf(const World &world)
{
    std::vector<std::string> names;
    for (const Interface &face : world.scene.interfaces())
        names.push_back(wire::formatBusName(face.name));
    return names;
}

} // namespace

TEST(EmulatorScenario, Default)
{
    Emulator emulator;
    std::string error;
    ASSERT_TRUE(emulator.load(DEFAULT_SCENARIO, error)) << error;
    struct Row {
        const char *id;
        uint8_t mid;
        bool inReach;
    };
    const Row rows[] = {{"rx1k", 6, true}, {"rx8k", 7, true}, {"rx4k", 9, false}};
    for (const Row &row : rows) {
        const auto state = emulator.receiver(row.id);
        ASSERT_TRUE(state && state->paired) << row.id;
        EXPECT_EQ(state->paired->cid, 18);
        EXPECT_EQ(state->paired->mid, row.mid);
        EXPECT_EQ(state->mouseInReach, row.inReach) << row.id;
    }
    ASSERT_TRUE(emulator.mouse("wired"));
    EXPECT_EQ(emulator.mouse("wired")->mid, 8);
    EXPECT_EQ(emulator.mouse("mouse1")->name, "Six");
}

TEST(EmulatorScenario, TenDevices)
{
    std::string error;
    Emulator emulator;
    ASSERT_TRUE(emulator.load(TEST_DATA "/ten.scenario", error)) << error;
    const std::string list = emulator.order("list");
    std::size_t plugged = 0;
    for (std::size_t at = list.find(" plugged"); at != std::string::npos; at = list.find(" plugged", at + 1))
        ++plugged;
    EXPECT_EQ(plugged, 10U) << list;
}

TEST(EmulatorScenario, EveryProperty)
{
    World world;
    std::istringstream text(std::string(UsbIdsLine) +
                            "mouse m name \"A b\" cid 1 mid 2 version 3.04 battery 5 address 010203 kind 2 "
                            "screen on # all\n"
                            "receiver r class 4k mouse m version 6.07 address 0a0b0c color 3\n"
                            "receiver s class 2k cid 8 mid 9\n"
                            "\n"
                            "plug r\nplug m\nplug s\n");
    std::string error;
    ASSERT_TRUE(loadScenario(world, text, "file", error)) << error;
    const MouseState &mouse = world.scene.findMouse("m")->state;
    EXPECT_EQ(mouse.name, "A b");
    EXPECT_EQ(mouse.cid, 1);
    EXPECT_EQ(mouse.mid, 2);
    EXPECT_EQ(mouse.battery, 5);
    EXPECT_EQ(mouse.cableKind, 2);
    EXPECT_EQ(mouse.address, (Address{10, 11, 12})); // its receiver's
    const ReceiverState &receiver = world.scene.findReceiver("r")->state;
    EXPECT_EQ(receiver.cid, 1);
    EXPECT_EQ(receiver.color.Scheme, 3);
    EXPECT_EQ(world.scene.findReceiver("s")->bootIdentity().Mid, 9);
    const std::vector<std::string> names = {
        "1209-0001-0304-0-0001-m", "1209-0001-0304-1-ff05-m", "1209-0001-0304-1-ff08-m",
        "1209-0004-0607-0-0001-r", "1209-0004-0607-1-ff05-r", "1209-0003-0100-0-0001-s",
        "1209-0003-0100-1-ff05-s",
    };
    EXPECT_EQ(namesOf(world), names);
}

TEST(EmulatorScenario, AddressesLeftOutDiffer)
{
    World world;
    std::istringstream text(std::string(UsbIdsLine) +
                            "mouse a\nmouse b\nreceiver c class 1k\nreceiver d class 1k\n");
    std::string error;
    ASSERT_TRUE(loadScenario(world, text, "file", error)) << error;
    const std::vector<Address> all = {
        world.scene.findMouse("a")->state.address, world.scene.findMouse("b")->state.address,
        world.scene.findReceiver("c")->state.address, world.scene.findReceiver("d")->state.address};
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t k = 0; k < i; ++k)
            EXPECT_NE(all[i], all[k]);
    }
}

TEST(EmulatorScenario, BadLines)
{
    struct Row {
        const char *line;
        const char *error;
    };
    const Row rows[] = {
        {"nonsense", "file:2: no such line: nonsense"},
        {"mouse", "file:2: a device needs an id of 1..32 letters a..z, digits and _"},
        {"mouse Big", "file:2: a device needs an id of 1..32 letters a..z, digits and _"},
        {"mouse ../m", "file:2: a device needs an id of 1..32 letters a..z, digits and _"},
        {"mouse m cid", "file:2: cid needs a value"},
        {"mouse m cid 256", "file:2: bad property: cid 256"},
        {"mouse m mid x", "file:2: bad property: mid x"},
        {"mouse m kind 4", "file:2: bad property: kind 4"},
        {"mouse m battery 101", "file:2: bad property: battery 101"},
        {"mouse m version 1", "file:2: bad property: version 1"},
        {"mouse m address 12", "file:2: bad property: address 12"},
        {"mouse m screen yes", "file:2: bad property: screen yes"},
        {"mouse m colour 1", "file:2: bad property: colour 1"},
        {"mouse m name \"open", "file:2: the quote does not end"},
        {"receiver r class 3k", "file:2: bad property: class 3k"},
        {"receiver r mouse nobody", "file:2: bad property: mouse nobody"},
        {"receiver r color 4", "file:2: bad property: color 4"},
        {"receiver r name x", "file:2: bad property: name x"},
        {"usb vendor 12", "file:2: bad property: vendor 12"},
        {"usb vendor zzzz", "file:2: bad property: vendor zzzz"},
        {"usb 16k 0001", "file:2: bad property: 16k 0001"},
        {"usb vendor", "file:2: vendor needs a value"},
        {"plug nobody", "file:2: no device nobody"},
        {"plug", "file:2: usage: plug DEVICE"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(failure(std::string(UsbIdsLine) + row.line), row.error) << row.line;
    EXPECT_EQ(failure("mouse m"), "file:1: the usb line must come first");
    EXPECT_EQ(failure(std::string(UsbIdsLine) + "mouse m\n\n# x\nreceiver m class 1k"),
              "file:5: there is a m already");
    std::string many = UsbIdsLine;
    for (int i = 0; i <= 200; ++i)
        many += "mouse m" + std::to_string(i) + "\n";
    EXPECT_EQ(failure(many), "file:202: too many devices");
}

TEST(EmulatorScenario, MissingFile)
{
    Emulator emulator;
    std::string error;
    EXPECT_FALSE(emulator.load("/nonexistent/a.scenario", error));
    EXPECT_EQ(error, "/nonexistent/a.scenario: cannot be read");
    EXPECT_FALSE(emulator.load("/tmp", error));
}
