// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the toolkit's own dialogs, which ask for files and colours, get of the skin. Main thread.
#pragma once

class QDialog;

// Call it when all widgets of the dialog exist.
void styleToolkitDialog(QDialog *dialog);
