// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SettingHelp: the card that explains the setting under the pointer or, without one, the setting with the
// keyboard focus. With neither it shows a hint. Main thread.
#pragma once

#include <QFrame>
#include <QVector>

class QLabel;

class SettingHelp : public QFrame
{
    Q_OBJECT

public:
    struct Entry {
        QVector<QWidget *> areas; // pointing into one of them, or focusing inside it, shows the texts
        QString title;
        QString text;
    };

    explicit SettingHelp(QWidget *parent = nullptr);

    // Replaces all entries; those of another language come in the same order.
    void setEntries(const QVector<Entry> &entries, const Entry &hint);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applyStyle();
    int entryOf(const QWidget *widget) const; // -1 for none
    void followFocus(const QWidget *focus);
    void showEntry(int index);

    QLabel *mark_;
    QLabel *title_;
    QLabel *text_;
    QVector<Entry> entries_;
    Entry hint_;
    int pointed_ = -1;
    int focused_ = -1;
    int shown_ = -1;
};
