// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the pictures of the skin do not cover: menus, lists and tool tips follow the skin's colours, and a
// frameless window gets the round corners of its background.
#pragma once

class QWidget;

// One toolkit style and the skin's colours for the whole application. Main thread, before any window.
void applySkin();

// The corners outside the radius of the background's picture are no part of the window.
void roundCorners(QWidget *window);
