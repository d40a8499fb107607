// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// NoticeDialog: the base of every notice, question and short wait: one form with a picture, a text and up to
// two buttons, run modally. Main thread.
#pragma once

#include "presentation/NoticeWindow.h"
#include "presentation/language/LanguageTables.h"

#include <memory>

class QLabel;

namespace Ui
{
class NoticeDialog;
}

enum class NoticeButtons : uint8_t {
    None,     // a wait: the program closes it
    Close,    // the close button alone
    Confirm,  // NewHong, which Enter presses, and the close button, which Escape presses
    Question, // OK and Cancel with the same keys, and the close button
};

// The picture above the text.
enum class NoticeSign : uint8_t {
    Warning, // something went wrong, or would
    Information,
    Question,
};

// What a confirmation does, as its button shows.
enum class NoticeOutcome : uint8_t {
    Usual,
    Destroys, // something of the user's is lost
};

// One row for each notice. An empty default text leaves the label empty.
struct NoticeKind {
    const char *frameName;
    language::Section section;
    const char *textKey;
    const char *defaultText;
    NoticeButtons buttons;
    NoticeSign sign = NoticeSign::Warning;
    NoticeOutcome outcome = NoticeOutcome::Usual;
};

class NoticeDialog : public NoticeWindow
{
    Q_OBJECT

public:
    explicit NoticeDialog(const NoticeKind &kind);
    ~NoticeDialog() override;

    // Replaces the row's text; a change of language keeps it.
    void setText(const QString &text);

    // True when NewHong or OK ended the dialog.
    bool isConfirmed() const { return confirmed_; }

public slots:
    virtual void SlotAllLanguage(int index);

    virtual void on_CloseButton_clicked();
    virtual void on_NewHong_clicked();
    virtual void on_OK_clicked();
    virtual void on_Cancel_clicked();

protected:
    // The row's key, unless the text depends on a state.
    virtual const char *textKey() const { return kind_.textKey; }
    // An empty text selects the default.
    void setTexts(const QString &text, const QString &confirm, const QString &cancel);

    void keyPressEvent(QKeyEvent *event) override;
    // A wait comes and goes within moments; dimming for it would be a flicker.
    bool dimsWindow() const override { return kind_.buttons != NoticeButtons::None; }

    // The label of the text, for a notice that adds widgets beside it.
    QLabel *content() const;

private:
    void end(bool confirmed);
    void arrangeButtons();
    void applyStyle();

    const NoticeKind &kind_;
    QString ownText_;
    bool confirmed_ = false;
    std::unique_ptr<Ui::NoticeDialog> ui;
};

// From the middle of a page to the middle of the window: the navigation shifts every page.
constexpr QPoint PageNoticeOffset{-75, -65};
// On the pages of the bindings and of the macros.
constexpr QPoint BindingNoticeOffset{-100, -50};
