// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The control socket: a stream of order lines in, their answers out, and lines for those who follow a
// device. Nothing here waits for a client. One thread.
#pragma once

#include "emulator/Bus.h"
#include "emulator/BusFolder.h"
#include "emulator/World.h"

namespace emulator
{

class Control
{
public:
    struct Answer {
        std::string text;
        std::string followed; // what its sender wants to follow from now on, if it is not empty
    };
    using Runner = std::function<Answer(const std::string &)>;

    bool open(const BusFolder &folder);
    void close(const BusFolder &folder);
    void addTo(std::vector<pollfd> &polled) const;
    void service(const ReadyMap &ready, const Runner &run);
    bool hasFollowers() const;
    // Hands a line to all who follow the device. Who fetches them too slowly loses lines and is told how
    // many.
    void publish(const std::string &device, const std::string &line);

private:
    struct Client {
        FileDescriptor socket;
        std::string input;
        std::string output;
        bool gone = false;
        std::string followed;
        std::size_t lost = 0; // lines for which there was no room since the last one that had it
    };
    void accept();
    static void read(Client &client, const Runner &run);
    static void write(Client &client);

    FileDescriptor listener_;
    std::vector<Client> clients_;
};

// Sends one order to the emulator of a bus folder and waits for its answer. Nothing when there is none.
std::optional<std::string> sendOrder(const std::string &folder, const std::string &line);
// Whether the last line of an answer is an error.
bool isErrorAnswer(const std::string &answer);

} // namespace emulator
