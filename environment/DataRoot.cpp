// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/DataRoot.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{

constexpr qint64 SecondsPerDay = 86400;

QString &folderOverride()
{
    static QString folder;
    return folder;
}

void removeIfOld(const std::string &path, qint64 now)
{
    struct stat entry = {};
    if (lstat(path.c_str(), &entry) != 0 || S_ISDIR(entry.st_mode))
        return;
    if ((now - qint64(entry.st_mtim.tv_sec)) / SecondsPerDay > KeptDays)
        unlink(path.c_str());
}

void pruneFolder(const std::string &folder, qint64 now)
{
    std::error_code error;
    if (!fs::is_directory(fs::symlink_status(folder, error)))
        return;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        removeIfOld(entry->path().native(), now);
}

} // namespace

QString applicationName() { return QString::fromLatin1(ApplicationName); }

QString dataRoot()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1Char('/') +
           applicationName();
}

void makeDataFolders()
{
    for (const char *folder : DataFolders)
        QDir().mkpath(dataRoot() + QLatin1String(folder));
    // O_EXCL: a file that appears meanwhile is never emptied.
    const QByteArray store = QFile::encodeName(dataRoot() + QStringLiteral("/Macro.ini"));
    const int made = open(store.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (made >= 0)
        close(made);
}

void pruneOldFiles(const QDateTime &now)
{
    for (const char *folder : {"/Log", "/Exception"})
        pruneFolder(QFile::encodeName(dataRoot() + QLatin1String(folder)).toStdString(),
                    now.toSecsSinceEpoch());
}

QString applicationFolder()
{
    if (!folderOverride().isEmpty())
        return folderOverride();
    // QCoreApplication knows it too, but only once the application object exists.
    static const QString folder = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath();
    return folder;
}

void setApplicationFolder(const QString &folder) { folderOverride() = folder; }
