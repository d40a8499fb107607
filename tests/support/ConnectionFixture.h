// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A scripted mouse and a connection to it, which ends with the test.
#pragma once

#include "device/hidusb/HIDUsb.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Messages.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>

namespace support
{

class ConnectionFixture : public testing::Test
{
protected:
    ConnectionFixture()
    {
        messageLog<0>().clear();
        messageLog<1>().clear();
    }
    ~ConnectionFixture() override { UsbServer_Exit(); }

    void start() { UsbServerC_Start(device.path().c_str(), device.path().c_str(), logMessage<0>); }

    // Starts, reads the whole flash and fills `record` from it.
    void load()
    {
        start();
        UsbServer_ReadAllFlashData();
        ASSERT_TRUE(eventually([this] { return !lastFullRead().empty(); }));
        ProtocolDataParser(lastFullRead().data(), record.get());
        messages.clear();
        device.clearRequests();
    }
    std::vector<uint8_t> lastFullRead() const
    {
        const auto all = messages.all();
        const auto last = std::find_if(all.rbegin(), all.rend(),
                                       [](const Message &m) { return m.payload.size() == FlashSize; });
        return last != all.rend() ? last->payload : std::vector<uint8_t>();
    }

    void edit(uint8_t rate)
    {
        record->ReportRate = rate;
        ProtocolDataUpdate(record.get());
    }
    bool rateBecomes(uint8_t rate)
    {
        return eventually([this, rate] { return device.flash().ReportRate == rate; });
    }
    std::size_t writes() const { return device.asked(wire::Command::FlashWrite); }
    // True once the layer has read what the device has sent before. On a busy machine a question may time
    // out.
    bool hasReadAll() const
    {
        return eventually([this] { return UsbFinderC_GetVersion(device.path().c_str()) != 0; });
    }
    bool isOnLine() const { return UsbFinderC_GetDeviceOnLine(device.path().c_str()) != 0; }

    // Answers the writes alone with `status`, or not at all.
    void spoilWrites(std::optional<wire::Status> status)
    {
        device.setScript([status](const wire::Report &request) -> std::optional<Answers> {
            if (request.command() != wire::Command::FlashWrite)
                return std::nullopt;
            return status ? Answers{datagram(replyTo(request, nullptr, 0, *status))} : Answers{};
        });
    }
    void heal() { device.setScript(nullptr); }

    FakeDevice device;
    MessageLog &messages = messageLog<0>();
    std::unique_ptr<FlashDataMap> record = std::make_unique<FlashDataMap>();
};

} // namespace support
