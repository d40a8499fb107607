// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tests/widget/app/EditRows.h"

#include "binding/DebounceTime.h"
#include "lighting/LampLight.h"
#include "lighting/LightTables.h"
#include "lighting/SensorEffect.h"
#include "sensor/Advanced.h"
#include "sensor/StopCloseTime.h"

#include <QColorDialog>

using namespace edits;

const Host edits::SensorHost = {
    []() -> Page { return std::make_unique<Sensor>(); },
    [](QWidget *page, const FlashDataMap &map) { static_cast<Sensor *>(page)->SlotUpDataSenSorUIB(map); }};

namespace
{

const Host AdvancedHost = {[]() -> Page { return std::make_unique<Advanced>(); },
                           [](QWidget *page, const FlashDataMap &map) {
                               static_cast<Advanced *>(page)->SlotUpDataSenSorUIB(map);
                               static_cast<Advanced *>(page)->SlotFormB();
                           }};
const Host LightHost = {[]() -> Page { return std::make_unique<LampLight>(); },
                        [](QWidget *page, const FlashDataMap &map) {
                            static_cast<LampLight *>(page)->SlotUpDataLightUILight(map);
                        }};
const Host DebounceHost = {[]() -> Page { return std::make_unique<DebounceTime>(); },
                           [](QWidget *page, const FlashDataMap &map) {
                               static_cast<DebounceTime *>(page)->SetDebounce(map.DebounceTime);
                           }};

// ---- What a user does to a control

void click(QWidget *button)
{
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(9, button->height() / 2));
}

Act key(Qt::Key pressed)
{
    return [pressed](QWidget *control) { QTest::keyClick(control, pressed); };
}

// By a key where one key leads there.
Act choose(int index)
{
    return [index](QWidget *control) {
        auto *box = static_cast<QComboBox *>(control);
        const int from = box->currentIndex();
        const int pressed = index == from + 1           ? Qt::Key_Down
                            : index == from - 1         ? Qt::Key_Up
                            : index == from             ? 0
                            : index == 0                ? Qt::Key_Home
                            : index + 1 == box->count() ? Qt::Key_End
                                                        : 0;
        if (pressed) {
            QTest::keyClick(box, Qt::Key(pressed));
            return;
        }
        box->setCurrentIndex(index);
        emit box->activated(index);
    };
}

Act setTo(int value)
{
    return [value](QWidget *slider) { static_cast<QSlider *>(slider)->setValue(value); };
}

Act typeIn(int value)
{
    return [value](QWidget *box) {
        static_cast<QSpinBox *>(box)->selectAll();
        QTest::keyClicks(box, QString::number(value));
        QTest::keyClick(box, Qt::Key_Return);
    };
}

Act slideTo(int value)
{
    return [value](QWidget *control) {
        auto *slider = static_cast<QSlider *>(control);
        slider->setSliderDown(true);
        slider->setSliderPosition(value);
        slider->setSliderDown(false);
    };
}

void dragToTheEnd(QWidget *slider)
{
    Pointer pointer(slider);
    const int end = slider->width() + 10;
    int x = pointer.ownX();
    pointer.press(x);
    for (; x < end; x += 10)
        pointer.move(x);
    pointer.move(end);
    pointer.release(end);
}

void dragMarker(QWidget *marker)
{
    QWindow *window = marker->window()->windowHandle();
    const QPoint from = marker->mapTo(marker->window(), marker->rect().center());
    const QPoint to = from + QPoint(2 * 91, 0);
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    QTest::mouseMove(window, (from + to) / 2);
    QTest::mouseMove(window, to);
    QTest::mouseRelease(window, Qt::LeftButton, {}, to);
}

void pickColor(QWidget *bar)
{
    click(bar);
    auto *picker = bar->parentWidget()->findChild<QColorDialog *>();
    picker->setCurrentColor(QColor(1, 22, 133));
    picker->accept();
}

// ---- The rows

Change set(uint8_t FlashDataMap::*field, int value)
{
    return [=](FlashDataMap &map) { map.*field = uint8_t(value); };
}
Change light(int mode, int speed, int brightness)
{
    return [=](FlashDataMap &map) {
        map.DpiLedMode = uint8_t(mode == 0 ? map.DpiLedMode : mode);
        map.DpiLedEnable = mode > 0;
        map.DpiLedSpeed = uint8_t(speed);
        map.DpiLedBrightness = BrightnessCurve[std::size_t(brightness - 1)];
    };
}
// The light of the mouse, with a colour of its own in each channel.
Change bar(int mode, int speed = 3, int brightness = 3, int red = 10, int green = 20, int blue = 30)
{
    return [=](FlashDataMap &map) {
        map.LedBarMode = uint8_t(mode);
        map.LedBarEnable = 1;
        map.LedBarSpeed = uint8_t(speed);
        map.LedBarBrightness = uint8_t(brightness);
        map.LedBarRed = uint8_t(red);
        map.LedBarGreen = uint8_t(green);
        map.LedBarBlue = uint8_t(blue);
    };
}
Change angle(int degrees)
{
    return [=](FlashDataMap &map) {
        map.AngleSet = uint8_t(degrees);
        map.AngleSetValid = 1;
    };
}
Change level(int code, int flags = 0)
{
    return [=](FlashDataMap &map) {
        map.DpiStages[1].LevelX = map.DpiStages[1].LevelY = uint8_t(code);
        map.DpiStages[1].LevelFlags = uint8_t(flags);
    };
}

void addSensorRows(std::vector<EditRow> &rows)
{
    const Busy busy = &SensorPageBusy;
    const auto add = [&](const char *name, const QByteArray &control, const Act &act, const Change &written) {
        rows.push_back({name, &SensorHost, control, act, written, busy});
        return &rows.back();
    };
    add("mode", "ModelChoose", choose(1), set(&FlashDataMap::ModelChoose, 1));
    add("performance", "Performance", click, set(&FlashDataMap::Performance, 0))->busy = nullptr;
    for (int i = 0; i < ShownPerformanceTimes; ++i)
        if (PerformanceTimes[std::size_t(i)] != 6)
            add("time", "PerformanceOpen", choose(i),
                set(&FlashDataMap::PerformanceOpen, PerformanceTimes[std::size_t(i)]));
    for (const RateRow &rate : RateRows) {
        const QByteArray button = "Button" + QByteArray::number(rate.hertz) + "HZ";
        add("rate", button, click, set(&FlashDataMap::ReportRate, rate.code))->start =
            set(&FlashDataMap::ReportRate, rate.code == 2 ? 4 : 2);
    }
    for (const int heights : {2, 3}) {
        const std::vector<int> codes = heights == 2 ? std::vector<int>{1, 2} : std::vector<int>{3, 1, 2};
        for (int from = 0; from < heights; ++from)
            for (int to = 0; to < heights; ++to)
                if (to != from) {
                    EditRow *row = add("lift-off", "LOD", choose(to),
                                       set(&FlashDataMap::LiftOffDistance, codes[std::size_t(to)]));
                    row->start = set(&FlashDataMap::LiftOffDistance, codes[std::size_t(from)]);
                    row->model = heights == 2 ? M3395 : M3950;
                }
    }
    const struct {
        const char *name;
        uint8_t FlashDataMap::*field;
    } switches[] = {{"RippeControl_2", &FlashDataMap::RippeControl},
                    {"StraightLine_2", &FlashDataMap::StraightLine},
                    {"MotionSync_2", &FlashDataMap::MotionSync}};
    for (const auto &each : switches)
        for (const int on : {0, 1})
            for (const Act &act : {Act(click), key(Qt::Key_Space)})
                add("switch", each.name, act, set(each.field, !on))->start = set(each.field, on);
    add("stage", "YellowButton", click, set(&FlashDataMap::CurrentDpiStage, 3));
    for (const int count : {4, 5}) {
        EditRow *row =
            add("count", "ChooseEvent", choose(count - 1), set(&FlashDataMap::DpiStageCount, count));
        row->notices = 0;
        row->asks = true;
    }
    EditRow *row = add("exchange", "ChooseEvent", choose(0), [](FlashDataMap &map) {
        std::swap(map.DpiStages[0], map.DpiStages[1]);
        map.CurrentDpiStage = 0;
        map.DpiStageCount = 1;
    });
    row->notices = 0;
    row->asks = true;
    row = add("color", "BrightRedButtonA", pickColor, [](FlashDataMap &map) {
        map.DpiStages[1].Red = 1;
        map.DpiStages[1].Green = 22;
        map.DpiStages[1].Blue = 133;
    });
    row->notices = 0;
    row->asks = true;
    row = add("marker", "label_8", dragMarker, set(&FlashDataMap::CurrentDpiStage, 3));
    row->notices = 0;
    row->asks = true;
    add("DPI up", "AddLevelA", click, level(16))->asks = true;
    add("DPI down", "ReduceLevelA", click, level(14))->asks = true;
    add("DPI key", "horizontalSliderC", key(Qt::Key_Right), level(16));
    add("DPI value", "horizontalSliderC", setTo(26000), level(0x07, 0x88));
    row = add("DPI drag", "horizontalSliderC", dragToTheEnd, level(0x07, 0x88));
    row->notices = 0;
    row->asks = row->several = true;
}

void addLightRows(std::vector<EditRow> &rows)
{
    const auto add = [&](const char *name, const QByteArray &control, const Act &act, const Change &written,
                         const Change &start) {
        rows.push_back({name, &LightHost, control, act, written, &SensorPageBusy, start});
        return &rows.back();
    };
    for (const int from : {0, 1, 2})
        for (const int to : {0, 1, 2})
            if (to != from)
                add("light mode", "Model", choose(to), light(to, 3, 3), light(from, 3, 3));
    for (const auto &way : {setTo, slideTo}) {
        const bool moved = way == slideTo; // a slider that is moved asks at each place
        for (int speed = 1; speed <= 5; ++speed)
            add("light speed", "SpeedH", way(speed), light(2, speed, 3), light(2, speed == 1 ? 3 : 1, 3))
                ->asks = moved;
        for (int value = 1; value <= 10; ++value)
            add("brightness", "LightH", way(value), light(1, 3, value), light(1, 3, value == 1 ? 3 : 1))
                ->asks = moved;
    }
    add("light speed key", "SpeedH", key(Qt::Key_Right), light(2, 2, 3), light(2, 1, 3));
    add("brightness key", "LightH", key(Qt::Key_Right), light(1, 3, 2), light(1, 3, 1));
    for (EditRow *row : {add("light speed drag", "SpeedH", dragToTheEnd, light(2, 5, 3), light(2, 2, 3)),
                         add("brightness drag", "LightH", dragToTheEnd, light(1, 3, 10), light(1, 3, 4))})
        row->asks = row->several = true;
}

void addMouseLightRows(std::vector<EditRow> &rows)
{
    const auto add = [&](const char *name, const QByteArray &control, const Act &act, const Change &written,
                         const Change &start) {
        rows.push_back({name, &LightHost, control, act, written, &LightPageBusy, start});
        return &rows.back();
    };
    for (int to = 1; to < LightModeCount; ++to)
        add("mouse light", "LightMod", choose(to), bar(to), bar(to == 1 ? 2 : to - 1));
    for (const auto &way : {setTo, slideTo})
        for (const int value : {1, 6, LightScaleTop}) {
            const bool moved = way == slideTo;
            add("mouse brightness", "horizontalLight", way(value), bar(2, 3, value - 1), bar(2, 3, 3))->asks =
                moved;
            add("mouse speed", "horizontalSpeed", way(value), bar(2, value - 1, 3), bar(2, 3, 3))->asks =
                moved;
        }
    add("mouse brightness key", "horizontalLight", key(Qt::Key_Right), bar(2, 3, 4), bar(2, 3, 3));
    add("mouse speed key", "horizontalSpeed", key(Qt::Key_Left), bar(2, 2, 3), bar(2, 3, 3));
    for (EditRow *row :
         {add("mouse brightness drag", "horizontalLight", dragToTheEnd, bar(2, 3, 9), bar(2, 3, 3)),
          add("mouse speed drag", "horizontalSpeed", dragToTheEnd, bar(2, 9, 3), bar(2, 3, 3))})
        row->asks = row->several = true;
    for (const int on : {0, 1})
        add("moving off", "RippeControl", click, set(&FlashDataMap::LightRippeControl, !on),
            set(&FlashDataMap::LightRippeControl, on));
    // A record that is shown blocks the signals of the boxes, and these ask for no flag.
    const auto addColor = [&](const char *name, const QByteArray &control, const Act &act,
                              const Change &written) {
        EditRow *row = add(name, control, act, written, bar(2));
        row->busy = nullptr;
        return row;
    };
    addColor("red", "RSpinBox", typeIn(200), bar(2, 3, 3, 200));
    addColor("green", "GSpinBox", typeIn(0), bar(2, 3, 3, 10, 0));
    addColor("blue", "BSpinBox", typeIn(255), bar(2, 3, 3, 10, 20, 255));
    addColor("more red", "AddR", click, bar(2, 3, 3, 11));
    addColor("less red", "ReduceR", click, bar(2, 3, 3, 9));
    addColor("more green", "AddG", click, bar(2, 3, 3, 10, 21));
    addColor("less green", "ReduceG", click, bar(2, 3, 3, 10, 19));
    addColor("more blue", "AddB", click, bar(2, 3, 3, 10, 20, 31));
    addColor("less blue", "ReduceB", click, bar(2, 3, 3, 10, 20, 29));
    for (const Preset &preset : Presets) {
        const auto apart = uint8_t(preset.green + 1); // so that one channel changes
        add("preset", QByteArray("toolButtonColor") + preset.letter, click,
            bar(2, 3, 3, preset.red, preset.green, preset.blue), bar(2, 3, 3, preset.red, apart, preset.blue))
            ->busy = nullptr;
    }
}

void addAdvancedRows(std::vector<EditRow> &rows)
{
    const auto add = [&](const char *name, const QByteArray &control, const Act &act, const Change &written,
                         const Change &start) {
        rows.push_back({name, &AdvancedHost, control, act, written, &SensorPageBusy, start});
        return &rows.back();
    };
    add("angle", "AngleSet", setTo(20), angle(20), angle(-12));
    add("angle key", "AngleSet", key(Qt::Key_Left), angle(-13), angle(-12));
    add("angle drag", "AngleSet", dragToTheEnd, angle(30), angle(-12))->several = true;
    for (const int on : {0, 1}) {
        EditRow *row =
            add("frame rate", "KFPS", click, set(&FlashDataMap::KFps, !on), set(&FlashDataMap::KFps, on));
        row->busy = nullptr;
        row->armed = false;
    }
    for (int i = 0; i < SleepItems; ++i)
        add("sleep time", "StopClose", choose(i),
            set(&FlashDataMap::StopCloseTime, SleepCodes[std::size_t(i)]),
            set(&FlashDataMap::StopCloseTime, SleepCodes[4]))
            ->busy = &ButtonPageBusy;
    EditRow *row = add(
        "long range", "checkBox", click, [](FlashDataMap &) {}, [](FlashDataMap &) {});
    row->busy = nullptr;
    row->receiver = true;
}

} // namespace

std::vector<EditRow> edits::allRows()
{
    std::vector<EditRow> rows;
    rows.reserve(512);
    addSensorRows(rows);
    addLightRows(rows);
    addMouseLightRows(rows);
    addAdvancedRows(rows);
    for (int from = 0; from < DebounceItems; ++from)
        for (int to = 0; to < DebounceItems; ++to)
            if (to != from)
                rows.push_back({"debounce time", &DebounceHost, "Debunce", choose(to),
                                set(&FlashDataMap::DebounceTime, to), nullptr,
                                set(&FlashDataMap::DebounceTime, from)});
    return rows;
}
