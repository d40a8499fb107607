// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/EmulatorLink.h"

static constexpr int RefreshMs = 500;
static constexpr int RetryMs = 1000;
static constexpr int AnswerMs = 3000;
static constexpr int AnswerLimit = 1000; // lines; a whole flash has 432

EmulatorLink::EmulatorLink(const QString &folder, QObject *parent)
    : QObject(parent), orders_(folder), reports_(folder)
{
    refresh_.setInterval(RefreshMs);
    for (QTimer *once : {&retry_, &deadline_})
        once->setSingleShot(true);
    connect(&refresh_, &QTimer::timeout, this, &EmulatorLink::askState);
    connect(&retry_, &QTimer::timeout, this, &EmulatorLink::connectBoth);
    connect(&deadline_, &QTimer::timeout, this, &EmulatorLink::drop);
    for (ControlLine *line : {&orders_, &reports_})
        connect(line, &ControlLine::lost, this, &EmulatorLink::drop);
    connect(&orders_, &ControlLine::received, this, &EmulatorLink::takeLine);
    connect(&reports_, &ControlLine::received, this, &EmulatorLink::takeReport);
    retry_.start(0);
}

void EmulatorLink::connectBoth()
{
    if (!orders_.open() || !reports_.open())
        return drop();
    reports_.send("follow all");
    askState();
}

void EmulatorLink::drop()
{
    orders_.close();
    reports_.close();
    pending_.clear();
    stateAsked_ = false;
    deadline_.stop();
    retry_.start(RetryMs);
    if (!running_)
        return;
    running_ = false;
    emit runningChanged(false);
    emit stateChanged(PanelState());
}

void EmulatorLink::setWatching(bool watching)
{
    if (!watching)
        return refresh_.stop();
    refresh_.start();
    askState();
}

void EmulatorLink::change(const QString &order)
{
    if (!running_)
        return;
    send(order, {});
    ++changes_;
    askState();
}

void EmulatorLink::ask(const QString &order, const Taken &taken)
{
    if (running_)
        send(order, taken);
}

void EmulatorLink::send(const QString &order, const Taken &taken)
{
    if (pending_.isEmpty())
        deadline_.start(AnswerMs);
    pending_.enqueue({taken, {}, false});
    orders_.send(order.toUtf8());
}

void EmulatorLink::askState()
{
    if (!orders_.isOpen() || (stateAsked_ && askedAt_ == changes_))
        return;
    stateAsked_ = true;
    askedAt_ = changes_;
    send(QStringLiteral("state"), [this, at = changes_](const Lines &lines) {
        // An answer from before the last order would reset the control that the user has just moved.
        if (at == changes_)
            takeState(parseState(lines));
    });
    pending_.last().isState = true;
}

void EmulatorLink::takeState(const PanelState &state)
{
    stateAsked_ = false;
    if (!running_) {
        running_ = true;
        emit runningChanged(true);
    }
    emit stateChanged(state);
}

void EmulatorLink::takeLine(const QByteArray &line)
{
    if (pending_.isEmpty())
        return;
    const bool isError = line.startsWith("error ");
    if (line != "ok" && !isError) {
        pending_.head().lines.append(line);
        if (pending_.head().lines.size() > AnswerLimit)
            drop();
        return;
    }
    const Pending answered = pending_.dequeue();
    if (pending_.isEmpty())
        deadline_.stop();
    else
        deadline_.start(AnswerMs);
    // Without the state there is nothing to show.
    if (isError && answered.isState)
        return drop();
    if (isError)
        emit refused(QString::fromUtf8(line.mid(6)));
    else if (answered.taken)
        answered.taken(answered.lines);
}

void EmulatorLink::takeReport(const QByteArray &line)
{
    if (line.contains(" -> ") || line.contains(" <- ") || line.startsWith("-- "))
        emit reported(line);
}
