// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A macro as the block that a button's slot holds. Encoding stops at the block's 70 events and 30 name bytes.
// A row is encoded by what it is, so that an event never takes the place of another: behind an event without
// a delay comes the next event. A block that is decoded comes from a mouse or a file and is not trusted: what
// is read stays within the block. Main thread, because the names of the mouse buttons follow the language.
#pragma once

#include "macro/store/MacroRow.h"

#include <optional>

namespace macro
{

// Events that the rows need. More than MacroEventCount do not fit: the mouse gets the first ones.
int eventCount(const MacroRows &rows);
inline bool fitsBlock(const MacroRows &rows) { return eventCount(rows) <= MacroEventCount; }

// The block of a macro that is bound: an empty macro counts one event, which is all zeros.
MacroBlock boundBlock(const QString &name, const MacroRows &rows);
// The block of a macro that is saved: an empty macro counts none.
MacroBlock savedBlock(const QString &name, const MacroRows &rows);

// Writes the name over the one in the block. The tail of a longer one stays behind, outside its length.
void renameBlock(MacroBlock *block, const QString &name);

// By the length byte, at most the whole field, without NULs. For captions; it may be no name of a file.
QString blockName(const MacroBlock &block);
MacroRows blockRows(const MacroBlock &block);

// Both blocks play the same events; names are not compared.
bool sameEvents(const MacroBlock &a, const MacroBlock &b);

} // namespace macro
