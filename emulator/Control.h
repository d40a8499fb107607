// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The control socket: a stream of order lines in, their answers out. One thread.
#pragma once

#include "emulator/Bus.h"

namespace emulator
{

class Control
{
public:
    using Runner = std::function<std::string(const std::string &)>;

    bool open(const BusFolder &folder);
    void close(const BusFolder &folder);
    void addTo(std::vector<pollfd> &polled) const;
    void service(const ReadyMap &ready, const Runner &run);

private:
    struct Client {
        FileDescriptor socket;
        std::string input;
        std::string output;
        bool gone = false;
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
