// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The folder that is the bus: listening sockets by name, whatever the length of the folder's path. One
// emulator at a time holds a folder; what a killed one left is cleared away.
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
    // A listening socket of `type` that never shows under its name before it listens.
    FileDescriptor listen(const std::string &name, int type) const;
    void remove(const std::string &name) const;
    // A client's connection to a name in a folder.
    static FileDescriptor connect(const std::string &path, const std::string &name, int type);

private:
    void removeStale() const;

    FileDescriptor folder_;
};

} // namespace emulator
