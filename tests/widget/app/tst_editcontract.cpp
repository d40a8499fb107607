// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The rule of an edit, for every control that writes: it writes its bytes and no others; a mouse that does
// not answer gets nothing, and the control goes back; unarmed or busy, nothing is written. And the sliders
// across a loss of the mouse in the middle of a press.
#include "binding/DebounceTime.h"
#include "lighting/LampLight.h"
#include "lighting/LightTables.h"
#include "lighting/SensorEffect.h"
#include "presentation/Notices.h"
#include "sensor/Advanced.h"
#include "sensor/StopCloseTime.h"
#include "tests/support/TestMain.h"
#include "tests/widget/app/Wheel.h"
#include "tests/widget/sensor/SensorFixture.h"

#include <QColorDialog>

namespace
{

using Change = std::function<void(FlashDataMap &map)>;
using Act = std::function<void(QWidget *control)>;
using Busy = std::atomic<bool> *;

// ---- Pages, each with a record shown

using Page = std::unique_ptr<QWidget>;
struct Host {
    Page (*make)();
    void (*paint)(QWidget *page, const FlashDataMap &map);
};
const Host SensorHost = {
    []() -> Page { return std::make_unique<Sensor>(); },
    [](QWidget *page, const FlashDataMap &map) { static_cast<Sensor *>(page)->SlotUpDataSenSorUIB(map); }};
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

// A pointer on a slider, in the coordinates of its window.
class Pointer
{
public:
    explicit Pointer(QWidget *widget)
        : slider_(static_cast<QSlider *>(widget)), window_(slider_->window()->windowHandle())
    {
    }
    // Where a press leaves the value as it is.
    int ownX() const
    {
        const int span = slider_->maximum() - slider_->minimum();
        const int x = slider_->width() * (slider_->value() - slider_->minimum()) / span;
        return qBound(1, x + 1, slider_->width() - 2);
    }
    void press(int x) { QTest::mousePress(window_, Qt::LeftButton, {}, at(x)); }
    void move(int x) { QTest::mouseMove(window_, at(x)); }
    void release(int x) { QTest::mouseRelease(window_, Qt::LeftButton, {}, at(x)); }
    // Without a button; a style or a later change may ask for such moves.
    void hover(int x)
    {
        slider_->setMouseTracking(true);
        move(x);
        slider_->setMouseTracking(false);
    }

private:
    QPoint at(int x) const { return slider_->mapTo(slider_->window(), QPoint(x, slider_->height() / 2)); }

    QSlider *slider_;
    QWindow *window_;
};

// Ways in which a pressed slider misses its release.
const struct {
    const char *name;
    void (*lose)(QWidget *slider, const std::function<void()> &release);
} losses[] = {
    {"behind a modal window",
     [](QWidget *slider, const std::function<void()> &release) {
         QDialog notice(slider->window());
         notice.open();
         release();
     }},
    {"while hidden",
     [](QWidget *slider, const std::function<void()> &release) {
         slider->hide();
         release();
         slider->show();
     }},
    {"in another program",
     [](QWidget *slider, const std::function<void()> &) {
         const QPoint place(slider->width() / 2, slider->height() / 2);
         QMouseEvent move(QEvent::MouseMove, place, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
         QCoreApplication::sendEvent(slider, &move);
     }},
};

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

struct Row {
    QByteArray name;
    const Host *host;
    QByteArray control;
    Act act;
    Change written;
    Busy busy; // the flag under which it writes nothing; none: it asks for no flag
    Change start = [](FlashDataMap &) {};
    int model = M3395;
    int notices = 1;       // of a mouse that does not answer
    bool asks = false;     // the mouse, although nothing is to be written
    bool several = false;  // writes on its way
    bool armed = true;     // writes only when armed
    bool receiver = false; // writes the long-range mode and no record
};

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

void addSensorRows(std::vector<Row> &rows)
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
                    Row *row = add("lift-off", "LOD", choose(to),
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
        Row *row = add("count", "ChooseEvent", choose(count - 1), set(&FlashDataMap::DpiStageCount, count));
        row->notices = 0;
        row->asks = true;
    }
    Row *row = add("exchange", "ChooseEvent", choose(0), [](FlashDataMap &map) {
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

void addLightRows(std::vector<Row> &rows)
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
    for (Row *row : {add("light speed drag", "SpeedH", dragToTheEnd, light(2, 5, 3), light(2, 2, 3)),
                     add("brightness drag", "LightH", dragToTheEnd, light(1, 3, 10), light(1, 3, 4))})
        row->asks = row->several = true;
}

void addMouseLightRows(std::vector<Row> &rows)
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
    for (Row *row :
         {add("mouse brightness drag", "horizontalLight", dragToTheEnd, bar(2, 3, 9), bar(2, 3, 3)),
          add("mouse speed drag", "horizontalSpeed", dragToTheEnd, bar(2, 9, 3), bar(2, 3, 3))})
        row->asks = row->several = true;
    for (const int on : {0, 1})
        add("moving off", "RippeControl", click, set(&FlashDataMap::LightRippeControl, !on),
            set(&FlashDataMap::LightRippeControl, on));
    // A record that is shown blocks the signals of the boxes, and these ask for no flag.
    const auto addColor = [&](const char *name, const QByteArray &control, const Act &act,
                              const Change &written) {
        Row *row = add(name, control, act, written, bar(2));
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

void addAdvancedRows(std::vector<Row> &rows)
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
        Row *row =
            add("frame rate", "KFPS", click, set(&FlashDataMap::KFps, !on), set(&FlashDataMap::KFps, on));
        row->busy = nullptr;
        row->armed = false;
    }
    for (int i = 0; i < SleepItems; ++i)
        add("sleep time", "StopClose", choose(i),
            set(&FlashDataMap::StopCloseTime, SleepCodes[std::size_t(i)]),
            set(&FlashDataMap::StopCloseTime, SleepCodes[4]))
            ->busy = &ButtonPageBusy;
    Row *row = add(
        "long range", "checkBox", click, [](FlashDataMap &) {}, [](FlashDataMap &) {});
    row->busy = nullptr;
    row->receiver = true;
}

std::vector<Row> allRows()
{
    std::vector<Row> rows;
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

// Repeats its step as a slider does under a lasting press.
struct RepeatingSlider : QSlider {
    RepeatingSlider() { setRepeatAction(SliderSingleStepAdd); }
};

} // namespace

class tst_EditContract : public QObject
{
    Q_OBJECT

private:
    const std::vector<Row> rows = allRows();
    FakeHidUsb &fake = FakeHidUsb::instance();
    Page page;
    QTimer closer; // of the warnings of a short debounce time
    int warnings = 0;

    void eachRow() const
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < rows.size(); ++i)
            QTest::addRow("%03d %s", int(i), rows[i].name.constData()) << int(i);
    }
    // The record differs from the page's in what no page here shows, so that a write of the page's own copy
    // does not pass for one of the record.
    static FlashDataMap recordOf(const Row &row)
    {
        FlashDataMap map = editedRecord();
        row.start(map);
        std::memset(map.Untouched17, 0xA5, sizeof map.Untouched17);
        map.KeyBindings[3] = {1, 2, 3};
        return map;
    }
    void paint(const Row &row) const
    {
        FlashDataMap map = editedRecord();
        row.start(map);
        row.host->paint(page.get(), map);
    }
    void open(const Row &row)
    {
        fixture::clean();
        fake.addDevice(fixture::device("dev", uint8_t(6 + row.model), Receiver8K));
        SensorFixture::choose(row.model, Receiver8K);
        page = row.host->make();
        DeviceRecord::edit([&row](FlashDataMap &map) { map = recordOf(row); });
        paint(row);
        page->show();
        QCoreApplication::processEvents();
        fake.clearCalls();
        warnings = 0;
    }
    QWidget *control(const Row &row) const
    {
        auto *found = page->findChild<QWidget *>(QString::fromLatin1(row.control));
        if (!found)
            qFatal("no %s", row.control.constData());
        return found;
    }
    void act(const Row &row) const { row.act(control(row)); }
    // The explanation of a setting follows the focus.
    static bool isHelp(const QWidget *widget)
    {
        return widget->parentWidget() && widget->parentWidget()->inherits("SettingHelp");
    }
    // Everything that the page shows of its values. The colour dialog is a window of its own.
    QStringList state() const
    {
        QStringList all;
        for (const QWidget *widget : page->findChildren<QWidget *>()) {
            if (widget->window() != page->window() || widget->inherits("QTabBar") || isHelp(widget))
                continue;
            const QString name = widget->objectName();
            if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
                all << QStringLiteral("%1 %2 %3").arg(name, button->text()).arg(button->isChecked());
            else if (const auto *box = qobject_cast<const QComboBox *>(widget))
                all << QStringLiteral("%1 %2 %3").arg(name).arg(box->currentIndex()).arg(box->isEnabled());
            else if (const auto *slider = qobject_cast<const QSlider *>(widget))
                all << QStringLiteral("%1 %2").arg(name).arg(slider->value());
            else if (const auto *spin = qobject_cast<const QSpinBox *>(widget))
                all << QStringLiteral("%1 %2").arg(name).arg(spin->value());
            else if (const auto *label = qobject_cast<const QLabel *>(widget))
                all << QStringLiteral("%1 %2 %3").arg(name, label->text()).arg(label->isVisible());
        }
        return all;
    }
    bool longRange() const { return fake.device("dev").longRange; }
    static bool same(const FlashDataMap &a, const FlashDataMap &b) { return !std::memcmp(&a, &b, sizeof a); }
    void expectWritten(const Row &row) const
    {
        FlashDataMap wanted = recordOf(row);
        row.written(wanted);
        QVERIFY(same(DeviceRecord::copy(), wanted));
        QCOMPARE(longRange(), row.receiver);
        if (row.receiver) {
            QVERIFY(fake.updates().empty());
            return;
        }
        QVERIFY(!fake.updates().empty());
        QVERIFY(row.several || fake.updates().size() == 1);
        QVERIFY(same(fake.updates().back(), wanted));
    }
    void expectNothingWritten(const Row &row) const
    {
        QVERIFY(fake.updates().empty());
        QVERIFY(same(DeviceRecord::copy(), recordOf(row)));
        QVERIFY(!longRange());
    }

private slots:
    void initTestCase()
    {
        connect(&closer, &QTimer::timeout, this, [this] {
            if (auto *notice = dynamic_cast<LessThree *>(QApplication::activeModalWidget())) {
                ++warnings;
                notice->on_NewHong_clicked();
            }
        });
        closer.start(1);
    }
    void cleanup() { page.reset(); }

    void itWritesItsBytesAlone_data() { eachRow(); }
    void itWritesItsBytesAlone()
    {
        QFETCH(int, index);
        const Row &row = rows[std::size_t(index)];
        open(row);
        act(row);
        expectWritten(row);
    }

    void aSilentMouseTakesItBack_data() { eachRow(); }
    void aSilentMouseTakesItBack()
    {
        QFETCH(int, index);
        const Row &row = rows[std::size_t(index)];
        open(row);
        const QStringList before = state();
        fake.setOnline("dev", false);
        const PostMsg *hub = PostMsg::instance();
        QSignalSpy notice(hub, &PostMsg::SigMouseOffLineo), mode(hub, &PostMsg::SigHideModel),
            lod(hub, &PostMsg::SigAddLOD), debounce(hub, &PostMsg::SigDebunce),
            performance(hub, &PostMsg::Sig20KOpen), dpi(hub, &PostMsg::SigAddSensor);
        act(row);
        QCOMPARE(state(), before);
        expectNothingWritten(row);
        QCOMPARE(notice.count(), row.notices);
        for (const QList<QVariant> &kind : notice)
            QCOMPARE(kind[0].toInt(), 0);
        QCOMPARE(mode.count() + lod.count() + debounce.count() + performance.count() + dpi.count(), 0);
        QCOMPARE(warnings, 0);
        // A slider is disabled until the page is filled again, and whoever moves it meanwhile, it stays.
        if (auto *slider = qobject_cast<QSlider *>(control(row))) {
            QVERIFY(!slider->isEnabled());
            if (row.host != &SensorHost) {
                slider->setValue(slider->maximum());
                slider->setValue(slider->minimum());
                QCOMPARE(state(), before);
                QCOMPARE(notice.count(), row.notices);
            }
            paint(row);
            QVERIFY(slider->isEnabled());
            QCOMPARE(state(), before);
        }
        fake.setOnline("dev", true);
        act(row); // and it works again
        expectWritten(row);
    }

    void unarmedItWritesNothing_data() { eachRow(); }
    void unarmedItWritesNothing()
    {
        QFETCH(int, index);
        const Row &row = rows[std::size_t(index)];
        open(row);
        UiArmed = false;
        act(row);
        if (!row.armed) {
            expectWritten(row);
            return;
        }
        expectNothingWritten(row);
        QVERIFY(row.asks || fake.calls().empty());
    }

    void itAsksForTheFlagOfItsPageAlone_data() { eachRow(); }
    void itAsksForTheFlagOfItsPageAlone()
    {
        QFETCH(int, index);
        const Row &row = rows[std::size_t(index)];
        for (const Busy busy : {&SensorPageBusy, &LightPageBusy, &ButtonPageBusy}) {
            open(row);
            *busy = true;
            act(row);
            *busy = false;
            if (busy == row.busy) {
                expectNothingWritten(row);
                QVERIFY(row.asks || fake.calls().empty());
            } else {
                expectWritten(row);
            }
        }
    }

    void aWheelWritesNothing_data() { eachRow(); }
    void aWheelWritesNothing()
    {
        QFETCH(int, index);
        const Row &row = rows[std::size_t(index)];
        open(row);
        const QStringList before = state();
        for (const int notches : {1, -2, 1})
            turnWheel(control(row), notches);
        QCOMPARE(state(), before);
        expectNothingWritten(row);
        QVERIFY(fake.calls().empty());
        act(row);
        expectWritten(row);
    }

    // ---- The sliders across a loss of the mouse

    void aPointerThatPassesAfterALossMovesNothing_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("beforeThePress");
        for (std::size_t i = 0; i < rows.size(); ++i)
            for (const bool before : {false, true})
                if (rows[i].several)
                    QTest::addRow("%s %s", rows[i].name.constData(), before ? "lost before" : "lost in it")
                        << int(i) << before;
    }
    void aPointerThatPassesAfterALossMovesNothing()
    {
        QFETCH(int, index);
        QFETCH(bool, beforeThePress);
        const Row &row = rows[std::size_t(index)];
        open(row);
        auto *slider = static_cast<QSlider *>(control(row));
        Pointer pointer(slider);
        const int x = pointer.ownX();
        const int far = slider->width() - 20;
        fake.setOnline("dev", !beforeThePress);
        pointer.press(x);
        fake.setOnline("dev", false);
        pointer.move(far);
        QVERIFY(!slider->isEnabled());
        QVERIFY(!slider->isSliderDown());
        pointer.release(far);
        fake.setOnline("dev", true);
        DeviceRecord::edit([&row](FlashDataMap &map) { map = recordOf(row); });
        paint(row);
        QVERIFY(slider->isEnabled() && !slider->signalsBlocked());
        const QStringList before = state();
        fake.clearCalls();
        for (const int to : {far, x, 5, far})
            pointer.hover(to);
        QCOMPARE(state(), before);
        expectNothingWritten(row);
        // The next press is an edit again, and its release ends it.
        row.act(slider);
        expectWritten(row);
        const std::size_t writes = fake.updates().size();
        pointer.hover(5);
        QCOMPARE(fake.updates().size(), writes);
    }

    // However the release is lost.
    void aPressWithoutAReleaseIsOver_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("loss");
        for (std::size_t i = 0; i < rows.size(); ++i)
            for (std::size_t loss = 0; loss < std::size(losses); ++loss)
                if (rows[i].several)
                    QTest::addRow("%s %s", rows[i].name.constData(), losses[loss].name)
                        << int(i) << int(loss);
    }
    void aPressWithoutAReleaseIsOver()
    {
        QFETCH(int, index);
        QFETCH(int, loss);
        const Row &row = rows[std::size_t(index)];
        open(row);
        auto *slider = static_cast<QSlider *>(control(row));
        Pointer pointer(slider);
        const int x = pointer.ownX();
        const int far = slider->width() - 20;
        pointer.press(x);
        QVERIFY(slider->isSliderDown());
        losses[loss].lose(slider, [&] { pointer.release(far); });
        QVERIFY(!slider->isSliderDown());
        DeviceRecord::edit([&row](FlashDataMap &map) { map = recordOf(row); });
        paint(row);
        const QStringList before = state();
        fake.clearCalls();
        for (const int to : {far, x, 5, far})
            pointer.hover(to);
        QCOMPARE(state(), before);
        expectNothingWritten(row);
        row.act(slider);
        expectWritten(row);
    }

    // A press beside the handle repeats its step for as long as it lasts.
    void aPressOnTheGrooveThatIsLostRepeatsNothing_data() { aPointerThatPassesAfterALossMovesNothing_data(); }
    void aPressOnTheGrooveThatIsLostRepeatsNothing()
    {
        QFETCH(int, index);
        QFETCH(bool, beforeThePress);
        const Row &row = rows[std::size_t(index)];
        open(row);
        auto *slider = static_cast<QSlider *>(control(row));
        Pointer pointer(slider);
        const QStringList before = state();
        fake.setOnline("dev", !beforeThePress);
        pointer.press(slider->width() - 5);
        if (!beforeThePress) { // and the page is taken away under the pointer
            QVERIFY(slider->value() > slider->minimum());
            page->setEnabled(false);
            page->setEnabled(true);
        } else {
            QCOMPARE(state(), before);
            QVERIFY(!slider->isEnabled());
        }
        const int value = slider->value();
        fake.clearCalls();
        const RepeatingSlider other; // begins after this one and so repeats after it
        QTRY_VERIFY(other.value() > other.minimum());
        QCOMPARE(slider->value(), value);
        QVERIFY(fake.updates().empty());
        pointer.release(slider->width() - 5);
    }
};

TEST_CLASS(tst_EditContract, SensorSetUp)

#include "tst_editcontract.moc"
