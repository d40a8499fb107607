// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Leaving a device, hiding, coming back and closing: what the layer is told in which order, and when the
// image of the device is kept.
#include "app/Dialog.h"
#include "app/DialogMain.h"
#include "app/SystemEnd.h"
#include "device/ImageCache.h"
#include "device/Worker.h"
#include "device/WriteFamily.h"
#include "service/FlashRun.h"
#include "service/UpDateRepair.h"
#include "tests/support/FirmwareFolder.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QCloseEvent>
#include <QProcess>
#include <QSemaphore>
#include <QStackedWidget>
#include <QToolButton>
#include <QWindow>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <unistd.h>

class tst_Ending : public QObject
{
    Q_OBJECT

private:
    const QString imageName = QStringLiteral("Device_CID12_MID06.bin");
    std::unique_ptr<DialogMain> window;
    FakeHidUsb &fake = FakeHidUsb::instance();

    Dialog *dialog() const { return window->findChild<Dialog *>(); }
    QToolButton *button(const char *name) const { return dialog()->findChild<QToolButton *>(name); }
    void openDevicePage()
    {
        fixture::select(fixture::info("dev", Receiver8K));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        SelectedDevice::setImageName(imageName);
        DeviceRecord::edit([](FlashDataMap &map) { map.ReportRate = 64; });
        QTRY_VERIFY(fake.idle());
        QCoreApplication::processEvents();
        fake.clearCalls();
    }
    // The calls that open and end things; the questions of a search that runs beside them are left out.
    QStringList calls() const
    {
        QStringList names;
        for (const std::string &call : fake.calls()) {
            const QString name = QString::fromStdString(call);
            if (name.startsWith("UsbServer_") || name.contains("UsbChanged"))
                names.append(name);
        }
        return names;
    }
    // The report rate in the kept image; -1 without one.
    int keptRate() const
    {
        FlashDataMap kept{};
        return ImageCacheRead(imageName, &kept) ? int(kept.ReportRate) : -1;
    }

public:
    // In a process of its own; prints what the layer was told and what was kept.
    int endByThread()
    {
        init();
        openDevicePage();
        static tst_Ending *const self = this;
        std::atexit([] {
            std::printf("%s; kept %d\n", qPrintable(self->calls().join(", ")), self->keptRate());
            std::fflush(stdout);
        });
        const SystemEnd end(window.get());
        std::thread([] { ::_exit(7); }).detach();
        return QCoreApplication::exec();
    }

private slots:
    void init()
    {
        fixture::clean();
        QFile::remove(dataRoot() + "/Device_Info/" + imageName);
        fake.addDevice(fixture::device("dev", 6, Receiver8K));
        window = std::make_unique<DialogMain>();
        window->show();
        QTRY_VERIFY(fake.idle());
        QCoreApplication::processEvents();
    }
    void cleanup()
    {
        QTRY_VERIFY(fake.idle());
        fake.setHook(nullptr);
        window.reset();
    }

    void waysToEnd_data()
    {
        QTest::addColumn<bool>("onDevicePage");
        QTest::addColumn<int>("index");
        QTest::addColumn<QStringList>("wanted");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<bool>("hides");
        const QString letGo = "UsbServer_SetPCDriverStatus 0";
        const QStringList end = {"StopUsbChanged", "UsbServer_Exit"};
        for (const bool onDevicePage : {false, true}) {
            const auto row = [onDevicePage](const char *name) -> QTestData & {
                return QTest::addRow("%s, %s page", name, onDevicePage ? "device" : "selection")
                       << onDevicePage;
            };
            row("hide") << 0 << QStringList{letGo} << false << true;
            row("close") << 1 << QStringList{letGo} + end << true << false;
            row("hide alone") << 2 << QStringList{} << false << true;
            row("close alone") << 3 << end << true << false;
            row("none of them") << 4 << QStringList{} << false << false;
        }
    }
    void waysToEnd()
    {
        QFETCH(bool, onDevicePage);
        QFETCH(int, index);
        QFETCH(QStringList, wanted);
        QFETCH(bool, closes);
        QFETCH(bool, hides);
        if (onDevicePage)
            openDevicePage();
        fake.clearCalls();
        emit PostMsg::instance()->SigChangeSize(index);
        QCOMPARE(calls(), wanted);
        QCOMPARE(window->isHidden(), closes);
        QCOMPARE(window->isMinimized(), hides); // there is no tray here
        QCOMPARE(keptRate(), -1);
    }

    void closingSpinsBeforeTheConnectionEnds()
    {
        openDevicePage();
        bool turned = false;
        bool turnedBeforeExit = false;
        fake.setHook([&](const std::string &call) {
            if (call == "StopUsbChanged")
                QTimer::singleShot(0, window.get(), [&turned] { turned = true; });
            if (call == "UsbServer_Exit")
                turnedBeforeExit = turned;
        });
        emit PostMsg::instance()->SigChangeSize(3);
        QVERIFY(turnedBeforeExit); // what the threads of the layer still deliver is taken
    }

    void closingKeepsTheImageFirst_data()
    {
        QTest::addColumn<bool>("byButton");
        QTest::newRow("button") << true;
        QTest::newRow("window") << false;
    }
    void closingKeepsTheImageFirst()
    {
        QFETCH(bool, byButton);
        openDevicePage();
        int keptAtChange = -1;
        int askedFor = -1;
        connect(PostMsg::instance(), &PostMsg::SigChangeSize, window.get(), [&](int index) {
            keptAtChange = keptRate();
            askedFor = index;
        });
        int keptWhenLetGo = -1;
        fake.setHook([&](const std::string &call) {
            if (call == "UsbServer_SetPCDriverStatus")
                keptWhenLetGo = keptRate();
        });
        if (byButton)
            button("CloseButton")->click();
        else
            dialog()->WindowClosed();
        QCOMPARE(askedFor, 1);
        QCOMPARE(keptAtChange, 64);
        QCOMPARE(keptWhenLetGo, 64);
        QVERIFY(window->isHidden());
    }

    // Alt+F4, the task bar and the end of a session close the window itself.
    void aCloseOfTheWindowIsTheButtons_data()
    {
        QTest::addColumn<bool>("onDevicePage");
        QTest::addColumn<bool>("minimised");
        for (const bool onDevicePage : {false, true})
            for (const bool minimised : {false, true})
                QTest::addRow("%s page%s", onDevicePage ? "device" : "selection",
                              minimised ? ", minimised" : "")
                    << onDevicePage << minimised;
    }
    void aCloseOfTheWindowIsTheButtons()
    {
        QFETCH(bool, onDevicePage);
        QFETCH(bool, minimised);
        if (onDevicePage)
            openDevicePage();
        if (minimised)
            window->showMinimized();
        fake.clearCalls();
        int keptWhenLetGo = -1;
        bool closedAgain = false;
        fake.setHook([&](const std::string &call) {
            if (call == "UsbServer_SetPCDriverStatus")
                keptWhenLetGo = keptRate();
            if (call == "StopUsbChanged")
                QTimer::singleShot(0, window.get(), [&] { // an impatient user
                    window->close();
                    closedAgain = true;
                });
        });
        QCloseEvent close;
        QCoreApplication::sendEvent(window->windowHandle(), &close);
        QVERIFY(close.isAccepted()); // a refusal would stop the end of the session
        QVERIFY(window->isHidden());
        QVERIFY(closedAgain);
        QCOMPARE(calls(), (QStringList{"UsbServer_SetPCDriverStatus 0", "StopUsbChanged", "UsbServer_Exit"}));
        QCOMPARE(keptWhenLetGo, onDevicePage ? 64 : -1);
        QCOMPARE(keptRate(), keptWhenLetGo);
    }

    // Neither does a flag of the pages count that is given back later, nor one that is still to be set.
    void firmwareThatIsWrittenKeepsTheWindow_data()
    {
        QTest::addColumn<bool>("dialogIsBusy");
        QTest::newRow("by its dialog") << true;
        QTest::newRow("by the run itself") << false;
    }
    void firmwareThatIsWrittenKeepsTheWindow()
    {
        QFETCH(bool, dialogIsBusy);
        const auto closes = [this] {
            QCloseEvent close;
            QCoreApplication::sendEvent(window.get(), &close);
            return close.isAccepted();
        };
        fake.setUpgrade(0, true);
        if (dialogIsBusy)
            UpDateRepair::instance()->busyForm();
        else
            flashrun::start(firmware::image(firmware::Mouse.bytes()), {TargetMouse, 8, 18, 6},
                            {{}, [](bool, bool) {}});
        QVERIFY(!closes());
        window->slotActionExitApp();
        QVERIFY(window->isVisible());
        NotUpgrading = false; // until the restarted device is found
        if (dialogIsBusy) {
            UpDateRepair::instance()->noticeForm(UpgradeText::DialogUpgradeSuccess);
        } else {
            QTRY_COMPARE(fake.count("UsbUpgrade_Start"), 1);
            fake.upgradeReport({7, 2, 1});
            QTRY_VERIFY(!flashrun::isUnderWay());
        }
        QVERIFY(closes());
        UpdateFailRecord::remove();
    }

    // Opening a device takes 150 ms, in which the window can be closed.
    void aCloseWhileADeviceIsOpenedConnectsNothing()
    {
        auto *const tile = window->findChild<QToolButton *>("btn0");
        QVERIFY(tile);
        connect(PostMsg::instance(), &PostMsg::SigChangeMainDialog, window.get(),
                [this] { QTimer::singleShot(0, window.get(), [this] { window->close(); }); });
        tile->click();
        QVERIFY(window->isHidden());
        QTRY_VERIFY(!Worker::instance()->isRunning());
        QCOMPARE(fake.count("UsbServer_Exit"), 1);
        QCOMPARE(fake.count("UsbServerC_Start"), 0);
        QCOMPARE(fake.count("UsbServer_SetPCDriverStatus 1"), 0);
    }

    // A pass that stands at the device's answer until the program has let the device go.
    void aPassUnderWayDoesNotUndoTheClose()
    {
        openDevicePage();
        OnDevicePage = 1;
        MouseOnline = true; // the pass asks once
        QSemaphore asked;
        QSemaphore letGo;
        fake.setHook([&](const std::string &call) {
            if (call == "UsbFinderC_GetDeviceOnLine" && QThread::currentThread() == Worker::instance()) {
                asked.release();
                letGo.acquire();
            }
            if (call == "UsbServer_Exit")
                letGo.release();
        });
        Worker::instance()->startPass();
        asked.acquire();
        window->close();
        QTRY_VERIFY(!Worker::instance()->isRunning());
        QVERIFY(!fake.connected());
        QCOMPARE(calls(), (QStringList{"UsbServer_SetPCDriverStatus 0", "StopUsbChanged", "UsbServer_Exit"}));
    }

    // The offline watch and a reset end in a new pass.
    void nothingStartsAPassBehindTheClose()
    {
        openDevicePage();
        OnDevicePage = 1;
        fake.setHook([&](const std::string &call) {
            if (call == "StopUsbChanged")
                QTimer::singleShot(0, window.get(), [] {
                    MouseOnline = RestartWorker = true;
                    Worker::instance()->SlotCheckOnline();
                });
        });
        window->close();
        QVERIFY(!RestartWorker); // the watch has run
        QTRY_VERIFY(!Worker::instance()->isRunning());
        QCOMPARE(calls(), (QStringList{"UsbServer_SetPCDriverStatus 0", "StopUsbChanged", "UsbServer_Exit"}));
        QCOMPARE(fake.count("UsbServerC_Start"), 0);
    }

    void theFormsButtonClosesLikeTheOthers()
    {
        openDevicePage();
        window->on_pushButton_clicked();
        QVERIFY(window->isHidden());
        QCOMPARE(keptRate(), 64);
        QCOMPARE(calls(), (QStringList{"UsbServer_SetPCDriverStatus 0", "StopUsbChanged", "UsbServer_Exit"}));
    }

    // A session's end can end the event loop alone, of a hidden window, too.
    void theEndOfTheEventLoopLetsGo()
    {
        openDevicePage();
        window->hide();
        for (int ends = 0; ends < 2; ++ends)
            const SystemEnd end(window.get());
        QCOMPARE(calls(), (QStringList{"UsbServer_SetPCDriverStatus 0", "StopUsbChanged", "UsbServer_Exit"}));
        QCOMPARE(keptRate(), 64);
    }

    // As a plug-in of the toolkit's does when its connection is gone, with no handler of exit() behind it.
    void anEndByAnotherThreadLetsGo()
    {
        QProcess program;
        program.start(QCoreApplication::applicationFilePath(), {"endByThread"});
        QVERIFY(program.waitForFinished(60000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 7);
        QCOMPARE(program.readAllStandardOutput(),
                 QByteArray("UsbServer_SetPCDriverStatus 0, StopUsbChanged, UsbServer_Exit; kept 64\n"));
    }

    void hidingKeepsNoImage()
    {
        openDevicePage();
        QSignalSpy change(PostMsg::instance(), SIGNAL(SigChangeSize(int)));
        button("MinButton")->click();
        QCOMPARE(change.count(), 1);
        QCOMPARE(change.first().first().toInt(), 0);
        QCOMPARE(keptRate(), -1);
    }

    void editsKeepNoImage()
    {
        openDevicePage();
        QVERIFY(SetReportRate(1));
        PushRecord();
        QCOMPARE(keptRate(), -1);
        for (const char *name :
             {"SensorButton", "MacroButton", "LightsButton", "Advanced", "FormSetting", "ButtonMain"})
            button(name)->click();
        QCOMPARE(keptRate(), -1);
    }

    void goingBackRunsInOrder()
    {
        openDevicePage();
        button("SensorButton")->click();
        int keptAtFirstExit = -1;
        bool turned = false;
        bool turnedBeforeExit = false;
        fake.setHook([&](const std::string &call) {
            if (call == "UsbServer_SetPCDriverStatus")
                QTimer::singleShot(0, window.get(), [&turned] { turned = true; });
            if (call == "UsbServer_Exit" && keptAtFirstExit == -1) {
                keptAtFirstExit = keptRate();
                turnedBeforeExit = turned;
            }
        });
        QStringList signalOrder;
        PostMsg *const hub = PostMsg::instance();
        connect(hub, &PostMsg::SigChangeMainDialog, window.get(),
                [&](int index) { signalOrder += QString("page %1").arg(index); });
        connect(hub, &PostMsg::SigMainPageChange, window.get(), [&] { signalOrder += "main"; });
        connect(hub, &PostMsg::SigSecondPageChange, window.get(), [&] { signalOrder += "second"; });
        connect(hub, &PostMsg::SigSetMacroPage, window.get(), [&] { signalOrder += "macro"; });
        button("UpArrow")->click();
        QCOMPARE(calls(), (QStringList{"UsbServer_SetPCDriverStatus 0", "UsbServer_Exit", "UsbServer_Exit",
                                       "StartUsbChanged 600"}));
        QCOMPARE(keptAtFirstExit, 64);
        QVERIFY(turnedBeforeExit);
        // DialogMain took the first one before this test's own connection.
        QCOMPARE(signalOrder, (QStringList{"second", "main", "page 0", "macro"}));
        QVERIFY(button("PreButton")->isChecked());
    }

    void leavingADeviceThatNeverLoadedKeepsNothing()
    {
        openDevicePage();
        SelectedDevice::setImageName(QString());
        button("UpArrow")->click();
        QCOMPARE(keptRate(), -1);
        QVERIFY(QDir(dataRoot() + "/Device_Info").entryList(QDir::Files | QDir::Hidden).isEmpty());
    }

    // ---- To the tray and back

    void trayReasons_data()
    {
        QTest::addColumn<int>("reason");
        QTest::addColumn<bool>("onDevicePage");
        QTest::addColumn<bool>("comesBack");
        QTest::addColumn<bool>("takesCharge"); // of the device
        using Reason = QSystemTrayIcon::ActivationReason;
        const auto row = [](const char *name, Reason reason, bool comesBack, bool takesCharge) {
            QTest::addRow("%s, selection page", name) << int(reason) << false << comesBack << false;
            QTest::addRow("%s, device page", name) << int(reason) << true << comesBack << takesCharge;
        };
        row("double click", QSystemTrayIcon::DoubleClick, true, false);
        row("click", QSystemTrayIcon::Trigger, true, true);
        row("menu", QSystemTrayIcon::Context, false, false);
        row("middle click", QSystemTrayIcon::MiddleClick, false, false);
        row("unknown", QSystemTrayIcon::Unknown, false, false);
        row("first entry of the menu", Reason(-1), true, true);
    }
    void trayReasons()
    {
        QFETCH(int, reason);
        QFETCH(bool, onDevicePage);
        QFETCH(bool, comesBack);
        QFETCH(bool, takesCharge);
        if (onDevicePage)
            openDevicePage();
        window->hide();
        fake.clearCalls();
        if (reason < 0)
            window->slotActionMain();
        else
            window->on_activatedSysTrayIcon(QSystemTrayIcon::ActivationReason(reason));
        QCOMPARE(window->isVisible(), comesBack);
        QCOMPARE(fake.count("UsbServer_SetPCDriverStatus"), takesCharge ? 1 : 0);
        if (takesCharge)
            QCOMPARE(fake.calls().back(), std::string("UsbServer_SetPCDriverStatus 1"));
        QTRY_VERIFY(fake.idle());
    }

    // A login may start the program before the desktop's tray is there. There is none here.
    void aHiddenStartWaitsForTheTray()
    {
        window = std::make_unique<DialogMain>();
        window->startHidden(1);
        QVERIFY(!window->isVisible()); // it looks once more
        QTRY_VERIFY(window->isMinimized());
        QVERIFY(window->isVisible());
    }

    // Without a tray the window stands in the task bar, and its return is that of a click on the icon.
    void theReturnFromTheTaskBarTakesCharge_data()
    {
        QTest::addColumn<bool>("onDevicePage");
        QTest::newRow("selection page") << false;
        QTest::newRow("device page") << true;
    }
    void theReturnFromTheTaskBarTakesCharge()
    {
        QFETCH(bool, onDevicePage);
        if (onDevicePage)
            openDevicePage();
        emit PostMsg::instance()->SigChangeSize(0);
        QVERIFY(window->isMinimized());
        fake.clearCalls();
        window->showNormal();
        QVERIFY(!window->isMinimized());
        QCOMPARE(fake.count("UsbServer_SetPCDriverStatus"), onDevicePage ? 1 : 0);
        if (onDevicePage)
            QCOMPARE(fake.calls().back(), std::string("UsbServer_SetPCDriverStatus 1"));
        fake.clearCalls();
        window->showMinimized(); // by the window manager: the device was never let go
        window->showNormal();
        QCOMPARE(fake.count("UsbServer_SetPCDriverStatus"), 0);
        QTRY_VERIFY(fake.idle());
    }
};

namespace
{

int endByThread(int argc, char **argv)
{
    const fixture::ShippedLooks setUp(argc, argv);
    return tst_Ending().endByThread();
}

} // namespace

TEST_CHILD(endByThread)
TEST_CLASS(tst_Ending, fixture::ShippedLooks)

#include "tst_ending.moc"
