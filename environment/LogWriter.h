// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A message handler that appends to one text per day in "/Log" below the data root. Nothing installs
// it: the program's messages go where the toolkit sends them. Any thread.
#pragma once

#include <QtGlobal>

// Debug, critical and fatal messages become lines, the other kinds are dropped. A file that cannot be
// opened loses the line quietly.
void logMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message);
