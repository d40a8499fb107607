// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LightScale: a value of a light with its slider, the box that reads it out, the caption, and the groove that
// stands there while the value cannot be set. It keeps the last value that the device took. Main thread.
#pragma once

#include <atomic>
#include <functional>

class MySlider;
class QLabel;
class QSpinBox;

class LightScale
{
public:
    struct Parts {
        QLabel *caption = nullptr;
        MySlider *slider = nullptr;
        QSpinBox *box = nullptr;
        QLabel *placeholder = nullptr;
    };
    // Whose setting it is. A slider of the mouse asks for the mouse while it is moved, and is disabled by a
    // refusal until the next record; one of the receiver only goes back.
    enum class Owner { Mouse, Receiver };

    LightScale() = default;
    LightScale(const Parts &parts, Owner owner) : parts_(parts), owner_(owner) {}

    void applyStyle() const;
    void setShown(bool shown) const;
    void setEnabled(bool enabled) const;
    // Shows a value that the device has; no slot hears of it.
    void set(int value);
    // Shows a value that is still to be written.
    void show(int value) const;
    int value() const;

    // sliderMoved and valueChanged of the slider. busy: the flag of the page; write: true when the device
    // took the value.
    void follow(int position);
    void change(const std::atomic<bool> &busy, int value, const std::function<bool()> &write);

private:
    void giveBack();

    Parts parts_;
    Owner owner_ = Owner::Mouse;
    int accepted_ = 1;
};
