// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The main window and the device page, with the real worker on the scripted layer.
#include "app/Dialog.h"
#include "app/DialogMain.h"
#include "binding/Buttoninterface.h"
#include "catalogue/AttachedDevices.h"
#include "catalogue/DialogChange.h"
#include "device/Worker.h"
#include "presentation/Notices.h"
#include "presentation/UpDataParam.h"
#include "presentation/language/LanguageTables.h"
#include "sensor/Sensor.h"
#include "sensor/SensorRate.h"
#include "tests/support/Watchdog.h"
#include "tests/widget/Fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QStackedWidget>
#include <QToolButton>

class tst_Windows : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<DialogMain> window;
    FakeHidUsb &fake = FakeHidUsb::instance();

    Dialog *dialog() const { return window->findChild<Dialog *>(); }
    QStackedWidget *stack() const { return window->findChild<QStackedWidget *>("stackedWidget"); }
    QStackedWidget *pages() const { return window->findChild<QStackedWidget *>("stackedWidgetDialog"); }
    QToolButton *button(const QString &name) const { return dialog()->findChild<QToolButton *>(name); }
    QToolButton *rate(int index) const { return dialog()->findChild<SensorRate *>()->button(index); }

    void openDevicePage()
    {
        fixture::select(fixture::info("dev", Receiver8K));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        QTRY_VERIFY(fake.idle());
    }

private slots:
    void init()
    {
        fixture::clean();
        fake.addDevice(fixture::device("dev", 6, Receiver8K));
        window = std::make_unique<DialogMain>();
        window->show();
        QTRY_VERIFY(fake.idle());
        QCoreApplication::processEvents();
    }
    void cleanup() { window.reset(); }

    void standsOnTheSelectionPage()
    {
        QCOMPARE(window->size(), QSize(1020, 700));
        QCOMPARE(int(window->windowFlags()) & 0x6800, 0x6800);
        QVERIFY(qobject_cast<DialogChange *>(stack()->currentWidget()));
        QCOMPARE(stack()->indexOf(dialog()), 1);
        QCOMPARE(fake.calls().back(), std::string("UsbFinderC_GetDeviceOnLine dev"));
        QCOMPARE(fake.count("StartUsbChanged"), 1);
    }

    void goesToTheDevicePageAndBack()
    {
        openDevicePage();
        QCOMPARE(stack()->currentWidget(), static_cast<QWidget *>(dialog()));
        QVERIFY(UiArmed);
        QCOMPARE(fake.count("StartUsbChanged"), 2);
        button("SensorButton")->click();
        fake.clearCalls();
        OnDevicePage = 1;
        ReadStartedOnline = true;
        button("UpArrow")->click();
        QVERIFY(qobject_cast<DialogChange *>(stack()->currentWidget()));
        QCOMPARE(fake.calls().front(), std::string("UsbServer_SetPCDriverStatus 0"));
        QCOMPARE(fake.count("UsbServer_Exit"), 2);
        QCOMPARE(fake.count("StartUsbChanged"), 1);
        QCOMPARE(int(OnDevicePage), 0);
        QVERIFY(!ReadStartedOnline);
        QVERIFY(qobject_cast<Buttoninterface *>(pages()->currentWidget()));
        QTRY_VERIFY(fake.idle());
    }

    void theColumnShowsWhereOneIs_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("pageClass");
        const char *const ways[][2] = {{"ButtonMain", "Buttoninterface"}, {"SensorButton", "Sensor"},
                                       {"MacroButton", "Macro"},          {"LightsButton", "LampLight"},
                                       {"Advanced", "Advanced"},          {"FormSetting", "FormSetting"}};
        for (const auto &way : ways)
            QTest::newRow(way[0]) << way[0] << way[1];
    }
    void theColumnShowsWhereOneIs()
    {
        QFETCH(QString, name);
        QFETCH(QString, pageClass);
        openDevicePage();
        button(name)->click();
        button(name)->click(); // a second click must not let it go
        QCOMPARE(QString(pages()->currentWidget()->metaObject()->className()), pageClass);
        for (const char *way :
             {"ButtonMain", "SensorButton", "MacroButton", "LightsButton", "Advanced", "FormSetting"})
            QCOMPARE(button(way)->isChecked(), name == way);
        QCOMPARE(button("PreButton")->isChecked(), name == "ButtonMain");
    }

    void recordingLocksTheColumn()
    {
        const QStringList locked = {"PreButton",    "Advanced",    "ButtonMain", "SensorButton",
                                    "LightsButton", "MacroButton", "FormSetting"};
        for (const int index : {0, 5, 1}) {
            emit PostMsg::instance()->SigStartRecord(index);
            for (const QString &name : locked)
                QCOMPARE(button(name)->isEnabled(), index == 1);
            QVERIFY(button("UpArrow")->isEnabled());
        }
    }

    void battery_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<bool>("asText");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("color");
        QTest::newRow("15") << 15 << true << "15%"
                            << "152, 43, 34";
        QTest::newRow("16") << 16 << true << "16%"
                            << "0, 255, 153";
        QTest::newRow("100") << 100 << false << "100"
                             << "0, 255, 153";
    }
    void battery()
    {
        QFETCH(int, level);
        QFETCH(bool, asText);
        QFETCH(QString, text);
        QFETCH(QString, color);
        fixture::emitElsewhere([=] { emit PostMsg::instance()->SigBattery(level == 15, level, asText); });
        auto *bar = dialog()->findChild<QProgressBar *>("progressBar");
        QCOMPARE(bar->value(), level);
        QCOMPARE(bar->styleSheet(),
                 QString("#progressBar{border: none;background-color: transparent;}#progressBar::chunk "
                         "{background-color: rgb(%1);}")
                     .arg(color));
        QCOMPARE(dialog()->findChild<QLabel *>("label_2")->text(), text);
        QCOMPARE(dialog()->findChild<QLabel *>("label")->isHidden(), level != 15);
    }

    void theConnectionsIcon()
    {
        auto *icon = dialog()->findChild<QLabel *>("label_4");
        emit PostMsg::instance()->SigIsUsb(true, true);
        QVERIFY(icon->styleSheet().contains("OnLineUsb.png"));
        emit PostMsg::instance()->SigIsUsb(false, false);
        QVERIFY(icon->styleSheet().contains("OnLineWifi.png"));
    }

    void escapeClosesNothing()
    {
        openDevicePage();
        for (QWidget *target : {static_cast<QWidget *>(window.get()), static_cast<QWidget *>(dialog())}) {
            for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_F12})
                QTest::keyClick(target, key);
            QVERIFY(window->isVisible());
            QVERIFY(dialog()->isVisible());
        }
        QSignalSpy enter(PostMsg::instance(), &PostMsg::SigEnterKey);
        QTest::keyClick(window.get(), Qt::Key_Return);
        QTest::keyClick(window.get(), Qt::Key_Enter);
        QCOMPARE(enter.count(), 2);
    }

    void spaceDecidesForTheOnlyDevice()
    {
        PairingTarget.reset();
        MacroRecording = true;
        QTest::keyClick(window.get(), Qt::Key_Space);
        QVERIFY(!PairingTarget);
        QSignalSpy enter(PostMsg::instance(), &PostMsg::SigEnterKey);
        QTest::keyClick(window.get(), Qt::Key_Return);
        QCOMPARE(enter.count(), 0);
        MacroRecording = false;
        QTest::keyClick(window.get(), Qt::Key_Space);
        QVERIFY(PairingTarget && PairingTarget->DevicePath == "dev");
    }

    void theMouseMovesTheWindow()
    {
        window->move(40, 30);
        const auto send = [this](QEvent::Type type, const QPoint &at, Qt::MouseButton button) {
            QMouseEvent event(type, window->mapFromGlobal(at), at, button, button, Qt::NoModifier);
            QCoreApplication::sendEvent(window.get(), &event);
        };
        const QPoint start = window->pos();
        send(QEvent::MouseButtonPress, {100, 60}, Qt::RightButton);
        send(QEvent::MouseMove, {150, 90}, Qt::RightButton);
        QCOMPARE(window->pos(), start);
        send(QEvent::MouseButtonPress, {100, 60}, Qt::LeftButton);
        send(QEvent::MouseMove, {150, 90}, Qt::LeftButton);
        QCOMPARE(window->pos(), start + QPoint(50, 30));
        send(QEvent::MouseButtonRelease, {150, 90}, Qt::LeftButton);
        send(QEvent::MouseMove, {250, 190}, Qt::LeftButton);
        QCOMPARE(window->pos(), start + QPoint(50, 30));
    }

    void theNoticeFindsTheControlPutBack()
    {
        openDevicePage();
        button("SensorButton")->click();
        FlashDataMap map{};
        map.ReportRate = 1;
        emit PostMsg::instance()->SigUpDataSensorUIB(map);
        fake.setOnline("dev", false);
        bool wasBack = false;
        fixture::whenModal<MouseOffLine>([&](MouseOffLine *notice) {
            wasBack = rate(Rate1000)->isChecked();
            notice->on_NewHong_clicked();
        });
        rate(0)->click();
        QTRY_VERIFY(wasBack);
        QVERIFY(AwaitingMouse);
        QVERIFY(RestartWorker);
        QTRY_VERIFY(!QApplication::activeModalWidget());
    }

    void oneNoticeAtATime()
    {
        int seen = 0;
        fixture::whenModal<MouseOffLine>([&seen](MouseOffLine *notice) {
            emit PostMsg::instance()->SigMouseOffLineo(0);
            ++seen;
            notice->on_NewHong_clicked();
        });
        emit PostMsg::instance()->SigMouseOffLineo(0);
        emit PostMsg::instance()->SigMouseOffLineo(1);
        QTRY_COMPARE(seen, 1);
        QTRY_VERIFY(!QApplication::activeModalWidget());
        for (int i = 0; i < 20; ++i)
            QCoreApplication::processEvents();
        QVERIFY(!QApplication::activeModalWidget());
    }

    void aDeviceIsReadAndShown()
    {
        Watchdog watchdog;
        FlashDataMap map{};
        map.ReportRate = 4;
        map.DpiStageCount = 6;
        fake.setParsed(map);
        auto *page = window->findChild<DialogChange *>();
        QTRY_VERIFY(page->findChild<QToolButton *>("btn0"));
        fake.setHook([this](const std::string &call) {
            if (call == "UsbServer_ReadAllFlashData")
                fake.deliver(8, 0, std::vector<uint8_t>(6912));
        });
        QTest::mouseClick(page->findChild<QToolButton *>("btn0"), Qt::LeftButton);
        QTRY_VERIFY(rate(1)->isChecked());
        QTRY_VERIFY(DataLoaded);
        QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activeModalWidget(), 10000);
        QVERIFY(!SensorPageLoaded); // the end of the wait has taken notice of it
        QVERIFY(!watchdog.barked());
    }

    void profilesAreListed()
    {
        auto *box = dialog()->findChild<QComboBox *>("ProjectChoose");
        fixture::emitElsewhere([] { emit PostMsg::instance()->SigUpDataConfigUI(4, 2, true); });
        QCOMPARE(box->count(), 4);
        QCOMPARE(box->currentIndex(), 2);
        QVERIFY(box->isEnabled());
        QVERIFY(box->itemText(3).endsWith("4"));
        QVERIFY(!box->itemText(3).contains("1"));
        fixture::emitElsewhere([] { emit PostMsg::instance()->SigUpDataConfigUI(0, 0, false); });
        QCOMPARE(box->count(), 1);
        QVERIFY(!box->isEnabled());
    }

    void aProfileNeedsTheMouse()
    {
        openDevicePage();
        auto *box = dialog()->findChild<QComboBox *>("ProjectChoose");
        fixture::emitElsewhere([] { emit PostMsg::instance()->SigUpDataConfigUI(4, 2, true); });
        box->setCurrentIndex(1);
        emit box->activated(1);
        QCOMPARE(fake.count("UsbServer_SetCurrentConfig"), 1);
        fake.setOnline("dev", false);
        fixture::whenModal<MouseOffLine>([](MouseOffLine *notice) { notice->on_NewHong_clicked(); });
        box->setCurrentIndex(3);
        emit box->activated(3);
        QCOMPARE(box->currentIndex(), 1);
        QCOMPARE(fake.count("UsbServer_SetCurrentConfig"), 1);
        QTRY_VERIFY(!QApplication::activeModalWidget());
    }

    void aResetThatIsNotConfirmedLeavesEverything()
    {
        openDevicePage();
        fake.clearCalls();
        fixture::whenModal<ContainReset>([](ContainReset *question) { question->on_Cancel_clicked(); });
        button("Reset")->click();
        QCOMPARE(fake.count("UsbServer_SetClearSetting"), 0);
        QVERIFY(!SettingsBusy);
        QVERIFY(Worker::instance()->checkTimer().isActive());
    }

    void aResetRunsInOrder()
    {
        openDevicePage();
        OnDevicePage = 1;
        fake.clearCalls();
        bool quiet = false;
        fake.setHook([](const std::string &call) {
            if (call == "UsbServer_SetClearSetting")
                LightPageLoaded = SensorPageLoaded = ButtonPageLoaded = true;
        });
        fixture::whenModal<ContainReset>([&quiet](ContainReset *question) {
            fixture::whenModal<UpDataParam>([&quiet](UpDataParam *) {
                quiet = SettingsBusy && !Worker::instance()->checkTimer().isActive();
            });
            question->on_OK_clicked();
        });
        button("Reset")->click();
        QVERIFY(quiet);
        QVERIFY(!SettingsBusy);
        QVERIFY(Worker::instance()->checkTimer().isActive());
        const std::vector<std::string> calls = fake.calls();
        const auto at = [&calls](const char *name) { return std::find(calls.begin(), calls.end(), name); };
        QVERIFY(at("UsbServer_SetBatteryOptimizeEnable 0") < at("ProtocolDataUpdate"));
        QVERIFY(at("ProtocolDataUpdate") < at("UsbServer_SetClearSetting"));
        QVERIFY(at("UsbServer_SetClearSetting") != calls.end());
        QCOMPARE(fake.count("UsbServerC_Start"), 1);
    }

    void hidingWithoutATrayMinimises()
    {
        fake.clearCalls();
        emit PostMsg::instance()->SigChangeSize(0);
        QCOMPARE(fake.count("UsbServer_SetPCDriverStatus"), 1);
        QVERIFY(window->isVisible());
        QVERIFY(window->isMinimized());
    }

    void closingLetsTheDeviceGo()
    {
        fake.clearCalls();
        emit PostMsg::instance()->SigChangeSize(1);
        QVERIFY(!window->isVisible());
        const std::vector<std::string> calls = fake.calls();
        QCOMPARE(calls.front(), std::string("UsbServer_SetPCDriverStatus 0"));
        QCOMPARE(calls.back(), std::string("UsbServer_Exit"));
        QCOMPARE(fake.count("StopUsbChanged"), 1);
    }

    void trayReasonsDifferInTheDriverStatus()
    {
        openDevicePage();
        fake.clearCalls();
        window->on_activatedSysTrayIcon(QSystemTrayIcon::DoubleClick);
        QCOMPARE(fake.count("UsbServer_SetPCDriverStatus"), 0);
        window->on_activatedSysTrayIcon(QSystemTrayIcon::Trigger);
        QCOMPARE(fake.calls().back(), std::string("UsbServer_SetPCDriverStatus 1"));
        emit PostMsg::instance()->SigChangeMainDialog(0);
        fake.clearCalls();
        window->on_activatedSysTrayIcon(QSystemTrayIcon::Trigger);
        QCOMPARE(fake.count("UsbServer_SetPCDriverStatus"), 0);
        QTRY_VERIFY(fake.idle());
    }

    void theEndWaitsForAPassThatDelivers()
    {
        Watchdog watchdog;
        openDevicePage();
        OnDevicePage = 1;
        fake.setOnline("dev", false);
        Worker::instance()->startPass();
        window.reset();
        QVERIFY(!Worker::instance());
        QVERIFY(!watchdog.barked());
    }
};

int main(int argc, char *argv[])
{
    const ProductFolder product(smallCatalogue());
    fixture::useShippedLooks(product);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    tst_Windows test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_windows.moc"
