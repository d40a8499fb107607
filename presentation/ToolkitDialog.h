// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the toolkit's own dialogs, which ask for files and colours, get of the skin. Main thread.
#pragma once

class QDialog;

// When all of its widgets stand.
void styleToolkitDialog(QDialog *dialog);
