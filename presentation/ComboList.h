// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The open list of a combo box: a frame on all sides, round corners on the page beneath, and a tick at the
// current item. An item that a screen reader selects there is chosen. Main thread.
#pragma once

class QComboBox;
class QString;

// Call after the box has its view. `frame`: the list's picture.
void frameComboList(QComboBox *box, const QString &frame);
