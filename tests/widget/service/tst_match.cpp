// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The pairing dialog on the scripted layer: its target, its rule, its phases, its outcomes and its end.
#include "device/EventDispatch.h"
#include "presentation/StyleSheets.h"
#include "service/Match.h"
#include "service/PairingRing.h"
#include "tests/support/Contrast.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QLabel>
#include <QTextBlock>
#include <QTextEdit>
#include <QToolButton>

using fixture::CableKind;

namespace
{

constexpr uint8_t Works = 1, Fails = 2, Succeeds = 3;

QString pairText(const char *key) { return language::text(language::Section::pair, key, 0); }

DeviceAllInfo receiver(const char *path)
{
    DeviceAllInfo info = fixture::info(QString::fromLatin1(path), Receiver1K);
    info.Vid = QStringLiteral("1209");
    info.Pid = QString::fromStdString(fixture::pidOf(Receiver1K));
    return info;
}

int rescans = 0;
void rescan() { ++rescans; }

} // namespace

class tst_Match : public QObject
{
    Q_OBJECT

    FakeHidUsb &fake = FakeHidUsb::instance();
    AttachedDevices attached;
    std::unique_ptr<Match> dialog;

    QToolButton *matchButton() const { return dialog->findChild<QToolButton *>("MatchButton"); }
    QToolButton *closeButton() const { return dialog->findChild<QToolButton *>("CloseButton"); }
    bool shows(const char *name) const { return dialog->findChild<QWidget *>(name)->isVisible(); }
    bool looks(const char *key, const char *picture) const
    {
        return matchButton()->text() == pairText(key) &&
               matchButton()->styleSheet().contains(QString("/Picture/Setting/%1.png").arg(picture));
    }
    bool isIdle() const { return looks("StartPair", "Pair") && pairing::phase() == PairingPhase::Idle; }
    bool isPairing() const { return looks("Pairing", "Pair") && pairing::isActive(); }
    bool hasFailed() const { return looks("PairFail", "PairFail") && matchButton()->isEnabled(); }
    bool hasPaired() const { return looks("PairSuccess", "PairSuccess") && !matchButton()->isEnabled(); }

    void open(const DeviceAllInfo &target)
    {
        attached.choosePairingTarget(target);
        open();
    }
    void open()
    {
        dialog = std::make_unique<Match>(&attached);
        dialog->setRescan(&rescan);
        dialog->open();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    }
    void tell(uint8_t status) { QVERIFY(fake.deliver(6, 0, {status})); }
    // The dialog has taken whatever the layer has told.
    void settle()
    {
        QTRY_VERIFY(fake.idle());
        QCoreApplication::sendPostedEvents();
    }
    int starts() const { return fake.count("UsbServer_EnterDonglePairOnlyCid"); }

    // Ends behind all timers of up to `ms` that run now; a coarse one may be a twentieth late.
    static bool haveFired(int ms)
    {
        QTimer last;
        last.setTimerType(Qt::PreciseTimer);
        last.setSingleShot(true);
        QSignalSpy fired(&last, &QTimer::timeout);
        last.start(ms + ms / 10);
        return fired.wait(10000);
    }

private slots:
    void init()
    {
        fixture::clean();
        fake.addDevice(fixture::device("r", 6, Receiver1K, false));
        attached = AttachedDevices();
        rescans = 0;
    }
    void cleanup()
    {
        if (pairing::isActive())
            pairing::end(PairingPhase::Failed);
        dialog.reset();
        settle();
    }

    // ---- The target

    void theTargetIsTheDeviceInUseThenTheChosenOneThenTheFirst()
    {
        QVERIFY(Match().target().DevicePath.isEmpty());
        QVERIFY(Match(&attached).target().DevicePath.isEmpty());
        attached.set({receiver("first"), receiver("second")}, {receiver("first"), receiver("second")});
        QCOMPARE(Match(&attached).target().DevicePath, QString("first"));
        attached.choosePairingTarget(receiver("second"));
        QCOMPARE(Match(&attached).target().DevicePath, QString("second"));
        fixture::select(receiver("used"));
        QCOMPARE(Match(&attached).target().DevicePath, QString("second"));
        OnDevicePage = 1;
        QCOMPARE(Match(&attached).target().DevicePath, QString("used"));
        QCOMPARE(Match().target().DevicePath, QString("used"));
    }

    // ---- The rule

    void itOpensReadyToPair()
    {
        open(receiver("r"));
        QVERIFY(isIdle());
        QVERIFY(matchButton()->isEnabled());
        QCOMPARE(matchButton()->shortcut(), QKeySequence(Qt::Key_Space));
        QVERIFY(matchButton()->styleSheet().contains("color: rgb(" + style::color("ButtonColor")));
        QVERIFY(shows("textEdit") && !shows("label"));
        QCOMPARE(QApplication::focusWidget(), dialog.get());
        QCOMPARE(dialog->findChild<QTextEdit *>("textEdit")->toPlainText(), pairText("DialogPairTips"));
        QCOMPARE(fake.calls().size(), std::size_t(0)); // the watch and the connection are untouched
    }

    void aStepsNextLineStandsUnderItsText()
    {
        open(receiver("r"));
        auto *const steps = dialog->findChild<QTextEdit *>("textEdit");
        const QTextBlock step = steps->document()->lastBlock();
        const QTextLayout *lines = step.layout();
        QVERIFY(lines->lineCount() > 1);
        const int text = step.text().indexOf(' ') + 1;
        QVERIFY(qAbs(lines->lineAt(1).x() - lines->lineAt(0).cursorToX(text)) <= 1.5);
    }

    void withoutAReceiverNothingCanBePaired_data()
    {
        QTest::addColumn<bool>("wired");
        QTest::newRow("a mouse on its cable") << true;
        QTest::newRow("no device") << false;
    }
    void withoutAReceiverNothingCanBePaired()
    {
        QFETCH(bool, wired);
        if (wired)
            open(fixture::info("r", CableKind));
        else
            open();
        QVERIFY(!matchButton()->isEnabled());
        QVERIFY(matchButton()->styleSheet().contains("color: rgb(0,0,0;)"));
        const QImage plate = matchButton()->grab().toImage();
        QVERIFY(support::contrast(plate.pixelColor(20, plate.height() / 2), Qt::black) >= 4.5);
        QVERIFY(shows("label") && !shows("textEdit"));
        QCOMPARE(dialog->findChild<QLabel *>("label")->text(),
                 language::text(language::Section::home, "NoPair", 0));
        for (QWidget *focused : {static_cast<QWidget *>(dialog.get()), static_cast<QWidget *>(closeButton())})
            QTest::keyClick(focused, Qt::Key_Space);
        dialog->on_MatchButton_clicked();
        QCOMPARE(starts(), 0);
        QVERIFY(dialog->isVisible());
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        QCOMPARE(starts(), 1);
    }

    // ---- A pairing

    void thePressStartsAPairing()
    {
        open(receiver("r"));
        QTest::mouseClick(matchButton(), Qt::LeftButton);
        QVERIFY(isPairing());
        const std::vector<std::string> calls = fake.calls();
        QCOMPARE(calls,
                 (std::vector<std::string>{"UsbServerC_Start r", "UsbServer_EnterDonglePairOnlyCid 18"}));
        QVERIFY(matchButton()->isEnabled());                            // the newest start counts
        QTRY_VERIFY(fake.count("UsbServer_ReadDonglePairStatus") == 1); // each second
    }

    void theTextIsAnimated()
    {
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        const QString text = pairText("Pairing");
        QStringList seen;
        for (int i = 0; i < 6; ++i) {
            dialog->onTextTimeupDestroy();
            seen << matchButton()->text();
        }
        QCOMPARE(seen, (QStringList{text, text + ".", text + "..", text + "...", text + "...", text}));
        QTRY_VERIFY(matchButton()->text() != text);
    }

    void theRingTellsTheTimeLeft()
    {
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        auto *const ring = dialog->findChild<PairingRing *>("ring");
        QCOMPARE(ring->secondsLeft(), 60);
        QCOMPARE(ring->accessibleName(), pairText("PairTimeLeft").arg(60));
        QTRY_COMPARE(ring->secondsLeft(), 59);
        tell(Fails);
        settle();
        QCOMPARE(ring->accessibleName(), pairText("PairFail"));
    }

    void whatTheLayerTells_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("phase");
        const auto row = [](const char *name, int code, int status, PairingPhase phase) {
            QTest::newRow(name) << code << status << int(phase);
        };
        row("it goes on", 6, Works, PairingPhase::Pairing);
        row("a failure", 6, Fails, PairingPhase::Failed);
        row("a success", 6, Succeeds, PairingPhase::Succeeded);
        row("0", 6, 0, PairingPhase::Pairing);
        row("4", 6, 4, PairingPhase::Pairing);
        row("255", 6, 255, PairingPhase::Pairing);
        row("another message", 4, Fails, PairingPhase::Pairing);
    }
    void whatTheLayerTells()
    {
        QFETCH(int, code);
        QFETCH(int, status);
        QFETCH(int, phase);
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        QVERIFY(fake.deliver(uint8_t(code), 0, {uint8_t(status), Succeeds, Fails}));
        settle();
        QCOMPARE(int(pairing::phase()), phase);
        QCOMPARE(isPairing(), phase == int(PairingPhase::Pairing));
        QCOMPARE(hasFailed(), phase == int(PairingPhase::Failed));
        QCOMPARE(hasPaired(), phase == int(PairingPhase::Succeeded));
    }

    void aMessageThatIsTooShortTellsNothing()
    {
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        const uint8_t header[] = {0, 6, 0, 0, 0};
        const uint8_t status[] = {Fails};
        pairing::callback(header, 1, status, 1);
        pairing::callback(header, 5, status, 0);
        pairing::callback(nullptr, 0, nullptr, 0);
        QVERIFY(isPairing());
        pairing::callback(header, 2, status, 1);
        QVERIFY(hasFailed());
    }

    // ---- Outcomes

    void afterASuccessTheButtonStaysOff()
    {
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        tell(Succeeds);
        QTRY_VERIFY(hasPaired());
        for (int i = 0; i < 3; ++i)
            dialog->onUSBTimeupDestroy();
        QVERIFY(hasPaired());
        for (QWidget *focused : {static_cast<QWidget *>(dialog.get()), static_cast<QWidget *>(matchButton()),
                                 static_cast<QWidget *>(closeButton())})
            QTest::keyClick(focused, Qt::Key_Space);
        QTest::mouseClick(matchButton(), Qt::LeftButton);
        dialog->on_MatchButton_clicked();
        QCOMPARE(starts(), 1);
        QVERIFY(dialog->isVisible());
        const int asked = fake.count("UsbServer_ReadDonglePairStatus");
        QVERIFY(haveFired(1000)); // the timer of a pairing among them
        QCOMPARE(fake.count("UsbServer_ReadDonglePairStatus"), asked);
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
        QVERIFY(!dialog->isVisible());
    }

    void afterAFailureItStartsAnew()
    {
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        tell(Fails);
        QTRY_VERIFY(hasFailed());
        QTest::mouseClick(matchButton(), Qt::LeftButton);
        QVERIFY(isPairing());
        QCOMPARE(fake.count("UsbServerC_Start"), 2);
        QCOMPARE(starts(), 2);
        tell(Succeeds);
        QTRY_VERIFY(hasPaired());
    }

    // A press during a pairing is a new start, which has an outcome of its own.
    void aPressDuringAPairingStartsAnew()
    {
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        dialog->on_MatchButton_clicked();
        QVERIFY(isPairing());
        QCOMPARE(starts(), 2);
    }

    void aPulledReceiverHasFailed()
    {
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        fake.setDevices({fixture::device("other", 6, Receiver1K)});
        QTRY_VERIFY(hasFailed());
        QVERIFY(!pairing::isActive());
        const int asked = fake.count("UsbServer_ReadDonglePairStatus");
        dialog->on_MatchButton_clicked();
        QVERIFY(isPairing());
        QTRY_VERIFY(hasFailed());
        QVERIFY(fake.count("UsbServer_ReadDonglePairStatus") > asked);
    }

    void silenceHasFailed()
    {
        open(receiver("r"));
        dialog->setSilenceLimit(PairingSilenceLimit);
        dialog->on_MatchButton_clicked();
        dialog->onPairTimeupDestroy();
        QVERIFY(isPairing());
        dialog->setSilenceLimit(1);
        QTRY_VERIFY(hasFailed());
        // What comes all the same is the truth.
        tell(Succeeds);
        QTRY_VERIFY(hasPaired());
    }

    // An outcome that was told before the newest start reaches the dialog after it.
    void anOlderOutcomeDoesNotEndANewStart()
    {
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        emit PostMsg::instance()->SigTimerStop();
        emit PostMsg::instance()->SigButtonEnable(0);
        QVERIFY(isPairing());
        QTRY_VERIFY(matchButton()->text() != pairText("Pairing")); // the text goes on
        tell(Succeeds);
        QTRY_VERIFY(hasPaired());
    }

    void theHubShowsAnOutcome()
    {
        open(receiver("r"));
        emit PostMsg::instance()->SigButtonEnable(5);
        QVERIFY(isIdle());
        emit PostMsg::instance()->SigButtonEnable(0);
        QVERIFY(hasFailed());
        emit PostMsg::instance()->SigButtonEnable(1);
        QVERIFY(hasPaired());
    }

    // ---- The worker

    void theWorkerIsPausedUntilTheOutcome_data()
    {
        QTest::addColumn<QString>("outcome");
        for (const char *outcome : {"failure", "success", "pulled"})
            QTest::newRow(outcome) << QString(outcome);
    }
    void theWorkerIsPausedUntilTheOutcome()
    {
        QFETCH(QString, outcome);
        fixture::select(receiver("r"));
        OnDevicePage = 1;
        open();
        QCOMPARE(dialog->target().DevicePath, QString("r"));
        QCOMPARE(int(OnDevicePage), 1);
        dialog->on_MatchButton_clicked();
        QCOMPARE(int(OnDevicePage), 0);
        tell(Works);
        settle();
        QCOMPARE(int(OnDevicePage), 0);
        if (outcome == "pulled")
            fake.setDevices({});
        else
            tell(outcome == "failure" ? Fails : Succeeds);
        QTRY_VERIFY(!pairing::isActive());
        QCOMPARE(int(OnDevicePage), 1);
        // A pairing from the selection page restores nothing.
        OnDevicePage = 0;
        dialog = nullptr;
        fake.addDevice(fixture::device("r", 6, Receiver1K, false));
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        tell(Fails);
        QTRY_VERIFY(hasFailed());
        QCOMPARE(int(OnDevicePage), 0);
    }

    // The page goes back to the tiles when its receiver is pulled; nothing may call it a device page again.
    void aPageThatIsLeftMeanwhileIsNotComeBackTo()
    {
        fixture::select(receiver("r"));
        OnDevicePage = 1;
        open();
        dialog->on_MatchButton_clicked();
        emit PostMsg::instance()->SigMainPageChange();
        QVERIFY(hasFailed()); // the connection was closed with the page
        QCOMPARE(int(OnDevicePage), 0);
        dialog->on_MatchButton_clicked();
        tell(Succeeds);
        QTRY_VERIFY(hasPaired());
        QCOMPARE(int(OnDevicePage), 0);
    }

    // The outcome may come between the two steps by which the page is left.
    void anOutcomeDuringTheDepartureRestoresNothing()
    {
        fixture::select(receiver("r"));
        OnDevicePage = 1;
        open();
        dialog->on_MatchButton_clicked();
        OnDevicePage = 0;
        pairing::end(PairingPhase::Failed);
        QCOMPARE(int(OnDevicePage), 1);
        emit PostMsg::instance()->SigMainPageChange();
        QCOMPARE(int(OnDevicePage), 0);
    }

    // ---- The space bar

    void onePressOfSpaceIsOnePress_data()
    {
        QTest::addColumn<QString>("focus");
        for (const char *focus : {"MatchButton", "CloseButton", ""})
            QTest::newRow(*focus ? focus : "the dialog") << QString(focus);
    }
    void onePressOfSpaceIsOnePress()
    {
        QFETCH(QString, focus);
        open(receiver("r"));
        QWidget *target = focus.isEmpty() ? dialog.get() : dialog->findChild<QWidget *>(focus);
        target->setFocus();
        QWindow *const window = dialog->windowHandle();
        QSignalSpy clicks(matchButton(), &QToolButton::clicked);
        QTest::keyPress(window, Qt::Key_Space);
        QTest::keyRelease(window, Qt::Key_Space);
        QTRY_COMPARE(clicks.count(), 1);
        // Held down: the system repeats the press.
        for (int i = 0; i < 5; ++i) {
            for (const QEvent::Type type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
                QKeyEvent repeated(type, Qt::Key_Space, Qt::NoModifier, " ", true);
                QCoreApplication::sendEvent(target, &repeated);
            }
        }
        QVERIFY(haveFired(200)); // the releases of clicks by a key among them
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(starts(), 1);
        QVERIFY(dialog->isVisible());
        tell(Fails);
        QTRY_VERIFY(hasFailed());
        QTest::keyClick(window, Qt::Key_Space);
        QTRY_COMPARE(starts(), 2);
    }

    // ---- Closing

    void aPairingCannotBeClosed_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"close button", "slot", "escape", "window system", "reject"})
            QTest::newRow(way) << QString(way);
    }
    void aPairingCannotBeClosed()
    {
        QFETCH(QString, way);
        open(receiver("r"));
        const auto leave = [&] {
            if (way == "close button")
                QTest::mouseClick(closeButton(), Qt::LeftButton);
            else if (way == "slot")
                dialog->WindowClosedSet();
            else if (way == "escape")
                QTest::keyClick(dialog.get(), Qt::Key_Escape);
            else if (way == "reject")
                dialog->reject();
            else
                dialog->close();
        };
        dialog->on_MatchButton_clicked();
        leave();
        QVERIFY(dialog->isVisible());
        QVERIFY(isPairing());
        QCOMPARE(rescans, 0);
        tell(Fails);
        QTRY_VERIFY(hasFailed());
        leave();
        QVERIFY(!dialog->isVisible());
        settle();
        QCOMPARE(rescans, 1);
        const std::vector<std::string> calls = fake.calls();
        QCOMPARE(calls.back(), std::string("StartUsbChanged 600"));
        QCOMPARE(calls[calls.size() - 2], std::string("UsbServer_Exit"));
    }

    void closingWithoutAPairingSearchesAnew()
    {
        open(receiver("r"));
        QTest::mouseClick(closeButton(), Qt::LeftButton);
        QVERIFY(!dialog->isVisible());
        settle();
        QCOMPARE(rescans, 1);
        QCOMPARE(fake.calls(), std::vector<std::string>{"StartUsbChanged 600"});
    }

    void enterPressesTheFocusedCloseButton()
    {
        open(receiver("r"));
        matchButton()->setFocus();
        QTest::keyClick(dialog->windowHandle(), Qt::Key_Return);
        QVERIFY(dialog->isVisible());
        QCOMPARE(starts(), 0);
        closeButton()->setFocus();
        QTest::keyClick(dialog->windowHandle(), Qt::Key_Return);
        QVERIFY(!dialog->isVisible());
    }

    // ---- From the device page

    void behindItWatchAndConnectionAreTheDevicePages_data()
    {
        QTest::addColumn<int>("status"); // 0: closed without a pairing
        QTest::addColumn<bool>("awaited");
        QTest::newRow("closed at once") << 0 << false;
        QTest::newRow("closed at once, the mouse away") << 0 << true;
        QTest::newRow("failed") << int(Fails) << false;
        QTest::newRow("failed, the mouse away") << int(Fails) << true;
        QTest::newRow("paired") << int(Succeeds) << false;
    }
    void behindItWatchAndConnectionAreTheDevicePages()
    {
        QFETCH(int, status);
        QFETCH(bool, awaited);
        fixture::select(receiver("r"));
        OnDevicePage = 1;
        AwaitingMouse = awaited;
        ClearBlocksAfterRead = SkipReceiverQuery = true;
        fixture::whenModal<Match>([&](Match *match) {
            if (status != 0) {
                match->on_MatchButton_clicked();
                AwaitingMouse = false; // by the off-line watch
                tell(uint8_t(status));
                QTRY_VERIFY(!pairing::isActive());
                settle();
            }
            match->WindowClosedSet();
        });
        fake.setRunsWatchAtStart(false);
        pairing::pairSelected(nullptr);
        QCOMPARE(int(OnDevicePage), 1);
        QCOMPARE(fake.connectedPath(), std::string("r"));
        const std::vector<std::string> calls = fake.calls();
        QCOMPARE((std::vector<std::string>{calls.end() - 3, calls.end()}),
                 (std::vector<std::string>{"StartUsbChanged 600", "UsbServerC_Start r",
                                           "UsbServer_ReadAllFlashData"}));
        QCOMPARE(bool(AwaitingMouse), awaited || status == Succeeds);
        QCOMPARE(bool(RestartWorker), status == Succeeds);
        // A reset before it was of the mouse before.
        QCOMPARE(ClearBlocksAfterRead && SkipReceiverQuery, status != Succeeds);
        // The callback is the device page's: it knows the battery, and no pairing.
        QSignalSpy outcome(PostMsg::instance(), &PostMsg::SigButtonEnable);
        tell(Fails);
        QSignalSpy versions(PostMsg::instance(), &PostMsg::SigSetver);
        QVERIFY(fake.deliver(18, 0, {}));
        QTRY_COMPARE(versions.count(), 1);
        QCOMPARE(outcome.count(), 0);
        QVERIFY(fake.changeUsb());
        QTRY_COMPARE(versions.count(), 2); // the device page's watch announces itself so
    }

    void nothingIsTakenBackForAPageThatWasLeft()
    {
        fixture::select(receiver("r"));
        OnDevicePage = 1;
        fixture::whenModal<Match>([&](Match *match) {
            match->on_MatchButton_clicked();
            OnDevicePage = 0;
            emit PostMsg::instance()->SigMainPageChange();
            fake.clearCalls();
            match->WindowClosedSet();
        });
        pairing::pairSelected(nullptr);
        QCOMPARE(fake.count("UsbServerC_Start"), 0);
        QCOMPARE(fake.count("StartUsbChanged"), 0);
        QCOMPARE(int(OnDevicePage), 0);
        pairing::pairSelected(nullptr); // no device page shows: no dialog
        QCOMPARE(fake.count("UsbServerC_Start"), 0);
    }

    // ---- Texts

    void aChangeOfLanguageKeepsThePhase()
    {
        open(receiver("r"));
        dialog->on_MatchButton_clicked();
        tell(Fails);
        QTRY_VERIFY(hasFailed());
        {
            const fixture::OtherLanguage other(
                R"({"mouse":{"pair":{"PairFail":"No luck","PairTool":"Marry"}}})");
            emit PostMsg::instance()->SigAllLanguage(0);
            QCOMPARE(matchButton()->text(), QString("No luck"));
            QCOMPARE(dialog->accessibleName(), QString("Marry"));
        }
        emit PostMsg::instance()->SigAllLanguage(0);
        QVERIFY(hasFailed());
    }
};

TEST_CLASS(tst_Match, fixture::ShippedLooks)

#include "tst_match.moc"
