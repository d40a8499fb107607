// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Short motion where something appears or switches. Nothing runs before it or after it, and none runs when
// the desktop's settings ask for none. Main thread.
#pragma once

#include <QPixmap>
#include <QRect>
#include <QStyle>
#include <QVariantAnimation>
#include <functional>
#include <memory>
#include <optional>

class QAbstractButton;
class QPainter;
class QString;
class QWidget;

// Asks the desktop's settings manager on a thread, once. Until it has answered nothing moves. A call before
// the window is shown would add the question to the start.
void askForMotion();
// Milliseconds; 0 when the user has turned the desktop's animations off. The first call asks for it. The
// desktop's files are read again when the program becomes active.
int motionTime();
// When the switch is switched, its picture fades into the other one. `folder`: that of style::switchButton().
void switchSoftly(QAbstractButton *button, const QString &folder);

// While it lives, a part of the widget changes; then what showed there fades into what shows now, which can
// be used at once.
class SoftChange
{
public:
    SoftChange(QWidget *ground, const QRect &part);
    ~SoftChange();
    SoftChange(const SoftChange &) = delete;
    SoftChange &operator=(const SoftChange &) = delete;

private:
    QWidget *ground_;
    QRect part_;
    QPixmap before_;
};

// Of a widget that paints itself by its state: what it showed fades into what it shows when the pointer comes
// or goes, or when it is checked. A press shows at once.
class StateFade
{
public:
    using Draw = std::function<void(QPainter &, QStyle::State)>;

    // In the widget's paintEvent().
    void paint(QWidget *widget, QPainter &painter, QStyle::State state, const Draw &draw);
    // What is shown next appears at once. In the widget's hideEvent().
    void forget();

private:
    std::optional<QStyle::State> shown_;
    QPixmap before_;
    std::unique_ptr<QVariantAnimation> fade_; // while it runs
};

// The widget fades in. Show it first.
void fadeIn(QWidget *widget);
