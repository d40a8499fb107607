// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The cached image: exact bytes, and files that are not what they should be.
#include "device/DeviceState.h"
#include "device/ImageCache.h"
#include "device/hidusb/RecordLimits.h"
#include "tests/support/ProductFolder.h"
#include "tests/support/TestMain.h"
#include "tests/unit/device/ImageBytes.h"

#include <QtTest>
#include <cstring>

namespace
{

const QString Name = QStringLiteral("Device_CID1A_MID03.bin");

// Within what a record can hold, since the rest is cut.
FlashDataMap pattern(uint8_t first)
{
    FlashDataMap record;
    for (size_t i = 0; i < sizeof record; ++i)
        reinterpret_cast<uint8_t *>(&record)[i] = uint8_t(first + i * 7);
    hidusb::clamp(record);
    return record;
}

QString cacheFile(const QString &name) { return dataRoot() + QStringLiteral("/Device_Info/") + name; }

} // namespace

class tst_imagecache : public QObject
{
    Q_OBJECT

private:
    ProductFolder product{smallCatalogue()};

private slots:
    void cleanup() { QFile::remove(cacheFile(Name)); }

    void fileNameHoldsBothIds()
    {
        QCOMPARE(imageFileName(0x1A, 0x03), Name);
        QCOMPARE(imageFileName(0, 0xFF), QStringLiteral("Device_CID00_MIDFF.bin"));
    }

    void fileIsLengthAndRecord()
    {
        const FlashDataMap written = pattern(1);
        ImageCacheWrite(Name, written);
        QCOMPARE(readBytes(cacheFile(Name)), QByteArray("\x00\x00\x28\xD0", 4) + asBytes(written));
        FlashDataMap read{};
        QVERIFY(ImageCacheRead(Name, &read));
        QCOMPARE(asBytes(read), asBytes(written));
    }

    void aMissingFileIsNoCache()
    {
        FlashDataMap record = pattern(1);
        QVERIFY(!ImageCacheRead(Name, &record));
        QVERIFY(!ImageCacheRead(QString(), &record)); // the folder itself
        QCOMPARE(asBytes(record), asBytes(pattern(1)));
        ImageCacheWrite(QString(), record);
        QVERIFY(QDir(dataRoot() + QStringLiteral("/Device_Info")).entryList(QDir::Files).isEmpty());
    }

    void filesOfAnotherLength_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("filled");
        const QByteArray record = asBytes(pattern(9));
        const QByteArray length("\x00\x00\x28\xD0", 4);
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("cut in the length") << length.left(3) << 0;
        QTest::newRow("length alone") << length << 0;
        QTest::newRow("cut short") << length + record.left(5000) << 5000;
        QTest::newRow("too long") << length + record + QByteArray(5000, 'x') << 10448;
        QTest::newRow("length that lies upward")
            << QByteArray(4, '\xFF') + record + QByteArray(99, 'x') << 10448;
        QTest::newRow("length that lies downward") << QByteArray("\0\0\0\x10", 4) + record << 16;
    }
    void filesOfAnotherLength()
    {
        QFETCH(QByteArray, file);
        QFETCH(int, filled);
        writeBytes(cacheFile(Name), file);
        FlashDataMap record = pattern(1);
        QVERIFY(ImageCacheRead(Name, &record));
        QCOMPARE(asBytes(record).left(filled), asBytes(pattern(9)).left(filled));
        QCOMPARE(asBytes(record).mid(filled), asBytes(pattern(1)).mid(filled));
    }

    // Counts of a file are not trusted more than those of a mouse: who walks events by them stays inside.
    void countsOfAFileAreCut()
    {
        writeBytes(cacheFile(Name), QByteArray("\x00\x00\x28\xD0", 4) + QByteArray(10448, '\xFF'));
        FlashDataMap record{};
        QVERIFY(ImageCacheRead(Name, &record));
        QCOMPARE(int(record.DpiStageCount), DpiStageLimit);
        QCOMPARE(int(record.CurrentDpiStage), DpiStageLimit - 1);
        for (int slot = 0; slot < KeySlotCount; ++slot) {
            QCOMPARE(int(record.MacroBlocks[slot].NameLength), MacroNameSize);
            QCOMPARE(int(record.MacroBlocks[slot].EventCount), MacroEventCount);
            QCOMPARE(int(record.KeySequences[slot].Count.get()), KeySequenceEventCount);
            QCOMPARE(int(record.MacroBlocks[slot].Events[69].DelayMs.get()), 0xFFFF);
        }
    }
};

TEST_CLASS(tst_imagecache, testmain::CoreApplication)
#include "tst_imagecache.moc"
