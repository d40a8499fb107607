// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// InputDialog: the base of the small dialogs that ask for a value: a form with CloseButton, NewHong (OK) and
// NewHong_2 (cancel) in the style of the notices. The caller builds it on the stack, runs openOver() and
// reads the result. exec() returns 1 only for OK. Main thread.
#pragma once

#include "presentation/NoticeWindow.h"
#include "presentation/language/LanguageTables.h"

#include <QStringList>
#include <vector>

class QLabel;

// A text of the form; a label's text is also the accessible name of its buddy.
struct FormText {
    const char *widget;
    language::Section section;
    const char *key;
};

class InputDialog : public NoticeWindow
{
    Q_OBJECT

public:
    bool isAccepted() const { return result() == Accepted; }

public slots:
    void SlotAllLanguage(int index);

    virtual void on_NewHong_clicked();
    void on_NewHong_2_clicked();
    void on_CloseButton_clicked();

protected:
    // `texts`: all texts of the form except OK and cancel.
    explicit InputDialog(std::vector<FormText> texts);
    // Call after setupUi(): the form's texts become the defaults for missing ones.
    void finishForm();

    void keyPressEvent(QKeyEvent *event) override;

private:
    void applyStyle();

    std::vector<FormText> texts_;
    QStringList defaults_; // by index of texts_
    QLabel *footer_ = nullptr;
};

// Offset of a dialog from the middle of its page.
constexpr QPoint InputDialogOffset{-50, -70};
