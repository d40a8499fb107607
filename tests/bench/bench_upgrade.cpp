// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Upgrades both devices of a pair through the real windows, repairs a mouse whose upgrade failed, and opens
// the repair on a boot loader that is silent, on an emulated bus whose devices take a millisecond for each
// report. Prints the longest time that the main thread was busy in each, the times against the reports, and
// how often the main thread wakes up while the settings page is at rest.
#include "service/UpDateRepair.h"
#include "service/UpdateFailRecord.h"
#include "tests/bench/TimedApplication.h"
#include "tests/e2e/Program.h"
#include "tests/support/FirmwareFolder.h"

#include <QAbstractButton>
#include <cstdio>

namespace
{

const char Pair[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                    "receiver r1 class 8k mouse m1 version 1.02 address a10001\n"
                    "boottimes 90 90\nplug m1\nplug r1\npace on\n";
constexpr std::size_t ImageBytes = 128 * 1024;
constexpr int RestMs = 10000;

double clockMs() { return TimedApplication::now(CLOCK_MONOTONIC); }

// How long an event held the main thread at most, since this was made.
class LongestEvent
{
public:
    LongestEvent() { TimedApplication::instance()->forget(); }
    void print(const char *what) const
    {
        const TimedApplication *const timed = TimedApplication::instance();
        std::printf("%-48s %6.1f ms, of which the thread ran %.1f ms\n", what, timed->longest,
                    timed->longestOwn);
    }
};

bool says(UpgradeText text)
{
    auto *const dialog = windows::shown<UpDateRepair>();
    return dialog && dialog->findChild<QLabel *>(QStringLiteral("ToolText_2"))->text() ==
                         upgradeText(text, LanguageIndex);
}

// Times that the main thread went to sleep.
long sleeps()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("voluntary_ctxt_switches:"))
            return line.mid(line.indexOf(':') + 1).trimmed().toLong();
    return 0;
}

void mustRun(Script &script)
{
    const QString missing = script.run(60000);
    if (!missing.isEmpty())
        qFatal("%s", qPrintable(missing));
}

void expectOffer(Program &program)
{
    program.expect("the offer", [] { return says(UpgradeText::ReadyUpdate); });
}

void upgrade(Program &program, UpgradeText result)
{
    program.click("NewHong_2");
    program.expect("the result", [result] { return says(result); });
    mustRun(program.script);
}

void leave(Program &program)
{
    program.click("NewHong_2");
    program.expect("closed", [] { return !windows::shown<UpDateRepair>(); });
}

void measureUpgrade()
{
    Program program(Pair);
    program.open(QStringLiteral("m1"));
    expectOffer(program);
    mustRun(program.script);
    const auto reports = [&program] {
        return program.bus.emulated.reportCount("r1") + program.bus.emulated.reportCount("m1");
    };
    const uint64_t reportsBefore = reports();
    const double start = clockMs();
    {
        const LongestEvent longest;
        upgrade(program, UpgradeText::DialogUpgradeSuccess);
        longest.print("an upgrade of both");
    }
    std::printf("%-48s %7.0f ms for %d reports\n", "", clockMs() - start, int(reports() - reportsBefore));
    leave(program);
    program.waitForPage();
    program.click("FormSetting");
    mustRun(program.script);
    QTest::qWait(6000); // the load that follows an upgrade, and what the click has set off
    const long before = sleeps();
    QEventLoop rest;
    QTimer::singleShot(RestMs, &rest, &QEventLoop::quit);
    rest.exec();
    std::printf("%-48s %6ld, one of them this program's\n", "wake-ups of the settings page in 10 s",
                sleeps() - before);
}

void measureRepair()
{
    Program program(Pair);
    program.open(QStringLiteral("m1"));
    expectOffer(program);
    program.order("fault m1 refuse always command bootdata");
    mustRun(program.script);
    {
        const LongestEvent longest;
        upgrade(program, UpgradeText::DialogUpgradeFail);
        longest.print("an upgrade that fails");
    }
    leave(program);
    program.order("fault m1 clear");
    mustRun(program.script);
    const LongestEvent longest;
    program.click("Repair");
    expectOffer(program);
    upgrade(program, UpgradeText::DialogUpgradeSuccess);
    longest.print("its repair");
    leave(program);
    mustRun(program.script);
}

void measureSilence()
{
    UpdateFailRecord::store(QStringLiteral("210,8,18,6"));
    Program program(Pair);
    program.order("boot m1 broken");
    program.order("fault m1 noreply always");
    program.expect("its tiles", [] { return windows::visible(QStringLiteral("Repair")) != nullptr; });
    mustRun(program.script);
    const LongestEvent longest;
    program.click("Repair");
    program.expect("asking", [] { return says(UpgradeText::UpgradeAsking); });
    program.expect("an answer", [] { return !says(UpgradeText::UpgradeAsking); });
    program.click("NewHong_2");
    program.expect("closed", [] { return !windows::shown<UpDateRepair>(); });
    mustRun(program.script);
    longest.print("a repair that asks a silent boot loader");
    UpdateFailRecord::remove();
}

} // namespace

int main(int argc, char **argv)
{
    const ProgramHome home;
    TimedApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    prepareApplication();
    firmware::write(QStringLiteral("mouse.bin"), firmware::image(firmware::Mouse.bytes(ImageBytes)));
    firmware::write(QStringLiteral("receiver.bin"), firmware::image(firmware::Receiver.bytes(ImageBytes)));
    measureUpgrade();
    measureRepair();
    measureSilence();
    return 0;
}
