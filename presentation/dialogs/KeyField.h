// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// KeyField: shows the keys that are pressed while it has the focus. Tab is a key like the others, so that it
// can be entered; only Shift+Tab leaves the field.
#pragma once

#include "presentation/Widgets.h"

class KeyField : public MyLineEdit
{
    Q_OBJECT

public:
    using MyLineEdit::MyLineEdit;

protected:
    // A selection would suggest that the next key replaces the text.
    void focusInEvent(QFocusEvent *event) override
    {
        MyLineEdit::focusInEvent(event);
        deselect();
    }
    bool focusNextPrevChild(bool next) override { return next || MyLineEdit::focusNextPrevChild(false); }
};
