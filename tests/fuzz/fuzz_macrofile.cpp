// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A macro's file of any bytes.
#include "macro/store/MacroBlockCodec.h"
#include "macro/store/MacroFile.h"
#include "tests/fuzz/Target.h"

using namespace macro;

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    nameMouseButtons();
    const std::optional<MacroText> read = parseMacro(bytesOf(data, size));
    PROMISE(read.has_value() || qint64(size) > MacroFileLimit || size > 2 * std::size_t(MacroRowLimit));
    if (!read)
        return 0;
    PROMISE(read->rows.size() <= MacroRowLimit);
    // What was read is written so that it is read again.
    const std::optional<MacroText> again = parseMacro(macroText(read->cycle.value_or(0), read->rows));
    PROMISE(again && again->rows == read->rows && again->cycle == read->cycle.value_or(0));
    const MacroBlock block = boundBlock(QStringLiteral("x"), read->rows);
    PROMISE(block.EventCount >= 1 && block.EventCount <= MacroEventCount);
    PROMISE(eventCount(read->rows) <= read->rows.size());
    return 0;
}
