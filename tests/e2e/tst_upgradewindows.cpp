// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Upgrade and repair through the real windows: what a person sees and clicks, from the tile to the result.
#include "service/UpDateRepair.h"
#include "service/UpdateFailRecord.h"
#include "service/UpgradeState.h"
#include "tests/e2e/Program.h"
#include "tests/support/FirmwareFolder.h"
#include "tests/support/Watchdog.h"

#include <QCloseEvent>
#include <QProgressBar>
#include <QSessionManager>
#include <QTimer>

namespace
{

// The mouse on its cable beside its receiver.
const char Pair[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                    "receiver r1 class 8k mouse m1 version 1.02 address a10001\n"
                    "boottimes 1 2\nplug m1\nplug r1\n";
const char ReceiverAlone[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                             "receiver r1 class 8k mouse m1 version 1.02 address a10001\n"
                             "boottimes 1 2\nplug r1\n";
const char MouseBroken[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                           "receiver r1 class 8k mouse m1 version 1.02 address a10001\n"
                           "boottimes 1 2\nplug m1\nplug r1\nboot m1 broken\n";
const char NothingPlugged[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                              "receiver r1 class 8k mouse m1 version 1.02 address a10001\n"
                              "boottimes 1 2\n";

constexpr char MouseFailed[] = "210,8,18,6";
constexpr char MainButton[] = "NewHong_2";

bool says(UpgradeText text)
{
    auto *const dialog = windows::shown<UpDateRepair>();
    return dialog && dialog->findChild<QLabel *>(QStringLiteral("ToolText_2"))->text() ==
                         upgradeText(text, LanguageIndex);
}
bool isBusy() { return UpDateRepair::instance()->isBusy(); }
bool isClosed() { return !windows::shown<UpDateRepair>(); }

class Upgraded : public Program
{
public:
    explicit Upgraded(const char *scenario) : Program(scenario)
    {
        for (const char *name : {"DongleCheckTimer", "MouseCheckTimer"})
            for (auto *timer : window->findChildren<QTimer *>(QLatin1String(name)))
                timer->setInterval(5);
    }
    bool runs(const char *id, const char *version)
    {
        const QString state = QString::fromStdString(bus.emulated.order("state"));
        for (const QString &line : state.split(QLatin1Char('\n')))
            if (line.startsWith(QStringLiteral("device=%1 ").arg(QLatin1String(id))))
                return line.contains(QStringLiteral(" boot=0 version=%1 ").arg(QLatin1String(version)));
        return false;
    }
};

} // namespace

class tst_upgradewindows : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        firmware::clear();
        firmware::write(QStringLiteral("mouse.bin"), firmware::Mouse);
        firmware::write(QStringLiteral("receiver.bin"), firmware::Receiver);
        UpdateFailRecord::remove();
    }
    void cleanup() { firmware::clear(); }

    // The offer opens with the page of the mouse on its cable.
    void bothAreUpgraded()
    {
        Upgraded program(Pair);
        Watchdog watchdog;
        program.open(QStringLiteral("m1"));
        program.expect("the offer", [] { return says(UpgradeText::ReadyUpdate); });
        program.click(MainButton);
        program.expect("busy", isBusy);
        program.expect("the result", [] { return says(UpgradeText::DialogUpgradeSuccess); });
        program.expect("both run the new versions",
                       [&] { return program.runs("r1", "1.03") && program.runs("m1", "1.06"); });
        program.expect("no record", [] { return UpdateFailRecord::storedText().isEmpty(); });
        program.click(MainButton);
        program.expect("closed", isClosed);
        const auto reads = [](const char *label, const char *text) {
            auto *const shown = windows::visible<QLabel>(QLatin1String(label));
            return shown && shown->text() == QLatin1String(text);
        };
        program.expect("the page of the mouse stays", [] { return OnDevicePage == 1; });
        program.waitForPage();
        program.click("FormSetting");
        program.expect("the new versions",
                       [&] { return reads("label_5", "v1.03") && reads("label_7", "v1.06"); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY2(!watchdog.barked(), qPrintable(QString::number(watchdog.longestSilenceMs())));
    }

    // Opened at the receiver: the dialog asks for the cable, and follows when it is plugged in.
    void theDialogFollowsTheCable()
    {
        Upgraded program(ReceiverAlone);
        program.open(QStringLiteral("r1"));
        program.expect("the cable is missing", [] { return says(UpgradeText::NoUSB); });
        program.order("plug m1");
        program.expect("ready", [] { return says(UpgradeText::ReadyUpdate); });
        // Its page is left with the cable, and the offer with its page.
        program.order("unplug m1");
        program.expect("closed", [] { return isClosed() && OnDevicePage == 0; });
        QCOMPARE(program.script.run(), QString());
    }

    void nothingClosesTheProgramWhileItWrites()
    {
        Upgraded program(Pair);
        bool accepted = true;
        program.order("erase r1 400");
        program.open(QStringLiteral("m1"));
        program.expect("the offer", [] { return says(UpgradeText::ReadyUpdate); });
        program.click(MainButton);
        program.expect("busy", isBusy);
        program.script.step("tries to close", always, [&] {
            QCloseEvent close;
            QCoreApplication::sendEvent(program.window.get(), &close);
            accepted = close.isAccepted();
            program.window->slotActionExitApp();
            program.window->SlotChangeSize(1);
            UpDateRepair::instance()->close();
        });
        program.script.step("hides and ends the session", always, [&] {
            program.window->hide();
            auto *const session = qGuiApp->findChild<QSessionManager *>();
            QVERIFY(session);
            emit qGuiApp->commitDataRequest(*session);
        });
        program.expect("still there", [&] {
            return program.window->isVisible() && says(UpgradeText::WarnUpdate) && isBusy();
        });
        program.expect("the result", [] { return says(UpgradeText::DialogUpgradeSuccess); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(!accepted);
    }

    void aFailureLeadsToTheRepair()
    {
        Upgraded program(Pair);
        program.open(QStringLiteral("m1"));
        program.expect("the offer", [] { return says(UpgradeText::ReadyUpdate); });
        program.order("fault m1 refuse always command bootdata");
        program.click(MainButton);
        program.expect("the failure", [] { return says(UpgradeText::DialogUpgradeFail); });
        program.order("fault m1 clear");
        program.click(MainButton);
        program.expect("closed", isClosed);
        program.click("Repair");
        program.expect("ready", [] { return says(UpgradeText::ReadyUpdate); });
        program.click(MainButton);
        program.expect("repaired", [] { return says(UpgradeText::DialogUpgradeSuccess); });
        program.click(MainButton);
        program.expect("closed again", isClosed);
        program.expect("the mouse is back", [&] { return program.runs("m1", "1.06"); });
        program.expect("no repair is offered", [] { return !windows::visible(QStringLiteral("Repair")); });
        QCOMPARE(program.script.run(), QString());
    }

    void aRepairAfterARestart()
    {
        UpdateFailRecord::store(QLatin1String(MouseFailed));
        Upgraded program(MouseBroken);
        program.click("Repair");
        program.expect("ready", [] { return says(UpgradeText::ReadyUpdate); });
        program.click(MainButton);
        program.expect("repaired", [] { return says(UpgradeText::DialogUpgradeSuccess); });
        program.expect("the mouse is back", [&] { return program.runs("m1", "1.06"); });
        program.click(MainButton);
        program.expect("closed", isClosed);
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(UpdateFailRecord::storedText(), QString());
    }

    void theRepairFollowsWhatIsPluggedIn()
    {
        UpdateFailRecord::store(QLatin1String(MouseFailed));
        Upgraded program(NothingPlugged);
        program.click("Repair");
        program.expect("the receiver is missing", [] { return says(UpgradeText::NoRecieve); });
        program.order("plug r1");
        program.expect("no mouse waits", [] { return says(UpgradeText::NotDevice); });
        program.order("plug m1"); // as itself
        program.expect("ready", [] { return says(UpgradeText::ReadyUpdate); });
        program.order("unplug r1");
        program.expect("missing again", [] { return says(UpgradeText::NoRecieve); });
        QCOMPARE(program.script.run(), QString());
    }
};

TEST_CLASS(tst_upgradewindows, ProgramSetUp)
#include "tst_upgradewindows.moc"
