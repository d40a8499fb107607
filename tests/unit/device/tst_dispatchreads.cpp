// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Full reads and resets: what they store, feed to the pages and ask of the receiver.
#include "catalogue/RegistryStore.h"
#include "device/DeviceRecord.h"
#include "tests/support/TestMain.h"
#include "tests/unit/device/DispatchFixture.h"

#include <cstring>

class tst_dispatchreads : public DispatchFixture
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { QTRY_VERIFY(layer.idle()); }

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
        WorkerArmed = FullReadAwaited = true;
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
        QVERIFY(DataLoaded && !WorkerArmed && !FullReadAwaited && !FullReadPending);
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

    void aSilentReceiverHasNoColorOfTheOneBefore()
    {
        layer.edit("mouse", [](FakeDevice &mouse) { mouse.rgb.Scheme = 3; });
        select(0, Receiver8K);
        deliver(8, 0, Image);
        QVERIFY(hub->lines.contains(QStringLiteral("color 3")));
        hub->lines.clear();
        layer.edit("mouse", [](FakeDevice &mouse) { mouse.answersColor = false; });
        deliver(8, 0, Image);
        QVERIFY(hub->lines.contains(QStringLiteral("form")));
        QCOMPARE(hub->lines.filter(QStringLiteral("color")), QStringList());
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
};

TEST_CLASS(tst_dispatchreads, testmain::CoreApplication)
#include "tst_dispatchreads.moc"
