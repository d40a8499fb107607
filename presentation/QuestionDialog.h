// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// QuestionDialog: asks for the name of a macro. Main thread.
#pragma once

#include "presentation/NoticeDialog.h"

class QLineEdit;

class QuestionDialog : public NoticeDialog
{
    Q_OBJECT

public:
    enum class Mode : uint8_t { Create, Rename };
    explicit QuestionDialog(Mode mode);

    // Empty unless OK ended the dialog.
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
