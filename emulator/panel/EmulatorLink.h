// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The panel's connection to the emulator of a bus folder: orders and answers in order, the state of all
// devices while watched, and the stream of reports. It connects to an emulator that starts later and drops
// one that does not answer. Never blocks. Main thread.
#pragma once

#include "emulator/panel/ControlLine.h"
#include "emulator/panel/PanelState.h"

#include <QQueue>
#include <QTimer>
#include <functional>

class EmulatorLink : public QObject
{
    Q_OBJECT

public:
    using Lines = QList<QByteArray>;
    using Taken = std::function<void(const Lines &)>;

    explicit EmulatorLink(const QString &folder, QObject *parent = nullptr);

    bool isRunning() const { return running_; }
    // Sends an order that changes something, then asks for the new state.
    void change(const QString &order);
    // Sends a query; `taken` gets the lines of the answer unless it is an error. A query that cannot be sent
    // is dropped.
    void ask(const QString &order, const Taken &taken);
    // Asks for the state only while watched.
    void setWatching(bool watching);

signals:
    void runningChanged(bool running);
    // A new state, or an empty one when the emulator has gone.
    void stateChanged(const PanelState &state);
    void reported(const QByteArray &line);
    void refused(const QString &reason);

private:
    struct Pending {
        Taken taken;
        Lines lines;
        bool isState;
    };
    void connectBoth();
    void drop();
    void send(const QString &order, const Taken &taken);
    void askState();
    void takeState(const PanelState &state);
    void takeLine(const QByteArray &line);
    void takeReport(const QByteArray &line);

    ControlLine orders_;
    ControlLine reports_;
    QQueue<Pending> pending_;
    QTimer refresh_;
    QTimer retry_;
    QTimer deadline_;
    bool running_ = false;
    bool stateAsked_ = false;
    quint64 changes_ = 0; // ordered so far
    quint64 askedAt_ = 0; // value of changes_ at the last state query
};
