// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the settings page offers before an upgrade: the gate, its questions in the background, and the offers.
#include "tests/widget/service/UpgradeFlowParts.h"

using namespace fixture;

class tst_UpgradeCheck : public FlowParts
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    // ---- The gate

    void whatTheCheckSays()
    {
        setDeviceList({receiverInfo()});
        open();
        QVERIFY(dialog->says(UpgradeText::NoUSB) && dialog->hasWayOut());
        QVERIFY(dialog->mainSays("OK"));
        setDeviceList({mouseInfo(), receiverInfo()});
        flow->SlotCheckUpdate();
        QVERIFY(dialog->says(UpgradeText::ReadyUpdate) && dialog->offersStart());
        dialog->cancel->click();
        QVERIFY(flow->dialog().isHidden());
    }

    void withNothingNewerTheDialogStaysClosed()
    {
        page->receiver = QStringLiteral("v1.03");
        page->mouse = QStringLiteral("v1.06");
        open();
        QVERIFY(page->upToDate && flow->dialog().isHidden());
        page->mouse = QStringLiteral("v1.05");
        flow->on_Receive_2_clicked(); // says newTips, so a click does nothing
        QVERIFY(flow->dialog().isHidden());
        page->upToDate = false;
        flow->on_Receive_2_clicked();
        QVERIFY(flow->dialog().isVisible());
    }

    void whatIsInItsBootLoaderIsFlashed_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<bool>("both");
        QTest::newRow("the receiver") << ReceiverFailed << false;
        QTest::newRow("the receiver, then the mouse") << ReceiverFailed << true;
        QTest::newRow("the mouse") << MouseFailed << false;
        QTest::newRow("the receiver, then the mouse that failed") << MouseFailed << true;
    }
    void whatIsInItsBootLoaderIsFlashed()
    {
        QFETCH(QString, record);
        QFETCH(bool, both);
        const bool mouseFailed = record == QLatin1String(MouseFailed);
        UpdateFailRecord::store(record);
        const DeviceAllInfo beside = mouseFailed ? receiverInfo() : mouseInfo();
        setDeviceList({beside});
        select(beside);
        if (!both)
            (mouseFailed ? page->receiver : page->mouse) =
                mouseFailed ? QStringLiteral("v1.03") : QStringLiteral("v1.06");
        fake.setUpgrade(1, true);
        open();
        QVERIFY(dialog->says(UpgradeText::ReadyUpdate));
        fake.setUpgrade(mouseFailed && both ? 0 : 1, true);
        dialog->main->click();
        QTRY_COMPARE(starts(), 1);
        fake.setUpgrade(mouseFailed ? 1 : 0, true);
        const QString other = mouseFailed ? ReceiverFailed : MouseFailed;
        const bool otherFirst = both && mouseFailed;
        QCOMPARE(UpdateFailRecord::storedTexts(),
                 otherFirst ? QStringList({other, record}) : QStringList(record));
        QStringList between;
        fake.setHook([&between](const std::string &name) {
            if (name == "UsbUpgradeC_FindBootDevices")
                between << UpdateFailRecord::storedText();
        });
        succeed();
        if (both) {
            QTRY_COMPARE(starts(), 2);
            fake.setHook({});
            QCOMPARE(between, QStringList(mouseFailed ? record : QString()));
            QCOMPARE(UpdateFailRecord::storedTexts(), QStringList(MouseFailed));
            succeed();
        }
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeSuccess));
        QCOMPARE(UpdateFailRecord::storedText(), QString());
    }

    // A mouse of model 7 waits for its repair while a pair of model 6 is upgraded.
    void anotherModelsRecordStays()
    {
        const QString other = QStringLiteral("210,8,18,7");
        UpdateFailRecord::store(other);
        start();
        QTRY_COMPARE(starts(), 1);
        QCOMPARE(UpdateFailRecord::storedTexts(), (QStringList{ReceiverFailed, other}));
        succeed();
        endStage(2, fail);
        QTRY_VERIFY(isOver());
        QCOMPARE(UpdateFailRecord::storedTexts(), (QStringList{MouseFailed, other}));
    }

    // The record that a repair is about is the attached model's, also when another one failed later.
    void theRecordOfTheAttachedModelCounts()
    {
        UpdateFailRecord::storeTexts({QStringLiteral("210,8,18,7"), MouseFailed});
        setDeviceList({receiverInfo()});
        select(receiverInfo());
        page->receiver = QStringLiteral("v1.03");
        fake.setUpgrade(1, true);
        start();
        endStage(1, succeed);
        QTRY_VERIFY(isOver());
        QCOMPARE(UpdateFailRecord::storedTexts(), QStringList(QStringLiteral("210,8,18,7")));
    }

    void aSenselessRecordIsRemoved()
    {
        UpdateFailRecord::store(QStringLiteral("211,8,18"));
        setDeviceList({mouseInfo()});
        open();
        QVERIFY(dialog->says(UpgradeText::Error1) && dialog->hasWayOut());
        QCOMPARE(UpdateFailRecord::storedText(), QString());
    }

    // ---- What is asked in the background

    void theMainThreadAsksNoDevice_data()
    {
        QTest::addColumn<bool>("afterFailure");
        QTest::newRow("of an upgrade") << false;
        QTest::newRow("of one behind a failure") << true;
    }
    void theMainThreadAsksNoDevice()
    {
        QFETCH(bool, afterFailure);
        if (afterFailure)
            leaveReceiverInBootLoader();
        const MainThreadQuestions questions;
        start();
        QTRY_COMPARE(starts(), 1);
        fake.setUpgrade(0, true);
        succeed();
        endStage(2, succeed);
        QTRY_VERIFY(isOver());
        QVERIFY(questions.none());
    }

    // Alive, with a way out, and without an offer.
    void whileBootLoadersAreAskedNothingStarts()
    {
        leaveReceiverInBootLoader();
        SlowBootLoaders slow;
        flow->on_Receive_2_clicked();
        QVERIFY(flow->dialog().isVisible() && dialog->says(UpgradeText::UpgradeAsking));
        QVERIFY(!dialog->main->isEnabled() && dialog->cancel->isEnabled() && dialog->close->isEnabled());
        QCOMPARE(flow->dialog().focusWidget(), dialog->cancel);
        QTest::keyClick(&flow->dialog(), Qt::Key_Return);
        QVERIFY(flow->dialog().isVisible());
        slow.answer();
        QTRY_VERIFY(dialog->says(UpgradeText::ReadyUpdate));
        QVERIFY(dialog->offersStart() && dialog->main->isEnabled());
        QVERIFY(NotUpgrading && starts() == 0);
    }

    void anAnswerToAClosedDialogIsDropped()
    {
        leaveReceiverInBootLoader();
        SlowBootLoaders slow;
        flow->on_Receive_2_clicked();
        dialog->cancel->click();
        QVERIFY(flow->dialog().isHidden());
        setDeviceList({receiverInfo()}); // another gate's answer stands now
        UpdateFailRecord::remove();
        flow->on_Receive_2_clicked();
        QVERIFY(dialog->says(UpgradeText::NoUSB));
        QVERIFY(slow.asked.tryAcquire(1, 10000));
        slow.answer();
        slow.waitForAnswers(1);
        QVERIFY(dialog->says(UpgradeText::NoUSB));
    }

    // The hot-plug was told before the dialog was closed.
    void aClosedDialogAsksNoDevice()
    {
        leaveReceiverInBootLoader();
        flow->SlotCheckUpdate();
        QVERIFY(!dialog->says(UpgradeText::UpgradeAsking));
        open();
        QVERIFY(dialog->says(UpgradeText::ReadyUpdate));
        QCOMPARE(fake.count("UsbUpgradeC_FindBootDevices"), 1);
    }

    // While the devices are counted, no tick and no other word leads on.
    void aCountThatTakesLongerThanAStep()
    {
        page->mouse = QStringLiteral("v1.06");
        SlowBootLoaders slow;
        start();
        QTRY_VERIFY(slow.asked.available() > 0);
        QSignalSpy ticks(flow->findChild<QTimer *>(QStringLiteral("DongleCheckTimer")), &QTimer::timeout);
        QTRY_VERIFY(ticks.count() > 5);
        QVERIFY(UpdateBusy && flow->dialog().isBusy());
        QCOMPARE(slow.asked.available(), 1);
        slow.answer();
        endStage(1, succeed);
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeSuccess));
    }

    // ---- Offers

    void offersAreAnnounced_data()
    {
        QTest::addColumn<QString>("receiver");
        QTest::addColumn<QString>("mouse");
        QTest::addColumn<bool>("waits");
        QTest::newRow("both") << "v1.02"
                              << "v1.05" << true;
        QTest::newRow("receiver") << "v1.02"
                                  << "v1.06" << true;
        QTest::newRow("none") << "v1.03"
                              << "v1.06" << false;
        QTest::newRow("unknown") << ""
                                 << "" << false;
    }
    void offersAreAnnounced()
    {
        QFETCH(QString, receiver);
        QFETCH(QString, mouse);
        QFETCH(bool, waits);
        page->receiver = receiver;
        page->mouse = mouse;
        QSignalSpy offers(PostMsg::instance(), &PostMsg::SigAddUpdate);
        QSignalSpy frame(PostMsg::instance(), &PostMsg::SigUpdateFrame);
        flow->showOffers();
        QCOMPARE(page->waits, waits);
        QCOMPARE(offers.at(0), (QVariantList{0, mouse == QLatin1String("v1.05")}));
        QCOMPARE(offers.at(1), (QVariantList{1, receiver == QLatin1String("v1.02")}));
        QCOMPARE(frame.count(), 1);
        QCOMPARE(frame.at(0).at(0).toBool(), waits);
        flow->SlotUpdateFrame(waits);
        QCOMPARE(flow->dialog().isVisible(), waits);
    }

    // In the tray nobody has asked for it.
    void withoutAWindowNoOfferOpens()
    {
        page->widget.hide();
        flow->SlotUpdateFrame(true);
        QVERIFY(flow->dialog().isHidden());
        page->widget.showMinimized();
        flow->SlotUpdateFrame(true);
        QVERIFY(flow->dialog().isHidden());
        page->widget.showNormal();
        flow->SlotUpdateFrame(true);
        QVERIFY(flow->dialog().isVisible());
    }

    // The device page's search has ended behind the page, and the dialog is the selection page's by now.
    void aRepairIsNotAskedForAnUpgrade()
    {
        const QWidget place;
        setDeviceList({receiverInfo()});
        flow->dialog().resetForm();
        flow->dialog().noticeForm(UpgradeText::MultiMouse);
        flow->dialog().showForRepair(&place);
        flow->SlotCheckUpdate();
        QVERIFY(dialog->says(UpgradeText::MultiMouse));
        flow->dialog().close();
        open();
        flow->SlotCheckUpdate();
        QVERIFY(dialog->says(UpgradeText::NoUSB));
    }

    void withoutTheFolderNothingIsOffered()
    {
        firmware::clear();
        QSignalSpy frame(PostMsg::instance(), &PostMsg::SigUpdateFrame);
        flow->showOffers();
        QCOMPARE(frame.count(), 0);
        firmware::write(QStringLiteral("mouse.bin"), firmware::Mouse);
        flow->showOffers();
        QCOMPARE(frame.count(), 1);
    }
};

TEST_CLASS(tst_UpgradeCheck, fixture::UpgradeLooks)
#include "tst_upgradecheck.moc"
