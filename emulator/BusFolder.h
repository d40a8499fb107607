// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The folder of the bus: listening sockets by name; its path may have any length. One emulator at a time
// locks a folder; leftovers of a killed one are removed.
#pragma once

#include "emulator/FileDescriptor.h"

#include <string>

namespace emulator
{

class BusFolder
{
public:
    static constexpr const char *ControlName = "control";

    // Makes the folder if it is missing, takes it and clears it. False with a reason in `error`.
    bool open(const std::string &path, std::string &error);
    void close() { folder_.reset(); }
    // A listening socket of `type`; its name appears only after it listens.
    FileDescriptor listen(const std::string &name, int type) const;
    void remove(const std::string &name) const;
    // A client's connection to a name in a folder.
    static FileDescriptor connect(const std::string &path, const std::string &name, int type);

private:
    void removeStale() const;

    FileDescriptor folder_;
};

} // namespace emulator
