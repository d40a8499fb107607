// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ButtonBindings: the bindings of the buttons that the page shows, with the record that they come from. That
// is not the record of the device while the page shows the kept image of a mouse that is off line. It decodes
// them for the page and writes new ones to the mouse; a binding that the mouse does not take leaves the old
// one. Buttons are 0..11. Main thread.
#pragma once

#include "binding/actions/BindingDecoder.h"
#include "binding/actions/BindingEncoder.h"
#include "catalogue/DpiCodes.h"

#include <optional>

class ButtonBindings
{
public:
    ButtonBindings(); // reads the sensors' codes
    // Reads the sensor of the selected device, on which the DPI locks depend.
    void readSensor();
    const SensorCodes &sensor() const { return sensor_; }

    // `count`: buttons of the model.
    void load(const FlashDataMap &record, int count);
    void loadBuiltIn();
    // The bindings of a new mouse; the rest is zero.
    static FlashDataMap builtIn();
    // Takes what was sent to the mouse since the device's record was `before`.
    void takeSent(const FlashDataMap &before);
    // Gives a kept image of this mouse the names that macros have got since it was kept.
    void putNamesOn(FlashDataMap *image) const;
    int count() const; // 0 before the first record
    std::optional<KeyBinding> at(int button) const;
    // Whether the button, and no other one, is the left button.
    bool isOnlyLeft(int button) const;
    // As last loaded, with what was written since.
    const FlashDataMap &record() const { return record_; }

    // The record supplies the key sequence and the macro, which do not fit into the binding.
    binding::DecodedBinding decoded(int button, const KeyBinding &binding, const FlashDataMap &record) const;
    bool write(int button, const binding::EncodedAction &action);
    // A macro goes into the button's own slot.
    bool writeMacro(int button, uint8_t cycle, const MacroBlock &macro);
    // Change what the button's slot holds, as the device's record has it.
    bool writeMacroName(int button, const QString &name);
    bool writeMacroCycle(int button, uint8_t cycle);

private:
    bool writeBlock(int button, const KeyBinding &binding, const MacroBlock &macro);
    void take(int button); // what has just been written

    FlashDataMap record_{};
    int count_ = 0; // bindings of the record that are shown
    SensorCodes sensor_;
};
