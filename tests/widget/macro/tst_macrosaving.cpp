// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the page saves and what it keeps unsaved, and how both meet the mouse's own macros.
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "macro/store/MacroBlockCodec.h"
#include "presentation/Notices.h"
#include "tests/widget/macro/MacroFiles.h"

using namespace macrofiles;

class tst_MacroSaving : public QObject
{
    Q_OBJECT

private:
    // A mouse whose button 3 plays the macro, and the page of the buttons as far as a save needs it.
    static FlashDataMap boundTo(const MacroPage &page, const QString &name)
    {
        fixture::beginWithDevice();
        MouseOnline = true;
        FlashDataMap record{};
        record.KeyBindings[3] = {6, 3, 1};
        record.MacroBlocks[3] = macro::savedBlock(name, macro::loadMacro(name)->rows);
        DeviceRecord::edit([&](FlashDataMap &map) { map = record; });
        PostMsg *const hub = PostMsg::instance();
        connect(hub, &PostMsg::SigUpDataMacro, page.page.get(), [hub](const QString &saved, int what) {
            if (what == 0)
                emit hub->SigMacroDownLoadData(saved, 3);
            else
                SetMacroBinding(3, {6, 3, 17}, DeviceRecord::copy().MacroBlocks[3]);
        });
        return record;
    }

private slots:
    // ---- Save

    void aSaveTellsWhatChanged_data()
    {
        QTest::addColumn<bool>("events");
        QTest::addColumn<bool>("cycle");
        QTest::newRow("events") << true << false;
        QTest::newRow("cycle") << false << true;
        QTest::newRow("both") << true << true;
    }
    void aSaveTellsWhatChanged()
    {
        QFETCH(bool, events);
        QFETCH(bool, cycle);
        const MacroPage page({{"Alpha", Tap}});
        QStringList log;
        listen(log, page.page.get());
        page.choose("Alpha");
        if (events)
            page.page->InsertKeyRow("C", true);
        if (cycle)
            page.radio("ReUntilClick")->click();
        QVERIFY(page.saves());
        page.button("Save")->click();
        QStringList wanted;
        if (events)
            wanted << "update Alpha 0";
        if (cycle)
            wanted << "update Alpha 1";
        QCOMPARE(log, wanted);
        QVERIFY(!page.saves());
        QCOMPARE(page.file("Alpha"),
                 (cycle ? "255\n" : "1\n") + Tap.mid(2) + (events ? "0x06 1 0\n10ms\n" : ""));
        page.page->on_Save_clicked();
        QCOMPARE(log, wanted); // the marks are cleared
    }

    void theFourModesOfASave_data()
    {
        QTest::addColumn<QByteArray>("radio");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("count") << QByteArray("ReNumber") << QByteArray("42\n");
        QTest::newRow("until pressed") << QByteArray("ReUntil") << QByteArray("253\n");
        QTest::newRow("until released") << QByteArray("ReUntilLoose") << QByteArray("254\n");
        QTest::newRow("until any") << QByteArray("ReUntilClick") << QByteArray("255\n");
    }
    void theFourModesOfASave()
    {
        QFETCH(QByteArray, radio);
        QFETCH(QByteArray, line);
        const MacroPage page({{"Alpha", QByteArray("7\n")}, {"Beta", Tap}});
        page.choose("Alpha");
        page.number()->setValue(42);
        page.radio(radio)->click();
        page.button("Save")->click();
        QCOMPARE(page.file("Alpha"), line);
    }

    // A failed save keeps the old file and the marks, and the next one does it all.
    void aSaveThatFails()
    {
        const MacroPage page({{"Alpha", Tap}});
        QStringList log;
        listen(log, page.page.get());
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        {
            const FullDisk full;
            page.button("Save")->click();
            QVERIFY(page.saves());
            QCOMPARE(log, QStringList());
        }
        QCOMPARE(page.file("Alpha"), Tap);
        page.button("Save")->click();
        QVERIFY(!page.saves());
        QCOMPARE(log, QStringList{"update Alpha 0"});
        QVERIFY(page.file("Alpha").size() > Tap.size());
    }

    // The file is saved whole, and the user hears that the mouse takes less before it gets anything.
    void moreEventsThanTheMouseTakes()
    {
        const MacroPage page({{"Long", "1\n" + QByteArray("0x04 1 0\n1ms\n").repeated(70) + "0x04 1 1\n"}});
        page.choose("Long");
        QVERIFY(!page.find<QLabel>("eventHint")->text().isEmpty());
        notice::NextAnswer<KeyNumberLimit> told(true);
        bool toldFirst = false;
        connect(PostMsg::instance(), &PostMsg::SigUpDataMacro, page.page.get(),
                [&] { toldFirst = told.isTaken(); });
        page.page->InsertKeyRow("B", true);
        page.button("Save")->click();
        QVERIFY(toldFirst);
        QCOMPARE(page.file("Long").count('\n'), 1 + 140 + 1 + 2);
        notice::NextAnswer<KeyNumberLimit> again(true);
        page.radio("ReUntil")->click();
        page.button("Save")->click();
        QVERIFY(!again.isTaken());
    }

    // ---- Renamed or deleted while the rows of a save wait

    // While the rows of a save wait, and while its notice is open.
    void aRenameWithinASaveKeepsItsHold()
    {
        const MacroPage page({{"Alpha", Tap}});
        QStringList log;
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        page.radio("ReUntilClick")->click();
        bool held = false;
        connect(PostMsg::instance(), &PostMsg::SigUpDataMacro, page.page.get(),
                [&](const QString &, int what) {
                    if (what != 0)
                        return;
                    page.answerName("Gamma");
                    page.page->RenameMacro();
                    held = macro::isHeld("Gamma") && !macro::isHeld("Alpha");
                });
        listen(log, page.page.get());
        page.button("Save")->click();
        QVERIFY(held);
        QCOMPARE(log, QStringList({"rename Alpha Gamma", "update Alpha 0", "update Gamma 1"}));
        QVERIFY(!macro::isHeld("Gamma") && !macro::isHeld("Alpha"));
    }

    void aDiscardWithinASaveKeepsItsHold()
    {
        const MacroPage page({{"Alpha", Tap}});
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        bool held = false;
        connect(PostMsg::instance(), &PostMsg::SigUpDataMacro, page.page.get(), [&] {
            page.page->InsertKeyRow("D", true);
            page.page->on_Discard_clicked();
            held = macro::isHeld("Alpha");
        });
        page.button("Save")->click();
        QVERIFY(held);
        QVERIFY(!macro::isHeld("Alpha"));
    }

    void aDeleteWithinASaveTellsNoMore()
    {
        const MacroPage page({{"Alpha", Tap}});
        QStringList log;
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        page.radio("ReUntilClick")->click();
        notice::NextAnswer<DeleteConfirm> yes(true);
        connect(PostMsg::instance(), &PostMsg::SigUpDataMacro, page.page.get(),
                [&] { page.page->DeleteMacro(); });
        listen(log, page.page.get());
        page.button("Save")->click();
        QVERIFY(yes.isTaken());
        QCOMPARE(log, QStringList({"delete Macro: Alpha", "update Alpha 0"}));
        QCOMPARE(page.names(), QStringList());
    }

    // The rows that are sent when the wait ends are those of the save, not those that are shown by then.
    void aSaveSendsItsRowsWhateverIsShownThen_data()
    {
        QTest::addColumn<bool>("isEditedOn");
        QTest::newRow("another macro is chosen") << false;
        QTest::newRow("it is edited on") << true;
    }
    void aSaveSendsItsRowsWhateverIsShownThen()
    {
        QFETCH(bool, isEditedOn);
        const MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        fixture::beginWithDevice();
        MouseOnline = true;
        FlashDataMap record{};
        record.KeyBindings[3] = {6, 3, 1};
        DeviceRecord::edit([&](FlashDataMap &map) { map = record; });
        PostMsg *const hub = PostMsg::instance();
        macro::MacroRows saved;
        connect(hub, &PostMsg::SigUpDataMacro, page.page.get(), [&](const QString &name) {
            saved = macro::loadMacro(name)->rows;
            if (isEditedOn)
                page.page->InsertKeyRow("D", true);
            else
                page.choose("Beta");
            emit hub->SigMacroDownLoadData(name, 3);
        });
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        page.button("Save")->click();
        QCOMPARE(saved.size(), 5);
        QCOMPARE(int(FakeHidUsb::instance().updates().size()), 1);
        const MacroBlock sent = FakeHidUsb::instance().updates().back().MacroBlocks[3];
        const MacroBlock wanted = macro::savedBlock("Alpha", saved);
        QCOMPARE(memcmp(&sent, &wanted, sizeof wanted), 0);
        QCOMPARE(page.selected(), QString(isEditedOn ? "Alpha" : "Beta"));
        QCOMPARE(macro::isHeld("Alpha"), isEditedOn);
    }

    // What a save did not bring to the mouse goes there when it is read, and the file stays. A read that is
    // awaited while the save is sent brings what the mouse held before.
    void aReadAfterAMissedSave_data()
    {
        QTest::addColumn<bool>("rows");
        QTest::addColumn<bool>("renamed");
        QTest::addColumn<bool>("isAway");
        QTest::newRow("rows") << true << false << true;
        QTest::newRow("rows, then renamed") << true << true << true;
        QTest::newRow("mode") << false << false << true;
        QTest::newRow("rows, before a read") << true << false << false;
        QTest::newRow("mode, before a read") << false << false << false;
    }
    void aReadAfterAMissedSave()
    {
        QFETCH(bool, rows);
        QFETCH(bool, renamed);
        QFETCH(bool, isAway);
        const MacroPage page({{"Alpha", Tap}});
        FlashDataMap record = boundTo(page, "Alpha");
        PostMsg *const hub = PostMsg::instance();
        page.choose("Alpha");
        FakeHidUsb::instance().setOnline("dev", !isAway);
        FullReadAwaited = !isAway;
        if (rows)
            page.page->InsertKeyRow("C", true);
        page.number()->setValue(rows ? 1 : 17);
        page.button("Save")->click();
        FakeHidUsb::instance().setOnline("dev", true);
        if (!isAway)
            DeviceRecord::edit([&](FlashDataMap &map) { map = record; });
        FullReadAwaited = false;
        QString name = "Alpha";
        if (renamed) {
            name = "Gamma";
            page.answerName(name);
            page.page->RenameMacro();
            macro::renameBlock(&record.MacroBlocks[3], name);
        }
        const QByteArray saved = page.file(name);
        emit hub->SigButtonToMacro(record, 3);
        QCOMPARE(page.file(name), saved);
        const FlashDataMap sent = FakeHidUsb::instance().updates().back();
        const macro::MacroText file = *macro::loadMacro(name);
        QVERIFY(macro::sameEvents(sent.MacroBlocks[3], macro::savedBlock(name, file.rows)));
        QCOMPARE(int(sent.KeyBindings[3].Second), rows ? 1 : 17);
        emit hub->SigButtonToMacro(record, 3); // changed by another computer
        QCOMPARE(page.file(name), Tap);
    }

    // The mouse then has the whole macro, so what it brings is newer. A save of the rows alone leaves a cycle
    // mode that was missed.
    void aSaveThatArrivesEndsWhatWasMissed_data()
    {
        QTest::addColumn<bool>("isModeMissed");
        QTest::newRow("rows") << false;
        QTest::newRow("mode, then rows") << true;
    }
    void aSaveThatArrivesEndsWhatWasMissed()
    {
        QFETCH(bool, isModeMissed);
        const MacroPage page({{"Alpha", Tap}});
        const FlashDataMap record = boundTo(page, "Alpha");
        page.choose("Alpha");
        FakeHidUsb::instance().setOnline("dev", false);
        if (isModeMissed)
            page.number()->setValue(17);
        else
            page.page->InsertKeyRow("C", true);
        page.button("Save")->click();
        FakeHidUsb::instance().setOnline("dev", true);
        page.page->InsertKeyRow("D", true);
        page.button("Save")->click();
        const QByteArray saved = page.file("Alpha");
        QVERIFY(saved != Tap);
        emit PostMsg::instance()->SigButtonToMacro(record, 3); // changed by another computer
        QCOMPARE(page.file("Alpha"), isModeMissed ? saved : Tap);
    }

    // ---- Drafts

    void unsavedRowsAreKept()
    {
        const MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        page.radio("ReUntilClick")->click();
        const QString rows = page.rows();
        QVERIFY(macro::isHeld("Alpha"));
        page.choose("Beta");
        QCOMPARE(page.rows(), HoldRows);
        QVERIFY(!page.saves());
        QVERIFY(page.radio("ReUntilLoose")->isChecked());
        QVERIFY(macro::isHeld("Alpha") && !macro::isHeld("Beta"));
        page.choose("Alpha");
        QCOMPARE(page.rows(), rows);
        QVERIFY(page.radio("ReUntilClick")->isChecked());
        QVERIFY(page.saves());
        page.choose("Alpha"); // a click on the same one loses nothing either
        QCOMPARE(page.rows(), rows);
        QStringList log;
        listen(log, page.page.get());
        page.button("Save")->click();
        QCOMPARE(log, QStringList({"update Alpha 0", "update Alpha 1"}));
        QVERIFY(!macro::isHeld("Alpha"));
    }

    void unsavedWorkIsMarked()
    {
        const MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        const auto spoken = [&](int row) {
            return page.macros()->item(row)->data(Qt::AccessibleTextRole).toString();
        };
        page.choose("Alpha");
        QVERIFY(page.button("Discard")->isHidden());
        page.page->InsertKeyRow("C", true);
        QCOMPARE(spoken(0), QString("Alpha, not saved"));
        QVERIFY(page.button("Discard")->isVisible());
        page.choose("Beta");
        QCOMPARE(spoken(0), QString("Alpha, not saved"));
        QVERIFY(page.button("Discard")->isHidden());
        page.choose("Alpha");
        page.button("Save")->click();
        QCOMPARE(spoken(0), QString());
    }

    void changesAreDiscarded()
    {
        const MacroPage page({{"Alpha", Hold}});
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        page.radio("ReUntilClick")->click();
        page.button("Discard")->click();
        QCOMPARE(page.rows(), HoldRows);
        QVERIFY(page.radio("ReUntilLoose")->isChecked());
        QVERIFY(!page.saves() && !macro::isHeld("Alpha"));
        QCOMPARE(page.selected(), QString("Alpha"));
        QCOMPARE(page.file("Alpha"), Hold);
    }

    // ---- The mouse's macros

    void aMacroOfTheMouse()
    {
        MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        int listed = 0;
        connect(PostMsg::instance(), &PostMsg::SigAddMacroButton, page.page.get(), [&] { ++listed; });
        FlashDataMap record{};
        record.KeyBindings[3] = {6, 3, 253};
        record.MacroBlocks[3] = macro::boundBlock(
            "Fresh", {macro::keyRow("A", true), macro::delayRow(7), macro::keyRow("A", false)});
        page.choose("Alpha");
        emit PostMsg::instance()->SigButtonToMacro(record, 3);
        QCOMPARE(page.names(), QStringList({"Alpha", "Fresh", "Beta"})); // behind the selected one
        QCOMPARE(page.selected(), QString());
        QCOMPARE(page.rows(), QString());
        QCOMPARE(listed, 1);
        page.choose("Fresh");
        QCOMPARE(page.rows(), QString("+A 7ms -A"));
        QVERIFY(page.radio("ReUntil")->isChecked());
        page.page->hide();
        page.page->show();
        QCOMPARE(page.names(), QStringList({"Alpha", "Beta", "Fresh"}));
    }

    void aMacroOfTheMouseSparesWhatIsEdited()
    {
        MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        FlashDataMap record{};
        record.KeyBindings[0] = {6, 0, 1};
        record.MacroBlocks[0] = macro::boundBlock("Alpha", {macro::keyRow("Z", true)});
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        const QString rows = page.rows();
        emit PostMsg::instance()->SigButtonToMacro(record, 0);
        QCOMPARE(page.rows(), rows);
        QCOMPARE(page.file("Alpha"), Tap);
        page.choose("Beta");
        emit PostMsg::instance()->SigButtonToMacro(record, 0);
        QCOMPARE(page.file("Alpha"), Tap);
        page.choose("Alpha");
        page.button("Discard")->click();
        emit PostMsg::instance()->SigButtonToMacro(record, 0);
        page.choose("Alpha");
        QCOMPARE(page.rows(), QString("+Z"));
    }
};

TEST_CLASS(tst_MacroSaving, MacroSetUp)

#include "tst_macrosaving.moc"
