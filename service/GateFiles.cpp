// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/GateFiles.h"

#include "device/FirmwareImage.h"
#include "service/UpgradeState.h"

const QByteArray &GateFiles::image(int target, int connectionKind, bool anyVersion)
{
    const auto key = std::make_tuple(target, connectionKind, anyVersion);
    auto found = found_.find(key);
    if (found == found_.end())
        found = found_.emplace(key, search_(target, connectionKind, anyVersion)).first;
    return found->second;
}

GateQuestions GateFiles::questions()
{
    return {
        [this](int target, int kHz, bool anyVersion) { return !image(target, kHz, anyVersion).isEmpty(); },
        [this](int target, int kHz) { return findBootDevices(image(target, kHz, true), BootLoaderLimit); }};
}
