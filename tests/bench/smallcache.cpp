// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The program with the pixmap cache that the toolkit has by itself, to be compared with the program: where
// nothing is decoded twice, both start alike.
#include "app/DialogMain.h"
#include "app/StartUp.h"
#include "environment/DataRoot.h"
#include "presentation/ScreenFont.h"

#include <QApplication>
#include <QPixmapCache>
#include <QScreen>

int main(int argc, char **argv)
{
    setApplicationFolder(QStringLiteral(PRODUCT_DIR));
    const int toolkitsOwn = QPixmapCache::cacheLimit();
    prepareStart();
    QApplication application(argc, argv);
    prepareApplication();
    QPixmapCache::setCacheLimit(toolkitsOwn);
    DialogMain window;
    scaleFontsToScreen(&window);
    window.move(QGuiApplication::primaryScreen()->availableGeometry().center() - window.rect().center());
    window.show();
    return QApplication::exec();
}
