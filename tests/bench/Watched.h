// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Watched: a program that was started on $DISPLAY and is looked at from outside, by what reaches the
// screen. A span begins with the start or with a click and ends when the main window is quiet; its time is
// that of the first picture which is as good as the last one. What other windows cover does not count.
// Times in milliseconds. One thread.
#pragma once

#include <X11/Xlib.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

class Watched
{
public:
    struct Memory {
        long rss; // KiB
        long pss;
    };

    Watched(Display *display, const char *program);
    ~Watched(); // asks the program to end, and waits
    Watched(const Watched &) = delete;
    Watched &operator=(const Watched &) = delete;

    // The time of the span; less than 0 when no window came.
    double settle();
    // Presses the left button at a place of the main window, where the pointer has rested. A new span.
    void click(int x, int y);
    // Until no other window of the program is up, and that long beyond.
    void waitForPopups(double beyond);
    void wait(double time);

    Memory memory() const;
    double processorTime() const; // of all its threads since its start
    // Times that each thread went to sleep, by its name.
    std::map<std::string, uint64_t> sleeps() const;

private:
    struct Other { // a notice, or a list that is open
        Window window;
        XRectangle area;
        bool up;
    };
    struct Picture {
        double time;
        std::vector<uint32_t> pixels;
    };

    double now() const;
    void pump(double deadline, double quiet);
    void take(const XEvent &event);
    void created(const XCreateWindowEvent &event);
    void lookAtMain(double time);
    std::vector<uint32_t> grab() const;
    double alike(const Picture &a, const Picture &b) const;
    Other *other(Window window);

    Display *const display;
    int damageEvent = 0;
    Window managers = 0; // what the window manager's own windows have in common
    pid_t child = -1;
    std::chrono::steady_clock::time_point begin;
    Window candidate = 0; // the first window of the program that it leaves to the manager
    int width = 0;
    int height = 0;
    bool damaged = false;
    double lastChange = 0;
    std::vector<Other> others;
    std::vector<Picture> pictures;
};
