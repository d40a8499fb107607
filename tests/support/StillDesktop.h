// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// While it lives, the desktop asks for no motion, so that a picture shows at once what has changed.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace support
{

class StillDesktop
{
public:
    StillDesktop()
    {
        QDir(config_.path()).mkdir("gtk-3.0");
        QFile settings(config_.filePath("gtk-3.0/settings.ini"));
        if (settings.open(QIODevice::WriteOnly))
            settings.write("[Settings]\ngtk-enable-animations=0\n");
        qputenv("XDG_CONFIG_HOME", config_.path().toLocal8Bit());
    }
    ~StillDesktop()
    {
        if (before_.isNull())
            qunsetenv("XDG_CONFIG_HOME");
        else
            qputenv("XDG_CONFIG_HOME", before_);
    }
    StillDesktop(const StillDesktop &) = delete;
    StillDesktop &operator=(const StillDesktop &) = delete;

private:
    const QByteArray before_ = qgetenv("XDG_CONFIG_HOME");
    const QTemporaryDir config_;
};

} // namespace support
