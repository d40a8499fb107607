// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The device page's frame: the column that leads to its pages, the battery, the connection, the background.
#include "device/ImageCache.h"
#include "environment/DataRoot.h"
#include "presentation/Notices.h"
#include "tests/support/TestMain.h"
#include "tests/widget/app/MainWindow.h"

#include <QGraphicsEffect>
#include <QLabel>
#include <QProgressBar>
#include <QScrollArea>
#include <QScrollBar>

class tst_DevicePage : public MainWindow
{
    Q_OBJECT

private:
    QWidget *strip() const { return dialog()->findChild<QWidget *>("offlineStrip"); }
    // The strip, and with it the dimmed state of the device.
    bool isAway() const
    {
        const bool told = !strip()->isHidden();
        for (const char *name : {"label_4", "BatteryButtonC", "progressBar", "label_2", "label"})
            if (bool(dialog()->findChild<QWidget *>(name)->graphicsEffect()) != told)
                qFatal("%s differs from the strip", name);
        return told;
    }
    // The only tile is clicked.
    void openOffline()
    {
        fake.setDevices({fixture::device("away", 7, Receiver8K, false)});
        fake.changeUsb();
        QTRY_VERIFY(fake.idle());
        QTRY_VERIFY(tileOfAway());
        tileOfAway()->click();
    }
    QToolButton *tileOfAway() const
    {
        const auto &tiles = window->findChild<DialogChange *>()->attached().tiles();
        const bool listed = tiles.size() == 1 && tiles.front().DevicePath == "away";
        return listed ? window->findChild<QToolButton *>("btn0") : nullptr;
    }

private slots:
    void init() { begin(); }
    void cleanup() { window.reset(); }

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

    // Seen, heard and as a tip, and the head tells it once more.
    void theColumnNamesItsPages_data()
    {
        QTest::addColumn<QString>("name");
        const char *const names[][2] = {{"ButtonMain", "Buttons"}, {"SensorButton", "Sensor"},
                                        {"MacroButton", "Macros"}, {"LightsButton", "Lighting"},
                                        {"Advanced", "Advanced"},  {"FormSetting", "Settings"}};
        for (const auto &each : names)
            QTest::newRow(each[0]) << each[1];
    }
    void theColumnNamesItsPages()
    {
        QFETCH(QString, name);
        openDevicePage();
        QToolButton *way = button(QTest::currentDataTag());
        QCOMPARE(way->text(), name);
        QCOMPARE(way->toolTip(), name);
        QCOMPARE(way->accessibleName(), name);
        way->click();
        QCOMPARE(dialog()->findChild<QLabel *>("headTitle")->text(), name);
        QVERIFY(dialog()->findChild<QLabel *>("headTitle")->isVisible());
    }

    // Nothing ends at an edge: its last line is the ground, in one color. The version stays clear of it.
    void whatAPageCutsFades_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"LightsButton", "FormSetting"})
            QTest::newRow(way) << way;
    }
    void whatAPageCutsFades()
    {
        QFETCH(QString, way);
        openDevicePage();
        emit PostMsg::instance()->SigUpDataLightUIA(FlashDataMap{});
        button(way)->click();
        auto *const area = pages()->currentWidget()->findChild<QScrollArea *>("scrollArea");
        QScrollBar *const bar = area->verticalScrollBar();
        const auto isCut = [&](int y) {
            const QImage shown = dialog()->grab().toImage();
            const QPoint at = area->viewport()->mapTo(dialog(), QPoint(0, y));
            for (int x = 0; x < area->viewport()->width(); ++x)
                if (shown.pixel(at + QPoint(x, 0)) != shown.pixel(at))
                    return true;
            return false;
        };
        const auto fades = [&] {
            QString names;
            for (const char *name : {"FadeTop", "FadeBottom"})
                if (area->findChild<QLabel *>(name)->isVisible())
                    names += QLatin1String(name) + ' ';
            return names;
        };
        QVERIFY(bar->maximum() > 100);
        QCOMPARE(fades(), QString("FadeBottom "));
        for (const int value : {25, 60, 100}) {
            bar->setValue(value);
            QCOMPARE(fades(), QString("FadeTop FadeBottom "));
            QVERIFY(!isCut(0));
            QVERIFY(!isCut(area->viewport()->height() - 1));
        }
        const auto *const version = area->widget()->findChild<QLabel *>("label", Qt::FindDirectChildrenOnly);
        QCOMPARE(bool(version), way == "FormSetting");
        if (version)
            QVERIFY(version->mapTo(area, version->rect().bottomLeft()).y() <
                    area->findChild<QLabel *>("FadeBottom")->y());
        bar->setValue(bar->maximum());
        QCOMPARE(fades(), QString("FadeTop "));
    }

    // The column's mark and the panels of a button fade into place; nothing is left behind, and nothing moves
    // on a page that is entered unseen.
    void whatSwitchesMoves()
    {
        const QTemporaryDir config; // asks for nothing
        qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
        const auto cover = [this] { return dialog()->findChild<QWidget *>("MotionCover"); };
        openDevicePage();
        QVERIFY(!cover());
        button("SensorButton")->click();
        QVERIFY(cover() && cover()->isVisible());
        QVERIFY(cover()->geometry().contains(button("SensorButton")->geometry()));
        QTRY_VERIFY(!cover());
        button("ButtonMain")->click();
        QTRY_VERIFY(!cover());
        button("RightKey")->click();
        QVERIFY(cover() && cover()->isVisible());
        QTRY_VERIFY(!cover());
        button("FunctionsBack")->click();
        QVERIFY(cover() && cover()->isVisible());
        QTRY_VERIFY(!cover());
        qunsetenv("XDG_CONFIG_HOME");
        QTRY_VERIFY(fake.idle());
    }

    void theHeadTellsTheDevice_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("drive");
        QTest::addColumn<QString>("text");
        QTest::newRow("receiver") << int(Receiver8K) << 0 << "Model 6 · Profile 1 · 8 kHz receiver";
        QTest::newRow("slow receiver") << int(Receiver1K) << 0 << "Model 6 · Profile 1 · 1 kHz receiver";
        QTest::newRow("cable") << int(fixture::CableKind) << 0 << "Model 6 · Profile 1 · Cable";
        QTest::newRow("no section") << int(Receiver8K) << 99 << "Unknown model · Profile 1 · 8 kHz receiver";
    }
    void theHeadTellsTheDevice()
    {
        QFETCH(int, kind);
        QFETCH(int, drive);
        QFETCH(QString, text);
        DeviceAllInfo info = fixture::info("dev", uint16_t(kind));
        info.DriveIndex = drive;
        info.Online = true;
        fixture::select(info);
        emit PostMsg::instance()->SigSelectMouseInfo(info);
        QTRY_VERIFY(fake.idle());
        emit PostMsg::instance()->SigChangeMainDialog(1);
        auto *line = dialog()->findChild<QLabel *>("headDevice");
        QTRY_COMPARE(line->text(), text);
        emit PostMsg::instance()->SigAddConfig("Profile 3");
        QCOMPARE(line->text(), text.replace("Profile 1", "Profile 3"));
    }

    // The end of a line that has no room is not lost.
    void theHeadLeavesTheStripItsPlace()
    {
        openOffline();
        QTRY_VERIFY(isAway());
        auto *head = dialog()->findChild<QWidget *>("deviceHead");
        auto *line = dialog()->findChild<QLabel *>("headDevice");
        QVERIFY(head->geometry().right() < strip()->geometry().left());
        emit PostMsg::instance()->SigAddConfig(QString(100, 'P'));
        QVERIFY(line->text().endsWith(QChar(0x2026)));
        QVERIFY(line->toolTip().contains(QString(100, 'P')));
        fake.setOnline("away", true);
        QTRY_VERIFY(!isAway());
        QCOMPARE(head->geometry().right(), 719);
    }

    void recordingLocksTheColumn()
    {
        openDevicePage();
        const QStringList locked = {"PreButton",    "Advanced",    "ButtonMain", "SensorButton",
                                    "LightsButton", "MacroButton", "FormSetting"};
        for (const int index : {0, 5, 1}) {
            emit PostMsg::instance()->SigStartRecord(index);
            for (const QString &name : locked)
                QCOMPARE(button(name)->isEnabled(), index == 1);
            QVERIFY(button("UpArrow")->isEnabled());
            for (const char *way : {"MacroButton", "SensorButton"})
                QVERIFY(button(way)->styleSheet().contains(
                    QString("disabled{border-image: url(%1Dialog/%2Off.png)")
                        .arg(applicationFolder() + "/Picture/", way)));
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
        fixture::emitOnOtherThread([=] { emit PostMsg::instance()->SigBattery(level == 15, level, asText); });
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

    // ---- A mouse that is off line

    void anOfflineMouseIsToldInTheHead_data()
    {
        QTest::addColumn<bool>("cached");
        QTest::newRow("without an image") << false;
        QTest::newRow("from its cached image") << true;
    }
    void anOfflineMouseIsToldInTheHead()
    {
        QFETCH(bool, cached);
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigBattery(true, 55, true); });
        QVERIFY(!isAway());
        const QString image = imageFileName(fixture::Cid, 7);
        if (cached)
            ImageCacheWrite(image, FlashDataMap{});
        else
            QFile::remove(dataRoot() + "/Device_Info/" + image);
        openOffline();
        QTRY_VERIFY(fake.connected() && fake.idle());
        QTRY_VERIFY(isAway());
        QCOMPARE(strip()->findChild<QLabel *>("offlineText")->text(),
                 QString("The mouse is offline. Move it to wake it up."));
        QCOMPARE(dialog()->findChild<QLabel *>("label_2")->text(), QString());
        QCOMPARE(dialog()->findChild<QProgressBar *>("progressBar")->value(), 0);
        QVERIFY(dialog()->findChild<QLabel *>("label")->isHidden());
        QVERIFY(!QApplication::activeModalWidget());
        fake.setOnline("away", true); // the watch finds it
        QTRY_VERIFY(!isAway());
    }

    void theStripStandsBesideTheConnection()
    {
        openOffline();
        QTRY_VERIFY(isAway());
        const QRect place = strip()->geometry();
        QCOMPARE(place.right(), 719);
        QVERIFY(place.left() > 153);
        QCOMPARE(place.center().y(), dialog()->findChild<QLabel *>("label_4")->geometry().center().y());
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(strip()->geometry(), place);
    }

    void aMouseThatIsLostIsToldUntilItAnswers()
    {
        openDevicePage();
        bool told = false;
        fixture::whenModal<MouseOffLine>([&](MouseOffLine *notice) {
            told = true;
            notice->on_CloseButton_clicked();
        });
        emit PostMsg::instance()->SigMouseOffLineo(0);
        QVERIFY(isAway());
        QTRY_VERIFY(told);
        QVERIFY(isAway());
        emit PostMsg::instance()->SigCloseOffOnline();
        QVERIFY(!isAway());
    }

    void theNextDeviceIsToldByItself()
    {
        DeviceAllInfo selected = fixture::info("dev", Receiver8K);
        for (const bool online : {false, true}) {
            selected.Online = online;
            emit PostMsg::instance()->SigSelectMouseInfo(selected);
            QCOMPARE(isAway(), !online);
        }
        // A stale watch for the device before does not count.
        AwaitingMouse = true;
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigForm(); });
        QCoreApplication::sendPostedEvents();
        QVERIFY(!isAway());
        SelectedDevice::setOnline(false);
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigForm(); });
        QTRY_VERIFY(isAway());
    }

    void aPageBringsTheBackgroundBack()
    {
        openDevicePage();
        auto *ground = dialog()->findChild<QFrame *>("frame_2");
        const QString sheet = ground->styleSheet();
        QVERIFY(sheet.contains("BackGround.png"));
        for (const char *way : {"SensorButton", "LightsButton"}) {
            ground->setStyleSheet({});
            button("UpArrow")->hide();
            button(way)->click();
            QCOMPARE(ground->styleSheet(), sheet);
            QVERIFY(button("UpArrow")->isVisible());
        }
    }

    // They are reached by name.
    void slotsThatDoNothing()
    {
        openDevicePage();
        const QWidget *shown = pages()->currentWidget();
        fake.clearCalls();
        for (const char *slot :
             {"on_SetButton_clicked", "on_MouseB_clicked", "on_MouseC_clicked", "on_PreButton_clicked"})
            QVERIFY2(QMetaObject::invokeMethod(dialog(), slot), slot);
        QVERIFY(QMetaObject::invokeMethod(dialog(), "SlotMouseIndex", Q_ARG(int, 7)));
        QVERIFY(QMetaObject::invokeMethod(window.get(), "SlotUpPageLight"));
        QVERIFY(QMetaObject::invokeMethod(window->findChild<DialogChange *>(), "on_label_linkHovered",
                                          Q_ARG(QString, "x")));
        QCOMPARE(pages()->currentWidget(), shown);
        QVERIFY(fake.calls().empty());
    }

    void whatThePagesTellEachOther_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("said");
        QTest::newRow("buttons") << "ButtonMain" << QByteArray(SIGNAL(SigAddMacroButton()));
        QTest::newRow("advanced") << "Advanced" << QByteArray(SIGNAL(SigtVis(int)));
        QTest::newRow("minimise") << "MinButton" << QByteArray(SIGNAL(SigChangeSize(int)));
    }
    void whatThePagesTellEachOther()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, said);
        openDevicePage();
        QSignalSpy spy(PostMsg::instance(), said.constData());
        button(name)->click();
        QCOMPARE(spy.count(), 1);
        QVERIFY(spy.first().isEmpty() || spy.first().first().toInt() == 0);
    }

    // Leaving tells the device first, then lets go, then changes the page.
    void leavingKeepsItsOrder()
    {
        openDevicePage();
        SelectedDevice::setImageName("left.bin");
        fake.clearCalls();
        QStringList said;
        QObject context;
        const auto note = [this, &said](const QString &name) {
            said << name + '/' + QString::number(fake.count("UsbServer_Exit"));
        };
        connect(PostMsg::instance(), &PostMsg::SigChangeMainDialog, &context,
                [note](int index) { note(QString("page %1").arg(index)); });
        connect(PostMsg::instance(), &PostMsg::SigSetMacroPage, &context, [note] { note("macro page"); });
        button("UpArrow")->click();
        QCOMPARE(fake.calls().front(), std::string("UsbServer_SetPCDriverStatus 0"));
        QCOMPARE(said, (QStringList{"page 0/2", "macro page/2"}));
        QVERIFY(QFile::exists(dataRoot() + "/Device_Info/left.bin"));
        QTRY_VERIFY(fake.idle());
    }
};

TEST_CLASS(tst_DevicePage, fixture::ShippedLooks)

#include "tst_devicepage.moc"
