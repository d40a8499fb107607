// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Watchdog: notices a main thread that no longer turns its event loop. Made on the main thread; a thread
// of its own looks for the beat of a timer.
#pragma once

#include <QTimer>
#include <atomic>
#include <chrono>
#include <thread>

class Watchdog
{
public:
    // Longer than the 2,000 ms for which a load after a change holds the main thread on purpose.
    static constexpr int MeantWaitMs = 2000;

    explicit Watchdog(int limitMs = 2000 + MeantWaitMs) : limit(limitMs)
    {
        QObject::connect(&timer, &QTimer::timeout, [this] { beat = now(); });
        beat = now();
        timer.start(20);
        looker = std::thread([this] {
            while (!stop) {
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
                const long silent = now() - beat;
                if (silent > longest)
                    longest = silent;
            }
        });
    }
    ~Watchdog()
    {
        stop = true;
        looker.join();
    }
    bool barked() const { return longest > limit; }
    long longestSilenceMs() const { return longest; }

private:
    static long now()
    {
        using namespace std::chrono;
        return long(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
    }

    const long limit;
    QTimer timer;
    std::atomic<long> beat{0};
    std::atomic<long> longest{0};
    std::atomic<bool> stop{false};
    std::thread looker;
};
