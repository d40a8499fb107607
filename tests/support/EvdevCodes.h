// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Codes of keys as the kernel has them. The X server adds Offset.
#pragma once

namespace evdev
{

constexpr int Offset = 8;
constexpr int A = 30, B = 48, R = 19, Y = 21, Backtick = 41, Space = 57, Enter = 28, KeypadEnter = 96,
              Escape = 1, Tab = 15, F2 = 60, Delete = 111, LeftCtrl = 29, LeftShift = 42, RightShift = 54,
              LeftAlt = 56, RightAlt = 100, Wheel = 177;

} // namespace evdev
