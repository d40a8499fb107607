// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "presentation/Edit.h"

#include "device/DeviceState.h"

#include <QSignalBlocker>

EditResult edit(const std::atomic<bool> &busy, QObject *control, const std::function<bool()> &write,
                const std::function<void()> &restore)
{
    return busy ? EditResult::Ignored : edit(control, write, restore);
}

EditResult edit(QObject *control, const std::function<bool()> &write, const std::function<void()> &restore)
{
    if (!UiArmed)
        return EditResult::Ignored;
    if (write())
        return EditResult::Written;
    const QSignalBlocker silent(control);
    restore();
    return EditResult::Refused;
}
