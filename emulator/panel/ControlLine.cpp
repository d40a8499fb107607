// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/ControlLine.h"

#include "emulator/BusFolder.h"

#include <QFile>
#include <QTimer>
#include <cerrno>
#include <sys/socket.h>

ControlLine::ControlLine(QString folder, QObject *parent) : QObject(parent), folder_(std::move(folder)) {}

ControlLine::~ControlLine() = default;

bool ControlLine::open()
{
    close();
    socket_ = emulator::BusFolder::connect(QFile::encodeName(folder_).toStdString(),
                                           emulator::BusFolder::ControlName, SOCK_STREAM | SOCK_NONBLOCK);
    if (!socket_.valid())
        return false;
    readable_ = std::make_unique<QSocketNotifier>(socket_.get(), QSocketNotifier::Read);
    writable_ = std::make_unique<QSocketNotifier>(socket_.get(), QSocketNotifier::Write);
    writable_->setEnabled(false);
    connect(readable_.get(), &QSocketNotifier::activated, this, [this] { read(); });
    connect(writable_.get(), &QSocketNotifier::activated, this, [this] { write(); });
    return true;
}

void ControlLine::close()
{
    // A notifier may be the caller, so it is deleted later.
    for (auto *notifier : {&readable_, &writable_}) {
        if (!*notifier)
            continue;
        (*notifier)->setEnabled(false);
        notifier->release()->deleteLater();
    }
    socket_.reset();
    input_.clear();
    output_.clear();
}

void ControlLine::send(const QByteArray &line)
{
    if (!isOpen())
        return;
    output_ += line + '\n';
    write();
}

void ControlLine::write()
{
    const ssize_t size = ::send(socket_.get(), output_.constData(), size_t(output_.size()), MSG_NOSIGNAL);
    if (size >= 0)
        output_.remove(0, int(size));
    const bool broken = size < 0 && errno != EAGAIN && errno != EINTR;
    if (broken || output_.size() > OutputLimit) {
        // Queued, so that the connection does not close inside the caller's send.
        QTimer::singleShot(0, this, &ControlLine::lose);
        output_.clear();
    }
    writable_->setEnabled(!output_.isEmpty());
}

void ControlLine::lose()
{
    if (!isOpen())
        return;
    close();
    emit lost();
}

// One block per turn of the event loop, so that a flood does not starve other events.
void ControlLine::read()
{
    char bytes[16384];
    const ssize_t size = ::recv(socket_.get(), bytes, sizeof bytes, 0);
    if (size < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (size <= 0)
        return lose();
    input_.append(bytes, int(size));
    handOver();
    if (input_.size() > LineLimit)
        lose();
}

void ControlLine::handOver()
{
    int begin = 0;
    int end = 0;
    QByteArray input;
    input.swap(input_);
    while (isOpen() && (end = input.indexOf('\n', begin)) >= 0) {
        const QByteArray line = input.mid(begin, end - begin);
        begin = end + 1;
        if (line.size() > LineLimit)
            return lose();
        emit received(line);
    }
    if (isOpen())
        input_ = input.mid(begin);
}
