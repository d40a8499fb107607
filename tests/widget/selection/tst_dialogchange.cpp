// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The selection page: its tiles for any set of devices, the carousel and the texts.
#include "tests/support/Eventually.h"
#include "tests/support/TestMain.h"
#include "tests/widget/selection/SelectionPage.h"

#include <QCheckBox>

using fixture::CableKind;

class tst_DialogChange : public SelectionPage
{
    Q_OBJECT

private:
    std::unique_ptr<QWidget> window; // around the page where the test needs one

private slots:
    void init() { begin(); }
    void cleanup()
    {
        end();
        window.reset();
    }

    void aSearchThatEndsBeforeTheFirstPictureSavesThePrompt()
    {
        fake.setDevices(devices(1));
        page = std::make_unique<DialogChange>();
        window = std::make_unique<QWidget>();
        page->setParent(window.get());
        page->show();
        QVERIFY(!shows("Repair"));
        QVERIFY(shows("label"));
        window->show();
        QVERIFY(support::eventually([this] { return fake.idle(); })); // no event is handled meanwhile
        settle();
        QCOMPARE(tileCount(), 1);
        QTRY_VERIFY(!tile(0)->styleSheet().isEmpty());
        tile(0)->grab();
        QCOMPARE(child<QLabel>("label")->styleSheet(), QString());
        plug({});
        QTRY_VERIFY(child<QLabel>("label")->styleSheet().contains("Prompt.png"));
    }

    void anyNumberOfDevices_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("pages"); // tiles on each
        QTest::addColumn<QString>("arrows");
        QTest::newRow("0") << 0 << ""
                           << "--";
        QTest::newRow("1") << 1 << "1"
                           << "--";
        QTest::newRow("2") << 2 << "2"
                           << "--";
        QTest::newRow("3") << 3 << "3"
                           << "--";
        QTest::newRow("4") << 4 << "31"
                           << "->";
        QTest::newRow("5") << 5 << "32"
                           << "->";
        QTest::newRow("6") << 6 << "33"
                           << "->";
        QTest::newRow("7") << 7 << "331"
                           << "->";
    }
    void anyNumberOfDevices()
    {
        QFETCH(int, count);
        QFETCH(QString, pages);
        QFETCH(QString, arrows);
        build();
        plug(devices(count));
        QString seen;
        for (int i = 0; i < stack()->count(); ++i)
            seen += QString::number(stack()->widget(i)->findChildren<mytoolButtonEnter *>().size());
        QCOMPARE(seen, pages);
        QCOMPARE(tileCount(), count);
        QCOMPARE(this->arrows(), arrows);
        QCOMPARE(shows("label_2"), count == 0);
        QCOMPARE(shows("label_3"), count != 0);
        QCOMPARE(int(attached().size()), count);
        QCOMPARE(int(page->attached().all().size()), count);
    }

    void geometry_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("indicatorX");
        QTest::addColumn<int>("badgeX");
        QTest::newRow("1 of 1") << 1 << 0 << 305 << 530 << 312;
        QTest::newRow("1 of 2") << 2 << 0 << 135 << 360 << 142;
        QTest::newRow("2 of 2") << 2 << 1 << 445 << 665 << 452;
        QTest::newRow("1 of 3") << 3 << 0 << 0 << 225 << 7;
        QTest::newRow("2 of 3") << 3 << 1 << 300 << 525 << 307;
        QTest::newRow("3 of 3") << 3 << 2 << 600 << 825 << 607;
        QTest::newRow("4th") << 4 << 3 << 305 << 530 << 312;
        QTest::newRow("5th of 5") << 5 << 4 << 445 << 665 << 452;
    }
    void geometry()
    {
        QFETCH(int, count);
        QFETCH(int, index);
        QFETCH(int, x);
        QFETCH(int, indicatorX);
        QFETCH(int, badgeX);
        build();
        plug(devices(count));
        QCOMPARE(tile(index)->geometry(), QRect(x, 0, 284, 360));
        const QString number = QString::number(index);
        QCOMPARE(child<QLabel>("UsbWifi" + number)->geometry(), QRect(indicatorX, 20, 32, 32));
        QCOMPARE(child<QLabel>("label" + number)->geometry(), QRect(indicatorX, 20, 32, 32));
        QCOMPARE(child<QLabel>("Rate" + number)->geometry(), QRect(badgeX, 10, 42, 26));
    }

    void aKindWithoutABadgeNamesNoPicture()
    {
        build();
        plug({fixture::device("w", 8, CableKind), fixture::device("x", 7, CableKind - 1)});
        QVERIFY(!child<QLabel>("Rate0")->isHidden());
        QVERIFY(child<QLabel>("Rate1")->isHidden());
        QCOMPARE(child<QLabel>("Rate1")->styleSheet(), QString());
    }

    void aTileShowsItsDevice()
    {
        FakeDevice strange = fixture::device("x", 99, Receiver1K);
        FakeDevice away = fixture::device("y", 7, Receiver8K, false);
        build();
        plug({fixture::device("w", 8, CableKind), strange, away});
        QVERIFY(tile(0)->styleSheet().contains("OnLine2.png"));
        QVERIFY(child<QLabel>("UsbWifi0")->styleSheet().contains("OnLineUsb.png"));
        QVERIFY(tile(1)->styleSheet().contains("Unknow.png"));
        QVERIFY(!child<QLabel>("UsbWifi1")->isHidden());
        QVERIFY(child<QLabel>("label1")->isHidden());
        QVERIFY(tile(2)->styleSheet().contains("DisOnlin1.png"));
        QVERIFY(child<QLabel>("UsbWifi2")->isHidden());
        QVERIFY(!child<QLabel>("label2")->isHidden());
        QCOMPARE(child<QLabel>("label2")->toolTip(),
                 language::text(language::Section::infoTips, "DialogOffline", 0) + '\n' +
                     language::text(language::Section::home, "PairTips_z", 0));
        QVERIFY(child<QLabel>("Rate2")->styleSheet().contains("8KHz.png"));
        QCOMPARE(tile(0)->accessibleName(), QString("Model 8, Cable, online"));
        QCOMPARE(tile(1)->accessibleName(), QString("Unknown model, 1 kHz receiver"));
        QCOMPARE(tile(2)->accessibleName(), QString("Model 7, 8 kHz receiver, offline"));
    }

    void enterOpensATileUnlessTheRepairWantsIt()
    {
        build();
        plug(devices(1));
        page->activateWindow();
        const QSignalSpy opened(PostMsg::instance(), &PostMsg::SigSelectMouseInfo);
        tile(0)->setFocus(Qt::TabFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), static_cast<QWidget *>(tile(0)));
        child<QToolButton>("Repair")->show();
        QTest::keyClick(tile(0), Qt::Key_Return);
        QCOMPARE(opened.count(), 0);
        child<QToolButton>("Repair")->hide();
        QTest::keyClick(tile(0), Qt::Key_Return);
        QTRY_COMPARE(opened.count(), 1);
    }

    // The tiles of a page are made anew when their number changes.
    void theFocusStaysOnTheTiles_data()
    {
        QTest::addColumn<bool>("isHidden");
        QTest::newRow("on the desktop") << false;
        QTest::newRow("in the tray") << true;
    }
    void theFocusStaysOnTheTiles()
    {
        QFETCH(bool, isHidden);
        build();
        window = std::make_unique<QWidget>();
        page->setParent(window.get());
        page->show(); // the page is shown, whatever its window is
        window->show();
        const auto isOn = [&](int index) { return page->window()->focusWidget() == tile(index); };
        plug(devices(2));
        tile(1)->setFocus();
        window->setVisible(!isHidden);
        plug(devices(3));
        QVERIFY(isOn(1));
        plug(devices(5));
        QVERIFY(isOn(1));
        plug(devices(1));
        QVERIFY(isOn(0));
    }

    void theFocusComesToTheTilesBehindAnUnplugging()
    {
        build();
        page->setFocus();
        plug(devices(1));
        QCOMPARE(page->window()->focusWidget(), static_cast<QWidget *>(page.get()));
        page->setUnplugged(true);
        const QString unplugged = page->accessibleName();
        plug(devices(2));
        QCOMPARE(page->window()->focusWidget(), static_cast<QWidget *>(tile(0)));
        QCOMPARE(tile(0)->accessibleDescription(), unplugged);
        QCOMPARE(page->accessibleName(), unplugged);
        QCOMPARE(tile(1)->accessibleDescription(), QString());
        plug(devices(3)); // it was told once
        QCOMPARE(page->window()->focusWidget(), static_cast<QWidget *>(tile(0)));
        for (int i = 0; i < 3; ++i)
            QCOMPARE(tile(i)->accessibleDescription(), QString());
    }

    // The page has told it by then, and the tile may be that of the device that comes back.
    void theFirstTileBehindAnUnpluggingSaysNothingOfIt()
    {
        build();
        page->setFocus();
        page->setUnplugged(true);
        const QString unplugged = page->accessibleName();
        plug({});
        QCOMPARE(page->accessibleName(), unplugged);
        plug(devices(1));
        QCOMPARE(page->window()->focusWidget(), static_cast<QWidget *>(tile(0)));
        QCOMPARE(tile(0)->accessibleDescription(), QString());
    }

    void thePointerBringsATileUpToDate()
    {
        build();
        plug(devices(1));
        fake.setOnline("a0", false);
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(tile(0), &enter);
        QTRY_VERIFY(tile(0)->styleSheet().contains("DisOnlin0.png"));
        QVERIFY(!attached()[0].Online);
        QVERIFY(!page->attached().all()[0].Online);
    }

    void twoIdenticalDevicesAreRefused()
    {
        build();
        bool told = false;
        QPoint place;
        fixture::whenModal<QuestiondialogB>([&](QuestiondialogB *notice) {
            told = true;
            QCOMPARE(notice->findChild<QLabel *>("label")->text(),
                     QString("Two identical devices are connected. Unplug one to continue."));
            place = notice->pos();
            notice->on_CloseButton_clicked();
        });
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 6, Receiver1K)});
        QTRY_VERIFY(told);
        QCOMPARE(place, middleFor(QuestiondialogB()));
        QCOMPARE(tileCount(), 0);
        QVERIFY(shows("label_2"));
        QVERIFY(!shows("stackedWidget"));
        // The page goes on saying so, since a mouse is connected already.
        QCOMPARE(child<QLabel>("label_2")->text(),
                 QString("Two identical devices are connected. Unplug one to continue."));
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(child<QLabel>("label_2")->text(),
                 QString("Two identical devices are connected. Unplug one to continue."));
        plug({fixture::device("a", 6, Receiver1K)});
        QCOMPARE(tileCount(), 1);
        plug({});
        QVERIFY(shows("label_2"));
        QCOMPARE(child<QLabel>("label_2")->text(), QString("Connect a mouse or a receiver."));
    }

    void aCableHidesTheReceiver()
    {
        build();
        plug({fixture::device("r", 6, Receiver8K), fixture::device("c", 6, CableKind)});
        QCOMPARE(tileCount(), 1);
        QCOMPARE(attached()[0].DevicePath, QString("c"));
        QCOMPARE(int(page->attached().all().size()), 2);
    }

    void theArrows()
    {
        build();
        plug(devices(7));
        auto *left = child<QToolButton>("LeftButton");
        auto *right = child<QToolButton>("RightButton");
        right->click();
        QCOMPARE(stack()->currentIndex(), 1);
        QCOMPARE(arrows(), QString("->"));
        right->click();
        QCOMPARE(stack()->currentIndex(), 2);
        QCOMPARE(arrows(), QString("<-"));
        left->click();
        QCOMPARE(stack()->currentIndex(), 1);
        QCOMPARE(arrows(), QString("<-"));
        left->click();
        QCOMPARE(stack()->currentIndex(), 0);
        QCOMPARE(arrows(), QString("->"));
    }

    // With a version once read from the mouse and no newer firmware the question stands; its answer chooses.
    // Which devices stand beside each other, hide one another or are refused.
    void sets_data()
    {
        QTest::addColumn<QString>("devices"); // model and link: c cable, 1 and 8 kHz receivers
        QTest::addColumn<QString>("tiles");   // those left, in order; "!" where none is shown
        QTest::newRow("a cable beside its receiver") << "68 6c"
                                                     << "6c";
        QTest::newRow("a cable beside another's receiver") << "78 6c"
                                                           << "78 6c";
        QTest::newRow("a cable hides both receivers") << "61 68 6c"
                                                      << "6c";
        QTest::newRow("one model, two links") << "61 68"
                                              << "61 68";
        QTest::newRow("one link, two models") << "61 71"
                                              << "61 71";
        QTest::newRow("two receivers alike") << "61 61"
                                             << "!";
        QTest::newRow("two cables alike") << "6c 6c"
                                          << "!";
        QTest::newRow("a row that three models do not reach") << "68 68"
                                                              << "68 68";
        QTest::newRow("two unknown ones on cables") << "99c 99c"
                                                    << "!";
        QTest::newRow("unknown on a cable and behind a receiver") << "99c 991"
                                                                  << "99c 991";
    }
    void sets()
    {
        QFETCH(QString, devices);
        QFETCH(QString, tiles);
        build();
        if (tiles == "!")
            fixture::whenModal<QuestiondialogB>(
                [](QuestiondialogB *notice) { notice->on_CloseButton_clicked(); });
        std::vector<FakeDevice> attached;
        QStringList paths;
        for (const QString &device : devices.split(' ')) {
            const char link = device.back().toLatin1();
            const uint8_t kind = link == 'c' ? CableKind : uint8_t(link == '1' ? Receiver1K : Receiver8K);
            paths << QString("%1/%2").arg(paths.size()).arg(device);
            attached.push_back(
                fixture::device(paths.back().toStdString(), uint8_t(device.chopped(1).toInt()), kind));
        }
        plug(attached);
        QTRY_VERIFY(!QApplication::activeModalWidget());
        QStringList left;
        for (int i = 0; i < tileCount(); ++i)
            left << this->attached()[std::size_t(i)].DevicePath.section('/', 1);
        QStringList wanted = tiles == "!" ? QStringList() : tiles.split(' ');
        left.sort(); // the layer gives them by product id
        wanted.sort();
        QCOMPARE(left, wanted);
    }

    void tilesThatDoNotChangeStay()
    {
        build();
        plug(devices(4));
        const QList<QToolButton *> before = {tile(0), tile(1), tile(2)};
        child<QToolButton>("RightButton")->click();
        const QPointer<QToolButton> alone = tile(3);
        std::vector<FakeDevice> five = devices(5);
        five[1].online = false;
        plug(five);
        QCOMPARE((QList<QToolButton *>{tile(0), tile(1), tile(2)}), before);
        QVERIFY(tile(0)->styleSheet().contains("OnLine0.png"));
        QVERIFY(tile(1)->styleSheet().contains("DisOnlin1.png"));
        QTRY_VERIFY(!alone); // two stand in other places than one
        QCOMPARE(stack()->currentIndex(), 0);
        QCOMPARE(arrows(), QString("->"));
        QSignalSpy opened(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QCOMPARE(opened.count(), 1);
    }

    void aTileOfAnotherLinkIsMadeAnew()
    {
        build();
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 7, Receiver1K)});
        const QPointer<QToolButton> before = tile(0);
        plug({fixture::device("a", 6, CableKind), fixture::device("b", 7, Receiver1K)});
        QTRY_VERIFY(!before);
        QVERIFY(child<QLabel>("UsbWifi0")->styleSheet().contains("OnLineUsb.png"));
        QVERIFY(child<QLabel>("UsbWifi1")->styleSheet().contains("OnLineWifi.png"));
        plug(devices(1));
        QCOMPARE(stack()->count(), 1);
    }

    void aLanguageReachesTheTiles()
    {
        build();
        plug({fixture::device("y", 7, Receiver8K, false)});
        auto *offline = child<QLabel>("label0");
        QFont large = child<QCheckBox>("NoApear")->font();
        large.setPointSize(large.pointSize() + 3);
        child<QCheckBox>("NoApear")->setFont(large);
        offline->setToolTip({});
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(offline->toolTip(), language::text(language::Section::infoTips, "DialogOffline", 0) + '\n' +
                                         language::text(language::Section::home, "PairTips_z", 0));
        QCOMPARE(offline->font().pointSize(), large.pointSize());
        QCOMPARE(child<QLabel>("label_3")->text(), language::text(language::Section::home, "ClickIn", 0));
        QCOMPARE(child<QLabel>("FindVerlaebl")->text(),
                 language::text(language::Section::update, "UpgradeTips", 0));
        QCOMPARE(child<QCheckBox>("NoApear")->text(), language::text(language::Section::home, "NoApear", 0));
        QCOMPARE(child<QToolButton>("NewHong")->text(), language::text(language::Section::common, "OK", 0));
    }

    void aLanguageOfTheSystemBringsTheBuiltInTexts()
    {
        build();
        auto *box = child<QComboBox>("comboBox");
        box->addItem("Second", 1);
        box->setCurrentIndex(1);
        QSignalSpy changes(box, QOverload<int>::of(&QComboBox::currentIndexChanged));
        QEvent change(QEvent::LanguageChange);
        QCOMPARE(int(change.type()), 89);
        QCoreApplication::sendEvent(page.get(), &change);
        QCOMPARE(child<QLabel>("label_3")->text(), QString::fromUtf8("点击进入"));
        QCOMPARE(box->currentIndex(), 0);
        QCOMPARE(changes.count(), 0);
    }
};

TEST_CLASS(tst_DialogChange, fixture::ShippedLooks)

#include "tst_dialogchange.moc"
