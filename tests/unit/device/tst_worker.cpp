// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The worker's passes and the offline watch, against a scripted layer.
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/EventDispatch.h"
#include "device/ImageCache.h"
#include "device/Worker.h"
#include "device/hidusb/RecordLimits.h"
#include "device/hidusb/wire/FlashLayout.h"
#include "tests/support/DeviceFixture.h"
#include "tests/support/TestMain.h"

#include <QtTest>
#include <cstring>

namespace
{
const QStringList Connection = {"UsbServerC_Start mouse", "UsbServer_SetPCDriverStatus 1",
                                "UsbServer_ReadAllFlashData"};
const QString Question = QStringLiteral("UsbFinderC_GetDeviceOnLine mouse");
} // namespace

class tst_worker : public DeviceFixture
{
    Q_OBJECT

private:
    std::unique_ptr<Worker> worker;

    static DeviceAllInfo mouse(uint16_t kind = Receiver1K)
    {
        DeviceAllInfo info;
        info.DevicePath = QStringLiteral("mouse");
        info.Cid = 0x1A;
        info.Mid = 3;
        info.DeviceKind = kind;
        return info;
    }
    void pass()
    {
        layer.clearCalls();
        hub->lines.clear();
        worker->startPass();
        QTRY_VERIFY(worker->isFinished());
        QTRY_VERIFY(layer.idle());
        QCoreApplication::processEvents();
    }

private slots:
    void init()
    {
        begin();
        plugMouse();
        worker = std::make_unique<Worker>();
        worker->checkTimer().stop(); // its slot is called by hand
        emit PostMsg::instance()->SigSelectMouseInfo(mouse());
        pointCurrentDeviceAt(QStringLiteral("mouse"));
        OnDevicePage = 1;
    }
    void cleanup()
    {
        worker.reset();
        QVERIFY(!Worker::instance());
        QFile::remove(dataRoot() + QStringLiteral("/Device_Info/Device_CID1A_MID03.bin"));
    }

    void constructionSetsTheFlags()
    {
        resetDeviceState();
        MouseOnline = true;
        worker.reset();
        worker = std::make_unique<Worker>();
        QVERIFY(WorkerArmed && !MouseOnline);
        QCOMPARE(int(BatteryAsNumber), 1);
        QCOMPARE(std::string(CurrentDevicePath()), std::string("a"));
        QCOMPARE(worker->checkTimer().interval(), 1300);
        QVERIFY(worker->checkTimer().isActive());
        QCOMPARE(Worker::instance(), worker.get());
    }

    void selectionNamesTheCacheFile()
    {
        QCOMPARE(SelectedDevice::cacheName(), QStringLiteral("Device_CID1A_MID03.bin"));
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("mouse"));
    }

    // The mouse has gone between the end of its reset and the read that follows it; what the next one holds
    // is its own.
    void anotherMouseIsNotClearedBehindAReset()
    {
        pass();
        QVERIFY(layer.deliver(9, 0, {}));
        QTRY_VERIFY(layer.idle());
        QVERIFY(ClearBlocksAfterRead && SkipReceiverQuery);
        FlashDataMap parsed;
        memset(&parsed, 0x11, sizeof parsed);
        layer.setParsed(parsed);
        emit PostMsg::instance()->SigMainPageChange();
        emit PostMsg::instance()->SigSelectMouseInfo(mouse());
        pass();
        QVERIFY(layer.deliver(8, 0, std::vector<uint8_t>(FlashSize)));
        QTRY_VERIFY(layer.idle());
        QCoreApplication::processEvents();
        QVERIFY(hub->lines.contains(QStringLiteral("form")));
        QCOMPARE(memcmp(&hub->record, &parsed, sizeof parsed), 0);
        QCOMPARE(layer.count("UsbFinderC_GetLongRangeMode"), 1);
    }

    void onLinePassConnectsAndAsksForEverything()
    {
        pass();
        QCOMPARE(callNames(), QStringList({Question, Question}) + Connection);
        QCOMPARE(hub->lines, QStringList{"wait 0"});
        QVERIFY(MouseOnline && ReadStartedOnline && DataLoaded && !WorkerArmed && FullReadAwaited);
        QVERIFY(SelectedDevice::info().Online);
        QVERIFY(layer.connected());
    }

    void unarmedOrOffThePageItDoesNothing()
    {
        WorkerArmed = false;
        layer.clearCalls();
        worker->start();
        QTRY_VERIFY(worker->isFinished());
        QVERIFY(callNames().isEmpty());

        OnDevicePage = 0;
        pass();
        QCOMPARE(callNames(), QStringList{Question});
        QVERIFY(hub->lines.isEmpty());
        QVERIFY(!WorkerArmed);
    }

    void sameDeviceWithNothingNewIsLeftAlone()
    {
        pass();
        DataLoaded = false;
        pass();
        QVERIFY(callNames().isEmpty());
        QVERIFY(DataLoaded && !WorkerArmed);
    }

    void whatMakesAPassARealOne_data()
    {
        QTest::addColumn<int>("change");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("back from the selection page") << 0 << QStringList{"wait 0"};
        QTest::newRow("another kind of link") << 1 << QStringList{"wait 0"};
        QTest::newRow("the device asked for it") << 2 << QStringList{"wait 1"};
        QTest::newRow("an import or reset waits itself") << 3 << QStringList{};
    }
    void whatMakesAPassARealOne()
    {
        QFETCH(int, change);
        QFETCH(QStringList, lines);
        pass();
        if (change == 0)
            emit PostMsg::instance()->SigMainPageChange();
        if (change == 1)
            emit PostMsg::instance()->SigSelectMouseInfo(mouse(Receiver8K));
        if (change == 2)
            ConfigChanged = true;
        if (change == 3) {
            SettingsBusy = true;
            ReadStartedOnline = false;
        }
        pass();
        QCOMPARE(callNames(), QStringList{Question} + Connection);
        QCOMPARE(hub->lines, lines);
        QVERIFY(!ConfigChanged);
    }

    void offLineWithoutACacheResetsThePages()
    {
        layer.setOnline("mouse", false);
        pass();
        QCOMPARE(hub->lines, QStringList{"formreset"});
        QCOMPARE(callNames(), QStringList({Question, Question}) + Connection);
        QVERIFY(AwaitingMouse && !MouseOnline && !DataLoaded && !RestartWorker);
        QVERIFY(!SelectedDevice::info().Online);
    }

    void offLineWithACacheShowsIt()
    {
        FlashDataMap cached;
        memset(&cached, 0x5A, sizeof cached);
        hidusb::clamp(cached);
        ImageCacheWrite(SelectedDevice::cacheName(), cached);
        layer.setOnline("mouse", false);
        pass();
        QCOMPARE(hub->lines, (QStringList{"button", "light", "sensor", "form"}));
        QCOMPARE(memcmp(&hub->record, &cached, sizeof cached), 0);
        const FlashDataMap record = DeviceRecord::copy();
        const FlashDataMap empty{};
        QCOMPARE(memcmp(&record, &empty, sizeof record), 0); // the cache is shown, not taken over
    }

    // Announced as the program holds it: nothing, until that of this receiver is read.
    void theColorOfAnotherReceiverIsForgotten()
    {
        const auto read = [this] {
            layer.deliver(8, 0, std::vector<uint8_t>(FlashSize, 0));
            QTRY_VERIFY(hub->lines.contains(QStringLiteral("form")));
        };
        layer.edit("mouse", [](FakeDevice &mouse) { mouse.rgb.Scheme = 3; });
        pass();
        read();
        emit PostMsg::instance()->SigMainPageChange();
        pass(); // the same one again
        layer.deliver(21, 0, {});
        QTRY_VERIFY(hub->lines.contains(QStringLiteral("color 3")));
        FakeDevice other;
        other.path = "other";
        other.online = false;
        other.rgb.Scheme = 2;
        layer.addDevice(other);
        DeviceAllInfo info = mouse(Receiver8K);
        info.DevicePath = QStringLiteral("other");
        SelectedDevice::set(info);
        pointCurrentDeviceAt(info.DevicePath);
        MouseOnline = false;
        pass();
        layer.deliver(21, 0, {});
        QTRY_VERIFY(hub->lines.contains(QStringLiteral("color 0")));
        read();
        QVERIFY(hub->lines.contains(QStringLiteral("color 2")));
    }

    void anOffLineMouseIsConnectedAtEachVisit()
    {
        layer.setOnline("mouse", false);
        pass();
        pass();
        QCOMPARE(callNames(), QStringList{Question}); // the connection stands, nothing is new
        emit PostMsg::instance()->SigMainPageChange();
        pass();
        QCOMPARE(callNames(), QStringList({Question, Question}) + Connection);
        QCOMPARE(hub->lines, QStringList{"formreset"});
    }

    // Leaving and closing end the connection. A pass under way must not open another one.
    void aPassThatIsLeftLetsGo_data()
    {
        QTest::addColumn<bool>("byStop");
        QTest::addColumn<QByteArray>("during");
        QTest::addColumn<QStringList>("calls");
        const QStringList letGo = {"UsbServer_SetPCDriverStatus 0", "UsbServer_Exit"};
        for (const bool byStop : {false, true}) {
            const char *const way = byStop ? "closed" : "left";
            QTest::addRow("%s at the question", way)
                << byStop << QByteArray("UsbFinderC_GetDeviceOnLine") << QStringList{Question, Question};
            QTest::addRow("%s at the connection", way)
                << byStop << QByteArray("UsbServerC_Start")
                << QStringList{Question, Question} + Connection + letGo;
            QTest::addRow("%s at the read", way) << byStop << QByteArray("UsbServer_ReadAllFlashData")
                                                 << QStringList{Question, Question} + Connection + letGo;
        }
    }
    void aPassThatIsLeftLetsGo()
    {
        QFETCH(bool, byStop);
        QFETCH(QByteArray, during);
        QFETCH(QStringList, calls);
        // The first question is that of run().
        std::atomic<int> awaited{during == "UsbFinderC_GetDeviceOnLine" ? 2 : 1};
        layer.setHook([&](const std::string &name) {
            if (name != during.constData() || --awaited != 0)
                return;
            const auto leave = [&] { byStop ? worker->stop() : worker->SlotMainPageChange(); };
            QMetaObject::invokeMethod(worker.get(), leave, Qt::BlockingQueuedConnection);
        });
        pass();
        layer.setHook(nullptr);
        QCOMPARE(callNames(), calls);
        QVERIFY(!layer.connected());
        QVERIFY(!AwaitingMouse);
    }

    void nothingStartsAStoppedWorker()
    {
        worker->stop();
        QVERIFY(!worker->checkTimer().isActive());
        MouseOnline = RestartWorker = true;
        worker->SlotCheckOnline();
        QTRY_VERIFY(!RestartWorker && !worker->isRunning());
        worker->startPass();
        QTRY_VERIFY(!worker->isRunning());
        QVERIFY(callNames().isEmpty());
    }

    void aPassAskedForDuringAPassIsNotLost()
    {
        std::atomic<bool> once{true};
        layer.setHook([&](const std::string &name) {
            if (name == "UsbServer_ReadAllFlashData" && once.exchange(false)) {
                ConfigChanged = true;
                worker->startPass(); // the thread still runs
            }
        });
        worker->startPass();
        QTRY_COMPARE(layer.count("UsbServer_ReadAllFlashData"), 2);
        QTRY_VERIFY(worker->isFinished());
        layer.setHook(nullptr);
    }

    void watchPollsOnlyWhileAwaiting()
    {
        layer.clearCalls();
        worker->SlotCheckOnline();
        QVERIFY(callNames().isEmpty());

        AwaitingMouse = true;
        layer.setOnline("mouse", false);
        ReadStartedOnline = true;
        worker->SlotCheckOnline();
        QCOMPARE(callNames(), QStringList{Question});
        QVERIFY(AwaitingMouse && !MouseOnline && !ReadStartedOnline);
        QVERIFY(hub->lines.isEmpty());
    }

    void watchEndsTheNoticeAndReadsAgain_data()
    {
        QTest::addColumn<bool>("restart");
        QTest::newRow("after a refused write") << true;
        QTest::newRow("after a pass that found no mouse") << false;
    }
    void watchEndsTheNoticeAndReadsAgain()
    {
        QFETCH(bool, restart);
        AwaitingMouse = true;
        RestartWorker = restart;
        layer.clearCalls();
        worker->SlotCheckOnline();
        QTRY_VERIFY(!worker->isRunning());
        QCoreApplication::processEvents();
        QVERIFY(!AwaitingMouse && MouseOnline && !RestartWorker);
        QCOMPARE(hub->lines, restart ? (QStringList{"closenotice", "wait 0"}) : QStringList{"closenotice"});
        QCOMPARE(layer.count("UsbServer_ReadAllFlashData"), restart ? 1 : 0);
    }

    void watchOnTheSelectionPage_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("stillAwaiting");
        QTest::newRow("1 kHz receiver") << int(Receiver1K) << true;
        QTest::newRow("8 kHz receiver") << int(Receiver8K) << false;
        QTest::newRow("kind with an empty low byte") << 0x100 << true;
    }
    void watchOnTheSelectionPage()
    {
        QFETCH(int, kind);
        QFETCH(bool, stillAwaiting);
        emit PostMsg::instance()->SigSelectMouseInfo(mouse(uint16_t(kind)));
        OnDevicePage = 0;
        AwaitingMouse = true;
        layer.clearCalls();
        worker->SlotCheckOnline();
        QCOMPARE(AwaitingMouse.load(), stillAwaiting);
        QVERIFY(callNames().isEmpty());
    }

    void watchIsQuietDuringAnUpgrade()
    {
        AwaitingMouse = true;
        NotUpgrading = false;
        layer.clearCalls();
        worker->SlotCheckOnline();
        QVERIFY(callNames().isEmpty());
        QVERIFY(AwaitingMouse);
    }

    void shutDownLetsADeliveringPassFinish()
    {
        layer.setOnline("mouse", false); // a pass that ends in a blocking signal
        worker->startPass();
        worker->shutDown();
        QVERIFY(!worker->isRunning());
    }
};

TEST_CLASS(tst_worker, testmain::CoreApplication)
#include "tst_worker.moc"
