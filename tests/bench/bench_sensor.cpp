// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What an edit on the sensor page costs, with the real windows on an emulated mouse: reports on the wire,
// the time from a click to the changed byte in the flash, and how long one event holds the main thread while
// the DPI slider is dragged over its whole range.
#include "sensor/Sensor.h"
#include "sensor/SensorRate.h"
#include "tests/e2e/Program.h"

#include <QMouseEvent>
#include <QSlider>
#include <QToolButton>
#include <algorithm>
#include <benchmark/benchmark.h>

namespace
{

const char Scenario[] = "usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot 0006 "
                        "receiverboot 0007\n"
                        "mouse m cid 18 mid 6 version 1.05 battery 80\n"
                        "receiver r class 8k mouse m version 1.02 address a10001\n"
                        "plug r\n";

// Knows how long the longest event held the main thread, all that it led to included.
class TimedApplication : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (inside)
            return QApplication::notify(receiver, event);
        inside = true;
        QElapsedTimer timer;
        timer.start();
        const bool taken = QApplication::notify(receiver, event);
        longest = std::max(longest, timer.nsecsElapsed());
        inside = false;
        return taken;
    }

    qint64 longest = 0; // nanoseconds

private:
    bool inside = false;
};

TimedApplication *application() { return static_cast<TimedApplication *>(qApp); }

template <typename Condition> bool waitFor(Condition condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > 10000)
            return false;
        QCoreApplication::processEvents();
    }
    return true;
}

// The program on its sensor page.
class World
{
public:
    World()
    {
        program.open(QStringLiteral("r"));
        program.click("SensorButton");
        const QString missing = program.script.run();
        if (!missing.isEmpty())
            qFatal("%s", qPrintable(missing));
        page = program.window->findChild<Sensor *>();
        slider = page->findChild<QSlider *>(QStringLiteral("horizontalSliderC"));
    }
    FlashImage flash() { return program.bus.flash("m"); }
    uint64_t writes() { return program.bus.emulated.reportCount("r", wire::Command::FlashWrite); }
    uint64_t questions() { return program.bus.emulated.reportCount("r", wire::Command::OnLine); }
    void setPace(bool on) { program.bus.order(on ? "pace on" : "pace off"); }

    Program program;
    Sensor *page = nullptr;
    QSlider *slider = nullptr;
};

World &world()
{
    static auto *const instance = new World;
    return *instance;
}

double perIteration(uint64_t count, const benchmark::State &state)
{
    return double(count) / double(state.iterations());
}

void clickReachesTheFlash(benchmark::State &state)
{
    World &place = world();
    auto *const rates = place.page->findChild<SensorRate *>();
    place.setPace(state.range(0) != 0);
    const uint64_t writes = place.writes();
    const uint64_t questions = place.questions();
    int index = Rate1000;
    for (auto _ : state) {
        index = index == Rate1000 ? Rate1000 - 1 : Rate1000;
        QTest::mouseClick(rates->button(index), Qt::LeftButton);
        const uint8_t code = RateRows[std::size_t(index)].code;
        if (!waitFor([&] { return place.flash().ReportRate == code; }))
            state.SkipWithError("the byte did not change");
    }
    state.counters["writes"] = perIteration(place.writes() - writes, state);
    state.counters["questions"] = perIteration(place.questions() - questions, state);
    place.setPace(false);
}

void sendMouse(QWidget *widget, QEvent::Type type, int x, Qt::MouseButtons buttons)
{
    const QPoint point(x, widget->height() / 2);
    QMouseEvent event(type, point, widget->mapToGlobal(point), Qt::LeftButton, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
    QCoreApplication::processEvents(); // what it painted, and what the device said
}

// One pixel after the other from end to end, with a pause behind each.
void drag(QSlider *slider, int pauseUs)
{
    sendMouse(slider, QEvent::MouseButtonPress, 0, Qt::LeftButton);
    for (int x = 1; x < slider->width(); ++x) {
        sendMouse(slider, QEvent::MouseMove, x, Qt::LeftButton);
        if (pauseUs > 0)
            usleep(useconds_t(pauseUs));
    }
    sendMouse(slider, QEvent::MouseButtonRelease, slider->width() - 1, Qt::NoButton);
}

void dragOverTheWholeRange(benchmark::State &state)
{
    World &place = world();
    place.setPace(true);
    const int stage = place.flash().CurrentDpiStage;
    const uint64_t writes = place.writes();
    application()->longest = 0;
    for (auto _ : state) {
        place.slider->setValue(place.slider->minimum());
        drag(place.slider, int(state.range(0)));
        const int code = place.slider->value() / 50 - 1;
        if (!waitFor([&] { return place.flash().DpiStages[stage].LevelX == uint8_t(code); }))
            state.SkipWithError("the last value was not written");
    }
    state.counters["longest_ms"] = double(application()->longest) / 1e6;
    state.counters["moves"] = place.slider->width() - 1;
    state.counters["writes"] = perIteration(place.writes() - writes, state);
    place.setPace(false);
}

BENCHMARK(clickReachesTheFlash)
    ->ArgName("paced")
    ->Arg(0)
    ->Arg(1)
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(dragOverTheWholeRange)
    ->ArgName("pause_us")
    ->Arg(0)
    ->Arg(8000)
    ->Iterations(3)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    EmulatedBus::folder(); // before the layer's first call
    QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    setApplicationFolder(QStringLiteral(PRODUCT_DIR));
    prepareStart();
    TimedApplication timed(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    prepareApplication();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::fflush(nullptr);
    _exit(0); // the window stays open for the figures and is not taken down
}
