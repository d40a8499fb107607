// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The panel's colours, and the application's looks made of them.
#pragma once

#include <QColor>
#include <QFont>

class QApplication;

namespace look
{

constexpr QRgb Ground = 0xff15181c;
constexpr QRgb Surface = 0xff1d2126;
constexpr QRgb Raised = 0xff272c33;
constexpr QRgb Line = 0xff3a414a;
constexpr QRgb Text = 0xffe8ebee;
constexpr QRgb Quiet = 0xff9aa4af;
constexpr QRgb Mint = 0xff00ff99;
constexpr QRgb MintGround = 0xff123a2b;
constexpr QRgb Amber = 0xffffb454;

// For bytes; a little smaller than the desktop's, since there are many.
QFont fixedFont();
void apply(QApplication &application);

} // namespace look
