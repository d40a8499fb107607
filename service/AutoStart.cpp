// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/AutoStart.h"

#include "environment/SafeFile.h"
#include "service/DesktopEntry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace
{

constexpr char HiddenStart[] = "MORLEN_START_HIDDEN";

QString entryText(const QString &program)
{
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Morlen\n"
                          "Comment=Mouse settings, hidden in the tray\n"
                          "Exec=env %1=1 %2\n"
                          "TryExec=%3\n"
                          "Icon=morlen\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(QLatin1String(HiddenStart), DesktopEntry::quotedArgument(program),
             DesktopEntry::escaped(program));
}

} // namespace

namespace autostart
{

QString entryPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/autostart/morlen.desktop");
}

QString programPath()
{
    const QFileInfo running(QCoreApplication::applicationFilePath());
    const QString command = QStandardPaths::findExecutable(running.fileName());
    const bool isThisProgram =
        !command.isEmpty() && QFileInfo(command).canonicalFilePath() == running.canonicalFilePath();
    return isThisProgram ? command : running.filePath();
}

bool enable()
{
    QDir().mkpath(QFileInfo(entryPath()).path());
    return writeFileSafely(entryPath(), entryText(programPath()).toUtf8());
}

bool disable() { return QFile::remove(entryPath()) || !QFileInfo::exists(entryPath()); }

bool isWhole()
{
    const DesktopEntry entry(entryPath());
    return QFileInfo(entry.text("TryExec")).isExecutable();
}

bool takeHiddenStart()
{
    const bool hidden = qEnvironmentVariableIsSet(HiddenStart);
    qunsetenv(HiddenStart);
    return hidden;
}

} // namespace autostart
