// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The message dispatch against a scripted layer: what each message publishes, asks and stores.
#include "catalogue/RegistryStore.h"
#include "device/DeviceRecord.h"
#include "tests/support/OtherThread.h"
#include "tests/support/TestMain.h"
#include "tests/unit/device/DispatchFixture.h"

#include <cstring>

class tst_dispatch : public DispatchFixture
{
    Q_OBJECT

private slots:
    void init() { begin(); }
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
        bool taken = true;
        // A machine that stands still for the three seconds lets the next one through.
        for (int round = 0; round < 10 && taken; ++round) {
            QTRY_VERIFY_WITH_TIMEOUT((deliver(10, 0, everything), ConfigChanged.load()), 30000);
            QVERIFY(RestartWorker);
            ConfigChanged = RestartWorker = false;
            deliver(10, 0, everything);
            taken = ConfigChanged.exchange(false) || RestartWorker.exchange(false);
        }
        QVERIFY(!taken);
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

    // As the selection page looks for it.
    void versionIsStoredUnderTheCataloguesTexts()
    {
        QFile catalogue(product.path(QStringLiteral("texts.ini")));
        QVERIFY(catalogue.open(QIODevice::WriteOnly));
        catalogue.write("[Option]\nCID=" + ProductFolder::code("018") + "\n[Drive2]\nMID=07\n");
        catalogue.close();
        ConfigReader::instance().open(catalogue.fileName());
        select(1, Receiver8K);
        deliver(18, 0, {});
        ConfigReader::instance().open(product.path(QStringLiteral("usersetting/Config.ini")));
        QCOMPARE(RegistryStore::instance().value(registry::BaseGroup, QStringLiteral("MouseVer01807")),
                 SelectedDevice::info().MouseVersion);
        QVERIFY(!SelectedDevice::info().MouseVersion.isEmpty());
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
        runOnOtherThread([&] {
            ProtocolCallback(header, 7, rate, 1); // address 0x0909
            ProtocolCallback(header, 3, rate, 1); // no address: 0
            ProtocolCallback(header, 1, rate, 1); // no code
            ProtocolCallback(header, -5, rate, 1);
            ProtocolCallback(nullptr, 7, rate, 1);
            ProtocolCallback(header, 3, nullptr, 1); // a body that is not there has no length
        });
        QCOMPARE(hub->lines, QStringList{"rate 64"});
    }

    // A battery of one or two bytes, a status that ends before its last items: what is missing counts as 0.
    void shortBodiesAreReadAsFarAsTheyGo()
    {
        select(0, Receiver1K);
        deliver(4, 0, Bytes{55, 1, 9, 9});
        deliver(4, 0, Bytes{54, 1});
        deliver(4, 0, Bytes{53});
        QCOMPARE(hub->lines, (QStringList{"battery 1 55 0", "battery 1 54 0", "battery 0 53 0"}));
        layer.clearCalls();
        deliver(10, 0, Bytes{1, 1, 0, 0, 0, 1, 1});
        deliver(10, 0, Bytes{1, 1});
        deliver(10, 0, Bytes{0, 0, 0, 0, 0, 1});
        QStringList asked = callNames();
        asked.removeAll(QStringLiteral("GetDeviceStatusChanged"));
        QCOMPARE(asked, (QStringList{"UsbServer_ReadCurrentDPI", "UsbServer_ReadReportRate",
                                     "UsbServer_ReadBatteryLevel", "UsbServer_ReadLedBar",
                                     "UsbServer_ReadCurrentDPI", "UsbServer_ReadReportRate",
                                     "UsbServer_ReadLedBar"}));
    }

    void emptyBodiesAreDropped()
    {
        select(0, Receiver1K);
        deliver(4, 0, {});
        deliver(10, 0, {});
        deliver(4, 0, Bytes{55});
        QCOMPARE(hub->lines, QStringList{"battery 0 55 0"});
        QCOMPARE(callNames(), QStringList{"GetDeviceBatteryStatus"});
    }
};

TEST_CLASS(tst_dispatch, testmain::CoreApplication)
#include "tst_dispatch.moc"
