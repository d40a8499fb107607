// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// NoticeDialog: the base of every notice, question and short wait: a frameless window of one form with a
// text and up to two buttons, run modally. It has no parent, since a parent would make it an embedded
// child with these window flags; and no window manager looks after it, so it takes the keyboard by itself
// and gives it back. Main thread.
#pragma once

#include "presentation/language/LanguageTables.h"

#include <QDialog>
#include <QPointer>
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

class NoticeDialog : public QDialog
{
    Q_OBJECT

public:
    explicit NoticeDialog(const NoticeKind &kind);
    ~NoticeDialog() override;

    // Stands over the middle of `widget`, moved by `offset`.
    void placeOver(const QWidget *widget, const QPoint &offset = {});
    int openOver(const QWidget *widget, const QPoint &offset = {});

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
    virtual const char *textKey() const { return kind.textKey; }
    // Empty texts give way to the defaults.
    void setTexts(const QString &text, const QString &confirm, const QString &cancel);

    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

    // Where the notice speaks, for one that has more to show there.
    QWidget *content() const;

private:
    void arrangeButtons();
    void dress();

    const NoticeKind &kind;
    QString ownText;
    std::unique_ptr<Ui::NoticeDialog> ui;
    QPointer<QWidget> before; // had the keyboard
};

// Every page is moved away from the window's middle by the navigation; its notices stand there anyway.
constexpr QPoint PageNoticeOffset{-75, -65};
