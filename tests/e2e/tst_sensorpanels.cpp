// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The panels that lie on other pages than the sensor's: debounce time, sleep time, angle, frame rate and the
// light of the DPI stage. Every value that a person can choose, against the mouse's flash, and that the
// controls are restored when the mouse does not answer.
#include "lighting/SensorEffect.h"
#include "sensor/StopCloseTime.h"
#include "tests/e2e/SensorEndToEnd.h"
#include "tests/support/TestMain.h"

#include <QStyleOptionSlider>

namespace
{

// Answers each notice of one kind and counts them, also while an edit waits for the answer.
template <typename Notice> class Answers
{
public:
    Answers()
    {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] {
            count += isShown<Notice>();
            answer<Notice>("NewHong");
        });
        timer.start(5);
    }
    int seen() const { return count; }

private:
    QTimer timer;
    int count = 0;
};

constexpr int SafeTime = 8; // milliseconds of debounce that bring no warning

} // namespace

class tst_sensorpanels : public QObject
{
    Q_OBJECT

private:
    template <typename Widget> static Widget *control(const char *name)
    {
        auto *const found = windows::visible<Widget>(QLatin1String(name));
        if (!found)
            qFatal("%s does not show", name);
        return found;
    }
    static QString open(SensorEndToEnd &scene, const char *way)
    {
        const QString wrong = scene.open();
        if (!wrong.isEmpty())
            return wrong;
        scene.program.click(way);
        scene.program.expect("agreement", [&scene] { return scene.program.agrees("m"); });
        return scene.program.script.run();
    }
    static void eachLink()
    {
        QTest::addColumn<int>("link");
        for (int link = 0; link < int(std::size(SensorLinks)); ++link)
            QTest::newRow(SensorLinks[link].name) << link;
    }
    static void moveTo(const char *slider, int value) { control<QSlider>(slider)->setValue(value); }
    static void choose(const char *box, int index) { control<QComboBox>(box)->setCurrentIndex(index); }
    static void press(const char *box, Qt::Key key) { QTest::keyClick(control<QComboBox>(box), key); }

private slots:
    void everyDebounceTime_data() { eachLink(); }
    void everyDebounceTime()
    {
        QFETCH(int, link);
        SensorEndToEnd scene(SensorModels[0], SensorLinks[link]);
        QCOMPARE(open(scene, "ButtonMain"), QString());
        Answers<LessThree> warning;
        int warnings = 0;
        for (const int offset : {1, 0}) // so that each time is a change at least once
            for (int i = 0; i < 16; ++i) {
                const int time = (i + offset) % 16;
                warnings += scene.flash().DebounceTime != time && time < SafeTime;
                QCOMPARE(scene.edit([=] { choose("Debunce", time); },
                                    [=](FlashDataMap &map) { map.DebounceTime = uint8_t(time); }),
                         QString());
                QCOMPARE(warning.seen(), warnings);
            }
    }

    void everySettingOfTheAdvancedPage_data() { eachLink(); }
    void everySettingOfTheAdvancedPage()
    {
        QFETCH(int, link);
        SensorEndToEnd scene(SensorModels[1], SensorLinks[link]);
        QCOMPARE(open(scene, "Advanced"), QString());
        const auto sleep = [&scene](Qt::Key key, int index) {
            return scene.edit(
                [key] { press("StopClose", key); },
                [index](FlashDataMap &map) { map.StopCloseTime = SleepCodes[std::size_t(index)]; });
        };
        QCOMPARE(sleep(Qt::Key_Home, 0), QString());
        for (int i = 1; i < SleepItems; ++i)
            QCOMPARE(sleep(Qt::Key_Down, i), QString());
        QCOMPARE(sleep(Qt::Key_Home, 0), QString());
        for (int degrees = -30; degrees <= 30; ++degrees)
            QCOMPARE(scene.edit([=] { moveTo("AngleSet", degrees); },
                                [=](FlashDataMap &map) {
                                    map.AngleSet = uint8_t(degrees);
                                    map.AngleSetValid = 1;
                                }),
                     QString());
        for (int i = 0; i < 2; ++i)
            QCOMPARE(scene.edit([] { control<QAbstractButton>("KFPS")->click(); },
                                [](FlashDataMap &map) { map.KFps = map.KFps == 1 ? 0 : 1; }),
                     QString());
    }

    void everySettingOfTheStageLight_data() { eachLink(); }
    void everySettingOfTheStageLight()
    {
        QFETCH(int, link);
        SensorEndToEnd scene(SensorModels[2], SensorLinks[link]);
        QCOMPARE(open(scene, "LightsButton"), QString());
        const auto mode = [&scene](int index) {
            return scene.edit([=] { choose("Model", index); },
                              [=](FlashDataMap &map) {
                                  map.DpiLedEnable = index > 0;
                                  map.DpiLedMode = index > 0 ? uint8_t(index) : map.DpiLedMode;
                              },
                              2); // the two bytes do not lie side by side
        };
        for (const int index : {0, 2, 1})
            QCOMPARE(mode(index), QString());
        for (const int offset : {1, 0})
            for (int i = 0; i < 10; ++i) {
                const int value = (i + offset) % 10;
                QCOMPARE(scene.edit([=] { moveTo("LightH", value + 1); },
                                    [=](FlashDataMap &map) {
                                        map.DpiLedBrightness = BrightnessCurve[std::size_t(value)];
                                    }),
                         QString());
            }
        QCOMPARE(mode(2), QString());
        for (const int value : {5, 1, 2, 3, 4})
            QCOMPARE(scene.edit([=] { moveTo("SpeedH", value); },
                                [=](FlashDataMap &map) { map.DpiLedSpeed = uint8_t(value); }),
                     QString());
        QCOMPARE(mode(0), QString());
    }

    // Each page's edits one after the other; the notice is answered meanwhile.
    void aSilentMouseTakesThemBack()
    {
        SensorEndToEnd scene(SensorModels[0], SensorLinks[2]);
        QCOMPARE(open(scene, "LightsButton"), QString());
        for (const int mode : {2, 1}) // the page holds a value of its own for each
            QCOMPARE(scene.edit([mode] { choose("Model", mode); },
                                [mode](FlashDataMap &map) {
                                    map.DpiLedEnable = 1;
                                    map.DpiLedMode = uint8_t(mode);
                                },
                                2),
                     QString());
        const FlashDataMap before = scene.flash();
        scene.program.bus.order("radio m off");
        Answers<MouseOffLine> notice;
        const int light = control<QSlider>("LightH")->value();
        moveTo("LightH", light % 10 + 1);
        QTRY_COMPARE(notice.seen(), 1);
        QTRY_VERIFY(!isShown<MouseOffLine>());
        QCOMPARE(control<QSlider>("LightH")->value(), light);
        QVERIFY(!control<QSlider>("LightH")->isEnabled());
        choose("Model", 2);
        QTRY_COMPARE(notice.seen(), 2);
        QTRY_VERIFY(!isShown<MouseOffLine>());
        QCOMPARE(control<QComboBox>("Model")->currentIndex(), 1);
        windows::click(QStringLiteral("ButtonMain"));
        const int time = control<QComboBox>("Debunce")->currentIndex();
        choose("Debunce", (time + 1) % 16);
        QTRY_COMPARE(notice.seen(), 3);
        QTRY_VERIFY(!isShown<MouseOffLine>());
        QCOMPARE(control<QComboBox>("Debunce")->currentIndex(), time);
        QVERIFY(!isShown<LessThree>());
        QVERIFY(sameBytes(scene.flash(), before));
        QVERIFY(sameBytes(DeviceRecord::copy(), before));
    }

    // Moves of the DPI slider bring no notice, and yet the page is filled when the mouse is back.
    void aPressOnTheHandleOfASilentMouseLeavesNoDeadSlider()
    {
        SensorEndToEnd scene(SensorModels[0], SensorLinks[2]);
        QCOMPARE(scene.open(), QString());
        QSlider *const slider = scene.slider();
        const int value = slider->value();
        scene.program.bus.order("radio m off");
        QTRY_VERIFY(!UsbFinderC_GetDeviceOnLine(CurrentDevicePath()));
        QStyleOptionSlider option;
        option.initFrom(slider);
        option.orientation = Qt::Horizontal;
        option.minimum = slider->minimum();
        option.maximum = slider->maximum();
        option.sliderPosition = option.sliderValue = value;
        const QPoint handle =
            slider->style()
                ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider)
                .center();
        QTest::mousePress(slider, Qt::LeftButton, {}, handle);
        QTest::mouseRelease(slider, Qt::LeftButton, {}, handle);
        QVERIFY(!slider->isEnabled());
        QCOMPARE(slider->value(), value);
        scene.program.bus.order("radio m on");
        QTRY_VERIFY_WITH_TIMEOUT(slider->isEnabled(), 20000);
        QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activeModalWidget(), 20000);
        const FlashDataMap before = scene.flash();
        QTest::keyClick(slider, Qt::Key_Right);
        QTRY_VERIFY(!sameBytes(scene.flash(), before) && scene.program.agrees("m"));
    }
};

TEST_CLASS(tst_sensorpanels, ProgramSetUp)
#include "tst_sensorpanels.moc"
