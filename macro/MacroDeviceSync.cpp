// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/MacroDeviceSync.h"

#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "environment/MacroName.h"
#include "macro/missed/MissedNames.h"
#include "macro/store/MacroBlockCodec.h"
#include "macro/store/MacroFile.h"
#include "macro/store/MacroFolder.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <vector>

namespace macro
{

namespace
{

QSet<QString> held;
QHash<QString, QSet<QString>> missed; // by mouse

void move(QSet<QString> *marks, const QString &name, const QString &newName)
{
    if (marks->remove(name))
        marks->insert(newName);
}

// Whether the file plays what the block plays: other line ends, or events past the mouse's last one, are no
// reason to write over it.
bool gives(const QByteArray &file, const MacroBlock &block, uint8_t cycle)
{
    const std::optional<MacroText> text = parseMacro(file);
    return text && cycleByte(text->cycle.value_or(0)) == cycle &&
           (sameEvents(boundBlock({}, text->rows), block) || sameEvents(savedBlock({}, text->rows), block));
}

// A mouse that is being read answers, and its thread, which waits for this one, cannot be asked.
bool isReachable() { return MouseOnline && (FullReadPending || CheckOnline()); }

template <typename Change> bool send(int button, Change change)
{
    if (!isReachable())
        return false;
    DeviceRecord::edit(
        [&](FlashDataMap &record) { change(record.KeyBindings[button], record.MacroBlocks[button]); });
    PushRecord();
    dropMissedName(button);
    return true;
}

bool sendMissed(const QString &name, int button)
{
    const std::optional<MacroText> saved = loadMacro(name);
    return saved && send(button, [&](KeyBinding &binding, MacroBlock &block) {
               binding.Second = cycleByte(saved->cycle.value_or(0));
               block = savedBlock(name, saved->rows);
           });
}

bool isMissedByAny(const QString &name)
{
    return std::any_of(missed.cbegin(), missed.cend(),
                       [&name](const QSet<QString> &ofMouse) { return ofMouse.contains(name); });
}

bool sendName(const QString &name, int button)
{
    return send(button, [&](const KeyBinding &, MacroBlock &block) { renameBlock(&block, name); });
}

// The buttons that play a macro of this name.
std::vector<int> buttonsOf(const FlashDataMap &record, const QString &name)
{
    const int count = DeviceCatalogue().number(SelectedDevice::info().DriveIndex, "KeyNumber");
    std::vector<int> buttons;
    for (int k = 0; k < qMin(count, int(KeySlotCount)); ++k)
        if (record.KeyBindings[k].Class == MacroBlockClass && macroName(record, k) == name)
            buttons.push_back(k);
    return buttons;
}

// The last one of them; `button` plays the macro.
int lastButton(const FlashDataMap &record, int button, const QString &name)
{
    const std::vector<int> buttons = buttonsOf(record, name);
    return buttons.empty() ? button : qMax(button, buttons.back());
}

} // namespace

void hold(const QString &name) { held.insert(name); }

void release(const QString &name) { held.remove(name); }

bool isHeld(const QString &name) { return held.contains(name); }

void setMissed(const QString &name, bool isMissed)
{
    if (isMissed)
        missed[selectedMouse()].insert(name);
    else
        missed[selectedMouse()].remove(name);
}

void moveMarks(const QString &name, const QString &newName)
{
    move(&held, name, newName);
    for (QSet<QString> &ofMouse : missed)
        move(&ofMouse, name, newName);
    renameMissed(name, newName);
}

void dropMarks(const QString &name)
{
    release(name);
    for (QSet<QString> &ofMouse : missed)
        ofMouse.remove(name);
    dropMissedNamesOf(name);
}

Taken takeFromMouse(const FlashDataMap &record, int button)
{
    if (button < 0 || button >= KeySlotCount)
        return {};
    const MacroBlock &block = record.MacroBlocks[button];
    const uint8_t cycle = record.KeyBindings[button].Second;
    const QString name = macroName(record, button);
    if (!isMacroName(name))
        return {};
    if (missed.value(selectedMouse()).contains(name) && macroExists(name)) {
        if (sendMissed(name, button) && lastButton(record, button, name) == button)
            setMissed(name, false);
        return {};
    }
    if (name != blockName(block) && !sendName(name, button))
        return {};
    if (isHeld(name))
        return {};
    const QByteArray file = readMacroFile(name);
    const QByteArray text = macroText(cycle, blockRows(block));
    // Of several buttons the file is the last one's. What the others play is kept where it differs.
    if (const int last = lastButton(record, button, name); last != button) {
        if (record.KeyBindings[last].Second != cycle || !sameEvents(record.MacroBlocks[last], block))
            keepText(name, text);
        return {};
    }
    if (file == text || (!file.isNull() && gives(file, block, cycle)))
        return {};
    // The file waits for another mouse.
    if (!file.isNull() && isMissedByAny(name)) {
        keepText(name, text);
        return {};
    }
    if (!keepMacro(name))
        return {};
    const bool isNew = file.isNull();
    return writeMacroFile(name, text) ? Taken{name, isNew} : Taken{};
}

bool sendSaved(const QString &name, int button)
{
    const std::optional<MacroText> saved = loadMacro(name);
    if (!MouseOnline || !saved || button < 0 || button >= KeySlotCount)
        return false;
    const bool isTaken =
        SetMacroBinding(button, DeviceRecord::copy().KeyBindings[button], savedBlock(name, saved->rows));
    if (isTaken)
        dropMissedName(button);
    return isTaken;
}

// The record holds what the mouse took, but for a read that is still to come.
void noteSent(const QString &name, bool rows, bool cycle)
{
    const FlashDataMap record = DeviceRecord::copy();
    const std::vector<int> buttons = buttonsOf(record, name);
    const std::optional<MacroText> saved = loadMacro(name);
    if (buttons.empty() || !saved)
        return;
    const MacroBlock block = savedBlock(name, saved->rows);
    const bool hasRows = std::all_of(buttons.begin(), buttons.end(), [&](int button) {
        return sameEvents(record.MacroBlocks[button], block);
    });
    const bool hasCycle = std::all_of(buttons.begin(), buttons.end(), [&](int button) {
        return record.KeyBindings[button].Second == cycleByte(saved->cycle.value_or(0));
    });
    if (FullReadAwaited || (rows && !hasRows) || (cycle && !hasCycle))
        setMissed(name, true);
    else if (hasRows && hasCycle)
        setMissed(name, false);
}

} // namespace macro
