// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macros on the binding page: the exact record after a bind, a save, a new name, a new cycle mode and a
// deletion, for every button.
#include "device/ImageCache.h"
#include "presentation/Notices.h"
#include "presentation/dialogs/FireKey.h"
#include "tests/widget/binding/ButtonMacros.h"

#include <QLabel>
#include <QScrollArea>

using namespace macro;

class tst_ButtonMacros : public ButtonMacrosTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    // ---- The panel

    void thePanelOffersTheFolder()
    {
        for (const char *name : {"beta", "Alpha", "myxmlkeys"})
            QVERIFY(createMacro(name) || qstrcmp(name, "myxmlkeys") == 0);
        emit PostMsg::instance()->SigAddMacroButton();
        QCOMPARE(page().macros(), QStringList({"Alpha", "beta"}));
        QVERIFY(createMacro("gamma")); // behind the program's back
        page().click("RightKey");
        page().click("DPI_10");
        QCOMPARE(page().shownPanel(), "page_5");
        QCOMPARE(page().macros(), QStringList({"Alpha", "beta", "gamma"}));
        for (const QString &name : macroNames())
            QVERIFY(removeMacro(name));
        const notice::NextAnswer<MakeMacro> confirmed(true);
        page().click("DPI_10");
        QVERIFY(confirmed.isTaken());
        QCOMPARE(page().shownPanel(), "page_9");
    }

    void theBoundMacroIsChosen()
    {
        bindAll("Burst");
        QVERIFY(createMacro("Other"));
        page().click("Button8");
        emit PostMsg::instance()->SigAddMacroButton();
        QCOMPARE(page().macros(), QStringList({"Burst checked", "Other"}));
        QVERIFY(createMacro("Third"));
        emit PostMsg::instance()->SigAddMacroButton();
        QCOMPARE(page().macros(), QStringList({"Burst checked", "Other", "Third"}));
    }

    void longNamesAreElidedWithAToolTip()
    {
        const QString wide(30, 'W');
        QVERIFY(createMacro(wide) && createMacro("short"));
        page().click("RightKey");
        page().click("DPI_10");
        QVERIFY(page().macro(wide)->isElided());
        QCOMPARE(page().macro(wide)->toolTip(), wide);
        QCOMPARE(page().macro("short")->toolTip(), QString());
    }

    void theBoundMacroIsScrolledTo()
    {
        for (int i = 0; i < 60; ++i)
            QVERIFY(createMacro(QString("macro %1").arg(i, 4)));
        const QByteArray name = "macro   55";
        bindAll(name.constData());
        page().click("Button8");
        const QWidget *const chosen = page().macro(name);
        const auto *const viewport =
            page().form.findChild<QWidget *>("page_5")->findChild<QScrollArea *>()->viewport();
        QVERIFY(viewport->rect().contains(QRect(chosen->mapTo(viewport, QPoint(0, 0)), chosen->size())));
    }

    void aLongTitleIsElided()
    {
        const QString wide(30, 'W');
        saveMacro(wide, 1, presses(1));
        page().click("RightKey");
        page().click("DPI_10");
        page().macro(wide)->click();
        page().click("RightKey");
        const auto *const title = page().form.findChild<QLabel *>("FunctionsTitle");
        QCOMPARE(title->toolTip(), "Button 2: Macro: " + wide);
        QVERIFY(title->text().endsWith(QChar(0x2026)));
        QVERIFY(title->sizeHint().width() <= title->width());
        page().leave();
        page().click("BackKey");
        QCOMPARE(title->toolTip(), QString());
        QCOMPARE(title->text(), QString("Button 3: Middle button"));
    }

    void anAmpersandIsPartOfTheName()
    {
        saveMacro("R&D", 1, presses(1));
        bind(1, "R&D");
        QCOMPARE(caption(1), QString("Macro: R&D"));
        QVERIFY(page().macro("R&D")->shortcut().isEmpty());
        QVERIFY(page().button("RightKey")->shortcut().isEmpty());
    }

    void sevenMacrosNeedNoScrolling()
    {
        const auto *const area = page().form.findChild<QWidget *>("page_5")->findChild<QScrollArea *>();
        const auto offer = [&](int count) {
            for (int i = 0; i < count; ++i)
                createMacro(QString("macro %1").arg(i, 4));
            page().click("RightKey");
            page().click("DPI_10");
            page().leave();
            return area->widget()->height() <= area->viewport()->height();
        };
        QVERIFY(offer(7));
        QVERIFY(!offer(40));
    }

    // ---- Binding

    void aBindIsTheWholeRecord_data() { eachButtonRow(); }
    void aBindIsTheWholeRecord()
    {
        QFETCH(int, row);
        const int button = ButtonPageRows[row].button;
        wanted.KeyBindings[11] = wanted.KeyBindings[9] = {1, 1, 0}; // so that any button can be opened
        page().show(wanted);
        saveMacro("Burst", 7, presses(5));
        saveMacro("Full", 253, presses(70));
        bind(row, "Burst");
        expectMacro(button, "Burst", 7, presses(5));
        QVERIFY(isWanted());
        QCOMPARE(caption(row), QString("Macro: Burst"));
        QCOMPARE(page().shownPage(), "page");
        bind(row, "Full");
        expectMacro(button, "Full", 253, presses(70));
        QVERIFY(isWanted());
        QCOMPARE(int(updates()), 2);
    }

    void emptyMacros_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("cycle");
        QTest::newRow("never saved") << QByteArray() << 0;
        QTest::newRow("without rows") << QByteArray("254\n") << 254;
    }
    void emptyMacros()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, cycle);
        QVERIFY(writeMacroFile("Empty", text));
        bind(1, "Empty");
        expectMacro(1, "Empty", uint8_t(cycle), {});
        QCOMPARE(int(wanted.MacroBlocks[1].EventCount), 1);
        QVERIFY(isWanted());
        emit PostMsg::instance()->SigUpDataMacro("Empty", 0);
        wanted.MacroBlocks[1].EventCount = 0;
        QTRY_VERIFY(isWanted());
    }

    void whatCannotBeBoundChangesNothing_data()
    {
        QTest::addColumn<QString>("why");
        for (const char *why : {"off line", "silent", "no file", "no plain file"})
            QTest::newRow(why) << why;
    }
    void whatCannotBeBoundChangesNothing()
    {
        QFETCH(QString, why);
        saveMacro("Burst", 1, presses(3));
        page().click("RightKey");
        page().click("DPI_10");
        ActionButton *const clicked = page().macro("Burst");
        QSignalSpy offLine(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        if (why == "off line")
            MouseOnline = false;
        if (why == "silent" || why == "off line")
            FakeHidUsb::instance().setOnline("dev", false);
        if (why.startsWith("no"))
            QVERIFY(removeMacro("Burst"));
        if (why == "no plain file")
            QVERIFY(QFile::link("/dev/zero", macroPath("Burst")));
        clicked->click();
        QVERIFY(isWanted());
        QVERIFY(updates() == 0);
        QCOMPARE(offLine.count(), why == "silent" ? 1 : 0);
        QCOMPARE(caption(1), QString("Right button"));
        QCOMPARE(page().shownPage(), "page");
        FakeHidUsb::instance().setOnline("dev", true);
        MouseOnline = true;
        QFile::remove(macroPath("Burst"));
        saveMacro("Burst", 1, presses(3));
        bind(1, "Burst");
        expectMacro(1, "Burst", 1, presses(3));
        QVERIFY(isWanted());
    }

    // Its buttons would have another name, by which nothing finds them.
    void aNameThatAMouseCannotHoldIsNotBound()
    {
        const QByteArray wide(31, 'w');
        QVERIFY(writeMacroFile(wide, "1\n0x04 1 0\n"));
        saveMacro("Burst", 1, presses(3));
        page().click("RightKey");
        page().click("DPI_10");
        QVERIFY(!page().macro(wide)->isEnabled());
        QVERIFY(!page().form.BuildMacroBlock(wide));
        page().macro(wide)->setEnabled(true);
        page().macro(wide)->click();
        QVERIFY(isWanted());
        QVERIFY(page().form.BuildMacroBlock("Burst"));
        bind(1, "Burst");
        expectMacro(1, "Burst", 1, presses(3));
        QVERIFY(isWanted());
    }

    void aLongMacroAndASilentMouseGiveOneNotice()
    {
        saveMacro("Long", 1, presses(200));
        page().click("RightKey");
        page().click("DPI_10");
        FakeHidUsb::instance().setOnline("dev", false);
        QSignalSpy offLine(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        const notice::NextAnswer<KeyNumberLimit> told(true);
        page().macro("Long")->click();
        QVERIFY(!told.isTaken());
        QCOMPARE(offLine.count(), 1);
    }

    void fewMacrosAreMadeUpToSeven()
    {
        const auto fillers = [&] {
            int count = 0;
            for (const auto *each : page().form.findChild<QWidget *>("page_5")->findChildren<QToolButton *>())
                count += !qobject_cast<const ActionButton *>(each) && !each->isEnabled() &&
                         each->text().isEmpty() && each->height() == 23;
            return count;
        };
        emit PostMsg::instance()->SigAddMacroButton();
        QCOMPARE(fillers(), 0);
        for (int count = 1; count <= 9; ++count) {
            createMacro(QString("macro %1").arg(count));
            emit PostMsg::instance()->SigAddMacroButton();
            QCOMPARE(page().macros().size(), count);
            QCOMPARE(fillers(), qMax(0, 7 - count));
        }
    }

    void moreThanSeventyEventsAreSaidOnce()
    {
        saveMacro("Long", 1, presses(200));
        const QByteArray file = fileOf("Long");
        const notice::NextAnswer<KeyNumberLimit> told(true), again(true);
        bool before = false;
        page().click("RightKey");
        page().click("DPI_10");
        before = updates() == 0;
        page().macro("Long")->click();
        QVERIFY(told.isTaken() && !again.isTaken() && before);
        expectMacro(1, "Long", 1, presses(70));
        QVERIFY(isWanted());
        QCOMPARE(fileOf("Long"), file);
        page().show(wanted); // read back, it is no reason to cut the file
        QCOMPARE(fileOf("Long"), file);
    }

    // ---- Save, name, cycle mode, deletion

    void aSaveReachesEveryButtonOfTheMacro()
    {
        bindAll("Burst");
        saveMacro("Other", 1, presses(1));
        expectMacro(1, "Other", 1, presses(1));
        page().show(wanted);
        saveMacro("Burst", 254, presses(9));
        emit PostMsg::instance()->SigUpDataMacro("Burst", 0);
        for (int button = 2; button < 12; ++button)
            expectMacro(button, "Burst", 254, presses(9));
        QTRY_VERIFY(isWanted());
    }

    void aSaveSendsTheRowsAsSaved()
    {
        bindAll("Burst");
        QList<int> order;
        QObject::connect(PostMsg::instance(), &PostMsg::SigMacroDownLoadData, &macroPage,
                         [&](const QString &, int button) { order << button; });
        saveMacro("Burst", 254, presses(5));
        emit PostMsg::instance()->SigUpDataMacro("Burst", 0);
        QCOMPARE(order, QList<int>({2, 4, 3, 5, 6, 7, 8, 9, 10, 11}));
        for (int button = 2; button < 12; ++button)
            expectMacro(button, "Burst", 254, presses(5));
        QVERIFY(isWanted());
    }

    void aSaveSendsWhatIsSavedWhenTheWaitEnds()
    {
        bindAll("Burst");
        QTimer::singleShot(0, &macroPage, [] { saveMacro("Burst", 254, presses(11)); });
        emit PostMsg::instance()->SigUpDataMacro("Burst", 0);
        for (int button = 2; button < 12; ++button)
            expectMacro(button, "Burst", 254, presses(11));
        QVERIFY(isWanted());
    }

    void aNewNameWithinTheWaitIsSent()
    {
        bindAll("Burst");
        QTimer::singleShot(0, &macroPage, [] {
            QVERIFY(renameMacro("Burst", "Tap"));
            emit PostMsg::instance()->SigMacroRename("Burst", "Tap");
        });
        saveMacro("Burst", 254, presses(5));
        emit PostMsg::instance()->SigUpDataMacro("Burst", 0);
        for (int button = 2; button < 12; ++button)
            expectMacro(button, "Tap", 254, presses(5));
        QVERIFY(isWanted());
    }

    // The waits are nested, but no macro waits for the one that was saved after it.
    void eachSaveIsSentWhenItsOwnWaitEnds()
    {
        for (const char *name : {"One", "Two"})
            saveMacro(name, 1, presses(3));
        expectMacro(2, "Two", 1, presses(3));
        expectMacro(3, "One", 1, presses(3));
        page().show(wanted);
        QStringList order;
        QObject::connect(PostMsg::instance(), &PostMsg::SigMacroDownLoadData, &macroPage,
                         [&](const QString &name) { order << name; });
        QTimer::singleShot(0, &macroPage, [] { emit PostMsg::instance()->SigUpDataMacro("Two", 0); });
        emit PostMsg::instance()->SigUpDataMacro("One", 0);
        QCOMPARE(order, QStringList({"One", "Two"}));
    }

    void leavingSendsWhatWaits_data()
    {
        QTest::addColumn<bool>("answers");
        QTest::newRow("at once") << true;
        QTest::newRow("not to a mouse that sleeps, without a notice") << false;
    }
    void leavingSendsWhatWaits()
    {
        QFETCH(bool, answers);
        bindAll("Burst");
        QSignalSpy offLine(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        saveMacro("Burst", 17, presses(5));
        for (int button = 2; button < 12 && answers; ++button)
            expectMacro(button, "Burst", 17, presses(5));
        bool wasSent = false;
        QTimer::singleShot(0, &macroPage, [&] {
            FakeHidUsb::instance().setOnline("dev", answers);
            emit PostMsg::instance()->SigMainPageChange();
            wasSent = isWanted();
        });
        emit PostMsg::instance()->SigUpDataMacro("Burst", 0);
        QVERIFY(wasSent);
        QCOMPARE(updates() > 0, answers);
        QCOMPARE(offLine.count(), 0);
    }

    void anotherProfileIsChosenBehindWhatWaits()
    {
        bindAll("Burst");
        saveMacro("Burst", 17, presses(5));
        for (int button = 2; button < 12; ++button)
            expectMacro(button, "Burst", 17, presses(5));
        bool wasSent = false;
        QTimer::singleShot(0, &macroPage, [&] {
            FakeHidUsb &fake = FakeHidUsb::instance();
            const std::size_t before = fake.calls().size();
            page().form.on_ProjectChoose_activated(1);
            wasSent = isWanted();
            QCOMPARE(fake.calls().back(), std::string("UsbServer_SetCurrentConfig 1"));
            QVERIFY(fake.calls().size() > before + 10);
        });
        emit PostMsg::instance()->SigUpDataMacro("Burst", 0);
        QVERIFY(wasSent);
    }

    // Rows of buttons that this mouse lacks keep the captions of the one before.
    void aButtonThatTheModelLacksIsNotWritten_data()
    {
        QTest::addColumn<QString>("what");
        for (const char *what : {"save", "cycle", "rename", "delete"})
            QTest::newRow(what) << what;
    }
    void aButtonThatTheModelLacksIsNotWritten()
    {
        QFETCH(QString, what);
        bindAll("Burst");
        FakeHidUsb::instance().addDevice(fixture::device("six", 7, Receiver8K));
        fixture::select(fixture::info("six", Receiver8K, 1));
        wanted = ButtonPage::plainRecord();
        for (int button = 6; button < 12; ++button)
            wanted.KeyBindings[button] = {1, 2, 0}; // no default of theirs
        expectMacro(5, "Burst", 254, presses(3));
        page().show(wanted);
        const FlashDataMap before = wanted;
        QCOMPARE(caption(11), QString("Macro: Burst"));
        PostMsg *const hub = PostMsg::instance();
        saveMacro("Burst", 17, presses(5));
        if (what == "save")
            emit hub->SigUpDataMacro("Burst", 0);
        else if (what == "cycle")
            emit hub->SigUpDataMacro("Burst", 1);
        else if (what == "rename")
            emit hub->SigMacroRename("Burst", "Tap");
        else
            emit hub->SigDeleteMacroButton("Macro: Burst");
        const FlashDataMap after = DeviceRecord::copy();
        QVERIFY(bytesOf(after) != bytesOf(before)); // of button 5
        for (int button = 6; button < 12; ++button) {
            QVERIFY(std::memcmp(&after.MacroBlocks[button], &before.MacroBlocks[button],
                                sizeof(MacroBlock)) == 0);
            QVERIFY(std::memcmp(&after.KeyBindings[button], &before.KeyBindings[button],
                                sizeof(KeyBinding)) == 0);
        }
    }

    void aCycleModeIsTheBindingsThirdByte()
    {
        bindAll("Burst");
        std::memset(wanted.MacroBlocks[4].Events + 60, 0x5A, 8); // carried as it is
        page().show(wanted);
        saveMacro("Burst", 17, presses(9));
        emit PostMsg::instance()->SigUpDataMacro("Burst", 1);
        for (int button = 2; button < 12; ++button)
            wanted.KeyBindings[button].Second = 17;
        QVERIFY(isWanted());
        QVERIFY(removeMacro("Burst"));
        emit PostMsg::instance()->SigUpDataMacro("Burst", 1);
        for (int button = 2; button < 12; ++button)
            wanted.KeyBindings[button].Second = 0;
        QVERIFY(isWanted());
    }

    void aNewNameGoesToEveryButton()
    {
        bindAll("Burst of fire");
        emit PostMsg::instance()->SigMacroRename("Burst of fire", "Tap");
        for (int button = 2; button < 12; ++button)
            renameBlock(&wanted.MacroBlocks[button], "Tap");
        QVERIFY(isWanted());
        QCOMPARE(QByteArray(wanted.MacroBlocks[2].Name, 13), QByteArray("Tapst of fire"));
        for (int row = 2; row < 12; ++row)
            QCOMPARE(caption(row), QString("Macro: Tap"));
        page().show(wanted); // by its length, the tail is not read
        QCOMPARE(caption(2), QString("Macro: Tap"));
        QVERIFY(macroExists("Tap"));
    }

    // Its kept image is as old as the last time that the page was left.
    void aNewNameOutlastsTheImageOfAMouseThatIsAway()
    {
        bindAll("Burst");
        FlashDataMap kept = wanted;
        kept.KeyBindings[1] = {9, 0, 0};
        expectMacro(3, "Other", 254, presses(5)); // was written since
        page().show(wanted);
        ImageCacheWrite(SelectedDevice::cacheName(), kept);
        QVERIFY(renameMacro("Burst", "Tap"));
        emit PostMsg::instance()->SigMacroRename("Burst", "Tap");
        QCOMPARE(caption(2), QString("Macro: Tap"));
        MouseOnline = false;
        page().setLanguage(0);
        QCOMPARE(caption(1), QString("Next profile")); // from the image
        QCOMPARE(caption(4), QString("Macro: Burst")); // button 3, other events
        for (const int row : {2, 3, 5, 6, 7, 8, 9, 10, 11})
            QCOMPARE(caption(row), QString("Macro: Tap"));
    }

    void aNameThatOnlyLooksLikeItIsLeft()
    {
        expectMacro(2, "Burst", 1, presses(3));
        expectMacro(3, "Burst 2", 1, presses(3));
        expectMacro(4, "burst", 1, presses(3));
        page().show(wanted);
        emit PostMsg::instance()->SigMacroRename("Right button", "Tap"); // a function of that name
        QVERIFY(isWanted());
        emit PostMsg::instance()->SigMacroRename("Burst", "Tap");
        renameBlock(&wanted.MacroBlocks[2], "Tap");
        QVERIFY(isWanted());
    }

    void aDeletedMacroLeavesTheDefaults()
    {
        constexpr KeyBinding Defaults[] = {{1, 1, 0}, {1, 2, 0}, {1, 4, 0}, {1, 8, 0}, {1, 16, 0}, {2, 1, 0},
                                           {2, 2, 0}, {2, 3, 0}, {7, 0, 0}, {7, 0, 0}, {4, 10, 3}, {0, 0, 0}};
        bindAll("Burst");
        for (int button = 2; button < 12; ++button)
            std::memset(&wanted.KeySequences[button], 1, sizeof(KeySequence));
        page().show(wanted);
        const QString removed = caption(2);
        emit PostMsg::instance()->SigDeleteMacroButton(removed);
        for (int button = 2; button < 12; ++button) {
            wanted.KeyBindings[button] = Defaults[button];
            wanted.KeySequences[button] = {}; // here; the mouse gets it with the next record
        }
        QVERIFY(isWanted());
        QCOMPARE(caption(3), QString("Forward button")); // button 4
        QCOMPARE(caption(4), QString("Back button"));
        QCOMPARE(page().checkedCaption(), QString("Button12"));
        QVERIFY(page().button("DPI_5")->isChecked());
    }

    void theDefaultFireKeyHasTheLastValues()
    {
        page().click("RightKey");
        fixture::whenModal<FireKey>([](FireKey *dialog) {
            dialog->setValues(99, 2);
            dialog->on_NewHong_clicked();
        });
        page().click("DPI_6");
        wanted = DeviceRecord::copy();
        expectMacro(10, "Burst", 1, presses(3));
        page().show(wanted);
        emit PostMsg::instance()->SigDeleteMacroButton("Macro: Burst");
        wanted.KeyBindings[10] = {4, 99, 2};
        QVERIFY(isWanted());
    }

    void offLineThereIsOneNotice_data()
    {
        QTest::addColumn<QString>("what");
        for (const char *what : {"save", "save to a silent mouse", "cycle", "rename", "delete"})
            QTest::newRow(what) << what;
    }
    void offLineThereIsOneNotice()
    {
        QFETCH(QString, what);
        bindAll("Burst");
        FakeHidUsb::instance().setOnline("dev", false);
        QSignalSpy offLine(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        PostMsg *const hub = PostMsg::instance();
        if (what == "cycle")
            emit hub->SigUpDataMacro("Burst", 1);
        else if (what == "rename")
            emit hub->SigMacroRename("Burst", "Tap");
        else if (what == "delete")
            emit hub->SigDeleteMacroButton("Macro: Burst");
        MouseOnline = what != "save";
        if (what.startsWith("save"))
            emit hub->SigUpDataMacro("Burst", 0);
        QCOMPARE(offLine.count(), what == "save" ? 0 : 1);
        QVERIFY(isWanted());
        QCOMPARE(caption(2), what == "rename" ? QString("Macro: Tap") : QString("Macro: Burst"));
    }
};

TEST_CLASS(tst_ButtonMacros, ButtonPageSetUp)

#include "tst_buttonmacros.moc"
