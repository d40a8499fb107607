// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The main window and the device page, with the real worker on the scripted layer.
#include "binding/Buttoninterface.h"
#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "device/Worker.h"
#include "presentation/Notices.h"
#include "presentation/UpDataParam.h"
#include "presentation/language/LanguageTables.h"
#include "sensor/Sensor.h"
#include "sensor/SensorRate.h"
#include "service/Match.h"
#include "tests/support/TestMain.h"
#include "tests/support/Watchdog.h"
#include "tests/widget/app/MainWindow.h"

#include <QComboBox>
#include <QPushButton>

class tst_Windows : public MainWindow
{
    Q_OBJECT

private:
    QToolButton *rate(int index) const { return dialog()->findChild<SensorRate *>()->button(index); }

private slots:
    void init() { begin(); }
    void cleanup() { window.reset(); }

    void standsOnTheSelectionPage()
    {
        QCOMPARE(window->size(), QSize(1020, 700));
        QCOMPARE(int(window->windowFlags()) & 0x6800, 0x6800);
        QVERIFY(qobject_cast<DialogChange *>(stack()->currentWidget()));
        QCOMPARE(stack()->indexOf(dialog()), 1);
        QCOMPARE(fake.calls().back(), std::string("UsbFinderC_GetDeviceOnLineWithUsbAddress dev"));
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

    // Names and tool tips of every page, also of one that is not shown.
    void aLanguageReachesTheNames()
    {
        const auto nameOf = [this](const char *widget) {
            return window->findChild<QWidget *>(widget)->accessibleName();
        };
        QCOMPARE(nameOf("btn0"), QString("Model 6, 8 kHz receiver, online"));
        QCOMPARE(nameOf("AddLevelA"), QString("Higher DPI"));
        QCOMPARE(nameOf("ProjectChoose"), QString("Profile"));
        QCOMPARE(button("MinButton")->toolTip(), QString("Minimize"));
        {
            const fixture::OtherLanguage other(
                R"({"mouse":{"common":{"Minimize":"Small"},"home":{"HeadModel":"Mouse %1","DeviceOnline":"%1 %2 is there"},
                             "key":{"configName":"Set"},"sensor":{"HigherDPI":"More","StageName":"Step %1"}}})");
            emit PostMsg::instance()->SigAllLanguage(0);
        }
        QCOMPARE(nameOf("btn0"), QString("Mouse 6  is there"));
        QCOMPARE(nameOf("AddLevelA"), QString("More"));
        QCOMPARE(nameOf("RedButton"), QString("Step 3"));
        QCOMPARE(nameOf("ProjectChoose"), QString("Set"));
        for (const QWidget *page : {static_cast<QWidget *>(dialog()), stack()->widget(0)}) {
            QCOMPARE(page->findChild<QToolButton *>("MinButton")->accessibleName(), QString("Small"));
            QCOMPARE(page->findChild<QToolButton *>("MinButton")->toolTip(), QString("Small"));
        }
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
        const AttachedDevices &attached = window->findChild<DialogChange *>()->attached();
        MacroRecording = true;
        QTest::keyClick(window.get(), Qt::Key_Space);
        QVERIFY(!attached.pairingTarget());
        QSignalSpy enter(PostMsg::instance(), &PostMsg::SigEnterKey);
        QTest::keyClick(window.get(), Qt::Key_Return);
        QCOMPARE(enter.count(), 0);
        MacroRecording = false;
        QString target;
        fixture::whenModal<Match>([&target](Match *pairing) {
            target = pairing->target().DevicePath;
            pairing->WindowClosedSet();
        });
        QTest::keyClick(window.get(), Qt::Key_Space);
        QCOMPARE(target, QString("dev"));
        QVERIFY(attached.pairingTarget() && attached.pairingTarget()->DevicePath == "dev");
        QTRY_VERIFY(fake.idle());
    }

    // No control takes the key before the user has moved to one.
    void spaceReachesTheWindowOnAFreshPage()
    {
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        int opened = 0;
        for (const bool devicePage : {false, true}) {
            if (devicePage) {
                openDevicePage();
                OnDevicePage = 1;
            }
            fixture::whenModal<Match>([&opened](Match *pairing) {
                ++opened;
                pairing->WindowClosedSet();
            });
            QTest::keyClick(window->windowHandle(), Qt::Key_Space);
            QCOMPARE(opened, devicePage ? 2 : 1);
            QTRY_VERIFY(fake.idle());
        }
        // Held down, the key does not open it again.
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ", true);
        QCoreApplication::sendEvent(window.get(), &repeated);
        QCOMPARE(opened, 2);
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
        QVERIFY(QApplication::focusWidget() && QApplication::focusWidget() != dialog());
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
        OnDevicePage = 1; // on the page of the tiles the worker ends its watch
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
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigUpDataConfigUI(4, 2, true); });
        QCOMPARE(box->count(), 4);
        QCOMPARE(box->currentIndex(), 2);
        QVERIFY(box->isEnabled());
        QVERIFY(box->itemText(3).endsWith("4"));
        QVERIFY(!box->itemText(3).contains("1"));
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigUpDataConfigUI(0, 0, false); });
        QCOMPARE(box->count(), 1);
        QVERIFY(!box->isEnabled());
    }

    void aProfileNeedsTheMouse()
    {
        openDevicePage();
        auto *box = dialog()->findChild<QComboBox *>("ProjectChoose");
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigUpDataConfigUI(4, 2, true); });
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

    void theFormsButtonCloses()
    {
        auto *closing = window->findChild<QPushButton *>("pushButton");
        QVERIFY(closing && closing->isHidden());
        closing->click();
        QVERIFY(!window->isVisible());
    }

    void aNewWindowTellsThePagesTheLanguage()
    {
        window.reset();
        storeLanguage(UserStore::instance(), 0);
        QStringList told;
        QObject context;
        PostMsg *const hub = PostMsg::instance();
        connect(hub, &PostMsg::SigLanguageSameA, &context,
                [&told](int index) { told << QString("A%1").arg(index); });
        connect(hub, &PostMsg::SigLanguageSameB, &context,
                [&told](int index) { told << QString("B%1").arg(index); });
        connect(hub, &PostMsg::SigAllLanguage, &context,
                [&told](int index) { told << QString("all %1").arg(index); });
        window = std::make_unique<DialogMain>();
        QCOMPARE(told, (QStringList{"A0", "B0", "all 0"}));
        QTRY_VERIFY(fake.idle());
    }

    void spaceOnTheDevicePageTakesTheConnectionBack()
    {
        openDevicePage();
        OnDevicePage = 1;
        fake.clearCalls();
        QPoint place;
        const auto close = [&place](Match *pairing) {
            place = pairing->pos();
            pairing->WindowClosedSet();
        };
        fixture::whenModal<Match>(close);
        QTest::keyClick(window.get(), Qt::Key_Space);
        const QSize room = window->size() - Match().size();
        QCOMPARE(place, window->pos() + QPoint(room.width() / 2, room.height() / 2));
        QCOMPARE(fake.count("UsbServerC_Start"), 1);
        QCOMPARE(fake.connectedPath(), std::string("dev"));
        emit PostMsg::instance()->SigChangeMainDialog(0);
        QTRY_VERIFY(fake.idle());
        fake.clearCalls();
        fixture::whenModal<Match>(close);
        QTest::keyClick(window.get(), Qt::Key_Space);
        QCOMPARE(fake.count("UsbServerC_Start"), 0);
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

TEST_CLASS(tst_Windows, fixture::ShippedLooks)

#include "tst_windows.moc"
