// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// One non-blocking connection to an emulator's control socket; the event loop delivers received lines. The
// peer is not trusted: an overlong line closes the connection. Main thread.
#pragma once

#include "emulator/FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <memory>

class ControlLine : public QObject
{
    Q_OBJECT

public:
    static constexpr int LineLimit = 4096;
    static constexpr int OutputLimit = 65536; // orders that wait for an emulator that does not read

    explicit ControlLine(QString folder, QObject *parent = nullptr);
    ~ControlLine() override;

    // False without a listener.
    bool open();
    void close();
    bool isOpen() const { return socket_.valid(); }
    // One line without its end.
    void send(const QByteArray &line);

signals:
    void received(const QByteArray &line);
    // The peer disconnected or sent invalid data; not emitted after close().
    void lost();

private:
    void read();
    void write();
    void lose();
    void handOver();

    const QString folder_;
    emulator::FileDescriptor socket_;
    std::unique_ptr<QSocketNotifier> readable_;
    std::unique_ptr<QSocketNotifier> writable_;
    QByteArray input_;
    QByteArray output_;
};
