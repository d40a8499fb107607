// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The kinds of a device, a row each, and the reset of the process-wide flags.
#include "catalogue/CatalogueKeys.h"
#include "catalogue/DeviceKinds.h"
#include "device/DeviceState.h"
#include "tests/support/TestMain.h"

#include <QtTest>

class tst_DeviceState : public QObject
{
    Q_OBJECT

private:
    // The values of all flags, in the order of their list.
    static QVector<int> values()
    {
        QVector<int> all;
        for (const ResettableFlag *flag = ResettableFlag::first(); flag; flag = flag->next()) {
            const auto *truth = dynamic_cast<const DeviceFlag<bool> *>(flag);
            const auto *number = dynamic_cast<const DeviceFlag<int32_t> *>(flag);
            all << (truth ? int(truth->load()) : int(number->load()));
        }
        return all;
    }
    static void changeAll()
    {
        for (ResettableFlag *flag = ResettableFlag::first(); flag; flag = flag->next()) {
            if (auto *truth = dynamic_cast<DeviceFlag<bool> *>(flag))
                *truth = !*truth;
            else if (auto *number = dynamic_cast<DeviceFlag<int32_t> *>(flag))
                *number += 7;
        }
    }

private slots:
    void kinds_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("connection");
        QTest::addColumn<int>("kHz");
        QTest::addColumn<QByteArray>("productIdKey");
        QTest::addColumn<QByteArray>("firmwareKey");
        QTest::addColumn<QByteArray>("badge");
        const auto row = [](const char *name, int code, int connection, int kHz, const char *id,
                            const char *firmware, const char *badge) {
            QTest::newRow(name) << code << connection << kHz << QByteArray(id) << QByteArray(firmware)
                                << QByteArray(badge);
        };
        row("1 kHz receiver", 0, 1, 1, "Wireless_PID", "DM", "1KHz.png");
        row("4 kHz receiver", 1, 4, 4, "Wireless4_PID", "D4M", "4KHz.png");
        row("cable", 2, 0, 1, "USB_PID", "MM", "");
        row("8 kHz cable", 3, 0, 8, "USB_PID", "MM", "8KHz.png");
        row("2 kHz receiver", 4, 2, 2, "Wireless2_PID", "D2M", "2KHz.png");
        row("8 kHz receiver", 5, 8, 8, "Wireless8_PID", "D8M", "8KHz.png");
        row("another cable", 6, 0, 0, "USB_PID", "MM", "");
    }
    void kinds()
    {
        QFETCH(int, code);
        const DeviceKindRow &kind = deviceKind(code);
        QTEST(connectionKind(code), "connection");
        QTEST(kind.kHz, "kHz");
        QTEST(QByteArray(kind.productIdKey), "productIdKey");
        QTEST(QByteArray(kind.firmwareKey), "firmwareKey");
        QTEST(QByteArray(kind.badge), "badge");
        QVERIFY(isEncodedKey(kind.productIdKey) && isEncodedKey(kind.firmwareKey));
    }

    // A device reports one byte; these bits of it mean a cable.
    void cablesAreKnownByTheirBits()
    {
        for (int code = 0; code <= 0xFF; ++code) {
            QCOMPARE(isWiredKind(code), (code & 0xFA) != 0);
            QCOMPARE(connectionKind(code) == 0, isWiredKind(code));
        }
    }

    void receiversAscendByRate()
    {
        for (std::size_t i = 0; i < DeviceKinds.size(); ++i) {
            QCOMPARE(DeviceKinds[i].wired, i >= ReceiverKinds);
            QVERIFY(i == 0 || i >= ReceiverKinds || DeviceKinds[i - 1].kHz < DeviceKinds[i].kHz);
        }
    }

    void resetRestoresEveryFlag()
    {
        const QVector<int> start = values();
        QVERIFY(NotUpgrading && !MacroRecording && OnDevicePage == 0);
        changeAll();
        QVERIFY(!NotUpgrading && MacroRecording && OnDevicePage == 7);
        const QVector<int> changed = values();
        for (int i = 0; i < start.size(); ++i)
            QVERIFY(changed[i] != start[i]);
        resetDeviceState();
        QCOMPARE(values(), start);
    }
};

TEST_CLASS(tst_DeviceState, testmain::NoApplication)
#include "tst_devicestate.moc"
