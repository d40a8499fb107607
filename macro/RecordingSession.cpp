// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/RecordingSession.h"

#include "device/DeviceState.h"
#include "hub/PostMsg.h"
#include "presentation/Notices.h"

#include <QTimer>

RecordingSession::RecordingSession(RecordingPanel::Widgets widgets, QWidget *page)
    : QObject(page)
    , page_(page)
    , stop_(widgets.stop)
    , panel_(std::move(widgets))
    , keys_(new RecordingKeys(page))
{
    connect(keys_, &RecordingKeys::keyEvent, this, &RecordingSession::keyEvent);
}

RecordingSession::~RecordingSession() { MacroRecording = false; }

void RecordingSession::start()
{
    panel_.showRunning();
    emit PostMsg::instance()->SigStartRecord(0);
    keys_->start();
    recorder_.start();
    MacroRecording = true;
}

Recorder::Rows RecordingSession::take(int virtualKey, bool down, std::optional<int> fixedDelayMs)
{
    return recorder_.take(virtualKey, down, keys_->time(), fixedDelayMs);
}

// What is typed does nothing until the notice, which opens behind the key's own event, is closed.
void RecordingSession::endFull()
{
    MacroRecording = false;
    keys_->stopTelling();
    panel_.showFull();
    QTimer::singleShot(0, this, [this] {
        notice::ask<KeyNumberLimit>(page_, BindingNoticeOffset);
        keys_->stop();
        if (isLocked())
            stop_->setFocus();
    });
}

void RecordingSession::end(RecordingPanel::Ending ending)
{
    keys_->settle();
    MacroRecording = false;
    keys_->stop();
    panel_.showEnded(ending);
    emit PostMsg::instance()->SigStartRecord(1);
}
