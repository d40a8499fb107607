// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a search brings to the selection page, and what becomes of one that comes late, in a crowd or for
// nobody.
#include "service/UpDateRepair.h"
#include "tests/support/TestMain.h"
#include "tests/widget/selection/SelectionPage.h"

class tst_SelectionSearch : public SelectionPage
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void theUpgradeHearsOfEachSearch_data()
    {
        QTest::addColumn<QString>("open"); // what the dialog was opened for
        QTest::addColumn<bool>("busy");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("heard");
        QTest::newRow("closed") << "" << false << 1 << 0;
        QTest::newRow("open") << "repair" << false << 1 << 1;
        QTest::newRow("open, nothing attached") << "repair" << false << 0 << 1;
        QTest::newRow("at work") << "repair" << true << 1 << 0;
        QTest::newRow("open with the result of an upgrade") << "upgrade" << false << 1 << 0;
    }
    void theUpgradeHearsOfEachSearch()
    {
        QFETCH(QString, open);
        QFETCH(bool, busy);
        QFETCH(int, count);
        build();
        UpDateRepair dialog;
        if (open == QLatin1String("repair"))
            dialog.showForRepair(page.get());
        else if (!open.isEmpty())
            dialog.showOver(page.get());
        UpdateBusy = busy;
        QSignalSpy check(PostMsg::instance(), &PostMsg::SigRepairCheckUpdate);
        plug(devices(count));
        QTEST(check.count(), "heard");
    }

    // With a hub, for instance. None answers any more, and so they all look alike.
    void severalPulledDuringTheSearchAreNoDuplicates()
    {
        build();
        bool told = false;
        QTimer look;
        connect(&look, &QTimer::timeout, this, [&told] {
            if (auto *notice = dynamic_cast<QuestiondialogB *>(QApplication::activeModalWidget())) {
                told = true;
                notice->on_CloseButton_clicked();
            }
        });
        look.start(5);
        const FakeDevice stays = fixture::device("s", 8, Receiver1K);
        fake.setHook([&](const std::string &call) {
            if (call == "UsbFinderC_GetDeviceInfo")
                fake.setDevices({stays});
        });
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 7, Receiver1K), stays});
        QCOMPARE(tileCount(), 1);
        QCOMPARE(attached()[0].DevicePath, QString("s"));
        QVERIFY(!told);
    }

    void manyChangesEndInTheLastState()
    {
        build();
        for (int round = 0; round < 40; ++round) {
            fake.setDevices(devices(round % 5));
            fake.changeUsb();
            if (round % 7 == 0)
                QCoreApplication::processEvents();
        }
        plug(devices(2));
        QCOMPARE(tileCount(), 2);
    }

    void anOlderSearchThatEndsLaterIsDropped()
    {
        build();
        std::atomic<bool> firstHeld{false}, go{false};
        std::atomic<int> searches{0};
        fake.setDevices(devices(1));
        fake.setHook([&](const std::string &call) {
            // The first search is held back at its last question, with one device in its hands.
            if (call == "UsbFinderC_GetDeviceOnLineWithUsbAddress" && searches++ == 0) {
                firstHeld = true;
                while (!go)
                    std::this_thread::yield();
            }
        });
        std::thread first([] { DialogChange::UsbChanged(); });
        QTRY_VERIFY(firstHeld);
        fake.setDevices(devices(3));
        std::thread second([] { DialogChange::UsbChanged(); });
        second.join();
        QTRY_COMPARE(tileCount(), 3);
        go = true;
        first.join();
        settle();
        QCOMPARE(tileCount(), 3);
    }

    // The mouse wakes up between the two questions to it.
    void aTileIsRefreshedOnceItShows()
    {
        build();
        fake.setDevices({fixture::device("a", 6, Receiver1K, false)});
        std::atomic<int> questions{0};
        fake.setHook([&](const std::string &call) {
            if (call == "UsbFinderC_GetDeviceOnLineWithUsbAddress" && ++questions == 2)
                fake.setOnline("a", true);
        });
        fake.changeUsb();
        settle();
        QCOMPARE(questions.load(), 2);
        QVERIFY(attached()[0].Online && page->attached().all()[0].Online);
        QVERIFY(tile(0)->styleSheet().contains("OnLine0.png"));
        QVERIFY(!shows("label0") && shows("UsbWifi0"));
    }

    // A receiver behind its cable has no tile, and there are none beside duplicates.
    void onlyTilesAreRefreshed()
    {
        build();
        fake.clearCalls();
        plug({fixture::device("a", 6, fixture::CableKind), fixture::device("b", 6, Receiver1K)});
        QCOMPARE(tileCount(), 1);
        QCOMPARE(fake.count("UsbFinderC_GetDeviceOnLineWithUsbAddress"), 3);
        fake.clearCalls();
        const notice::NextAnswer<QuestiondialogB> answer(true);
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 6, Receiver1K)});
        QVERIFY(answer.isTaken());
        QCOMPARE(fake.count("UsbFinderC_GetDeviceOnLineWithUsbAddress"), 2);
    }

    // The path belongs to another device by then.
    void aRefreshOfAnOlderSearchIsDropped()
    {
        build();
        std::atomic<bool> held{false}, go{false};
        std::atomic<int> questions{0};
        fake.setDevices({fixture::device("a", 6, Receiver1K)});
        fake.setHook([&](const std::string &call) {
            if (call == "UsbFinderC_GetDeviceInfo" && questions++ == 2) { // the refresh of the tile
                held = true;
                while (!go)
                    std::this_thread::yield();
                fake.edit("a", [](FakeDevice &device) { device.identity = {}; });
            }
        });
        std::thread older([] { DialogChange::UsbChanged(); });
        QTRY_VERIFY(held);
        std::thread newer([] { DialogChange::UsbChanged(); });
        newer.join();
        QCoreApplication::processEvents();
        go = true;
        older.join();
        settle();
        QCOMPARE(tileCount(), 1);
        QCOMPARE(int(attached()[0].Mid), 6);
        QCOMPARE(attached()[0].DriveIndex, 0);
    }

    void aHiddenPageTakesNothing()
    {
        build();
        plug(devices(1));
        page->hide();
        plug(devices(3));
        QCOMPARE(int(attached().size()), 1);
        page->show();
        plug(devices(3));
        QCOMPARE(tileCount(), 3);
    }

    void aSearchThatOutlivesThePageHurtsNobody()
    {
        build();
        fake.setDevices(devices(3));
        fake.changeUsb();
        page.reset();
        settle();
    }
};

TEST_CLASS(tst_SelectionSearch, fixture::ShippedLooks)

#include "tst_selectionsearch.moc"
