// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FakeDevice: one interface on a bus folder of the test's own, with a simple mouse behind it. A script may
// replace the answer to any request: by none, by several datagrams, by invalid ones. The device has a
// thread; all functions may be called from any thread.
#pragma once

#include "device/hidusb/wire/BusName.h"
#include "device/hidusb/wire/FlashLayout.h"
#include "device/hidusb/wire/Report.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace support
{

using Datagram = std::vector<uint8_t>;
using Answers = std::vector<Datagram>;
// Empty: the device gives its usual answer.
using Script = std::function<std::optional<Answers>(const wire::Report &request)>;

// The bus folder of this process, made at the first call and removed at the end. HIDUSB_BUS names it.
const std::string &busFolder();

Datagram datagram(const wire::Report &report);
wire::Report replyTo(const wire::Report &request, const void *payload = nullptr, std::size_t size = 0,
                     wire::Status status = wire::Status::Ok);
wire::Report noticeOf(wire::Command command, const void *payload = nullptr, std::size_t size = 0);

wire::BusName mouseName(const std::string &serial = "mouse");
wire::BusName bootName(const std::string &serial = "boot");

class FakeDevice
{
public:
    explicit FakeDevice(const wire::BusName &name = mouseName());
    ~FakeDevice(); // unplugs

    const std::string &path() const { return path_; }
    // Returns when the former script does not run any more: a late repeat of a request may still call it when
    // the test has its answer. A script that waits is let go first. Not to be called by a script.
    void setScript(Script script);
    void send(const Datagram &bytes); // to all who have the interface open

    void setIdentity(const DeviceIdentity &identity);
    void setFlash(const FlashImage &image);
    FlashImage flash() const;
    void setFlashByte(uint16_t address, uint8_t value);

    std::vector<wire::Report> requests() const;
    std::size_t count(wire::Command command) const;
    // The requests without their repeats, in the order in which they came. On a busy machine an answer may be
    // late, and the layer then sends the same report again; another request has another sequence number.
    std::vector<wire::Report> asked() const;
    std::size_t asked(wire::Command command) const;
    std::size_t tries(const wire::Report &request) const; // how often it came
    void clearRequests();

private:
    void run();
    void serve(int client, const Datagram &bytes);
    Answers answer(const wire::Report &request);

    const std::string path_;
    const int listener_;
    const int stop_;
    std::mutex scriptMutex_; // held while the script runs; taken before mutex_
    Script script_;
    mutable std::mutex mutex_; // guards what follows
    FlashImage flash_{};
    DeviceIdentity identity_{0x1A, 0x03, 0x02};
    std::vector<wire::Report> requests_;
    std::vector<int> clients_;
    std::thread thread_; // last: it uses all the others
};

} // namespace support
