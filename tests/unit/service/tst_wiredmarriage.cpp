// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The wired pairing: which addresses are asked for and to which mice they are written.
#include "service/WiredMarriage.h"
#include "tests/support/DeviceFixture.h"
#include "tests/support/TestMain.h"

namespace
{

const QString Store = QStringLiteral("UsbFinderC_SetDongleIDToMouse ");

} // namespace

class tst_WiredMarriage : public DeviceFixture
{
    Q_OBJECT

    FakeDevice plug(const std::string &path, uint8_t kind, uint8_t first = 0)
    {
        FakeDevice device;
        device.path = path;
        device.vid = "1209";
        device.pid = isWiredKind(kind) ? "0001" : "0002";
        device.identity = {18, 6, kind};
        if (first != 0)
            for (uint8_t i = 0; i < sizeof device.address; ++i)
                device.address[i] = uint8_t(first + i);
        layer.addDevice(device);
        return device;
    }
    static DeviceAllInfo entry(const char *path, uint16_t kind)
    {
        DeviceAllInfo made;
        made.DevicePath = QString::fromUtf8(path);
        made.DeviceKind = kind;
        made.Usb = isWiredKind(kind);
        return made;
    }
    QStringList stores() const { return callNames().filter(Store); }

private slots:
    void init() { begin(); }

    void theMouseStoresTheReceiversAddressInReverse_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("code");
        QTest::newRow("1 kHz") << int(Receiver1K) << 0;
        QTest::newRow("2 kHz") << int(Receiver2K) << 1;
        QTest::newRow("4 kHz") << int(Receiver4K) << 1;
        QTest::newRow("8 kHz") << int(Receiver8K) << 4;
    }
    void theMouseStoresTheReceiversAddressInReverse()
    {
        QFETCH(int, kind);
        QFETCH(int, code);
        plug("receiver", uint8_t(kind), 7);
        plug("mouse", Cable8K);
        WiredMarriage marriage;
        QCOMPARE(marriage.marry({entry("receiver", uint16_t(kind)), entry("mouse", Cable8K)}), 1);
        QCOMPARE(stores(), QStringList{Store + QString("mouse 9 8 7 0 %1").arg(code)});
    }

    // On its cable a mouse is away for the receiver.
    void theMouseNeedNotAnswerByRadio()
    {
        plug("receiver", Receiver1K, 7);
        layer.setOnline("receiver", false);
        WiredMarriage marriage;
        QCOMPARE(marriage.marry({entry("receiver", Receiver1K), entry("mouse", Cable8K)}), 1);
    }

    void aSilentReceiverIsPassedOver()
    {
        plug("other", Receiver1K, 20);
        WiredMarriage marriage;
        const std::vector<DeviceAllInfo> list = {entry("mouse", Cable8K), entry("silent", Receiver8K),
                                                 entry("other", Receiver1K)};
        QCOMPARE(marriage.marry(list), 1);
        QCOMPARE(stores(), QStringList{Store + "mouse 22 21 20 0 0"});
    }

    void eachCableGetsEachReceiver()
    {
        plug("one", Receiver1K, 1);
        plug("two", Receiver8K, 11);
        WiredMarriage marriage;
        QCOMPARE(marriage.marry({entry("one", Receiver1K), entry("a", Cable8K), entry("two", Receiver8K),
                                 entry("b", Cable1K)}),
                 4);
        QCOMPARE(stores(), (QStringList{Store + "a 3 2 1 0 0", Store + "b 3 2 1 0 0",
                                        Store + "a 13 12 11 0 4", Store + "b 13 12 11 0 4"}));
    }

    void nothingIsWrittenWithoutBoth()
    {
        plug("receiver", Receiver1K, 7);
        WiredMarriage marriage;
        QCOMPARE(marriage.marryAgain({entry("mouse", Cable8K)}), 0); // nobody was asked yet
        QCOMPARE(marriage.marry({}), 0);
        QCOMPARE(marriage.marry({entry("mouse", Cable8K)}), 0);
        QCOMPARE(marriage.marry({entry("receiver", Receiver1K)}), 0);
        QVERIFY(stores().isEmpty());
        QCOMPARE(marriage.marryAgain({entry("mouse", Cable8K)}),
                 1); // the receiver has told its address by now
    }

    void theLastAnswerServesAgain()
    {
        plug("receiver", Receiver8K, 7);
        WiredMarriage marriage;
        marriage.marry({entry("receiver", Receiver8K)});
        layer.setDevices({});
        layer.clearCalls();
        QCOMPARE(marriage.marryAgain({entry("receiver", Receiver8K), entry("mouse", Cable8K)}), 1);
        QCOMPARE(callNames(), QStringList{Store + "mouse 9 8 7 0 4"});
    }
};

TEST_CLASS(tst_WiredMarriage, testmain::CoreApplication)

#include "tst_wiredmarriage.moc"
