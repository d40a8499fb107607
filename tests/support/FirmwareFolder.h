// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Firmware files for tests that look into the folder "/bin" beside the program.
#pragma once

#include "device/FirmwareSearch.h"
#include "environment/DataRoot.h"
#include "tests/support/Firmware.h"

#include <QDir>
#include <QFile>

namespace firmware
{

constexpr int Bytes = 3000;

struct File {
    int target = TargetMouse;
    uint16_t version = 0x0106;
    const char *baseName = "M6_Mouse";
    uint8_t cid = 18;
    uint8_t mid = 6;
    uint8_t kHz = 8;

    std::vector<uint8_t> bytes(std::size_t size = Bytes) const
    {
        return support::makeFirmware(uint8_t(target), size, cid, mid, version, kHz, baseName);
    }
};

inline QByteArray image(const std::vector<uint8_t> &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), int(bytes.size()));
}

inline QString folder() { return applicationFolder() + QStringLiteral("/bin/"); }

inline void write(const QString &name, const QByteArray &bytes)
{
    QDir().mkpath(folder());
    QFile file(folder() + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("no firmware could be written");
}

inline void write(const QString &name, const File &file) { write(name, image(file.bytes())); }

// A mouse and its 8 kHz receiver of model 6, both newer than v1.05 and v1.02.
constexpr File Mouse{};
constexpr File Receiver{TargetReceiver, 0x0103, "M6_Receiver8K"};

inline void clear() { QDir(folder()).removeRecursively(); }

} // namespace firmware
