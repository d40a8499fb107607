// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/MacroDeviceSync.h"

#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "environment/MacroName.h"
#include "macro/store/MacroBlockCodec.h"
#include "macro/store/MacroFile.h"
#include "macro/store/MacroFolder.h"

#include <QSet>

namespace macro
{

namespace
{

QSet<QString> held;

// Whether the file plays what the block plays: other line ends, or events past the mouse's last one, are no
// reason to write over it.
bool gives(const QByteArray &file, const MacroBlock &block, uint8_t cycle)
{
    const std::optional<MacroText> text = parseMacro(file);
    return text && cycleByte(text->cycle.value_or(0)) == cycle &&
           (sameEvents(boundBlock({}, text->rows), block) || sameEvents(savedBlock({}, text->rows), block));
}

} // namespace

void hold(const QString &name) { held.insert(name); }

void release(const QString &name) { held.remove(name); }

bool isHeld(const QString &name) { return held.contains(name); }

Taken takeFromMouse(const FlashDataMap &record, int button)
{
    if (button < 0 || button >= KeySlotCount)
        return {};
    const MacroBlock &block = record.MacroBlocks[button];
    const uint8_t cycle = record.KeyBindings[button].Second;
    const QString name = blockName(block);
    if (!isMacroName(name) || isHeld(name))
        return {};
    const QByteArray file = readMacroFile(name);
    const QByteArray text = macroText(cycle, blockRows(block));
    if (file == text || (!file.isNull() && gives(file, block, cycle)) || !keepMacro(name))
        return {};
    const bool isNew = file.isNull();
    return writeMacroFile(name, text) ? Taken{name, isNew} : Taken{};
}

bool sendSaved(const QString &name, int button)
{
    const std::optional<MacroText> saved = loadMacro(name);
    if (!MouseOnline || !saved || button < 0 || button >= KeySlotCount)
        return false;
    return SetMacroBinding(button, DeviceRecord::copy().KeyBindings[button], savedBlock(name, saved->rows));
}

} // namespace macro
