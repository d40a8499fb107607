// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A firmware file whose head gives another length than the file has does not reach the library, which would
// read beyond its end.
#include "device/FirmwareImage.h"
#include "device/hidusb/wire/FirmwareFile.h"
#include "tests/support/FakeHidUsb.h"
#include "tests/support/TestMain.h"

#include <QtTest>
#include <cstring>

class tst_FirmwareImage : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &fake = FakeHidUsb::instance();

    static QByteArray imageOf(int size, uint32_t said)
    {
        QByteArray image(size, 'x');
        wire::FirmwareHead head{};
        head.FileLength.set(said);
        std::memcpy(image.data(), &head, qMin(std::size_t(size), sizeof head));
        return image;
    }

private slots:
    void init()
    {
        fake.reset();
        fake.setUpgrade(3, true);
    }

    void aFileWithItsLengthIsPassedOn()
    {
        const QByteArray image = imageOf(1000, 1000);
        QCOMPARE(findBootDevices(image, 5), 3);
        QCOMPARE(findBootDevices(image, 2), 2);
        QVERIFY(startFirmwareUpgrade(
            image, [](const uint8_t *) {}, 10000));
        QCOMPARE(fake.calls().back(), std::string("UsbUpgrade_Start 10000"));
        fake.setUpgrade(0, false);
        QVERIFY(!startFirmwareUpgrade(
            image, [](const uint8_t *) {}, 10000));
    }

    void aFileWithAnotherLengthIsNot_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<uint>("said");
        QTest::newRow("cut off") << 999 << 1000U;
        QTest::newRow("with more behind it") << 1001 << 1000U;
        QTest::newRow("shorter than a head") << 727 << 727U;
        QTest::newRow("empty") << 0 << 0U;
        QTest::newRow("far beyond") << 1000 << 0xFFFFFFFFU;
    }
    void aFileWithAnotherLengthIsNot()
    {
        QFETCH(int, size);
        QFETCH(uint, said);
        const QByteArray image = imageOf(size, said);
        QCOMPARE(findBootDevices(image, 5), 0);
        QVERIFY(!startFirmwareUpgrade(
            image, [](const uint8_t *) {}, 10000));
        QVERIFY(fake.calls().empty());
        QCOMPARE(findBootDevices(imageOf(1000, 1000), 5), 3);
    }
};

TEST_CLASS(tst_FirmwareImage, testmain::NoApplication)
#include "tst_firmwareimage.moc"
