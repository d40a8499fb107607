// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// An exported macro of any bytes.
#include "environment/MacroName.h"
#include "macro/store/ExportedMacro.h"
#include "macro/store/MacroFile.h"
#include "tests/fuzz/Target.h"

using namespace macro;

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    nameMouseButtons();
    const QByteArray bytes = bytesOf(data, size);
    const std::optional<ExportedMacro> read = parseExportedMacro(bytes);
    if (!read)
        return 0;
    PROMISE(isMacroName(read->name) && read->cycle >= 0 && read->cycle <= 0xFF);
    PROMISE(read->rows.size() <= MacroRowLimit);
    // Each row becomes one line of the macro's file, and an export of it is read again.
    PROMISE(parseMacro(macroText(read->cycle, read->rows))->rows.size() == read->rows.size());
    const std::optional<ExportedMacro> again = parseExportedMacro(exportedMacro(*read, {bytes, {}, {}}));
    PROMISE(again && again->rows == read->rows && again->name == read->name && again->cycle == read->cycle);
    return 0;
}
