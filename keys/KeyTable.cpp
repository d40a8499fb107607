// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "keys/KeyTable.h"

#include <algorithm>
#include <linux/input-event-codes.h>

const std::array<KeyRow, OrdinaryKeyCount + ModifierCount> KeyTable = {{
    {"", KeyKind::Keyboard, 0x00, 0x0C, KEY_CLEAR},
    {"A", KeyKind::Keyboard, 0x04, 0x41, KEY_A},
    {"B", KeyKind::Keyboard, 0x05, 0x42, KEY_B},
    {"C", KeyKind::Keyboard, 0x06, 0x43, KEY_C},
    {"D", KeyKind::Keyboard, 0x07, 0x44, KEY_D},
    {"E", KeyKind::Keyboard, 0x08, 0x45, KEY_E},
    {"F", KeyKind::Keyboard, 0x09, 0x46, KEY_F},
    {"G", KeyKind::Keyboard, 0x0A, 0x47, KEY_G},
    {"H", KeyKind::Keyboard, 0x0B, 0x48, KEY_H},
    {"I", KeyKind::Keyboard, 0x0C, 0x49, KEY_I},
    {"J", KeyKind::Keyboard, 0x0D, 0x4A, KEY_J},
    {"K", KeyKind::Keyboard, 0x0E, 0x4B, KEY_K},
    {"L", KeyKind::Keyboard, 0x0F, 0x4C, KEY_L},
    {"M", KeyKind::Keyboard, 0x10, 0x4D, KEY_M},
    {"N", KeyKind::Keyboard, 0x11, 0x4E, KEY_N},
    {"O", KeyKind::Keyboard, 0x12, 0x4F, KEY_O},
    {"P", KeyKind::Keyboard, 0x13, 0x50, KEY_P},
    {"Q", KeyKind::Keyboard, 0x14, 0x51, KEY_Q},
    {"R", KeyKind::Keyboard, 0x15, 0x52, KEY_R},
    {"S", KeyKind::Keyboard, 0x16, 0x53, KEY_S},
    {"T", KeyKind::Keyboard, 0x17, 0x54, KEY_T},
    {"U", KeyKind::Keyboard, 0x18, 0x55, KEY_U},
    {"V", KeyKind::Keyboard, 0x19, 0x56, KEY_V},
    {"W", KeyKind::Keyboard, 0x1A, 0x57, KEY_W},
    {"X", KeyKind::Keyboard, 0x1B, 0x58, KEY_X},
    {"Y", KeyKind::Keyboard, 0x1C, 0x59, KEY_Y},
    {"Z", KeyKind::Keyboard, 0x1D, 0x5A, KEY_Z},
    {"1", KeyKind::Keyboard, 0x1E, 0x31, KEY_1},
    {"2", KeyKind::Keyboard, 0x1F, 0x32, KEY_2},
    {"3", KeyKind::Keyboard, 0x20, 0x33, KEY_3},
    {"4", KeyKind::Keyboard, 0x21, 0x34, KEY_4},
    {"5", KeyKind::Keyboard, 0x22, 0x35, KEY_5},
    {"6", KeyKind::Keyboard, 0x23, 0x36, KEY_6},
    {"7", KeyKind::Keyboard, 0x24, 0x37, KEY_7},
    {"8", KeyKind::Keyboard, 0x25, 0x38, KEY_8},
    {"9", KeyKind::Keyboard, 0x26, 0x39, KEY_9},
    {"0", KeyKind::Keyboard, 0x27, 0x30, KEY_0},
    {"Enter", KeyKind::Keyboard, 0x28, 0x0D, KEY_ENTER},
    {"Esc", KeyKind::Keyboard, 0x29, 0x1B, KEY_ESC},
    {"BackSpace", KeyKind::Keyboard, 0x2A, 0x08, KEY_BACKSPACE},
    {"Tab", KeyKind::Keyboard, 0x2B, 0x09, KEY_TAB},
    {"Space", KeyKind::Keyboard, 0x2C, 0x20, KEY_SPACE},
    {"-", KeyKind::Keyboard, 0x2D, 0xBD, KEY_MINUS},
    {"=", KeyKind::Keyboard, 0x2E, 0xBB, KEY_EQUAL},
    {"[", KeyKind::Keyboard, 0x2F, 0xDB, KEY_LEFTBRACE},
    {"]", KeyKind::Keyboard, 0x30, 0xDD, KEY_RIGHTBRACE},
    {"\\", KeyKind::Keyboard, 0x31, 0xDC, KEY_BACKSLASH},
    {";", KeyKind::Keyboard, 0x33, 0xBA, KEY_SEMICOLON},
    {"'", KeyKind::Keyboard, 0x34, 0xDE, KEY_APOSTROPHE},
    {"`", KeyKind::Keyboard, 0x35, 0xC0, KEY_GRAVE},
    {",", KeyKind::Keyboard, 0x36, 0xBC, KEY_COMMA},
    {".", KeyKind::Keyboard, 0x37, 0xBE, KEY_DOT},
    {"/", KeyKind::Keyboard, 0x38, 0xBF, KEY_SLASH},
    {"CapsLock", KeyKind::Keyboard, 0x39, 0x14, KEY_CAPSLOCK},
    {"F1", KeyKind::Keyboard, 0x3A, 0x70, KEY_F1},
    {"F2", KeyKind::Keyboard, 0x3B, 0x71, KEY_F2},
    {"F3", KeyKind::Keyboard, 0x3C, 0x72, KEY_F3},
    {"F4", KeyKind::Keyboard, 0x3D, 0x73, KEY_F4},
    {"F5", KeyKind::Keyboard, 0x3E, 0x74, KEY_F5},
    {"F6", KeyKind::Keyboard, 0x3F, 0x75, KEY_F6},
    {"F7", KeyKind::Keyboard, 0x40, 0x76, KEY_F7},
    {"F8", KeyKind::Keyboard, 0x41, 0x77, KEY_F8},
    {"F9", KeyKind::Keyboard, 0x42, 0x78, KEY_F9},
    {"F10", KeyKind::Keyboard, 0x43, 0x79, KEY_F10},
    {"F11", KeyKind::Keyboard, 0x44, 0x7A, KEY_F11},
    {"F12", KeyKind::Keyboard, 0x45, 0x7B, KEY_F12},
    {"Screen", KeyKind::Keyboard, 0x46, 0x2C, KEY_SYSRQ},
    {"Scroll", KeyKind::Keyboard, 0x47, 0x91, KEY_SCROLLLOCK},
    {"Pause", KeyKind::Keyboard, 0x48, 0x13, KEY_PAUSE},
    {"Insert", KeyKind::Keyboard, 0x49, 0x2D, KEY_INSERT},
    {"Home", KeyKind::Keyboard, 0x4A, 0x24, KEY_HOME},
    {"PgUp", KeyKind::Keyboard, 0x4B, 0x21, KEY_PAGEUP},
    {"Del", KeyKind::Keyboard, 0x4C, 0x2E, KEY_DELETE},
    {"End", KeyKind::Keyboard, 0x4D, 0x23, KEY_END},
    {"PgDn", KeyKind::Keyboard, 0x4E, 0x22, KEY_PAGEDOWN},
    {"→", KeyKind::Keyboard, 0x4F, 0x27, KEY_RIGHT},
    {"←", KeyKind::Keyboard, 0x50, 0x25, KEY_LEFT},
    {"↓", KeyKind::Keyboard, 0x51, 0x28, KEY_DOWN},
    {"↑", KeyKind::Keyboard, 0x52, 0x26, KEY_UP},
    {"NumLock", KeyKind::Keyboard, 0x53, 0x90, KEY_NUMLOCK},
    {"Num/", KeyKind::Keyboard, 0x54, 0x6F, KEY_KPSLASH},
    {"Num*", KeyKind::Keyboard, 0x55, 0x6A, KEY_KPASTERISK},
    {"Num-", KeyKind::Keyboard, 0x56, 0x6D, KEY_KPMINUS},
    {"Num+", KeyKind::Keyboard, 0x57, 0x6B, KEY_KPPLUS},
    {"Num1", KeyKind::Keyboard, 0x59, 0x61, KEY_KP1},
    {"Num2", KeyKind::Keyboard, 0x5A, 0x62, KEY_KP2},
    {"Num3", KeyKind::Keyboard, 0x5B, 0x63, KEY_KP3},
    {"Num4", KeyKind::Keyboard, 0x5C, 0x64, KEY_KP4},
    {"Num5", KeyKind::Keyboard, 0x5D, 0x65, KEY_KP5},
    {"Num6", KeyKind::Keyboard, 0x5E, 0x66, KEY_KP6},
    {"Num7", KeyKind::Keyboard, 0x5F, 0x67, KEY_KP7},
    {"Num8", KeyKind::Keyboard, 0x60, 0x68, KEY_KP8},
    {"Num9", KeyKind::Keyboard, 0x61, 0x69, KEY_KP9},
    {"Num0", KeyKind::Keyboard, 0x62, 0x60, KEY_KP0},
    {"Num.", KeyKind::Keyboard, 0x63, 0x6E, KEY_KPDOT},
    {"APPs", KeyKind::Keyboard, 0x65, 0x5D, KEY_COMPOSE},
    {"LCtrl", KeyKind::Modifier, 0x01, 0xA2, KEY_LEFTCTRL},
    {"LShift", KeyKind::Modifier, 0x02, 0xA0, KEY_LEFTSHIFT},
    {"LAlt", KeyKind::Modifier, 0x04, 0xA4, KEY_LEFTALT},
    {"LWin", KeyKind::Modifier, 0x08, 0x5B, KEY_LEFTMETA},
    {"RCtrl", KeyKind::Modifier, 0x10, 0xA3, KEY_RIGHTCTRL},
    {"RShift", KeyKind::Modifier, 0x20, 0xA1, KEY_RIGHTSHIFT},
    {"RAlt", KeyKind::Modifier, 0x40, 0xA5, KEY_RIGHTALT},
    {"RWin", KeyKind::Modifier, 0x80, 0x5C, KEY_RIGHTMETA},
}};

namespace
{

// A second physical key with the same row.
struct Twin {
    uint16_t evdev;
    uint16_t row; // the row's own physical key
};
constexpr Twin Twins[] = {{KEY_KPENTER, KEY_ENTER}};

} // namespace

int VirtualKeyFromEvdev(int evdev)
{
    int wanted = evdev;
    for (const Twin &twin : Twins)
        if (twin.evdev == evdev)
            wanted = twin.row;
    const auto *row = std::find_if(KeyTable.begin(), KeyTable.end(),
                                   [wanted](const KeyRow &each) { return each.evdev == wanted; });
    return row != KeyTable.end() ? row->virtualKey : UnnamedKeys + evdev;
}
