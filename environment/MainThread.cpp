// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/MainThread.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <utility>

namespace
{

class Call : public QEvent
{
public:
    explicit Call(std::function<void()> function) : QEvent(User), function_(std::move(function)) {}
    void run() const { function_(); }

private:
    std::function<void()> function_;
};

class Receiver : public QObject
{
protected:
    void customEvent(QEvent *event) override { static_cast<Call *>(event)->run(); }
};

// An object of the toolkit belongs to the thread that makes it: this one is made while the program loads. It
// outlives every thread of the layer.
Receiver *const receiver = new Receiver;

} // namespace

void runOnMainThread(std::function<void()> function)
{
    QCoreApplication::postEvent(receiver, new Call(std::move(function)));
}
