// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Where the program keeps its files. The data root is $XDG_DATA_HOME (by default ~/.local/share) + "/" +
// the application name; all per-user files lie below it. What ships with the program lies beside the
// executable. Paths are read from the environment at each call. Any thread, but setApplicationFolder()
// belongs before the first use.
#pragma once

#include <QDateTime>
#include <QString>
#include <array>

constexpr char ApplicationName[] = "ZANVO Morlen Software";

// Made at start-up below the data root, in this order.
constexpr std::array<const char *, 7> DataFolders = {
    "/Log",
    "/Device_Info",
    "/Exception",
    "/usersetting",
    "/usersetting/MainPage",
    "/usersetting/MacroPage",
    "/usersetting/SensorPage",
};
constexpr int KeptDays = 7; // files of "/Log" and "/Exception" with more whole days are removed

QString applicationName();
QString dataRoot(); // without a trailing "/"

// Makes the missing folders and an empty Macro.ini. Failures are not reported here; later file operations
// report their own.
void makeDataFolders();

// Removes the files of "/Log" and "/Exception" that are 8 days old or more at `now`. Folders stay, a
// symbolic link is judged and removed as the link.
void pruneOldFiles(const QDateTime &now = QDateTime::currentDateTime());

// The folder of the executable, without a trailing "/"; known before the application object exists.
QString applicationFolder();
// Replaces it, for tests; an empty text restores the real folder.
void setApplicationFolder(const QString &folder);
