// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// QuestionDialog: asks for the name of a macro. Main thread.
#pragma once

#include "presentation/NoticeDialog.h"

class QLineEdit;

// What is left of a name that was typed: a blank at the end takes all blanks away, and the rest is cut to
// what the device can hold, 30 bytes in the local encoding, never within a character.
QString fittingMacroName(const QString &typed);

class QuestionDialog : public NoticeDialog
{
    Q_OBJECT

public:
    enum class Mode : uint8_t { Create, Rename };
    explicit QuestionDialog(Mode mode);

    // Empty unless the dialog was ended with OK.
    QString name() const { return accepted_; }

public slots:
    void on_lineEdit_textEdited(const QString &arg1);
    void WindowClosedLan();
    void on_OK_clicked() override;
    void on_Cancel_clicked() override { WindowClosedLan(); }
    void on_CloseButton_clicked() override { WindowClosedLan(); }

protected:
    const char *textKey() const override;

private:
    Mode mode_;
    QLineEdit *lineEdit_;
    QString accepted_;
};
