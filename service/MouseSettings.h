// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// MouseSettings: the mouse page of the control centre of the user's desktop, found by its desktop entry. Main
// thread.
#pragma once

#include <QStringList>

// The program and its arguments; empty when no control centre for this desktop is installed. Reads some
// files.
QStringList mouseSettingsCommand();
