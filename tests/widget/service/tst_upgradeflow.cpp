// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The run of the settings page's upgrade: both targets, files and counts, and every end that a run may have.
#include "service/FlashRun.h"
#include "tests/widget/service/UpgradeFlowParts.h"

using namespace fixture;

namespace
{

// While it lives.
struct ShortSilence {
    ShortSilence() { flashrun::SilenceMs = 100; }
    ~ShortSilence() { flashrun::SilenceMs = usual; }
    const int usual = flashrun::SilenceMs;
};

// Whether the pages were held when the devices were first searched for behind a target's end.
class FirstSearch
{
public:
    FirstSearch()
    {
        FakeHidUsb::instance().setHook([asked = asked_, held = held_](const std::string &name) {
            if (name == "UsbFinderC_GetDeviceInfo" && ReceiverStatus != UpgradeStatus::Running &&
                MouseStatus != UpgradeStatus::Running && !asked->exchange(true))
                *held = !NotUpgrading;
        });
    }
    ~FirstSearch() { FakeHidUsb::instance().setHook({}); }
    bool heldPages() const { return *held_; }

private:
    using Flag = std::shared_ptr<std::atomic<bool>>; // a search may outlive this object
    const Flag asked_ = std::make_shared<std::atomic<bool>>(false);
    const Flag held_ = std::make_shared<std::atomic<bool>>(false);
};

} // namespace

class tst_UpgradeFlow : public FlowParts
{
    Q_OBJECT

private:
    QString log() const { return dataRoot() + QStringLiteral("/Exception/UpDateLog.txt"); }

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    // ---- Whole runs

    void bothAreUpgraded()
    {
        QStringList records;
        fake.setHook([&records](const std::string &name) {
            if (name == "UsbUpgrade_Start")
                records << UpdateFailRecord::storedText();
        });
        QSignalSpy labels(PostMsg::instance(), &PostMsg::SigLabelText);
        QSignalSpy marks(PostMsg::instance(), &PostMsg::SigAddUpdate);
        start();
        QVERIFY(MouseNew && ReceiverNew);
        page->waits = true;
        QVERIFY(flow->dialog().isBusy());
        QVERIFY(!NotUpgrading && UpdateBusy);
        QTRY_COMPARE(starts(), 1);
        progress(40);
        QTRY_COMPARE(dialog->percent->text(), targetProgress("DongleVersion", 40));
        succeed();
        QTRY_COMPARE(labels.count(), 1);
        QVERIFY(dialog->says(UpgradeText::WarnUpdate));
        QVERIFY(!bar.contains(100));
        QTRY_COMPARE(starts(), 2);
        QCOMPARE(dialog->percent->text(), targetProgress("MouseVersion", 0));
        endStage(2, succeed);
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeSuccess));
        QVERIFY(dialog->hasWayOut() && dialog->mainSays("OK"));
        QCOMPARE(bar, (QList<int>{20, 70, 100}));
        QCOMPARE(records, (QStringList{ReceiverFailed, MouseFailed}));
        QCOMPARE(UpdateFailRecord::storedText(), QString());
        QVERIFY(!MouseNew && !ReceiverNew && !page->waits);
        QVERIFY(marks.contains({0, false}) && marks.contains({1, false}));
        QCOMPARE(labels.at(0), (QVariantList{0, QStringLiteral("v1.03")}));
        QCOMPARE(labels.at(1), (QVariantList{1, QStringLiteral("v1.06")}));
        QCOMPARE(RegistryStore::instance().value(registry::BaseGroup, QStringLiteral("MouseVer186")),
                 QStringLiteral("v1.06"));
        QCOMPARE(fake.count("UsbFinderC_SetDongleIDToMouse"), 1);
        fake.setHook({});
    }

    void oneIsUpgraded_data()
    {
        QTest::addColumn<QString>("receiver");
        QTest::addColumn<QString>("mouse");
        QTest::addColumn<int>("target");
        QTest::newRow("the receiver") << "v1.02"
                                      << "v1.06" << TargetReceiver;
        QTest::newRow("the mouse") << "v1.03"
                                   << "v1.05" << TargetMouse;
        QTest::newRow("the mouse, to an older one") << "v1.03"
                                                    << "v1.07" << TargetMouse;
    }
    void oneIsUpgraded()
    {
        QFETCH(QString, receiver);
        QFETCH(QString, mouse);
        QFETCH(int, target);
        page->receiver = receiver;
        page->mouse = mouse;
        open();
        QCOMPARE(dialog->offer->text(), target == TargetMouse
                                            ? QStringLiteral("Mouse firmware: %1 → v1.06").arg(mouse)
                                            : QStringLiteral("Receiver firmware: v1.02 → v1.03"));
        dialog->main->click();
        endStage(1, succeed);
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeSuccess));
        QCOMPARE(bar, (QList<int>{40, 100}));
        QCOMPARE(starts(), 1);
        QCOMPARE(int(UpgradeTarget), target);
    }

    // It has come back under another path; until the selection points there, no search may leave the page.
    void theRestartedMouseIsTheSelectedOne()
    {
        page->receiver = QStringLiteral("v1.03");
        start();
        QTRY_COMPARE(starts(), 1);
        fake.setDevices({device("mouse again", 6, Cable8K), device(ReceiverPath, 6, Receiver8K)});
        const FirstSearch forTheMouse;
        succeed();
        QTRY_VERIFY(isOver());
        QVERIFY(forTheMouse.heldPages());
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("mouse again"));
        QCOMPARE(QString(CurrentDevicePath()), QStringLiteral("mouse again"));
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeSuccess));
    }

    // A mouse that comes back on its cable is followed there by the address that its receiver gave.
    void theRestartedReceiverKeepsItsAddress()
    {
        page->mouse = QStringLiteral("v1.06");
        start();
        QTRY_COMPARE(starts(), 1);
        select(receiverInfo());
        FakeDevice again = device("receiver again", 6, Receiver8K);
        again.address[0] = 7;
        fake.setDevices({device(MousePath, 6, Cable8K), again});
        succeed();
        QTRY_VERIFY(isOver());
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("receiver again"));
        QCOMPARE(SelectedDevice::info().UsbAddress.size(), 3);
        QCOMPARE(SelectedDevice::info().UsbAddress.at(0), char(7));
    }

    // The user is quicker than the search for it, and what starts next ends with nothing flashed.
    void theRestartedMouseIsSelectedBehindTheNextRun()
    {
        page->receiver = QStringLiteral("v1.03");
        start();
        QTRY_COMPARE(starts(), 1);
        fake.setDevices({device("mouse again", 6, Cable8K), device(ReceiverPath, 6, Receiver8K)});
        struct Question { // may outlive this function
            std::atomic<int> number{0};
            QSemaphore asked;
            QSemaphore mayAnswer;
        };
        const auto question = std::make_shared<Question>();
        fake.setHook([question](const std::string &name) {
            const bool isSearch = name == "UsbFinderC_GetDeviceInfo" && MouseStatus != UpgradeStatus::Running;
            if (!isSearch || ++question->number > 1)
                return;
            question->asked.release();
            question->mayAnswer.tryAcquire(1, 10000);
        });
        succeed();
        QTRY_VERIFY(question->asked.available() > 0);
        dialog->main->click();
        flow->on_Receive_2_clicked();
        QVERIFY(dialog->says(UpgradeText::ReadyUpdate));
        setDeviceList({mouseInfo(), mouseInfo(), receiverInfo()}); // too many for the next one
        dialog->main->click();
        QTRY_VERIFY(dialog->hasWayOut());
        question->mayAnswer.release();
        QTRY_VERIFY(isOver());
        fake.setHook({});
        QCOMPARE(starts(), 1);
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("mouse again"));
    }

    // Its own model's device is not the one that was flashed, although both are on their cables.
    void anotherModelStaysSelected()
    {
        page->receiver = QStringLiteral("v1.03");
        start();
        QTRY_COMPARE(starts(), 1);
        select(info("another", Cable8K, 1));
        fake.setDevices({device("another", 7, Cable8K), device("mouse again", 6, Cable8K),
                         device(ReceiverPath, 6, Receiver8K)});
        const int searches = fake.count("UsbFinderC_GetDeviceInfo");
        succeed();
        QTRY_VERIFY(isOver());
        QVERIFY(fake.count("UsbFinderC_GetDeviceInfo") > searches);
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeSuccess));
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("another"));
        QCOMPARE(QString(CurrentDevicePath()), QStringLiteral("another"));
    }

    // The user is quicker than the next tick.
    void aToldEndIsTheEnd_data()
    {
        QTest::addColumn<QString>("end");
        for (const char *end : {"success", "failure", "count"})
            QTest::newRow(end) << end;
    }
    void aToldEndIsTheEnd()
    {
        QFETCH(QString, end);
        page->mouse = QStringLiteral("v1.06");
        open();
        for (auto *timer : flow->findChildren<QTimer *>())
            timer->setInterval(600000);
        const bool isCount = end == QLatin1String("count");
        if (isCount)
            fake.setUpgrade(1, true);
        dialog->main->click();
        flow->onDongleCheckTimer();
        flow->onDongleCheckTimer();
        if (!isCount) {
            QTRY_COMPARE(starts(), 1);
            end == QLatin1String("success") ? succeed() : fail();
        }
        QTRY_VERIFY(!flow->dialog().isBusy());
        QTRY_VERIFY(!UpdateBusy);
        QCOMPARE(dialog->says(UpgradeText::SameDevice), isCount);
        OnDevicePage = 0; // the failure leads there
        dialog->main->click();
        flow->on_Receive_2_clicked();
        QVERIFY(dialog->says(UpgradeText::ReadyUpdate) && dialog->offersStart());
    }

    void theSuccessIsLeftByItsButton()
    {
        page->mouse = QStringLiteral("v1.06");
        start();
        endStage(1, succeed);
        QTRY_VERIFY(isOver());
        QSignalSpy told(PostMsg::instance(), &PostMsg::SigSetNewVer);
        QSignalSpy left(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        dialog->main->click();
        QCOMPARE(told.count(), 1);
        QCOMPARE(left.count(), 0);
        QVERIFY(flow->dialog().isHidden());
    }

    // ---- Failures

    void aFailure_data()
    {
        QTest::addColumn<int>("stage");
        QTest::addColumn<int>("answer");
        QTest::newRow("of the receiver") << 1 << 0;
        QTest::newRow("of the receiver, which refuses") << 1 << 2;
        QTest::newRow("of the mouse") << 2 << 0;
        QTest::newRow("of the mouse, which refuses") << 2 << 2;
    }
    void aFailure()
    {
        QFETCH(int, stage);
        QFETCH(int, answer);
        QFile file(log());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("old") == 3);
        file.close();
        ReadStartedOnline = true;
        start();
        if (stage == 2)
            endStage(1, succeed);
        QTRY_COMPARE(starts(), stage);
        report(2, uint8_t(answer));
        QTRY_VERIFY(isOver());
        // The selected mouse is read again only when it was written to, since the wait hides the result.
        QCOMPARE(bool(ReadStartedOnline), stage == 1);
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeFail));
        QVERIFY(dialog->hasWayOut() && dialog->mainSays("OK"));
        QCOMPARE(UpdateFailRecord::storedText(), QString(stage == 1 ? ReceiverFailed : MouseFailed));
        QCOMPARE(QFileInfo(log()).size(), 0);
        QVERIFY(!MouseNew && !ReceiverNew);
        QCOMPARE(starts(), stage); // after the receiver's failure the mouse is not flashed
        QSignalSpy left(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        dialog->main->click();
        QCOMPARE(left.count(), 1);
        QVERIFY(flow->dialog().isHidden());
    }

    void aStartThatTheLayerRefusesLeavesTheRecord_data()
    {
        QTest::addColumn<QString>("record");
        QTest::newRow("none") << "";
        QTest::newRow("of an earlier failure") << MouseFailed;
    }
    void aStartThatTheLayerRefusesLeavesTheRecord()
    {
        QFETCH(QString, record);
        UpdateFailRecord::store(record);
        fake.setUpgrade(0, false);
        start();
        QTRY_VERIFY(isOver());
        QCOMPARE(starts(), 1);
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeFail) && dialog->hasWayOut());
        QCOMPARE(UpdateFailRecord::storedText(), record);
    }

    void anAnswerBeforeTheFirstTickCounts()
    {
        page->mouse = QStringLiteral("v1.06");
        fake.setHook([](const std::string &name) {
            if (name == "UsbUpgrade_Start")
                succeed();
        });
        start();
        QTRY_VERIFY(isOver());
        fake.setHook({});
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeSuccess));
    }

    // No state of the dialog is without a way out, whatever the library does.
    void aLibraryThatFallsSilentHasFailed()
    {
        page->mouse = QStringLiteral("v1.06");
        const ShortSilence silence;
        start();
        QTRY_COMPARE(starts(), 1);
        progress(40);
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeFail) && dialog->hasWayOut());
        QCOMPARE(UpdateFailRecord::storedText(), QString(ReceiverFailed));
        succeed(); // nobody's
        QTRY_VERIFY(fake.idle());
        QCoreApplication::processEvents();
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeFail));
    }

    // It comes when the next run has begun, with a start that the layer refuses in between.
    void theLateEndOfASilentRunIsNobodys()
    {
        page->mouse = QStringLiteral("v1.06");
        {
            const ShortSilence silence;
            start();
            QTRY_COMPARE(starts(), 1);
            QTRY_VERIFY(isOver());
        }
        const UpgradeCallback_t late = fake.upgradeCallback();
        for (int number = 2; number <= 3; ++number) {
            fake.setUpgrade(0, number == 3);
            dialog->main->click();
            flow->on_Receive_2_clicked();
            QVERIFY(dialog->says(UpgradeText::ReadyUpdate));
            dialog->main->click();
            QTRY_COMPARE(starts(), number);
            if (number == 2)
                QTRY_VERIFY(isOver());
        }
        const uint8_t success[8] = {7, 2, 1};
        late(success);
        progress(30);
        QTRY_COMPARE(dialog->bar->value(), 30);
        QVERIFY(flow->dialog().isBusy());
        QCOMPARE(UpdateFailRecord::storedText(), QString(ReceiverFailed));
        succeed();
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeSuccess));
    }

    void otherBlocksAreIgnored()
    {
        page->mouse = QStringLiteral("v1.06");
        start();
        QTRY_COMPARE(starts(), 1);
        fake.upgradeReport({6, 2, 1});
        fake.upgradeReport({7, 3, 1});
        progress(30);
        QTRY_COMPARE(bar, (QList<int>{30}));
        QVERIFY(flow->dialog().isBusy());
        succeed();
        succeed(); // the second one is nobody's
        QTRY_VERIFY(isOver());
    }

    // ---- Files and counts

    void noFileIsNoSuccess()
    {
        open();
        QVERIFY(dialog->says(UpgradeText::ReadyUpdate));
        firmware::clear();
        dialog->main->click();
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::ErrorFile) && dialog->hasWayOut());
        QCOMPARE(starts(), 0);
    }

    // Half of what was offered is no success.
    void aFileGoneBeforeTheStartIsTold_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("the receiver's") << "receiver.bin";
        QTest::newRow("the mouse's") << "mouse.bin";
    }
    void aFileGoneBeforeTheStartIsTold()
    {
        QFETCH(QString, name);
        open();
        QFile::remove(firmware::folder() + name);
        dialog->main->click();
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::ErrorFile) && dialog->hasWayOut());
        QCOMPARE(starts(), 0);
        firmware::write(QStringLiteral("receiver.bin"), firmware::Receiver);
        firmware::write(QStringLiteral("mouse.bin"), firmware::Mouse);
        flow->SlotCheckUpdate();
        QVERIFY(dialog->says(UpgradeText::ReadyUpdate) && dialog->offersStart());
    }

    // What was there at the start is flashed.
    void theFilesMayGoDuringTheUpgrade()
    {
        start();
        QTRY_COMPARE(starts(), 1);
        firmware::clear();
        endStage(1, succeed);
        endStage(2, succeed);
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeSuccess));
        QCOMPARE(bar, (QList<int>{20, 70, 100}));
    }

    void aWrongCount_data()
    {
        QTest::addColumn<QString>("lists"); // after the check
        QTest::addColumn<int>("boots");
        QTest::addColumn<int>("text");
        QTest::newRow("no receiver") << "m" << 0 << int(UpgradeText::NoDevice);
        QTest::newRow("nothing any more") << "" << 0 << int(UpgradeText::NoDevice);
        QTest::newRow("two receivers and no mouse") << "rr" << 0 << int(UpgradeText::SameDevice);
        QTest::newRow("two receivers") << "mrr" << 0 << int(UpgradeText::SameDevice);
        QTest::newRow("a receiver and a boot loader") << "mr" << 1 << int(UpgradeText::SameDevice);
    }
    void aWrongCount()
    {
        QFETCH(QString, lists);
        QFETCH(int, boots);
        QFETCH(int, text);
        open();
        std::vector<DeviceAllInfo> list;
        for (const QChar letter : lists)
            list.push_back(letter == QLatin1Char('m') ? mouseInfo() : receiverInfo());
        setDeviceList(list);
        fake.setUpgrade(boots, true);
        dialog->main->click();
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText(text)) && dialog->hasWayOut());
        QVERIFY(page->receiverMark);
        QCOMPARE(starts(), 0);
        // The search that missed the selected device could not leave the page, so there is another one.
        QCOMPARE(fake.count("StartUsbChanged"), lists.contains(QLatin1Char('m')) ? 0 : 1);
    }

    void aMouseThatIsPulledBeforeItsTurn()
    {
        start();
        QTRY_COMPARE(starts(), 1);
        setDeviceList({receiverInfo()});
        const FirstSearch forTheReceiver; // which restarts
        succeed();
        QTRY_VERIFY(isOver());
        QVERIFY(forTheReceiver.heldPages());
        QVERIFY(dialog->says(UpgradeText::DialogUpgradeFail) && dialog->hasWayOut());
        QCOMPARE(dialog->bar->value(), 50);
        QCOMPARE(starts(), 1);
    }

    // Its turn has come, and the search that saw it go could not leave its page.
    void aMouseThatIsPulledInItsTurnIsAskedFor()
    {
        page->receiver = QStringLiteral("v1.03");
        open();
        for (auto *timer : flow->findChildren<QTimer *>())
            timer->setInterval(600000);
        dialog->main->click();
        flow->onDongleCheckTimer();
        flow->onDongleCheckTimer();
        QCOMPARE(int(UpgradeTarget), TargetMouse);
        setDeviceList({receiverInfo()});
        flow->onMouseCheckTimer();
        flow->onMouseCheckTimer();
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::WiredMode) && dialog->hasWayOut());
        auto *warning = qobject_cast<NoticeDialog *>(QApplication::activeModalWidget());
        QVERIFY(warning);
        QCOMPARE(warning->findChild<QLabel *>(QStringLiteral("label"))->text(), told(UpgradeText::WiredMode));
        warning->close();
        QCOMPARE(starts(), 0);
        QCOMPARE(fake.count("StartUsbChanged"), 1);
    }

    void aSecondMouseBeforeItsTurnIsWarnedOf()
    {
        start();
        QTRY_COMPARE(starts(), 1);
        setDeviceList({mouseInfo(), mouseInfo(), receiverInfo()});
        succeed();
        QTRY_VERIFY(isOver());
        QVERIFY(dialog->says(UpgradeText::SameDevice) && dialog->hasWayOut());
        auto *warning = qobject_cast<NoticeDialog *>(QApplication::activeModalWidget());
        QVERIFY(warning);
        QCOMPARE(warning->findChild<QLabel *>(QStringLiteral("label"))->text(),
                 told(UpgradeText::SameDevice));
        warning->close();
        QCOMPARE(starts(), 1);
    }

    // ---- While it is busy

    void nothingDisturbsABusyDialog()
    {
        page->mouse = QStringLiteral("v1.06");
        start();
        QTRY_COMPARE(starts(), 1);
        progress(30);
        QTRY_COMPARE(dialog->bar->value(), 30);
        page->mouse = QStringLiteral("v1.05");
        flow->showOffers();
        flow->SlotUpdateFrame(true);
        flow->SlotUpdateFrame(false);
        flow->SlotCheckUpdate();
        flow->on_Receive_2_clicked();
        flow->on_Start();
        flow->forgetTargets();
        flow->on_Mouse_clicked();
        QVERIFY(!flow->ChechIsUpDate());
        flow->dialog().close();
        QTest::keyClick(&flow->dialog(), Qt::Key_Escape);
        QTest::keyClick(&flow->dialog(), Qt::Key_Return);
        QVERIFY(flow->dialog().isVisible() && flow->dialog().isBusy());
        QVERIFY(dialog->says(UpgradeText::WarnUpdate));
        QCOMPARE(dialog->bar->value(), 30);
        QVERIFY(!MouseNew);
        succeed();
        QTRY_VERIFY(isOver());
        QCOMPARE(starts(), 1);
    }

    void aVersionMessageLeavesTheResult()
    {
        page->mouse = QStringLiteral("v1.06");
        start();
        endStage(1, fail);
        QTRY_VERIFY(isOver());
        flow->SlotUpdateFrame(false);
        flow->SlotUpdateFrame(true);
        flow->SlotCheckUpdate();
        QVERIFY(flow->dialog().isVisible() && dialog->says(UpgradeText::DialogUpgradeFail));
    }

    // It has been read, and the next device may have firmware that waits.
    void aResultThatWasLeftHoldsNoOfferBack_data()
    {
        QTest::addColumn<bool>("succeeds");
        QTest::newRow("a success") << true;
        QTest::newRow("a failure") << false;
    }
    void aResultThatWasLeftHoldsNoOfferBack()
    {
        QFETCH(bool, succeeds);
        page->mouse = QStringLiteral("v1.06");
        start();
        endStage(1, succeeds ? succeed : fail);
        QTRY_VERIFY(isOver());
        dialog->main->click();
        QVERIFY(flow->dialog().isHidden());
        UpdateFailRecord::remove();
        flow->showOffers();
        flow->SlotUpdateFrame(true);
        QVERIFY(flow->dialog().isVisible());
        QVERIFY(dialog->says(UpgradeText::ReadyUpdate) && dialog->offersStart());
        flow->SlotUpdateFrame(false);
        QVERIFY(flow->dialog().isHidden());
    }
};

TEST_CLASS(tst_UpgradeFlow, fixture::UpgradeLooks)
#include "tst_upgradeflow.moc"
