// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the pictures of the skin do not cover: menus, lists and tool tips follow the skin's colours, and a
// frameless window gets the round corners of its background.
#pragma once

#include <QColor>
#include <QString>

class QComboBox;
class QWidget;

// A colour of the catalogue's general section.
QColor skinColor(const char *key);

// One toolkit style and the skin's colours for the whole application. Main thread, before any window.
void applySkin();

// A choice box with its list, from the pictures in `folder`.
void styleComboBox(QComboBox *box, const QString &folder);

// The corners outside the radius of the background's picture are no part of the window.
void roundCorners(QWidget *window);
