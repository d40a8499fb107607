// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The search for firmware other than what a device runs, over folders as a packager or a stranger may
// leave them.
#include "device/FirmwareImage.h"
#include "device/FirmwareSearch.h"
#include "tests/support/FirmwareFolder.h"
#include "tests/support/ProductFolder.h"
#include "tests/support/TestMain.h"

#include <QtTest>
#include <functional>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

// While it lives, a file's permissions bind this thread even if root runs the test.
class OrdinaryUser
{
public:
    OrdinaryUser()
    {
        syscall(SYS_capget, &header_, kept_);
        __user_cap_data_struct fewer[2] = {kept_[0], kept_[1]};
        fewer[0].effective &= ~(1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH);
        syscall(SYS_capset, &header_, fewer);
    }
    ~OrdinaryUser() { syscall(SYS_capset, &header_, kept_); }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    __user_cap_header_struct header_{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct kept_[2]{};
};

} // namespace

class tst_FirmwareSearch : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> folder;

    static void put(const QString &name, uint16_t version, const char *base = "M6_Mouse",
                    int target = TargetMouse, uint8_t cid = 18, uint8_t mid = 6)
    {
        firmware::write(name, {target, version, base, cid, mid});
    }
    static void write(const QString &name, const QByteArray &bytes) { firmware::write(name, bytes); }
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
        QTest::newRow("no number either") << "v1.0B" << true;
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

    // Each is a sound file in all but one thing.
    void aDamagedFileIsNotFlashed_data()
    {
        using Bytes = std::vector<uint8_t>;
        QTest::addColumn<QByteArray>("file");
        const auto row = [](const char *name, const std::function<void(Bytes &)> &change, bool sealed) {
            Bytes bytes = firmware::Mouse.bytes();
            change(bytes);
            if (sealed)
                support::seal(bytes);
            QTest::newRow(name) << firmware::image(bytes);
        };
        const auto head = [](Bytes &bytes) { return reinterpret_cast<wire::FirmwareHead *>(bytes.data()); };
        row(
            "cut off", [](Bytes &bytes) { bytes.pop_back(); }, false);
        row(
            "with more behind it", [](Bytes &bytes) { bytes.push_back(0); }, false);
        row(
            "a flipped bit", [](Bytes &bytes) { bytes.back() ^= 1; }, false);
        row(
            "a flipped bit in the version", [](Bytes &bytes) { bytes[16] ^= 1; }, false);
        row(
            "another magic number", [&](Bytes &bytes) { head(bytes)->Magic.set(1); }, true);
        row(
            "another length", [&](Bytes &bytes) { head(bytes)->FileLength.set(9); }, true);
        row(
            "a mouse with a class", [&](Bytes &bytes) { head(bytes)->ReceiverKHz = 8; }, true);
        row(
            "larger than any",
            [&](Bytes &bytes) {
                bytes.resize(wire::FirmwareSizeLimit + 1);
                head(bytes)->FileLength.set(uint32_t(bytes.size()));
            },
            true);
    }
    void aDamagedFileIsNotFlashed()
    {
        QFETCH(QByteArray, file);
        const auto image = [] { return findFirmware(TargetMouse, {}, QStringLiteral("M6_Mouse"), 18, 6); };
        put(QStringLiteral("a.bin"), 0x0106);
        const QByteArray sound = image();
        QVERIFY(!sound.isEmpty());
        write(QStringLiteral("b.bin"), file);
        QCOMPARE(image(), sound);
        write(QStringLiteral("a.bin"), file);
        QVERIFY(image().isEmpty());
    }

    void aReceiversFileIsForItsClass()
    {
        firmware::write(QStringLiteral("a.bin"), {TargetReceiver, 0x0103, "R", 18, 6, 4});
        const auto image = [](int kHz) {
            return findFirmware(TargetReceiver, {}, QStringLiteral("R"), 18, 6, kHz);
        };
        QVERIFY(image(8).isEmpty());
        QVERIFY(!image(4).isEmpty());
        QCOMPARE(image(0), image(4));
    }

    // A folder full of damaged files costs no more than some reads.
    void ofDamagedFilesTheLastOnesAreRead_data()
    {
        QTest::addColumn<int>("damaged");
        QTest::addColumn<bool>("isFound");
        QTest::newRow("one") << 1 << true;
        QTest::newRow("seven") << 7 << true;
        QTest::newRow("eight") << 8 << false;
    }
    void ofDamagedFilesTheLastOnesAreRead()
    {
        QFETCH(int, damaged);
        QFETCH(bool, isFound);
        put(QStringLiteral("a.bin"), 0x0200);
        QByteArray bytes = firmware::image(firmware::File{TargetMouse, 0x0300}.bytes());
        bytes[bytes.size() - 1] = char(bytes[bytes.size() - 1] ^ 1);
        for (int i = 0; i < damaged; ++i)
            write(QStringLiteral("b%1.bin").arg(i), bytes);
        QCOMPARE(
            findFirmware(TargetMouse, QStringLiteral("v1.05"), QStringLiteral("M6_Mouse"), 18, 6).isEmpty(),
            !isFound);
    }

    void theLastOfTwoIsTaken()
    {
        put(QStringLiteral("a.bin"), 0x0107);
        put(QStringLiteral("b.bin"), 0x0106);
        const QByteArray image =
            findFirmware(TargetMouse, QStringLiteral("v1.05"), QStringLiteral("M6_Mouse"), 18, 6);
        QCOMPARE(firmwareVersion(image), QStringLiteral("v1.06"));
        QCOMPARE(image.size(), firmware::Bytes);
    }

    void withoutAVersionAnyFileDoes()
    {
        put(QStringLiteral("a.bin"), 0x0105);
        QVERIFY(!found(""));
        QVERIFY(!findFirmware(TargetMouse, {}, QStringLiteral("M6_Mouse"), 18, 6).isEmpty());
        QVERIFY(!findRepairFirmware(TargetMouse, {}, QStringLiteral("M6_Mouse"), 18, 6).isEmpty());
    }

    void aRepairComparesTextsAlone()
    {
        put(QStringLiteral("a.bin"), 0x0110);
        put(QStringLiteral("b.bin"), 0x0200);
        const auto version = [](auto search) {
            return firmwareVersion(
                search(TargetMouse, QStringLiteral("v1.1"), QStringLiteral("M6_Mouse"), 18, 6, 0));
        };
        QCOMPARE(version(findRepairFirmware), QStringLiteral("v2.00"));
        QCOMPARE(version(findFirmware), QStringLiteral("v0.00"));
    }

    void aFileThatCannotBeOpenedEndsTheSearch()
    {
        const OrdinaryUser ordinary;
        put(QStringLiteral("a.bin"), 0x0106);
        put(QStringLiteral("b.bin"), 0x0106);
        QVERIFY(found("v1.05"));
        QVERIFY(QFile::setPermissions(firmware::folder() + QStringLiteral("b.bin"), {}));
        QVERIFY(!found("v1.05"));
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
