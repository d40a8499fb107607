// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The table of all controls that write: how a user changes each, and which bytes that writes.
#pragma once

#include "tests/widget/sensor/SensorFixture.h"

#include <QSlider>
#include <QWindow>
#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace edits
{

using Change = std::function<void(FlashDataMap &map)>;
using Act = std::function<void(QWidget *control)>;
using Busy = std::atomic<bool> *;

// A page with a record shown.
using Page = std::unique_ptr<QWidget>;
struct Host {
    Page (*make)();
    void (*paint)(QWidget *page, const FlashDataMap &map);
};
extern const Host SensorHost;

struct EditRow {
    QByteArray name;
    const Host *host;
    QByteArray control;
    Act act;
    Change written;
    Busy busy; // the flag under which it writes nothing; none: it asks for no flag
    Change start = [](FlashDataMap &) {};
    int model = M3395;
    int notices = 1;       // of a mouse that does not answer
    bool asks = false;     // the mouse, although nothing is to be written
    bool several = false;  // writes on its way
    bool armed = true;     // writes only when armed
    bool receiver = false; // writes the long-range mode and no record
};

std::vector<EditRow> allRows();

// A pointer on a slider, in the coordinates of its window.
class Pointer
{
public:
    explicit Pointer(QWidget *widget)
        : slider_(static_cast<QSlider *>(widget)), window_(slider_->window()->windowHandle())
    {
    }
    // Where a press leaves the value as it is.
    int ownX() const
    {
        const int span = slider_->maximum() - slider_->minimum();
        const int x = slider_->width() * (slider_->value() - slider_->minimum()) / span;
        return qBound(1, x + 1, slider_->width() - 2);
    }
    void press(int x) { QTest::mousePress(window_, Qt::LeftButton, {}, at(x)); }
    void move(int x) { QTest::mouseMove(window_, at(x)); }
    void release(int x) { QTest::mouseRelease(window_, Qt::LeftButton, {}, at(x)); }
    // Without a button; a style or a later change may ask for such moves.
    void hover(int x)
    {
        slider_->setMouseTracking(true);
        move(x);
        slider_->setMouseTracking(false);
    }

private:
    QPoint at(int x) const { return slider_->mapTo(slider_->window(), QPoint(x, slider_->height() / 2)); }

    QSlider *slider_;
    QWindow *window_;
};

} // namespace edits
