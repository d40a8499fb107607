// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Upgrades and repairs with the real layer and emulated boot loaders: whole runs, failures of each stage,
// cuts by the device and by a kill of the program. After each cut the program, started again, repairs what
// was cut in at most two tries and touches nothing else. PROGRAM_CUTS in the environment is the number of
// random cuts.
#include "device/DeviceSearch.h"
#include "device/EventDispatch.h"
#include "device/SideBySide.h"
#include "hub/PostMsg.h"
#include "service/UpgradeFlow.h"
#include "service/UpgradeState.h"
#include "tests/e2e/Program.h"
#include "tests/support/FirmwareFolder.h"
#include "tests/support/Watchdog.h"

#include <QProcess>
#include <QProgressBar>
#include <QRandomGenerator>
#include <csignal>

namespace
{

// The mouse on its cable beside its receiver, and a pair of another model that nothing may touch.
const char Pair[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                    "receiver r1 class 8k mouse m1 version 1.02 address a10001\n"
                    "mouse m2 cid 18 mid 7 version 1.05\n"
                    "receiver r2 class 8k mouse m2 version 1.02 address a10002\n"
                    "boottimes 1 2\n"
                    "plug m1\nplug r1\nplug r2\n";

struct Page final : UpgradePage {
    QWidget *place() override { return &widget; }
    QString shownVersion(int target) const override { return target == TargetMouse ? mouse : receiver; }
    void showMark(int, bool) override {}
    void showWaiting(bool) override {}
    void showUpToDate() override {}
    bool isUpToDate() const override { return false; }

    QWidget widget;
    QString receiver = QStringLiteral("v1.02");
    QString mouse = QStringLiteral("v1.05");
};

std::vector<DeviceAllInfo> attachedNow()
{
    std::vector<DeviceAllInfo> devices = findDevices(DeviceFinder::Default);
    sideBySide(devices, identifyDevice);
    return devices;
}

// The upgrade of the settings page on the attached devices, up to its end.
class Settings
{
public:
    Settings()
    {
        resetDeviceState();
        for (auto *timer : flow.findChildren<QTimer *>())
            timer->setInterval(1);
        QObject::connect(PostMsg::instance(), &PostMsg::SigUpdateStart, &flow, [this] { flow.on_Start(); });
        refresh();
        OnDevicePage = 1;
        for (const DeviceAllInfo &device : deviceList())
            if (device.Usb || deviceList().size() == 1)
                SelectedDevice::set(device);
    }
    ~Settings() { StopUsbChanged(); }

    // The device page's list, as its hot-plug callback fills it.
    static void refresh()
    {
        std::vector<DeviceAllInfo> ofTheModel;
        for (const DeviceAllInfo &device : attachedNow())
            if (device.DriveIndex == 0 || device.DriveIndex == unknownIndex())
                ofTheModel.push_back(device);
        setDeviceList(ofTheModel);
    }
    bool opens()
    {
        flow.on_Receive_2_clicked();
        return text() == upgradeText(UpgradeText::ReadyUpdate, 0);
    }
    void start() { flow.dialog().findChild<QAbstractButton *>(QStringLiteral("NewHong_2"))->click(); }
    bool isOver() { return !UpdateBusy && !flow.dialog().isBusy(); }
    QString text() { return flow.dialog().findChild<QLabel *>(QStringLiteral("ToolText_2"))->text(); }

    Page page;
    UpgradeFlow flow{page};
};

// The repair of the selection page.
class Repair
{
public:
    Repair()
    {
        resetDeviceState();
        dialog.setAttached(attachedNow());
        dialog.resetForm();
        dialog.show();
        emit PostMsg::instance()->SigRepairCheckUpdate();
    }
    bool isReady() const { return text() == upgradeText(UpgradeText::ReadyUpdate, 0); }
    QString text() const { return dialog.findChild<QLabel *>(QStringLiteral("ToolText_2"))->text(); }
    // Its result's text. `look` is called until then.
    QString run(const std::function<void()> &look = [] {})
    {
        dialog.findChild<QAbstractButton *>(QStringLiteral("NewHong_2"))->click();
        const auto ends = [this, &look] {
            look();
            return !dialog.isBusy();
        };
        if (!QTest::qWaitFor(ends, 60000))
            return QStringLiteral("no end");
        return text();
    }

    UpDateRepair dialog;
};

QString success() { return upgradeText(UpgradeText::DialogUpgradeSuccess, 0); }

// Argument of the child that never comes to the mouse.
constexpr char BetweenTheStages[] = "--between-the-stages";

int cutsWanted() { return qMax(4, qEnvironmentVariableIntValue("PROGRAM_CUTS")); }

} // namespace

class tst_upgrade : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<EmulatedBus> bus;

    QString words(const char *id)
    {
        const QString state = QString::fromStdString(bus->emulated.order("state"));
        for (const QString &line : state.split(QLatin1Char('\n')))
            if (line.startsWith(QStringLiteral("device=%1 ").arg(QLatin1String(id))))
                return line;
        return {};
    }
    bool runs(const char *id, const char *version)
    {
        const QString line = words(id);
        return line.contains(QLatin1String(" boot=0 ")) &&
               line.contains(QStringLiteral(" version=%1 ").arg(QLatin1String(version)));
    }
    bool isUntouched(const char *id)
    {
        return runs(id, "1.02") && bus->emulated.reportCount(id, wire::Command::BootEnter) == 0;
    }
    static QString record() { return UpdateFailRecord::storedText(); }

    // Everything is plugged in again and as it wants to be.
    void settle()
    {
        for (const char *id : {"m1", "r1"}) {
            bus->order(std::string("fault ") + id + " clear");
            if (words(id).contains(QLatin1String(" plugged=0 ")))
                bus->order(std::string("plug ") + id);
        }
        const auto there = [this](const char *id) {
            for (const emulator::Interface &face : bus->emulated.interfaces())
                if (face.device == id)
                    return true;
            return false;
        };
        QTRY_VERIFY(there("m1") && there("r1"));
    }
    // What is unplugged is plugged in again before the layer has given it up.
    void plugAgain(const char *id)
    {
        if (words(id).contains(QLatin1String(" plugged=0 ")))
            bus->order(std::string("plug ") + id);
    }
    void settleForRepair()
    {
        settle();
        if (words("r2").contains(QLatin1String(" plugged=1 ")))
            bus->order("unplug r2"); // the repair asks for that
    }
    // The repair is cut as well, if there is anything to repair.
    void cutRepair(const char *id, const std::string &fault)
    {
        settleForRepair();
        Repair repair;
        if (record().isEmpty() || !repair.isReady())
            return;
        bus->order(fault);
        repair.run([this, id] { plugAgain(id); });
    }
    // The program, started again, offers the repair if anything was cut, and it works.
    void expectRepair()
    {
        settleForRepair();
        for (int tries = 1; !record().isEmpty(); ++tries) {
            QVERIFY2(tries <= 2, qPrintable(record() + words("m1") + words("r1")));
            Repair repair;
            QVERIFY2(repair.isReady(), qPrintable(repair.text() + record() + words("m1") + words("r1")));
            repair.run();
            settle();
        }
        QVERIFY2(words("m1").contains(QLatin1String(" boot=0 ")), qPrintable(words("m1")));
        QVERIFY2(words("r1").contains(QLatin1String(" boot=0 ")), qPrintable(words("r1")));
        QVERIFY(isUntouched("r2") && isMarried());
    }
    // A mouse is not married to the receiver of another model.
    bool isMarried() { return words("m1").contains(QLatin1String(" address=a10001 ")); }
    void makeOld()
    {
        settle();
        if (words("r2").contains(QLatin1String(" plugged=0 ")))
            bus->order("plug r2");
        bus->order("version m1 1.05");
        bus->order("version r1 1.02");
        settle();
    }

private slots:
    void init()
    {
        bus = std::make_unique<EmulatedBus>(Pair);
        LoadLanguageTables();
        firmware::clear();
        firmware::write(QStringLiteral("mouse.bin"), firmware::Mouse);
        firmware::write(QStringLiteral("receiver.bin"), firmware::Receiver);
        UpdateFailRecord::remove();
    }
    void cleanup()
    {
        UsbServer_Exit();
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
        Settings settings;
        QVERIFY(settings.opens());
        settings.start();
        QTRY_VERIFY_WITH_TIMEOUT(settings.isOver(), 30000);
        QCOMPARE(settings.text(), success());
        QVERIFY(runs("r1", receiver ? "1.03" : "1.02"));
        QVERIFY(runs("m1", mouse ? "1.06" : "1.05"));
        QVERIFY(isUntouched("r2") && isMarried());
        QCOMPARE(record(), QString());
        QVERIFY2(!watchdog.barked(), qPrintable(QString::number(watchdog.longestSilenceMs())));
    }

    void withNothingNewerNothingIsFlashed()
    {
        firmware::clear();
        Settings settings;
        QVERIFY(!settings.opens());
        QVERIFY(isUntouched("r1") && isUntouched("r2"));
    }

    // The bytes that were checked are flashed, whatever stands in the folder meanwhile.
    void theFileMayChangeMeanwhile()
    {
        bus->order("erase r1 300");
        Settings settings;
        QVERIFY(settings.opens());
        settings.start();
        QTRY_VERIFY(words("r1").contains(QLatin1String(" boot=1 ")));
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
        Settings settings;
        QVERIFY(settings.opens());
        settings.start();
        QTRY_VERIFY_WITH_TIMEOUT(settings.isOver(), 60000);
        QCOMPARE(settings.text(), upgradeText(UpgradeText::DialogUpgradeFail, 0));
        QCOMPARE(record(), left);
        if (id == "r1")
            QVERIFY(runs("m1", "1.05")); // not flashed after the receiver's failure
        expectRepair();
        QVERIFY(runs(id, id == "r1" ? "1.03" : "1.06"));
    }

    void aRepairAsksForTheOthersToBeUnplugged()
    {
        UpdateFailRecord::store(QStringLiteral("210,8,18,6"));
        bus->order("boot m1 broken");
        Repair repair;
        QCOMPARE(repair.text(), upgradeText(UpgradeText::MultiDongle, 0));
        expectRepair();
        QVERIFY(runs("m1", "1.06"));
    }

    void randomCutsAreRepaired()
    {
        QRandomGenerator random(20261122);
        const char *const kinds[] = {"unplug", "powercut", "noreply", "flipbit", "doubled"};
        const auto anyDevice = [&random] { return random.bounded(2) == 0 ? "r1" : "m1"; };
        const auto anyFault = [&random, &kinds](const char *id) {
            return std::string("fault ") + id + ' ' + kinds[random.bounded(int(std::size(kinds)))] + " at " +
                   std::to_string(4 + random.bounded(60));
        };
        for (int cut = 0; cut < cutsWanted(); ++cut) {
            const char *id = anyDevice();
            const std::string fault = anyFault(id);
            makeOld();
            Settings settings;
            QVERIFY(settings.opens());
            bus->order(fault);
            settings.start();
            const auto ends = [&] {
                plugAgain(id);
                return settings.isOver();
            };
            QVERIFY2(QTest::qWaitFor(ends, 60000), fault.c_str());
            if (const char *other = anyDevice(); cut % 2 == 1)
                cutRepair(other, anyFault(other));
            expectRepair();
            if (QTest::currentTestFailed())
                QFAIL(("cut " + std::to_string(cut) + ": " + fault).c_str());
        }
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
        bus->order("fault " + id.toStdString() + " stall 60000 at " + std::to_string(8 + blocks));
        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QCoreApplication::applicationFilePath(), {QStringLiteral("upgradeChild")});
        const auto written = [&] {
            return bus->emulated.reportCount(id.toStdString(), wire::Command::BootData) > 0;
        };
        QTRY_VERIFY_WITH_TIMEOUT(written(), 30000);
        QTRY_VERIFY(words(id).contains(QLatin1String(" boot=1 ")));
        ::kill(pid_t(program.processId()), SIGKILL);
        QVERIFY(program.waitForFinished());
        QCOMPARE(record(), QString(id == "r1" ? "211,8,18,6" : "210,8,18,6"));
        expectRepair();
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
        QVERIFY(words("m1").contains(QLatin1String(" boot=1 ")));
        ::kill(pid_t(program.processId()), SIGKILL);
        QVERIFY(program.waitForFinished());
        expectRepair();
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
    Settings settings;
    if (QApplication::arguments().contains(QLatin1String(BetweenTheStages)))
        settings.flow.findChild<QTimer *>(QStringLiteral("MouseCheckTimer"))->setInterval(600000);
    if (!settings.opens()) {
        qWarning("%s", qPrintable(settings.text()));
        return EXIT_FAILURE;
    }
    settings.start();
    return QApplication::exec();
}

struct UpgradeSetUp : ProgramSetUp {
    UpgradeSetUp(int &argc, char **argv) : ProgramSetUp(argc, argv)
    {
        qputenv("UPGRADE_APPLICATION", applicationFolder().toLocal8Bit());
    }
};

} // namespace

TEST_CHILD(upgradeChild)
TEST_CLASS(tst_upgrade, UpgradeSetUp)
#include "tst_upgrade.moc"
