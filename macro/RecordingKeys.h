// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// RecordingKeys: the keys of a recording. All keys of the keyboard are told, and those that come to the
// page's window do nothing else there: no button is pressed, no focus moves and no shortcut runs. Other
// windows, such as a notice, take their keys as ever. Main thread.
#pragma once

#include "keys/KeySource.h"

#include <QWidget>

class RecordingKeys : public QObject
{
    Q_OBJECT

public:
    explicit RecordingKeys(QWidget *page);

    void start();
    void settle() { source_.settle(); } // before the end, so that no release is missing
    void stop();
    // No key is told any more, but what is typed into the window still does nothing.
    void stopTelling();
    qint64 time() const { return source_.time(); } // as KeySource::time()

signals:
    void keyEvent(int keyCode, bool downOrUp, bool aotu);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *page_;
    KeySource source_;
};
