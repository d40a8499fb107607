// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Pairing with the real windows, worker and layer: from a tile whose mouse is away, from the space bar, and
// every way in which it ends.
#include "catalogue/RegistryStore.h"
#include "service/Match.h"
#include "service/ModelDevices.h"
#include "service/WiredMarriage.h"
#include "tests/e2e/Program.h"

#include <algorithm>

namespace
{

// A receiver that its mouse has left, and the mouse that can be paired with it.
const char Strangers[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                         "receiver r1 class 1k version 1.02 address a10001\n"
                         "plug r1\n";

QString pairText(const char *key) { return language::text(language::Section::pair, key, LanguageIndex); }

bool says(const char *key)
{
    auto *const button = windows::visible<QAbstractButton>(QStringLiteral("MatchButton"));
    return button && button->text() == pairText(key);
}
bool isPairing() { return isShown<Match>() && pairing::isActive(); }
bool hasFailed() { return says("PairFail") && !pairing::isActive(); }
bool hasPaired() { return says("PairSuccess") && !pairing::isActive(); }

void press(int key)
{
    if (QWidget *const modal = QApplication::activeModalWidget())
        QTest::keyClick(modal, Qt::Key(key));
}

} // namespace

class tst_Pairing : public QObject
{
    Q_OBJECT

    // A receiver that does not answer in time gives a notice instead, which is closed.
    static void clickTile(Program &program)
    {
        const QString plug = QStringLiteral("r1");
        const auto ready = [plug] {
            QWidget *const modal = QApplication::activeModalWidget();
            if (modal && !dynamic_cast<Match *>(modal))
                modal->close();
            return !modal && windows::visible(Program::tile(plug));
        };
        program.script.repeat("the dialog", isShown<Match>, ready,
                              [plug] { windows::click(Program::tile(plug)); });
    }
    static void pressSpace(Program &program)
    {
        program.script.step("space", always,
                            [&program] { QTest::keyClick(program.window.get(), Qt::Key_Space); });
        program.expect("the dialog", isShown<Match>);
    }
    // The receiver says so.
    static bool tells(Program &program, const char *text)
    {
        return program.bus.emulated.order("state").find(text) != std::string::npos;
    }
    static void startPairing(Program &program)
    {
        program.click("MatchButton");
        program.expect("pairing", [&program] { return isPairing() && tells(program, "pairing=1"); });
    }
    static void close(Program &program)
    {
        program.script.step("close", always, [] { answer<Match>("CloseButton"); });
        program.expect("closed", isGone<Match>);
    }
    // The device page is then read anew, and until it is fed an edit counts for nothing.
    static void closeOverDevicePage(Program &program)
    {
        program.script.step("close", always, [] {
            DataLoaded = false;
            answer<Match>("CloseButton");
        });
        program.expect("read anew", [] { return comesToRest() && isGone<Match>(); });
    }

private slots:
    void init() { RegistryStore::instance().removeValue(registry::BaseGroup, "MouseVer186"); }

    void aTileWhoseMouseIsAwayIsPaired()
    {
        Program program(Strangers);
        clickTile(program);
        startPairing(program);
        program.order("pair m1");
        program.expect("paired", hasPaired);
        close(program);
        // The tile shows the mouse, which opens as any.
        program.expect("on line", [] {
            const auto tiles = windows::attached();
            return tiles.size() == 1 && tiles.front().Mid == 6 && tiles.front().Online;
        });
        program.open(QStringLiteral("r1"));
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
    }

    void theSpaceBarPairsTheOnlyReceiver()
    {
        Program program(Strangers);
        program.expect("the tile", [] { return windows::visible(Program::tile(QStringLiteral("r1"))); });
        pressSpace(program);
        startPairing(program);
        program.order("pair m1");
        program.expect("paired", hasPaired);
        program.script.step("space again", always, [] { press(Qt::Key_Space); });
        program.script.step(
            "escape", [] { return hasPaired(); }, [] { press(Qt::Key_Escape); });
        program.expect("closed", isGone<Match>);
        QCOMPARE(program.script.run(), QString());
        QVERIFY(tells(program, "pairing=0"));
    }

    // Behind it the device page reads the new mouse, writes to it and follows its plugs.
    void theSpaceBarPairsAnotherMouseOnTheDevicePage()
    {
        Program program("mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                        "mouse m2 cid 18 mid 6 version 1.05 battery 33\n"
                        "receiver r1 class 1k mouse m1 version 1.02 address a10001\n"
                        "set m2 flash 0x00 04\n"
                        "plug r1\n");
        program.open(QStringLiteral("r1"));
        program.expect("the old one", [&] { return program.agrees("m1"); });
        pressSpace(program);
        startPairing(program);
        program.expect("paused", [] { return OnDevicePage == 0; });
        program.order("pair m2");
        program.expect("paired", hasPaired);
        closeOverDevicePage(program);
        program.expect("the new one", [&] { return program.agrees("m2"); });
        program.waitForPage();
        program.click("SensorButton");
        program.clickUntil("Button125HZ", "m2", [&] { return program.bus.flash("m2").ReportRate == 8; });
        program.order("unplug r1");
        program.expect("left", [] { return OnDevicePage == 0 && windows::attached().empty(); });
        QCOMPARE(program.script.run(), QString());
        QVERIFY(program.bus.flash("m1").ReportRate != 8);
    }

    void closedWithoutAPairingTheDevicePageGoesOn()
    {
        Program program;
        program.open(QStringLiteral("r1"));
        pressSpace(program);
        closeOverDevicePage(program);
        program.click("SensorButton");
        program.clickUntil("Button125HZ", "m1", [&] { return program.bus.flash("m1").ReportRate == 8; });
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
    }

    void whatFailsIsToldAndCanBeTriedAgain_data()
    {
        QTest::addColumn<QByteArray>("before"); // the start
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QByteArray>("mend");
        const auto row = [](const char *name, const char *before, const char *after, const char *mend) {
            QTest::newRow(name) << QByteArray(before) << QByteArray(after) << QByteArray(mend);
        };
        row("a refusal", "pairrefuse r1 on", "", "pairrefuse r1 off");
        row("silence", "fault r1 noreply always command pairenter", "", "fault r1 clear");
        row("the deadline", "pairtime r1 300", "", "pairtime r1 60000");
        row("the receiver gives up", "", "pairfail r1", "");
        row("the receiver is pulled", "", "unplug r1", "plug r1");
    }
    void whatFailsIsToldAndCanBeTriedAgain()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QByteArray, mend);
        Program program(Strangers);
        clickTile(program);
        if (!before.isEmpty())
            program.order(before.constData());
        program.click("MatchButton");
        if (!after.isEmpty()) {
            program.expect("pairing", [&program] { return isPairing() && tells(program, "pairing=1"); });
            program.order(after.constData());
        }
        program.expect("failed", hasFailed);
        if (!mend.isEmpty())
            program.order(mend.constData());
        program.expect("back", [] {
            uint32_t version = 0;
            const QByteArray path = windows::shown<Match>()->target().DevicePath.toLocal8Bit();
            return UsbFinderC_GetSlaveVersion(path.constData(), &version) != 0;
        });
        startPairing(program);
        program.order("pair m1");
        program.expect("paired", hasPaired);
        close(program);
        QCOMPARE(program.script.run(), QString());
    }

    // On the device page the loss of the receiver leads back to the tiles, under the dialog.
    void aReceiverThatIsPulledOnTheDevicePage()
    {
        Program program;
        program.open(QStringLiteral("r1"));
        pressSpace(program);
        startPairing(program);
        program.order("unplug r1");
        program.expect("failed", hasFailed);
        program.expect("the tiles", [] { return windows::visible(Program::tile(QStringLiteral("r2"))); });
        close(program);
        program.order("plug r1");
        program.open(QStringLiteral("r1"));
        program.expect("record and flash agree", [&] { return program.agrees("m1"); });
        QCOMPARE(program.script.run(), QString());
    }

    void aPairingCannotBeClosed()
    {
        Program program(Strangers);
        clickTile(program);
        startPairing(program);
        program.script.step("every way", always, [&program] {
            auto *const dialog = windows::shown<Match>();
            press(Qt::Key_Escape);
            answer<Match>("CloseButton");
            dialog->close();
            program.window->findChild<QWidget *>(QStringLiteral("frameChange"))->setFocus();
        });
        program.expect("it goes on", isPairing);
        program.order("pairfail r1");
        program.expect("failed", hasFailed);
        program.script.step("escape", always, [] { press(Qt::Key_Escape); });
        program.expect("closed", isGone<Match>);
        QCOMPARE(program.script.run(), QString());
    }

    // The question comes first when this computer knows the mouse.
    void aMouseThatIsKnownIsAskedForFirst()
    {
        Program program("mouse m1 cid 18 mid 6 version 1.05\nmouse m2 cid 18 mid 6 version 1.05\n"
                        "receiver r1 class 1k mouse m1 version 1.02 address a10001\n"
                        "receiver r2 class 8k mouse m2 version 1.02 address a10002\n"
                        "radio m1 off\nplug r1\nplug r2\n");
        RegistryStore::instance().setValue(registry::BaseGroup, "MouseVer186", "v1.05");
        // Without the second one the tile belongs to the only mouse of its model and opens it.
        program.script.step(
            "both tiles",
            [] {
                const auto tiles = windows::attached();
                return tiles.size() == 2 && windows::visible(Program::tile(QStringLiteral("r1"))) &&
                       std::all_of(tiles.begin(), tiles.end(),
                                   [](const auto &tile) { return tile.Mid == 6; });
            },
            [] { windows::click(Program::tile(QStringLiteral("r1"))); });
        program.script.step("the question", isShown<RePair>, [] { answer<RePair>("Cancel"); });
        program.script.step("no dialog", isGone<RePair>,
                            [] { windows::click(Program::tile(QStringLiteral("r1"))); });
        program.script.step("the question again", isShown<RePair>, [] { answer<RePair>("OK"); });
        program.expect("the dialog", isShown<Match>);
        startPairing(program);
        program.order("radio m1 on");
        program.order("pair m1");
        program.expect("paired", hasPaired);
        close(program);
        QCOMPARE(program.script.run(), QString());
    }

    // A mouse on its cable takes the address of the receiver beside it and answers by radio afterwards.
    void aWiredMarriage()
    {
        Program program("mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                        "receiver r1 class 8k version 1.02 address a1b2c3\n"
                        "plug r1\nplug m1\n");
        QCOMPARE(WiredMarriage().marry(attachedOfModel({18, 6, 8})), 1);
        program.order("unplug m1");
        program.expect("by radio", [] {
            const auto tiles = windows::attached();
            return tiles.size() == 1 && tiles.front().Mid == 6 && tiles.front().Online;
        });
        QCOMPARE(program.script.run(), QString());
    }
};

TEST_CLASS(tst_Pairing, ProgramSetUp)

#include "tst_pairing.moc"
