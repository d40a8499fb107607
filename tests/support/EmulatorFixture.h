// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// An emulator on a bus folder of its own, with a small family of devices:
//   air1, air2, air4, air8   mice behind rx1k, rx2k, rx4k, rx8k; mids 6, 7, 8, 9
//   cable                    a mouse on its cable, with a screen; mid 6
//   lone                     a receiver without a mouse
//   spare                    a mouse without a receiver; mid 7
#pragma once

#include "tests/support/RawClient.h"
#include "tests/support/TempFolder.h"
#include "tests/support/UsbIdsLine.h"

#include "emulator/Emulator.h"

#include <gtest/gtest.h>

inline const std::string FamilyScenario = std::string(UsbIdsLine) + R"(
mouse air1 cid 18 mid 6 version 1.05 battery 80
mouse air2 cid 18 mid 7 version 1.06 battery 60
mouse air4 cid 18 mid 8 version 1.07 battery 40
mouse air8 cid 18 mid 9 version 1.08 battery 20
mouse cable cid 18 mid 6 version 1.0A battery 100 address c0ffee screen on
mouse spare cid 18 mid 7
receiver rx1k class 1k mouse air1 version 2.01 address a10001
receiver rx2k class 2k mouse air2 version 2.02 address a10002
receiver rx4k class 4k mouse air4 version 2.03 address a10004
receiver rx8k class 8k mouse air8 version 2.04 address a10008
receiver lone class 1k cid 18 mid 7 version 2.05 address a1000f
plug rx1k
plug rx2k
plug rx4k
plug rx8k
plug cable
plug lone
)";

class EmulatorFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string error;
        ASSERT_TRUE(emulator_.loadText(FamilyScenario, "family", error)) << error;
        ASSERT_TRUE(emulator_.start(folder_.path(), error)) << error;
    }
    void TearDown() override { emulator_.stop(); }

    void order(const std::string &line) { ASSERT_EQ(emulator_.order(line), "ok\n") << line; }
    static RawClient::Bytes payload(const std::optional<wire::Report> &report)
    {
        return report ? RawClient::payloadOf(*report) : RawClient::Bytes{0xBA, 0xD0};
    }
    static int status(const std::optional<wire::Report> &report) { return report ? report->StatusCode : -1; }

    // Asks until the condition holds; false when it does not in a test's patience.
    template <typename Condition> static bool eventually(const Condition &condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + RawClient::Patience;
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline)
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }

    TempFolder folder_;
    emulator::Emulator emulator_;
};

constexpr int Ok = static_cast<int>(wire::Status::Ok);
constexpr int OffLine = static_cast<int>(wire::Status::OffLine);
constexpr int Refused = static_cast<int>(wire::Status::Refused);
constexpr int Busy = static_cast<int>(wire::Status::Busy);
