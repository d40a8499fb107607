// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/DialogMain.h"
#include "app/environment/DataRoot.h"
#include "app/environment/Scale.h"
#include "app/environment/SingleInstance.h"
#include "presentation/Notices.h"
#include "presentation/ScreenFont.h"
#include "presentation/SkinPalette.h"

#include <QApplication>
#include <QPixmapCache>

namespace
{

constexpr int SkinCacheKiB = 64 * 1024; // every picture of the skin, so that none is decoded twice

// What Qt reads from the environment and the attributes when the application object is made.
void prepareToolkit()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, false);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, false);
    applyScaleFactor();
    // Nothing here draws with GL, and loading it costs more than all the rest of the start.
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
}

} // namespace

int main(int argc, char *argv[])
{
    makeDataFolders();
    prepareToolkit();
    pruneOldFiles();
    QApplication application(argc, argv);
    QApplication::setApplicationName(applicationName());
    QPixmapCache::setCacheLimit(SkinCacheKiB);
    applySkin();

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
