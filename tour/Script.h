// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Script: drives the real windows step by step. A step waits until its condition holds and then acts. The
// condition is looked at from a timer and the action has a stack of its own, so that a script goes on
// while an action stands in a modal dialog. Main thread.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>

class Script : public QObject
{
public:
    using Condition = std::function<bool()>;
    using Action = std::function<void()>;

    Script &step(const char *name, Condition ready, Action act = {})
    {
        steps.push_back({name, std::move(ready), std::move(act)});
        return *this;
    }

    // Runs all steps; the empty text on success, else the name of the step that did not come within
    // `stepTimeoutMs`.
    QString run(int stepTimeoutMs = 20000)
    {
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, this, [this, stepTimeoutMs] { tick(stepTimeoutMs); });
        since.start();
        ticker.start(5);
        if (!steps.empty())
            loop.exec();
        return failed;
    }

private:
    struct Step {
        const char *name;
        Condition ready;
        Action act;
    };

    void tick(int stepTimeoutMs)
    {
        if (acting || steps.empty())
            return;
        if (steps.front().ready()) {
            act(std::move(steps.front().act));
            steps.pop_front();
            since.restart();
        } else if (since.elapsed() > stepTimeoutMs) {
            failed = QString::fromLatin1(steps.front().name);
            steps.clear();
            giveUp();
        }
    }
    // A modal dialog that nobody will answer any more would keep run() from returning.
    void giveUp()
    {
        loop.quit();
        if (QWidget *const modal = QApplication::activeModalWidget()) {
            modal->close();
            QTimer::singleShot(50, this, [this] { giveUp(); });
        }
    }
    // The next step is looked at once this action has begun; it may not have returned by then.
    void act(Action action)
    {
        acting = true;
        const bool last = steps.size() == 1;
        QTimer::singleShot(0, this, [this, last, action = std::move(action)] {
            acting = false;
            if (action)
                action();
            if (last)
                loop.quit();
        });
    }

    std::deque<Step> steps;
    QEventLoop loop;
    QElapsedTimer since;
    QString failed;
    bool acting = false;
};
