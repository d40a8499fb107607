// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Worker: makes one short pass on a thread of its own each time it is started. A pass opens the
// connection to the selected device and asks for a full read, or feeds the pages from the cache when
// the mouse is away. The object lives on the main thread, so its slots run there; only run() does not.
// One exists, made by the binding page.
#pragma once

#include "device/record/DeviceAllInfo.h"

#include <QThread>
#include <QTimer>
#include <atomic>

class Worker : public QThread
{
    Q_OBJECT

public:
    explicit Worker(QObject *parent = nullptr);
    ~Worker() override;

    // The one worker, or null before and after its life.
    static Worker *instance();

    // Main thread or a callback: arms a pass and starts the thread. A running pass is not interrupted. Does
    // nothing once stop() has been called.
    void startPass();

    // Main thread: ends the off-line watch and all further passes. Does not wait; a running pass lets the
    // device go at its end.
    void stop();

    // Main thread: stop(), then waits for a running pass. The event loop runs meanwhile, since the pass may
    // be blocked in a signal to this thread.
    void shutDown();

    // The off-line watch, 1,300 ms, main thread. A reset stops it while it runs.
    QTimer &checkTimer() { return CheckTimer_; }

public slots:
    void SlotSelectMouseInfo(const DeviceAllInfo &SelectInfo);
    void SlotMainPageChange();
    void SlotCheckOnline();

protected:
    void run() override;

private:
    bool nothingNew(const DeviceAllInfo &selected) const;
    void pass(const DeviceAllInfo &selected);
    bool isLeft() const { return departures_ != begunDepartures_; }
    void announceLoad();
    void feedFromCache();

    QTimer CheckTimer_;
    std::atomic<unsigned> requestedPasses_{0};
    std::atomic<unsigned> begunPasses_{0}; // requests that the latest pass has seen
    // Counts the departures from the device page and the end of the program. Each of them ends the
    // connection, so the next pass opens one even if nothing else is new.
    std::atomic<unsigned> departures_{0};
    std::atomic<bool> stopped_{false};
    unsigned begunDepartures_ = 0; // at the start of the current pass
    unsigned lastDepartures_ = 0;  // of the last pass
    uint16_t lastKind_ = 0;        // of the last pass
    QString lastPath_;             // of the last pass
};
