// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the binding page and the settings page both offer for the whole device. Main thread; each runs its
// own dialogs, placed over `page`, and returns when they have ended. Both need the mouse on line and raise
// the off-line notice otherwise.
#pragma once

class QString;
class QWidget;

// Factory reset, after the user has confirmed it; the device is read anew.
void runFactoryReset(QWidget *page);

// Asks for an image file and, when it fits, makes it the device's record.
void runImageImport(QWidget *page);
// The same for a file that is known.
void importImage(QWidget *page, const QString &path);
