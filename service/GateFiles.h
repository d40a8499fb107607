// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// GateFiles: the firmware files that a gate decides by. The folder is searched once for each file that is
// asked for. Each call may read the folder or ask boot loaders; used on one thread.
#pragma once

#include "service/UpgradeGate.h"

#include <QByteArray>
#include <map>
#include <tuple>

class GateFiles
{
public:
    // The parameters are those of GateQuestions::hasFile.
    using Search = std::function<QByteArray(int target, int connectionKind, bool anyVersion)>;
    explicit GateFiles(Search search) : search_(std::move(search)) {}

    const QByteArray &image(int target, int connectionKind, bool anyVersion);
    GateQuestions questions(); // used while this object lives

private:
    Search search_;
    std::map<std::tuple<int, int, bool>, QByteArray> found_;
};
