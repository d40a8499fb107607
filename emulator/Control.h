// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The control socket: order lines in, answers out, and report lines for clients that follow a device. Never
// blocks on a client. One thread.
#pragma once

#include "emulator/BusFolder.h"
#include "emulator/DeviceBus.h"
#include "emulator/World.h"

namespace emulator
{

class Control
{
public:
    struct Answer {
        std::string text;
        std::string followed; // the device that the sender follows from now on; empty: no change
    };
    using Runner = std::function<Answer(const std::string &)>;

    bool open(const BusFolder &folder);
    void close(const BusFolder &folder);
    void addTo(std::vector<pollfd> &polled) const;
    void service(const ReadyMap &ready, const Runner &run);
    bool hasFollowers() const;
    // Sends a line to all followers of the device. A slow follower loses lines and gets their number.
    void publish(const std::string &device, const std::string &line);

private:
    struct Client {
        FileDescriptor socket;
        std::string input;
        std::string output;
        bool gone = false;
        std::string followed;
        std::size_t lost = 0; // lines dropped since the last one sent
    };
    void accept();
    static void read(Client &client, const Runner &run);
    static void write(Client &client);

    FileDescriptor listener_;
    std::vector<Client> clients_;
};

// Sends one order to the emulator of a bus folder and waits for its answer. None without an emulator.
std::optional<std::string> sendOrder(const std::string &folder, const std::string &line);
// Whether the last line of an answer is an error.
bool isErrorAnswer(const std::string &answer);

} // namespace emulator
