// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// KeyDialog: an InputDialog that listens to the keyboard from its construction until it is closed, as long
// as its KeyField has the focus. The mouse does not take the focus away; the keyboard does with Shift+Tab,
// and then works the buttons. Main thread.
#pragma once

#include "keys/KeySource.h"
#include "presentation/dialogs/InputDialog.h"

class KeyDialog : public InputDialog
{
    Q_OBJECT

public slots:
    // A key went down or up: virtual key, down, repeated.
    virtual void UpdateCapslockTip(int keyCode, bool downOrUp, bool aotu) = 0;
    void on_lineEdit_textEdited(const QString &arg1);
    void done(int result) override;

protected:
    explicit KeyDialog(std::vector<FormText> texts);
    // Instead of finishForm().
    void finishKeyForm();

    // Shift+Tab leads out of the field; the Shift in front of it was none that was meant.
    virtual void fieldLeft() {}

private:
    void take(int keyCode, bool downOrUp, bool aotu);
    void follow(const QWidget *focused);

    KeySource source_;
    bool shiftHeld_ = false;
};
