// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ToolTips: shows the tool tips of widgets in the look of the skin and inside their window. The toolkit's own
// are windows of their own, as wide as their text likes, which a program-wide style sheet alone could change;
// such a sheet would slow down every widget.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

class ToolTips : public QObject
{
public:
    // Serves all windows of the application until it ends. Main thread.
    static void install();
    ~ToolTips() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    class Bubble;

    ToolTips();
    void show(QWidget *widget, const QString &tip, const QPoint &pointer);
    void hide();

    QPointer<QWidget> owner_;
    QPointer<Bubble> bubble_;
};
