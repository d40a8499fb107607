// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/LogWriter.h"

#include "environment/DataRoot.h"

#include <QFile>
#include <QMutex>
#include <QMutexLocker>

namespace
{

QString levelText(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("Debug:");
    case QtCriticalMsg:
        return QStringLiteral("Critical:");
    case QtFatalMsg:
        return QStringLiteral("Fatal:");
    default:
        return {};
    }
}

QMutex &logMutex()
{
    // Never destroyed: a message may still come while the process ends.
    static auto *mutex = new QMutex;
    return *mutex;
}

} // namespace

void logMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const QMutexLocker lock(&logMutex());
    const QString level = levelText(type);
    if (level.isEmpty())
        return;
    const QDateTime now = QDateTime::currentDateTime();
    const QString place = QStringLiteral("File:(%1) Line:(%2)")
                              .arg(QString::fromUtf8(context.file), QString::number(context.line));
    const QString time = QStringLiteral("(%1)").arg(now.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")));
    // One call for all arguments, so a "%4" inside the message is not replaced.
    const QString line = QStringLiteral("%1 %2 %3 %4").arg(level, place, message, time);
    QFile file(dataRoot() + QStringLiteral("/Log/") + now.toString(QStringLiteral("yyyy-MM-dd")) +
               QStringLiteral(".txt"));
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        file.write(line.toUtf8() + "\r\n");
}
