// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The flags of the window and of the device page: no frame, a system menu and a minimise button.
#pragma once

#include <QtCore/qnamespace.h>

constexpr Qt::WindowFlags FramelessFlags =
    Qt::FramelessWindowHint | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint;
static_assert(int(FramelessFlags) == 0x6800);
