// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/StartUp.h"

#include "environment/DataRoot.h"
#include "environment/Scale.h"
#include "environment/Thread.h"
#include "presentation/AccessibleRoles.h"
#include "presentation/SkinPalette.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QPixmapCache>
#include <cstdio>

namespace
{
constexpr int SkinCacheKiB = 64 * 1024; // holds every picture of the skin, so none is decoded twice

// The program goes on without settings, macros and images, and each later write fails in silence.
void tellUnwritableRoot()
{
    if (!QFileInfo(dataRoot()).isWritable())
        std::fprintf(stderr, "Settings and macros are not kept: %s cannot be written\n",
                     QFile::encodeName(dataRoot()).constData());
}

// The toolkit has fontconfig read its files, some fifty, at the first font. Read beside what comes before it,
// they are there when it asks; fontconfig's start may be called by more than one thread. It reads the
// environment and the locale, which nothing changes from here on.
void readFontFiles()
{
    startThread([] {
        if (const auto start =
                reinterpret_cast<int (*)()>(QLibrary::resolve(QStringLiteral("fontconfig"), 1, "FcInit")))
            start();
    });
}

} // namespace

void prepareStart()
{
    makeDataFolders();
    tellUnwritableRoot();
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
    readFontFiles();
    QCoreApplication::setApplicationName(applicationName());
    QPixmapCache::setCacheLimit(SkinCacheKiB);
    applySkin();
    installAccessibleRoles();
}
