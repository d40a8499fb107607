// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The real windows, worker and layer against emulated mice, with the product's own data: from a click
// to the flash, and from the mouse to the page.
#include "device/ImageCache.h"
#include "environment/DataRoot.h"
#include "presentation/Notices.h"
#include "presentation/StyleSheets.h"
#include "tests/e2e/Program.h"
#include "tests/e2e/ProgramSettled.h"
#include "tests/support/TestMain.h"
#include "tests/support/Watchdog.h"

#include <QCloseEvent>
#include <QPixmapCache>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>
#include <QtTest>

namespace
{

struct RateCase {
    const char *button;
    int code;
    bool shownBy1k;
};
const RateCase Rates[] = {
    {"Button125HZ", 8, true},    {"Button250HZ", 4, true},    {"Button500HZ", 2, true},
    {"Button1000HZ", 1, true},   {"Button2000HZ", 16, false}, {"Button4000HZ", 32, false},
    {"Button8000HZ", 64, false},
};

// Whether the toolkit has this picture already, decoded earlier than one that is made now.
bool isLoaded(const QString &file)
{
    QPixmap now(1, 1);
    now.fill();
    const QPixmap picture(style::pictureFolder(QFileInfo(file).path()) + QFileInfo(file).fileName());
    return !picture.isNull() && picture.cacheKey() < now.cacheKey();
}

} // namespace

class tst_program : public QObject
{
    Q_OBJECT

private slots:
    void everyRateReachesTheFlash_data()
    {
        QTest::addColumn<QString>("plug");
        QTest::addColumn<QString>("mouse");
        QTest::addColumn<bool>("is1k");
        QTest::newRow("1 kHz receiver") << "r1"
                                        << "m1" << true;
        QTest::newRow("8 kHz receiver") << "r2"
                                        << "m2" << false;
    }
    void everyRateReachesTheFlash()
    {
        QFETCH(QString, plug);
        QFETCH(QString, mouse);
        QFETCH(bool, is1k);
        const QByteArray id = mouse.toLatin1();
        Program program;
        Watchdog watchdog;
        program.open(plug);
        program.click("SensorButton");
        for (const RateCase &row : Rates) {
            if (is1k && !row.shownBy1k)
                continue;
            program.click(row.button);
            program.expect(row.button,
                           [&, code = row.code] { return program.bus.flash(id).ReportRate == code; });
        }
        program.expect("fast rates are there for a fast link only",
                       [&] { return bool(windows::visible(QStringLiteral("Button8000HZ"))) == !is1k; });
        program.expect("record and flash agree", [&] { return program.agrees(id); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY2(!watchdog.barked(), qPrintable(QString::number(watchdog.longestSilenceMs())));
    }

    void withTheRadioOffTheButtonGoesBack()
    {
        Program program;
        Watchdog watchdog;
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        program.clickUntil("Button500HZ", "m1", [&] { return program.bus.flash("m1").ReportRate == 2; });
        program.order("radio m1 off");
        program.click("Button125HZ");
        program.expect("notice", [] { return windows::shown<MouseOffLine>() != nullptr; });
        program.expect("old button", [] { return windows::isChecked(QStringLiteral("Button500HZ")); });
        program.expect("old byte", [&] { return program.bus.flash("m1").ReportRate == 2; });
        program.expect("old record", [] { return DeviceRecord::copy().ReportRate == 2; });
        program.order("set m1 flash 0 04"); // what only a new read can tell
        program.order("radio m1 on");
        program.expect("notice gone", [] { return !windows::shown<MouseOffLine>(); });
        program.waitForLoad();
        program.expect("read anew", [] { return windows::isChecked(QStringLiteral("Button250HZ")); });
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(!watchdog.barked());
    }

    void theMousesOwnButtonMovesThePage()
    {
        Program program;
        uint64_t writes = 0;
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        program.script.step("count", always, [&] {
            writes = program.bus.emulated.reportCount("r1", wire::Command::FlashWrite);
            program.bus.order("press m1 rate");
        });
        program.expect("page follows", [&] {
            const int code = program.bus.flash("m1").ReportRate;
            for (const RateCase &row : Rates)
                if (row.code == code)
                    return code != 1 && windows::isChecked(QString::fromLatin1(row.button));
            return false;
        });
        std::unique_ptr<ProgramSettled> settled;
        program.script.step("a word behind", always,
                            [&] { settled = std::make_unique<ProgramSettled>(program.bus, "m1"); });
        program.expect("settled", [&] { return bool(*settled); });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(program.bus.emulated.reportCount("r1", wire::Command::FlashWrite), writes);
    }

    void leavingWritesTheCacheThatAnAbsentMouseShows()
    {
        QString name;
        Program program;
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        program.clickUntil("Button250HZ", "m1", [&] { return program.bus.flash("m1").ReportRate == 4; });
        program.click("UpArrow");
        program.expect("tiles", [] { return windows::visible(windows::tileOf(QStringLiteral("r1"))); });
        program.script.step("cache", always, [&] { name = SelectedDevice::imageName(); });
        program.order("radio m1 off");
        program.script.step(
            "tile of an absent mouse", [] { return windows::visible(windows::tileOf(QStringLiteral("r1"))); },
            [] { windows::click(windows::tileOf(QStringLiteral("r1"))); });
        program.expect("awaiting", [] { return AwaitingMouse.load(); });
        program.click("SensorButton");
        program.expect("the cached rate", [] { return windows::isChecked(QStringLiteral("Button250HZ")); });
        QCOMPARE(program.script.run(), QString());
        FlashDataMap cached{};
        QVERIFY(ImageCacheRead(name, &cached));
        QCOMPARE(int(cached.ReportRate), 4);
    }

    // What the window manager sends for Alt+F4, from the task bar and at the end of a session.
    void aClosedWindowLetsTheMouseGo()
    {
        Program program;
        program.open(QStringLiteral("r1"));
        program.click("SensorButton");
        program.clickUntil("Button250HZ", "m1", [&] { return program.bus.flash("m1").ReportRate == 4; });
        program.expect("taken charge of",
                       [&] { return program.bus.emulated.receiver("r1")->driverStatus == 1; });
        bool accepted = false;
        program.script.step("close", always, [&] {
            QCloseEvent close;
            QCoreApplication::sendEvent(program.window->windowHandle(), &close);
            accepted = close.isAccepted();
        });
        program.expect("let go", [&] { return program.bus.emulated.receiver("r1")->driverStatus == 0; });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(accepted);
        QVERIFY(program.window->isHidden());
        FlashDataMap cached{};
        QVERIFY(ImageCacheRead(SelectedDevice::imageName(), &cached));
        QCOMPARE(int(cached.ReportRate), 4);
    }

    void enteringAgainReadsAgain()
    {
        Program program;
        program.open(QStringLiteral("r2"));
        program.expect("low battery", [] { return windows::visible(QStringLiteral("label_2")); });
        program.click("UpArrow");
        program.expect("tiles", [] { return windows::visible(windows::tileOf(QStringLiteral("r2"))); });
        program.order("set m2 flash 0 10");
        program.open(QStringLiteral("r2"));
        program.click("SensorButton");
        program.expect("2000 Hz", [] { return windows::isChecked(QStringLiteral("Button2000HZ")); });
        program.expect("record and flash agree", [&] { return program.agrees("m2"); });
        QCOMPARE(program.script.run(), QString());
    }

    // The second mouse is of the model behind that of the first picture.
    void thePointerOnATileLoadsThePicturesOfItsPage()
    {
        Program program;
        const auto tile = [] { return windows::visible(Program::tile(QStringLiteral("r2"))); }; // made later
        program.expect("the tile", [tile] { return tile() != nullptr; });
        QCOMPARE(program.script.run(), QString());
        QPixmapCache::clear();
        QEvent enter(QEvent::Enter);
        QApplication::sendEvent(tile(), &enter);
        bool passed = false;
        QTimer::singleShot(0, [&passed] { passed = true; });
        QTRY_VERIFY(passed);
        QVERIFY(isLoaded(QStringLiteral("Dialog/BackGround.png")));
        QVERIFY(isLoaded(QStringLiteral("Buttoninterface/BackGround.png")));
        QVERIFY(isLoaded(QStringLiteral("Buttoninterface/mouse1.png")));
        QVERIFY(!isLoaded(QStringLiteral("Buttoninterface/mouse2.png")));
    }

    void pullingTheReceiverLeadsBackToTheTiles()
    {
        Program program;
        program.open(QStringLiteral("r1"));
        program.order("unplug r1");
        program.expect("back on the selection page", [] {
            return windows::visible(windows::tileOf(QStringLiteral("r2"))) && windows::attached().size() == 1;
        });
        program.order("plug r1");
        program.expect("tile again", [] { return windows::visible(windows::tileOf(QStringLiteral("r1"))); });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(int(OnDevicePage), 0);
    }

    void pullingItDuringTheLoadIsNoHang()
    {
        Program program;
        Watchdog watchdog;
        program.order("fault r1 unplug at 70 command flashread");
        program.script.step(
            "tile", [] { return windows::visible(windows::tileOf(QStringLiteral("r1"))); },
            [] { windows::click(windows::tileOf(QStringLiteral("r1"))); });
        program.expect("back on the selection page", [] {
            return windows::visible(windows::tileOf(QStringLiteral("r2"))) && OnDevicePage == 0 &&
                   !windows::shown<UpDataParam>() && !windows::shown<MouseOffLine>();
        });
        program.order("fault r1 clear");
        program.order("plug r1");
        program.open(QStringLiteral("r1"));
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        // Somebody answers the notice that a lost load ends in.
        QTimer answer;
        connect(&answer, &QTimer::timeout, [] {
            if (auto *const notice = windows::shown<MouseOffLine>())
                notice->close();
        });
        answer.start(50);
        QCOMPARE(program.script.run(30000), QString());
        QVERIFY(!watchdog.barked());
    }

    void randomEventsWhileTheUserClicks()
    {
        Program program;
        Watchdog watchdog(2 * Watchdog::MeantWaitMs + 1000);
        QRandomGenerator random(7);
        QTimer person; // answers notices, opens the tile, clicks rates
        connect(&person, &QTimer::timeout, [&] {
            if (auto *const notice = windows::shown<MouseOffLine>())
                notice->close();
            else if (windows::shown<UpDataParam>())
                return;
            else if (windows::visible(windows::tileOf(QStringLiteral("r1"))))
                windows::click(windows::tileOf(QStringLiteral("r1")));
            else if (!windows::visible(QStringLiteral("Button125HZ")))
                windows::click(QStringLiteral("SensorButton"));
            else
                windows::click(QString::fromLatin1(Rates[random.bounded(4)].button));
        });
        QTimer fate;
        int events = 0;
        connect(&fate, &QTimer::timeout, [&] {
            static const char *const orders[] = {"radio m1 off",  "radio m1 on",  "radio m1 on",
                                                 "press m1 rate", "press m1 dpi", "unplug r1",
                                                 "plug r1",       "plug r1",      "unplug r2",
                                                 "plug r2",       "press m1 dpi", "press m1 rate"};
            program.bus.order(orders[random.bounded(12)]);
            ++events;
        });
        person.start(30);
        fate.start(60);
        program.script.step(
            "events", [&] { return events > 250; }, [&] { fate.stop(); });
        program.order("plug r1");
        program.order("radio m1 on");
        program.script.step("calm", always, [&] { person.stop(); });
        QTimer answer;
        connect(&answer, &QTimer::timeout, [] {
            if (auto *const notice = windows::shown<MouseOffLine>())
                notice->close();
        });
        answer.start(50);
        program.expect("no dialog",
                       [] { return !windows::shown<UpDataParam>() && !windows::shown<MouseOffLine>(); });
        program.script.step("leave", always, [] { windows::click(QStringLiteral("UpArrow")); });
        program.open(QStringLiteral("r1"));
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(60000), QString());
        QVERIFY2(!watchdog.barked(), qPrintable(QString::number(watchdog.longestSilenceMs())));
    }
};

TEST_CLASS(tst_program, ProgramSetUp)
#include "tst_program.moc"
