// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Every fault at every packet of a load and of an edit. Whatever happens, the main thread goes on, the
// outcome is one of the stated ones, and a later healthy load is right. Run with the name of a fault as the
// data tag, each fault can have a process of its own.
#include "tests/e2e/CoreFixture.h"
#include "tests/support/ProductFolder.h"
#include "tests/support/TestMain.h"

namespace
{

const char Scenario[] = "mouse m cid 18 mid 6 version 1.05 battery 80\n"
                        "receiver r class 1k mouse m version 1.02 address a10001\n"
                        "plug r\n";

// What a single fault may come to.
enum Outcome {
    Heals,     // asked again, nobody notices
    MayBeLost, // the load or the edit is lost, quietly or with the mouse shown as away
};

struct FaultRow {
    const char *name;
    const char *order;
    Outcome outcome;
};
const FaultRow Faults[] = {
    {"noreply", "noreply", Heals}, {"late", "late 220", Heals},       {"doubled", "doubled", Heals},
    {"short", "short", Heals},     {"oversized", "oversized", Heals}, {"wrongseq", "wrongseq", Heals},
    {"flipbit", "flipbit", Heals}, {"refuse", "refuse", MayBeLost},   {"unplug", "unplug", MayBeLost},
    {"radio", "radio", MayBeLost},
};

void addFaults()
{
    QTest::addColumn<int>("fault");
    int index = 0;
    for (const FaultRow &row : Faults)
        QTest::newRow(row.name) << index++;
}

} // namespace

class tst_faults : public QObject
{
    Q_OBJECT

private:
    ProductFolder product{smallCatalogue()};

    static void heal(CoreFixture &core)
    {
        core.bus.order("fault r clear");
        core.bus.order("plug r");
        core.bus.order("radio m on");
    }
    static std::string faultAt(const FaultRow &row, uint64_t packet)
    {
        return std::string("fault r ") + row.order + " at " + std::to_string(packet);
    }
    // The pages show what the mouse holds, or the empty or cached state while it is waited for, or they were
    // not fed at all, which the wait dialog tells the user.
    static void verifyStatedOutcome(CoreFixture &core)
    {
        const auto isBeingFed = [&core] {
            return !core.loaded() && !core.hub.lines.contains(QStringLiteral("formreset")) &&
                   !core.hub.lines.filter(QStringLiteral("sensor")).isEmpty();
        };
        QVERIFY(core.waitFor([&isBeingFed] { return !isBeingFed(); }));
        if (core.loaded())
            QVERIFY(core.agrees("m"));
        else if (core.hub.lines.contains(QStringLiteral("formreset")))
            QVERIFY(AwaitingMouse);
    }
    // Loads with a fault at a packet. On a busy machine a question may go without its answer in time for
    // another reason than the fault, so it is tried more than once.
    static bool loadHeals(CoreFixture &core, const FaultRow &row, uint64_t packet)
    {
        bool loaded = false;
        for (int again = 0; again < 3 && !loaded; ++again) {
            heal(core);
            core.bus.order(faultAt(row, packet));
            loaded = core.loadOnce();
        }
        return loaded;
    }
    // A device that was just plugged in may take a moment.
    static bool healthyLoad(CoreFixture &core)
    {
        return core.waitFor([&] { return core.select(); }) && core.load() && core.agrees("m");
    }

private slots:
    void atEveryPacketOfALoad_data() { addFaults(); }
    void atEveryPacketOfALoad()
    {
        QFETCH(int, fault);
        const FaultRow &row = Faults[fault];
        CoreFixture core(Scenario);
        QVERIFY(core.select());
        const uint64_t before = core.bus.emulated.reportCount("r");
        QVERIFY(core.load());
        QVERIFY(core.settle("m"));
        const uint64_t packets = core.bus.emulated.reportCount("r") - before;
        QVERIFY(packets >= 124);
        for (uint64_t packet = 1; packet <= packets; ++packet) {
            if (row.outcome == Heals) {
                QVERIFY2(loadHeals(core, row, packet), qPrintable(QStringLiteral("packet %1").arg(packet)));
            } else {
                core.bus.order(faultAt(row, packet));
                core.startLoad();
                core.waitQuiet("r", 120);
                verifyStatedOutcome(core);
            }
            heal(core);
            QVERIFY2(healthyLoad(core), qPrintable(QStringLiteral("packet %1").arg(packet)));
        }
        QVERIFY(!core.watchdog.barked());
    }

    void atEveryPacketOfAnEdit_data() { addFaults(); }
    void atEveryPacketOfAnEdit()
    {
        QFETCH(int, fault);
        const FaultRow &row = Faults[fault];
        CoreFixture core(Scenario);
        QVERIFY(core.select());
        QVERIFY(core.load());
        QVERIFY(core.settle("m"));
        for (uint64_t packet = 1; packet <= 3; ++packet) { // the question, the write, and one behind them
            const uint8_t old = DeviceRecord::copy().ReportRate;
            const uint8_t wanted = old == 8 ? 4 : 8;
            core.bus.order(faultAt(row, packet));
            bool accepted = SetReportRate(wanted);
            QCOMPARE(int(DeviceRecord::copy().ReportRate), int(accepted ? wanted : old));
            // As with a load, another try may be the one whose answer is lost on a busy machine.
            for (int again = 0; again < 2 && row.outcome == Heals && !accepted; ++again) {
                heal(core);
                core.bus.order(faultAt(row, packet));
                accepted = SetReportRate(wanted);
            }
            if (row.outcome == Heals) {
                QVERIFY(accepted);
                QTRY_COMPARE(int(core.bus.flash("m").ReportRate), int(wanted));
            }
            core.waitQuiet("r", 120);
            heal(core);
            QVERIFY(healthyLoad(core));
        }
        QVERIFY(!core.watchdog.barked());
    }

    void aBadBusAllTheTime_data()
    {
        QTest::addColumn<QString>("orders");
        QTest::newRow("a tenth of everything") << "flipbit random 1 3;noreply random 2 2;doubled random 3 "
                                                  "3;wrongseq random 4 2;short random 5 2";
    }
    void aBadBusAllTheTime()
    {
        QFETCH(QString, orders);
        CoreFixture core(Scenario);
        QVERIFY(core.select());
        for (const QString &order : orders.split(QLatin1Char(';')))
            core.bus.order("fault r " + order.toStdString());
        for (int round = 0; round < 5; ++round) {
            core.startLoad();
            core.waitQuiet("r", 500);
        }
        heal(core);
        QVERIFY(healthyLoad(core));
    }
};

TEST_CLASS(tst_faults, CoreSetUp)
#include "tst_faults.moc"
