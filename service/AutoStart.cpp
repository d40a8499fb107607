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

// The program is the shell's argument: env would take a path with "=" in it for a variable.
QStringList command(const QString &program)
{
    return {QStringLiteral("env"),         QStringLiteral("%1=1").arg(QLatin1String(HiddenStart)),
            QStringLiteral("sh"),          QStringLiteral("-c"),
            QStringLiteral("exec \"$0\""), program};
}

QString commandText(const QString &program)
{
    QStringList quoted;
    for (const QString &argument : command(program))
        quoted << DesktopEntry::quotedArgument(argument);
    return quoted.join(QLatin1Char(' '));
}

QString entryText(const QString &program)
{
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Morlen\n"
                          "Comment=Mouse settings, hidden in the tray\n"
                          "Exec=%1\n"
                          "TryExec=%2\n"
                          "Icon=morlen\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(commandText(program), DesktopEntry::escaped(program));
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
    const QString program = entry.text("TryExec");
    return entry.text("Hidden") != QLatin1String("true") && QFileInfo(program).isExecutable() &&
           entry.command() == command(program);
}

bool takeHiddenStart()
{
    const bool hidden = qEnvironmentVariableIsSet(HiddenStart);
    qunsetenv(HiddenStart);
    return hidden;
}

} // namespace autostart
