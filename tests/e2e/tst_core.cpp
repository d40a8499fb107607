// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A device and an edit pass through worker, dispatch, layer and emulated mouse; the mouse is lost at each of
// these steps.
#include "tests/e2e/CoreFixture.h"
#include "tests/support/ProductFolder.h"
#include "tests/support/TestMain.h"

#include <QRandomGenerator>

namespace
{

const char Receiver1k[] = "mouse m cid 18 mid 6 version 1.05 battery 80\n"
                          "receiver r class 1k mouse m version 1.02 address a10001\n"
                          "plug r\n";
const char MouseOnItsCable[] = "mouse m cid 18 mid 8 version 1.05 battery 80\n"
                               "plug m\n";

} // namespace

class tst_core : public QObject
{
    Q_OBJECT

private:
    ProductFolder product{smallCatalogue()};

private slots:
    void aDeviceIsLoaded_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::newRow("behind a receiver") << QString::fromLatin1(Receiver1k);
        QTest::newRow("on its cable") << QString::fromLatin1(MouseOnItsCable);
    }
    void aDeviceIsLoaded()
    {
        QFETCH(QString, scenario);
        CoreFixture core(scenario.toLatin1().constData());
        QVERIFY(core.select());
        QVERIFY(core.load());
        QVERIFY(sameBytes(DeviceRecord::copy(), core.bus.record("m")));
        QVERIFY(sameBytes(core.hub.record, core.bus.record("m")));
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("battery 0 80 1")));
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("config 4 0 1")));
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("setver 0")));
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("dpiled")));
        QCOMPARE(SelectedDevice::info().MouseVersion, QStringLiteral("v1.05"));
        QVERIFY(!core.watchdog.barked());
    }

    void anEditReachesTheFlash()
    {
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        QVERIFY(core.settle("m"));
        const uint64_t writes = core.bus.emulated.reportCount("r", wire::Command::FlashWrite);
        const FlashImage before = core.bus.flash("m");
        for (uint8_t rate : {8, 4, 2, 1}) {
            QVERIFY(core.edit([rate] { return SetReportRate(rate); }));
            QTRY_COMPARE(int(core.bus.flash("m").ReportRate), int(rate));
        }
        FlashImage after = core.bus.flash("m");
        after.ReportRate = before.ReportRate;
        QCOMPARE(memcmp(&after, &before, sizeof after), 0); // nothing but byte 0
        QVERIFY(core.bus.emulated.reportCount("r", wire::Command::FlashWrite) - writes <= 4);
    }

    void anEditWithTheRadioOffIsRefused()
    {
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        core.bus.order("radio m off");
        QSignalSpy notice(PostMsg::instance(), SIGNAL(SigMouseOffLineo(int)));
        const FlashDataMap before = DeviceRecord::copy();
        QVERIFY(!SetReportRate(8));
        QVERIFY(sameBytes(DeviceRecord::copy(), before));
        QCOMPARE(notice.count(), 1);

        AwaitingMouse = RestartWorker = true; // what the notice's opening sets
        core.worker->SlotCheckOnline();
        QVERIFY(AwaitingMouse);
        core.bus.order("radio m on");
        core.hub.lines.clear();
        core.worker->SlotCheckOnline();
        QVERIFY(!AwaitingMouse);
        QVERIFY(core.hub.lines.contains(QStringLiteral("closenotice")));
        QTRY_VERIFY(core.loaded()); // and the device is read anew
        QVERIFY(core.edit([] { return SetReportRate(8); }));
        QVERIFY(core.agrees("m"));
    }

    void whatTheMouseChangesArrivesWithoutAWrite_data()
    {
        QTest::addColumn<QString>("order");
        QTest::addColumn<QString>("line");
        QTest::newRow("DPI button") << "press m dpi"
                                    << "dpi ";
        QTest::newRow("rate button") << "press m rate"
                                     << "rate ";
    }
    void whatTheMouseChangesArrivesWithoutAWrite()
    {
        QFETCH(QString, order);
        QFETCH(QString, line);
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        QVERIFY(core.settle("m"));
        core.hub.lines.clear();
        const uint64_t writes = core.bus.emulated.reportCount("r", wire::Command::FlashWrite);
        core.bus.order(order.toStdString());
        QTRY_VERIFY(!core.hub.lines.filter(line).isEmpty());
        QVERIFY(core.settle("m"));
        QVERIFY(core.agrees("m"));
        QCOMPARE(core.bus.emulated.reportCount("r", wire::Command::FlashWrite), writes);
    }

    void batteryIsFollowed()
    {
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        core.bus.order("battery m 15 charging");
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("battery 1 15 1")));
    }

    void theReceiversNoticesArePublished()
    {
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        core.hub.lines.clear();
        core.bus.order("color r 2");
        QTRY_VERIFY(!core.hub.lines.filter(QStringLiteral("color")).isEmpty());
        core.bus.order("longrange r off");
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("longrange 0")));
        core.hub.lines.clear();
        core.bus.order("press m light");
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("dpiled")));
        core.bus.order("press m bar");
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("light")));
        QVERIFY(core.agrees("m"));
    }

    // Whatever stands in the flash, the program goes on; what it cannot mean is put right on the device.
    void aMouseThatLiesInEveryByte_data()
    {
        QTest::addColumn<int>("fill"); // below 0: random
        QTest::newRow("all 0xFF") << 0xFF;
        QTest::newRow("all 0") << 0;
        for (int seed = 1; seed <= 20; ++seed)
            QTest::addRow("random %d", seed) << -seed;
    }
    void aMouseThatLiesInEveryByte()
    {
        QFETCH(int, fill);
        QRandomGenerator random(quint32(qAbs(fill)));
        CoreFixture core(Receiver1k);
        for (std::size_t address = 0; address < FlashSize; address += 48) {
            std::string line = "set m flash " + std::to_string(address);
            for (int i = 0; i < 48; ++i)
                line += QString::asprintf(" %02x", fill >= 0 ? fill : int(random.bounded(256))).toStdString();
            core.bus.order(line);
        }
        QVERIFY(core.select());
        QVERIFY(core.load());
        QVERIFY(core.agrees("m"));
        const FlashDataMap record = DeviceRecord::copy();
        QVERIFY(record.DpiStageCount <= DpiStageLimit && record.CurrentDpiStage < DpiStageLimit);
        for (int slot = 0; slot < KeySlotCount; ++slot) {
            QVERIFY(record.KeySequences[slot].Count.get() <= uint32_t(KeySequenceEventCount));
            QVERIFY(record.MacroBlocks[slot].NameLength <= MacroNameSize);
            QVERIFY(record.MacroBlocks[slot].EventCount <= MacroEventCount);
        }
        QVERIFY(core.edit([] { return SetReportRate(2); }));
        QTRY_COMPARE(int(core.bus.flash("m").ReportRate), 2);
        QVERIFY(core.agrees("m"));
    }

    void aProfileButtonBringsAWholeNewRead()
    {
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        QVERIFY(core.edit([] { return SetReportRate(8); }));
        QVERIFY(core.agrees("m"));
        core.hub.lines.clear();
        // Whole reads are three seconds apart, so the first presses may come too early.
        QTRY_VERIFY_WITH_TIMEOUT((core.bus.order("profile m 2"), core.spin(50), ConfigChanged.load()), 8000);
        MouseOnline = true;
        core.worker->SlotCheckOnline();
        QTRY_VERIFY(core.loaded());
        QVERIFY(core.hub.lines.contains(QStringLiteral("wait 1")));
        QVERIFY(core.agrees("m"));
        QCOMPARE(int(DeviceRecord::copy().ReportRate), 1); // the other profile has its own rate
    }

    void aFactoryResetEndsInARead()
    {
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        QVERIFY(core.edit([] { return SetReportRate(8); }));
        KeySequence sequence{};
        sequence.Count.set(2);
        QVERIFY(core.edit([&] { return SetKeySequence(3, {5, 0, 0}, sequence); }));
        QVERIFY(core.agrees("m"));
        core.hub.lines.clear();
        UsbServer_SetBatteryOptimizeEnable(0);
        PushRecord();
        UsbServer_SetClearSetting();
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("form")));
        QCOMPARE(int(DeviceRecord::copy().ReportRate), 1);
        QVERIFY(core.hub.lines.contains(QStringLiteral("color 2")));
        QVERIFY(core.agrees("m"));
        QCOMPARE(core.bus.emulated.mouse("m")->batteryOptimize, uint8_t(1));
    }

    // ---- Loss

    void lostAtTheStartOfAPass()
    {
        CoreFixture core(Receiver1k);
        core.bus.order("radio m off");
        QVERIFY(core.select());
        core.startLoad();
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("formreset")));
        QTRY_VERIFY(!core.worker->isRunning());
        QVERIFY(AwaitingMouse && !DataLoaded && !MouseOnline);
        QVERIFY(core.hub.lines.filter(QStringLiteral("wait")).isEmpty());
        core.bus.order("radio m on");
        core.worker->SlotCheckOnline();
        QVERIFY(!AwaitingMouse);
        QVERIFY(core.load());
        QVERIFY(core.agrees("m"));
    }

    void lostBeforeTheFirstReadAnEditNeverWritesAnEmptyRecord()
    {
        CoreFixture core(Receiver1k);
        core.bus.order("radio m off");
        QVERIFY(core.select());
        core.startLoad();
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("formreset")));
        const FlashImage before = core.bus.flash("m");
        core.bus.order("radio m on");
        SetReportRate(8); // answers, but nothing is known of the mouse yet
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("form"))); // so it is read first
        QVERIFY(core.agrees("m"));
        FlashImage after = core.bus.flash("m");
        after.ReportRate = before.ReportRate;
        QCOMPARE(memcmp(&after, &before, sizeof after), 0);
    }

    void lostDuringTheLoad()
    {
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        core.bus.order("fault r radio at 60");
        core.startLoad();
        QTRY_VERIFY(!core.bus.emulated.mouse("m")->radio);
        QTRY_VERIFY(!core.worker->isRunning());
        QVERIFY(!core.loaded());
        core.bus.order("radio m on");
        QVERIFY(core.load());
        QVERIFY(core.agrees("m"));
    }

    void pulledWhileThePageShows()
    {
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        StartUsbChanged(DevicePageUsbChanged, UsbSettleMs);
        QTRY_VERIFY(!core.hub.lines.filter(QStringLiteral("labels")).isEmpty());
        QVERIFY(!core.hub.lines.contains(QStringLiteral("page 0")));
        core.bus.order("unplug r");
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("page 0")));
        QVERIFY(!SetReportRate(8));
    }

    void backUnderTheSameNameInNoTime()
    {
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        core.hub.lines.clear();
        core.bus.order("unplug r");
        core.bus.order("set m flash 0 04");
        core.bus.order("plug r");
        // The connection finds its way to the device again and reads it before it writes anything.
        QTRY_VERIFY(UsbFinderC_GetDeviceOnLine(CurrentDevicePath()));
        PushRecord();
        QTRY_VERIFY(core.hub.lines.contains(QStringLiteral("form")));
        QCOMPARE(int(DeviceRecord::copy().ReportRate), 4);
        QVERIFY(core.edit([] { return SetReportRate(8); }));
        QVERIFY(core.agrees("m"));
    }

    void aMouseThatNeverAnswersAWriteIsOffLine()
    {
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        QVERIFY(core.settle("m"));
        core.bus.order("fault r noreply always command flashwrite");
        QVERIFY(core.edit([] { return SetReportRate(8); }));
        QTRY_VERIFY(!UsbFinderC_GetDeviceOnLine(CurrentDevicePath()));
        QVERIFY(!SetReportRate(4));
        core.bus.order("fault r clear");
        QTRY_VERIFY(UsbFinderC_GetDeviceOnLine(CurrentDevicePath()));
        QVERIFY(core.agrees("m"));
        QVERIFY(!core.watchdog.barked());
    }

    void aThousandRandomEventsEndInEqualRecordAndFlash_data()
    {
        QTest::addColumn<quint32>("seed");
        QTest::newRow("seed 1") << 1u;
        QTest::newRow("seed 2") << 2u;
    }
    void aThousandRandomEventsEndInEqualRecordAndFlash()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        CoreFixture core(Receiver1k);
        QVERIFY(core.select());
        QVERIFY(core.load());
        StartUsbChanged(DevicePageUsbChanged, UsbSettleMs);
        // The kernel's own plugging takes a second of each tenth event.
        const int events = EmulatedBus::isUsb() ? 150 : 500;
        for (int event = 0; event < events; ++event) {
            randomEvent(core, random);
            QCoreApplication::processEvents();
        }
        core.bus.order("plug r");
        core.bus.order("radio m on");
        QVERIFY(core.waitFor([&] { return core.select(); }));
        QTRY_VERIFY(!core.worker->isRunning());
        QVERIFY(core.load());
        QVERIFY(core.agrees("m"));
        QVERIFY(core.edit([] { return SetReportRate(2); }));
        QVERIFY(core.agrees("m"));
        QVERIFY(!core.watchdog.barked());
    }

private:
    static void randomEvent(CoreFixture &core, QRandomGenerator &random)
    {
        switch (random.bounded(12)) {
        case 0:
            core.bus.order("unplug r");
            break;
        case 1:
        case 2:
            core.bus.order("plug r");
            break;
        case 3:
            core.bus.order("radio m off");
            break;
        case 4:
        case 5:
            core.bus.order("radio m on");
            break;
        case 6:
            core.bus.order("press m dpi");
            break;
        case 7:
            core.startLoad();
            break;
        default:
            SetDpiColor(random.bounded(8), uint8_t(random.bounded(256)), uint8_t(random.bounded(256)), 7);
            SetReportRate(uint8_t(1 << random.bounded(4)));
        }
    }
};

TEST_CLASS(tst_core, CoreSetUp)
#include "tst_core.moc"
