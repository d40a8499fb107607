// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Finds and uses the controls of the program's windows by their object names, for programs that drive the
// real one. Main thread.
#pragma once

#include "selection/DialogChange.h"

#include <QAbstractButton>
#include <QApplication>

namespace windows
{

// The visible control of that name in any window, or null.
template <typename Control = QWidget> Control *visible(const QString &name)
{
    if (name.isEmpty())
        return nullptr; // findChildren() takes an empty name for any
    for (QWidget *const top : QApplication::topLevelWidgets())
        if (top->isVisible())
            for (Control *const control : top->findChildren<Control *>(name))
                if (control->isVisible())
                    return control;
    return nullptr;
}

// The visible top-level window of that class, or null.
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

// The devices that have a tile on the selection page; empty before the page is built.
inline std::vector<DeviceAllInfo> attached()
{
    for (const QWidget *const top : QApplication::topLevelWidgets())
        if (const auto *const page = top->findChild<DialogChange *>())
            return page->attached().tiles();
    return {};
}

// The tile of the attached device whose path holds this text; empty without one.
inline QString tileOf(const QString &pathPart)
{
    if (pathPart.isEmpty())
        return {}; // any path contains it
    const std::vector<DeviceAllInfo> devices = attached();
    for (std::size_t i = 0; i < devices.size(); ++i)
        if (devices[i].DevicePath.contains(pathPart))
            return QStringLiteral("btn%1").arg(i);
    return QString();
}

} // namespace windows
