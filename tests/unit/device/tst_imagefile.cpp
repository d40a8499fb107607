// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The image file: its exact bytes, saves that fail, and files that are not what they should be.
#include "device/ImageFile.h"
#include "device/hidusb/RecordLimits.h"
#include "tests/support/ProductFolder.h"
#include "tests/support/Records.h"
#include "tests/support/TestMain.h"
#include "tests/unit/device/ImageBytes.h"

#include <QDataStream>
#include <QtTest>
#include <csignal>
#include <cstring>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr int StagesByte = 37;                  // of the file: DpiStageCount is byte 1 of the record
const QString Model = QStringLiteral("Drive1"); // sensor 3395, six stages

// Counts, lengths and delays cut to what a record can hold.
QByteArray cut(const QByteArray &image)
{
    FlashDataMap record;
    std::memcpy(&record, image.constData(), sizeof record);
    hidusb::clamp(record);
    return asBytes(record);
}

FlashDataMap withStages(uint8_t count)
{
    FlashDataMap record = support::anyRecord(3);
    record.DpiStageCount = count;
    return record;
}

// What the program has before an import.
FlashDataMap before() { return support::anyRecord(8); }

QByteArray imageFile(const QByteArray &marker, const QByteArray &sensor, const QByteArray &image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const QByteArray &item : {marker, sensor, image})
        stream.writeBytes(item.constData(), uint(item.size()));
    return bytes;
}

// The file of the model 3395, written down byte by byte.
QByteArray soundFile()
{
    return QByteArray("\x00\x00\x00\x0C"
                      "Taigri\0\0\0\0\0\0"
                      "\x00\x00\x00\x0C"
                      "3395\0\0\0\0\0\0\0\0"
                      "\x00\x00\x28\xD0",
                      36) +
           asBytes(withStages(6));
}

// Marker and sensor may hold anything behind their NUL; each other byte counts.
bool isUndefined(int at) { return (at > 10 && at < 16) || (at > 24 && at < 32); }

} // namespace

class tst_imagefile : public QObject
{
    Q_OBJECT

private:
    ProductFolder product{smallCatalogue() + "[Drive4]\nSensor=" + ProductFolder::code("TWELVE LETTE") +
                          "\nDPIMaxGrade=8\n[Drive5]\nSensor=" + ProductFolder::code("ALongSensorName") +
                          "\nDPIMaxGrade=8\n"};
    QString path(const char *name = "image.bin") const { return product.path(QString::fromLatin1(name)); }

    // The result for a file of these bytes; the record changes with acceptance alone.
    int result(const QByteArray &file, const QString &section = Model)
    {
        writeBytes(path(), file);
        FlashDataMap record = before();
        const int result = checkImageFile(path(), section, &record);
        const QByteArray expected = result == ImageAccepted ? cut(file.mid(36)) : asBytes(before());
        return asBytes(record) == expected ? result : -1;
    }

private slots:
    void anExportIsTheseBytes()
    {
        QVERIFY(writeImageFile(path(), Model, withStages(6)));
        QCOMPARE(readBytes(path()).size(), 10484);
        QCOMPARE(readBytes(path()), soundFile());
    }

    void anEmptyRecordIsExportedToo()
    {
        QVERIFY(writeImageFile(path(), Model, FlashDataMap{}));
        QCOMPARE(readBytes(path()), soundFile().left(36) + QByteArray(10448, '\0'));
    }

    void textFields_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QByteArray>("field");
        QTest::newRow("short") << "Drive2" << QByteArray("3950\0\0\0\0\0\0\0\0", 12);
        QTest::newRow("none") << "Drive9" << QByteArray(12, '\0');
        QTest::newRow("blanks are no part of a name") << "Drive4" << QByteArray("TWELVELETTE\0", 12);
        QTest::newRow("too long") << "Drive5" << QByteArray("ALongSensorN");
    }
    void textFields()
    {
        QFETCH(QString, section);
        QFETCH(QByteArray, field);
        QVERIFY(writeImageFile(path(), section, withStages(6)));
        QCOMPARE(readBytes(path()).size(), 10484);
        QCOMPARE(readBytes(path()).mid(20, 12), field);
    }

    void anExportComesBackOnTheSameModel()
    {
        for (const char *section : {"Drive1", "Drive2", "Drive4", "Drive5"}) {
            for (uint32_t seed = 0; seed < 20; ++seed) {
                FlashDataMap written = support::anyRecord(seed);
                written.DpiStageCount = 6;
                QVERIFY(writeImageFile(path(), QString::fromLatin1(section), written));
                FlashDataMap read{};
                QCOMPARE(int(checkImageFile(path(), QString::fromLatin1(section), &read)),
                         int(ImageAccepted));
                QCOMPARE(asBytes(read), asBytes(written));
            }
        }
    }

    void anExportIsRefusedByAnotherModel()
    {
        QCOMPARE(result(soundFile(), QStringLiteral("Drive2")), int(ImageMismatch)); // other sensor
        QVERIFY(writeImageFile(path(), QStringLiteral("Drive3"), withStages(6)));
        QCOMPARE(result(readBytes(path()), QStringLiteral("Drive3")), int(ImageMismatch)); // five stages
    }

    // The limit of file sizes fails a write as a full disk does.
    void aFailedSaveLeavesTheOldFile()
    {
        for (const int room : {0, 1, 36, 5000, 10483}) {
            writeBytes(path("old.bin"), "old");
            const pid_t child = fork();
            if (child == 0) {
                signal(SIGXFSZ, SIG_IGN);
                const rlimit limit = {rlim_t(room), rlim_t(room)};
                setrlimit(RLIMIT_FSIZE, &limit);
                _exit(writeImageFile(path("old.bin"), Model, withStages(6)) ? 1 : 0);
            }
            int status = -1;
            waitpid(child, &status, 0);
            QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
            QCOMPARE(readBytes(path("old.bin")), QByteArray("old"));
        }
    }

    void aSaveThatCannotBeIsSilent()
    {
        QVERIFY(!writeImageFile(path("no/such/folder.bin"), Model, withStages(6)));
        QVERIFY(!writeImageFile(QString(), Model, withStages(6)));
        QVERIFY(!writeImageFile(path("usersetting"), Model, withStages(6)));
        QVERIFY(QFileInfo(path("usersetting")).isDir());
    }

    void aFileCutAtAnyByteIsRefused()
    {
        const QByteArray whole = soundFile();
        for (int size = 0; size < whole.size(); ++size) {
            const int got = result(whole.left(size));
            QVERIFY2(got == ImageUnreadable || got == ImageMismatch, qPrintable(QString::number(size)));
        }
        QCOMPARE(result(whole), int(ImageAccepted));
    }

    // A byte of the head makes another file of it, a byte of the image another image.
    void aFileWithAnyByteFlippedIsSoundOrRefused()
    {
        for (int at = 0; at < soundFile().size(); ++at) {
            QByteArray file = soundFile();
            file[at] = char(~file[at]);
            const bool accepted = isUndefined(at) || (at >= 36 && at != StagesByte);
            const int got = result(file);
            QVERIFY2(accepted ? got == ImageAccepted : got == ImageUnreadable || got == ImageMismatch,
                     qPrintable(QStringLiteral("%1: %2").arg(at).arg(got)));
        }
    }

    void countsOfAnImportAreCut()
    {
        QByteArray file = soundFile().left(36) + QByteArray(10448, '\xFF');
        file[StagesByte] = 6;
        writeBytes(path(), file);
        FlashDataMap record{};
        QCOMPARE(int(checkImageFile(path(), Model, &record)), int(ImageAccepted));
        QCOMPARE(int(record.DpiStageCount), 6);
        QCOMPARE(int(record.MacroBlocks[15].NameLength), MacroNameSize);
        QCOMPARE(int(record.MacroBlocks[15].EventCount), MacroEventCount);
        QCOMPARE(int(record.KeySequences[15].Count.get()), KeySequenceEventCount);
    }

    void aHeadWithAnyBitFlippedIsSoundOrRefused()
    {
        for (int bit = 0; bit < 36 * 8; ++bit) {
            QByteArray file = soundFile();
            file[bit / 8] = char(file[bit / 8] ^ (1 << bit % 8));
            const int got = result(file);
            QVERIFY2(isUndefined(bit / 8) ? got == ImageAccepted
                                          : got == ImageUnreadable || got == ImageMismatch,
                     qPrintable(QStringLiteral("%1: %2").arg(bit).arg(got)));
        }
    }

    void imageFiles_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("result");
        const QByteArray marker("Taigri\0\0\0\0\0\0", 12);
        const QByteArray sensor("3395\0\0\0\0\0\0\0\0", 12);
        const QByteArray image = asBytes(withStages(6));
        QTest::newRow("sound") << imageFile(marker, sensor, image) << 0;
        QTest::newRow("undefined bytes behind the NUL")
            << imageFile(QByteArray("Taigri\0junk!", 12), sensor, image) << 0;
        QTest::newRow("other marker") << imageFile("Tigris", sensor, image) << 1;
        QTest::newRow("empty") << QByteArray() << 1;
        QTest::newRow("other sensor") << imageFile(marker, QByteArray("3950\0", 5), image) << 2;
        QTest::newRow("sensor without a NUL") << imageFile(marker, QByteArray(12, '3'), image) << 2;
        QTest::newRow("too many stages") << imageFile(marker, sensor, asBytes(withStages(7))) << 2;
        QTest::newRow("image cut short") << imageFile(marker, sensor, image.left(100)) << 1;
        QTest::newRow("image too long") << imageFile(marker, sensor, image + "x") << 1;
        QTest::newRow("length that lies") << QByteArray(4, '\xFF') + marker << 1;
        QTest::newRow("far too large") << QByteArray(200 * 1024, '\0') << 1;
    }
    void imageFiles()
    {
        QFETCH(QByteArray, file);
        QFETCH(int, result);
        const QString path = product.path(QStringLiteral("image.bin"));
        writeBytes(path, file);
        FlashDataMap record = before();
        QCOMPARE(int(checkImageFile(path, QStringLiteral("Drive1"), &record)), result);
        QCOMPARE(asBytes(record), asBytes(result == 0 ? withStages(6) : before()));
    }

    void whatFollowsAnImageIsNotRead_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("result");
        QTest::newRow("one byte") << 10484 + 1 << int(ImageAccepted);
        QTest::newRow("to a whole block") << 12288 << int(ImageAccepted);
        QTest::newRow("past 64 KB") << 65537 << int(ImageAccepted);
        QTest::newRow("up to the limit") << ImageFileLimit << int(ImageAccepted);
        QTest::newRow("past the limit") << ImageFileLimit + 1 << int(ImageUnreadable);
    }
    void whatFollowsAnImageIsNotRead()
    {
        QFETCH(int, size);
        writeBytes(path(), soundFile() + QByteArray(size - soundFile().size(), '\xFF'));
        FlashDataMap record = before();
        QTEST(int(checkImageFile(path(), Model, &record)), "result");
        QFETCH(int, result);
        QCOMPARE(asBytes(record), asBytes(result == ImageAccepted ? withStages(6) : before()));
    }

    void anImageFileThatIsNoFileIsRefused()
    {
        FlashDataMap record{};
        for (const QString &path :
             {QStringLiteral("/nowhere/at/all"), QDir::tempPath(), QStringLiteral("/dev/zero")})
            QCOMPARE(int(checkImageFile(path, QStringLiteral("Drive1"), &record)), int(ImageUnreadable));
    }
};

TEST_CLASS(tst_imagefile, testmain::CoreApplication)
#include "tst_imagefile.moc"
