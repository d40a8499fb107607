// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Every action that a button of the mouse can do, and every widget that offers one, as one table. The
// binding page makes its widgets' texts and its groups from it, the encoder the bytes, the decoder the
// captions. Immutable; any thread, but for the texts, which come from the language tables.
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
    SequenceClass = 5, // a media key or a combination of keys, as its KeySequence says
    MacroClass = 6,
    ReportRateSwitch = 7,
    LightSwitch = 8,
    ProfileSwitch = 9,
    DpiLock = 10,
    VerticalScroll = 11,
};

// Where a widget stands: on the list of functions, or on one of the panels beside it.
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

// What says which bytes a widget stands for.
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
    Panel shows; // the panel to its side while it is chosen
    Form form;
    KeyBinding binding;
    uint16_t value;      // consumer usage or DPI, else 0
    const char *text;    // until a language gives one, in UTF-8; null: `value` in decimal
    const char *choices; // the language's choice table; null: the text is the same in every language
    const char *key;     // of the text; null: the usage as "0x0183"
};

constexpr std::size_t ActionCount = 58;
// The functions in the order of their list, then panel by panel.
extern const std::array<ActionRow, ActionCount> ActionRows;

const ActionRow *actionOf(const QString &widget); // null for a widget that has no row
// The function behind which the panel lies; null for Functions and Debounce, which need none.
const ActionRow *openerOf(Panel panel);
QString actionText(const ActionRow &row, int language);
// The low byte of the usage, by which a media key is known.
constexpr uint8_t mediaCode(uint16_t usage) { return uint8_t(usage & 0xFF); }
const ActionRow *mediaAction(uint8_t code); // null when no media key has it
const ActionRow *lockAction(int dpi);       // null when no widget offers it
const ActionRow *combinationAction();

} // namespace binding
