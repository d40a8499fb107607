// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Finding and using the controls of the program's windows by their object names, for whoever drives the
// real program. Main thread.
#pragma once

#include "selection/AttachedDevices.h"

#include <QAbstractButton>
#include <QApplication>

namespace windows
{

// The visible control of that name in any window, or null.
template <typename Control = QWidget> Control *visible(const QString &name)
{
    if (name.isEmpty())
        return nullptr; // to Qt it would be any name
    for (QWidget *const top : QApplication::topLevelWidgets())
        if (top->isVisible())
            for (Control *const control : top->findChildren<Control *>(name))
                if (control->isVisible())
                    return control;
    return nullptr;
}

// The top-level window of that class that shows, or null.
template <typename Window> Window *shown()
{
    for (QWidget *const top : QApplication::topLevelWidgets())
        if (auto *const window = dynamic_cast<Window *>(top))
            if (window->isVisible())
                return window;
    return nullptr;
}

inline void click(const QString &name)
{
    if (auto *const button = visible<QAbstractButton>(name))
        button->click();
}

inline bool isChecked(const QString &name)
{
    const auto *const button = visible<QAbstractButton>(name);
    return button && button->isChecked();
}

// The tile of the attached device whose path holds this text; empty without one.
inline QString tileOf(const QString &pathPart)
{
    if (pathPart.isEmpty())
        return {}; // which any path holds
    for (std::size_t i = 0; i < AttachedDevices.size(); ++i)
        if (AttachedDevices[i].DevicePath.contains(pathPart))
            return QStringLiteral("btn%1").arg(i);
    return QString();
}

} // namespace windows
