// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FlashRun: writes one firmware file to its device. UpdateFailInfo is on the disk before the layer starts, so
// that a kill or a loss of power at any packet leaves the offer to repair; the caller takes the record away
// after the success. One run at a time.
#pragma once

#include "service/UpdateFailRecord.h"

#include <QByteArray>
#include <atomic>
#include <functional>

struct FlashHandlers {
    std::function<void(int percent)> progress;
    // started: false when nothing was sent to the device; its record is then as before.
    std::function<void(bool succeeded, bool started)> result;
};

namespace flashrun
{

// A run of which the layer says nothing for so long has failed. Its own limit for a whole upgrade is shorter.
// Tests shorten it; otherwise constant.
inline std::atomic<int> SilenceMs{180000};

// Returns at once. The handlers are called on any thread, one call at a time, `result` last and once;
// from inside it another run may start.
void start(const QByteArray &image, const UpdateFailRecord &record, const FlashHandlers &handlers);

// From start() until the result has been told, or that of the run that it has started: while it is true,
// flash may be erased or written. Any thread.
bool isUnderWay();

// Empties "/Exception/UpDateLog.txt", as after every failure.
void emptyLog();

} // namespace flashrun
