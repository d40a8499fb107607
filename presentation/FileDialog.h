// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Asks for a file to read or to write. Main thread; each runs its dialog over `page` and gives the path,
// which is empty when the user has dismissed it.
#pragma once

#include <QString>

class QWidget;

// Where dialogs that choose a file begin: the user's documents, or the home folder of a user who has no such
// folder.
QString documentsFolder();

namespace filedialog
{

QString askForFile(QWidget *page, const QString &filter);
// proposed: a name without a folder, to be changed. A name without a suffix gets `suffix`.
QString askForNewFile(QWidget *page, const QString &filter, const QString &suffix, const QString &proposed);

} // namespace filedialog
