// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ReportWriter: writes reports to a node on a thread of its own, since the kernel may block a writer for
// seconds while a device hangs. Its destructor does not wait either: the descriptor closes when the running
// write returns, and reports that still wait then are dropped. They would otherwise reach the device after
// the requests of whoever opens it next.
#pragma once

#include "device/hidusb/Thread.h"
#include "device/hidusb/WaitableFile.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

namespace hidusb
{

class ReportWriter
{
public:
    // Takes ownership of `node`; `path` is how the log names it.
    ReportWriter(int node, std::string path);
    ~ReportWriter();
    ReportWriter(const ReportWriter &) = delete;
    ReportWriter &operator=(const ReportWriter &) = delete;

    // From any thread. False when 32 reports wait already; this one is dropped.
    bool post(const uint8_t *bytes, std::size_t size);

private:
    struct Node {
        Node(int node, std::string nodePath) : file(node), path(std::move(nodePath)) {}
        const WaitableFile file;
        const std::string path;
        std::atomic<bool> closed{false};
    };

    const std::shared_ptr<Node> node_;
    TaskQueue queue_;
};

} // namespace hidusb
