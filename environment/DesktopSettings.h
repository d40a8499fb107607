// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the desktop's settings manager tells all programs on an X server: the property _XSETTINGS_SETTINGS of
// the window that owns the selection _XSETTINGS_S0.
#pragma once

#include <QByteArray>
#include <optional>

// The property's bytes; none without a server or a manager. Opens a connection of its own and waits for the
// server as long as it takes. On one thread at a time: it exchanges Xlib's error handler, which the whole
// process has in common.
QByteArray desktopSettings();

// A whole number among them. None for an unknown name, another type, and bytes that are no such property.
std::optional<int> desktopNumber(const QByteArray &settings, const QByteArray &name);
