// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What an edit on the sensor page costs, with the real windows on an emulated mouse whose link takes a
// millisecond for each report: reports on the wire, the time from a click to the changed byte in the flash,
// and how long one event holds the main thread while the DPI slider is dragged over its whole range.
#include "sensor/Sensor.h"
#include "sensor/SensorDPI.h"
#include "tests/bench/TimedApplication.h"
#include "tests/e2e/Program.h"

#include <QComboBox>
#include <QMouseEvent>
#include <QSlider>
#include <algorithm>
#include <benchmark/benchmark.h>

namespace
{

const char Scenario[] = "usb vendor 1209 cable 0001 1k 0002 2k 0003 4k 0004 8k 0005 mouseboot 0006 "
                        "receiverboot 0007\n"
                        "mouse m cid 18 mid 7 version 1.05 battery 80\n"
                        "set m flash 0x01 08\nset m flash 0x0c 01\n"
                        "receiver r class 8k mouse m version 1.02 address a10001\n"
                        "plug r\n";

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
        slider = find<QSlider>("horizontalSliderC");
    }
    template <typename Widget> Widget *find(const char *name) const
    {
        return page->findChild<Widget *>(QLatin1String(name));
    }
    void click(const char *button) const { find<QAbstractButton>(button)->click(); }
    void choose(const char *box, int index) const { find<QComboBox>(box)->setCurrentIndex(index); }
    FlashDataMap flash() { return program.bus.record("m"); }
    uint64_t writes() { return program.bus.emulated.reportCount("r", wire::Command::FlashWrite); }
    uint64_t questions() { return program.bus.emulated.reportCount("r", wire::Command::OnLine); }
    void setPace(bool on) { program.bus.order(on ? "pace on" : "pace off"); }

    Program program{Scenario};
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

// An edit that each time changes what the one before it left: `odd` tells the two apart.
struct Edit {
    const char *name;
    void (*act)(const World &place, bool odd);
    bool odd = false;
};
Edit Edits[] = {
    {"rate", [](const World &place, bool odd) { place.click(odd ? "Button500HZ" : "Button1000HZ"); }},
    {"mode", [](const World &place, bool odd) { place.choose("ModelChoose", odd); }},
    {"lift-off", [](const World &place, bool odd) { place.choose("LOD", odd ? 2 : 1); }},
    {"performance", [](const World &place, bool) { place.click("Performance"); }},
    {"time", [](const World &place, bool odd) { place.choose("PerformanceOpen", odd); }},
    {"switch", [](const World &place, bool) { place.click("MotionSync_2"); }},
    {"stage", [](const World &place, bool odd) { place.click(odd ? "RedButton" : "BlueButton"); }},
    {"dpi", [](const World &place, bool odd) { place.click(odd ? "ReduceLevelA" : "AddLevelA"); }},
    {"colour", [](const World &place,
                  bool odd) { place.find<SensorDPI>("SensorDPI")->SetColor(odd ? Qt::red : Qt::cyan); }},
    {"count", [](const World &place, bool odd) { place.choose("ChooseEvent", odd ? 6 : 7); }},
};

// What it costs until the flash holds it.
void editReachesTheFlash(benchmark::State &state, Edit &edit)
{
    World &place = world();
    place.setPace(true);
    const uint64_t writes = place.writes();
    const uint64_t questions = place.questions();
    for (auto _ : state) {
        const FlashDataMap before = place.flash();
        edit.odd = !edit.odd;
        edit.act(place, edit.odd);
        if (!waitFor([&] { return place.program.agrees("m") && !sameBytes(place.flash(), before); }))
            state.SkipWithError("the flash did not change");
    }
    state.counters["writes"] = perIteration(place.writes() - writes, state);
    state.counters["questions"] = perIteration(place.questions() - questions, state);
    place.setPace(false);
}

// The current stage is the last one each time, and changes places with the first.
void stagesChangePlaces(benchmark::State &state)
{
    World &place = world();
    place.setPace(true);
    const uint64_t writes = place.writes();
    uint64_t others = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const uint64_t before = place.writes();
        place.choose("ChooseEvent", 7);
        place.click("LightYellowButton");
        if (!waitFor([&] { return place.flash().CurrentDpiStage == 7 && place.program.agrees("m"); }))
            state.SkipWithError("the stage was not taken");
        others += place.writes() - before;
        state.ResumeTiming();
        place.choose("ChooseEvent", 0);
        if (!waitFor([&] { return place.flash().DpiStageCount == 1 && place.program.agrees("m"); }))
            state.SkipWithError("the stages did not change places");
    }
    state.counters["writes"] = perIteration(place.writes() - writes - others, state);
    place.choose("ChooseEvent", 7);
    place.setPace(false);
}

void sendMouse(QWidget *widget, QEvent::Type type, int x, Qt::MouseButtons buttons)
{
    const QPoint point(x, widget->height() / 2);
    QMouseEvent event(type, point, widget->mapToGlobal(point), Qt::LeftButton, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
    QCoreApplication::processEvents(); // what it painted, and what the device reported
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
    const uint64_t writes = place.writes();
    TimedApplication::instance()->longest = TimedApplication::instance()->longestOwn = 0;
    for (auto _ : state) {
        place.slider->setValue(place.slider->minimum());
        drag(place.slider, int(state.range(0)));
        if (!waitFor([&] { return place.program.agrees("m"); }))
            state.SkipWithError("the last value was not written");
    }
    state.counters["longest_ms"] = TimedApplication::instance()->longest;
    state.counters["own_ms"] = TimedApplication::instance()->longestOwn;
    state.counters["moves"] = place.slider->width() - 1;
    state.counters["writes"] = perIteration(place.writes() - writes, state);
    place.setPace(false);
}

BENCHMARK(stagesChangePlaces)->UseRealTime()->Unit(benchmark::kMicrosecond);
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
    for (Edit &edit : Edits)
        benchmark::RegisterBenchmark((std::string("editReachesTheFlash/") + edit.name).c_str(),
                                     [&edit](benchmark::State &state) { editReachesTheFlash(state, edit); })
            ->UseRealTime()
            ->Unit(benchmark::kMicrosecond);
    benchmark::RunSpecifiedBenchmarks();
    std::fflush(nullptr);
    _exit(0); // the window stays open for the figures and is not taken down
}
