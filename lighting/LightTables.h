// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the lights of a mouse and of a receiver have in common: their modes with the controls of each, and the
// colours that are offered.
#pragma once

#include <array>
#include <cstdint>

enum LightMode { LightOff, ColorFlow, Breathing, Steady, Neon, ColorBreathing, ColorWave };
constexpr int LightModeCount = 7;
constexpr int LightScaleTop = 10; // brightness and speed go from 1 to 10

// What can be set in a mode, by the mode.
struct ModeControls {
    bool color;
    bool brightness;
    bool speed;
};
constexpr std::array<ModeControls, LightModeCount> ModeRows = {{
    {false, false, false}, // off
    {false, true, true},   // colour flow
    {true, true, true},    // breathing
    {true, true, false},   // steady
    {false, true, true},   // neon
    {false, true, true},   // colour breathing
    {false, true, false},  // colour wave
}};

// A colour that one press sets.
struct Preset {
    char letter; // at the end of the button's name
    uint8_t red, green, blue;
    const char *nameKey;
};
constexpr std::array<Preset, 14> Presets = {{
    {'A', 255, 0, 0, "light ColorRed"},
    {'B', 0, 255, 255, "light ColorCyan"},
    {'C', 0, 255, 0, "light ColorGreen"},
    {'D', 255, 0, 255, "light ColorMagenta"},
    {'E', 255, 255, 0, "light ColorYellow"},
    {'F', 255, 80, 0, "light ColorOrange"},
    {'G', 0, 0, 255, "light ColorBlue"},
    {'H', 227, 0, 127, "light ColorPink"},
    {'I', 46, 166, 223, "light ColorSky"},
    {'J', 96, 25, 133, "light ColorPurple"},
    {'K', 255, 255, 255, "light ColorWhite"},
    {'L', 139, 178, 36, "light ColorOlive"},
    {'M', 255, 155, 51, "light ColorAmber"},
    {'N', 208, 113, 173, "light ColorOrchid"},
}};
