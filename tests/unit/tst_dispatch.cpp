// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The whole message dispatch against a scripted layer: what each message publishes, asks and stores.
#include "catalogue/config/RegistryStore.h"
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/EventDispatch.h"
#include "device/hidusb/wire/FlashLayout.h"
#include "tests/support/FakeHidUsb.h"
#include "tests/support/HubLog.h"
#include "tests/support/ProductFolder.h"

#include <QtTest>
#include <cstring>

namespace
{
using Bytes = std::vector<uint8_t>;
const Bytes Image(FlashSize, 0);
} // namespace

class tst_dispatch : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &layer = FakeHidUsb::instance();
    ProductFolder product{smallCatalogue()};
    std::unique_ptr<HubLog> hub;

    void select(int driveIndex, uint16_t kind)
    {
        DeviceAllInfo info;
        info.DevicePath = QStringLiteral("mouse");
        info.Cid = 18;
        info.Mid = uint8_t(driveIndex + 6);
        info.DriveIndex = driveIndex;
        info.DeviceKind = kind;
        info.Usb = isWiredKind(kind);
        SelectedDevice::set(info);
        pointCurrentDeviceAt(info.DevicePath);
        UsbServerC_Start("mouse", "mouse", ProtocolCallback);
        layer.clearCalls();
    }
    // Runs the callback with a message and waits until it has returned.
    void deliver(uint8_t code, uint16_t address, const Bytes &payload)
    {
        layer.deliver(code, address, payload);
        QTRY_VERIFY(layer.idle());
        QCoreApplication::processEvents(); // the queued signals
    }
    QStringList callNames() const
    {
        QStringList names;
        for (const std::string &call : layer.calls())
            names.append(QString::fromStdString(call));
        return names;
    }

private slots:
    void init()
    {
        layer.reset();
        resetDeviceState();
        FakeDevice mouse;
        mouse.path = "mouse";
        mouse.answersLongRange = true;
        layer.setDevices({mouse});
        hub = std::make_unique<HubLog>();
        startStatusTimer();
    }
    void cleanup() { QTRY_VERIFY(layer.idle()); }

    void batteryIsPublished_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<int>("asNumber");
        QTest::addColumn<QString>("line");
        QTest::newRow("charging, as number")
            << QByteArray("\x37\x01\0\0", 4) << 1 << QStringLiteral("battery 1 55 1");
        QTest::newRow("not charging") << QByteArray("\x0F\0\0\0", 4) << 1 << QStringLiteral("battery 0 15 1");
        QTest::newRow("any other switch")
            << QByteArray("\x64\0\0\0", 4) << 2 << QStringLiteral("battery 0 100 0");
    }
    void batteryIsPublished()
    {
        QFETCH(QByteArray, payload);
        QFETCH(int, asNumber);
        QFETCH(QString, line);
        select(0, Receiver1K);
        BatteryAsNumber = asNumber;
        deliver(4, 0, Bytes(payload.begin(), payload.end()));
        QCOMPARE(hub->lines, QStringList{line});
    }

    void partialReadsAreStoredAndPublished_data()
    {
        QTest::addColumn<int>("address");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("pushes");
        QTest::newRow("report rate") << 0 << 1 << "rate 32" << 0 << 1;
        QTest::newRow("current stage") << 4 << 1 << "dpi 32" << 2 << 1;
        QTest::newRow("indicator") << 0x4C << 8 << "dpiled" << 84 << 0;
        QTest::newRow("light bar") << 0xA0 << 9 << "light" << 88 << 0;
    }
    void partialReadsAreStoredAndPublished()
    {
        QFETCH(int, address);
        QFETCH(int, length);
        QFETCH(QString, line);
        QFETCH(int, offset);
        QFETCH(int, pushes);
        select(0, Receiver1K);
        deliver(8, uint16_t(address), Bytes(size_t(length), 32));
        QCOMPARE(hub->lines, QStringList{line});
        const FlashDataMap record = DeviceRecord::copy();
        QCOMPARE(int(reinterpret_cast<const uint8_t *>(&record)[offset]), 32);
        QCOMPARE(layer.count("ProtocolDataUpdate"), pushes);
    }

    void memoryOfAnotherShapeIsDropped_data()
    {
        QTest::addColumn<int>("address");
        QTest::addColumn<int>("length");
        QTest::newRow("high address byte") << 0x0100 << 1;
        QTest::newRow("image at another address") << 4 << 6912;
        QTest::newRow("image at a far address") << 0x1000 << 6912;
        QTest::newRow("short image") << 0 << 6911;
        QTest::newRow("long image") << 0 << 6913;
        QTest::newRow("two bytes of rate") << 0 << 2;
        QTest::newRow("no bytes of rate") << 0 << 0;
        QTest::newRow("two bytes of stage") << 4 << 2;
        QTest::newRow("seven bytes of indicator") << 0x4C << 7;
        QTest::newRow("ten bytes of bar") << 0xA0 << 10;
        QTest::newRow("unknown address") << 1 << 1;
    }
    void memoryOfAnotherShapeIsDropped()
    {
        QFETCH(int, address);
        QFETCH(int, length);
        select(0, Receiver1K);
        deliver(8, uint16_t(address), Bytes(size_t(length), 32));
        QVERIFY(hub->lines.isEmpty());
        QVERIFY(layer.updates().empty());
        const FlashDataMap record = DeviceRecord::copy();
        const FlashDataMap untouched{};
        QCOMPARE(memcmp(&record, &untouched, sizeof record), 0);
    }

    void fullReadFillsTheRecordAndFeedsThePages()
    {
        FlashDataMap parsed{};
        parsed.ReportRate = 1;
        parsed.KeySequences[0].Count.set(2);
        layer.setParsed(parsed);
        layer.edit("mouse", [](FakeDevice &mouse) {
            mouse.rgb.Scheme = 3;
            mouse.longRange = 1;
        });
        select(0, Receiver8K);
        SensorPageLoaded = LightPageLoaded = ButtonPageLoaded = true;
        WorkerArmed = true;
        DeviceRecord::edit([](FlashDataMap &record) { memset(&record, 0xEE, sizeof record); });
        deliver(8, 0, Image);

        QCOMPARE(hub->lines,
                 (QStringList{"usb 0 1", "color 3", "longrange 1", "button", "light", "sensor", "form"}));
        QCOMPARE(memcmp(&hub->record, &parsed, sizeof parsed), 0);
        QCOMPARE(callNames(), (QStringList{"ProtocolDataParser", "UsbServer_ReadDPILed",
                                           "UsbServer_ReadBatteryLevel", "UsbServer_ReadVersion",
                                           "UsbServer_ReadConfig", "UsbFinderC_Get4KDongleRGBValue mouse",
                                           "UsbFinderC_GetLongRangeMode mouse", "ProtocolDataUpdate"}));
        QCOMPARE(memcmp(&layer.updates().back(), &parsed, sizeof parsed), 0);
        QVERIFY(DataLoaded && !WorkerArmed && !FullReadPending);
        QVERIFY(!SensorPageLoaded && !LightPageLoaded && !ButtonPageLoaded); // no page here sets them again
        QCOMPARE(SelectedDevice::imageName(), QStringLiteral("Device_CID12_MID06.bin"));
    }

    void onACableTheReceiverColourIsNotAsked()
    {
        layer.edit("mouse", [](FakeDevice &mouse) { mouse.rgb.Scheme = 3; });
        select(0, 3);
        deliver(8, 0, Image);
        QCOMPARE(layer.count("UsbFinderC_Get4KDongleRGBValue"), 0);
        QCOMPARE(layer.count("UsbFinderC_GetLongRangeMode"), 1);
        QVERIFY(hub->lines.contains(QStringLiteral("usb 1 1")));
    }

    void receiverAnswersDecideWhatIsPublished_data()
    {
        QTest::addColumn<int>("scheme");
        QTest::addColumn<bool>("answers");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("no colour, off") << 0 << true << 0 << QStringList{};
        QTest::newRow("colour") << 1 << true << 0 << QStringList{"color 1"};
        QTest::newRow("no answer") << 0 << false << 1 << QStringList{};
        QTest::newRow("on with any value") << 0 << true << 7 << QStringList{"longrange 1"};
    }
    void receiverAnswersDecideWhatIsPublished()
    {
        QFETCH(int, scheme);
        QFETCH(bool, answers);
        QFETCH(int, mode);
        QFETCH(QStringList, lines);
        layer.edit("mouse", [&](FakeDevice &mouse) {
            mouse.rgb.Scheme = uint8_t(scheme);
            mouse.answersLongRange = answers;
            mouse.longRange = uint8_t(mode);
        });
        select(0, Receiver8K);
        DongleRGB nothing{};
        UsbFinderC_Set4KDongleRGB("mouse", &nothing);
        layer.edit("mouse", [&](FakeDevice &mouse) { mouse.rgb.Scheme = uint8_t(scheme); });
        deliver(8, 0, Image);
        QCOMPARE(hub->lines,
                 (QStringList{"usb 0 1"} + lines + QStringList{"button", "light", "sensor", "form"}));
    }

    void afterAResetBlocksAreCleared_data()
    {
        QTest::addColumn<int>("driveIndex");
        QTest::addColumn<int>("cleared");
        QTest::newRow("nothing kept: all") << 0 << 16;
        QTest::newRow("slot 2 kept: the two in front of it") << 1 << 2;
        QTest::newRow("slot 0 kept: none") << 2 << 0;
    }
    void afterAResetBlocksAreCleared()
    {
        QFETCH(int, driveIndex);
        QFETCH(int, cleared);
        FlashDataMap parsed;
        memset(&parsed, 0x11, sizeof parsed);
        layer.setParsed(parsed);
        select(driveIndex, 3);
        ClearBlocksAfterRead = SkipReceiverQuery = true;
        deliver(8, 0, Image);
        for (int slot = 0; slot < cleared; ++slot) {
            parsed.KeySequences[slot] = KeySequence();
            parsed.MacroBlocks[slot] = MacroBlock();
        }
        QCOMPARE(memcmp(&hub->record, &parsed, sizeof parsed), 0);
        QCOMPARE(layer.count("UsbFinderC_GetLongRangeMode"), 0);
        QVERIFY(!ClearBlocksAfterRead && !SkipReceiverQuery);

        memset(&parsed, 0x11, sizeof parsed); // the next full read clears nothing
        deliver(8, 0, Image);
        QCOMPARE(memcmp(&hub->record, &parsed, sizeof parsed), 0);
    }

    void resetDoneRestoresTheReceiver_data()
    {
        QTest::addColumn<int>("driveIndex");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QStringList>("calls");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("colour 2, long range off, receiver")
            << 0 << int(Receiver8K)
            << QStringList{"UsbFinderC_Set4KDongleRGB mouse 2", "UsbFinderC_SetLongRangeMode mouse 0"}
            << QStringList{"color 2", "longrange 0"};
        QTest::newRow("colour 2 on a cable: long range alone")
            << 0 << 3 << QStringList{"UsbFinderC_SetLongRangeMode mouse 0"} << QStringList{"longrange 0"};
        QTest::newRow("long range on")
            << 1 << int(Receiver8K) << QStringList{"UsbFinderC_SetLongRangeMode mouse 1"}
            << QStringList{"longrange 1"};
        QTest::newRow("neither") << 2 << int(Receiver8K) << QStringList{} << QStringList{};
        QTest::newRow("no such model") << 9 << int(Receiver8K) << QStringList{} << QStringList{};
    }
    void resetDoneRestoresTheReceiver()
    {
        QFETCH(int, driveIndex);
        QFETCH(int, kind);
        QFETCH(QStringList, calls);
        QFETCH(QStringList, lines);
        select(driveIndex, uint16_t(kind));
        deliver(9, 0, {});
        QCOMPARE(callNames(), QStringList{"UsbServer_SetBatteryOptimizeEnable 1"} + calls +
                                  QStringList{"UsbServer_ReadAllFlashData"});
        QCOMPARE(hub->lines, lines);
        QVERIFY(ClearBlocksAfterRead && SkipReceiverQuery);
    }

    void statusChangesAskInOrder_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QStringList>("calls");
        const auto row = [](std::initializer_list<int> set) {
            QByteArray payload(7, '\0');
            for (int index : set)
                payload[index] = '\1';
            return payload;
        };
        QTest::newRow("nothing") << row({}) << QStringList{};
        QTest::newRow("stage") << row({0}) << QStringList{"UsbServer_ReadCurrentDPI"};
        QTest::newRow("rate") << row({1}) << QStringList{"UsbServer_ReadReportRate"};
        QTest::newRow("indicator") << row({3}) << QStringList{"UsbServer_ReadDPILed"};
        QTest::newRow("unused byte") << row({4}) << QStringList{};
        QTest::newRow("bar") << row({5}) << QStringList{"UsbServer_ReadLedBar"};
        QTest::newRow("battery") << row({6}) << QStringList{"UsbServer_ReadBatteryLevel"};
        QTest::newRow("all") << row({0, 1, 3, 5, 6})
                             << QStringList{"UsbServer_ReadCurrentDPI", "UsbServer_ReadReportRate",
                                            "UsbServer_ReadBatteryLevel", "UsbServer_ReadLedBar",
                                            "UsbServer_ReadDPILed"};
    }
    void statusChangesAskInOrder()
    {
        QFETCH(QByteArray, payload);
        QFETCH(QStringList, calls);
        select(0, Receiver1K);
        deliver(10, 0, Bytes(payload.begin(), payload.end()));
        QStringList asked = callNames();
        asked.removeAll(QStringLiteral("GetDeviceStatusChanged"));
        QCOMPARE(asked, calls);
        QVERIFY(!RestartWorker && !ConfigChanged);
    }

    void aWholeNewReadComesOnceInThreeSeconds()
    {
        select(0, Receiver1K);
        const Bytes everything = {0, 0, 1, 0, 0, 0, 0};
        deliver(10, 0, everything);
        QVERIFY(!ConfigChanged); // the time has just begun
        QTRY_VERIFY_WITH_TIMEOUT((deliver(10, 0, everything), ConfigChanged.load()), 6000);
        QVERIFY(RestartWorker);
        ConfigChanged = RestartWorker = false;
        deliver(10, 0, everything);
        QVERIFY(!ConfigChanged && !RestartWorker);
    }

    void configurationIsPublished_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("line");
        QTest::newRow("one byte") << 1 << "config 4 2 1";
        QTest::newRow("none") << 0 << "config 0 0 0";
        QTest::newRow("two") << 2 << "config 0 0 0";
    }
    void configurationIsPublished()
    {
        QFETCH(int, length);
        QFETCH(QString, line);
        select(0, Receiver1K);
        deliver(14, 0, Bytes(size_t(length), 2));
        QCOMPARE(hub->lines, QStringList{line});
    }

    void versionIsAskedStoredAndAnnounced()
    {
        layer.edit("mouse", [](FakeDevice &mouse) { mouse.mouseVersion = 0x010A; });
        select(1, Receiver8K);
        deliver(18, 0, {});
        QCOMPARE(SelectedDevice::info().MouseVersion, QStringLiteral("v1.0A"));
        QCOMPARE(hub->lines, QStringList{"setver 0"});
        QCOMPARE(RegistryStore::instance().value(registry::BaseGroup, QStringLiteral("MouseVer187")),
                 QStringLiteral("v1.0A"));
    }

    void receiverNotices_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("length");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("long range off") << 23 << 10 << QStringList{"longrange 0"};
        QTest::newRow("long range of another length") << 23 << 9 << QStringList{};
        QTest::newRow("code below") << 3 << 10 << QStringList{};
        QTest::newRow("unlisted code") << 15 << 10 << QStringList{};
        QTest::newRow("code above") << 24 << 10 << QStringList{};
    }
    void receiverNotices()
    {
        QFETCH(int, code);
        QFETCH(int, length);
        QFETCH(QStringList, lines);
        select(0, Receiver1K);
        deliver(uint8_t(code), 0, Bytes(size_t(length), 0));
        QCOMPARE(hub->lines, lines);
    }

    void colourChangeReportsTheRecordAsItStands()
    {
        layer.edit("mouse", [](FakeDevice &mouse) { mouse.rgb.Scheme = 1; });
        select(0, Receiver8K);
        deliver(8, 0, Image);
        hub->lines.clear();
        layer.edit("mouse", [](FakeDevice &mouse) { mouse.rgb.Scheme = 2; });
        deliver(21, 0, {});
        QCOMPARE(hub->lines, QStringList{"color 1"});
    }

    void shortHeadersLeaveFieldsZero()
    {
        select(0, Receiver1K);
        const uint8_t header[] = {5, 8, 0, 9, 9, 0, 0};
        const uint8_t rate[56] = {64};
        std::atomic<bool> ended{false};
        std::thread callback([&] {
            ProtocolCallback(header, 7, rate, 1); // address 0x0909
            ProtocolCallback(header, 3, rate, 1); // no address: 0
            ProtocolCallback(header, 1, rate, 1); // no code
            ProtocolCallback(header, -5, rate, 1);
            ProtocolCallback(nullptr, 7, rate, 1);
            ProtocolCallback(header, 3, nullptr, 1); // a body that is not there has no length
            ended = true;
        });
        QTRY_VERIFY(ended);
        callback.join();
        QCOMPARE(hub->lines, QStringList{"rate 64"});
    }

    void shortBodiesAreNotRead()
    {
        select(0, Receiver1K);
        deliver(4, 0, Bytes(3, 9));
        deliver(10, 0, Bytes(6, 1));
        QVERIFY(hub->lines.isEmpty());
        QVERIFY(callNames().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_dispatch)
#include "tst_dispatch.moc"
