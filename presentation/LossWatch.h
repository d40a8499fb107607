// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LossWatch: whether a write, since this was made, found the mouse off line. For a sender of several writes
// that do not answer it. Main thread.
#pragma once

#include "hub/PostMsg.h"

class LossWatch : public QObject
{
    Q_OBJECT

public:
    LossWatch() { connect(PostMsg::instance(), SIGNAL(SigMouseOffLineo(int)), this, SLOT(note())); }

    bool isLost() const { return lost_; }

private slots:
    void note() { lost_ = true; }

private:
    bool lost_ = false;
};
