// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/SleepLock.h"

#include "environment/DataRoot.h"

#include <QCoreApplication>
#include <QStandardPaths>

void SleepLock::take(const QString &reason)
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("systemd-inhibit"));
    if (holder_ || program.isEmpty())
        return;
    holder_ = new QProcess(QCoreApplication::instance()); // it may outlive the lock by a moment
    QObject::connect(holder_.data(), QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                     holder_.data(), &QObject::deleteLater);
    QObject::connect(holder_.data(), &QProcess::errorOccurred, holder_.data(),
                     [holder = holder_.data()](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart) // nothing will finish then
                             holder->deleteLater();
                     });
    holder_->setProcessChannelMode(QProcess::MergedChannels);
    holder_->start(program, {QStringLiteral("--what=shutdown:sleep:idle"),
                             QStringLiteral("--who=") + applicationName(), QStringLiteral("--why=") + reason,
                             QStringLiteral("--mode=block"), QStringLiteral("cat")});
}

void SleepLock::release()
{
    if (holder_)
        holder_->closeWriteChannel();
    holder_ = nullptr;
}
