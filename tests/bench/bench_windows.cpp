// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// bench_windows start|pages|lights PAIRS PROGRAM FLOOR
// bench_windows compare PAIRS PROGRAM OTHER
// bench_windows idle|preview PROGRAM
//
// Starts the programs in turn on an empty $DISPLAY with an emulator behind HIDUSB_BUS and prints medians,
// those of the ratios taken pair by pair. start: to the settled window, and the memory 3 s later. pages:
// from a click on the first tile to the settled device page, and from clicks in its column, against the
// floor's start; lights: the same with the page of the lights, on a desktop without motion. compare: two
// starts, memory left out. idle: what wakes up on the open device page. preview: the processor time of the
// page of the lights, whose previews move.
#include "tests/bench/Watched.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

struct Place {
    int x;
    int y;
};
constexpr Place FirstTile{210, 340};
constexpr Place SensorButton{68, 170};
constexpr Place LightsButton{68, 294};
constexpr Place ButtonMain{68, 114};
constexpr Place Nowhere{560, 664}; // of the device page
constexpr double MemoryAfterMs = 3000;
constexpr double IdleMs = 10000;
constexpr double LoadedMs = 1500; // behind the wait for a load

int noWindow()
{
    std::fprintf(stderr, "No window came, or it changed for longer than the limit.\n");
    return 1;
}

double median(std::vector<double> values)
{
    if (values.empty())
        return -1;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// One column for each figure, one entry for each pair.
class Figures
{
public:
    explicit Figures(std::vector<std::string> names) : names(std::move(names)), columns(this->names.size()) {}
    void add(const std::vector<double> &row)
    {
        for (std::size_t i = 0; i < columns.size(); ++i)
            columns[i].push_back(row[i]);
    }
    void print(const char *unit, std::size_t first, std::size_t count) const
    {
        for (std::size_t i = first; i < first + count; ++i)
            std::printf("%-28s %8.2f %s\n", names[i].c_str(), median(columns[i]), unit);
    }

private:
    std::vector<std::string> names;
    std::vector<std::vector<double>> columns;
};

struct Started {
    double time;
    double rss;
    double pss;
};

Started start(Display *display, const char *program, bool withMemory)
{
    Watched watched(display, program);
    const double time = watched.settle();
    if (!withMemory)
        return {time, 1, 1};
    watched.wait(MemoryAfterMs);
    const Watched::Memory memory = watched.memory();
    return {time, double(memory.rss) / 1024, double(memory.pss) / 1024};
}

int starts(Display *display, int pairs, const char *program, const char *floor, bool withMemory)
{
    Figures figures({"first", "second", "first, RSS", "second, RSS", "first, PSS", "second, PSS",
                     "ratio of the times", "ratio of the RSS", "ratio of the PSS"});
    start(display, program, false); // warms the file cache
    start(display, floor, false);
    for (int i = 0; i < pairs; ++i) {
        const Started a = start(display, program, withMemory);
        const Started b = start(display, floor, withMemory);
        if (a.time < 0 || b.time < 0)
            return noWindow();
        figures.add(
            {a.time, b.time, a.rss, b.rss, a.pss, b.pss, a.time / b.time, a.rss / b.rss, a.pss / b.pss});
    }
    figures.print("ms", 0, 2);
    if (withMemory)
        figures.print("MiB", 2, 4);
    figures.print("", 6, withMemory ? 3 : 1);
    return 0;
}

double clickTime(Watched &watched, Place place)
{
    watched.click(place.x, place.y);
    return watched.settle();
}

// To the tiles that stand still.
void letSettle(Watched &watched)
{
    watched.settle();
    watched.wait(500);
}

int pages(Display *display, int pairs, const char *program, const char *floor, Place button)
{
    Figures figures({"tile to device page", "page, first time", "page, second time", "floor's start",
                     "ratio of the tile", "ratio of the first time", "ratio of the second time"});
    start(display, floor, false);
    for (int i = 0; i < pairs; ++i) {
        double tile = 0, first = 0, second = 0;
        {
            Watched watched(display, program);
            letSettle(watched);
            tile = clickTime(watched, FirstTile);
            watched.waitForPopups(LoadedMs);
            first = clickTime(watched, button);
            clickTime(watched, ButtonMain);
            second = clickTime(watched, button);
        }
        const double ground = start(display, floor, false).time;
        if (tile < 0 || first < 0 || second < 0 || ground < 0)
            return noWindow();
        figures.add({tile, first, second, ground, tile / ground, first / ground, second / ground});
    }
    figures.print("ms", 0, 4);
    figures.print("", 4, 3);
    return 0;
}

int idle(Display *display, const char *program)
{
    Watched watched(display, program);
    letSettle(watched);
    if (clickTime(watched, FirstTile) < 0)
        return noWindow();
    watched.waitForPopups(LoadedMs);
    clickTime(watched, Nowhere);
    watched.wait(MemoryAfterMs);
    const auto before = watched.sleeps();
    watched.wait(IdleMs);
    for (const auto &[name, count] : watched.sleeps()) {
        const auto known = before.find(name);
        std::printf("%-28s %4llu wake-ups in %.0f s\n", name.c_str(),
                    static_cast<unsigned long long>(count - (known == before.end() ? 0 : known->second)),
                    IdleMs / 1000);
    }
    return 0;
}

int preview(Display *display, const char *program)
{
    Watched watched(display, program);
    letSettle(watched);
    if (clickTime(watched, FirstTile) < 0)
        return noWindow();
    watched.waitForPopups(LoadedMs);
    for (const auto &[name, place] : {std::pair("buttons", ButtonMain), {"lights", LightsButton}}) {
        watched.click(place.x, place.y);
        watched.wait(LoadedMs);
        const double before = watched.processorTime();
        watched.wait(IdleMs);
        std::printf("%-28s %8.2f ms of processor time per second\n", name,
                    (watched.processorTime() - before) / IdleMs * 1000);
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    Display *const display = XOpenDisplay(nullptr);
    const std::string what = argc > 1 ? argv[1] : "";
    const int pairs = argc == 5 ? std::atoi(argv[2]) : 0;
    if (display != nullptr && what == "idle" && argc == 3)
        return idle(display, argv[2]);
    if (display != nullptr && pairs > 0 && what == "pages")
        return pages(display, pairs, argv[3], argv[4], SensorButton);
    if (display != nullptr && pairs > 0 && what == "lights")
        return pages(display, pairs, argv[3], argv[4], LightsButton);
    if (display != nullptr && what == "preview" && argc == 3)
        return preview(display, argv[2]);
    if (display != nullptr && pairs > 0 && (what == "start" || what == "compare"))
        return starts(display, pairs, argv[3], argv[4], what == "start");
    std::fprintf(stderr,
                 "usage, on an empty display: bench_windows start|pages|lights|compare PAIRS PROGRAM FLOOR\n"
                 "                            bench_windows idle|preview PROGRAM\n");
    return 2;
}
