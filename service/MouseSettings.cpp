// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/MouseSettings.h"

#include "service/DesktopEntry.h"

#include <QStandardPaths>

namespace
{

// What the control centres call their mouse page. An entry says itself for which desktops it is; the one at
// the end is for any.
constexpr const char *MousePages[] = {
    "gnome-mouse-panel",
    "kcm_mouse",
    "xfce-mouse-settings",
    "mate-settings-mouse",
    "cinnamon-settings-mouse",
    "budgie-mouse-panel",
    "unity-mouse-panel",
    "lxqt-config-input",
    "lxinput",
};

} // namespace

QStringList mouseSettingsCommand()
{
    const QStringList desktops =
        QString::fromLocal8Bit(qgetenv("XDG_CURRENT_DESKTOP")).split(QLatin1Char(':'));
    for (const char *page : MousePages) {
        const QString path = QStandardPaths::locate(QStandardPaths::ApplicationsLocation,
                                                    QLatin1String(page) + QStringLiteral(".desktop"));
        if (path.isEmpty())
            continue;
        const DesktopEntry entry(path);
        if (entry.isOffered(desktops))
            return entry.command();
    }
    return {};
}
