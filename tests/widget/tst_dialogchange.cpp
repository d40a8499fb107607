// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The selection page: its tiles for any set of devices, the carousel, and the road of a click.
#include "catalogue/AttachedDevices.h"
#include "catalogue/DialogChange.h"
#include "catalogue/config/RegistryStore.h"
#include "catalogue/config/UserStore.h"
#include "device/hidusb/wire/FirmwareFile.h"
#include "presentation/Notices.h"
#include "presentation/language/LanguageTables.h"
#include "tests/widget/Fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QStackedWidget>
#include <QToolButton>

using fixture::CableKind;

class tst_DialogChange : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<DialogChange> page;
    FakeHidUsb &fake = FakeHidUsb::instance();

    template <typename Widget> Widget *child(const QString &name) const
    {
        auto *found = page->findChild<Widget *>(name);
        if (!found)
            qFatal("no %s", qPrintable(name));
        return found;
    }
    QToolButton *tile(int index) const { return child<QToolButton>(QString("btn%1").arg(index)); }
    QStackedWidget *stack() const { return child<QStackedWidget>("stackedWidget"); }
    int tileCount() const
    {
        int count = 0;
        while (page->findChild<QToolButton *>(QString("btn%1").arg(count)))
            ++count;
        return count;
    }
    bool shows(const QString &name) const { return !child<QWidget>(name)->isHidden(); }
    QString arrows() const
    {
        return QString(shows("LeftButton") ? "<" : "-") + (shows("RightButton") ? ">" : "-");
    }

    void build()
    {
        page = std::make_unique<DialogChange>();
        page->show();
        settle();
    }
    // All that the layer's threads have brought has reached the page.
    void settle()
    {
        QTRY_VERIFY(fake.idle());
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    void plug(std::vector<FakeDevice> devices)
    {
        fake.setDevices(std::move(devices));
        fake.changeUsb();
        settle();
    }
    // Devices that can stand beside each other in a catalogue of three models.
    static std::vector<FakeDevice> devices(int count)
    {
        std::vector<FakeDevice> made;
        for (int i = 0; i < count; ++i)
            made.push_back(i < 2 ? fixture::device("a" + std::to_string(i), uint8_t(6 + i), Receiver1K)
                                 : fixture::device("b" + std::to_string(i), uint8_t(6 + i % 3), Receiver8K));
        return made;
    }
    static QStringList names(const QSignalSpy &spy)
    {
        QStringList all;
        for (const QList<QVariant> &call : spy)
            all << call.value(0).toString();
        return all;
    }

    // A mouse's firmware 2.00 for the first model, whose catalogue names no file.
    static void offerMouseFirmware()
    {
        wire::FirmwareHead head{};
        head.Version.set(0x0200);
        head.Target = 210;
        head.Cid = fixture::Cid;
        head.Mid = 6;
        QDir().mkpath(applicationFolder() + "/bin");
        QFile file(applicationFolder() + "/bin/mouse.bin");
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(reinterpret_cast<const char *>(&head), sizeof head);
    }

private slots:
    void init()
    {
        fixture::clean();
        RegistryStore::instance().removeValue(registry::BaseGroup, registry::UpdateFailInfo);
        RegistryStore::instance().removeValue(registry::BaseGroup, "MouseVer186");
        PairingTarget.reset();
        UiArmed = true;
    }
    void cleanup()
    {
        page.reset();
        QDir(applicationFolder() + "/bin").removeRecursively();
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
        QCOMPARE(int(AttachedDevices.size()), count);
        QCOMPARE(int(AttachedDevicesCopy.size()), count);
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
    }

    void thePointerBringsATileUpToDate()
    {
        build();
        plug(devices(1));
        fake.setOnline("a0", false);
        QEvent enter(QEvent::Enter);
        QCoreApplication::sendEvent(tile(0), &enter);
        QTRY_VERIFY(tile(0)->styleSheet().contains("DisOnlin0.png"));
        QVERIFY(!AttachedDevices[0].Online);
        QVERIFY(!AttachedDevicesCopy[0].Online);
    }

    void twoIdenticalDevicesAreRefused()
    {
        build();
        bool told = false;
        fixture::whenModal<QuestiondialogB>([&told](QuestiondialogB *notice) {
            told = true;
            notice->on_CloseButton_clicked();
        });
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 6, Receiver1K)});
        QTRY_VERIFY(told);
        QCOMPARE(tileCount(), 0);
        QVERIFY(shows("label_2"));
        QVERIFY(!shows("stackedWidget"));
        plug({fixture::device("a", 6, Receiver1K)});
        QCOMPARE(tileCount(), 1);
    }

    void aCableHidesTheReceiver()
    {
        build();
        plug({fixture::device("r", 6, Receiver8K), fixture::device("c", 6, CableKind)});
        QCOMPARE(tileCount(), 1);
        QCOMPARE(AttachedDevices[0].DevicePath, QString("c"));
        QCOMPARE(int(AttachedDevicesCopy.size()), 2);
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

    void anUnfinishedUpdateOffersTheRepair()
    {
        RegistryStore::instance().setValue(registry::BaseGroup, registry::UpdateFailInfo, "210,1,18,6");
        build();
        QVERIFY(shows("Repair"));
        QCOMPARE(child<QLabel>("label_2")->text(),
                 language::text(language::Section::home, "RepairDevice", 0));
        QSignalSpy repair(PostMsg::instance(), &PostMsg::SigRepairCheckUpdate);
        emit PostMsg::instance()->SigEnterKey();
        QCOMPARE(repair.count(), 1);
        emit PostMsg::instance()->SigUpDateButton(true);
        QVERIFY(!shows("Repair"));
        QCOMPARE(child<QLabel>("label_2")->text(), language::text(language::Section::home, "PleaseEnter", 0));
        emit PostMsg::instance()->SigEnterKey();
        QCOMPARE(repair.count(), 1);
    }

    void aClickOpensTheDevice()
    {
        build();
        plug(devices(2));
        DeviceAllInfo chosen;
        QObject context;
        connect(PostMsg::instance(), &PostMsg::SigSelectMouseInfo, &context,
                [&chosen](const DeviceAllInfo &info) { chosen = info; });
        QSignalSpy pages(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        QSignalSpy models(PostMsg::instance(), &PostMsg::SigMouseIndex);
        QSignalSpy versions(PostMsg::instance(), &PostMsg::SigSetver);
        QTest::mouseClick(tile(1), Qt::LeftButton);
        QCOMPARE(chosen.DevicePath, QString("a1"));
        QCOMPARE(names(pages), QStringList{"1"});
        QCOMPARE(names(models), QStringList{"7"});
        QCOMPARE(names(versions), QStringList{"6"});
        QCOMPARE(int(OnDevicePage), 1);
        QCOMPARE(CurrentConnectionKind, 1);
    }

    void aDeviceThatGoesMeanwhileIsNotEntered()
    {
        build();
        plug(devices(1));
        QTimer::singleShot(50, [] { emit PostMsg::instance()->SigChangeMainDialog(0); });
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QCOMPARE(int(OnDevicePage), 0);
    }

    void whatCannotBeEnteredStays_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("unknown on cable") << int(CableKind);
        QTest::newRow("unknown behind a receiver") << int(Receiver1K);
    }
    void whatCannotBeEnteredStays()
    {
        QFETCH(int, kind);
        build();
        plug({fixture::device("x", 99, uint8_t(kind))});
        QSignalSpy pages(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QCOMPARE(pages.count(), 0);
        QCOMPARE(int(OnDevicePage), 0);
    }

    void theSilentOneOfTwoTwinsIsNotEntered()
    {
        build();
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 6, Receiver8K, false)});
        QSignalSpy pages(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        QTest::mouseClick(tile(1), Qt::LeftButton);
        QCOMPARE(pages.count(), 0);
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QCOMPARE(pages.count(), 1);
    }

    // With a version once read from the mouse and no newer firmware the question stands; its answer chooses.
    void aKnownSilentTwinAsksForPairing_data()
    {
        QTest::addColumn<bool>("yes");
        QTest::newRow("yes") << true;
        QTest::newRow("no") << false;
    }
    void aKnownSilentTwinAsksForPairing()
    {
        QFETCH(bool, yes);
        RegistryStore::instance().setValue(registry::BaseGroup, "MouseVer186", "v1.00");
        build();
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 6, Receiver8K, false)});
        int asked = 0;
        fixture::whenModal<RePair>([&](RePair *question) {
            ++asked;
            yes ? question->on_OK_clicked() : question->on_CloseButton_clicked();
        });
        QTest::mouseClick(tile(1), Qt::LeftButton);
        QCOMPARE(asked, 1);
        QCOMPARE(PairingTarget.has_value(), yes);
        QVERIFY(!yes || PairingTarget->DevicePath == "b");
    }

    void aSilentMouseWithNewFirmwareMustBeWired()
    {
        RegistryStore::instance().setValue(registry::BaseGroup, "MouseVer186", "v1.00");
        offerMouseFirmware();
        build();
        plug({fixture::device("b", 6, Receiver8K, false)});
        QString said;
        QPoint place;
        fixture::whenModal<UpDateWarning>([&](UpDateWarning *notice) {
            said = notice->findChild<QLabel *>("label")->text();
            place = notice->pos();
            notice->on_NewHong_clicked();
        });
        page->askOnlyDevice();
        QCOMPARE(said, language::text(language::Section::home, "WiredMode", 0));
        const UpDateWarning measure;
        QCOMPARE(place, page->mapToGlobal(QPoint()) + QPoint((page->width() - measure.width()) / 2 - 20,
                                                             (page->height() - measure.height()) / 2));
        QVERIFY(!PairingTarget);
        QCOMPARE(int(OnDevicePage), 0);
    }

    void theOnlyDeviceIsDecidedFor_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("chosen");
        QTest::newRow("a receiver") << 1 << int(Receiver1K) << true;
        QTest::newRow("on its cable") << 1 << int(CableKind) << false;
        QTest::newRow("two") << 2 << int(Receiver1K) << false;
        QTest::newRow("none") << 0 << int(Receiver1K) << false;
    }
    void theOnlyDeviceIsDecidedFor()
    {
        QFETCH(int, count);
        QFETCH(int, kind);
        build();
        std::vector<FakeDevice> attached;
        for (int i = 0; i < count; ++i)
            attached.push_back(fixture::device("d" + std::to_string(i), uint8_t(6 + i), uint8_t(kind)));
        plug(attached);
        page->askOnlyDevice();
        QTEST(PairingTarget.has_value(), "chosen");
        QCOMPARE(int(OnDevicePage), 0);
    }

    void aSilentMouseAloneIsEntered()
    {
        build();
        plug({fixture::device("b", 6, Receiver8K, false)});
        QSignalSpy pages(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QCOMPARE(pages.count(), 1);
    }

    void closeAndMinimise()
    {
        build();
        QSignalSpy size(PostMsg::instance(), &PostMsg::SigChangeSize);
        child<QToolButton>("MinButton")->click();
        child<QToolButton>("CloseButton")->click();
        QCOMPARE(names(size), (QStringList{"0", "1"}));
    }

    void theLanguageBox()
    {
        build();
        QSignalSpy all(PostMsg::instance(), &PostMsg::SigAllLanguage);
        QSignalSpy other(PostMsg::instance(), &PostMsg::SigLanguageSameB);
        auto *box = child<QComboBox>("comboBox");
        emit box->activated(0);
        QCOMPARE(all.count(), 1);
        QCOMPARE(other.count(), 1);
        QCOMPARE(UserStore::instance().ReadText("Language", "Language"), QString("0"));
    }

    void manyChangesEndInTheLastState()
    {
        build();
        for (int round = 0; round < 40; ++round) {
            fake.setDevices(devices(round % 5));
            fake.changeUsb();
            if (round % 7 == 0)
                QCoreApplication::processEvents();
        }
        plug(devices(2));
        QCOMPARE(tileCount(), 2);
    }

    void anOlderSearchThatEndsLaterIsDropped()
    {
        build();
        std::atomic<bool> firstHeld{false}, go{false};
        std::atomic<int> searches{0};
        fake.setDevices(devices(1));
        fake.setHook([&](const std::string &call) {
            // The first search is held back at its last question, with one device in its hands.
            if (call == "UsbFinderC_GetDeviceOnLineWithUsbAddress" && searches++ == 0) {
                firstHeld = true;
                while (!go)
                    std::this_thread::yield();
            }
        });
        std::thread first([] { DialogChange::UsbChanged(); });
        QTRY_VERIFY(firstHeld);
        fake.setDevices(devices(3));
        std::thread second([] { DialogChange::UsbChanged(); });
        second.join();
        QTRY_COMPARE(tileCount(), 3);
        go = true;
        first.join();
        settle();
        QCOMPARE(tileCount(), 3);
    }

    void aHiddenPageTakesNothing()
    {
        build();
        plug(devices(1));
        page->hide();
        plug(devices(3));
        QCOMPARE(int(AttachedDevices.size()), 1);
        page->show();
        plug(devices(3));
        QCOMPARE(tileCount(), 3);
    }

    void aSearchThatOutlivesThePageHurtsNobody()
    {
        build();
        fake.setDevices(devices(3));
        fake.changeUsb();
        page.reset();
        settle();
    }
};

int main(int argc, char *argv[])
{
    const ProductFolder product(smallCatalogue());
    fixture::useShippedLooks(product);
    QApplication application(argc, argv);
    LoadLanguageTables();
    tst_DialogChange test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_dialogchange.moc"
