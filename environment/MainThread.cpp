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
public:
    Receiver() { moveToThread(QCoreApplication::instance()->thread()); }

protected:
    void customEvent(QEvent *event) override { static_cast<Call *>(event)->run(); }
};

} // namespace

void runOnMainThread(std::function<void()> function)
{
    static auto *const receiver = new Receiver; // outlives every thread of the layer
    QCoreApplication::postEvent(receiver, new Call(std::move(function)));
}
