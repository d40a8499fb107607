// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The toolkit's dialog that asks for a colour, with its parts in the look of the skin. Main thread.
#pragma once

class QColorDialog;
class QWidget;

QColorDialog *makeColorDialog(QWidget *parent);
