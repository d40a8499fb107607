// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The panel's way to the emulator of a bus folder: orders with their answers in turn, the state of all
// devices while somebody watches, and the reports as they pass. It finds an emulator that comes later, and
// gives one up that does not answer. Nothing here waits. Main thread.
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
    // Changes something: what devices are then follows of itself.
    void change(const QString &order);
    // Asks something; `taken` gets the lines of the answer unless it is an error. One that cannot be sent
    // is forgotten.
    void ask(const QString &order, const Taken &taken);
    // While nobody watches, nothing is asked.
    void setWatching(bool watching);

signals:
    void runningChanged(bool running);
    // Each time that the state has come, and an empty one when the emulator has gone.
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
    quint64 askedAt_ = 0; // how many when the state was asked last
};
