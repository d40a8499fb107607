// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the binding page does to the whole device: the choice of its profile, reset, import and export.
#include "presentation/Notices.h"
#include "tests/support/TestMain.h"
#include "tests/widget/binding/ButtonPage.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <cstring>

class tst_ButtonDevice : public ButtonPageTest
{
    Q_OBJECT

private:
    QComboBox *profiles() { return page().form.findChild<QComboBox *>("ProjectChoose"); }
    static void tellProfiles(int total, int selected, bool enabled)
    {
        fixture::emitOnOtherThread(
            [=] { emit PostMsg::instance()->SigUpDataConfigUI(total, selected, enabled); });
    }
    QStringList profileNames()
    {
        QStringList names;
        for (int i = 0; i < profiles()->count(); ++i)
            names << profiles()->itemText(i);
        return names;
    }

private slots:
    void init()
    {
        begin();
        page().show(ButtonPage::plainRecord());
    }
    void cleanup() { end(); }

    // ---- Another device

    void anotherDeviceBeginsWithTheDefaults()
    {
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[1] = {6, 1, 1};
        nameMacro(&map.MacroBlocks[1], "Reload");
        page().show(map);
        tellProfiles(3, 1, true);
        QCOMPARE(page().button("RightKey")->text(), "Macro: Reload");
        QVERIFY(page().button("Button12")->isVisible() && page().button("Number12")->isVisible());

        emit PostMsg::instance()->SigSelectMouseInfo(fixture::info("other", Receiver8K, 1)); // six buttons
        const char *const plain[] = {"Left button",    "Right button", "Middle button",
                                     "Forward button", "Back button",  "Next DPI stage"};
        for (int row = 0; row < 12; ++row) {
            const Row &each = ButtonPageRows[row];
            QCOMPARE(page().button(each.caption)->isVisible(), each.button < 6);
            QCOMPARE(page().button(each.marker)->isVisible(), each.button < 6);
            if (each.button < 6)
                QCOMPARE(page().button(each.caption)->text(), plain[row]);
        }
        QCOMPARE(profileNames(), QStringList("Profile 1"));
        QVERIFY(!profiles()->isEnabled());
        QVERIFY(!ButtonPageBusy);
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    void theSameDeviceKeepsItsRows()
    {
        emit PostMsg::instance()->SigSelectMouseInfo(fixture::info("dev", Receiver8K));
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[1] = {1, 4, 0};
        page().show(map);
        const QStringList before = page().captions();
        emit PostMsg::instance()->SigSelectMouseInfo(fixture::info("dev", Receiver8K));
        QCOMPARE(page().captions(), before);
        DeviceAllInfo another = fixture::info("dev", Receiver8K); // another mouse behind the same receiver
        another.Mid = 9;
        emit PostMsg::instance()->SigSelectMouseInfo(another);
        QCOMPARE(page().button("RightKey")->text(), "Right button");
    }

    // ---- Profiles

    void profilesAreNamedByTheirNumber()
    {
        QSignalSpy name(PostMsg::instance(), &PostMsg::SigAddConfig);
        tellProfiles(3, 1, true);
        QCOMPARE(profileNames(), QStringList({"Profile 1", "Profile 2", "Profile 3"}));
        QCOMPARE(profiles()->currentIndex(), 1);
        QVERIFY(profiles()->isEnabled());
        QCOMPARE(name.count(), 1);
        QCOMPARE(name[0][0].toString(), "Profile 2");
        tellProfiles(0, 5, false);
        QCOMPARE(profileNames(), QStringList("Profile 1"));
        QVERIFY(!profiles()->isEnabled());
        QCOMPARE(FakeHidUsb::instance().count("UsbServer_SetCurrentConfig"), 0);
    }

    void aChosenProfileGoesToTheMouse()
    {
        tellProfiles(4, 0, true);
        QSignalSpy name(PostMsg::instance(), &PostMsg::SigAddConfig);
        profiles()->setCurrentIndex(3);
        page().form.on_ProjectChoose_activated(3);
        QCOMPARE(FakeHidUsb::instance().count("UsbServer_SetCurrentConfig"), 1);
        QCOMPARE(name.count(), 1);
        QCOMPARE(name[0][0].toString(), "Profile 4");
    }

    void aSilentMouseKeepsItsProfile()
    {
        tellProfiles(4, 2, true);
        FakeHidUsb::instance().setOnline("dev", false);
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        profiles()->setCurrentIndex(0);
        page().form.on_ProjectChoose_activated(0);
        QCOMPARE(profiles()->currentIndex(), 2);
        QCOMPARE(notice.count(), 1);
        QCOMPARE(FakeHidUsb::instance().count("UsbServer_SetCurrentConfig"), 0);
    }

    void duringARefreshNobodyAsksWhetherTheMouseAnswers()
    {
        tellProfiles(4, 2, true);
        FakeHidUsb::instance().setOnline("dev", false);
        ButtonPageBusy = true;
        page().form.on_ProjectChoose_activated(1);
        QVERIFY(ButtonPageBusy);
        ButtonPageBusy = false;
        QCOMPARE(FakeHidUsb::instance().count("UsbServer_SetCurrentConfig"), 1);
    }

    void anotherLanguageKeepsTheProfile()
    {
        tellProfiles(4, 2, true);
        {
            const fixture::WithoutTexts bare;
            page().setLanguage(0);
            QCOMPARE(profileNames(), QStringList({"1", "2", "3", "4"}));
            QCOMPARE(profiles()->currentIndex(), 2);
        }
        page().setLanguage(0);
        QCOMPARE(profiles()->currentText(), "Profile 3");
    }

    // ---- Reset and import, whose work is tested where it is done

    void aResetIsAskedForBesideTheMiddle()
    {
        QPoint stood, wanted;
        bool busy = true;
        const bool armed = WorkerArmed;
        fixture::whenModal<ContainReset>([&](ContainReset *question) {
            stood = question->pos();
            wanted = page().middleFor(question, {-75, -65});
            busy = SettingsBusy;
            question->on_Cancel_clicked();
        });
        page().click("Reset");
        QCOMPARE(stood, wanted);
        QVERIFY(!busy && !SettingsBusy);
        QCOMPARE(bool(WorkerArmed), armed);
        QCOMPARE(FakeHidUsb::instance().count("UsbServer_SetClearSetting"), 0);
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    void withoutTheMouseNothingIsAsked_data()
    {
        QTest::addColumn<QString>("button");
        for (const char *button : {"Reset", "ImportData"})
            QTest::newRow(button) << button;
    }
    void withoutTheMouseNothingIsAsked()
    {
        QFETCH(QString, button);
        FakeHidUsb::instance().setOnline("dev", false);
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        page().click(button); // would not return from a question
        QCOMPARE(notice.count(), 1);
        QCOMPARE(notice[0][0].toInt(), 0);
        QVERIFY(!SettingsBusy);
    }

    void anImportWithoutAFileIsNone()
    {
        bool busy = false;
        QString offered;
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            busy = SettingsBusy;
            offered = dialog->windowTitle() + ' ' + dialog->nameFilters().join(' ');
            dialog->reject();
        });
        page().click("ImportData");
        QCOMPARE(offered, "SelectFile File(*.bin)");
        QVERIFY(busy && !SettingsBusy);
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    // ---- Export

    void anExportIsTheRecordAsItStands()
    {
        const QTemporaryDir folder;
        FakeHidUsb::instance().setOnline("dev", false); // needs no mouse
        QString title;
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            title = dialog->windowTitle() + ' ' + dialog->nameFilters().join(' ');
            dialog->setDirectory(folder.path());
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText("mine");
            QMetaObject::invokeMethod(dialog, "accept");
        });
        page().click("OutputData");
        QCOMPARE(title, "FileSave File(*.bin)");
        QFile file(folder.filePath("mine.bin"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QCOMPARE(bytes.size(), 10484);
        QCOMPARE(bytes.mid(4, 12), QByteArray("Taigri").leftJustified(12, '\0'));
        QCOMPARE(bytes.mid(20, 12), QByteArray("3395").leftJustified(12, '\0'));
        const FlashDataMap record = DeviceRecord::copy();
        QVERIFY(std::memcmp(bytes.constData() + 36, &record, sizeof record) == 0);
    }

    void aDismissedExportWritesNothing()
    {
        const QTemporaryDir folder;
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            dialog->setDirectory(folder.path());
            dialog->reject();
        });
        page().click("OutputData");
        QVERIFY(QDir(folder.path()).isEmpty());
    }
};

TEST_CLASS(tst_ButtonDevice, ButtonPageSetUp)

#include "tst_buttondevice.moc"
