// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The panel's colours, which are those of the program's skin, and the application's look made of them.
#pragma once

#include <QColor>
#include <QFont>
#include <QString>

class QApplication;

namespace look
{

constexpr QRgb Ground = skin_ground;
constexpr QRgb GroundLow = skin_groundLow;
constexpr QRgb Surface = skin_surface1;
constexpr QRgb Card = skin_surface2;
constexpr QRgb Control = skin_surface3;
constexpr QRgb Raised = skin_raised; // a control under the pointer
constexpr QRgb Line = skin_line;
constexpr QRgb Edge = skin_lineStrong; // of a control
constexpr QRgb Text = skin_ink;
constexpr QRgb Quiet = skin_inkDim;
constexpr QRgb Faint = skin_inkFaint;
constexpr QRgb Off = skin_inkOff;
constexpr QRgb Accent = skin_accent;
constexpr QRgb AccentDark = skin_accentDark;
constexpr QRgb AccentGround = skin_accentTint;
constexpr QRgb Warning = skin_warning;

// For bytes; a little smaller than the desktop's, since there are many.
QFont fixedFont();
// pictures: the folder of the skin's pictures, "Picture" beside the executable.
void apply(QApplication &application, const QString &pictures);

} // namespace look
