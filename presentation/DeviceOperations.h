// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The operations of the binding page and the settings page on the whole device. Main thread; each runs its
// own dialogs over `page` and returns when they have ended. Reset and import need the mouse on line and raise
// the off-line notice otherwise; the export works without a mouse.
#pragma once

#include "presentation/FileDialog.h"

class QWidget;

// Resets the device to its factory settings after the user has confirmed it, then reads it again.
void runFactoryReset(QWidget *page);

// Asks for an image file and makes it the device's record when it fits.
void runImageImport(QWidget *page);
// The same for a known file.
void importImage(QWidget *page, const QString &path);

// Asks for a file and writes the record to it as an image file.
void runImageExport(QWidget *page);
