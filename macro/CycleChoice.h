// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// CycleChoice: how often a macro runs, by four radio buttons and the number beside the first of them. Main
// thread.
#pragma once

#include <QObject>
#include <array>

class QButtonGroup;
class QRadioButton;
class QSpinBox;

struct CycleWidgets {
    QRadioButton *count, *untilPressed, *untilReleased, *untilAny;
    QSpinBox *number;
};

class CycleChoice : public QObject
{
    Q_OBJECT

public:
    CycleChoice(const CycleWidgets &widgets, QObject *parent);

    int mode() const;
    // Silent. A number that is no mode is one run.
    void setMode(int mode);
    // While muted, the user's changes are not signalled.
    void mute(bool muted);
    bool isMuted() const;

signals:
    void changed();

private:
    CycleWidgets widgets_;
    QButtonGroup *group_;
};
