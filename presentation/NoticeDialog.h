// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// NoticeDialog: the base of every notice, question and short wait: a window of one form with a text and up
// to two buttons, run modally. Main thread.
#pragma once

#include "presentation/NoticeWindow.h"
#include "presentation/language/LanguageTables.h"

#include <memory>

namespace Ui
{
class NoticeDialog;
}

enum class NoticeButtons : uint8_t {
    None,     // closes by itself
    Close,    // the close button alone
    Confirm,  // NewHong, which Enter presses, and the close button, which Escape presses
    Question, // OK and Cancel with the same keys, and the close button
};

// One row for each notice. An empty default text stands for none.
struct NoticeKind {
    const char *frameName;
    language::Section section;
    const char *textKey;
    const char *defaultText;
    NoticeButtons buttons;
    const char *picture;
};

class NoticeDialog : public NoticeWindow
{
    Q_OBJECT

public:
    explicit NoticeDialog(const NoticeKind &kind);
    ~NoticeDialog() override;

    // What the caller has to say instead of the row's text; it stays over a change of language.
    void setText(const QString &text);

public slots:
    virtual void SlotAllLanguage(int index);

    virtual void on_CloseButton_clicked();
    virtual void on_NewHong_clicked();
    virtual void on_OK_clicked();
    virtual void on_Cancel_clicked();

protected:
    // The row's key, unless what the notice says depends on something.
    virtual const char *textKey() const { return kind_.textKey; }
    // Empty texts give way to the defaults.
    void setTexts(const QString &text, const QString &confirm, const QString &cancel);

    void keyPressEvent(QKeyEvent *event) override;

    // Where the notice speaks, for one that has more to show there.
    QWidget *content() const;

private:
    void arrangeButtons();
    void applyStyle();

    const NoticeKind &kind_;
    QString ownText_;
    std::unique_ptr<Ui::NoticeDialog> ui;
};

// Every page is moved away from the window's middle by the navigation; its notices stand there anyway.
constexpr QPoint PageNoticeOffset{-75, -65};
