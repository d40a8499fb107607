// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// bench_start PAIRS PROGRAM FLOOR: starts the two in turn on $DISPLAY and prints the time from the start
// of the process to its first window that shows something, and the ratio pair by pair.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;
constexpr int LimitMs = 20000;
constexpr int SmallestSide = 60; // below it a window is a helper of the toolkit

double since(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

int ignoreErrors(Display *, XErrorEvent *) { return 0; } // windows come and go meanwhile

// True when the window's inner part is not of one colour.
bool showsSomething(Display *display, Window window)
{
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display, window, &attributes) || attributes.map_state != IsViewable ||
        attributes.width < SmallestSide || attributes.height < 20)
        return false;
    XImage *const image = XGetImage(display, window, 0, 0, unsigned(attributes.width),
                                    unsigned(attributes.height), AllPlanes, ZPixmap);
    if (image == nullptr)
        return false;
    const unsigned long first = XGetPixel(image, image->width / 10, image->height / 10);
    int others = 0;
    for (int y = image->height / 10; y < image->height * 9 / 10; ++y)
        for (int x = image->width / 10; x < image->width * 9 / 10; ++x)
            others += XGetPixel(image, x, y) != first;
    XDestroyImage(image);
    return others >= 20;
}

bool anyShowsSomething(Display *display, Window window, int depth)
{
    if (depth > 0 && showsSomething(display, window))
        return true;
    Window root, parent, *children = nullptr;
    unsigned count = 0;
    if (depth > 2 || !XQueryTree(display, window, &root, &parent, &children, &count))
        return false;
    bool found = false;
    for (unsigned i = 0; i < count && !found; ++i)
        found = anyShowsSomething(display, children[i], depth + 1);
    if (children != nullptr)
        XFree(children);
    return found;
}

std::optional<double> startOnce(Display *display, const char *program)
{
    const Clock::time_point start = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        (void)!freopen("/dev/null", "w", stderr);
        execl(program, program, static_cast<char *>(nullptr));
        _exit(127);
    }
    std::optional<double> time;
    while (!time && since(start) < LimitMs) {
        if (anyShowsSomething(display, DefaultRootWindow(display), 0))
            time = since(start);
        else
            usleep(500);
    }
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    while (anyShowsSomething(display, DefaultRootWindow(display), 0) && since(start) < LimitMs)
        usleep(1000);
    return time;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    Display *const display = XOpenDisplay(nullptr);
    const int pairs = argc == 4 ? std::atoi(argv[1]) : 0;
    if (display == nullptr || pairs < 1) {
        std::fprintf(stderr, "usage, on an empty display: bench_start PAIRS PROGRAM FLOOR\n");
        return 2;
    }
    XSetErrorHandler(ignoreErrors);
    std::vector<double> program, floor, ratio;
    startOnce(display, argv[2]); // warms the file cache
    startOnce(display, argv[3]);
    for (int i = 0; i < pairs; ++i) {
        const std::optional<double> a = startOnce(display, argv[2]);
        const std::optional<double> b = startOnce(display, argv[3]);
        if (!a || !b) {
            std::fprintf(stderr, "no window came\n");
            return 1;
        }
        program.push_back(*a);
        floor.push_back(*b);
        ratio.push_back(*a / *b);
    }
    std::printf("program %.1f ms, floor %.1f ms, ratio %.2f (medians of %d pairs)\n", median(program),
                median(floor), median(ratio), pairs);
    return 0;
}
