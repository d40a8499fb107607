// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The looks that the skin's pictures do not cover: colours of menus, lists and tool tips, and the round
// corners of frameless windows.
#pragma once

#include <QColor>
#include <QString>

class QComboBox;
class QPixmap;
class QWidget;

// A colour of the catalogue's general section.
QColor skinColor(const char *key);

// A picture as a style sheet on that widget would show it: the double one where the screen has two pixels for
// each.
QPixmap skinPicture(const QString &path, const QWidget *on);

// Sets the toolkit style and the skin's colours of the application. Main thread, before any window.
void applySkin();

// Styles a combo box and its list with the pictures in `folder`.
void styleComboBox(QComboBox *box, const QString &folder);

constexpr int WindowRadius = 12; // of the backgrounds' pictures

// Masks the window's corners outside the radius.
void roundCorners(QWidget *window, int radius = WindowRadius);
