// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The selection page: what follows a click on a tile, and the other controls.
#include "catalogue/LanguageChoice.h"
#include "device/hidusb/wire/FirmwareFile.h"
#include "service/Match.h"
#include "tests/support/TestMain.h"
#include "tests/widget/selection/SelectionPage.h"

using fixture::CableKind;

class tst_TileClick : public SelectionPage
{
    Q_OBJECT

    // A firmware 2.00 on offer for the first model.
    static void offerFirmware(uint8_t target, const char *baseName)
    {
        wire::FirmwareHead head{};
        head.Version.set(0x0200);
        head.Target = target;
        head.Cid = fixture::Cid;
        head.Mid = 6;
        qstrncpy(head.BaseName, baseName, sizeof head.BaseName);
        QDir().mkpath(applicationFolder() + "/bin");
        QFile file(applicationFolder() + "/bin/" + baseName + ".bin");
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(reinterpret_cast<const char *>(&head), sizeof head);
    }

    // Closes each pairing that opens, as a user who wants none, and notes for which receiver the last was and
    // where it stood.
    struct PairingsClosed {
        PairingsClosed()
        {
            QObject::connect(&timer, &QTimer::timeout, [this] {
                auto *const dialog = qobject_cast<Match *>(QApplication::activeModalWidget());
                if (!dialog)
                    return;
                receiver = dialog->target().DevicePath;
                place = dialog->pos();
                ++count;
                dialog->WindowClosedSet();
            });
            timer.start(5);
        }
        QTimer timer;
        QString receiver;
        QPoint place;
        int count = 0;
    };
    std::unique_ptr<PairingsClosed> pairings;

private slots:
    void init()
    {
        begin();
        pairings = std::make_unique<PairingsClosed>();
    }
    void cleanup()
    {
        pairings.reset();
        end();
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

    // By the pointer on the window, which meets what is on top.
    void theRepairStandsBesideTheTiles_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {0, 1, 2, 3, 4})
            QTest::addRow("%d", count) << count;
    }
    void theRepairStandsBesideTheTiles()
    {
        QFETCH(int, count);
        RegistryStore::instance().setValue(registry::BaseGroup, registry::UpdateFailInfo, "210,1,18,6");
        build();
        plug(devices(count));
        auto *const repair = child<QToolButton>("Repair");
        QCOMPARE(repair->text(), QString("Repair"));
        QCOMPARE(repair->toolTip(), language::text(language::Section::home, "RepairDevice", 0));
        for (const QObject *other : repair->parent()->children()) {
            const auto *const widget = qobject_cast<const QWidget *>(other);
            if (widget && widget != repair && widget->isVisible() &&
                widget->size() != page->size()) // the ground
                QVERIFY2(!widget->geometry().intersects(repair->geometry()),
                         qPrintable(widget->objectName()));
        }
        QSignalSpy asked(PostMsg::instance(), &PostMsg::SigRepairCheckUpdate);
        const auto click = [this](const QWidget *widget) {
            QTest::mouseClick(page->windowHandle(), Qt::LeftButton, {},
                              widget->mapTo(page.get(), widget->rect().center()));
        };
        click(repair);
        QCOMPARE(asked.count(), 1);
        QSignalSpy opened(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        for (int i = 0; i < qMin(count, 3); ++i)
            click(tile(i));
        QCOMPARE(opened.count(), qMin(count, 3));
    }

    void aClickOpensTheDevice()
    {
        build();
        plug(devices(2));
        DeviceAllInfo chosen;
        bool chosenFirst = false;
        QObject context;
        connect(PostMsg::instance(), &PostMsg::SigSelectMouseInfo, &context,
                [&chosen](const DeviceAllInfo &info) { chosen = info; });
        QSignalSpy pages(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        QSignalSpy models(PostMsg::instance(), &PostMsg::SigMouseIndex);
        QSignalSpy versions(PostMsg::instance(), &PostMsg::SigSetver);
        QSignalSpy links(PostMsg::instance(), &PostMsg::SigIsUsb);
        QElapsedTimer sincePageChange;
        connect(PostMsg::instance(), &PostMsg::SigChangeMainDialog, &context, [&] {
            chosenFirst = chosen.DevicePath == "a1" && OnDevicePage == 0;
            sincePageChange.start();
        });
        QTest::mouseClick(tile(1), Qt::LeftButton);
        QVERIFY(chosenFirst);
        QVERIFY(sincePageChange.elapsed() >= 150); // the page stands before the worker begins
        QCOMPARE(links.count(), 1);
        QCOMPARE(links.first(), (QList<QVariant>{false, true}));
        QCOMPARE(chosen.DevicePath, QString("a1"));
        QCOMPARE(names(pages), QStringList{"1"});
        QCOMPARE(names(models), QStringList{"7"});
        QCOMPARE(names(versions), QStringList{"6"});
        QCOMPARE(int(OnDevicePage), 1);
        QCOMPARE(CurrentConnectionKind.load(), 1);
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
        QTest::addColumn<bool>("pairs");
        QTest::newRow("unknown on cable") << int(CableKind) << false;
        QTest::newRow("unknown behind a receiver") << int(Receiver1K) << true;
    }
    void whatCannotBeEnteredStays()
    {
        QFETCH(int, kind);
        QFETCH(bool, pairs);
        build();
        plug({fixture::device("x", 99, uint8_t(kind))});
        QSignalSpy pages(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QCOMPARE(pages.count(), 0);
        QCOMPARE(int(OnDevicePage), 0);
        QCOMPARE(pairings->count, pairs ? 1 : 0);
        if (!pairs)
            return page->openOnlyReceiver(); // ignores cables
        QCOMPARE(pairings->receiver, QString("x"));
        QCOMPARE(pairings->place, middleFor(Match()));
        settle();
    }

    // The search that follows shows what the pairing has changed.
    void aPairingEndsInASearch()
    {
        build();
        plug({fixture::device("x", 99, Receiver1K, false)});
        pairings.reset();
        fixture::whenModal<Match>([this](Match *pairing) {
            pairing->on_MatchButton_clicked();
            fake.setDevices({fixture::device("x", 6, Receiver1K)});
            fake.deliver(6, 0, {3});
            QTRY_VERIFY(!pairing::isActive());
            pairing->WindowClosedSet();
        });
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QCOMPARE(fake.connected(), false);
        QTRY_COMPARE(attached().front().Mid, uint8_t(6));
        settle();
    }

    void theSilentOneOfTwoTwinsIsNotEntered()
    {
        build();
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 6, Receiver8K, false)});
        QSignalSpy pages(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        QTest::mouseClick(tile(1), Qt::LeftButton);
        QCOMPARE(pairings->receiver, QString("b"));
        QCOMPARE(pages.count(), 0);
        settle();
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QCOMPARE(pages.count(), 1);
    }

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
        QPoint place;
        fixture::whenModal<RePair>([&](RePair *question) {
            ++asked;
            place = question->pos();
            yes ? question->on_OK_clicked() : question->on_CloseButton_clicked();
        });
        QTest::mouseClick(tile(1), Qt::LeftButton);
        QCOMPARE(asked, 1);
        QCOMPARE(place, middleFor(RePair()));
        QCOMPARE(page->attached().pairingTarget().has_value(), yes);
        QCOMPARE(pairings->count, yes ? 1 : 0);
        if (!yes) {
            const notice::NextAnswer<RePair> accept(true);
            QTest::mouseClick(tile(1), Qt::LeftButton);
        }
        QCOMPARE(pairings->receiver, QString("b"));
        settle();
    }

    void aSilentMouseWithNewFirmwareMustBeWired()
    {
        RegistryStore::instance().setValue(registry::BaseGroup, "MouseVer186", "v1.00");
        offerFirmware(210, "six");
        build();
        plug({fixture::device("b", 6, Receiver8K, false)});
        QString said;
        QPoint place;
        fixture::whenModal<UpDateWarning>([&](UpDateWarning *notice) {
            said = notice->findChild<QLabel *>("label")->text();
            place = notice->pos();
            notice->on_NewHong_clicked();
        });
        page->openOnlyReceiver();
        QCOMPARE(said, language::text(language::Section::home, "WiredMode", 0));
        QCOMPARE(place, middleFor(UpDateWarning()) - QPoint(20, 0));
        QVERIFY(!page->attached().pairingTarget());
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
        page->openOnlyReceiver();
        QTEST(page->attached().pairingTarget().has_value(), "chosen");
        QTEST(pairings->count == 1, "chosen");
        QCOMPARE(int(OnDevicePage), 0);
        settle();
    }

    // The space bar opens the same pages as a click.
    void theOnlyReceiverOpensItsModelsPages()
    {
        RegistryStore::instance().setValue(registry::BaseGroup, "MouseVer186", "v1.00");
        offerFirmware(211, "six-8k");
        build();
        plug({fixture::device("b", 6, Receiver8K, false)});
        const QStringList wanted = {"link", "version 6", "model 6", "device b", "page 1"};
        QStringList byClick, bySpace;
        for (QStringList *told : {&byClick, &bySpace}) {
            QObject context;
            PostMsg *const hub = PostMsg::instance();
            connect(hub, &PostMsg::SigIsUsb, &context, [told](bool usb) {
                if (!usb)
                    *told << "link";
            });
            connect(hub, &PostMsg::SigSetver, &context,
                    [told](int index) { *told << QString("version %1").arg(index); });
            connect(hub, &PostMsg::SigMouseIndex, &context,
                    [told](int index) { *told << QString("model %1").arg(index); });
            connect(hub, &PostMsg::SigSelectMouseInfo, &context,
                    [told](const DeviceAllInfo &info) { *told << "device " + info.DevicePath; });
            connect(hub, &PostMsg::SigChangeMainDialog, &context,
                    [told](int index) { *told << QString("page %1").arg(index); });
            if (told == &byClick)
                QTest::mouseClick(tile(0), Qt::LeftButton);
            else
                page->openOnlyReceiver();
        }
        QCOMPARE(byClick, wanted);
        QCOMPARE(bySpace, wanted);
    }

    // Each question to a silent device keeps the window still.
    void aClickAsksNoDeviceWhoseAnswerDoesNotMatter_data()
    {
        QTest::addColumn<int>("firstMid");
        QTest::addColumn<bool>("firstOnline");
        QTest::addColumn<bool>("secondOnline");
        QTest::addColumn<QString>("asked"); // for a click on the second
        QTest::newRow("two models") << 7 << true << true << "";
        QTest::newRow("two models, silent") << 7 << false << false << "";
        QTest::newRow("twins") << 6 << true << true << "b";
        QTest::newRow("twins, the other is silent") << 6 << false << true << "b";
        QTest::newRow("twins, both silent") << 6 << false << false << "b a";
    }
    void aClickAsksNoDeviceWhoseAnswerDoesNotMatter()
    {
        QFETCH(int, firstMid);
        QFETCH(bool, firstOnline);
        QFETCH(bool, secondOnline);
        build();
        plug({fixture::device("a", uint8_t(firstMid), Receiver1K, firstOnline),
              fixture::device("b", 6, Receiver8K, secondOnline)});
        fake.clearCalls();
        QStringList asked;
        QObject context;
        connect(PostMsg::instance(), &PostMsg::SigSelectMouseInfo, &context, [&] {
            for (const std::string &call : fake.calls())
                if (call.find("UsbFinderC_GetDeviceOnLine") == 0)
                    asked << QString::fromStdString(call).section(' ', -1);
        });
        emit tile(1)->clicked(); // no pointer, which would refresh the tile on its way
        QCOMPARE(int(OnDevicePage), 1);
        QTEST(asked.join(' '), "asked");
    }

    void aTwinThatFellSilentAfterTheSearchIsAsked()
    {
        build();
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 6, Receiver8K)});
        fake.setOnline("b", false);
        QSignalSpy pages(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        emit tile(1)->clicked();
        QCOMPARE(pages.count(), 0);
        QCOMPARE(pairings->receiver, QString("b"));
        settle();
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
        QCOMPARE(box->count(), 1);
        QCOMPARE(box->itemText(0), QString("English"));
        QCOMPARE(box->maxVisibleItems(), 5);
        emit box->activated(0);
        QCOMPARE(all.count(), 1);
        QCOMPARE(other.count(), 1);
        QCOMPARE(UserStore::instance().ReadText("Language", "Language"), QString("0"));
    }

    // The mouse behind the receiver is silent, its version is known, and files are on offer.
    void newFirmwareDecidesForASilentMouse_data()
    {
        QTest::addColumn<bool>("mouse");
        QTest::addColumn<bool>("receiver");
        QTest::addColumn<QString>("happens");
        QTest::newRow("none") << false << false << "asks";
        QTest::newRow("both") << true << true << "asks";
        QTest::newRow("receiver") << false << true << "enters";
        QTest::newRow("mouse") << true << false << "warns";
    }
    void newFirmwareDecidesForASilentMouse()
    {
        QFETCH(bool, mouse);
        QFETCH(bool, receiver);
        QFETCH(QString, happens);
        RegistryStore::instance().setValue(registry::BaseGroup, "MouseVer186", "v1.00");
        if (mouse)
            offerFirmware(210, "six");
        if (receiver)
            offerFirmware(211, "six-8k");
        build();
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 6, Receiver8K, false)});
        QSignalSpy pages(PostMsg::instance(), &PostMsg::SigChangeMainDialog);
        QString seen;
        if (happens == "asks")
            fixture::whenModal<RePair>([&seen](RePair *question) {
                seen = "asks";
                question->on_Cancel_clicked();
            });
        if (happens == "warns")
            fixture::whenModal<UpDateWarning>([&seen](UpDateWarning *notice) {
                seen = "warns";
                notice->on_NewHong_clicked();
            });
        QTest::mouseClick(tile(1), Qt::LeftButton);
        if (pages.count() == 1)
            seen += "enters";
        QCOMPARE(seen, happens);
        QVERIFY(!page->attached().pairingTarget());
    }

    void aReceiversFirmwareIsAnnounced_data()
    {
        QTest::addColumn<QString>("offer"); // a base name, "-" for an empty folder, nothing for none
        QTest::addColumn<QString>("said");
        QTest::newRow("newer") << "six-1k"
                               << "v1.00 true";
        QTest::newRow("another's") << "seven-1k"
                                   << "v1.00 ";
        QTest::newRow("no file") << "-"
                                 << "v1.00 ";
        QTest::newRow("no folder") << ""
                                   << "";
    }
    void aReceiversFirmwareIsAnnounced()
    {
        QFETCH(QString, offer);
        if (!offer.isEmpty())
            QDir().mkpath(applicationFolder() + "/bin");
        if (offer.size() > 1)
            offerFirmware(211, offer.toLatin1().constData());
        build();
        plug(devices(1));
        QString announced;
        QObject context;
        connect(PostMsg::instance(), &PostMsg::SigLabelTextB, &context,
                [&announced](const QString &version, const QString &isNew) {
                    announced += version + ' ' + isNew;
                });
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QTEST(announced, "said");
    }

    void aCableLeavesTheConnectionKind()
    {
        CurrentConnectionKind = 4;
        build();
        plug({fixture::device("c", 8, CableKind)});
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QCOMPARE(int(OnDevicePage), 1);
        QCOMPARE(CurrentConnectionKind.load(), 4);
    }

    void eachModelTellsItsScreenClass()
    {
        build();
        plug({fixture::device("a", 6, Receiver1K), fixture::device("b", 7, Receiver1K),
              fixture::device("c", 8, Receiver1K), fixture::device("d", 99, Receiver8K)});
        QSignalSpy models(PostMsg::instance(), &PostMsg::SigMouseIndex);
        for (const int remembered : {6, 7, 8, 8}) { // an unknown model leaves the class as it was
            QTest::mouseClick(tile(remembered == ScreenClass ? 3 : remembered - 6), Qt::LeftButton);
            QCOMPARE(ScreenClass.load(), remembered);
        }
        QCOMPARE(names(models), (QStringList{"6", "7", "8"}));
        settle();
    }

    // A receiver without a mouse, of which nothing is known, is to be paired.
    void aReceiverAloneIsPaired()
    {
        build();
        plug({fixture::device("lone", 99, Receiver1K)});
        QTest::mouseClick(tile(0), Qt::LeftButton);
        QVERIFY(page->attached().pairingTarget() && page->attached().pairingTarget()->DevicePath == "lone");
        QCOMPARE(pairings->receiver, QString("lone"));
        settle();
    }

    void enterOnAnotherPageAsksForNoRepair()
    {
        RegistryStore::instance().setValue(registry::BaseGroup, registry::UpdateFailInfo, "210,1,18,6");
        build();
        QSignalSpy repair(PostMsg::instance(), &PostMsg::SigRepairCheckUpdate);
        child<QWidget>("FindVer")->show();
        page->hide();
        emit PostMsg::instance()->SigEnterKey();
        QCOMPARE(repair.count(), 0);
        page->show();
        QVERIFY(shows("FindVer")); // the key was not for this page
        child<QWidget>("FindVer")->hide();
        emit PostMsg::instance()->SigEnterKey();
        QCOMPARE(repair.count(), 1);
    }

    void enterPutsTheFrameAwayFirst()
    {
        RegistryStore::instance().setValue(registry::BaseGroup, registry::UpdateFailInfo, "210,1,18,6");
        build();
        QVERIFY(!shows("FindVer"));
        QSignalSpy repair(PostMsg::instance(), &PostMsg::SigRepairCheckUpdate);
        child<QWidget>("FindVer")->show();
        emit PostMsg::instance()->SigEnterKey();
        QVERIFY(!shows("FindVer"));
        QCOMPARE(repair.count(), 0);
        emit PostMsg::instance()->SigEnterKey();
        QCOMPARE(repair.count(), 1);
    }

    void theFrameGoesAndRemembers()
    {
        build();
        for (const char *button : {"NewHong", "CloseButton_2"}) {
            child<QWidget>("FindVer")->show();
            child<QToolButton>(button)->click();
            QVERIFY(!shows("FindVer"));
        }
        for (const char *written : {"1", "0"}) {
            child<QAbstractButton>("NoApear")->click();
            QCOMPARE(UserStore::instance().ReadText("FindNew", "IsShow"), QString(written));
        }
    }

    void theWindowFollowsThePage()
    {
        build();
        page->WindowMinA();
        QVERIFY(page->isMinimized());
        page->WindowClosedA();
        QVERIFY(!page->isVisible());
    }

    // A store of an older release, or of another edition, names a language that is not here.
    void aLanguageThatDoesNotExistShowsTheFirst()
    {
        storeLanguage(UserStore::instance(), 3);
        build();
        for (const int index : {3, -1}) {
            emit PostMsg::instance()->SigLanguageSameA(index);
            emit PostMsg::instance()->SigAllLanguage(index);
            QCOMPARE(child<QComboBox>("comboBox")->currentText(), QString("English"));
            QCOMPARE(child<QLabel>("label_2")->text(),
                     language::text(language::Section::home, "PleaseEnter", 0));
            QVERIFY(!child<QLabel>("label_2")->text().isEmpty());
        }
        QCOMPARE(storedLanguage(UserStore::instance()), 3);
        storeLanguage(UserStore::instance(), 0);
    }

    void theOtherBoxIsFollowedInSilence()
    {
        build();
        auto *box = child<QComboBox>("comboBox");
        box->addItem("Second", 1);
        QSignalSpy changes(box, QOverload<int>::of(&QComboBox::currentIndexChanged));
        emit PostMsg::instance()->SigLanguageSameA(1);
        QCOMPARE(box->currentIndex(), 1);
        QCOMPARE(changes.count(), 0);
    }
};

namespace
{

// The first model's files have names of their own.
QByteArray catalogueWithFirmware()
{
    const auto code = ProductFolder::code;
    return smallCatalogue() + "[Drive1]\nMM=" + code("six") + "\nDM=" + code("six-1k") +
           "\nD8M=" + code("six-8k") + '\n';
}

struct FirmwareCatalogue : fixture::ShippedLooks {
    FirmwareCatalogue(int &argc, char **argv) : ShippedLooks(argc, argv, catalogueWithFirmware()) {}
};

} // namespace

TEST_CLASS(tst_TileClick, FirmwareCatalogue)

#include "tst_tileclick.moc"
