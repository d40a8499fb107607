// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// KeyField: shows the keys that are pressed while it has the focus. None of them acts there, Tab included,
// since each may be the one that is meant; Shift+Tab alone leads out of it.
#pragma once

#include "presentation/Widgets.h"

class KeyField : public MyLineEdit
{
    Q_OBJECT

public:
    using MyLineEdit::MyLineEdit;

protected:
    // A selection would say that the next key replaces what stands there.
    void focusInEvent(QFocusEvent *event) override
    {
        MyLineEdit::focusInEvent(event);
        deselect();
    }
    bool focusNextPrevChild(bool next) override { return next || MyLineEdit::focusNextPrevChild(false); }
};
