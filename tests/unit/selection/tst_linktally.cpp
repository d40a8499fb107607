// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Duplicates, hidden receivers, the pictures of a tile, and what a click on a silent mouse's tile means.
#include "presentation/ModelPicture.h"
#include "selection/LinkTally.h"
#include "selection/OfflineTile.h"
#include "selection/TileBoard.h"
#include "tests/support/TestMain.h"

#include <QtTest>

namespace
{

constexpr uint16_t Cable = 3;

DeviceAllInfo device(uint16_t kind, int index)
{
    DeviceAllInfo made;
    made.DevicePath = QStringLiteral("%1/%2").arg(kind).arg(index);
    made.DeviceKind = kind;
    made.Usb = isWiredKind(kind);
    made.DriveIndex = index;
    return made;
}

// "kind/index" of what is left, or "duplicate".
QString settled(std::vector<DeviceAllInfo> devices, int total)
{
    LinkTally tally;
    for (const DeviceAllInfo &each : devices)
        tally.count(each);
    if (tally.settle(devices, total))
        return QStringLiteral("duplicate");
    QStringList left;
    for (const DeviceAllInfo &each : devices)
        left << each.DevicePath;
    return left.join(QLatin1Char(' '));
}

} // namespace

class tst_LinkTally : public QObject
{
    Q_OBJECT

private slots:
    void settles()
    {
        QCOMPARE(settled({}, 4), QString());
        QCOMPARE(settled({device(Receiver1K, 0), device(Receiver1K, 0)}, 4), QStringLiteral("duplicate"));
        QCOMPARE(settled({device(Cable, 1), device(Cable, 1)}, 4), QStringLiteral("duplicate"));
        QCOMPARE(settled({device(Receiver1K, 0), device(Receiver8K, 0)}, 4), QStringLiteral("0/0 5/0"));
        QCOMPARE(settled({device(Receiver1K, 0), device(Receiver1K, 1)}, 4), QStringLiteral("0/0 0/1"));
        QCOMPARE(settled({device(Cable, 1), device(Receiver8K, 1), device(Receiver8K, 0)}, 4),
                 QStringLiteral("3/1 5/0"));
    }

    // As many rows are looked at as the catalogue has models: row 3 is the 4 kHz receiver, row 4 the 8 kHz.
    void reachFollowsTheCatalogue_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("firstTotalThatSees");
        QTest::newRow("cable") << int(Cable) << 1;
        QTest::newRow("1K") << int(Receiver1K) << 2;
        QTest::newRow("2K") << int(Receiver2K) << 3;
        QTest::newRow("4K") << int(Receiver4K) << 4;
        QTest::newRow("8K") << int(Receiver8K) << 5;
    }
    void reachFollowsTheCatalogue()
    {
        QFETCH(int, kind);
        QFETCH(int, firstTotalThatSees);
        for (int total = 0; total < 8; ++total) {
            const QString result = settled({device(uint16_t(kind), 0), device(uint16_t(kind), 0)}, total);
            QCOMPARE(result == QLatin1String("duplicate"), total >= firstTotalThatSees);
        }
    }

    void farIndicesAreNotCounted()
    {
        QCOMPARE(settled({device(Cable, 15), device(Cable, 15)}, 255), QStringLiteral("3/15 3/15"));
        QCOMPARE(settled({device(Cable, 300), device(Receiver1K, -1)}, 255), QStringLiteral("3/300 0/-1"));
        QCOMPARE(settled({device(Cable, 14), device(Cable, 14)}, 5), QStringLiteral("duplicate"));
    }

    void picturesOfATile()
    {
        const int mids[] = {5, 6, 7, 8, 9, 10, 0, 255};
        const int numbers[] = {0, 0, 1, 2, 3, 0, 0, 0};
        for (int i = 0; i < 8; ++i)
            QCOMPARE(pictureNumber(mids[i]), numbers[i]);
        QCOMPARE(tilePicture(false, true, 8), QStringLiteral("OnLine2.png"));
        QCOMPARE(tilePicture(false, false, 9), QStringLiteral("DisOnlin3.png"));
        QCOMPARE(tilePicture(true, true, 8), QStringLiteral("Unknow.png"));
    }

    void offlineDecision_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<bool>("mouseIsNew");
        QTest::addColumn<bool>("receiverIsNew");
        QTest::addColumn<int>("decision");
        for (const bool mouse : {false, true})
            for (const bool receiver : {false, true})
                QTest::addRow("nothing known %d%d", mouse, receiver)
                    << QString() << mouse << receiver << int(OfflineTileAction::Pair);
        const QString version = QStringLiteral("v1.05");
        QTest::newRow("both old") << version << false << false << int(OfflineTileAction::AskForPairing);
        QTest::newRow("both new") << version << true << true << int(OfflineTileAction::AskForPairing);
        QTest::newRow("receiver") << version << false << true << int(OfflineTileAction::EnterReceiver);
        QTest::newRow("mouse") << version << true << false << int(OfflineTileAction::WarnToWire);
    }
    void offlineDecision()
    {
        QFETCH(QString, version);
        QFETCH(bool, mouseIsNew);
        QFETCH(bool, receiverIsNew);
        QFETCH(int, decision);
        QCOMPARE(int(offlineTileAction(version, mouseIsNew, receiverIsNew)), decision);
    }

    void twins()
    {
        std::vector<DeviceAllInfo> two = {device(Receiver1K, 0), device(Receiver8K, 0)};
        QCOMPARE(twinOf(two, 0), &two[1]);
        QCOMPARE(twinOf(two, 1), &two[0]);
        QVERIFY(!twinOf(two, 2));
        QVERIFY(!twinOf(two, -1));
        two[1].Mid = 7;
        QVERIFY(!twinOf(two, 0));
        two[1].Mid = two[0].Mid;
        two[1].Cid = 19;
        QVERIFY(!twinOf(two, 0));
        two.pop_back();
        QVERIFY(!twinOf(two, 0));
    }
};

TEST_CLASS(tst_LinkTally, testmain::NoApplication)
#include "tst_linktally.moc"
