// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Upgrades and repairs with the real layer and emulated boot loaders: whole runs, failures of each stage, and
// kills of the program. Started again, it repairs what was cut in at most two tries and touches nothing else.
#include "tests/e2e/UpgradeEndToEnd.h"
#include "tests/support/Watchdog.h"

#include <QProcess>

namespace
{

// Argument of the child that never comes to the mouse.
constexpr char BetweenTheStages[] = "--between-the-stages";
} // namespace

class tst_upgrade : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<UpgradeBus> bus;

    bool runs(const char *id, const char *version) { return bus->runs(id, version); }
    static QString record() { return UpdateFailRecord::storedText(); }

private slots:
    void init() { bus = std::make_unique<UpgradeBus>(); }
    void cleanup()
    {
        bus.reset();
        resetDeviceState();
    }

    void whatIsNewerIsUpgraded_data()
    {
        QTest::addColumn<bool>("receiver");
        QTest::addColumn<bool>("mouse");
        QTest::newRow("both") << true << true;
        QTest::newRow("the receiver") << true << false;
        QTest::newRow("the mouse") << false << true;
    }
    void whatIsNewerIsUpgraded()
    {
        QFETCH(bool, receiver);
        QFETCH(bool, mouse);
        Watchdog watchdog;
        if (!receiver)
            QFile::remove(firmware::folder() + QStringLiteral("receiver.bin"));
        if (!mouse)
            QFile::remove(firmware::folder() + QStringLiteral("mouse.bin"));
        SettingsUpgrade settings;
        QVERIFY(settings.opens());
        settings.start();
        QTRY_VERIFY_WITH_TIMEOUT(settings.isOver(), 30000);
        QCOMPARE(settings.text(), success());
        QVERIFY(runs("r1", receiver ? "1.03" : "1.02"));
        QVERIFY(runs("m1", mouse ? "1.06" : "1.05"));
        QVERIFY(bus->isUntouched("r2") && bus->isMarried());
        QCOMPARE(record(), QString());
        QVERIFY2(!watchdog.barked(), qPrintable(QString::number(watchdog.longestSilenceMs())));
    }

    void withNothingNewerNothingIsFlashed()
    {
        firmware::clear();
        SettingsUpgrade settings;
        QVERIFY(!settings.opens());
        QVERIFY(bus->isUntouched("r1") && bus->isUntouched("r2"));
    }

    // The bytes that were checked are flashed, whatever stands in the folder meanwhile.
    void theFileMayChangeMeanwhile()
    {
        bus->order("erase r1 300");
        SettingsUpgrade settings;
        QVERIFY(settings.opens());
        settings.start();
        QTRY_VERIFY(bus->has("r1", "boot=1"));
        firmware::write(QStringLiteral("receiver.bin"), QByteArray(5000, 'x'));
        QTRY_VERIFY_WITH_TIMEOUT(settings.isOver(), 30000);
        QCOMPARE(settings.text(), success());
        QVERIFY(runs("r1", "1.03") && runs("m1", "1.06"));
    }

    void aStageFailsAndIsRepaired_data()
    {
        QTest::addColumn<QByteArray>("id");
        QTest::addColumn<QByteArray>("fault");
        QTest::addColumn<QString>("left");
        const QString receiverFailed = QStringLiteral("211,8,18,6");
        const QString mouseFailed = QStringLiteral("210,8,18,6");
        for (const char *fault : {"refuse always command bootbegin", "refuse always command bootdata",
                                  "noreply always command bootdata", "refuse always command bootend",
                                  "powercut at 20", "refuse always command bootenter"}) {
            QTest::addRow("receiver %s", fault) << QByteArray("r1") << QByteArray(fault) << receiverFailed;
            QTest::addRow("mouse %s", fault) << QByteArray("m1") << QByteArray(fault) << mouseFailed;
        }
    }
    void aStageFailsAndIsRepaired()
    {
        QFETCH(QByteArray, id);
        QFETCH(QByteArray, fault);
        QFETCH(QString, left);
        bus->order("fault " + id.toStdString() + " " + fault.toStdString());
        SettingsUpgrade settings;
        QVERIFY(settings.opens());
        settings.start();
        QTRY_VERIFY_WITH_TIMEOUT(settings.isOver(), 60000);
        QCOMPARE(settings.text(), upgradeText(UpgradeText::DialogUpgradeFail, 0));
        QCOMPARE(record(), left);
        if (id == "r1")
            QVERIFY(runs("m1", "1.05")); // not flashed after the receiver's failure
        QCOMPARE(bus->repairError(), QString());
        QVERIFY(runs(id, id == "r1" ? "1.03" : "1.06"));
    }

    void aRepairAsksForTheOthersToBeUnplugged()
    {
        UpdateFailRecord::store(QStringLiteral("210,8,18,6"));
        bus->order("boot m1 broken");
        {
            Restarted program = bus->restarted();
            QVERIFY(program.offersRepair() && !program.opensRepair());
            QCOMPARE(program.text(), upgradeText(UpgradeText::MultiDongle, 0));
        }
        QCOMPARE(bus->repairError(), QString());
        QVERIFY(runs("m1", "1.06"));
    }

    void aKilledProgramIsRepaired_data()
    {
        QTest::addColumn<QByteArray>("id");
        QTest::addColumn<int>("blocks"); // written before the kill
        QTest::newRow("receiver, erased") << QByteArray("r1") << 1;
        QTest::newRow("receiver, half way") << QByteArray("r1") << 25;
        QTest::newRow("mouse, erased") << QByteArray("m1") << 1;
        QTest::newRow("mouse, half way") << QByteArray("m1") << 25;
    }
    void aKilledProgramIsRepaired()
    {
        QFETCH(QByteArray, id);
        QFETCH(int, blocks);
        bus->order("fault " + id.toStdString() + " stall 60000 at " + std::to_string(blocks) +
                   " command bootdata");
        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QCoreApplication::applicationFilePath(), {QStringLiteral("upgradeChild")});
        QTRY_VERIFY_WITH_TIMEOUT(bus->has(id, "faults=0"), 30000);
        QTRY_VERIFY(bus->has(id, "boot=1"));
        program.kill();
        QVERIFY(program.waitForFinished());
        QCOMPARE(record(), QString(id == "r1" ? "211,8,18,6" : "210,8,18,6"));
        QCOMPARE(bus->repairError(), QString());
        QVERIFY(runs(id, id == "r1" ? "1.03" : "1.06"));
    }

    // The mouse waits in its boot loader, its receiver has just been upgraded.
    void aKillBetweenTheStagesIsRepaired()
    {
        const QString mouseFailed = QStringLiteral("210,8,18,6");
        UpdateFailRecord::store(mouseFailed);
        bus->order("unplug r2");
        bus->order("boot m1 broken");
        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("upgradeChild"), QLatin1String(BetweenTheStages)});
        QTRY_VERIFY_WITH_TIMEOUT(runs("r1", "1.03"), 10000);
        QTRY_COMPARE(record(), mouseFailed);
        QVERIFY(bus->has("m1", "boot=1"));
        program.kill();
        QVERIFY(program.waitForFinished());
        QCOMPARE(bus->repairError(), QString());
        QVERIFY(runs("m1", "1.06"));
    }
};

namespace
{

// The program that aKilledProgramIsRepaired() kills: it shares bus, home and application folder.
int upgradeChild(int argc, char **argv)
{
    setApplicationFolder(qEnvironmentVariable("UPGRADE_APPLICATION"));
    QApplication application(argc, argv);
    LoadLanguageTables();
    SettingsUpgrade settings;
    if (QApplication::arguments().contains(QLatin1String(BetweenTheStages)))
        settings.flow.findChild<QTimer *>(QStringLiteral("MouseCheckTimer"))->setInterval(600000);
    if (!settings.opens()) {
        qWarning("%s", qPrintable(settings.text()));
        return EXIT_FAILURE;
    }
    settings.start();
    return QApplication::exec();
}

} // namespace

TEST_CHILD(upgradeChild)
TEST_CLASS(tst_upgrade, UpgradeSetUp)
#include "tst_upgrade.moc"
