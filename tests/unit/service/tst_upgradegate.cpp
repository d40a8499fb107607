// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the two gates say to each set of devices, records, files and boot loaders.
#include "device/FirmwareSearch.h"
#include "service/GateFiles.h"
#include "tests/support/ProductFolder.h"
#include "tests/support/TestMain.h"

#include <QtTest>

namespace
{

// One letter for each: m a mouse on its cable, r its 8 kHz receiver, R one of 4 kHz, n and s the same as m
// and r of another model, u a receiver without a mouse, f and g a mouse and a receiver of another
// customer.
std::vector<DeviceAllInfo> devicesOf(const QString &letters)
{
    std::vector<DeviceAllInfo> devices;
    for (const QChar letter : letters) {
        DeviceAllInfo device;
        device.Usb = QStringLiteral("mnf").contains(letter);
        device.DeviceKind = device.Usb ? Cable8K : letter == QLatin1Char('R') ? Receiver4K : Receiver8K;
        device.Cid = QStringLiteral("fg").contains(letter) ? 17 : 18;
        device.Mid = QStringLiteral("ns").contains(letter) ? 7 : letter == QLatin1Char('u') ? 0 : 6;
        devices.push_back(device);
    }
    return devices;
}

// "mouse" and "receiver" for a newer file of the target, "mouse=" and "receiver=" for one that it runs.
bool hasFile(const QString &files, int target, bool anyVersion)
{
    const QString name = target == TargetMouse ? QStringLiteral("mouse") : QStringLiteral("receiver");
    const QStringList words = files.split(QLatin1Char(' '));
    return words.contains(name) || (anyVersion && words.contains(name + QLatin1Char('=')));
}

GateQuestions questions(const QString &files, int mouseBoots, int receiverBoots)
{
    return {[files](int target, int, bool anyVersion) { return hasFile(files, target, anyVersion); },
            [mouseBoots, receiverBoots](int target, int) {
                return target == TargetMouse ? mouseBoots : receiverBoots;
            }};
}

constexpr char MouseFailed[] = "210,8,18,6";
constexpr char ReceiverFailed[] = "211,8,18,6";
constexpr char Both[] = "mouse receiver";

using Text = UpgradeText;

void columns()
{
    QTest::addColumn<QString>("devices");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("files");
    QTest::addColumn<int>("mouseBoots");
    QTest::addColumn<int>("receiverBoots");
    QTest::addColumn<int>("text");
    QTest::addColumn<int>("stages"); // 0: not ready
}

void row(const char *name, const char *devices, const char *record, const char *files, int mouseBoots,
         int receiverBoots, Text text, int stages = 0)
{
    QTest::newRow(name) << devices << record << files << mouseBoots << receiverBoots << int(text) << stages;
}

template <typename Gate> void check(Gate gate)
{
    QFETCH(QString, devices);
    QFETCH(QString, record);
    QFETCH(QString, files);
    QFETCH(int, mouseBoots);
    QFETCH(int, receiverBoots);
    QFETCH(int, text);
    QFETCH(int, stages);
    const GateVerdict verdict = gate(devicesOf(devices), record, questions(files, mouseBoots, receiverBoots));
    QCOMPARE(int(verdict.text), text);
    QCOMPARE(verdict.ready, stages != 0);
    QCOMPARE(verdict.ready ? verdict.stages : 0, stages);
}

} // namespace

class tst_UpgradeGate : public QObject
{
    Q_OBJECT

private slots:
    void upgrade_data()
    {
        columns();
        row("nothing attached", "", "", Both, 0, 0, Text::NoRecieve);
        row("nothing attached after a failure", "", MouseFailed, Both, 1, 0, Text::Error);
        row("a mouse alone", "m", "", Both, 0, 0, Text::NoRecieve);
        row("a receiver alone", "r", "", Both, 0, 0, Text::NoUSB);

        row("receiver failed", "m", ReceiverFailed, "receiver", 0, 1, Text::ReadyUpdate, 1);
        row("receiver failed, the mouse has a file too", "m", ReceiverFailed, Both, 0, 1, Text::ReadyUpdate,
            2);
        row("receiver failed, its file is the old one", "m", ReceiverFailed, "receiver=", 0, 1,
            Text::ReadyUpdate, 1);
        row("receiver failed, a receiver is there", "r", ReceiverFailed, Both, 0, 1, Text::NoUSB);
        row("receiver failed, another mouse", "n", ReceiverFailed, Both, 0, 1, Text::NoUSB);
        row("receiver failed, another customer", "f", ReceiverFailed, Both, 0, 1, Text::Error);
        row("receiver failed, no file", "m", ReceiverFailed, "mouse", 0, 1, Text::ErrorFile);
        row("receiver failed, no boot loader", "m", ReceiverFailed, Both, 0, 0, Text::NoDevice);
        row("receiver failed, two boot loaders", "m", ReceiverFailed, Both, 0, 2, Text::SameDevice);
        row("mouse failed", "r", MouseFailed, "mouse", 1, 0, Text::ReadyUpdate, 1);
        row("mouse failed, the receiver has a file too", "r", MouseFailed, Both, 1, 0, Text::ReadyUpdate, 2);
        row("mouse failed, a mouse is there", "m", MouseFailed, Both, 1, 0, Text::NoRecieve);
        row("mouse failed, another receiver", "s", MouseFailed, Both, 1, 0, Text::NoRecieve);
        row("mouse failed, no boot loader", "r", MouseFailed, Both, 0, 0, Text::NoDevice);
        row("mouse failed, two boot loaders", "r", MouseFailed, Both, 2, 0, Text::SameDevice);
        row("another target", "m", "9,8,18,6", Both, 1, 1, Text::Error);
        row("another class", "m", "211,3,18,6", Both, 0, 1, Text::Error1);
        row("no such model", "m", "211,8,18,99", Both, 0, 1, Text::Error1);
        row("a field is missing", "m", "211,8,18", Both, 0, 1, Text::Error1);
        row("a field is no number", "m", "211,8,18,six", Both, 0, 1, Text::Error1);

        row("both newer", "mr", "", Both, 0, 0, Text::ReadyUpdate, 2);
        row("the mouse newer", "mr", "", "mouse receiver=", 0, 0, Text::ReadyUpdate, 1);
        row("the receiver newer", "mr", "", "mouse= receiver", 0, 0, Text::ReadyUpdate, 1);
        row("none newer", "mr", "", "mouse= receiver=", 0, 0, Text::newTips);
        row("no files", "mr", "", "", 0, 0, Text::newTips);
        row("both newer after a failure", "mr", MouseFailed, Both, 0, 0, Text::ReadyUpdate, 2);
        row("two receivers, no mouse", "rs", "", Both, 0, 0, Text::NoUSB);
        row("two mice", "mn", "", Both, 0, 0, Text::NoRecieve);
        row("two mice of one model", "mm", "", Both, 0, 0, Text::NoRecieve);
        row("another model's receiver", "ms", "", Both, 0, 0, Text::NoRecieve);
        row("three with two receivers", "mrR", "", Both, 0, 0, Text::MultiDongle);
        row("three with two mice", "mnr", "", Both, 0, 0, Text::MultiMouse);
        row("four", "mnrs", "", Both, 0, 0, Text::MultiDongle);
    }
    void upgrade() { check(upgradeGate); }

    void repair_data()
    {
        columns();
        row("mouse failed, nothing attached", "", MouseFailed, Both, 0, 0, Text::NoRecieve);
        row("receiver failed, nothing attached", "", ReceiverFailed, Both, 0, 0, Text::NoUSB);
        row("another target, nothing attached", "", "9,8,18,6", Both, 0, 0, Text::NotDevice);
        row("another target", "m", "9,8,18,6", Both, 0, 0, Text::Error1);
        row("no record", "m", "", Both, 0, 1, Text::Error1);
        row("three fields", "m", "211,8,18", Both, 0, 1, Text::Error1);
        row("five fields", "m", "211,8,18,6,1", Both, 0, 1, Text::Error1);
        row("another class", "m", "211,16,18,6", Both, 0, 1, Text::Error1);
        row("no such model", "m", "211,8,18,99", Both, 0, 1, Text::Error1);

        row("receiver failed", "m", ReceiverFailed, "receiver=", 0, 1, Text::ReadyUpdate, 1);
        row("receiver failed, files for both", "m", ReceiverFailed, Both, 0, 1, Text::ReadyUpdate, 2);
        row("receiver failed, another mouse", "n", ReceiverFailed, Both, 0, 1, Text::NoUSB);
        row("receiver failed, another customer", "f", ReceiverFailed, Both, 0, 1, Text::Error);
        row("receiver failed, it runs its old image", "mr", ReceiverFailed, Both, 0, 0, Text::ReadyUpdate, 2);
        row("receiver failed, it lost its mouse", "mu", ReceiverFailed, Both, 0, 0, Text::ReadyUpdate, 2);
        row("receiver failed, one of another class beside it", "mR", ReceiverFailed, Both, 0, 1,
            Text::ReadyUpdate, 2);
        row("receiver failed, one of its class beside it", "mr", ReceiverFailed, Both, 0, 1,
            Text::SameDevice);
        row("receiver failed, only one of another class", "mR", ReceiverFailed, Both, 0, 0, Text::NotDevice);
        row("receiver failed, only another model's", "ms", ReceiverFailed, Both, 0, 0, Text::NotDevice);
        row("receiver failed, two mice", "mn", ReceiverFailed, Both, 0, 1, Text::MultiMouse);
        row("receiver failed, two receivers", "rs", ReceiverFailed, Both, 0, 1, Text::MultiDongle);
        row("receiver failed, another mouse and a receiver", "nr", ReceiverFailed, Both, 0, 0,
            Text::MultiMouse);
        row("receiver failed, another customer's mouse and a receiver", "fr", ReceiverFailed, Both, 0, 0,
            Text::MultiMouse);
        row("receiver failed, another customer's mouse and a boot loader", "fR", ReceiverFailed, Both, 0, 1,
            Text::MultiMouse);
        row("receiver failed, two boot loaders", "m", ReceiverFailed, Both, 0, 2, Text::SameDevice);
        row("receiver failed, no boot loader", "m", ReceiverFailed, Both, 0, 0, Text::NotDevice);
        row("receiver failed, no file", "m", ReceiverFailed, "mouse", 0, 1, Text::ErrorFile);
        row("receiver failed, no file and no boot loader", "m", ReceiverFailed, "", 0, 0, Text::ErrorFile);

        row("mouse failed", "r", MouseFailed, "mouse=", 1, 0, Text::ReadyUpdate, 1);
        row("mouse failed, files for both", "r", MouseFailed, Both, 1, 0, Text::ReadyUpdate, 2);
        row("mouse failed, its receiver is of another class", "R", MouseFailed, Both, 1, 0, Text::ReadyUpdate,
            1);
        row("mouse failed, another receiver", "s", MouseFailed, Both, 1, 0, Text::NoRecieve);
        row("mouse failed, it runs its old image", "mr", MouseFailed, Both, 0, 0, Text::ReadyUpdate, 2);
        row("mouse failed, it runs its old image alone", "m", MouseFailed, Both, 0, 0, Text::NoRecieve);
        row("mouse failed, another one on its cable", "mr", MouseFailed, Both, 1, 0, Text::SameDevice);
        row("mouse failed, only another customer's on its cable", "fr", MouseFailed, Both, 0, 0,
            Text::NotDevice);
        row("mouse failed, another model's receiver", "ms", MouseFailed, Both, 1, 0, Text::MultiDongle);
        row("mouse failed, another customer's receiver", "mg", MouseFailed, Both, 1, 0, Text::MultiDongle);
        row("mouse failed, no boot loader", "r", MouseFailed, Both, 0, 0, Text::NotDevice);
        row("mouse failed, two boot loaders", "r", MouseFailed, Both, 2, 0, Text::SameDevice);
        row("mouse failed, no file", "r", MouseFailed, "receiver", 1, 0, Text::ErrorFile);

        row("both wait after the mouse", "", MouseFailed, Both, 1, 1, Text::ReadyUpdate, 2);
        row("both wait after the receiver", "", ReceiverFailed, Both, 1, 1, Text::ReadyUpdate, 2);
        row("the mouse waits beside the receiver that failed", "r", ReceiverFailed, Both, 1, 0,
            Text::ReadyUpdate, 2);
        row("two mice wait beside the receiver that failed", "r", ReceiverFailed, Both, 2, 0, Text::NoUSB);
    }
    void repair() { check(repairGate); }

    // What no repair can do anything about is removed, and nothing else is.
    void aSenselessRecordIsRemoved()
    {
        for (const char *record :
             {"", "x", "211,8,18", "9,8,18,6", "211,3,18,6", "211,8,18,99", "211,8,17,6"})
            QVERIFY2(repairGate(devicesOf("m"), record, questions(Both, 0, 1)).recordIsSenseless, record);
        for (const char *devices : {"", "m", "n", "mm", "mr"})
            QVERIFY2(!repairGate(devicesOf(devices), ReceiverFailed, questions(Both, 0, 1)).recordIsSenseless,
                     devices);
    }

    void aVerdictNamesWhatIsFlashed()
    {
        const GateVerdict verdict = repairGate(devicesOf("R"), MouseFailed, questions(Both, 1, 0));
        QCOMPARE(verdict.failedTarget, TargetMouse);
        QCOMPARE(verdict.connectionKind, 8);
        QVERIFY(verdict.mouseNew && !verdict.receiverNew);
        const GateVerdict upgrade = upgradeGate(devicesOf("mR"), {}, questions("receiver", 0, 0));
        QCOMPARE(upgrade.failedTarget, 0);
        QCOMPARE(upgrade.connectionKind, 4);
        QVERIFY(upgrade.receiverNew && !upgrade.mouseNew);
    }

    // The settings page's gate looks into the folder on the main thread.
    void theFolderIsSearchedOnceForEachFile_data()
    {
        QTest::addColumn<QString>("devices");
        QTest::addColumn<QString>("record");
        QTest::newRow("of an upgrade") << "mr" << QString();
        QTest::newRow("behind a failure") << "r" << MouseFailed;
    }
    void theFolderIsSearchedOnceForEachFile()
    {
        QFETCH(QString, devices);
        QFETCH(QString, record);
        QStringList searches;
        GateFiles files([&searches](int target, int kHz, bool anyVersion) {
            searches << QStringLiteral("%1 %2 %3").arg(target).arg(kHz).arg(anyVersion);
            return QByteArray("file");
        });
        GateQuestions questions = files.questions();
        questions.bootLoaders = [&files](int target, int kHz) {
            return int(!files.image(target, kHz, true).isEmpty());
        };
        const GateVerdict verdict = upgradeGate(devicesOf(devices), record, questions);
        QVERIFY(verdict.ready);
        for (const int target : {TargetReceiver, TargetMouse})
            QCOMPARE(files.image(target, 8, target == verdict.failedTarget), QByteArray("file"));
        QCOMPARE(searches.size(), 2);
        QVERIFY(searches.first() != searches.last());
    }

    void recordsAreTexts()
    {
        const UpdateFailRecord record{TargetMouse, 8, 18, 6};
        QCOMPARE(record.text(), QString(MouseFailed));
        QCOMPARE(UpdateFailRecord::parse(record.text())->text(), record.text());
        QVERIFY(UpdateFailRecord::store(record.text()));
        QCOMPARE(UpdateFailRecord::storedText(), record.text());
        UpdateFailRecord::remove();
        QCOMPARE(UpdateFailRecord::storedText(), QString());
    }

    // Each device that waits keeps its record, whatever is flashed meanwhile.
    void recordsWaitBehindEachOther()
    {
        const UpdateFailRecord mouse{TargetMouse, 8, 18, 6};
        const UpdateFailRecord otherMouse{TargetMouse, 8, 18, 7};
        const UpdateFailRecord receiver{TargetReceiver, 8, 18, 6};
        const auto stored = [] { return UpdateFailRecord::storedTexts(); };
        QVERIFY(mouse.putFirst() && otherMouse.putFirst() && receiver.putFirst());
        QCOMPARE(stored(), (QStringList{receiver.text(), otherMouse.text(), mouse.text()}));
        QVERIFY((UpdateFailRecord{TargetMouse, 4, 18, 6}.putFirst())); // the same mouse, another receiver
        QCOMPARE(stored(), (QStringList{"210,4,18,6", receiver.text(), otherMouse.text()}));
        QVERIFY((UpdateFailRecord{TargetReceiver, 4, 18, 6}.takeAway())); // another class: another receiver
        QCOMPARE(stored().size(), 3);
        QVERIFY(receiver.takeAway() && mouse.takeAway());
        QCOMPARE(stored(), QStringList{otherMouse.text()});
        QVERIFY(otherMouse.takeAway());
        QCOMPARE(stored(), QStringList());
    }

    // A start for nothing leaves its own device's record as it was, and no other.
    void aStartForNothingIsTakenBack_data()
    {
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QStringList>("after");
        const QString own = ReceiverFailed;
        const QString other = QStringLiteral("210,8,18,7");
        const QString between = MouseFailed;
        QTest::newRow("none") << QStringList() << QStringList(between);
        QTest::newRow("its own") << QStringList(own) << QStringList({own, between});
        QTest::newRow("behind another one's")
            << QStringList({other, own}) << QStringList({between, own, other});
        QTest::newRow("another one's") << QStringList(other) << QStringList({between, other});
    }
    void aStartForNothingIsTakenBack()
    {
        QFETCH(QStringList, before);
        QFETCH(QStringList, after);
        const UpdateFailRecord receiver{TargetReceiver, 8, 18, 6};
        QVERIFY(UpdateFailRecord::storeTexts(before) && receiver.putFirst());
        QVERIFY((UpdateFailRecord{TargetMouse, 8, 18, 6}.putFirst())); // of somebody else, meanwhile
        QVERIFY(receiver.putBack(before));
        QCOMPARE(UpdateFailRecord::storedTexts(), after);
        UpdateFailRecord::remove();
    }

    void aSenselessRecordGivesWay()
    {
        UpdateFailRecord::storeTexts({QStringLiteral("211,8,18"), QString(MouseFailed)});
        QVERIFY((UpdateFailRecord{TargetReceiver, 8, 18, 6}.putFirst()));
        QCOMPARE(UpdateFailRecord::storedTexts(), (QStringList{ReceiverFailed, MouseFailed}));
        UpdateFailRecord::remove();
    }
};

namespace
{
struct SmallCatalogue : private ProductFolder {
    SmallCatalogue(int &, char **) : ProductFolder(smallCatalogue()) {}
};
} // namespace

TEST_CLASS(tst_UpgradeGate, SmallCatalogue)
#include "tst_upgradegate.moc"
