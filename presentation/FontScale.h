// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Font scaling over a tree of widgets; undoes the desktop's scaling of points to pixels. Main thread.
#pragma once

class QWidget;

// Multiplies the point size of every font in the tree by `factor` (1 / S, S the logical dots per inch
// over 96). The widget "Receive_2" keeps its font; the scaled font of "NoApear" becomes that of the tool
// tips. Each widget is scaled once, also a child that inherits its parent's font.
void scaleFonts(QWidget *root, double factor);
