// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/ScreenColor.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <algorithm>

namespace
{

constexpr int GrabExtent = 2;

} // namespace

bool screenCanBeRead()
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland")) &&
           qgetenv("XDG_SESSION_TYPE") != "wayland" && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

QColor colorOnScreen(const QPoint &place)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    QVector<QRect> places;
    for (const QScreen *screen : screens)
        places << screen->geometry();
    // grabWindow() turns the place into the screen's pixels and counts it from the screen's corner.
    return colorOnScreens(places, place, [&screens](int screen, const QPoint &inside) {
        return screens[screen]->grabWindow(0, inside.x(), inside.y(), GrabExtent, GrabExtent).toImage();
    });
}

QColor colorOnScreens(const QVector<QRect> &screens, const QPoint &point, const ScreenGrab &grab)
{
    static QColor last;
    const auto shown = std::find_if(screens.begin(), screens.end(),
                                    [&point](const QRect &screen) { return screen.contains(point); });
    if (shown == screens.end())
        return {};
    const QImage picture = grab(int(shown - screens.begin()), point - shown->topLeft());
    if (!picture.isNull() && picture.valid(0, 0))
        last = picture.pixelColor(0, 0);
    return last;
}
