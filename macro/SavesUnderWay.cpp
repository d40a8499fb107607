// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/SavesUnderWay.h"

#include "hub/PostMsg.h"
#include "macro/MacroDeviceSync.h"
#include "presentation/LossWatch.h"

#include <algorithm>

QString SavesUnderWay::send(const QString &name, bool events, bool cycle)
{
    names_ << name;
    if (events)
        emit PostMsg::instance()->SigUpDataMacro(name, 0);
    if (const QString now = names_.last(); cycle && !now.isEmpty()) {
        const LossWatch watch;
        emit PostMsg::instance()->SigUpDataMacro(now, 1);
        if (watch.isLost())
            macro::setMissed(now, true);
    }
    QString now = names_.takeLast();
    if (!now.isEmpty())
        macro::noteSent(now, events, cycle);
    return now;
}

void SavesUnderWay::rename(const QString &name, const QString &newName)
{
    std::replace(names_.begin(), names_.end(), name, newName);
}
