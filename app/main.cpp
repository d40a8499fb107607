// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/DialogMain.h"
#include "app/StartUp.h"
#include "app/SystemEnd.h"
#include "environment/Scale.h"
#include "environment/SingleInstance.h"
#include "presentation/Notices.h"
#include "presentation/ScreenFont.h"
#include "service/AutoStart.h"

#include <QApplication>
#include <QScreen>
#include <vector>

int main(int argc, char *argv[])
{
    const std::vector<char *> arguments(argv, argv + argc + 1); // the toolkit takes its own out
    prepareStart();
    QApplication application(argc, argv);
    correctScaleFactor(QGuiApplication::platformName(), arguments.data());
    const bool hidden = autostart::takeHiddenStart();
    prepareApplication();

    SingleInstance instance;
    if (!instance.acquire()) {
        if (!hidden)
            notice::ask<ExeIsRun>();
        return 0;
    }
    DialogMain window;
    const SystemEnd systemEnd(&window);
    scaleFontsToScreen(&window);
    // Some window managers place a frameless window without an event, and notices would not be centred on it.
    // On a screen that is too small for it, its title row must not be the part that lies outside.
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QPoint corner = screen.center() - window.rect().center();
    window.move(qMax(corner.x(), screen.left()), qMax(corner.y(), screen.top()));
    if (hidden)
        window.startHidden();
    else
        window.show();
    return QApplication::exec();
}
