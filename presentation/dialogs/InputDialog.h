// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// InputDialog: what the small dialogs share that ask for a value: a form with CloseButton, NewHong for OK
// and NewHong_2 for cancel, in the look of the notices. It is built where it is used, run with openOver()
// and asked for its result after that. exec() gives 1 only with OK. Main thread.
#pragma once

#include "presentation/NoticeWindow.h"
#include "presentation/language/LanguageTables.h"

#include <QStringList>
#include <vector>

class QLabel;

// A text of the form; a label's text is also the name of what it is the buddy of.
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
    // `texts` are those beside OK and cancel.
    explicit InputDialog(std::vector<FormText> texts);
    // To be called when the form has been built; its texts are the defaults for those that are missing.
    void finishForm();

    void keyPressEvent(QKeyEvent *event) override;

private:
    void applyStyle();

    std::vector<FormText> texts_;
    QStringList defaults_; // of each
    QLabel *footer_ = nullptr;
};

// How far from the middle of its page a dialog stands.
constexpr QPoint InputDialogOffset{-50, -70};
