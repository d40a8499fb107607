// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/StartUp.h"

#include "environment/DataRoot.h"
#include "environment/Scale.h"
#include "presentation/AccessibleRoles.h"
#include "presentation/SkinPalette.h"

#include <QCoreApplication>
#include <QPixmapCache>

namespace
{
constexpr int SkinCacheKiB = 64 * 1024; // holds every picture of the skin, so none is decoded twice
}

void prepareStart()
{
    makeDataFolders();
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, false);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, false);
    applyScaleFactor();
    // The program does not draw with GL, and loading it takes longer than the rest of the start.
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
    pruneOldFiles();
}

void prepareApplication()
{
    QCoreApplication::setApplicationName(applicationName());
    QPixmapCache::setCacheLimit(SkinCacheKiB);
    applySkin();
    installAccessibleRoles();
}
