// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tests/bench/Watched.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xdamage.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr double LimitMs = 25000;
constexpr double QuietMs = 700;
constexpr double RestMs = 300;   // of the pointer, so that what hovers has been drawn
constexpr int SmallestSide = 60; // below it a window is a helper of the toolkit
constexpr std::size_t MostPictures = 64;
constexpr double AsGood = 0.99;
constexpr Window OwnBits = 0x1fffff; // of an id; the others name its client

int ignoreErrors(Display *, XErrorEvent *) { return 0; } // windows come and go meanwhile

Window managerBase(Display *display)
{
    Atom type = 0;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char *data = nullptr;
    XGetWindowProperty(display, DefaultRootWindow(display),
                       XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False), 0, 1, False, AnyPropertyType,
                       &type, &format, &count, &left, &data);
    const Window base = data != nullptr && count == 1 ? *reinterpret_cast<Window *>(data) & ~OwnBits : ~0UL;
    if (data != nullptr)
        XFree(data);
    return base;
}

bool showsSomething(const std::vector<uint32_t> &pixels, int width, int height)
{
    const auto at = [&](int x, int y) {
        return pixels[std::size_t(y) * std::size_t(width) + std::size_t(x)];
    };
    const uint32_t first = at(width / 10, height / 10);
    int others = 0;
    for (int y = height / 10; y < height * 9 / 10; ++y)
        for (int x = width / 10; x < width * 9 / 10; ++x)
            others += at(x, y) != first;
    return others >= 20;
}

} // namespace

Watched::Watched(Display *shown, const char *program) : display(shown), managers(managerBase(shown))
{
    int error = 0;
    if (!XDamageQueryExtension(display, &damageEvent, &error))
        std::exit(2);
    XSetErrorHandler(ignoreErrors);
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    XTestFakeMotionEvent(display, -1, DisplayWidth(display, 0) - 20, DisplayHeight(display, 0) - 20, 0);
    XSync(display, True);
    begin = std::chrono::steady_clock::now();
    child = fork();
    if (child == 0) {
        (void)!freopen("/dev/null", "w", stdout);
        (void)!freopen("/dev/null", "w", stderr);
        execl(program, program, static_cast<char *>(nullptr));
        _exit(127);
    }
}

Watched::~Watched()
{
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    XSync(display, True);
}

double Watched::now() const
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

// ---- What reaches the screen

Watched::Other *Watched::other(Window window)
{
    const auto found = std::find_if(others.begin(), others.end(),
                                    [window](const Other &each) { return each.window == window; });
    return found == others.end() ? nullptr : &*found;
}

void Watched::created(const XCreateWindowEvent &event)
{
    if ((event.window & ~OwnBits) == managers || event.width < SmallestSide || event.height < 20)
        return;
    if (candidate != 0 || event.override_redirect) {
        others.push_back({event.window, {}, false});
        return;
    }
    candidate = event.window;
    XDamageCreate(display, candidate, XDamageReportNonEmpty);
}

void Watched::take(const XEvent &event)
{
    if (event.type == CreateNotify) {
        created(event.xcreatewindow);
    } else if (event.type == MapNotify || event.type == UnmapNotify || event.type == DestroyNotify) {
        Other *const known = other(event.xmap.window);
        XWindowAttributes place;
        if (known == nullptr)
            return;
        known->up = event.type == MapNotify;
        if (known->up && XGetWindowAttributes(display, known->window, &place))
            known->area = {short(place.x), short(place.y), static_cast<unsigned short>(place.width),
                           static_cast<unsigned short>(place.height)};
    } else if (event.type == damageEvent + XDamageNotify) {
        XDamageSubtract(display, reinterpret_cast<const XDamageNotifyEvent &>(event).damage, None, None);
        damaged = true;
    }
}

std::vector<uint32_t> Watched::grab() const
{
    std::vector<uint32_t> pixels;
    XImage *const image =
        XGetImage(display, candidate, 0, 0, unsigned(width), unsigned(height), AllPlanes, ZPixmap);
    if (image == nullptr)
        return pixels;
    pixels.resize(std::size_t(width) * std::size_t(height));
    for (int y = 0; y < height; ++y) {
        const auto *const line = reinterpret_cast<const uint32_t *>(image->data + y * image->bytes_per_line);
        std::transform(line, line + width, pixels.begin() + std::ptrdiff_t(y) * width,
                       [](uint32_t pixel) { return pixel & 0xffffff; });
    }
    XDestroyImage(image);
    return pixels;
}

void Watched::lookAtMain(double time)
{
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display, candidate, &attributes) || attributes.map_state != IsViewable)
        return;
    width = attributes.width;
    height = attributes.height;
    std::vector<uint32_t> pixels = grab();
    damaged = false;
    if (pixels.empty() || (pictures.empty() && !showsSomething(pixels, width, height)))
        return;
    lastChange = time;
    if (pictures.size() == MostPictures)
        pictures.pop_back();
    pictures.push_back({time, std::move(pixels)});
}

// Until the deadline, or until nothing has changed for `quiet`.
void Watched::pump(double deadline, double quiet)
{
    for (;;) {
        double time = 0;
        while (XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
            time = now();
            take(event);
        }
        if (damaged && candidate != 0)
            lookAtMain(time > 0 ? time : now());
        const double left = deadline - now();
        if (left <= 0 || (quiet > 0 && !pictures.empty() && now() - lastChange > quiet))
            return;
        pollfd socket{ConnectionNumber(display), POLLIN, 0};
        if (XPending(display) == 0)
            poll(&socket, 1, damaged ? 1 : int(std::min(left, 50.0)) + 1);
    }
}

// The part of the pixels that are equal, where no other window has been meanwhile.
double Watched::alike(const Picture &a, const Picture &b) const
{
    if (a.pixels.size() != b.pixels.size())
        return 0;
    int left = 0;
    int top = 0;
    Window unused = 0;
    XTranslateCoordinates(display, candidate, DefaultRootWindow(display), 0, 0, &left, &top, &unused);
    const auto covered = [&](int x, int y) {
        return std::any_of(others.begin(), others.end(), [&](const Other &each) {
            return x + left >= each.area.x && x + left < each.area.x + each.area.width &&
                   y + top >= each.area.y && y + top < each.area.y + each.area.height;
        });
    };
    std::size_t equal = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const auto at = std::size_t(y) * std::size_t(width) + std::size_t(x);
            equal += a.pixels[at] == b.pixels[at] || covered(x, y);
        }
    return double(equal) / double(a.pixels.size());
}

double Watched::settle()
{
    pump(now() + LimitMs, QuietMs);
    for (const Picture &picture : pictures)
        if (alike(picture, pictures.back()) >= AsGood)
            return picture.time;
    return -1;
}

void Watched::click(int x, int y)
{
    int atX = 0;
    int atY = 0;
    Window unused = 0;
    XTranslateCoordinates(display, candidate, DefaultRootWindow(display), x, y, &atX, &atY, &unused);
    XTestFakeMotionEvent(display, -1, atX, atY, 0);
    XSync(display, False);
    pump(now() + RestMs, 0);
    pictures.clear();
    others.clear();
    begin = std::chrono::steady_clock::now();
    lastChange = 0;
    XTestFakeButtonEvent(display, 1, True, 0);
    XTestFakeButtonEvent(display, 1, False, 0);
    XSync(display, False);
}

void Watched::waitForPopups(double beyond)
{
    const double limit = now() + LimitMs;
    const auto isUp = [](const Other &each) { return each.up; };
    while (std::any_of(others.begin(), others.end(), isUp) && now() < limit)
        pump(now() + 50, 0);
    wait(beyond);
}

void Watched::wait(double time) { pump(now() + time, 0); }

// ---- What the system says of the process

Watched::Memory Watched::memory() const
{
    Memory found{};
    std::ifstream rollup("/proc/" + std::to_string(child) + "/smaps_rollup");
    for (std::string line; std::getline(rollup, line);)
        if (std::sscanf(line.c_str(), "Rss: %ld", &found.rss) != 1)
            std::sscanf(line.c_str(), "Pss: %ld", &found.pss);
    return found;
}

double Watched::processorTime() const
{
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(child, &clock) == 0)
        clock_gettime(clock, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

std::map<std::string, uint64_t> Watched::sleeps() const
{
    std::map<std::string, uint64_t> found;
    std::error_code gone;
    for (const auto &task :
         std::filesystem::directory_iterator("/proc/" + std::to_string(child) + "/task", gone)) {
        std::string name;
        std::getline(std::ifstream(task.path() / "comm") >> std::ws, name);
        name += task.path().filename() == std::to_string(child) ? " (main)" : "";
        std::ifstream status(task.path() / "status");
        for (std::string line; std::getline(status, line);) {
            unsigned long long count = 0;
            if (std::sscanf(line.c_str(), "voluntary_ctxt_switches: %llu", &count) == 1)
                found[name] += count;
        }
    }
    return found;
}
