// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// mouse-emulator: runs the emulator; "send" sends orders to a running one.
#include "emulator/Emulator.h"

#include <csignal>
#include <cstring>
#include <iostream>
#include <poll.h>
#include <sys/signalfd.h>

namespace
{

constexpr const char *Usage =
    "mouse-emulator --bus DIR [--usb] [--scenario FILE] [--pace] [--log] [--ready-fd N]\n"
    "    Serves the devices of the scenario (default.scenario beside the program) in the folder DIR, or,\n"
    "    with --usb, as USB devices of this machine's kernel (module vhci-hcd, as root).\n"
    "    Prints \"ready\" on the standard output, or on descriptor N, once they are there. Orders come\n"
    "    from the standard input and from \"send\"; \"help\" lists them.\n"
    "mouse-emulator send --bus DIR [ORDER...]\n"
    "    Sends orders, or the lines of the standard input, to the emulator of DIR. Ends with 1 when one\n"
    "    of them fails and with 2 when there is no emulator.\n";

struct Options {
    std::string bus;
    std::string scenario;
    bool send = false;
    bool usb = false;
    bool pace = false;
    bool log = false;
    int readyFd = -1;
    std::vector<std::string> orders;
};

bool readValue(int count, char **words, int &index, std::string &value)
{
    if (++index >= count)
        return false;
    value = words[index];
    return !value.empty();
}

bool readOption(Options &options, int count, char **words, int &index)
{
    const std::string word = words[index];
    std::string number;
    if (word == "--bus")
        return readValue(count, words, index, options.bus);
    if (word == "--scenario")
        return readValue(count, words, index, options.scenario);
    if (word == "--usb")
        return options.usb = true;
    if (word == "--pace")
        return options.pace = true;
    if (word == "--log")
        return options.log = true;
    if (word == "--ready-fd" && readValue(count, words, index, number)) {
        const auto fd = emulator::parseNumber(number, 0, 65535);
        options.readyFd = fd ? static_cast<int>(*fd) : -1;
        return fd.has_value();
    }
    const bool isOrder = options.send && word.compare(0, 2, "--") != 0;
    if (isOrder)
        options.orders.push_back(word);
    return isOrder;
}

std::optional<Options> readOptions(int count, char **words)
{
    Options options;
    int index = 1;
    if (count > 1 && std::strcmp(words[1], "send") == 0) {
        options.send = true;
        ++index;
    }
    for (; index < count; ++index) {
        if (!readOption(options, count, words, index))
            return std::nullopt;
    }
    if (options.bus.empty())
        return std::nullopt;
    return options;
}

int sendOne(const std::string &bus, const std::string &line)
{
    const auto answer = emulator::sendOrder(bus, line);
    if (!answer) {
        std::cerr << "no emulator answers in " << bus << "\n";
        return 2;
    }
    std::cout << *answer;
    return emulator::isErrorAnswer(*answer) ? 1 : 0;
}

int sendAll(const Options &options)
{
    int result = 0;
    std::string line;
    for (const std::string &order : options.orders)
        result = std::max(result, sendOne(options.bus, order));
    while (options.orders.empty() && result < 2 && std::getline(std::cin, line))
        result = std::max(result, sendOne(options.bus, line));
    return result;
}

std::string besideProgram(const std::string &name)
{
    char path[4096];
    const ssize_t size = ::readlink("/proc/self/exe", path, sizeof path);
    const std::string program(path, size > 0 ? static_cast<std::size_t>(size) : 0);
    return program.substr(0, program.rfind('/') + 1) + name;
}

void sayReady(int fd)
{
    if (fd < 0) {
        std::cout << "ready" << std::endl;
        return;
    }
    const char text[] = "ready\n";
    (void)!::write(fd, text, sizeof text - 1);
    ::close(fd);
}

// Runs orders from the standard input; false at its end.
bool readConsole(emulator::Emulator &emulator, std::string &rest)
{
    char bytes[4096];
    const ssize_t size = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (size <= 0)
        return false;
    rest.append(bytes, static_cast<std::size_t>(size));
    std::size_t end = 0;
    while ((end = rest.find('\n')) != std::string::npos) {
        std::cout << emulator.order(rest.substr(0, end)) << std::flush;
        rest.erase(0, end + 1);
    }
    return true;
}

// Serves until the order "quit", SIGINT or SIGTERM.
void wait(emulator::Emulator &emulator, int signals)
{
    pollfd polled[] = {
        {emulator.endDescriptor(), POLLIN, 0}, {signals, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    std::string rest;
    for (;;) {
        ::poll(polled, 3, -1);
        if (polled[0].revents != 0 || polled[1].revents != 0)
            return;
        // A background program has no console; poll() ignores a negative descriptor.
        if (polled[2].revents != 0 && !readConsole(emulator, rest))
            polled[2].fd = -1;
    }
}

int serve(const Options &options)
{
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGTERM);
    // Before the emulator's thread starts, so that it blocks them too.
    ::pthread_sigmask(SIG_BLOCK, &ends, nullptr);
    const emulator::FileDescriptor signals(::signalfd(-1, &ends, SFD_CLOEXEC));

    emulator::Emulator emulator;
    std::string error;
    const std::string scenario =
        options.scenario.empty() ? besideProgram("default.scenario") : options.scenario;
    const auto kind = options.usb ? emulator::BusKind::Usb : emulator::BusKind::Sockets;
    if (!emulator.load(scenario, error) || !emulator.start(options.bus, error, kind)) {
        std::cerr << error << "\n";
        return 1;
    }
    if (options.pace)
        emulator.order("pace on");
    if (options.log)
        emulator.order("log on");
    sayReady(options.readyFd);
    wait(emulator, signals.get());
    emulator.stop();
    return 0;
}

} // namespace

int main(int count, char **words)
{
    if (count == 2 && std::strcmp(words[1], "--help") == 0) {
        std::cout << Usage;
        return 0;
    }
    const auto options = readOptions(count, words);
    if (!options) {
        std::cerr << Usage;
        return 2;
    }
    return options->send ? sendAll(*options) : serve(*options);
}
