// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A recording on the page: what it locks and unlocks, what becomes of the keys, how it ends, and what can be
// seen of it.
#include "macro/RecordMark.h"
#include "macro/store/MacroBlockCodec.h"
#include "presentation/Notices.h"
#include "presentation/Widgets.h"
#include "tests/support/EvdevCodes.h"
#include "tests/widget/macro/MacroFiles.h"

using namespace evdev;
using namespace macrofiles;

namespace
{

// What a start disables.
const QByteArrayList Choices = {"AutoInsertDelay", "DefaultDelay",  "ReNumber",    "ReUntil",
                                "ReUntilLoose",    "ReUntilClick",  "ChooseEvent", "DelayTime",
                                "NumberEdit",      "listWidgetHong"};
const QByteArrayList FreedByLeaving = {"DelayTime", "NumberEdit", "listWidgetHong"};

} // namespace

class tst_MacroRecording : public QObject
{
    Q_OBJECT

    std::unique_ptr<MacroPage> made;
    QSignalSpy locks{PostMsg::instance(), SIGNAL(SigStartRecord(int))};

    const MacroPage &page() const { return *made; }
    QStringList disabled() const
    {
        QStringList names;
        for (const QByteArray &name : Choices)
            if (!page().page->findChild<QWidget *>(QString::fromLatin1(name))->isEnabled())
                names << name;
        return names;
    }
    void start() const
    {
        page().choose("Alpha");
        page().button("StartRecord")->click();
    }
    static QStringList all() { return QStringList() << QString(Choices.join(' ')).split(' '); }

private slots:
    void init()
    {
        made =
            std::make_unique<MacroPage>(QVector<QPair<QString, QByteArray>>{{"Alpha", Tap}, {"Beta", Tap}});
        locks.clear();
    }
    void cleanup() { made.reset(); }

    // ---- Start and stop

    void aStartWithoutAMacro()
    {
        notice::NextAnswer<ExeIsRun> told(true);
        page().button("StartRecord")->click();
        QVERIFY(told.isTaken());
        QCOMPARE(told.text(), QString("Choose or name a macro first."));
        QVERIFY(!MacroRecording && locks.isEmpty());
    }

    void aStartLocksAndAStopUnlocks()
    {
        start();
        QCOMPARE(disabled(), all());
        QVERIFY(MacroRecording);
        QCOMPARE(locks.size(), 1);
        QCOMPARE(locks[0][0].toInt(), 0);
        QVERIFY(page().button("StartRecord")->isHidden() && page().button("StopRecord")->isVisible());
        QCOMPARE(page().rows(), QString()); // a recording takes the place of the rows
        QVERIFY(!page().saves());
        page().record(A);
        page().button("StopRecord")->click();
        QCOMPARE(disabled(), QStringList());
        QVERIFY(!MacroRecording);
        QCOMPARE(locks.size(), 2);
        QCOMPARE(locks[1][0].toInt(), 1);
        QVERIFY(page().button("StartRecord")->isVisible() && page().button("StopRecord")->isHidden());
        QVERIFY(page().saves());
        QCOMPARE(page().rows(), TapRows);
        QCOMPARE(page().file("Alpha"), Tap); // until it is saved
        page().record(A);
        QCOMPARE(page().rows(), TapRows);
    }

    // Every key is recorded, so none ends the recording, and the page says what does.
    void theStopTakesAClick()
    {
        start();
        const QString stop = page().button("StopRecord")->text();
        QVERIFY(page().find<QLabel>("noEvents")->isVisible());
        QVERIFY2(page().find<QLabel>("noEvents")->text().contains(stop), "before the first event");
        QVERIFY2(!page().button("StopRecord")->toolTip().isEmpty(), "behind it");
        QTest::mouseClick(page().button("StopRecord"), Qt::LeftButton);
        QVERIFY(!MacroRecording);
    }

    void anEmptyRecordingCanBeSaved()
    {
        start();
        page().button("StopRecord")->click();
        QStringList log;
        connect(PostMsg::instance(), &PostMsg::SigUpDataMacro, page().page.get(),
                [&](const QString &, int index) { log << QString::number(index); });
        page().button("Save")->click();
        QCOMPARE(log, QStringList{"0"});
        QCOMPARE(page().file("Alpha"), QByteArray("1\n"));
    }

    // Left: the rows stay unsaved, Save stays grey, and the radio buttons and ChooseEvent stay disabled.
    void leavingThePageEndsIt_data()
    {
        QTest::addColumn<bool>("bySignal");
        QTest::newRow("the signal") << true;
        QTest::newRow("the page goes") << false;
    }
    void leavingThePageEndsIt()
    {
        QFETCH(bool, bySignal);
        page().choose("Alpha");
        page().page->InsertKeyRow("C", true); // Save is lit
        start();
        page().record(A);
        if (bySignal)
            emit PostMsg::instance()->SigSetMacroPage();
        else
            page().page->hide();
        QVERIFY(!MacroRecording);
        QCOMPARE(locks.size(), 2);
        QCOMPARE(locks[1][0].toInt(), 1);
        QStringList left = all();
        for (const QByteArray &freed : FreedByLeaving)
            left.removeOne(freed);
        QCOMPARE(disabled(), left);
        QVERIFY(!page().saves());
        page().page->show();
        QVERIFY(page().button("StartRecord")->isVisible());
        QCOMPARE(page().rows(), TapRows);
        QVERIFY(macro::isHeld("Alpha"));
        page().choose("Beta");
        page().choose("Alpha");
        QCOMPARE(page().rows(), TapRows);
        QVERIFY(page().saves());
        page().button("StartRecord")->click();
        page().button("StopRecord")->click();
        QCOMPARE(disabled(), QStringList());
    }

    // A macro that comes from the mouse is listed, and the recording goes on in its own.
    void aReadInTheMiddleKeepsTheMacro()
    {
        start();
        page().record(A);
        FlashDataMap record{};
        record.KeyBindings[3] = {6, 3, 253};
        record.MacroBlocks[3] = macro::boundBlock("Fresh", {macro::keyRow("B", true)});
        emit PostMsg::instance()->SigButtonToMacro(record, 3);
        QVERIFY(page().names().contains("Fresh"));
        page().record(A);
        page().button("StopRecord")->click();
        QCOMPARE(page().selected(), QString("Alpha"));
        QCOMPARE(page().rows(), TapRows + " 10ms " + TapRows);
    }

    void leavingWithoutARecordingChangesNothing()
    {
        page().choose("Alpha");
        page().page->InsertKeyRow("C", true);
        emit PostMsg::instance()->SigSetMacroPage();
        QVERIFY(page().saves());
        QVERIFY(locks.isEmpty());
        QCOMPARE(disabled(), QStringList());
    }

    // ---- What waits for the end

    void editingWaits_data()
    {
        QTest::addColumn<QByteArray>("button");
        for (const char *name : {"Amend", "DeleteKey", "Save", "NewHong", "DeleteHong"})
            QTest::newRow(name) << QByteArray(name);
    }
    void editingWaits()
    {
        QFETCH(QByteArray, button);
        if (button == "Save") {
            page().choose("Alpha");
            page().page->InsertKeyRow("C", true);
        }
        start();
        page().record(A);
        notice::NextAnswer<ExeIsRun> told(true);
        page().button(button)->click();
        QVERIFY(told.isTaken());
        QCOMPARE(told.text(), QString("Stop the recording first."));
        QCOMPARE(page().rows(), TapRows);
        QCOMPARE(page().file("Alpha"), Tap);
        QVERIFY(MacroRecording);
    }

    void theMenusOperationsWait()
    {
        start();
        for (void (Macro::*operation)() : {&Macro::RenameMacro, &Macro::ExPortMacro, &Macro::InPortMacro}) {
            notice::NextAnswer<ExeIsRun> told(true);
            (page().page.get()->*operation)();
            QVERIFY(told.isTaken());
        }
    }

    // ---- Rows

    void delays_data()
    {
        QTest::addColumn<bool>("fixed");
        QTest::addColumn<QString>("rows");
        QTest::newRow("measured") << false << "+A 10ms -A 10ms +B 10ms -B";
        QTest::newRow("fixed") << true << "+A 50ms -A 50ms +B 50ms -B";
    }
    void delays()
    {
        QFETCH(bool, fixed);
        QFETCH(QString, rows);
        QVERIFY(page().radio("AutoInsertDelay")->isChecked());
        if (fixed) {
            page().radio("DefaultDelay")->click();
            page().find<QSpinBox>("DelayTime")->setValue(50);
        }
        start();
        page().record(A);
        page().record(B);
        QCOMPARE(page().rows(), rows);
    }

    // 200 events a second, none of which is handled in time.
    void delaysAreThoseOfTheEvents()
    {
        start();
        QStringList wanted;
        for (int i = 0; i < 60; ++i) {
            page().timestamp += 5;
            if (i % 20 == 10)
                QTest::qSleep(40);
            page().key(A, i % 2 == 0);
            wanted << (i % 2 ? "-A" : "+A");
            if (i < 59)
                wanted << "5ms";
        }
        QCOMPARE(page().rows(), wanted.join(' '));
    }

    void aKeyWithoutANameLeavesItsDelay()
    {
        start();
        page().record(A);
        page().record(Wheel);
        QCOMPARE(page().rows(), TapRows + " 10ms");
        page().record(B);
        QCOMPARE(page().rows(), TapRows + " 10ms +B 10ms -B");
    }

    void theNewestRowIsTheSelectedOne()
    {
        start();
        page().record(A);
        QCOMPARE(page().events()->currentRow(), 2);
    }

    void aPageWithoutAMacroTakesNoRows()
    {
        page().page->AddKeyRow("A", true);
        page().page->AddDelayRow(10);
        QCOMPARE(page().rows(), QString());
    }

    // ---- The seventieth event

    void theLastPlaceEndsIt()
    {
        start();
        for (int i = 0; i < 34; ++i)
            page().record(A);
        page().key(A, true);
        QVERIFY(MacroRecording);
        bool told = false;
        fixture::whenModal<KeyNumberLimit>([&](KeyNumberLimit *dialog) {
            told = true;
            const QPoint wanted = page().page->mapToGlobal(page().page->rect().center()) + QPoint(-100, -50);
            const QPoint off = dialog->frameGeometry().center() - wanted;
            QVERIFY2(off.manhattanLength() <= 2, qPrintable(QString("%1 %2").arg(off.x()).arg(off.y())));
            dialog->close();
        });
        page().key(A, false);
        QVERIFY(!MacroRecording);
        QCOMPARE(page().events()->count(), 139);
        page().record(B); // while the notice is to come
        QTRY_VERIFY(told);
        QCOMPARE(page().events()->count(), 139);
        // Locked until the stop is clicked.
        QCOMPARE(disabled(), all());
        QVERIFY(page().button("StopRecord")->isVisible());
        QCOMPARE(locks.size(), 1);
        page().record(B);
        QCOMPARE(page().events()->count(), 139);
        QTRY_VERIFY(page().button("StopRecord")->hasFocus());
        QTest::keyClick(page().button("StopRecord"), Qt::Key_Space);
        QCOMPARE(disabled(), QStringList());
        QCOMPARE(locks.size(), 2);
        QVERIFY(page().saves());
        QVERIFY(page().events()->hasFocus()); // and nothing that a key would change
    }

    void aNewMacroBehindTheLastPlaceIsNotTheRecordedOne()
    {
        start();
        fixture::whenModal<KeyNumberLimit>([](KeyNumberLimit *dialog) { dialog->close(); });
        for (int i = 0; i < 35; ++i)
            page().record(A);
        QTRY_VERIFY(page().button("StopRecord")->hasFocus());
        page().answerName("Fresh");
        page().button("NewHong")->click();
        page().button("StopRecord")->click();
        QCOMPARE(page().selected(), QString("Fresh"));
        QVERIFY(!macro::isHeld("Fresh") && page().button("Discard")->isHidden());
        QVERIFY(macro::isHeld("Alpha"));
        page().choose("Alpha");
        QCOMPARE(page().events()->count(), 139);
        QVERIFY(page().saves());
    }

    // ---- Keys do nothing else

    void keysAreRecordedAndDoNothingElse_data()
    {
        QTest::addColumn<int>("evdev");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("name");
        QTest::newRow("Space") << Space << int(Qt::Key_Space) << "Space";
        QTest::newRow("Enter") << Enter << int(Qt::Key_Return) << "Enter";
        QTest::newRow("Escape") << Escape << int(Qt::Key_Escape) << "Esc";
        QTest::newRow("Tab") << Tab << int(Qt::Key_Tab) << "Tab";
        QTest::newRow("Alt") << LeftAlt << int(Qt::Key_Alt) << "LAlt";
        QTest::newRow("F2") << F2 << int(Qt::Key_F2) << "F2";
        QTest::newRow("Delete") << Delete << int(Qt::Key_Delete) << "Del";
        QTest::newRow("a letter") << R << int(Qt::Key_R) << "R";
    }
    void keysAreRecordedAndDoNothingElse()
    {
        QFETCH(int, evdev);
        QFETCH(int, key);
        QFETCH(QString, name);
        start();
        // Wherever the focus is.
        int presses = 0;
        for (const char *focused : {"listWidgetKey", "Amend", "DeleteKey", "Save", "NewHong", "StopRecord"}) {
            auto *widget = page().page->findChild<QWidget *>(focused);
            widget->setEnabled(true);
            widget->setFocus();
            QVERIFY(widget->hasFocus());
            const int row = page().events()->currentRow();
            page().record(evdev, Qt::Key(key));
            ++presses;
            QVERIFY2(widget->hasFocus(), focused);
            QVERIFY(!QApplication::activeModalWidget() && MacroRecording);
            QCOMPARE(page().events()->currentRow(), row < 0 ? 2 : row + 4);
        }
        QCOMPARE(page().rows().count('+' + name), presses);
        QCOMPARE(page().rows().count('-' + name), presses);
    }

    // A click in the list while recording is no event.
    void aClickIsNoEvent()
    {
        start();
        page().record(A);
        page().click(page().events(), 0);
        page().record(A);
        QCOMPARE(page().rows(), TapRows + " 10ms " + TapRows);
    }

    void keysOfANoticeReachIt()
    {
        start();
        bool closed = false;
        fixture::whenModal<ExeIsRun>([&](ExeIsRun *dialog) {
            QTest::keyClick(dialog, Qt::Key_Escape);
            closed = !dialog->isVisible();
            dialog->close();
        });
        page().button("Save")->setEnabled(true);
        page().button("Save")->click();
        QVERIFY(closed);
        QVERIFY(MacroRecording);
    }

    // The Enter that closes a notice is no event of the macro, and a release is none without its press.
    void keysOfANoticeAreNotRecorded()
    {
        start();
        page().record(B);
        const QString before = page().rows();
        bool sent = false;
        fixture::whenModal<ExeIsRun>([&](ExeIsRun *dialog) {
            for (const auto type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
                QKeyEvent event(type, Qt::Key_A, {}, quint32(A + 8), 0, 0, "a");
                QCoreApplication::sendEvent(dialog->windowHandle(), &event);
            }
            sent = true;
            dialog->close();
        });
        page().page->RenameMacro();
        QVERIFY(sent);
        QCOMPARE(page().rows(), before);
        page().record(B);
        QVERIFY(page().rows().startsWith(before + ' ') && page().rows().endsWith("-B"));
    }

    // ---- Losses

    void theKeyboardLeaves()
    {
        start();
        page().key(A, true);
        page().timestamp += 10;
        page().key(B, true);
        emit qGuiApp->focusWindowChanged(nullptr);
        QStringList rows = page().rows().split(' ');
        QVERIFY(rows[3].endsWith("ms") && rows[5].endsWith("ms"));
        rows.removeAt(5);
        rows.removeAt(3);
        QCOMPARE(rows.join(' '), QString("+A 10ms +B -B -A"));
        QVERIFY(MacroRecording);
        page().record(B);
        QVERIFY(page().rows().endsWith("+B 10ms -B"));
    }

    // The release of a long held key waits for the press of a repeat, but not beyond the end.
    void noReleaseIsMissingAtTheEnd()
    {
        start();
        page().record(A, Qt::Key_A, 500);
        QCOMPARE(page().rows(), QString("+A"));
        page().button("StopRecord")->click();
        QCOMPARE(page().rows(), QString("+A 500ms -A"));
    }

    // What is still held at the end is told.
    void heldKeysAreTold()
    {
        start();
        page().key(A, true);
        page().timestamp += 10;
        page().key(B, true);
        const auto *hint = page().find<QLabel>("eventHint");
        QVERIFY(!hint->isVisible());
        page().button("StopRecord")->click();
        QVERIFY(hint->isVisible());
        QCOMPARE(hint->text(), QString("Never released: A, B"));
        QCOMPARE(page().rows(), QString("+A 10ms +B"));
    }

    // ---- What can be seen

    void aRecordingCanBeSeen()
    {
        auto *mark = page().find<RecordMark>("recordMark");
        auto *frame = page().find<QFrame>("recordFrame");
        QVERIFY(!mark->isVisible() && !mark->isRunning() && !frame->isVisible());
        start();
        QVERIFY(mark->isVisible() && mark->isRunning() && frame->isVisible());
        QVERIFY(!mark->accessibleName().isEmpty());
        QCOMPARE(page().find<QLabel>("noEvents")->text(),
                 QString("Press the keys to record. All of them are recorded, so end with a click on Stop "
                         "recording."));
        const QImage before = mark->grab().toImage();
        QTRY_VERIFY(mark->grab().toImage() != before); // it pulses
        page().button("StopRecord")->click();
        QVERIFY(!mark->isVisible() && !mark->isRunning() && !frame->isVisible());
    }

    void theHeadingCounts()
    {
        start();
        const auto *count = page().find<QLabel>("eventCount");
        QCOMPARE(count->text(), QString("0 of 70 events · 0 ms"));
        page().record(A);
        QCOMPARE(count->text(), QString("2 of 70 events · 10 ms"));
        page().record(A, Qt::Key_A, 1200);
        QTRY_COMPARE(count->text(), QString("4 of 70 events · 2.41 s")); // a long held key may repeat
    }
};

TEST_CLASS(tst_MacroRecording, MacroSetUp)

#include "tst_macrorecording.moc"
