// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A mouse that is lost at one stage after the other of its life with the real windows: what comes up, what
// does not, and that it is read right when it is back.
#include "environment/DataRoot.h"
#include "hub/PostMsg.h"
#include "tests/e2e/Program.h"
#include "tests/e2e/ProgramSettled.h"
#include "tests/support/TestMain.h"
#include "tests/support/Watchdog.h"

#include <QSlider>
#include <QTemporaryDir>
#include <QWindow>
#include <QtTest>

class tst_losses : public QObject
{
    Q_OBJECT

private:
    static void clickTile(Program &program)
    {
        const QString plug = QStringLiteral("r1");
        program.script.step(
            "the tile", [plug] { return windows::visible(Program::tile(plug)); },
            [plug] { windows::click(Program::tile(plug)); });
    }

private slots:
    void init()
    {
        QDir(dataRoot() + QStringLiteral("/Device_Info")).removeRecursively();
        makeDataFolders();
    }

    void awayAtTheTileNeitherWaitNorNoticeComesUp()
    {
        Program program;
        QSignalSpy wait(PostMsg::instance(), SIGNAL(SigUpDataParam(int)));
        QSignalSpy notice(PostMsg::instance(), SIGNAL(SigMouseOffLineo(int)));
        program.order("radio m1 off");
        clickTile(program);
        program.expect("awaiting", [] { return AwaitingMouse && !WorkerArmed && OnDevicePage == 1; });
        program.order("radio m1 on");
        program.expect("seen again", [] { return !AwaitingMouse && MouseOnline; });
        program.expect("read by now", [&] { return DataLoaded && program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(!RestartWorker); // no pass begins: the layer makes up for the read that it owes
        QCOMPARE(wait.count(), 0);
        QCOMPARE(notice.count(), 0);
    }

    void anAbsentMouseShowsNothingOfTheOneBefore()
    {
        Program program;
        const auto text = [](const char *label) {
            auto *const found = windows::visible<QLabel>(QLatin1String(label));
            return found ? found->text() : QStringLiteral("hidden");
        };
        const auto caption = [](const char *row) {
            return windows::visible<QAbstractButton>(QLatin1String(row))->text();
        };
        program.order("radio m1 off");
        program.order("set m2 flash 0x57 00 00 00"); // its second button is disabled
        program.open(QStringLiteral("r2"));
        program.expect("battery", [=] { return text("label_2") == QStringLiteral("10%"); });
        program.expect("binding", [=] { return caption("RightKey") == QStringLiteral("Disabled"); });
        program.expect("nothing told", [=] { return text("offlineText") == QStringLiteral("hidden"); });
        program.click("UpArrow");
        clickTile(program);
        program.expect("told", [=] { return text("offlineText") == infoText("DialogOffline"); });
        program.expect("no battery", [=] { return text("label_2").isEmpty(); });
        program.expect("no bindings", [=] { return caption("RightKey") == QStringLiteral("Right button"); });
        program.order("radio m1 on");
        program.expect("back", [=] {
            return text("offlineText") == QStringLiteral("hidden") &&
                   text("label_2") == QStringLiteral("80%");
        });
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
    }

    // Leaving ended the connection, so the second visit needs one of its own although nothing else changed.
    void aMouseThatIsStillAwayIsConnectedAgain()
    {
        Program program;
        const auto awaiting = [] {
            return AwaitingMouse && !WorkerArmed && OnDevicePage == 1 &&
                   windows::visible<QLabel>(QStringLiteral("offlineText"));
        };
        program.order("radio m1 off");
        clickTile(program);
        program.expect("awaiting", awaiting);
        program.click("UpArrow");
        program.expect("left", [] { return OnDevicePage == 0; });
        clickTile(program);
        program.expect("awaiting again", awaiting);
        program.order("radio m1 on");
        program.expect("read", [&] { return !AwaitingMouse && DataLoaded && program.agrees("m1"); });
        program.click("SensorButton");
        program.clickUntil("Button125HZ", "m1", [&] { return program.bus.flash("m1").ReportRate == 8; });
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
    }

    void awayDuringTheWaitTheTimeOutIsTold_data()
    {
        QTest::addColumn<QByteArray>("loss");
        QTest::addColumn<QByteArray>("end");
        QTest::newRow("the radio") << QByteArray("fault r1 radio at 60 command flashread")
                                   << QByteArray("radio m1 on");
        QTest::newRow("the reads") << QByteArray("fault r1 noreply always command flashread")
                                   << QByteArray("fault r1 clear");
    }
    void awayDuringTheWaitTheTimeOutIsTold()
    {
        QFETCH(QByteArray, loss);
        QFETCH(QByteArray, end);
        Program program;
        Watchdog watchdog;
        program.order(loss.constData());
        clickTile(program);
        program.expect("wait", isShown<UpDataParam>);
        program.expect("time-out", [] {
            return shows<MouseOffLine>(infoText("TimeOut")) && isGone<UpDataParam>() && !SensorPageLoaded &&
                   AwaitingMouse;
        });
        program.order(end.constData());
        program.expect("notice gone", isGone<MouseOffLine>);
        program.waitForLoad();
        program.expect("record and flash agree", [&] { return program.agrees("m1") && quietState(); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(!watchdog.barked());
    }

    void aLostRadioIsNoticedByTheNextWriteAlone()
    {
        Program program;
        QSignalSpy notice(PostMsg::instance(), SIGNAL(SigMouseOffLineo(int)));
        QSignalSpy page(PostMsg::instance(), SIGNAL(SigChangeMainDialog(int)));
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        program.order("radio m1 off");
        program.expect("out of reach", [] { return !UsbFinderC_GetDeviceOnLine(CurrentDevicePath()); });
        program.script.step("nobody says so", always, [&] {
            QCOMPARE(notice.count(), 0);
            QCOMPARE(page.count(), 1); // when the page was opened
            QVERIFY(!AwaitingMouse);
        });
        program.click("Button125HZ");
        program.expect("notice", isShown<MouseOffLine>);
        program.script.step("answer", always, [] { answer<MouseOffLine>("CloseButton"); });
        program.expect("still awaiting",
                       [] { return isGone<MouseOffLine>() && AwaitingMouse && RestartWorker; });
        program.order("radio m1 on"); // the closed notice does not end the watch
        program.waitForLoad();
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(notice.count(), 1);
    }

    // ---- A slider that is pressed while the mouse is lost

    void aSliderThatWasHeldWorksAgain_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("inThePress");
        const std::pair<const char *, const char *> sliders[] = {
            {"SensorButton", "horizontalSliderC"}, {"Advanced", "AngleSet"}, {"LightsButton", "LightH"}};
        for (const auto &[page, name] : sliders)
            for (const bool inThePress : {false, true})
                QTest::addRow("%s, lost %s the press", name, inThePress ? "in" : "before")
                    << QByteArray(page) << QString(name) << inThePress;
    }
    void aSliderThatWasHeldWorksAgain()
    {
        QFETCH(QByteArray, page);
        QFETCH(QString, name);
        QFETCH(bool, inThePress);
        Program program;
        Watchdog watchdog;
        QSignalSpy notice(PostMsg::instance(), SIGNAL(SigMouseOffLineo(int)));
        QWindow *window = nullptr;
        QSlider *slider = nullptr;
        const auto at = [&](int x) {
            return slider->mapTo(program.window.get(), QPoint(x, slider->height() / 2));
        };
        const auto handle = [&] {
            const int span = slider->maximum() - slider->minimum();
            return qBound(1, slider->width() * (slider->value() - slider->minimum()) / span + 1,
                          slider->width() - 2);
        };
        const auto writes = [&] {
            return program.bus.emulated.requestCount("r1", wire::Command::FlashWrite);
        };
        const auto lose = [&] {
            program.order("radio m1 off");
            program.expect("out of reach", [] { return !UsbFinderC_GetDeviceOnLine(CurrentDevicePath()); });
        };

        program.open(QStringLiteral("r1"));
        program.click(page.constData());
        program.expect("the slider", [&] {
            slider = windows::visible<QSlider>(name);
            window = program.window->windowHandle();
            return slider && slider->isEnabled();
        });
        QCOMPARE(program.script.run(), QString());
        FlashDataMap before = program.bus.record("m1");
        uint64_t writesBefore = writes();
        int value = 0;

        if (!inThePress)
            lose();
        const int pressed = handle();
        program.script.step("press", always,
                            [&] { QTest::mousePress(window, Qt::LeftButton, {}, at(pressed)); });
        if (inThePress) {
            program.expect("taken", [&] { return program.agrees("m1"); }); // a press may move it a little
            program.script.step("as it stands now", always, [&] {
                before = program.bus.record("m1");
                writesBefore = writes();
            });
            lose();
        }
        program.script.step("move", always, [&] { QTest::mouseMove(window, at(slider->width() - 20)); });
        program.expect("taken back", [&] { return !slider->isEnabled(); });
        program.script.step("release", always, [&] {
            value = slider->value();
            QTest::mouseRelease(window, Qt::LeftButton, {}, at(slider->width() - 20));
        });
        program.order("radio m1 on");
        program.expect("read again", [&] {
            return slider->isEnabled() && !slider->signalsBlocked() && isGone<UpDataParam>() &&
                   isGone<MouseOffLine>() && quietState();
        });
        program.script.step("pass over it", always, [&] {
            slider->setMouseTracking(true);
            for (const int x : {slider->width() - 20, pressed, 5, slider->width() / 2})
                QTest::mouseMove(window, at(x));
            slider->setMouseTracking(false);
        });
        std::unique_ptr<ProgramSettled> settled;
        program.script.step("the mouse reports its battery", always,
                            [&] { settled = std::make_unique<ProgramSettled>(program.bus, "m1"); });
        program.expect("settled", [&] { return bool(*settled); });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(slider->value(), value);
        QVERIFY(sameBytes(program.bus.record("m1"), before));
        QCOMPARE(writes(), writesBefore);
        QCOMPARE(notice.count(), name == "horizontalSliderC" ? 0 : 1);

        program.script.step("drag", always, [&] {
            QTest::mousePress(window, Qt::LeftButton, {}, at(handle()));
            QTest::mouseMove(window, at(slider->width() / 2));
            QTest::mouseMove(window, at(slider->width() - 2));
            QTest::mouseRelease(window, Qt::LeftButton, {}, at(slider->width() - 2));
        });
        program.expect("written", [&] {
            return slider->value() > value && !sameBytes(program.bus.record("m1"), before) &&
                   program.agrees("m1");
        });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(!watchdog.barked());
    }

    // ---- Changes from outside

    void theMousesOwnProfileButtonBringsARefresh()
    {
        Program program;
        Watchdog watchdog;
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        program.clickUntil("Button125HZ", "m1", [&] { return program.bus.flash("m1").ReportRate == 8; });
        // Whole reads are three seconds apart, so the first presses may come too early.
        program.expect("whole read asked for", [&] {
            program.bus.order("profile m1 2");
            return ConfigChanged.load() || isShown<UpDataParam>();
        });
        program.expect("wait", isShown<UpDataParam>);
        program.expect("end of the wait", [] { return isGone<UpDataParam>() && isGone<MouseOffLine>(); });
        program.expect("the other profile's rate",
                       [] { return windows::isChecked(QStringLiteral("Button1000HZ")); });
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(SensorPageLoaded); // a refresh leaves the flags as they are
        QVERIFY(!watchdog.barked());
    }

    void theCableTakesOverAndItsEndLeadsBack()
    {
        Program program;
        Watchdog watchdog;
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        program.order("plug m1");
        program.expect("on its cable", [] {
            const DeviceAllInfo selected = SelectedDevice::info();
            return selected.Usb && selected.Online &&
                   selected.DevicePath.contains(EmulatedBus::pathPart(QStringLiteral("m1"))) &&
                   QString::fromLocal8Bit(CurrentDevicePath()) == selected.DevicePath;
        });
        program.waitForLoad();
        program.expect("icon", [] {
            auto *const icon = windows::visible<QLabel>(QStringLiteral("label_4"));
            return icon && icon->styleSheet().contains(QLatin1String("OnLineUsb.png"));
        });
        program.clickUntil("Button250HZ", "m1", [&] {
            return program.bus.flash("m1").ReportRate == 4 &&
                   program.bus.emulated.reportCount("m1", wire::Command::FlashWrite) > 0;
        });
        program.order("unplug m1");
        program.expect("back on the selection page", [] {
            return OnDevicePage == 0 && windows::visible(Program::tile(QStringLiteral("r1")));
        });
        program.open(QStringLiteral("r1"));
        program.expect("record and flash agree", [&] { return program.agrees("m1") && quietState(); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(!watchdog.barked());
    }
};

TEST_CLASS(tst_losses, ProgramSetUp)
#include "tst_losses.moc"
