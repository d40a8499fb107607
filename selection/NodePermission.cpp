// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "selection/NodePermission.h"

#include "environment/DataRoot.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <atomic>
#include <cerrno>
#include <unistd.h>

namespace
{

const char Reload[] = "sudo udevadm control --reload && sudo udevadm trigger";

// EPERM is what the device rules of a container answer.
bool kernelRefuses(const QString &path)
{
    return path.startsWith(QLatin1String("/dev/")) &&
           access(QFile::encodeName(path).constData(), R_OK | W_OK) != 0 &&
           (errno == EACCES || errno == EPERM);
}

std::atomic<NodeProbe> probeInUse{&kernelRefuses};

// For tests; empty stands for udev's own folders.
QStringList &rulesFolders()
{
    static QStringList folders;
    return folders;
}

QStringList udevFolders()
{
    return {QStringLiteral("/etc/udev/rules.d"), QStringLiteral("/run/udev/rules.d"),
            QStringLiteral("/usr/local/lib/udev/rules.d"), QStringLiteral("/usr/lib/udev/rules.d"),
            QStringLiteral("/lib/udev/rules.d")};
}

QString rulesIn(const QString &folder) { return folder + QLatin1Char('/') + QLatin1String(RulesFileName); }

QString installedRules()
{
    for (const QString &folder : rulesFolders().isEmpty() ? udevFolders() : rulesFolders())
        if (QFile::exists(rulesIn(folder)))
            return rulesIn(folder);
    return {};
}

// Nothing for what is no plain file. Rules are short, so the rest of a long file is no matter.
QByteArray contentOf(const QString &path)
{
    constexpr qint64 readBytes = 1 << 20;
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.read(readBytes) : QByteArray();
}

// Udev takes one file of a name, so that of another version, or one that was emptied, hides this version's.
bool areOfThisProgram(const QString &rules)
{
    const QString copy = rulesIn(applicationFolder());
    return !QFile::exists(copy) || contentOf(copy) == contentOf(rules);
}

QString shellWord(QString text)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_./+-]+$"));
    if (plain.match(text).hasMatch())
        return text;
    text.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

// The group that may read and write the node, when it is not root's own.
QString groupOf(const QString &path)
{
    const QFileInfo node(path);
    const bool open = node.permission(QFile::ReadGroup | QFile::WriteGroup);
    return open && node.groupId() != 0 ? node.group() : QString();
}

} // namespace

bool isRefused(const QString &path) { return probeInUse.load()(path); }

void setNodeProbe(NodeProbe probe) { probeInUse = probe ? probe : &kernelRefuses; }

void setRulesFolders(const QStringList &folders) { rulesFolders() = folders; }

// A copy of the rules lies beside the program, wherever that was installed to.
NodeRemedy nodeRemedy(const QString &path)
{
    const QString rules = installedRules();
    const QString install = QStringLiteral("sudo cp %1 /etc/udev/rules.d/ && %2")
                                .arg(shellWord(rulesIn(applicationFolder())), QLatin1String(Reload));
    if (rules.isEmpty())
        return {PermissionLack::NoRules, QLatin1String(RulesFileName), install};
    const QString group = groupOf(path);
    if (!group.isEmpty())
        return {PermissionLack::NotInGroup, group,
                QStringLiteral("sudo usermod -aG %1 $USER").arg(shellWord(group))};
    if (!areOfThisProgram(rules))
        return {PermissionLack::OldRules, rules, install};
    return {PermissionLack::NotInEffect, rules, QLatin1String(Reload)};
}
