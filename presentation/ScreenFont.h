// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The forms are laid out in pixels for 96 dots per inch; on a desktop with another value their fonts are
// scaled back so that every text fits. Each window does this once, after it was built.
#pragma once

class QWidget;

void scaleFontsToScreen(QWidget *window);
