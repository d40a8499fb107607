// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/FlashRun.h"

#include "device/FirmwareImage.h"
#include "environment/DataRoot.h"
#include "environment/MainThread.h"
#include "environment/Thread.h"

#include <QFile>
#include <QTimer>
#include <atomic>
#include <mutex>
#include <utility>

namespace
{

constexpr int TimeoutMs = 10000;

enum UpgradeReport : uint8_t { Marker = 7, Percent = 1, End = 2, Success = 1 };

struct Run {
    std::mutex mutex; // not held while a handler is called
    FlashHandlers handlers;
    int slot = 0;                   // of the layer's callbacks
    std::atomic<uint64_t> heard{0}; // starts and reports of all runs
};

// Never destroyed: the layer may still report when the process ends.
Run &run()
{
    static auto *const only = new Run;
    return *only;
}

FlashHandlers handlers(int slot)
{
    const std::lock_guard lock(run().mutex);
    if (run().slot != slot)
        return {};
    ++run().heard;
    return run().handlers;
}

// Forgets the handlers, so that a second result is dropped. A run that was not started gives its slot back:
// the run before it may still use the other one.
FlashHandlers takeHandlers(int slot, bool started)
{
    const std::lock_guard lock(run().mutex);
    if (run().slot != slot)
        return {};
    if (!started)
        run().slot = 1 - slot;
    return std::exchange(run().handlers, FlashHandlers());
}

void end(int slot, bool succeeded, bool started)
{
    if (const FlashHandlers last = takeHandlers(slot, started); last.result)
        last.result(succeeded, started);
}

bool isRunning(int slot)
{
    const std::lock_guard lock(run().mutex);
    return run().slot == slot && run().handlers.result;
}

template <int Slot> void onUpgrade(const uint8_t *data)
{
    if (data[0] != Marker)
        return;
    if (data[1] == Percent) {
        if (const FlashHandlers current = handlers(Slot); current.progress)
            current.progress(data[2]);
    } else if (data[1] == End) {
        end(Slot, data[2] == Success, true);
    }
}

// Taken in turn: a run that has failed by its silence still reports its end, maybe during the next one. The
// layer starts none while it writes, so there are no older ones.
constexpr UpgradeCallback_t Callbacks[] = {onUpgrade<0>, onUpgrade<1>};

// Main thread. Without it no state of the dialog would lead out of a library that never ends.
void watchSilence(int slot, uint64_t heard)
{
    QTimer::singleShot(int(flashrun::SilenceMs), [slot, heard] {
        if (run().heard == heard)
            end(slot, false, true);
        else if (isRunning(slot))
            watchSilence(slot, run().heard);
    });
}

// The disk and the search for the device take their time, so the main thread does not wait for them.
void begin(int slot, const QByteArray &image, const UpdateFailRecord &record)
{
    const QStringList before = UpdateFailRecord::storedTexts();
    if (record.putFirst() && startFirmwareUpgrade(image, Callbacks[slot], TimeoutMs))
        return;
    UpdateFailRecord::storeTexts(before);
    end(slot, false, false);
}

} // namespace

void flashrun::start(const QByteArray &image, const UpdateFailRecord &record, const FlashHandlers &handlers)
{
    int slot = 0;
    {
        const std::lock_guard lock(run().mutex);
        run().handlers = handlers;
        slot = run().slot = 1 - run().slot;
    }
    runOnMainThread([slot, heard = uint64_t(++run().heard)] { watchSilence(slot, heard); });
    if (!startThread([slot, image, record] { begin(slot, image, record); }))
        end(slot, false, false);
}

void flashrun::emptyLog()
{
    QFile log(dataRoot() + QStringLiteral("/Exception/UpDateLog.txt"));
    log.open(QIODevice::WriteOnly | QIODevice::Truncate);
}
