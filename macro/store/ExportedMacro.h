// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A macro as a file for another computer: big-endian items, as a data stream of version 17 writes them. Three
// texts of fixed length, each ended by NUL and padded with NULs: "Taigri" in 12 bytes, the name in 48, the
// number of the cycle mode in 12; the number of rows; then for each row its text and icon, and for an event
// "0" or "1" with its NUL. Such a file comes from anywhere: nothing but embedded PNG pictures is accepted as
// an icon, they are skipped, and no name of a file in it is opened.
#pragma once

#include "macro/store/MacroRow.h"

#include <optional>

namespace macro
{

constexpr qint64 ExportedMacroLimit = 16LL * 1024 * 1024; // bytes of a file that an import looks at

struct ExportedMacro {
    QString name; // fits the folder of macros and a block
    int cycle = CycleOnce;
    MacroRows rows;
};

// The bytes of PNG files, which the file carries for programs that show them. Each may be empty.
struct RowIcons {
    QByteArray press, release, delay;
};

QByteArray exportedMacro(const ExportedMacro &macro, const RowIcons &icons);
// None for anything that is not sound to its last row.
std::optional<ExportedMacro> parseExportedMacro(const QByteArray &bytes);

// The same with files. A failed save leaves an old file as it was.
bool saveExportedMacro(const QString &path, const ExportedMacro &macro, const RowIcons &icons);
std::optional<ExportedMacro> loadExportedMacro(const QString &path);

} // namespace macro
