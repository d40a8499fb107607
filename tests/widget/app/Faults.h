// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a person would see at a glance in a window that is shown, each as a line that names the widget.
#pragma once

#include <QStringList>

class QWidget;

namespace faults
{

// Before the first window: lets texts be left out of a picture.
void watchTexts();

bool isControl(const QWidget *widget);
QString place(const QWidget *widget);

// Texts that are cut or elided, controls that stand on another or have no name, and what the pixels show too
// faintly.
QStringList in(QWidget *window);
// Texts that are cut and can't be read in a tool tip.
QStringList inLongTexts(QWidget *window);
// Texts whose strokes have less than 4.5 to 1 against what lies under them.
QStringList faintTexts(QWidget *window);
// Marks and outlines of controls with less than 3 to 1 against their ground.
QStringList faintControls(QWidget *window);
// Controls that Tab doesn't reach, those that it reaches out of order, and rings that aren't seen.
QStringList ofTheKeyboard(QWidget *window);

} // namespace faults
