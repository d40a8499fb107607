// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/Scale.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <memory>
#include <unistd.h>

#include "environment/XDisplay.h"
#include <X11/extensions/Xrandr.h>

namespace
{

constexpr int WidthOfOneScale = 1920;

struct ResourcesFreer {
    void operator()(XRRScreenResources *resources) const { XRRFreeScreenResources(resources); }
};
struct OutputFreer {
    void operator()(XRROutputInfo *output) const { XRRFreeOutputInfo(output); }
};
struct CrtcFreer {
    void operator()(XRRCrtcInfo *crtc) const { XRRFreeCrtcInfo(crtc); }
};

int outputWidth(Display *display, XRRScreenResources *resources, RROutput id)
{
    const std::unique_ptr<XRROutputInfo, OutputFreer> output(XRRGetOutputInfo(display, resources, id));
    if (!output || output->crtc == None)
        return 0;
    const std::unique_ptr<XRRCrtcInfo, CrtcFreer> crtc(XRRGetCrtcInfo(display, resources, output->crtc));
    return crtc && crtc->mode != None ? int(crtc->width) : 0;
}

int randrWidth(Display *display)
{
    int event = 0;
    int error = 0;
    int major = 0;
    int minor = 0;
    if (!XRRQueryExtension(display, &event, &error) || !XRRQueryVersion(display, &major, &minor))
        return 0;
    if (major < 1 || (major == 1 && minor < 3))
        return 0;
    const Window root = DefaultRootWindow(display);
    const std::unique_ptr<XRRScreenResources, ResourcesFreer> resources(
        XRRGetScreenResourcesCurrent(display, root));
    if (!resources)
        return 0;
    const RROutput primary = XRRGetOutputPrimary(display, root);
    int width = primary == None ? 0 : outputWidth(display, resources.get(), primary);
    for (int i = 0; width == 0 && i < resources->noutput; ++i)
        width = outputWidth(display, resources.get(), resources->outputs[i]);
    return width;
}

constexpr char Platform[] = "QT_QPA_PLATFORM";
constexpr char OwnPlatform[] = "MORLEN_OWN_PLATFORM"; // the user's, while the program starts anew
QByteArray ownFactor;                                 // the user's
bool waylandExpected = false;

bool isWayland(const QByteArray &platform) { return platform.startsWith("wayland"); }

bool isWaylandLikely()
{
    const QByteArray platform = qgetenv(Platform);
    if (!platform.isEmpty())
        return isWayland(platform);
    const QDir plugins(QLibraryInfo::location(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    return qgetenv("XDG_SESSION_TYPE") == "wayland" &&
           !plugins.entryList({QStringLiteral("libqwayland*")}, QDir::Files).isEmpty();
}

// What the program starts later takes the user's.
void restorePlatform()
{
    if (!qEnvironmentVariableIsSet(OwnPlatform))
        return;
    const QByteArray own = qgetenv(OwnPlatform);
    qunsetenv(OwnPlatform);
    if (own.isEmpty())
        qunsetenv(Platform);
    else
        qputenv(Platform, own);
}

} // namespace

QByteArray scaleFactorText(int physicalWidth)
{
    if (physicalWidth <= WidthOfOneScale)
        return {};
    const int scale = physicalWidth / WidthOfOneScale; // integer division; the scale has no fractions
    return QByteArray::number(double(scale), 'g', 6);
}

int physicalDesktopWidth()
{
    const QuietErrors quiet;
    const XDisplay display = openDisplay();
    if (!display)
        return 0;
    const int width = randrWidth(display.get());
    return width > 0 ? width : DisplayWidth(display.get(), DefaultScreen(display.get()));
}

void applyScaleFactor()
{
    ownFactor = qgetenv("QT_SCALE_FACTOR");
    waylandExpected = isWaylandLikely();
    const QByteArray factor = waylandExpected ? QByteArray() : scaleFactorText(physicalDesktopWidth());
    if (!factor.isEmpty())
        qputenv("QT_SCALE_FACTOR", factor);
}

void correctScaleFactor(const QString &platform, char *const *arguments)
{
    restorePlatform();
    if (isWayland(platform.toLatin1()) == waylandExpected ||
        scaleFactorText(physicalDesktopWidth()).isEmpty())
        return;
    qputenv(OwnPlatform, qgetenv(Platform));
    qputenv(Platform, platform.toLatin1()); // it is what is expected then
    if (ownFactor.isNull())
        qunsetenv("QT_SCALE_FACTOR");
    else
        qputenv("QT_SCALE_FACTOR", ownFactor);
    execv(QFile::encodeName(QCoreApplication::applicationFilePath()).constData(), arguments);
    restorePlatform(); // it goes on at the wrong scale
}
