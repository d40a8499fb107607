// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macros that are exchanged as files, which the user chooses in a dialog over the page. Main thread.
#pragma once

#include "macro/store/ExportedMacro.h"

#include <optional>

class QWidget;

namespace macro
{

void askAndExport(QWidget *page, const ExportedMacro &exported);
// None for a dialog that was closed and for a file that holds no macro.
std::optional<ExportedMacro> askAndImport(QWidget *page);

} // namespace macro
