// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// RecordMark: the sign that a recording runs: a dot that pulses and the time since the start. While it is
// hidden nothing runs. Main thread.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

class RecordMark : public QWidget
{
    Q_OBJECT

public:
    explicit RecordMark(QWidget *parent = nullptr);

    void setText(const QString &text); // before the time
    bool isRunning() const { return beat_.isActive(); }

    static QColor color();

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QString text_;
    QTimer beat_;
    QElapsedTimer clock_;
    bool pulses_ = true;
};
