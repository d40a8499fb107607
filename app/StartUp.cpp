// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/StartUp.h"

#include "environment/DataRoot.h"
#include "environment/Scale.h"
#include "environment/Thread.h"
#include "presentation/AccessibleRoles.h"
#include "presentation/SkinPalette.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QPixmapCache>
#include <chrono>
#include <cstdio>
#include <future>
#include <memory>

namespace
{
constexpr int SkinCacheKiB = 64 * 1024; // holds every picture of the skin, so none is decoded twice
constexpr std::chrono::milliseconds LongestFontWait{200}; // a slow disk does not hold up the start

// The program goes on without settings, macros and images, and each later write fails in silence.
void tellUnwritableRoot()
{
    if (!QFileInfo(dataRoot()).isWritable())
        std::fprintf(stderr, "Settings and macros are not kept: %s cannot be written\n",
                     QFile::encodeName(dataRoot()).constData());
}

std::shared_future<void> fontFilesRead; // shared with a thread that may outlive the program's end

// The toolkit has fontconfig read its files, some fifty, at the first font. Read beside what comes before it,
// they are there when it asks; fontconfig's start may be called by more than one thread. It reads the
// environment and the locale, which nothing changes from here on.
void readFontFiles()
{
    const auto read = std::make_shared<std::promise<void>>();
    fontFilesRead = read->get_future();
    startThread([read] {
        if (const auto start =
                reinterpret_cast<int (*)()>(QLibrary::resolve(QStringLiteral("fontconfig"), 1, "FcInit")))
            start();
        read->set_value();
    });
}

// The toolkit connects to the session's bus when a screen reader could first want to know something, and
// waits for the answers. Here they come while the font files are read.
void connectToScreenReaders() { QAccessible::isActive(); }

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
    connectToScreenReaders();
    QPixmapCache::setCacheLimit(SkinCacheKiB);
    applySkin();
    installAccessibleRoles();
}

// A font that is asked for before would have the same files read once more, on this thread.
bool awaitFontFiles()
{
    return !fontFilesRead.valid() || fontFilesRead.wait_for(LongestFontWait) == std::future_status::ready;
}
