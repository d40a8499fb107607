// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The dialog of upgrade and repair: its forms, what each word of the hub does to it, its ways out, and the
// repair from the check to the end.
#include "tests/widget/service/UpgradeFixture.h"

using namespace fixture;

class tst_UpDateRepair : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &fake = FakeHidUsb::instance();
    std::unique_ptr<UpDateRepair> dialog;
    std::unique_ptr<DialogParts> parts;
    QList<int> bar;

    // Shows the dialog as the selection page does.
    void openRepair(const QString &record, std::vector<DeviceAllInfo> attached, int boots = 1)
    {
        UpdateFailRecord::store(record);
        fake.setUpgrade(boots, true);
        dialog->setAttached(std::move(attached));
        dialog->resetForm();
        dialog->show();
        check();
    }
    // Until the check's answer.
    void check()
    {
        emit PostMsg::instance()->SigRepairCheckUpdate();
        QTRY_VERIFY(!parts->says(UpgradeText::UpgradeAsking));
    }
    static bool isOver() { return !RepairRunning && NotUpgrading; }

private slots:
    void init()
    {
        beginUpgrade();
        dialog = std::make_unique<UpDateRepair>();
        parts = std::make_unique<DialogParts>(*dialog);
        bar.clear();
        connect(parts->bar, &QProgressBar::valueChanged, this, [this](int value) { bar << value; });
    }
    void cleanup()
    {
        QTRY_VERIFY(fake.idle());
        dialog.reset();
        QCoreApplication::processEvents();
    }

    // ---- Forms

    void itsForms()
    {
        QVERIFY(parts->offersStart() && parts->bar->isHidden() && parts->message->text().isEmpty());
        QVERIFY(!parts->cancel->isHidden());
        dialog->readyForm();
        QVERIFY(parts->says(UpgradeText::ReadyUpdate) && parts->offersStart());
        dialog->busyForm();
        QVERIFY(parts->says(UpgradeText::WarnUpdate) && !parts->bar->isHidden());
        QVERIFY(parts->main->isHidden() && parts->cancel->isHidden());
        QVERIFY(!parts->main->isEnabled() && !parts->cancel->isEnabled() && !parts->close->isEnabled());
        dialog->noticeForm(UpgradeText::MultiDongle);
        QVERIFY(parts->says(UpgradeText::MultiDongle) && parts->mainSays("OK") && parts->bar->isHidden());
        QVERIFY(parts->hasWayOut() && !parts->cancel->isHidden());
        dialog->resetForm();
        QVERIFY(parts->offersStart() && parts->message->text().isEmpty());
    }

    void everyTextIsThere()
    {
        for (const UpgradeTextRow &row : UpgradeTextRows)
            QVERIFY2(!told(row.text).isEmpty(), row.key);
    }

    void wordsOfTheHub_data()
    {
        QTest::addColumn<int>("word");
        QTest::addColumn<int>("text");
        QTest::addColumn<int>("percent");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<bool>("buttons");
        QTest::newRow("0, percent") << 0 << int(UpgradeText::WarnUpdate) << 30 << false << false;
        QTest::newRow("1, failure") << 1 << int(UpgradeText::DialogUpgradeFail) << 20 << true << true;
        QTest::newRow("2, success") << 2 << int(UpgradeText::DialogUpgradeSuccess) << 100 << true << true;
        QTest::newRow("3, no cancel") << 3 << int(UpgradeText::WarnUpdate) << 20 << false << false;
        QTest::newRow("4, no cancel") << 4 << int(UpgradeText::WarnUpdate) << 0 << false << false;
        QTest::newRow("5, failure half way")
            << 5 << int(UpgradeText::DialogUpgradeFail) << 50 << true << true;
        QTest::newRow("6, failed repair") << 6 << int(UpgradeText::DialogUpgradeFail) << 20 << false << true;
        QTest::newRow("7, none") << 7 << int(UpgradeText::WarnUpdate) << 20 << false << false;
    }
    void wordsOfTheHub()
    {
        QFETCH(int, word);
        QFETCH(int, text);
        QFETCH(int, percent);
        QFETCH(bool, ok);
        QFETCH(bool, buttons);
        dialog->busyForm();
        emit PostMsg::instance()->SigProgress(20, 0);
        emit PostMsg::instance()->SigProgress(30, word);
        QVERIFY(parts->says(UpgradeText(text)));
        QCOMPARE(parts->bar->value(), percent);
        QCOMPARE(parts->mainSays("OK"), ok);
        QCOMPARE(!parts->main->isHidden() && parts->main->isEnabled(), buttons);
        QCOMPARE(!parts->cancel->isHidden() && parts->cancel->isEnabled(), buttons);
        QCOMPARE(parts->close->isEnabled(), buttons);
    }

    // What a finished upgrade has come to is seen before it is read; nothing else has a sign.
    void aResultHasASign()
    {
        const auto *const sign = dialog->findChild<QLabel *>(QStringLiteral("sign"));
        const auto shows = [&] {
            if (!sign->isVisible())
                return QString();
            return QFileInfo(
                       sign->styleSheet().section(QLatin1String("url("), 1).section(QLatin1Char(')'), 0, 0))
                .baseName();
        };
        dialog->show();
        for (const auto &[word, picture] : {std::pair(1, "Warn"), std::pair(2, "Done"), std::pair(5, "Warn"),
                                            std::pair(6, "Warn"), std::pair(2, "Done")}) {
            dialog->readyForm();
            QCOMPARE(shows(), QString());
            dialog->busyForm();
            emit PostMsg::instance()->SigAutoRepair(0); // tells a repair's end before its bar does
            QCOMPARE(shows(), QString());
            emit PostMsg::instance()->SigProgress(0, word);
            QCOMPARE(shows(), QString(picture));
            QVERIFY(!sign->geometry().intersects(parts->message->geometry()));
            QVERIFY(!parts->message->geometry().intersects(parts->bar->geometry()));
        }
        dialog->noticeForm(UpgradeText::MultiDongle);
        QCOMPARE(shows(), QString());
    }

    void threeAndFourHideCancel()
    {
        for (const int word : {3, 4}) {
            dialog->readyForm();
            QVERIFY(!parts->cancel->isHidden());
            emit PostMsg::instance()->SigProgress(0, word);
            QVERIFY(parts->cancel->isHidden() && !parts->main->isHidden());
        }
    }

    void aLanguageChangeKeepsTheMessage()
    {
        dialog->noticeForm(UpgradeText::NoUSB);
        const QString before = parts->message->text();
        parts->message->setText(QStringLiteral("?"));
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(parts->message->text(), before);
        dialog->readyForm({{TargetMouse, QStringLiteral("v1.05"), QStringLiteral("v1.06")}});
        const QString offer = QStringLiteral("Mouse firmware: v1.05 → v1.06");
        QCOMPARE(parts->offer->text(), offer);
        parts->offer->clear();
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(parts->offer->text(), offer);
        QCOMPARE(dialog->accessibleDescription(), offer);
    }

    // ---- Ways out

    void closing_data()
    {
        QTest::addColumn<int>("percent"); // -1: the bar does not show; -100: full, and then it failed
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("newVersion");
        QTest::addColumn<int>("left");
        QTest::newRow("before a start") << -1 << 1 << 0 << 0;
        QTest::newRow("success") << 100 << 1 << 1 << 0;
        QTest::newRow("success on the selection page") << 100 << 0 << 1 << 0;
        QTest::newRow("failure") << 40 << 1 << 0 << 1;
        QTest::newRow("failure on the selection page") << 40 << 0 << 0 << 0;
        QTest::newRow("failure behind the last byte") << -100 << 1 << 0 << 1;
    }
    void closing()
    {
        QFETCH(int, percent);
        QFETCH(int, page);
        QFETCH(int, newVersion);
        QFETCH(int, left);
        QToolButton *const windowSystem = nullptr;
        for (QToolButton *button : {parts->close, parts->cancel, parts->main, windowSystem}) {
            if (button == parts->main && percent == -1)
                continue;
            OnDevicePage = page;
            dialog->readyForm();
            if (percent != -1) {
                dialog->busyForm();
                emit PostMsg::instance()->SigProgress(qAbs(percent), 0);
                emit PostMsg::instance()->SigProgress(0, percent == 100 ? 2 : 1);
            }
            dialog->show();
            QVERIFY(UpgradeDialogOpen);
            QSignalSpy told(PostMsg::instance(), &PostMsg::SigSetNewVer);
            QSignalSpy gone(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
            if (button) {
                button->click();
            } else {
                QCloseEvent event;
                QSpontaneKeyEvent::setSpontaneous(&event);
                qApp->notify(dialog.get(), &event); // sendEvent() would take the mark away
                QVERIFY(event.isAccepted());
                dialog->hide(); // as the window system's word does
            }
            QVERIFY(dialog->isHidden() && !UpgradeDialogOpen);
            QCOMPARE(told.count(), newVersion);
            QCOMPARE(gone.count(), left);
        }
    }

    // The offer of an upgrade is about the device page's device.
    void leavingTheDevicePageClosesTheOffer()
    {
        const auto leavePage = [this] {
            emit PostMsg::instance()->SigMainPageChange();
            return dialog->isHidden();
        };
        const QWidget place;
        dialog->readyForm();
        dialog->showForRepair(&place);
        QVERIFY(!leavePage());
        dialog->close();
        dialog->showOver(&place);
        QVERIFY(leavePage());
        dialog->showOver(&place);
        dialog->busyForm();
        QVERIFY(!leavePage());
        emit PostMsg::instance()->SigProgress(0, 1);
        QVERIFY(!leavePage()); // the failure is still to be read
    }

    // The desktop's inhibitor runs exactly as long as firmware is being written.
    void theMachineIsKeptAwakeWhileItWrites()
    {
        const QTemporaryDir folder;
        const QString told = folder.filePath(QStringLiteral("told"));
        QFile script(folder.filePath(QStringLiteral("systemd-inhibit")));
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\necho \"$@\" > '" + told.toLocal8Bit() + "'\ncat\necho released >> '" +
                     told.toLocal8Bit() + "'\n");
        script.close();
        QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", folder.path().toLocal8Bit() + ':' + path);
        const auto lines = [&told] {
            QFile file(told);
            return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        };
        dialog->readyForm();
        QVERIFY(!QFile::exists(told));
        dialog->busyForm();
        QTRY_VERIFY(lines().endsWith(QLatin1String(" cat\n")));
        QVERIFY(lines().contains(QLatin1String("--what=shutdown:sleep:idle")));
        QVERIFY(lines().contains(QLatin1String("--mode=block")));
        QVERIFY(lines().contains(fixture::told(UpgradeText::WarnUpdate)));
        emit PostMsg::instance()->SigProgress(0, 1);
        QTRY_VERIFY(lines().endsWith(QLatin1String("released\n")));
        qputenv("PATH", path);
    }

    void closingIsIgnoredWhileItWrites()
    {
        dialog->readyForm();
        dialog->show();
        RepairBusy = true;
        dialog->on_CloseButton_clicked();
        dialog->on_NewHong_clicked();
        dialog->close();
        QVERIFY(dialog->isVisible());
        RepairBusy = false;
        dialog->on_CloseButton_clicked();
        QVERIFY(dialog->isHidden());
    }

    void theMainButton()
    {
        QSignalSpy started(PostMsg::instance(), &PostMsg::SigUpdateStart);
        OnDevicePage = 1;
        dialog->readyForm();
        dialog->show();
        QTest::keyClick(dialog.get(), Qt::Key_Return);
        QCOMPARE(started.count(), 1);
        QVERIFY(dialog->isVisible());
        dialog->noticeForm(UpgradeText::NoUSB);
        QTest::keyClick(dialog.get(), Qt::Key_Enter);
        QCOMPARE(started.count(), 1);
        QVERIFY(dialog->isHidden());
        dialog->readyForm();
        dialog->show();
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
        QVERIFY(dialog->isHidden());
        QCOMPARE(started.count(), 1);
    }

    // ---- Repair

    void aRepair_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QString>("files");
        QTest::addColumn<QStringList>("records"); // at each start
        QTest::addColumn<QString>("bar");
        QTest::newRow("of the receiver")
            << ReceiverFailed << "receiver" << QStringList{ReceiverFailed} << "40 100";
        QTest::newRow("of the receiver, then the mouse")
            << ReceiverFailed << "receiver mouse" << QStringList{ReceiverFailed, MouseFailed}
            << "20 50 70 100";
        QTest::newRow("of the mouse") << MouseFailed << "mouse" << QStringList{MouseFailed} << "40 100";
        QTest::newRow("of the mouse, behind its receiver")
            << MouseFailed << "receiver mouse" << QStringList{MouseFailed, MouseFailed} << "20 50 70 100";
    }
    void aRepair()
    {
        QFETCH(QString, record);
        QFETCH(QString, files);
        QFETCH(QStringList, records);
        QFETCH(QString, bar);
        for (const char *name : {"receiver", "mouse"})
            if (!files.split(' ').contains(name))
                QFile::remove(firmware::folder() + name + ".bin");
        QStringList seen;
        fake.setHook([&seen](const std::string &name) {
            if (name == "UsbUpgrade_Start")
                seen << UpdateFailRecord::storedText();
        });
        const bool mouseFailed = record == QLatin1String(MouseFailed);
        QSignalSpy button(PostMsg::instance(), &PostMsg::SigUpDateButton);
        openRepair(record, {mouseFailed ? receiverInfo() : mouseInfo()});
        QVERIFY(parts->says(UpgradeText::ReadyUpdate) && parts->offersStart());
        const QString offer = parts->offer->text();
        QCOMPARE(offer.contains(QStringLiteral("Receiver firmware: v1.03")), files.contains("receiver"));
        QCOMPARE(offer.contains(QStringLiteral("Mouse firmware: v1.06")), files.contains("mouse"));
        parts->main->click();
        QVERIFY(dialog->isBusy() && !NotUpgrading && parts->offer->isHidden());
        for (int stage = 1; stage <= records.size(); ++stage) {
            QTRY_COMPARE(starts(), stage);
            const bool isMouse = files == QLatin1String("mouse") || stage == 2;
            const char *name = isMouse ? "MouseVersion" : "DongleVersion";
            QTRY_COMPARE(parts->percent->text(), targetProgress(name, 0));
            progress(40);
            QTRY_VERIFY(RepairBusy);
            succeed();
        }
        QTRY_VERIFY(!dialog->isBusy());
        fake.setHook({});
        QVERIFY(isOver() && !RepairBusy);
        QVERIFY(parts->says(UpgradeText::DialogUpgradeSuccess) && parts->hasWayOut());
        QCOMPARE(seen, records);
        QCOMPARE(UpdateFailRecord::storedText(), QString());
        QStringList shown;
        for (const int value : qAsConst(this->bar))
            shown << QString::number(value);
        QCOMPARE(shown.join(' '), bar);
        QCOMPARE(button.last().at(0).toBool(), true);
        QVERIFY(fake.count("UsbFinderC_SetDongleIDToMouse") > 0);
    }

    void aFailedRepair_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<int>("stage");
        QTest::addColumn<QString>("written");
        QTest::newRow("of the receiver") << ReceiverFailed << 1 << ReceiverFailed;
        QTest::newRow("of the mouse behind the receiver") << ReceiverFailed << 2 << MouseFailed;
        QTest::newRow("of the receiver in front of the mouse") << MouseFailed << 1 << ReceiverFailed;
        QTest::newRow("of the mouse") << MouseFailed << 2 << MouseFailed;
    }
    void aFailedRepair()
    {
        QFETCH(QString, record);
        QFETCH(int, stage);
        QFETCH(QString, written);
        QFile log(dataRoot() + QStringLiteral("/Exception/UpDateLog.txt"));
        QVERIFY(log.open(QIODevice::WriteOnly) && log.write("old") == 3);
        log.close();
        const bool mouseFailed = record == QLatin1String(MouseFailed);
        openRepair(record, {mouseFailed ? receiverInfo() : mouseInfo()});
        QSignalSpy button(PostMsg::instance(), &PostMsg::SigUpDateButton);
        parts->main->click();
        for (int each = 1; each <= stage; ++each) {
            QTRY_COMPARE(starts(), each);
            if (each < stage)
                succeed();
            else
                fail();
        }
        QTRY_VERIFY(!dialog->isBusy());
        QVERIFY(isOver() && parts->says(UpgradeText::DialogUpgradeFail) && parts->hasWayOut());
        QCOMPARE(UpdateFailRecord::storedText(), written);
        QCOMPARE(button.last().at(0).toBool(), false);
        QCOMPARE(starts(), stage);
        QCOMPARE(QFileInfo(log).size(), 0);
    }

    // Both lie in their boot loaders, and the record names the receiver: at no moment is there no record.
    void theRecordStandsBetweenTheStages()
    {
        openRepair(ReceiverFailed, {});
        QVERIFY(parts->says(UpgradeText::ReadyUpdate));
        parts->main->click();
        QTRY_COMPARE(starts(), 1);
        fake.setDevices({device(ReceiverPath, 6, Receiver8K)});
        QStringList seen;
        fake.setHook([&seen](const std::string &) { seen << UpdateFailRecord::storedText(); });
        succeed();
        QTRY_COMPARE(starts(), 2);
        fake.setHook({});
        QVERIFY(seen.size() > 2); // questions were asked between the stages
        QVERIFY2(!seen.contains(QString()), qPrintable(seen.join(' ')));
        succeed();
        QTRY_VERIFY(!dialog->isBusy());
        QVERIFY(parts->says(UpgradeText::DialogUpgradeSuccess));
        QCOMPARE(UpdateFailRecord::storedTexts(), QStringList());
    }

    // The device that failed last is not at hand; the one before is repaired, and the other one goes on
    // waiting.
    void whatIsAtHandIsRepaired()
    {
        const QString absent = QStringLiteral("210,8,18,7");
        QFile::remove(firmware::folder() + QStringLiteral("mouse.bin"));
        UpdateFailRecord::storeTexts({absent, ReceiverFailed});
        fake.setUpgrade(1, true);
        dialog->setAttached({mouseInfo()});
        dialog->show();
        check();
        QVERIFY(parts->says(UpgradeText::ReadyUpdate));
        QSignalSpy button(PostMsg::instance(), &PostMsg::SigUpDateButton);
        parts->main->click();
        QTRY_COMPARE(starts(), 1);
        QCOMPARE(UpdateFailRecord::storedTexts(), (QStringList{ReceiverFailed, absent}));
        succeed();
        QTRY_VERIFY(!dialog->isBusy());
        QCOMPARE(UpdateFailRecord::storedTexts(), QStringList(absent));
        QCOMPARE(button.last().at(0).toBool(), false); // the other one still waits
    }

    void aMouseThatIsNotThereIsLeftOut()
    {
        openRepair(ReceiverFailed, {mouseInfo()});
        parts->main->click();
        QTRY_COMPARE(starts(), 1);
        fake.setDevices({device(ReceiverPath, 6, Receiver8K)});
        fake.setUpgrade(0, true);
        succeed();
        QTRY_VERIFY(!dialog->isBusy());
        QVERIFY(parts->says(UpgradeText::DialogUpgradeSuccess));
        QCOMPARE(starts(), 1);
        QCOMPARE(UpdateFailRecord::storedText(), QString());
    }

    void theFileGoneBehindTheCheckIsTold()
    {
        openRepair(ReceiverFailed, {mouseInfo()});
        firmware::clear();
        parts->main->click();
        QVERIFY(parts->says(UpgradeText::ErrorFile) && parts->hasWayOut());
        QVERIFY(isOver());
        QCOMPARE(starts(), 0);
        QCOMPARE(UpdateFailRecord::storedText(), QString(ReceiverFailed));
    }

    // The dialog follows what is plugged in.
    void theCheckRunsAgain()
    {
        openRepair(MouseFailed, {}, 0);
        QVERIFY(parts->says(UpgradeText::NoRecieve) && parts->hasWayOut());
        openRepair(ReceiverFailed, {}, 0);
        QVERIFY(parts->says(UpgradeText::NoUSB));
        fake.setUpgrade(1, true);
        dialog->setAttached({mouseInfo()});
        check();
        QVERIFY(parts->says(UpgradeText::ReadyUpdate) && parts->offersStart());
    }

    void theMainThreadAsksNoDevice()
    {
        const MainThreadQuestions questions;
        openRepair(MouseFailed, {receiverInfo()});
        parts->main->click();
        for (int stage = 1; stage <= 2; ++stage) {
            QTRY_COMPARE(starts(), stage);
            succeed();
        }
        QTRY_VERIFY(!dialog->isBusy());
        QVERIFY(parts->says(UpgradeText::DialogUpgradeSuccess) && questions.none());
    }

    // The rescan was told before the dialog was closed.
    void aClosedDialogAsksNoDevice()
    {
        UpdateFailRecord::store(ReceiverFailed);
        fake.setUpgrade(1, true);
        dialog->setAttached({mouseInfo()});
        emit PostMsg::instance()->SigRepairCheckUpdate();
        QVERIFY(!parts->says(UpgradeText::UpgradeAsking));
        dialog->show();
        check();
        QVERIFY(parts->says(UpgradeText::ReadyUpdate));
    }

    // What is plugged in meanwhile is asked anew; the older answer is nobody's.
    void theNewestCheckCounts()
    {
        UpdateFailRecord::store(ReceiverFailed);
        fake.setUpgrade(1, true);
        SlowBootLoaders slow;
        dialog->setAttached({mouseInfo()});
        dialog->show();
        emit PostMsg::instance()->SigRepairCheckUpdate();
        QVERIFY(parts->says(UpgradeText::UpgradeAsking) && !parts->main->isEnabled());
        QCOMPARE(dialog->focusWidget(), parts->cancel);
        dialog->setAttached({mouseInfo(), mouseInfo()});
        emit PostMsg::instance()->SigRepairCheckUpdate();
        slow.waitForAnswers(2);
        QTRY_VERIFY(parts->says(UpgradeText::MultiMouse) && parts->hasWayOut());
        // Closed before its answer, it offers nothing.
        dialog->setAttached({mouseInfo()});
        emit PostMsg::instance()->SigRepairCheckUpdate();
        dialog->close();
        slow.waitForAnswers(3);
        QVERIFY(!parts->says(UpgradeText::ReadyUpdate));
    }

    // Somebody is about to press what has the focus when a device is plugged in.
    void plugsLeaveTheFocus_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"NewHong_2", "NewHong", "CloseButton"})
            QTest::newRow(name) << name;
    }
    void plugsLeaveTheFocus()
    {
        QFETCH(QString, name);
        const auto hasFocus = [this](const QString &button) {
            return dialog->focusWidget() && dialog->focusWidget()->objectName() == button;
        };
        openRepair(ReceiverFailed, {mouseInfo()});
        QVERIFY(hasFocus(QStringLiteral("NewHong_2")));
        dialog->findChild<QWidget *>(name)->setFocus();
        for (const bool ready : {false, true}) {
            dialog->setAttached(std::vector<DeviceAllInfo>(ready ? 1 : 2, mouseInfo()));
            emit PostMsg::instance()->SigRepairCheckUpdate();
            emit PostMsg::instance()->SigRepairCheckUpdate(); // while the devices are asked
            QTRY_VERIFY(parts->says(ready ? UpgradeText::ReadyUpdate : UpgradeText::MultiMouse));
            QVERIFY2(hasFocus(name), qPrintable(dialog->focusWidget()->objectName()));
        }
        parts->main->click();
        QTRY_COMPARE(starts(), 1);
        fail();
        QTRY_VERIFY(!dialog->isBusy());
        QVERIFY(hasFocus(QStringLiteral("NewHong_2"))); // nothing could be pressed meanwhile
        dialog->findChild<QWidget *>(name)->setFocus();
        parts->close->click();
        openRepair(ReceiverFailed, {mouseInfo()});
        QVERIFY(hasFocus(QStringLiteral("NewHong_2")));
    }

    // It was on its way when the end was told, and a full bar would lead out as a success does.
    void aLatePercentLeavesTheResult()
    {
        dialog->busyForm();
        emit PostMsg::instance()->SigProgress(20, 0);
        emit PostMsg::instance()->SigProgress(0, 1);
        emit PostMsg::instance()->SigProgress(100, 0);
        emit PostMsg::instance()->SigAutoRepairProgress(100);
        QCOMPARE(parts->bar->value(), 20);
        dialog->busyForm();
        emit PostMsg::instance()->SigAutoRepairProgress(30);
        QCOMPARE(parts->bar->value(), 30);
    }

    void aRunningRepairIsNotCheckedAgain()
    {
        QFile::remove(firmware::folder() + QStringLiteral("mouse.bin"));
        openRepair(ReceiverFailed, {mouseInfo()});
        parts->main->click();
        dialog->setAttached({});
        emit PostMsg::instance()->SigRepairCheckUpdate(); // before the first answer
        QVERIFY(parts->says(UpgradeText::WarnUpdate) && dialog->isBusy());
        QTRY_COMPARE(starts(), 1);
        succeed();
        QTRY_VERIFY(!dialog->isBusy());
        emit PostMsg::instance()->SigRepairCheckUpdate(); // of the device that has come back
        QVERIFY(parts->says(UpgradeText::DialogUpgradeSuccess));
    }

    // It was closed before a start. What the dialog offers next, over another page, is no repair.
    void aCheckEndsWithTheDialog()
    {
        openRepair(ReceiverFailed, {mouseInfo()});
        QVERIFY(parts->says(UpgradeText::ReadyUpdate));
        parts->cancel->click();
        QVERIFY(dialog->isHidden());
        dialog->readyForm();
        dialog->show();
        parts->main->click();
        QTRY_VERIFY(!dialog->isBusy());
        QVERIFY(parts->says(UpgradeText::ErrorFile) && parts->hasWayOut());
        QCOMPARE(starts(), 0);
        openRepair(ReceiverFailed, {mouseInfo()});
        parts->main->click();
        QTRY_COMPARE(starts(), 1);
        fail();
        QTRY_VERIFY(!dialog->isBusy());
    }

    // Nothing is left to repair unless another one waits.
    void aSenselessRecordIsRemoved_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<QStringList>("others");
        QTest::newRow("too few fields") << "211,8,18" << QStringList();
        QTest::newRow("a model that the catalogue has lost") << "210,8,18,99" << QStringList();
        QTest::newRow("beside one that waits") << "211,8,18" << QStringList("210,8,18,7");
    }
    void aSenselessRecordIsRemoved()
    {
        QFETCH(QString, record);
        QFETCH(QStringList, others);
        QSignalSpy button(PostMsg::instance(), &PostMsg::SigUpDateButton);
        UpdateFailRecord::storeTexts(QStringList(record) + others);
        dialog->setAttached({mouseInfo()});
        dialog->show();
        check();
        if (others.isEmpty())
            QVERIFY(parts->says(UpgradeText::Error1));
        QVERIFY(parts->hasWayOut());
        QCOMPARE(UpdateFailRecord::storedTexts(), others);
        QCOMPARE(button.count(), 1);
        QCOMPARE(button.at(0).at(0).toBool(), others.isEmpty());
        check(); // of a record that makes sense, or of none
        QCOMPARE(button.count(), others.isEmpty() ? 2 : 1);
    }
};

TEST_CLASS(tst_UpDateRepair, fixture::UpgradeLooks)
#include "tst_updaterepair.moc"
