// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Script: drives the real windows step by step. A step waits until its condition holds and then acts. A
// timer checks the condition and the action runs in a nested call, so the script continues while an action is
// inside a modal dialog. Main thread.
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
        steps_.push_back({name, std::move(ready), std::move(act), {}, false});
        return *this;
    }

    // Acts whenever `ready` holds, again and again, until `done` does. The action is not begun anew before it
    // has returned; `ready` is asked meanwhile, so that it may close what the action has opened.
    Script &repeat(const char *name, Condition done, Condition ready, Action act)
    {
        steps_.push_back({name, std::move(ready), std::move(act), std::move(done), false});
        return *this;
    }

    // Runs all steps; empty on success, else the name of the step whose condition did not hold within
    // `stepTimeoutMs`.
    QString run(int stepTimeoutMs = 20000)
    {
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, this, [this, stepTimeoutMs] { tick(stepTimeoutMs); });
        since_.start();
        ticker.start(5);
        if (!steps_.empty())
            loop_.exec();
        return failed_;
    }

private:
    struct Step {
        const char *name;
        Condition ready;
        Action act;
        Condition done; // of a step that is repeated
        bool acted;     // at least once
    };

    void tick(int stepTimeoutMs)
    {
        if (acting_ || steps_.empty())
            return;
        Step &step = steps_.front();
        const bool isRepeated = bool(step.done);
        // Before the question for its end: what has come by the time that it is ready again is no refusal.
        const bool isReady = step.ready();
        if (!isFirst(&step)) // it has ended meanwhile
            return;
        if (isRepeated ? isDone(step) : isReady) {
            act(isRepeated ? Action() : std::move(step.act));
            steps_.pop_front();
            since_.restart();
        } else if (isRepeated && isReady && !repeating_) {
            actOnce();
        } else if (since_.elapsed() > qint64(isRepeated ? RepeatedSteps : 1) * stepTimeoutMs) {
            failed_ = QString::fromLatin1(step.name);
            steps_.clear();
            giveUp();
        }
    }
    // run() could not return while a modal dialog of an abandoned step is open.
    void giveUp()
    {
        loop_.quit();
        if (QWidget *const modal = QApplication::activeModalWidget()) {
            modal->close();
            QTimer::singleShot(50, this, [this] { giveUp(); });
        }
    }
    // The next step is checked as soon as this action has begun, which may not have returned by then.
    void act(Action action)
    {
        acting_ = true;
        const bool last = steps_.size() == 1;
        QTimer::singleShot(0, this, [this, last, action = std::move(action)] {
            acting_ = false;
            if (action)
                action();
            if (last)
                loop_.quit();
        });
    }

    bool isFirst(const Step *step) const { return !steps_.empty() && step == &steps_.front(); }
    static bool isDone(const Step &step) { return step.acted && step.done(); }

    void actOnce()
    {
        repeating_ = true;
        QTimer::singleShot(0, this, [this, step = &steps_.front()] {
            if (isFirst(step) && !isDone(*step)) {
                step->acted = true;
                const Action action = step->act; // the step may end within it
                action();
            }
            repeating_ = false;
        });
    }

    static constexpr int RepeatedSteps = 4; // a step that is repeated has the time of that many

    std::deque<Step> steps_;
    QEventLoop loop_;
    QElapsedTimer since_;
    QString failed_;
    bool acting_ = false;
    bool repeating_ = false;
};
