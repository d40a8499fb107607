// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The widgets that bind at a click and the bytes they stand for, written down independently of the table from
// which the page is made. DPI codes are those of a sensor that counts in steps of 50.
#pragma once

#include "device/hidusb/FlashDataMap.h"

// What stands behind each widget that binds at once.
struct ButtonAction {
    const char *opener; // null: on the list of functions itself
    const char *widget;
    KeyBinding binding;
    int usage; // of a media key; 0: the sequence stays
    const char *caption;
};
constexpr ButtonAction ButtonActions[] = {
    {nullptr, "LeftKey_3", {1, 1, 0}, 0, "Left button"},
    {nullptr, "RightKey_3", {1, 2, 0}, 0, "Right button"},
    {nullptr, "MidKey", {1, 4, 0}, 0, "Middle button"},
    {nullptr, "BackKey_2", {1, 8, 0}, 0, "Back button"},
    {nullptr, "ForWardKey", {1, 16, 0}, 0, "Forward button"},
    {nullptr, "DPI_5", {0, 0, 0}, 0, "Disabled"},
    {nullptr, "DPI_2", {7, 0, 0}, 0, "Next report rate"},
    {nullptr, "DPI_3", {9, 0, 0}, 0, "Next profile"},
    {"DPI_7", "VolumeUp_8", {2, 1, 0}, 0, "Next DPI stage"},
    {"DPI_7", "VolumeUp_9", {2, 2, 0}, 0, "DPI up"},
    {"DPI_7", "VolumeUp_10", {2, 3, 0}, 0, "DPI down"},
    {"DPI_11", "VolumeUp_2", {3, 1, 0}, 0, "Scroll left"},
    {"DPI_11", "VolumeDown_2", {3, 2, 0}, 0, "Scroll right"},
    {"DPI_9", "VolumeUp_4", {8, 0, 0}, 0, "All lights on/off"},
    {"DPI_9", "VolumeUp_5", {8, 1, 0}, 0, "DPI light on/off"},
    {"DPI_9", "VolumeUp_6", {8, 3, 0}, 0, "Light bar on/off"},
    {"DPI_9", "VolumeUp_7", {8, 4, 0}, 0, "Next light bar effect"},
    {"DPI_13", "VolumeUp_14", {11, 1, 0}, 0, "Scroll up"},
    {"DPI_13", "VolumeDown_14", {11, 2, 0}, 0, "Scroll down"},
    {"DPI_4", "VolumeUp_11", {10, 1, 0}, 0, "DPI lock-100"},
    {"DPI_4", "VolumeUp_12", {10, 3, 0}, 0, "DPI lock-200"},
    {"DPI_4", "VolumeUp_13", {10, 5, 0}, 0, "DPI lock-300"},
    {"DPI_4", "VolumeUp_16", {10, 7, 0}, 0, "DPI lock-400"},
    {"DPI_4", "VolumeUp_15", {10, 9, 0}, 0, "DPI lock-500"},
    {"DPI_4", "VolumeUp_19", {10, 11, 0}, 0, "DPI lock-600"},
    {"DPI_4", "VolumeUp_20", {10, 13, 0}, 0, "DPI lock-700"},
    {"DPI_4", "VolumeUp_22", {10, 15, 0}, 0, "DPI lock-800"},
    {"DPI_4", "VolumeUp_18", {10, 17, 0}, 0, "DPI lock-900"},
    {"DPI_4", "VolumeUp_24", {10, 19, 0}, 0, "DPI lock-1000"},
    {"DPI_4", "VolumeUp_23", {10, 21, 0}, 0, "DPI lock-1100"},
    {"DPI_4", "VolumeUp_21", {10, 23, 0}, 0, "DPI lock-1200"},
    {"DPI_12", "Player", {5, 0, 0}, 0x0183, "Media player"},
    {"DPI_12", "StartPause_2", {5, 0, 0}, 0x00CD, "Play/pause"},
    {"DPI_12", "BackMusic_2", {5, 0, 0}, 0x00B5, "Next track"},
    {"DPI_12", "TopMusic_2", {5, 0, 0}, 0x00B6, "Previous track"},
    {"DPI_12", "Mute", {5, 0, 0}, 0x00B7, "Stop playback"},
    {"DPI_12", "VolumeUp", {5, 0, 0}, 0x00E2, "Mute"},
    {"DPI_12", "VolumeDown", {5, 0, 0}, 0x00E9, "Volume up"},
    {"DPI_12", "VolumeDown_4", {5, 0, 0}, 0x00EA, "Volume down"},
    {"DPI_12", "VolumeDown_5", {5, 0, 0}, 0x018A, "Email"},
    {"DPI_12", "VolumeDown_6", {5, 0, 0}, 0x0192, "Calculator"},
    {"DPI_12", "VolumeDown_3", {5, 0, 0}, 0x0194, "File manager"},
    {"DPI_12", "VolumeDown_8", {5, 0, 0}, 0x0223, "Browser home"},
    {"DPI_12", "VolumeDown_9", {5, 0, 0}, 0x0221, "Browser search"},
    {"DPI_12", "VolumeDown_7", {5, 0, 0}, 0x0225, "Browser forward"},
    {"DPI_12", "VolumeDown_10", {5, 0, 0}, 0x0224, "Browser back"},
    {"DPI_12", "VolumeDown_12", {5, 0, 0}, 0x0226, "Browser stop"},
    {"DPI_12", "VolumeDown_13", {5, 0, 0}, 0x0227, "Browser refresh"},
    {"DPI_12", "VolumeDown_11", {5, 0, 0}, 0x022A, "Browser favorites"},
};

inline KeySequence pressAndRelease(int usage)
{
    KeySequence sequence{};
    sequence.Count.set(2);
    for (int i = 0; i < 2; ++i) {
        sequence.Events[i].Direction = uint8_t(i);
        sequence.Events[i].Kind = 2;
        sequence.Events[i].Code.set(uint16_t(usage));
        sequence.Events[i].DelayMs.set(10);
    }
    return sequence;
}
