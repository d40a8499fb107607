// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// RecordingPanel: what the page shows of a recording, and what it disables for it. Main thread.
#pragma once

#include <QList>

class QWidget;

class RecordingPanel
{
public:
    struct Widgets {
        QWidget *start, *stop; // one of them is shown
        QWidget *frame, *mark;
        QList<QWidget *> choices;   // disabled meanwhile
        QList<QWidget *> selecting; // the same, but free again in any case
    };
    enum class Ending { Stopped, Left }; // a recording that was left leaves its choices disabled

    explicit RecordingPanel(Widgets widgets);

    void showRunning();
    void showFull(); // no more is recorded, and the stop is still to be clicked
    void showEnded(Ending ending);
    // From the start to the stop.
    bool isLocked() const;

private:
    void showSigns(bool shown);

    Widgets widgets_;
};
