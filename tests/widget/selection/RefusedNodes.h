// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Files that stand for nodes, and a folder that stands for udev's. A file that its owner may not read counts
// as one that keeps the user out, also from root.
#pragma once

#include "selection/NodePermission.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <unistd.h>

namespace fixture
{

class RefusedNodes
{
public:
    explicit RefusedNodes(bool rulesInstalled)
    {
        QDir(folder.path()).mkdir("rules");
        setNodeProbe([](const QString &path) {
            const QFileInfo node(path);
            return node.exists() && !node.permission(QFile::ReadOwner);
        });
        setRulesFolders({rules()});
        if (rulesInstalled)
            installRules();
    }
    ~RefusedNodes()
    {
        setNodeProbe(nullptr);
        setRulesFolders({});
    }

    // A node of that name and mode; group permissions are for a group other than root's.
    QString add(const QString &name, int mode) const
    {
        const QString path = folder.filePath(name);
        QFile(path).open(QIODevice::WriteOnly);
        constexpr gid_t daemon = 1;
        if (geteuid() == 0 && chown(path.toLocal8Bit(), geteuid(), daemon) != 0)
            qFatal("chown %s", qPrintable(path));
        setMode(path, mode);
        return path;
    }
    static void setMode(const QString &path, int mode)
    {
        if (chmod(path.toLocal8Bit(), mode_t(mode)) != 0)
            qFatal("chmod %s", qPrintable(path));
    }
    QString rules() const { return folder.filePath("rules"); }
    void installRules() const
    {
        QFile(rules() + '/' + QLatin1String(RulesFileName)).open(QIODevice::WriteOnly);
    }

private:
    // A short name of its own, since a hint names several of its files in one line.
    QTemporaryDir folder{QDir::tempPath() + "/node-XXXXXX"};
};

} // namespace fixture
