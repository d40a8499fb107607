// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The advanced page on a whole emulated mouse: what a person sets with pointer and keys reaches the flash
// and the receiver and nothing else changes, on radio and on the cable; and what is restored off line.
#include "presentation/Widgets.h"
#include "sensor/StopCloseTime.h"
#include "sensor/plots/RotatableWidget.h"
#include "tests/e2e/Program.h"
#include "tests/support/TestMain.h"
#include "tests/support/Watchdog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QtTest>
#include <random>

namespace
{

const char Wired[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\nplug m1\n";

constexpr int RandomEdits = 2000;
constexpr int EditsAtOnce = 20;

template <typename Widget> Widget *control(const char *name)
{
    auto *const found = windows::visible<Widget>(QLatin1String(name));
    if (!found)
        qFatal("%s does not show", name);
    return found;
}

QSlider *angle() { return control<QSlider>("AngleSet"); }
QComboBox *sleepBox() { return control<QComboBox>("StopClose"); }
bool isOn(const char *button) { return control<QAbstractButton>(button)->isChecked(); }

// A press on the bar jumps there. Each degree takes the pixels from its place outwards.
void pressAngle(int degrees)
{
    const double middle = degrees + (degrees < 0 ? -0.5 : 0.5);
    const double x = (middle - angle()->minimum()) * angle()->width() / 60;
    QTest::mouseClick(angle(), Qt::LeftButton, {}, QPoint(int(x), angle()->height() / 2));
}

bool showsAngle(int degrees)
{
    return angle()->value() == degrees &&
           control<QLabel>("AngleText")->text() == QString::number(degrees) + QChar(0x00B0) &&
           control<RotatableWidget>("AngleMouse")->Angle() == (degrees + 360) % 360;
}

bool pageShows(const FlashDataMap &map)
{
    return showsAngle(int8_t(map.AngleSet)) && isOn("KFPS") == (map.KFps == 1) &&
           sleepBox()->currentIndex() == sleepIndexOf(map.StopCloseTime);
}

} // namespace

class tst_advancedpage : public QObject
{
    Q_OBJECT

private:
    static void openPage(Program &program, const char *plug)
    {
        program.open(QLatin1String(plug));
        program.click("Advanced");
        program.expect("page", [] { return windows::visible(QStringLiteral("AngleSet")) != nullptr; });
    }
    static void answerNotice(Program &program)
    {
        program.expect("notice", [] { return shows<MouseOffLine>(infoText("DialogOffline")); });
        program.script.step("answer", always, [] { answer<MouseOffLine>("NewHong"); });
        program.expect("answered", isGone<MouseOffLine>);
    }
    static void eachPlug()
    {
        QTest::addColumn<QByteArray>("scenario");
        QTest::addColumn<QByteArray>("plug");
        QTest::newRow("receiver") << QByteArray(Family) << QByteArray("r1");
        QTest::newRow("cable") << QByteArray(Wired) << QByteArray("m1");
    }

private slots:
    void init()
    {
        QDir(dataRoot() + QStringLiteral("/Device_Info")).removeRecursively();
        makeDataFolders();
    }

    void eachSettingReachesTheFlash_data() { eachPlug(); }
    void eachSettingReachesTheFlash()
    {
        QFETCH(QByteArray, scenario);
        QFETCH(QByteArray, plug);
        Program program(scenario.constData());
        Watchdog watchdog;
        FlashDataMap wanted{};
        openPage(program, plug.constData());
        const auto arrived = [&] { return sameBytes(program.bus.record("m1"), wanted); };
        const auto turn = [&] {
            wanted = program.bus.record("m1");
            QVERIFY(pageShows(wanted));
            pressAngle(-20);
            wanted.AngleSet = 256 - 20;
            wanted.AngleSetValid = 1;
        };
        program.actUntil("angle", "m1", turn, arrived);
        const auto changeFrameRate = [&] {
            wanted.KFps = program.bus.record("m1").KFps ? 0 : 1;
            QTest::mouseClick(control<QAbstractButton>("KFPS"), Qt::LeftButton);
        };
        program.actUntil("frame rate", "m1", changeFrameRate, arrived);
        const auto changeSleepTime = [&] {
            QTest::keyClick(sleepBox(), Qt::Key_End);
            wanted.StopCloseTime = 90;
        };
        program.actUntil("sleep time", "m1", changeSleepTime, arrived);
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        program.script.step("page", always, [&] { QVERIFY(pageShows(wanted)); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(!watchdog.barked());
    }

    void theKeysTurnTheAngleThroughItsWholeRange()
    {
        Program program;
        openPage(program, "r1");
        program.script.step("keys", always, [] {
            QTest::keyClick(angle(), Qt::Key_Home);
            for (int step = 0; step < 60; ++step)
                QTest::keyClick(angle(), step % 2 ? Qt::Key_Right : Qt::Key_PageUp);
        });
        program.expect("the last one counts",
                       [&] { return program.bus.record("m1").AngleSet == 30 && program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
    }

    void theLongRangeModeReachesTheReceiverAndComesBack()
    {
        Program program;
        const auto mode = [&] { return int(program.bus.emulated.receiver("r1")->longRange); };
        openPage(program, "r1");
        program.script.step("on", always, [] {
            QVERIFY(!isOn("checkBox"));
            QTest::mouseClick(control<QAbstractButton>("checkBox"), Qt::LeftButton);
        });
        program.expect("receiver", [=] { return mode() == 1; });
        program.click("UpArrow");
        openPage(program, "r1");
        program.expect("read again", [] { return isOn("checkBox"); });
        program.script.step("off", always,
                            [] { QTest::mouseClick(control<QAbstractButton>("checkBox"), Qt::LeftButton); });
        program.expect("receiver", [=] { return mode() == 0 && !isOn("checkBox"); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(program.agrees("m1"));
    }

    void theReceiversOwnChangeUnchecksTheBox()
    {
        Program program;
        openPage(program, "r1");
        program.click("checkBox");
        program.expect("checked", [] { return isOn("checkBox"); });
        program.order("longrange r1 off");
        program.expect("unchecked", [] { return !isOn("checkBox"); });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(int(program.bus.emulated.receiver("r1")->longRange), 0);
    }

    void onTheCableThereIsNoLongRangeMode()
    {
        Program program(Wired);
        openPage(program, "m1");
        program.expect("no group", [] {
            return !windows::visible(QStringLiteral("checkBox")) &&
                   control<QWidget>("AngleFrame")->pos() == QPoint(158, 287);
        });
        QCOMPARE(program.script.run(), QString());
    }

    void offLineEachControlGoesBack()
    {
        Program program;
        Watchdog watchdog;
        FlashDataMap before{};
        openPage(program, "r1");
        program.actUntil(
            "a last edit", "m1", [] { pressAngle(10); },
            [&] { return program.bus.record("m1").AngleSet == 10; });
        program.script.step("before", always, [&] { before = program.bus.record("m1"); });
        program.order("radio m1 off");
        program.expect("out of reach", [] { return !UsbFinderC_GetDeviceOnLine(CurrentDevicePath()); });

        program.script.step("frame rate", always,
                            [] { QTest::mouseClick(control<QAbstractButton>("KFPS"), Qt::LeftButton); });
        answerNotice(program);
        program.script.step(
            "sleep time", [&] { return pageShows(before); },
            [] { QTest::keyClick(sleepBox(), Qt::Key_End); });
        answerNotice(program);
        program.script.step(
            "long range", [&] { return pageShows(before); },
            [] { QTest::mouseClick(control<QAbstractButton>("checkBox"), Qt::LeftButton); });
        answerNotice(program);
        program.script.step(
            "angle", [] { return !isOn("checkBox"); }, [] { pressAngle(-25); });
        answerNotice(program);
        program.expect("all as before", [&] { return pageShows(before) && !angle()->isEnabled(); });
        program.script.step("nothing written", always, [&] {
            QVERIFY(sameBytes(program.bus.record("m1"), before));
            QVERIFY(sameBytes(DeviceRecord::copy(), before));
            QCOMPARE(int(program.bus.emulated.receiver("r1")->longRange), 0);
        });

        program.order("radio m1 on");
        program.waitForLoad();
        program.expect("angle again", [] { return angle()->isEnabled(); });
        program.actUntil(
            "written again", "m1", [] { pressAngle(-25); },
            [&] { return program.bus.record("m1").AngleSet == 256 - 25 && program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(!watchdog.barked());
    }

    void manyEditsLeavePageRecordAndFlashInAgreement()
    {
        Program program;
        std::mt19937 random(6004);
        const auto below = [&random](int limit) { return int(random() % uint32_t(limit)); };
        const auto edit = [&] {
            switch (below(8)) {
            case 0:
                control<QAbstractButton>("KFPS")->click();
                break;
            case 1:
                QTest::keyClick(sleepBox(), below(2) ? Qt::Key_Down : Qt::Key_Up);
                break;
            case 2:
                control<QAbstractButton>("checkBox")->click();
                break;
            case 3:
                program.bus.order("press m1 rate"); // the mouse's own change of another field
                break;
            default:
                pressAngle(below(61) - 30);
            }
        };
        openPage(program, "r1");
        // A few at a time, so that what the mouse says comes in between.
        for (int done = 0; done < RandomEdits; done += EditsAtOnce)
            program.script.step("edits", always, [&edit] {
                for (int i = 0; i < EditsAtOnce; ++i)
                    edit();
            });
        program.expect("agreement", [&] {
            return program.agrees("m1") && pageShows(program.bus.record("m1")) &&
                   isOn("checkBox") == (program.bus.emulated.receiver("r1")->longRange == 1);
        });
        QCOMPARE(program.script.run(), QString());
    }
};

TEST_CLASS(tst_advancedpage, ProgramSetUp)
#include "tst_advancedpage.moc"
