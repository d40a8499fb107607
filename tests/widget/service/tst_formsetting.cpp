// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The settings page on the scripted layer: what it shows of the device, what its controls start, and that
// nothing on it runs by itself.
#include "catalogue/UserStore.h"
#include "presentation/Notices.h"
#include "presentation/UpDataParam.h"
#include "service/AutoStart.h"
#include "service/FormSetting.h"
#include "service/Match.h"
#include "service/UpDateRepair.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"
#include "tests/widget/service/Desktop.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextEdit>
#include <QToolButton>

using language::Section;

namespace
{

// Takes what the page opens in the place of the desktop's programs.
class Opened : public QObject
{
    Q_OBJECT

public:
    explicit Opened(const char *scheme) : scheme_(QLatin1String(scheme))
    {
        QDesktopServices::setUrlHandler(scheme_, this, "take");
    }
    ~Opened() override { QDesktopServices::unsetUrlHandler(scheme_); }
    QList<QUrl> urls;

public slots:
    void take(const QUrl &url) { urls << url; }

private:
    const QString scheme_;
};

DeviceAllInfo versioned(const char *path, uint16_t kind, const char *dongle, const char *mouse = "")
{
    DeviceAllInfo made = fixture::info(QLatin1String(path), kind);
    made.DongleVersion = QLatin1String(dongle);
    made.MouseVersion = QLatin1String(mouse);
    return made;
}

} // namespace

class tst_FormSetting : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<fixture::Desktop> desktop;
    std::unique_ptr<FormSetting> page;
    FakeHidUsb &fake = FakeHidUsb::instance();

    template <typename Widget = QWidget> Widget *widget(const char *name) const
    {
        return page->findChild<Widget *>(QLatin1String(name));
    }
    QString labelText(const char *name) const { return widget<QLabel>(name)->text(); }
    QString receiveText() const { return widget<QToolButton>("Receive_2")->text(); }
    QString receivePicture() const
    {
        return widget("Receive_2")->styleSheet().contains("/WaitUpdate.png") ? "WaitUpdate" : "Confirm";
    }
    static QString text(Section section, const char *key) { return language::text(section, key, 0); }
    static QString storedChoice() { return UserStore::instance().ReadText("AutoStart", "Enable"); }
    void makePage() { page = std::make_unique<FormSetting>(); }
    void showMarks() const
    {
        widget("toolButton_2")->show();
        widget("toolButton_3")->show();
    }
    QString shownMarks() const
    {
        return QString(widget("toolButton_2")->isHidden() ? "" : "receiver") +
               (widget("toolButton_3")->isHidden() ? "" : "mouse");
    }
    // What SigAddVer has carried, as "type version".
    static QStringList announced(const QSignalSpy &spy)
    {
        QStringList all;
        for (const QList<QVariant> &each : spy)
            all << each[0].toString() + ' ' + each[1].toString();
        return all;
    }

private slots:
    void init()
    {
        desktop = std::make_unique<fixture::Desktop>();
        fixture::beginWithDevice();
        UserStore::instance().Remove("AutoStart", "Enable");
        makePage();
        page->show();
    }
    void cleanup()
    {
        page.reset();
        desktop.reset();
        LanguageIndex = 0;
        QTRY_VERIFY(fake.idle());
    }

    // ---- What it shows

    void takesItsTextsFromTheTables()
    {
        QCOMPARE(labelText("label_2"), text(Section::Settings, "Language"));
        QCOMPARE(labelText("label_3"), text(Section::Settings, "DeviceInfo"));
        QCOMPARE(labelText("label_4"), text(Section::Settings, "DongleVersion"));
        QCOMPARE(labelText("label_6"), text(Section::Settings, "MouseVersion"));
        QCOMPARE(labelText("label_8"), text(Section::pair, "PairTool"));
        QCOMPARE(widget<QPushButton>("pushButton_2")->text(), text(Section::pair, "Pair"));
        QCOMPARE(receiveText(), text(Section::update, "Upgrade"));
        QCOMPARE(labelText("label_9"), text(Section::Settings, "Others"));
        QCOMPARE(labelText("label_10"), text(Section::Settings, "AutoOpen"));
        QCOMPARE(widget<QToolButton>("Reset")->text(), text(Section::Settings, "Restore"));
        QCOMPARE(labelText("label_12"), text(Section::Settings, "Restore"));
        QCOMPARE(widget<QPushButton>("pushButton")->text(), text(Section::Settings, "WindowSet"));
        QCOMPARE(widget<QTextEdit>("NewLabel")->toPlainText(), text(Section::Settings, "LabelTip"));
        QCOMPARE(labelText("label"), text(Section::home, "Version") + "1.0.2.0");
        QCOMPARE(widget("toolButton_2")->toolTip(), text(Section::home, "NoDevice"));
        QCOMPARE(widget("toolButton_3")->toolTip(), text(Section::home, "WiredMode"));
        const QStringList company = language::companyLabels(0);
        QCOMPARE(widget<QPushButton>("pushButton_4")->text(), company[0]);
        QCOMPARE(widget<QPushButton>("pushButton_3")->text(), company[1]);
        QVERIFY(widget<QPushButton>("pushButton_3")->isFlat());
    }

    void aTextThatTheTablesLackLeavesTheFormsOwn()
    {
        const fixture::WithoutTexts none;
        makePage();
        QCOMPARE(labelText("label_3"), QString("设备信息"));
        QCOMPARE(receiveText(), QString("升级固件"));
        QVERIFY(widget("pushButton_3")->isHidden()); // without a label file there is no address to open
        QCOMPARE(labelText("label"), QString("1.0.2.0"));
    }

    void eachLanguagePlacesTheVersions_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("x");
        QTest::newRow("first") << 0 << 220;
        QTest::newRow("second") << 1 << 150;
        QTest::newRow("third") << 2 << 235;
        QTest::newRow("none") << -1 << 235;
    }
    void eachLanguagePlacesTheVersions()
    {
        QFETCH(int, index);
        QFETCH(int, x);
        emit PostMsg::instance()->SigAllLanguage(index);
        QCOMPARE(widget("label_5")->pos(), QPoint(x, 155));
        QCOMPARE(widget("label_7")->pos(), QPoint(x, 185));
        QCOMPARE(widget("Receive_2")->pos(), QPoint(280, 170));
        QCOMPARE(widget("toolButton_2")->pos(), QPoint(460, 160));
        QCOMPARE(widget("toolButton_3")->pos(), QPoint(460, 190));
    }

    void theUpgradeButtonsFontIsSetOnce()
    {
        const double dotsPerInch = QGuiApplication::primaryScreen()->logicalDotsPerInchX();
        QCOMPARE(widget("Receive_2")->font().pointSizeF(), 10 * 96 / dotsPerInch);
        // Those beside it are scaled to the screen with the rest of the window.
        for (const char *beside : {"pushButton_2", "pushButton", "Reset", "OpenFolder"})
            QCOMPARE(widget(beside)->font().pointSizeF(), 10.0);
        QFont other = widget("Receive_2")->font();
        other.setPointSize(7);
        widget("Receive_2")->setFont(other);
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(widget("Receive_2")->font().pointSize(), 7);
    }

    void theProgramsVersionStaysInViewWhileThePageScrolls()
    {
        QWidget *version = widget("label");
        QScrollBar *bar = widget<QScrollArea>("scrollArea")->verticalScrollBar();
        const QPoint stored = version->pos() - QPoint(0, 10);
        QVERIFY(bar->maximum() > 100);
        const QPoint seen = version->mapTo(page.get(), QPoint());
        for (const int at : {1, 40, bar->maximum(), 0}) {
            bar->setValue(at);
            QCOMPARE(version->pos(), stored + QPoint(0, at + 10));
            QCOMPARE(version->mapTo(page.get(), QPoint()), seen);
        }
    }

    void tellsWhereItsFilesLieAndOpensTheFolder()
    {
        Opened opened("file");
        QCOMPARE(widget("label_16")->toolTip(), dataRoot());
        QVERIFY(!labelText("label_16").startsWith("~"));
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", QFileInfo(dataRoot()).path().toLocal8Bit());
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(labelText("label_16"), "~/" + QFileInfo(dataRoot()).fileName());
        qputenv("HOME", home);
        widget<QPushButton>("OpenFolder")->click();
        QCOMPARE(opened.urls, QList<QUrl>({QUrl::fromLocalFile(dataRoot())}));
    }

    void opensTheCompanysAddress()
    {
        Opened opened("https");
        widget<QPushButton>("pushButton_3")->click();
        QCOMPARE(opened.urls, QList<QUrl>({QUrl(language::companyLabels(0).at(1))}));
    }

    void nothingRunsByItself()
    {
        for (const QTimer *timer : page->findChildren<QTimer *>())
            QVERIFY2(!timer->isActive(), qPrintable(timer->parent()->objectName()));
        QVERIFY(fake.calls().empty());
    }

    // ---- Versions

    void theVersionsOfAReceiver()
    {
        SelectedDevice::set(versioned("dev", Receiver8K, "v1.02", "v1.05"));
        const QSignalSpy versions(PostMsg::instance(), &PostMsg::SigAddVer);
        page->SetVer(0);
        QCOMPARE(labelText("label_5"), QString("v1.02"));
        QCOMPARE(labelText("label_7"), QString("v1.05"));
        QCOMPARE(announced(versions), QStringList({"1 v1.02", "0 v1.05"}));
    }

    void onACableTheReceiverBesideItIsShown_data()
    {
        QTest::addColumn<int>("others"); // receivers in the list beside the cable
        QTest::addColumn<QString>("shown");
        QTest::newRow("none") << 0 << "";
        QTest::newRow("one") << 1 << "v1.03";
        QTest::newRow("two") << 2 << ""; // nobody knows whose mouse it is
    }
    void onACableTheReceiverBesideItIsShown()
    {
        QFETCH(int, others);
        QFETCH(QString, shown);
        const DeviceAllInfo cable = versioned("cable", fixture::CableKind, "v1.05", "v1.06");
        std::vector<DeviceAllInfo> list = {cable};
        for (int i = 0; i < others; ++i)
            list.push_back(versioned("receiver", Receiver4K, "v1.03"));
        SelectedDevice::set(cable);
        setDeviceList(list);
        page->SetVer(0);
        QCOMPARE(labelText("label_5"), shown);
        QCOMPARE(labelText("label_7"), QString("v1.06"));
    }

    void eachIndexOfSetVer_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("marks");
        QTest::addColumn<bool>("offersAgain");
        QTest::addColumn<QString>("receiver");
        QTest::newRow("0 shows the versions") << 0 << "receivermouse" << false << "v1.02";
        QTest::newRow("1 hides the receiver's mark") << 1 << "mouse" << false << "old";
        QTest::newRow("2 hides the mouse's mark") << 2 << "receiver" << false << "old";
        QTest::newRow("3 offers the upgrade again") << 3 << "receivermouse" << true << "old";
        QTest::newRow("4 does so without marks") << 4 << "" << true << "old";
        QTest::newRow("5 shows the versions as well") << 5 << "" << true << "v1.02";
        QTest::newRow("6 clears the versions") << 6 << "receivermouse" << false << "";
        QTest::newRow("any other does nothing") << 7 << "receivermouse" << false << "old";
    }
    void eachIndexOfSetVer()
    {
        QFETCH(int, index);
        QFETCH(QString, marks);
        QFETCH(bool, offersAgain);
        QFETCH(QString, receiver);
        page->SlotLabelTextB("old", "");
        SelectedDevice::set(versioned("dev", Receiver8K, "v1.02", "v1.05"));
        showMarks();
        emit PostMsg::instance()->SigSetNewVer();
        const QString upToDate = language::text(Section::update, "newTips", 0, language::Word::Keyboard);
        QCOMPARE(receiveText(), upToDate);
        const QSignalSpy versions(PostMsg::instance(), &PostMsg::SigAddVer);
        emit PostMsg::instance()->SigSetver(index);
        QCOMPARE(shownMarks(), marks);
        QCOMPARE(receiveText(), offersAgain ? text(Section::update, "Upgrade") : upToDate);
        QCOMPARE(labelText("label_5"), receiver);
        QCOMPARE(announced(versions), index == 0 || index == 5 ? QStringList({"1 v1.02", "0 v1.05"})
                                      : index == 6             ? QStringList({"1 ", "0 "})
                                                               : QStringList());
    }

    void aNewVersionIsShownAnnouncedAndStored()
    {
        const QSignalSpy versions(PostMsg::instance(), &PostMsg::SigAddVer);
        emit PostMsg::instance()->SigLabelText(0, "v2.00");
        emit PostMsg::instance()->SigLabelText(1, "v3.00");
        emit PostMsg::instance()->SigLabelText(2, "v4.00");
        QCOMPARE(labelText("label_5"), QString("v2.00"));
        QCOMPARE(labelText("label_7"), QString("v3.00"));
        QCOMPARE(SelectedDevice::info().DongleVersion, QString("v2.00"));
        QCOMPARE(SelectedDevice::info().MouseVersion, QString("v3.00"));
        QCOMPARE(announced(versions), QStringList({"1 v2.00", "0 v3.00"}));
    }

    void whatTheFolderHoldsShowsOnTheButton()
    {
        const QSignalSpy updates(PostMsg::instance(), &PostMsg::SigAddUpdate);
        emit PostMsg::instance()->SigLabelTextB("v1.02", "true");
        QCOMPARE(receivePicture(), QString("WaitUpdate"));
        QVERIFY(widget("Receive_2")->styleSheet().contains("/WaitUpdateHover.png"));
        QCOMPARE(labelText("label_5"), QString("v1.02"));
        emit PostMsg::instance()->SigLabelTextB("v1.03", "");
        QCOMPARE(receivePicture(), QString("Confirm"));
        QCOMPARE(labelText("label_5"), QString("v1.03"));
        QCOMPARE(updates.count(), 2);
        QCOMPARE(updates[0][0].toInt(), 1);
        QVERIFY(updates[0][1].toBool() && !updates[1][1].toBool());
    }

    // ---- Pairing and upgrade

    void theToolPairsOverThePage()
    {
        OnDevicePage = 1;
        QPoint middle;
        QString target;
        fixture::whenModal<Match>([&](Match *match) {
            middle = match->geometry().center();
            target = match->target().DevicePath;
            match->reject();
        });
        widget<QPushButton>("pushButton_2")->click();
        QCOMPARE(target, QString("dev"));
        const QPoint wanted = page->mapToGlobal(page->rect().center()) + QPoint(-70, -30);
        QVERIFY2((middle - wanted).manhattanLength() <= 2, qPrintable(QString::number(middle.x())));
        QVERIFY(fake.connected());
        QCOMPARE(fake.connectedPath(), std::string("dev"));
    }

    void theUpgradeButtonOpensItsDialog()
    {
        UpDateRepair *dialog = UpDateRepair::instance();
        QVERIFY(dialog && !dialog->isVisible());
        widget<QToolButton>("Receive_2")->click();
        QVERIFY(dialog->isVisible() && dialog->isModal());
        emit PostMsg::instance()->SigUpdateFrame(false);
        QVERIFY(!dialog->isVisible());
        emit PostMsg::instance()->SigUpdateFrame(true);
        QVERIFY(dialog->isVisible());
        dialog->close();
    }

    void whatIsUpToDateOpensNothing()
    {
        emit PostMsg::instance()->SigSetNewVer();
        widget<QToolButton>("Receive_2")->click();
        emit PostMsg::instance()->SigUpdateFrame(true);
        QVERIFY(!UpDateRepair::instance()->isVisible());
        emit PostMsg::instance()->SigSetver(3);
        widget<QToolButton>("Receive_2")->click();
        QVERIFY(UpDateRepair::instance()->isVisible());
        UpDateRepair::instance()->close();
    }

    // ---- Language

    void choosingALanguageStoresAndTellsIt()
    {
        UserStore::instance().Remove("Language", "Language");
        const QSignalSpy all(PostMsg::instance(), &PostMsg::SigAllLanguage);
        const QSignalSpy other(PostMsg::instance(), &PostMsg::SigLanguageSameA);
        auto *box = widget<QComboBox>("comboBox");
        QCOMPARE(box->count(), 1);
        QCOMPARE(box->itemText(0), QString("English"));
        LanguageIndex = 3;
        emit box->activated(0);
        QCOMPARE(UserStore::instance().ReadText("Language", "Language"), QString("0"));
        QCOMPARE(int(LanguageIndex), 0);
        QCOMPARE(all.count(), 1);
        QCOMPARE(other.count(), 1);
        QCOMPARE(other.first().first().toInt(), 0);
    }

    void theOtherPagesLanguageIsTakenInSilence()
    {
        auto *box = widget<QComboBox>("comboBox");
        box->addItem("Second", 1);
        const QSignalSpy all(PostMsg::instance(), &PostMsg::SigAllLanguage);
        const QSignalSpy changed(box, QOverload<int>::of(&QComboBox::currentIndexChanged));
        emit PostMsg::instance()->SigLanguageSameB(1);
        QCOMPARE(box->currentIndex(), 1);
        emit PostMsg::instance()->SigLanguageSameB(7); // none, which shows the first one's texts
        QCOMPARE(box->currentIndex(), 0);
        QCOMPARE(changed.count() + all.count(), 0);
    }

    // ---- Start at login

    void theBoxShowsTheStoredChoice_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("checked");
        for (const char *other : {"", "0", "01", "11", "true", "-1"})
            QTest::newRow(*other ? other : "nothing") << QString(other) << false;
        QTest::newRow("1") << "1" << true;
    }
    void theBoxShowsTheStoredChoice()
    {
        QFETCH(QString, stored);
        QFETCH(bool, checked);
        if (!stored.isEmpty())
            UserStore::instance().WriteValue("AutoStart", "Enable", stored);
        makePage();
        QCOMPARE(widget<QCheckBox>("checkBox")->isChecked(), checked);
        QCOMPARE(QFile::exists(autostart::entryPath()), checked); // one that was lost is there again
        QCOMPARE(storedChoice(), stored);
    }

    void theBoxWritesTheEntryAndRemovesIt()
    {
        auto *box = widget<QCheckBox>("checkBox");
        QTest::mouseClick(widget("label_10"), Qt::RightButton);
        QVERIFY(!box->isChecked());
        QTest::mouseClick(widget("label_10"), Qt::LeftButton); // its caption
        QVERIFY(box->isChecked());
        QCOMPARE(storedChoice(), QString("1"));
        QVERIFY(autostart::isWhole());
        QTest::mouseClick(box, Qt::LeftButton);
        QCOMPARE(storedChoice(), QString("0"));
        QVERIFY(!QFile::exists(autostart::entryPath()));
        QCOMPARE(box->accessibleName(), text(Section::Settings, "AutoOpen"));
    }

    void anEntryThatCannotBeWrittenLeavesTheChoiceAsItWas()
    {
        QVERIFY(QFile::remove(desktop->configFolder()) || QDir(desktop->configFolder()).removeRecursively());
        QFile inTheWay(desktop->configFolder());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        notice::NextAnswer<UpDateWarning> answer(true);
        widget<QCheckBox>("checkBox")->click();
        QVERIFY(answer.isTaken());
        QCOMPARE(answer.text(),
                 text(Section::Settings, "AutoOpenFailed").arg(QFileInfo(autostart::entryPath()).path()));
        QVERIFY(!widget<QCheckBox>("checkBox")->isChecked());
        QCOMPARE(storedChoice(), QString());
    }

    // ---- The desktop's mouse settings

    void withoutAControlCentreTheButtonSaysWhy()
    {
        QVERIFY(!widget("pushButton")->isEnabled());
        QCOMPARE(widget("pushButton")->toolTip(), text(Section::Settings, "NoMouseSettings"));
        page->on_pushButton_clicked(); // one that has gone meanwhile
    }

    void theButtonOpensTheControlCentre()
    {
        const QString ran = desktop->installControlCentre("xfce-mouse-settings", "XFCE");
        makePage();
        page->show();
        QVERIFY(widget("pushButton")->isEnabled());
        QCOMPARE(widget("pushButton")->toolTip(), QString());
        widget<QPushButton>("pushButton")->click();
        QTRY_VERIFY(QFile::exists(ran));
    }

    // ---- Reset

    void aResetOfASilentMouseOnlyRaisesTheNotice()
    {
        fake.setOnline("dev", false);
        const QSignalSpy offLine(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        const notice::NextAnswer<ContainReset> never(true);
        widget<QToolButton>("Reset")->click();
        QCOMPARE(offLine.count(), 1);
        QCOMPARE(offLine.first().first().toInt(), 0);
        QVERIFY(!never.isTaken());
        QVERIFY(!SettingsBusy);
        QCOMPARE(fake.count("UsbServer_SetClearSetting"), 0);
    }

    void aResetThatIsNotConfirmedChangesNothing()
    {
        notice::NextAnswer<ContainReset> no(false);
        widget<QToolButton>("Reset")->click();
        QVERIFY(no.isTaken());
        QVERIFY(!SettingsBusy);
        QCOMPARE(fake.count("UsbServer_SetClearSetting"), 0);
        QVERIFY(fake.updates().empty());
    }

    void aResetGoesItsWayAndWaits()
    {
        notice::NextAnswer<ContainReset> yes(true);
        bool busy = false;
        bool blocked = false;
        fixture::whenModal<UpDataParam>([&](UpDataParam *wait) {
            busy = SettingsBusy;
            blocked = wait->isModal() && wait->isVisible(); // so that Reset cannot be clicked again
            wait->close();
        });
        QTest::mouseClick(widget("Reset"), Qt::LeftButton);
        QVERIFY(yes.isTaken());
        QVERIFY(busy && blocked && !SettingsBusy);
        const std::vector<std::string> calls = fake.calls();
        const auto at = [&calls](const std::string &name) {
            return std::find_if(
                       calls.begin(), calls.end(),
                       [&](const std::string &each) { return each.compare(0, name.size(), name) == 0; }) -
                   calls.begin();
        };
        QVERIFY(at("UsbServer_SetBatteryOptimizeEnable 0") < at("ProtocolDataUpdate"));
        QVERIFY(at("ProtocolDataUpdate") < at("UsbServer_SetClearSetting"));
        QVERIFY(at("UsbServer_SetClearSetting") < int(calls.size()));
    }

    // ---- What this release has no control for

    void theLongRangeModeOfThisPage()
    {
        const QSignalSpy offLine(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        QVERIFY(!widget("checkBox_2"));
        page->on_checkBox_2_toggled(true);
        QCOMPARE(int(fake.device("dev").longRange), 1);
        page->on_checkBox_2_toggled(false);
        QCOMPARE(int(fake.device("dev").longRange), 0);
        QCOMPARE(offLine.count(), 0);
        fake.setOnline("dev", false);
        page->on_checkBox_2_toggled(true);
        QCOMPARE(int(fake.device("dev").longRange), 0);
        QCOMPARE(offLine.count(), 1);
    }
};

TEST_CLASS(tst_FormSetting, fixture::ShippedLooks)

#include "tst_formsetting.moc"
