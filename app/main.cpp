// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/DialogMain.h"
#include "app/StartUp.h"
#include "app/environment/SingleInstance.h"
#include "presentation/Notices.h"
#include "presentation/ScreenFont.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    prepareStart();
    QApplication application(argc, argv);
    prepareApplication();

    SingleInstance instance;
    if (!instance.acquire()) {
        ExeIsRun().exec();
        return 0;
    }
    DialogMain window;
    scaleFontsToScreen(&window);
    window.show();
    return QApplication::exec();
}
