// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The settings page on an emulated bus: what it shows of the attached devices, and what its controls start.
#include "catalogue/UserStore.h"
#include "device/WriteFamily.h"
#include "service/AutoStart.h"
#include "service/Match.h"
#include "service/UpDateRepair.h"
#include "tests/e2e/Program.h"
#include "tests/support/Watchdog.h"

#include <QComboBox>

namespace
{

const char BothLinks[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                         "receiver r1 class 8k mouse m1 version 1.02 address a10001\n"
                         "mouse m2 cid 18 mid 7 version 1.06 battery 10\n"
                         "plug m2\nplug r1\n";

template <typename Control = QWidget> Control *shownControl(const char *name)
{
    return windows::visible<Control>(QLatin1String(name));
}

QString shown(const char *label)
{
    const QLabel *const found = shownControl<QLabel>(label);
    return found ? found->text() : QString();
}

} // namespace

class tst_settingspage : public QObject
{
    Q_OBJECT

private:
    // A dialog that firmware in the folder has opened is closed: it is not what these tests are about.
    static void openPage(Program &program, const char *plug)
    {
        program.open(QLatin1String(plug));
        program.expect("no upgrade dialog", [] {
            if (UpDateRepair::instance()->isVisible())
                UpDateRepair::instance()->close();
            return !UpDateRepair::instance()->isVisible();
        });
        program.click("FormSetting");
        program.expect("page", [] { return shownControl("comboBox") != nullptr; });
    }

private slots:
    void init()
    {
        QDir(dataRoot() + QStringLiteral("/Device_Info")).removeRecursively();
        makeDataFolders();
    }

    void theVersionsOfWhatIsAttached()
    {
        Program program(BothLinks);
        Watchdog watchdog;
        openPage(program, "r1");
        program.expect("receiver and mouse",
                       [] { return shown("label_5") == "v1.02" && shown("label_7") == "v1.05"; });
        program.click("UpArrow");
        openPage(program, "m2");
        program.expect("the mouse on its cable", [] { return shown("label_7") == "v1.06"; });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(!watchdog.barked());
    }

    void aResetReachesTheMouse()
    {
        Program program;
        openPage(program, "r1");
        program.actUntil("an edit", "m1", edit,
                         [&] { return program.bus.record("m1").ReportRate == EditedRate; });
        program.clickUntil("Reset", "m1", isShown<ContainReset>);
        program.script.step("question", always, [] { answer<ContainReset>("OK"); });
        program.expect("wait", isShown<UpDataParam>);
        program.expect("done", [&] { return isGone<UpDataParam>() && program.agrees("m1") && quietState(); });
        program.expect("the page stays", [] { return shownControl("Reset") != nullptr; });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(program.bus.record("m1").ReportRate != EditedRate);
    }

    void aResetOfASilentMouseChangesNothing()
    {
        Program program;
        FlashDataMap before{};
        openPage(program, "r1");
        program.expect("all written", [&] { return program.agrees("m1"); });
        program.script.step("before", always, [&] { before = program.bus.record("m1"); });
        program.order("radio m1 off");
        program.expect("out of reach", [] { return !UsbFinderC_GetDeviceOnLine(CurrentDevicePath()); });
        program.script.step("reset", always, [] { shownControl<QAbstractButton>("Reset")->click(); });
        program.expect("notice", [] { return shows<MouseOffLine>(infoText("DialogOffline")); });
        program.script.step("answer", always, [] { answer<MouseOffLine>("NewHong"); });
        program.expect("answered", isGone<MouseOffLine>);
        QCOMPARE(program.script.run(), QString());
        QVERIFY(sameBytes(program.bus.record("m1"), before));
    }

    void theLanguageGoesBothWays()
    {
        Program program;
        const auto box = [&program](const char *page) {
            for (QWidget *each : program.window->findChildren<QWidget *>())
                if (qstrcmp(each->metaObject()->className(), page) == 0)
                    return each->findChild<QComboBox *>(QStringLiteral("comboBox"));
            return static_cast<QComboBox *>(nullptr);
        };
        QComboBox *const first = box("DialogChange");
        QComboBox *const second = box("FormSetting");
        QVERIFY(first && second && first != second);
        for (QComboBox *each : {first, second})
            each->addItem(QStringLiteral("Second"), 1);
        second->setCurrentIndex(1);
        emit second->activated(1);
        QCOMPARE(first->currentIndex(), 1);
        QCOMPARE(int(LanguageIndex), 1);
        QCOMPARE(UserStore::instance().ReadText("Language", "Language"), QString("1"));
        first->setCurrentIndex(0);
        emit first->activated(0);
        QCOMPARE(second->currentIndex(), 0);
        QCOMPARE(int(LanguageIndex), 0);
    }

    void theEntryForTheLogin()
    {
        const QTemporaryDir config;
        qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
        const QString path = config.filePath("autostart/morlen.desktop");
        {
            Program program;
            openPage(program, "r1");
            program.click("checkBox");
            program.expect("entry", [path] { return QFile::exists(path) && autostart::isWhole(); });
            QCOMPARE(program.script.run(), QString());
        }
        QVERIFY(QFile::remove(path));
        {
            Program program; // the next start finds it lost
            QVERIFY(autostart::isWhole());
            openPage(program, "r1");
            program.expect("checked", [] { return windows::isChecked("checkBox"); });
            program.click("checkBox");
            program.expect("removed", [path] { return !QFile::exists(path); });
            QCOMPARE(program.script.run(), QString());
        }
        Program program;
        QVERIFY(!QFile::exists(path));
        qunsetenv("XDG_CONFIG_HOME");
    }

    void pairingFromThePage()
    {
        Program program;
        Watchdog watchdog;
        openPage(program, "r1");
        program.click("pushButton_2");
        program.expect("dialog", [] { return windows::shown<Match>() != nullptr; });
        program.script.step("closed", always, [] { windows::shown<Match>()->reject(); });
        program.expect("gone", [] { return !windows::shown<Match>(); });
        // A connection that has not read the mouse yet answers an edit by a read.
        program.expect("the connection stands again", [&] {
            edit();
            return program.bus.record("m1").ReportRate == EditedRate && program.agrees("m1");
        });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(!watchdog.barked());
    }

    void theUpgradeFromThePage()
    {
        Program program;
        openPage(program, "r1");
        program.click("Receive_2");
        program.expect("dialog", [] { return UpDateRepair::instance()->isVisible(); });
        program.script.step("why not", always, [] {
            const auto *text = UpDateRepair::instance()->findChild<QLabel *>("ToolText_2");
            QCOMPARE(text->text(),
                     language::text(language::Section::home, "NoUSB", 0)); // no mouse on its cable
            UpDateRepair::instance()->close();
        });
        QCOMPARE(program.script.run(), QString());
    }

private:
    static constexpr uint8_t EditedRate = 8;
    static void edit() { SetReportRate(EditedRate); }
};

TEST_CLASS(tst_settingspage, ProgramSetUp)
#include "tst_settingspage.moc"
