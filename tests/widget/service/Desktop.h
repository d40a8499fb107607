// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Desktop: a desktop of the test's own: the folder of the user's configuration and that of the installed
// applications, both empty at first.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace fixture
{

class Desktop
{
public:
    explicit Desktop(const char *name = "XFCE")
    {
        QDir(folder.path()).mkpath("config");
        QDir(folder.path()).mkpath("share/applications");
        QDir(folder.path()).mkpath("bin");
        set("XDG_CONFIG_HOME", configFolder());
        set("XDG_DATA_DIRS", folder.filePath("share"));
        set("XDG_CURRENT_DESKTOP", QLatin1String(name));
        set("PATH", folder.filePath("bin") + ":/usr/bin:/bin");
    }
    ~Desktop()
    {
        for (const auto &[variable, value] : before)
            value.isNull() ? qunsetenv(variable) : qputenv(variable, value);
    }
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    QString configFolder() const { return folder.filePath("config"); }
    QString path(const QString &below) const { return folder.filePath(below); }

    void write(const QString &below, const QByteArray &content) const
    {
        QFile file(folder.filePath(below));
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
    }
    void writeEntry(const QString &name, const QByteArray &lines) const
    {
        write("share/applications/" + name + ".desktop", "[Desktop Entry]\nType=Application\n" + lines);
    }
    // A program in the path; it makes the file that is returned and writes its arguments to it.
    QString installProgram(const QString &name) const
    {
        const QString ran = folder.filePath(name + ".ran");
        write("bin/" + name, "#!/bin/sh\necho \"$@\" >'" + QFile::encodeName(ran) + ".new'\nmv '" +
                                 QFile::encodeName(ran) + ".new' '" + QFile::encodeName(ran) + "'\n");
        QFile::setPermissions(folder.filePath("bin/" + name), QFile::ReadOwner | QFile::ExeOwner);
        return ran;
    }
    QString installControlCentre(const QString &page, const QByteArray &onlyFor) const
    {
        const QString ran = installProgram(page);
        writeEntry(page, "OnlyShowIn=" + onlyFor + ";\nExec=" + page.toLocal8Bit() + " --mouse %U\n");
        return ran;
    }

private:
    void set(const char *variable, const QString &value)
    {
        before.append({variable, qEnvironmentVariableIsSet(variable) ? qgetenv(variable) : QByteArray()});
        qputenv(variable, value.toLocal8Bit());
    }

    QTemporaryDir folder;
    QVector<QPair<const char *, QByteArray>> before;
};

} // namespace fixture
