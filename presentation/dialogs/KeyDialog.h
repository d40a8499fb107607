// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// KeyDialog: an InputDialog that receives all key events while its KeyField has the focus, from construction
// until it is closed. A mouse click leaves the focus in the field; Shift+Tab moves it to the buttons. Main
// thread.
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
    // Call instead of finishForm().
    void finishKeyForm();

    // Shift+Tab leaves the field: the Shift before the Tab was no input.
    virtual void fieldLeft() {}

private:
    void take(int keyCode, bool downOrUp, bool aotu);
    void follow(const QWidget *focused);

    KeySource source_;
    bool shiftHeld_ = false;
};
