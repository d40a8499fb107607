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
    std::atomic<uint64_t> heard{0}; // starts and reports of all runs
};

// Never destroyed: the layer may still report when the process ends.
Run &run()
{
    static auto *const only = new Run;
    return *only;
}

FlashHandlers handlers()
{
    ++run().heard;
    const std::lock_guard lock(run().mutex);
    return run().handlers;
}

// Forgets the handlers, so that a second result is dropped.
FlashHandlers takeHandlers()
{
    const std::lock_guard lock(run().mutex);
    return std::exchange(run().handlers, FlashHandlers());
}

void end(bool succeeded, bool started)
{
    if (const FlashHandlers last = takeHandlers(); last.result)
        last.result(succeeded, started);
}

bool isRunning()
{
    const std::lock_guard lock(run().mutex);
    return bool(run().handlers.result);
}

void onUpgrade(const uint8_t *data)
{
    if (data[0] != Marker)
        return;
    if (data[1] == Percent) {
        if (const FlashHandlers current = handlers(); current.progress)
            current.progress(data[2]);
    } else if (data[1] == End) {
        end(data[2] == Success, true);
    }
}

// Main thread. Without it no state of the dialog would lead out of a library that never ends.
void watchSilence(uint64_t heard)
{
    QTimer::singleShot(int(flashrun::SilenceMs), [heard] {
        if (run().heard == heard)
            end(false, true);
        else if (isRunning())
            watchSilence(run().heard);
    });
}

// The disk and the search for the device take their time, so the main thread does not wait for them.
void begin(const QByteArray &image, const UpdateFailRecord &record)
{
    const QStringList before = UpdateFailRecord::storedTexts();
    if (record.putFirst() && startFirmwareUpgrade(image, onUpgrade, TimeoutMs))
        return;
    UpdateFailRecord::storeTexts(before);
    end(false, false);
}

} // namespace

void flashrun::start(const QByteArray &image, const UpdateFailRecord &record, const FlashHandlers &handlers)
{
    {
        const std::lock_guard lock(run().mutex);
        run().handlers = handlers;
    }
    runOnMainThread([heard = uint64_t(++run().heard)] { watchSilence(heard); });
    if (!startThread([image, record] { begin(image, record); }))
        end(false, false);
}

void flashrun::emptyLog()
{
    QFile log(dataRoot() + QStringLiteral("/Exception/UpDateLog.txt"));
    log.open(QIODevice::WriteOnly | QIODevice::Truncate);
}
