// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Every key of the program in one table: the name that pages show, the code of the device and of macro files,
// and the physical key. Read-only, any thread.
#pragma once

#include <array>
#include <cstdint>

enum class KeyKind : uint8_t {
    Modifier = 0,    // one bit of the modifier byte
    Keyboard = 1,    // usage of the HID Keyboard/Keypad page
    Consumer = 2,    // usage of the HID Consumer page, in key sequences alone
    MouseButton = 4, // one bit of the mouse-button byte
};

struct KeyRow {
    const char *name;
    KeyKind kind;
    uint8_t code;
    uint8_t virtualKey; // as reported by KeySource
    uint16_t evdev;     // the kernel's number of the physical key
};

constexpr std::size_t OrdinaryKeyCount = 96;
constexpr std::size_t ModifierCount = 8;
// The ordinary keys in order of their code, then the modifiers in order of their bit.
extern const std::array<KeyRow, OrdinaryKeyCount + ModifierCount> KeyTable;

struct MouseButtonRow {
    uint8_t bit;
    const char *textKey; // of its name in the choices InsertEventOptions
    const char *text;    // where the language has no such choice, in UTF-8
};
constexpr std::size_t MouseButtonCount = 5;
constexpr std::array<MouseButtonRow, MouseButtonCount> MouseButtonTable = {{
    {1, "2", "左键"},
    {2, "3", "右键"},
    {4, "4", "中键"},
    {8, "6", "后退键"},
    {16, "5", "前进键"},
}};

// The virtual key of a physical key, by the kernel's number. A key outside the table gets a number of its
// own from UnnamedKeys on, which has no name.
constexpr int UnnamedKeys = 0x100;
int VirtualKeyFromEvdev(int evdev);
