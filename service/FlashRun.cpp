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
#include <optional>
#include <utility>

namespace
{

constexpr int TimeoutMs = 10000;

enum UpgradeReport : uint8_t { Marker = 7, Percent = 1, End = 2, Success = 1 };

struct Ended {
    bool succeeded;
    bool started;
};

struct Run {
    std::mutex mutex; // not held while a handler is called
    FlashHandlers handlers;
    int slot = 0;                   // of the layer's callbacks
    bool tellsProgress = false;     // its handler is being called
    std::optional<Ended> ended;     // meanwhile; told behind it
    int tellsResults = 0;           // handlers that are being called
    std::atomic<uint64_t> heard{0}; // starts and reports of all runs
};

// Never destroyed: the layer may still report when the process ends.
Run &run()
{
    static auto *const only = new Run;
    return *only;
}

// Forgets the handlers, so that a second result is dropped. A run that was not started gives its slot back:
// the run before it may still use the other one. Nothing while the progress is being told: its end follows.
FlashHandlers takeHandlers(int slot, const Ended &ended)
{
    const std::lock_guard lock(run().mutex);
    if (run().slot != slot || !run().handlers.result)
        return {};
    if (run().tellsProgress) {
        if (!run().ended)
            run().ended = ended;
        return {};
    }
    if (!ended.started)
        run().slot = 1 - slot;
    ++run().tellsResults;
    return std::exchange(run().handlers, FlashHandlers());
}

void end(int slot, const Ended &ended)
{
    const FlashHandlers last = takeHandlers(slot, ended);
    if (!last.result)
        return;
    last.result(ended.succeeded, ended.started);
    const std::lock_guard lock(run().mutex);
    --run().tellsResults;
}

std::function<void(int)> beginProgress(int slot)
{
    const std::lock_guard lock(run().mutex);
    if (run().slot != slot || !run().handlers.progress || run().tellsProgress)
        return {};
    ++run().heard;
    run().tellsProgress = true;
    return run().handlers.progress;
}

std::optional<Ended> endProgress()
{
    const std::lock_guard lock(run().mutex);
    run().tellsProgress = false;
    return std::exchange(run().ended, std::nullopt);
}

void tellProgress(int slot, int percent)
{
    const auto progress = beginProgress(slot);
    if (!progress)
        return;
    progress(percent);
    if (const auto ended = endProgress())
        end(slot, *ended);
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
    if (data[1] == Percent)
        tellProgress(Slot, data[2]);
    else if (data[1] == End)
        end(Slot, {data[2] == Success, true});
}

// Taken in turn: a run that has failed by its silence still reports its end, maybe during the next one. The
// layer starts none while it writes, so there are no older ones.
constexpr UpgradeCallback_t Callbacks[] = {onUpgrade<0>, onUpgrade<1>};

// Main thread. Without it no state of the dialog would lead out of a library that never ends.
void watchSilence(int slot, uint64_t heard)
{
    QTimer::singleShot(int(flashrun::SilenceMs), [slot, heard] {
        if (run().heard == heard)
            end(slot, {false, true});
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
    record.putBack(before);
    end(slot, {false, false});
}

} // namespace

void flashrun::start(const QByteArray &image, const UpdateFailRecord &record, const FlashHandlers &handlers)
{
    int slot = 0;
    {
        const std::lock_guard lock(run().mutex);
        run().handlers = handlers;
        run().ended.reset();
        slot = run().slot = 1 - run().slot;
    }
    runOnMainThread([slot, heard = uint64_t(++run().heard)] { watchSilence(slot, heard); });
    if (!startThread([slot, image, record] { begin(slot, image, record); }))
        end(slot, {false, false});
}

bool flashrun::isUnderWay()
{
    const std::lock_guard lock(run().mutex);
    return run().handlers.result || run().tellsResults > 0;
}

void flashrun::emptyLog()
{
    QFile log(dataRoot() + QStringLiteral("/Exception/UpDateLog.txt"));
    log.open(QIODevice::WriteOnly | QIODevice::Truncate);
}
