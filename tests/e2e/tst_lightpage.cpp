// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The page of the lights from its controls to the devices: every control of both groups against the mouse's
// flash and the receiver's records, on each link and model; a drag; notices of the device; a receiver that
// does not answer; and the mouse lost under a press.
#include "lighting/LampLight.h"
#include "lighting/LightTables.h"
#include "tests/e2e/SensorEndToEnd.h"
#include "tests/support/TestMain.h"
#include "tests/support/Watchdog.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QScopeGuard>
#include <QScrollBar>
#include <atomic>

namespace
{

struct Names {
    const char *mode, *brightness, *speed;
    const char *channels[3];
    const char *more[3];
    const char *less[3];
    const char *presetSuffix;
};
constexpr Names MouseNames = {"LightMod",
                              "horizontalLight",
                              "horizontalSpeed",
                              {"RSpinBox", "GSpinBox", "BSpinBox"},
                              {"AddR", "AddG", "AddB"},
                              {"ReduceR", "ReduceG", "ReduceB"},
                              ""};
constexpr Names ReceiverNames = {"LightMod_2",
                                 "horizontalLight_2",
                                 "horizontalSpeed_2",
                                 {"RSpinBox_2", "GSpinBox_2", "BSpinBox_2"},
                                 {"AddR_2", "AddG_2", "AddB_2"},
                                 {"ReduceR_2", "ReduceG_2", "ReduceB_2"},
                                 "_2"};

constexpr int AcknowledgedAfterMs = 120; // within the time of one try

template <typename Record> QByteArray hex(const Record &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), sizeof record).toHex(' ');
}

} // namespace

class tst_lightpage : public QObject
{
    Q_OBJECT

private:
    // The page of a mouse on a link, opened.
    struct Scene : SensorEndToEnd {
        using SensorEndToEnd::SensorEndToEnd;
        QString openLights()
        {
            program.open(plug());
            program.click("LightsButton");
            program.expect("agreement", [this] { return program.agrees("m"); });
            return program.script.run();
        }
        template <typename Widget> Widget *control(const char *name) const
        {
            auto *const found =
                program.window->findChild<LampLight *>()->findChild<Widget *>(QLatin1String(name));
            if (!found)
                qFatal("no %s", name);
            return found;
        }
        emulator::ReceiverState receiver() { return *program.bus.emulated.receiver("r"); }
        QByteArray bar() { return hex(receiver().bar); }
        QByteArray lamps() { return hex(receiver().indicator); }
        uint64_t count(wire::Command command) { return program.bus.emulated.requestCount("r", command); }
        // The library has answered when the act is over: one request, and nothing for the mouse.
        QString barEdit(const Act &act, DongleRgbBar &wanted)
        {
            const uint64_t before = count(wire::Command::DongleBarWrite);
            const bool changes = hex(wanted) != bar();
            const uint64_t flashWrites = writes();
            act();
            if (bar() != hex(wanted))
                return "bar " + bar() + ", not " + hex(wanted);
            const uint64_t sent = count(wire::Command::DongleBarWrite) - before;
            return sent == (changes ? 1 : 0) && writes() == flashWrites
                       ? QString()
                       : QStringLiteral("%1 writes").arg(sent);
        }
    };

    static void eachModelAndLink()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<int>("link");
        for (int link = 0; link < int(std::size(SensorLinks)); ++link) {
            const int model = link % int(std::size(SensorModels)); // each model at least once
            QTest::addRow("%d on %s", SensorModels[model].mid, SensorLinks[link].name) << model << link;
        }
    }

private slots:
    void everyControlOfTheMouse_data() { eachModelAndLink(); }
    void everyControlOfTheMouse()
    {
        QFETCH(int, model);
        QFETCH(int, link);
        Scene scene(SensorModels[model], SensorLinks[link]);
        QCOMPARE(scene.openLights(), QString());
        const Names &names = MouseNames;
        const auto mode = [&](int index) {
            return scene.edit([&] { scene.control<QComboBox>(names.mode)->setCurrentIndex(index); },
                              [&](FlashDataMap &map) {
                                  map.LedBarEnable = index > 0;
                                  map.LedBarMode = index > 0 ? uint8_t(index) : map.LedBarMode;
                                  map.LightRippeControl = index > 0 ? map.LightRippeControl : 0;
                              },
                              2); // the bytes do not lie side by side
        };
        for (const int on : {1, 0, 1})
            QCOMPARE(scene.edit(
                         [&] {
                             auto *box = scene.control<QAbstractButton>("RippeControl");
                             if (box->isChecked() != (on == 1))
                                 box->click();
                         },
                         [on](FlashDataMap &map) { map.LightRippeControl = uint8_t(on); }),
                     QString());
        for (const int index : {1, 2, 3, 4, 5, 6, 0, 2})
            QCOMPARE(mode(index), QString());
        for (const int offset : {1, 0})
            for (int i = 0; i < LightScaleTop; ++i) {
                const int value = (i + offset) % LightScaleTop;
                QCOMPARE(scene.edit([&] { scene.control<QSlider>(names.brightness)->setValue(value + 1); },
                                    [&](FlashDataMap &map) { map.LedBarBrightness = uint8_t(value); }),
                         QString());
                QCOMPARE(scene.edit([&] { scene.control<QSlider>(names.speed)->setValue(value + 1); },
                                    [&](FlashDataMap &map) { map.LedBarSpeed = uint8_t(value); }),
                         QString());
            }
        uint8_t FlashDataMap::*const parts[] = {&FlashDataMap::LedBarRed, &FlashDataMap::LedBarGreen,
                                                &FlashDataMap::LedBarBlue};
        for (int i = 0; i < 3; ++i) {
            for (const int value : {255, 0, 100})
                QCOMPARE(scene.edit([&] { scene.control<QSpinBox>(names.channels[i])->setValue(value); },
                                    [&](FlashDataMap &map) { map.*parts[i] = uint8_t(value); }),
                         QString());
            QCOMPARE(scene.edit([&] { scene.control<QAbstractButton>(names.more[i])->click(); },
                                [&](FlashDataMap &map) { ++(map.*parts[i]); }),
                     QString());
            QCOMPARE(scene.edit([&] { scene.control<QAbstractButton>(names.less[i])->click(); },
                                [&](FlashDataMap &map) { --(map.*parts[i]); }),
                     QString());
        }
        for (const Preset &preset : Presets)
            QCOMPARE(scene.edit(
                         [&] {
                             const QByteArray name = QByteArray("toolButtonColor") + preset.letter;
                             scene.control<QAbstractButton>(name)->click();
                         },
                         [&](FlashDataMap &map) {
                             map.LedBarRed = preset.red;
                             map.LedBarGreen = preset.green;
                             map.LedBarBlue = preset.blue;
                         },
                         3), // a write for each channel that changes
                     QString());
        if (!SensorLinks[link].device)
            QCOMPARE(int(scene.program.bus.emulated.requestCount("m", wire::Command::DongleBar)), 0);
    }

    void everyControlOfTheReceiver_data()
    {
        QTest::addColumn<int>("link");
        QTest::addColumn<int>("model"); // of those with schemes, and of those without
        for (int link = 2; link < int(std::size(SensorLinks)); ++link)
            QTest::newRow(SensorLinks[link].name) << link << (link % 2 ? 3 : 0);
    }
    void everyControlOfTheReceiver()
    {
        QFETCH(int, link);
        QFETCH(int, model);
        Scene scene(SensorModels[model], SensorLinks[link]);
        QCOMPARE(scene.openLights(), QString());
        const Names &names = ReceiverNames;
        DongleRgbBar bar = scene.receiver().bar;
        QCOMPARE(scene.control<QComboBox>(names.mode)->currentIndex(), int(bar.Mode));
        QCOMPARE(scene.control<QSlider>(names.brightness)->value(), bar.Brightness + 1);
        QCOMPARE(scene.control<QSlider>(names.speed)->value(), bar.Speed + 1);
        QCOMPARE(scene.control<QSpinBox>(names.channels[0])->value(), int(bar.Red));
        for (const int index : {0, 2, 3, 4, 5, 6, 1, 2}) {
            bar.Mode = uint8_t(index);
            bar.Enabled = index > 0;
            QCOMPARE(
                scene.barEdit([&] { scene.control<QComboBox>(names.mode)->setCurrentIndex(index); }, bar),
                QString());
        }
        for (const int offset : {1, 0})
            for (int i = 0; i < LightScaleTop; ++i) {
                const int value = (i + offset) % LightScaleTop + 1;
                if (scene.control<QSlider>(names.brightness)->value() != value) {
                    bar.Brightness = uint8_t(value); // the slider's value as it stands
                    QCOMPARE(scene.barEdit([&] { scene.control<QSlider>(names.brightness)->setValue(value); },
                                           bar),
                             QString());
                }
                if (scene.control<QSlider>(names.speed)->value() != value) {
                    bar.Speed = uint8_t(value);
                    QCOMPARE(
                        scene.barEdit([&] { scene.control<QSlider>(names.speed)->setValue(value); }, bar),
                        QString());
                }
            }
        uint8_t DongleRgbBar::*const parts[] = {&DongleRgbBar::Red, &DongleRgbBar::Green,
                                                &DongleRgbBar::Blue};
        for (int i = 0; i < 3; ++i) {
            for (const int value : {254, 0, 100}) {
                bar.*parts[i] = uint8_t(value);
                QCOMPARE(
                    scene.barEdit([&] { scene.control<QSpinBox>(names.channels[i])->setValue(value); }, bar),
                    QString());
            }
            ++(bar.*parts[i]);
            QCOMPARE(scene.barEdit([&] { scene.control<QAbstractButton>(names.more[i])->click(); }, bar),
                     QString());
            --(bar.*parts[i]);
            QCOMPARE(scene.barEdit([&] { scene.control<QAbstractButton>(names.less[i])->click(); }, bar),
                     QString());
        }
        for (const Preset &preset : Presets) {
            scene
                .control<QAbstractButton>(QByteArray("toolButtonColor") + preset.letter + names.presetSuffix)
                ->click();
            bar.Red = preset.red;
            bar.Green = preset.green;
            bar.Blue = preset.blue;
            QCOMPARE(scene.bar(), hex(bar));
        }
        DongleIndicator lamps{};
        for (int lamp = 0; lamp < 3; ++lamp)
            for (const int index : {3, 1, 2}) {
                lamps.Choice[lamp] = uint8_t(index);
                scene.control<QComboBox>(("LightMod_" + QByteArray::number(lamp + 3)).constData())
                    ->setCurrentIndex(index);
                QCOMPARE(scene.lamps(), hex(lamps));
            }
        QCOMPARE(scene.control<QAbstractButton>("ReUntil")->isVisible(), model == 0);
        if (model != 0)
            return;
        QVERIFY(scene.control<QAbstractButton>("ReUntil")->isChecked()); // as the receiver is made
        for (const auto &[name, scheme] : {std::pair("ReUntil_2", 2), {"ReUntil_3", 3}, {"ReUntil", 1}}) {
            scene.control<QAbstractButton>(name)->click();
            QCOMPARE(int(scene.receiver().color.Scheme), scheme);
        }
        QVERIFY(scene.program.agrees("m"));
    }

    // With the mouse away the receiver takes its settings all the same, in silence.
    void theReceiverWithoutItsMouse()
    {
        Scene scene(SensorModels[0], SensorLinks[5]);
        QCOMPARE(scene.openLights(), QString());
        scene.program.bus.order("radio m off");
        QTRY_VERIFY(!UsbFinderC_GetDeviceOnLine(CurrentDevicePath()));
        QSignalSpy notice(PostMsg::instance(), SIGNAL(SigMouseOffLineo(int)));
        DongleRgbBar bar = scene.receiver().bar;
        bar.Brightness = 3;
        QCOMPARE(scene.barEdit([&] { scene.control<QSlider>("horizontalLight_2")->setValue(3); }, bar),
                 QString());
        scene.control<QComboBox>("LightMod_4")->setCurrentIndex(2);
        QCOMPARE(scene.lamps(), QByteArray("00 02 00"));
        QCOMPARE(notice.count(), 0);
    }

    // The write of each step waits for the one before it to be acknowledged; the last value is written.
    void aDragOverTheWholeRange()
    {
        Scene scene(SensorModels[0], SensorLinks[5]);
        QCOMPARE(scene.openLights(), QString());
        scene.control<QComboBox>("LightMod")->setCurrentIndex(2);
        QTRY_VERIFY(scene.program.agrees("m") && scene.flash().LedBarMode == 2);
        auto *slider = scene.control<QSlider>("horizontalLight");
        const std::string late = std::to_string(AcknowledgedAfterMs);
        scene.program.bus.order("fault r late " + late + " always command flashwrite");
        const uint64_t before = scene.writes();
        QElapsedTimer taken;
        taken.start();
        slider->setSliderDown(true);
        int steps = 0;
        for (const int end : {10, 1, 10, 4})
            while (slider->sliderPosition() != end) {
                slider->setSliderPosition(slider->sliderPosition() +
                                          (end > slider->sliderPosition() ? 1 : -1));
                ++steps;
            }
        slider->setSliderDown(false);
        QTRY_COMPARE(int(scene.flash().LedBarBrightness), 3);
        QTRY_VERIFY(scene.program.agrees("m"));
        QCOMPARE(slider->value(), 4);
        QCOMPARE(scene.control<QSpinBox>("LightSpinBox_2")->value(), 4);
        const auto written = int(scene.writes() - before);
        QVERIFY2(written > 0 && written < steps, qPrintable(QString::number(written)));
        QVERIFY(written <= taken.elapsed() / AcknowledgedAfterMs + 1); // none is sent over one that waits
    }

    // The mouse's own buttons, while the page shows and while another does.
    void theMousesOwnButtons()
    {
        Scene scene(SensorModels[0], SensorLinks[5]);
        QCOMPARE(scene.openLights(), QString());
        scene.control<QComboBox>("LightMod")->setCurrentIndex(3);
        scene.control<QComboBox>("Model")->setCurrentIndex(1);
        QTRY_VERIFY(scene.program.agrees("m") && scene.flash().LedBarMode == 3 &&
                    scene.flash().DpiLedMode == 1);
        for (const char *page : {"LightsButton", "SensorButton", "LightsButton"}) {
            windows::click(QString::fromLatin1(page));
            for (const bool on : {false, true}) {
                const uint64_t writes = scene.writes();
                scene.program.bus.order("press m bar");
                QTRY_COMPARE(scene.control<QComboBox>("LightMod")->currentIndex(), on ? 3 : 0);
                scene.program.bus.order("press m light");
                QTRY_COMPARE(scene.control<QComboBox>("Model")->currentIndex(), on ? 1 : 0);
                QTRY_VERIFY(scene.program.agrees("m"));
                QCOMPARE(scene.writes(), writes);
            }
        }
        // In the middle of a drag, which goes on behind it.
        auto *slider = scene.control<QSlider>("horizontalLight");
        slider->setSliderDown(true);
        slider->setSliderPosition(slider->value() == 9 ? 8 : 9);
        scene.program.bus.order("press m light");
        QTRY_COMPARE(scene.control<QComboBox>("Model")->currentIndex(), 0);
        slider->setSliderPosition(6);
        scene.program.bus.order("press m bar");
        QTRY_COMPARE(scene.control<QComboBox>("LightMod")->currentIndex(), 0);
        scene.program.bus.order("press m bar"); // that sets the slider again
        QTRY_COMPARE(scene.control<QComboBox>("LightMod")->currentIndex(), 3);
        slider->setSliderPosition(3);
        slider->setSliderDown(false);
        QTRY_COMPARE(int(scene.flash().LedBarBrightness), 2);
        QTRY_VERIFY(scene.program.agrees("m"));
        QCOMPARE(slider->value(), 3);
    }

    // The notice of the receiver's bar button announces the record as the program holds it, wherever it meets
    // the page: nothing of it is an edit.
    void theReceiversOwnNotice()
    {
        Scene scene(SensorModels[0], SensorLinks[5]);
        QCOMPARE(scene.openLights(), QString());
        std::atomic<int> notices{0};
        const auto heard = connect(
            PostMsg::instance(), &PostMsg::SigRGBValue, this, [&notices] { ++notices; },
            Qt::DirectConnection);
        const auto release = qScopeGuard([&heard] { disconnect(heard); });
        const auto notice = [&](int scheme) {
            const int before = notices;
            scene.program.bus.order("color r " + std::to_string(scheme));
            return QTest::qWaitFor([&] { return notices > before; });
        };
        auto *second = scene.control<QAbstractButton>("ReUntil_2");
        second->click();
        for (const char *page : {"SensorButton", "LightsButton"}) {
            windows::click(QString::fromLatin1(page));
            QVERIFY(notice(3));
            QCoreApplication::processEvents();
            QVERIFY(second->isChecked());
        }
        auto *slider = scene.control<QSlider>("horizontalLight_2");
        slider->setSliderDown(true);
        slider->setSliderPosition(slider->value() == 9 ? 8 : 9);
        QVERIFY(notice(1));
        slider->setSliderPosition(3);
        slider->setSliderDown(false);
        QCOMPARE(int(scene.receiver().bar.Brightness), 3);
        QCOMPARE(slider->value(), 3);
        QVERIFY(second->isChecked());
        QCOMPARE(int(scene.count(wire::Command::DongleColorWrite)), 1);
    }

    // What the receiver does not take is not kept, whether it refuses or says nothing.
    void whatTheReceiverDoesNotTake_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::newRow("refused") << "refuse";
        QTest::newRow("silent") << "noreply";
    }
    void whatTheReceiverDoesNotTake()
    {
        QFETCH(QString, fault);
        Scene scene(SensorModels[0], SensorLinks[5]);
        QCOMPARE(scene.openLights(), QString());
        const auto shown = [&] {
            return QList<int>{scene.control<QComboBox>("LightMod_2")->currentIndex(),
                              scene.control<QSlider>("horizontalSpeed_2")->value(),
                              scene.control<QSpinBox>("GSpinBox_2")->value(),
                              scene.control<QComboBox>("LightMod_4")->currentIndex()};
        };
        const QList<int> before = shown();
        for (const char *command : {"donglebarwrite", "indicatorwrite"})
            scene.program.bus.order("fault r " + fault.toStdString() + " always command " + command);
        const auto act = [&] {
            scene.control<QComboBox>("LightMod_2")->setCurrentIndex(before[0] == 2 ? 3 : 2);
            scene.control<QSlider>("horizontalSpeed_2")->setValue(before[1] == 9 ? 8 : 9);
            scene.control<QSpinBox>("GSpinBox_2")->setValue(before[2] ^ 1);
            scene.control<QComboBox>("LightMod_4")->setCurrentIndex(3);
        };
        act();
        QCOMPARE(shown(), before);
        scene.program.bus.order("fault r clear");
        act();
        QVERIFY(shown() != before);
        QCOMPARE(int(scene.receiver().bar.Speed), before[1] == 9 ? 8 : 9);
        QCOMPARE(scene.lamps(), QByteArray("00 03 00"));
    }

    // A receiver that answers no question of its lights makes the load wait for one question, not for each.
    void aReceiverThatDoesNotAnswer()
    {
        Scene scene(SensorModels[0], SensorLinks[5]);
        scene.program.bus.order("fault r noreply always command donglebar");
        scene.program.bus.order("fault r noreply always command indicator");
        Watchdog watchdog;
        QCOMPARE(scene.openLights(), QString());
        QVERIFY(scene.count(wire::Command::DongleBar) >= 1);
        QCOMPARE(int(scene.count(wire::Command::Indicator)), 0);
        scene.control<QComboBox>("LightMod")->setCurrentIndex(2); // and the page works
        QTRY_COMPARE(int(scene.flash().LedBarMode), 2);
    }

    // Reports that get lost hold the load no longer than one question that stays open. What it was not asked
    // then, it is asked when it is changed.
    void aReceiverThatLosesReports()
    {
        Scene scene(SensorModels[0], SensorLinks[5]);
        scene.program.bus.order("fault r noreply always command donglebar");
        QCOMPARE(scene.openLights(), QString());
        scene.program.bus.order("fault r clear");
        DongleRgbBar bar = scene.receiver().bar;
        QVERIFY(scene.control<QSpinBox>("RSpinBox_2")->value() != bar.Red);
        bar.Speed = 9;
        QCOMPARE(scene.barEdit([&] { scene.control<QSlider>("horizontalSpeed_2")->setValue(9); }, bar),
                 QString());
        QCOMPARE(scene.control<QSpinBox>("RSpinBox_2")->value(), int(bar.Red));
        QCOMPARE(int(scene.count(wire::Command::Indicator)), 0);
        scene.control<QComboBox>("LightMod_5")->setCurrentIndex(2);
        QCOMPARE(int(scene.count(wire::Command::Indicator)), 1);
        QCOMPARE(scene.lamps(), QByteArray("00 00 02"));
    }

    // A hand on the sliders while the mouse goes and comes back; passing over them afterwards moves nothing.
    void aLossUnderAPress_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("mode"); // the box that shows the slider, at this item
        QTest::addColumn<int>("item");
        QTest::addColumn<bool>("asks");
        QTest::newRow("mouse brightness") << "horizontalLight"
                                          << "LightMod" << 2 << true;
        QTest::newRow("mouse speed") << "horizontalSpeed"
                                     << "LightMod" << 2 << true;
        QTest::newRow("stage brightness") << "LightH"
                                          << "Model" << 1 << true;
        QTest::newRow("stage speed") << "SpeedH"
                                     << "Model" << 2 << true;
        QTest::newRow("receiver brightness") << "horizontalLight_2"
                                             << "LightMod_2" << 2 << false;
        QTest::newRow("receiver speed") << "horizontalSpeed_2"
                                        << "LightMod_2" << 2 << false;
    }
    void aLossUnderAPress()
    {
        QFETCH(QString, name);
        QFETCH(QString, mode);
        QFETCH(int, item);
        QFETCH(bool, asks);
        Scene scene(SensorModels[0], SensorLinks[2]);
        QCOMPARE(scene.openLights(), QString());
        scene.control<QComboBox>(mode.toLatin1())->setCurrentIndex(item);
        QTRY_VERIFY(scene.program.agrees("m"));
        auto *slider = scene.control<QSlider>(name.toLatin1());
        QWindow *const window = scene.program.window->windowHandle();
        const auto at = [&](int x) {
            return slider->mapTo(scene.program.window.get(), QPoint(x, slider->height() / 2));
        };
        const int span = slider->maximum() - slider->minimum();
        const int own = qBound(1, slider->width() * (slider->value() - 1) / span + 1, slider->width() - 2);
        const int value = slider->value();
        QTest::mousePress(window, Qt::LeftButton, {}, at(own));
        scene.program.bus.order("radio m off");
        QTRY_VERIFY(!UsbFinderC_GetDeviceOnLine(CurrentDevicePath()));
        bool answered = false;
        QTimer answers;
        connect(&answers, &QTimer::timeout, this, [&] {
            answered = answered || isShown<MouseOffLine>();
            answer<MouseOffLine>("NewHong");
        });
        answers.start(5);
        const int far = own > slider->width() / 2 ? 4 : slider->width() - 4;
        QTest::mouseMove(window, at(far));
        QTest::mouseRelease(window, Qt::LeftButton, {}, at(far));
        if (asks) {
            QTRY_VERIFY(answered || !slider->isEnabled());
            QCOMPARE(slider->value(), value);
        } else {
            QVERIFY(slider->value() != value);
            const DongleRgbBar bar = scene.receiver().bar;
            QCOMPARE(int(name.contains("Speed") ? bar.Speed : bar.Brightness), slider->value());
        }
        scene.program.bus.order("radio m on");
        if (asks) {
            QTRY_VERIFY_WITH_TIMEOUT(slider->isEnabled() && !QApplication::activeModalWidget(), 20000);
        }
        const int rests = slider->value();
        const FlashDataMap before = scene.flash();
        for (const int x : {far, own, slider->width() / 2})
            QTest::mouseMove(window, at(x));
        QCoreApplication::processEvents();
        QCOMPARE(slider->value(), rests);
        QVERIFY(sameBytes(scene.flash(), before));
        const bool isFull = rests == slider->maximum();
        QTest::keyClick(slider, isFull ? Qt::Key_Left : Qt::Key_Right); // and it works
        QCOMPARE(slider->value(), isFull ? rests - 1 : rests + 1);
        QTRY_VERIFY(scene.program.agrees("m"));
    }
};

TEST_CLASS(tst_lightpage, ProgramSetUp)
#include "tst_lightpage.moc"
