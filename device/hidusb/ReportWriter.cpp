// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/ReportWriter.h"

#include "device/hidusb/WireLog.h"

#include <cerrno>
#include <unistd.h>
#include <vector>

namespace hidusb
{

constexpr std::size_t WaitingReports = 32;

ReportWriter::ReportWriter(int node, std::string path) : node_(std::make_shared<Node>(node, std::move(path)))
{
}

ReportWriter::~ReportWriter() { node_->closed = true; }

bool ReportWriter::post(const uint8_t *bytes, std::size_t size)
{
    const auto write = [node = node_, report = std::vector<uint8_t>(bytes, bytes + size)] {
        if (node->closed)
            return;
        // The caller needs no result: a report that is not written stays unanswered.
        if (::write(node->file.file(), report.data(), report.size()) < 0)
            logFailure(node->path, "write", errno);
    };
    return queue_.post(write, WaitingReports);
}

} // namespace hidusb
