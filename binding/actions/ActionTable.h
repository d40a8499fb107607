// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// One table of all actions of a mouse button and of the widgets that offer them. The binding page takes texts
// and button groups from it, the encoder bytes, the decoder captions. Immutable and usable on any thread; the
// texts need loaded language tables.
#pragma once

#include "device/hidusb/FlashDataMap.h"

#include <QString>
#include <array>

namespace binding
{

enum ActionClass : uint8_t {
    Disabled = 0,
    MouseButton = 1,
    DpiSwitch = 2,
    HorizontalScroll = 3,
    FireKeyClass = 4,
    SequenceClass = KeySequenceClass, // a media key or a combination of keys; its KeySequence tells which
    MacroClass = MacroBlockClass,
    ReportRateSwitch = 7,
    LightSwitch = 8,
    ProfileSwitch = 9,
    DpiLock = 10,
    VerticalScroll = 11,
};

// Place of a widget: the list of functions or one of the panels beside it.
enum class Panel : uint8_t {
    Functions,
    Debounce,
    Media,
    Macros,
    Lights,
    DpiLocks,
    SideScroll,
    DpiSteps,
    Scroll,
};
constexpr int PanelCount = 9;
// The object name of the panel's page; "page_2" for the functions.
QString panelName(Panel panel);

// Which bytes identify the action of a widget.
enum class Form : uint8_t {
    Class,       // its class alone; a stored binding of the class is this action whatever its parameters
    ClassFirst,  // its class and first parameter
    Fire,        // its class; the parameters are the interval and the count of shots
    Media,       // a KeySequence of one consumer usage, `value`
    Lock,        // the code of `value` DPI in the first parameter
    Combination, // a KeySequence of keys
    Opener,      // none: it shows a panel
};

struct ActionRow {
    const char *widget; // object name
    Panel place;
    Panel shows; // panel that is shown while the function is chosen
    Form form;
    KeyBinding binding;
    uint16_t value;      // consumer usage or DPI, else 0
    const char *text;    // UTF-8, used when the language has none; null: `value` in decimal
    const char *choices; // the language's choice table; null: the text is the same in every language
    const char *key;     // of the text; null: the usage as "0x0183"
};

constexpr std::size_t ActionCount = 58;
// The functions in the order of their list, then panel by panel.
extern const std::array<ActionRow, ActionCount> ActionRows;

const ActionRow *actionOf(const QString &widget); // null for a widget that has no row
// The function that opens the panel; null for Functions and Debounce.
const ActionRow *openerOf(Panel panel);
QString actionText(const ActionRow &row, int language);
// The low byte of the usage, which identifies a media key.
constexpr uint8_t mediaCode(uint16_t usage) { return uint8_t(usage & 0xFF); }
const ActionRow *mediaAction(uint8_t code); // null when no media key has it
const ActionRow *lockAction(int dpi);       // null when no widget offers it
const ActionRow *combinationAction();

} // namespace binding
