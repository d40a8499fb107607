// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/ButtonBindings.h"

#include "binding/actions/DefaultActions.h"
#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "macro/missed/MissedNames.h"
#include "macro/store/MacroBlockCodec.h"
#include "presentation/language/LanguageTables.h"

#include <algorithm>
#include <cstring>

using namespace binding;

// The button's block, with the name that it has missed.
static MacroBlock macroBlock(const FlashDataMap &record, int button)
{
    MacroBlock block = record.MacroBlocks[button];
    if (const QString name = macro::macroName(record, button); name != macro::blockName(block))
        macro::renameBlock(&block, name);
    return block;
}

ButtonBindings::ButtonBindings() { ReadSensorDefines(&sensor_.names, &sensor_.values); }

void ButtonBindings::readSensor()
{
    sensor_.sensor = DeviceCatalogue().text(SelectedDevice::info().DriveIndex, "Sensor");
    SensorName = sensor_.sensor;
}

void ButtonBindings::load(const FlashDataMap &record, int count)
{
    record_ = record;
    count_ = qBound(0, count, KeySlotCount);
}

void ButtonBindings::loadBuiltIn()
{
    FlashDataMap record = builtIn();
    for (KeyBinding &binding : record.KeyBindings)
        binding.Second = 0;
    load(record, ButtonCount);
}

FlashDataMap ButtonBindings::builtIn()
{
    FlashDataMap record{};
    for (int k = 0; k < ButtonCount; ++k)
        record.KeyBindings[k] = builtInAction(k)->binding;
    return record;
}

void ButtonBindings::takeSent(const FlashDataMap &before)
{
    const FlashDataMap sent = DeviceRecord::copy();
    const auto copyChange = [](auto &shown, const auto &old, const auto &now) {
        if (std::memcmp(&old, &now, sizeof now) != 0)
            shown = now;
    };
    for (int k = 0; k < count_; ++k) {
        copyChange(record_.KeyBindings[k], before.KeyBindings[k], sent.KeyBindings[k]);
        copyChange(record_.MacroBlocks[k], before.MacroBlocks[k], sent.MacroBlocks[k]);
    }
}

// A macro that is the same in all but its name was renamed.
void ButtonBindings::putNamesOn(FlashDataMap *image) const
{
    for (int k = 0; k < count_; ++k)
        if (record_.KeyBindings[k].Class == MacroBlockClass &&
            std::memcmp(&image->KeyBindings[k], &record_.KeyBindings[k], sizeof(KeyBinding)) == 0 &&
            macro::sameEvents(image->MacroBlocks[k], record_.MacroBlocks[k]))
            image->MacroBlocks[k] = record_.MacroBlocks[k];
}

bool ButtonBindings::isOnlyLeft(int button) const
{
    const KeyBinding left = builtInAction(0)->binding;
    const auto isLeft = [&left](const KeyBinding &binding) {
        return binding.Class == left.Class && binding.First == left.First;
    };
    const auto binding = at(button);
    const KeyBinding *all = record_.KeyBindings;
    return binding && isLeft(*binding) && std::count_if(all, all + count_, isLeft) == 1;
}

int ButtonBindings::count() const { return qMin(count_, ButtonCount); }

std::optional<KeyBinding> ButtonBindings::at(int button) const
{
    if (button < 0 || button >= count_)
        return std::nullopt;
    return record_.KeyBindings[button];
}

DecodedBinding ButtonBindings::decoded(int button, const KeyBinding &binding,
                                       const FlashDataMap &record) const
{
    return decodeBinding({binding, record.KeySequences[button], macroBlock(record, button)}, sensor_,
                         LanguageIndex);
}

bool ButtonBindings::write(int button, const EncodedAction &action)
{
    const bool taken = action.sequence ? SetKeySequence(button, action.binding, *action.sequence)
                                       : SetBinding(button, action.binding);
    if (taken)
        take(button);
    return taken;
}

bool ButtonBindings::writeMacro(int button, uint8_t cycle, const MacroBlock &macro)
{
    return writeBlock(button, macroBinding(button, cycle), macro);
}

bool ButtonBindings::writeMacroName(int button, const QString &name)
{
    const FlashDataMap record = DeviceRecord::copy();
    MacroBlock block = record.MacroBlocks[button];
    macro::renameBlock(&block, name);
    return writeBlock(button, record.KeyBindings[button], block);
}

bool ButtonBindings::writeMacroCycle(int button, uint8_t cycle)
{
    const FlashDataMap record = DeviceRecord::copy();
    KeyBinding binding = record.KeyBindings[button];
    binding.Second = cycle;
    return writeBlock(button, binding, macroBlock(record, button));
}

bool ButtonBindings::writeBlock(int button, const KeyBinding &binding, const MacroBlock &macro)
{
    const bool taken = SetMacroBinding(button, binding, macro);
    if (taken)
        take(button);
    return taken;
}

void ButtonBindings::take(int button)
{
    macro::dropMissedName(button);
    const FlashDataMap written = DeviceRecord::copy();
    record_.KeyBindings[button] = written.KeyBindings[button];
    record_.KeySequences[button] = written.KeySequences[button];
    record_.MacroBlocks[button] = written.MacroBlocks[button];
    count_ = qMax(count_, button + 1);
}
