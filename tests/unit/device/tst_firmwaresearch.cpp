// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The search for firmware other than what a device runs, over folders as a packager or a stranger may
// leave them.
#include "device/FirmwareSearch.h"
#include "device/hidusb/wire/FirmwareFile.h"
#include "tests/support/ProductFolder.h"
#include "tests/support/TestMain.h"

#include <QtTest>
#include <cstring>
#include <sys/stat.h>

class tst_FirmwareSearch : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> folder;

    void put(const QString &name, uint16_t version, const char *base = "M6_Mouse",
             uint8_t target = TargetMouse, uint8_t cid = 18, uint8_t mid = 6)
    {
        wire::FirmwareHead head{};
        head.Version.set(version);
        head.Target = target;
        head.Cid = cid;
        head.Mid = mid;
        std::memcpy(head.BaseName, base, qMin(qstrlen(base), uint(sizeof head.BaseName)));
        write(name, QByteArray(reinterpret_cast<const char *>(&head), sizeof head) + QByteArray(100, 'x'));
    }
    void write(const QString &name, const QByteArray &bytes)
    {
        QDir(folder->path()).mkpath(QStringLiteral("bin"));
        QFile file(folder->filePath(QStringLiteral("bin/") + name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    bool found(const char *version) const
    {
        return hasNewFirmware(TargetMouse, QLatin1String(version), QStringLiteral("M6_Mouse"), 18, 6);
    }

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        setApplicationFolder(folder->path());
    }

    void withoutFolderNothingIsNew() { QVERIFY(!found("v1.05")); }

    void aDifferentVersionIsNew_data()
    {
        QTest::addColumn<QString>("current");
        QTest::addColumn<bool>("isNew");
        QTest::newRow("same") << "v1.0A" << false;
        QTest::newRow("older") << "v1.09" << true;
        QTest::newRow("newer") << "v2.00" << true;
        QTest::newRow("without v") << "1.0A" << false;
        QTest::newRow("none") << "" << false;
    }
    void aDifferentVersionIsNew()
    {
        QFETCH(QString, current);
        QFETCH(bool, isNew);
        put(QStringLiteral("a.bin"), 0x010A);
        QCOMPARE(found(qPrintable(current)), isNew);
    }

    void theSameNumberEndsTheSearch()
    {
        put(QStringLiteral("a.bin"), 0x0110);
        put(QStringLiteral("b.bin"), 0x0200);
        QVERIFY(!found("v1.1"));
        QVERIFY(found("v1.2"));
    }

    void whatCameBeforeTheSameNumberStands()
    {
        put(QStringLiteral("a.bin"), 0x0200);
        put(QStringLiteral("b.bin"), 0x0110);
        QVERIFY(found("v1.1"));
    }

    void foreignFilesAreSkipped()
    {
        put(QStringLiteral("a.bin"), 0x0200, "M7_Mouse");
        put(QStringLiteral("b.bin"), 0x0200, "M6_Mouse", TargetReceiver);
        put(QStringLiteral("c.bin"), 0x0200, "M6_Mouse", TargetMouse, 17);
        put(QStringLiteral("d.bin"), 0x0200, "M6_Mouse", TargetMouse, 18, 7);
        put(QStringLiteral("e.txt"), 0x0200);
        write(QStringLiteral("f.bin"), {});
        write(QStringLiteral("g.bin"), QByteArray(727, char(210)));
        QVERIFY(!found("v1.05"));
        put(QStringLiteral("h.bin"), 0x0200);
        QVERIFY(found("v1.05"));
    }

    void linksAndPipesAreNotOpened()
    {
        put(QStringLiteral("real.txt"), 0x0200);
        const QString bin = folder->filePath(QStringLiteral("bin/"));
        QVERIFY(QFile::link(bin + QStringLiteral("real.txt"), bin + QStringLiteral("link.bin")));
        QCOMPARE(mkfifo(qPrintable(bin + QStringLiteral("pipe.bin")), 0600), 0);
        QDir(bin).mkdir(QStringLiteral("folder.bin"));
        QVERIFY(!found("v1.05"));
    }

    void anEndlessBaseNameIsNoName()
    {
        put(QStringLiteral("a.bin"), 0x0200, QByteArray(64, 'M').constData());
        QVERIFY(!found("v1.05"));
        QVERIFY(hasNewFirmware(TargetMouse, QStringLiteral("v1.05"), QString(64, QLatin1Char('M')), 18, 6));
    }

    void keysByLink()
    {
        const int kinds[] = {1, 2, 4, 8, 0, 3};
        const char *keys[] = {"DM", "D2M", "D4M", "D8M", "", ""};
        for (int i = 0; i < 6; ++i) {
            QCOMPARE(firmwareKey(TargetReceiver, kinds[i]), QLatin1String(keys[i]));
            QCOMPARE(firmwareKey(TargetMouse, kinds[i]), QStringLiteral("MM"));
            QCOMPARE(firmwareKey(7, kinds[i]), QString());
        }
    }
};

TEST_CLASS(tst_FirmwareSearch, testmain::NoApplication)
#include "tst_firmwaresearch.moc"
