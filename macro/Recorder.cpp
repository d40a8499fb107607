// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/Recorder.h"

#include "device/hidusb/FlashDataMap.h"
#include "keys/KeyVocabulary.h"

static_assert(Recorder::EventLimit == MacroEventCount);

void Recorder::start() { *this = Recorder(); }

// A press is a repeat only while its key is down, whichever keys came between, and a key that was down before
// the start has no release.
bool Recorder::isNews(int virtualKey, bool down)
{
    return down ? down_.insert(virtualKey).second : down_.erase(virtualKey) > 0;
}

Recorder::Rows Recorder::take(int virtualKey, bool down, qint64 timeMs, std::optional<int> fixedDelayMs)
{
    Rows rows;
    if (isFull() || !isNews(virtualKey, down))
        return rows;
    if (!first_)
        rows.delayMs = fixedDelayMs ? *fixedDelayMs : qMax(qint64(0), timeMs - lastTime_);
    lastTime_ = timeMs;
    rows.key = KeyNameFromVirtualKey(virtualKey);
    // The delay before an ignored key stays; the next event adds none, so the rows still alternate.
    first_ = !rows.key;
    events_ += rows.key ? 1 : 0;
    return rows;
}
