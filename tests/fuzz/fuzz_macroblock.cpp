// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The block of a macro of any bytes, as a mouse may hold it.
#include "macro/store/MacroBlockCodec.h"
#include "macro/store/MacroFile.h"
#include "tests/fuzz/Target.h"

#include <algorithm>
#include <memory>

using namespace macro;

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    nameMouseButtons();
    const auto block = std::make_unique<MacroBlock>(); // behind its end lies nothing that may be read
    std::copy_n(data, qMin(size, sizeof *block), reinterpret_cast<uint8_t *>(block.get()));
    const MacroRows rows = blockRows(*block);
    PROMISE(rows.size() == qMax(0, 2 * qMin<int>(block->EventCount, MacroEventCount) - 1));
    PROMISE(blockName(*block).size() <= MacroNameSize);
    const MacroRows read = parseMacro(macroText(1, rows))->rows;
    PROMISE(read.size() == rows.size());
    // A key without a name loses its code the first time; then nothing changes any more.
    const MacroBlock settled = savedBlock(blockName(*block), read);
    PROMISE(sameEvents(savedBlock(QString(), parseMacro(macroText(1, blockRows(settled)))->rows), settled));
    renameBlock(block.get(), QString(100, QLatin1Char('n')));
    PROMISE(blockName(*block) == QString(MacroNameSize, QLatin1Char('n')));
    return 0;
}
