// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The binding page's buttons in the real program, for the tests that bind them.
#pragma once

#include "tests/e2e/Program.h"

#include <QAbstractButton>

struct ButtonOf {
    int button;
    const char *caption;
};
// In the order in which everything walks the buttons.
constexpr ButtonOf Buttons[] = {
    {0, "FireKey"}, {1, "RightKey"}, {2, "BackKey"}, {4, "StartPause"}, {3, "TopMusic"},  {5, "BackMusic"},
    {6, "Button7"}, {7, "Button8"},  {8, "Button9"}, {9, "Button10"},   {10, "Button11"}, {11, "Button12"},
};

inline QAbstractButton *named(const Program &program, const char *name)
{
    return program.window->findChild<QAbstractButton *>(QLatin1String(name));
}
