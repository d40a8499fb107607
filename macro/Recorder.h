// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Recorder: what a recording makes of the keys that it is told of. Held keys repeat, and a key without a name
// makes no event. Keys and times are those of a KeySource. Main thread.
#pragma once

#include <QString>
#include <optional>
#include <set>

class Recorder
{
public:
    // Presses and releases that a recording may hold: as many as the device has room for.
    static constexpr int EventLimit = 70;

    struct Rows { // to append, the delay first
        std::optional<qint64> delayMs;
        std::optional<QString> key;
    };

    void start();
    // `fixedDelayMs` takes the place of the measured delay.
    Rows take(int virtualKey, bool down, qint64 timeMs, std::optional<int> fixedDelayMs = std::nullopt);
    bool isFull() const { return events_ >= EventLimit; }

private:
    bool isNews(int virtualKey, bool down);

    std::set<int> down_;
    int events_ = 0;
    bool first_ = true; // no delay before the next event
    qint64 lastTime_ = 0;
};
