// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/ButtonBindings.h"

#include "binding/actions/DefaultActions.h"
#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "presentation/language/LanguageTables.h"

using namespace binding;

ButtonBindings::ButtonBindings() { ReadSensorDefines(&sensor_.names, &sensor_.values); }

void ButtonBindings::readSensor()
{
    sensor_.sensor = DeviceCatalogue().text(SelectedDevice::info().DriveIndex, "Sensor");
    SensorName = sensor_.sensor;
}

void ButtonBindings::load(const FlashDataMap &record, int count)
{
    record_ = record;
    bindings_.clear();
    for (int k = 0; k < qBound(0, count, KeySlotCount); ++k)
        set(k, record.KeyBindings[k]);
}

void ButtonBindings::loadBuiltIn()
{
    record_ = FlashDataMap{};
    bindings_.clear();
    for (int k = 0; k < ButtonCount; ++k) {
        const KeyBinding binding = builtInAction(k)->binding;
        set(k, {binding.Class, binding.First, 0});
    }
}

int ButtonBindings::count() const { return qMin(bindings_.size(), ButtonCount); }

std::optional<KeyBinding> ButtonBindings::at(int button) const
{
    if (button < 0 || button >= bindings_.size())
        return std::nullopt;
    return bindings_[button];
}

DecodedBinding ButtonBindings::decoded(int button, const KeyBinding &binding,
                                       const FlashDataMap &record) const
{
    return decodeBinding({binding, record.KeySequences[button], record.MacroBlocks[button]}, sensor_,
                         LanguageIndex);
}

QStringList ButtonBindings::macroNames() const
{
    QStringList names;
    for (int k = 0; k < count(); ++k)
        if (const QString name = macroName(record_.MacroBlocks[k]);
            record_.KeyBindings[k].Class == MacroClass && !name.isEmpty() && !names.contains(name))
            names << name;
    names.sort(Qt::CaseInsensitive);
    return names;
}

bool ButtonBindings::write(int button, const EncodedAction &action)
{
    const bool taken = action.sequence ? SetKeySequence(button, action.binding, *action.sequence)
                                       : SetBinding(button, action.binding);
    if (taken)
        take(button);
    return taken;
}

bool ButtonBindings::writeMacro(int button, const QString &name)
{
    for (int k = 0; k < ButtonCount; ++k) {
        if (record_.KeyBindings[k].Class != MacroClass || macroName(record_.MacroBlocks[k]) != name)
            continue;
        const KeyBinding binding = macroBinding(button, record_.KeyBindings[k].Second);
        const bool taken = SetMacroBinding(button, binding, record_.MacroBlocks[k]);
        if (taken)
            take(button);
        return taken;
    }
    return false;
}

void ButtonBindings::take(int button)
{
    const FlashDataMap written = DeviceRecord::copy();
    record_.KeyBindings[button] = written.KeyBindings[button];
    record_.KeySequences[button] = written.KeySequences[button];
    record_.MacroBlocks[button] = written.MacroBlocks[button];
    set(button, written.KeyBindings[button]);
}

void ButtonBindings::set(int button, const KeyBinding &binding)
{
    while (bindings_.size() <= button)
        bindings_ << KeyBinding{};
    bindings_[button] = binding;
}
