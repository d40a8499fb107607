// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ScrollFades: what the upper or the lower edge of a scroll area cuts fades out instead of ending there. Two
// pictures over the area, in the color of the ground; shown only while there is something beyond the edge.
// What gets the focus by the keyboard is scrolled clear of them. The area owns it. Main thread.
#pragma once

#include <QObject>
#include <functional>

class QLabel;
class QScrollArea;
class QWidget;

class ScrollFades : public QObject
{
public:
    static constexpr int Height = 28;

    // Whether a line of the contents lies in the middle of something that must not end there.
    using Cuts = std::function<bool(int y)>;

    // FadeTop.png and FadeBottom.png of the page's folder. Without `cuts` each edge with something beyond it
    // fades.
    ScrollFades(QScrollArea *area, const QString &page, Cuts cuts = {});

    void update(); // also after the contents have changed within their size

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLabel *add(const char *name, const QString &page);
    void place();
    void watchContents();
    void showWhole(const QWidget *widget);

    QScrollArea *area_;
    QWidget *viewport_;
    Cuts cuts_;
    QLabel *top_;
    QLabel *bottom_;
};
