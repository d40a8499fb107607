// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// RecordingSession: a recording from its start to its stop: the keys that come to the page's window, the rows
// that they make, and what the page shows meanwhile. Main thread.
#pragma once

#include "macro/Recorder.h"
#include "macro/RecordingKeys.h"
#include "macro/RecordingPanel.h"

class RecordingSession : public QObject
{
    Q_OBJECT

public:
    RecordingSession(RecordingPanel::Widgets widgets, QWidget *page);
    ~RecordingSession() override;

    // From the start to the stop; MacroRecording ends with the last event that there is room for.
    bool isLocked() const { return panel_.isLocked(); }
    void start();
    // `fixedDelayMs` takes the place of the measured delay.
    Recorder::Rows take(int virtualKey, bool down, std::optional<int> fixedDelayMs);
    bool isFull() const { return recorder_.isFull(); }
    // Tells that no more is recorded. The stop is still to be clicked.
    void endFull();
    void end(RecordingPanel::Ending ending);

signals:
    void keyEvent(int keyCode, bool downOrUp, bool aotu);

private:
    QWidget *page_;
    QWidget *stop_;
    RecordingPanel panel_;
    RecordingKeys *keys_;
    Recorder recorder_;
};
