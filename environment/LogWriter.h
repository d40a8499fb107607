// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A message handler that appends to one text per day in "/Log" below the data root. The program
// does not install it; its messages go to the toolkit's default. Any thread.
#pragma once

#include <QtGlobal>

// Debug, critical and fatal messages become lines, the other kinds are dropped. When the file cannot
// be opened the line is lost.
void logMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message);
