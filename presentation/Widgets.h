// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The small widgets that differ from the toolkit's own in how they take the mouse or paint themselves.
#pragma once

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QList>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <QToolButton>
#include <QWheelEvent>
#include <functional>

// Tab stops at the checked one of a group of choices; the arrow keys lead to the others. While none is
// checked, Tab stops at each.
void tabEntersAtChecked(const QList<QAbstractButton *> &choices);
// The same for a check that was set with the signals blocked.
void stopTabAtChecked(const QList<QAbstractButton *> &choices);

// A control that writes a setting: a wheel over it neither changes it nor gives it the keyboard focus, but
// scrolls what lies under it, so that scrolling changes no setting on its way. An open list has a view of its
// own, which scrolls.
template <typename Control> class WheelPasses : public Control
{
public:
    template <typename... Arguments> explicit WheelPasses(Arguments... arguments) : Control(arguments...)
    {
        this->setFocusPolicy(Qt::StrongFocus);
    }

protected:
    void wheelEvent(QWheelEvent *event) override { event->ignore(); }
};

// The same for the boxes of a dialog of the toolkit's own.
void passWheels(QWidget *dialog);

// A press jumps to the place under the pointer; the parent then gets an event of type Jumped. A slider that
// is disabled, hidden or blocked by a modal window gets no release, and with the press kept, it would go on
// with its repeated steps, and a pointer that passes over it later would drag it; so each of these ends the
// press, and so does a move without the left button.
class MySlider : public WheelPasses<QSlider>
{
    Q_OBJECT

public:
    static constexpr QEvent::Type Jumped = QEvent::Type(1001);
    using WheelPasses::WheelPasses;
    // For a value that the device did not take: back to `value` without a signal, and disabled until the
    // page is filled again.
    void giveBack(int value);
    // Disabled while `question` runs, and afterwards if the answer is false. Otherwise the press goes on.
    bool enabledBy(const std::function<bool()> &question);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;

private:
    void endPress();

    bool pressEnded_ = false; // while mousePressEvent runs: the press was lost meanwhile
    bool asking_ = false;     // enabledBy() runs its question
};

// Remembers the index at each press, and paints its item without the native look. In the place of an item
// without a text it paints the hint, dimmed.
class MyConmboBox : public WheelPasses<QComboBox>
{
    Q_OBJECT

public:
    using WheelPasses::WheelPasses;
    int pressedIndex() const { return indexAtPress_; }
    void setHint(const QString &hint);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int indexAtPress_ = -1;
    QString hint_;
};

// Tells screen readers its changes, which the toolkit's box keeps to itself.
class MySpinBox : public WheelPasses<QSpinBox>
{
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE take)

public:
    explicit MySpinBox(QWidget *parent = nullptr);

protected:
    // What a screen reader sets counts as typed; a box that only shows a number keeps it.
    virtual void take(int value);
};

// Acts on the press: clicked(false) for a press, clicked(true) for a double click, of the left button.
class MyToolButton : public QToolButton
{
    Q_OBJECT

public:
    using QToolButton::QToolButton;

signals:
    void doubleClicked();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
};

// A slider over values on both sides of 0, filled from there to its handle.
class CentredSlider : public MySlider
{
    Q_OBJECT

public:
    using MySlider::MySlider;

protected:
    void paintEvent(QPaintEvent *event) override;
};

// The tile of a device. Its object name is "btn" and the index of the device in the list.
class mytoolButtonEnter : public QToolButton
{
    Q_OBJECT

public:
    using QToolButton::QToolButton;
    int deviceIndex() const;

signals:
    // The pointer came in: what the tile shows may be out of date.
    void entered(int deviceIndex);

protected:
    void enterEvent(QEvent *event) override;
};

// A push button under which the pointer is a hand.
class MyButton : public QPushButton
{
    Q_OBJECT

public:
    using QPushButton::QPushButton;

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
};

// Walks to each of its targets in turn, one step at a time, instead of jumping.
class MyProgressBar : public QProgressBar
{
    Q_OBJECT

public:
    explicit MyProgressBar(QWidget *parent = nullptr);
    void addTarget(int value);
    bool isWalking() const { return timer_.isActive(); }

private:
    void tick();

    QList<int> targets_;
    QTimer timer_;
};

// Shows what the code writes into it; typing has no effect.
class MyLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

protected:
    void keyPressEvent(QKeyEvent *) override {}
    void keyReleaseEvent(QKeyEvent *) override {}
};
