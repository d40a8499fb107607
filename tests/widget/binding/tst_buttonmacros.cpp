// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macros on the binding page: the exact record after a bind, a save, a new name, a new cycle mode and a
// deletion, for every button; and what a read brings into the folder.
#include "macro/MacroDeviceSync.h"
#include "macro/missed/MissedNames.h"
#include "macro/store/MacroBlockCodec.h"
#include "presentation/Notices.h"
#include "presentation/dialogs/FireKey.h"
#include "tests/support/TestMain.h"
#include "tests/widget/binding/ButtonPage.h"

#include <QLabel>
#include <QScrollArea>
#include <random>

using namespace macro;

namespace
{

MacroRows presses(int count)
{
    MacroRows rows;
    for (int i = 0; i < count; ++i) {
        rows << keyRow("A", i % 2 == 0);
        if (i + 1 < count)
            rows << delayRow(quint32(i));
    }
    return rows;
}

QByteArray bytesOf(const FlashDataMap &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), sizeof record);
}

QByteArray fileOf(const QString &name)
{
    QFile file(macroPath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

QStringList kept() { return QDir(keptFolder()).entryList(QDir::Files, QDir::Name); }

} // namespace

class tst_ButtonMacros : public ButtonPageTest
{
    Q_OBJECT

private:
    // The page of the macros, as far as this one needs it.
    QObject macroPage;
    FlashDataMap wanted;

    static std::size_t updates() { return FakeHidUsb::instance().updates().size(); }
    void bind(int row, const char *name)
    {
        page().click(ButtonPageRows[row].caption);
        page().click("DPI_10");
        page().macro(name)->click();
    }
    QString caption(int row) { return page().button(ButtonPageRows[row].caption)->text(); }
    bool isWanted() const { return bytesOf(DeviceRecord::copy()) == bytesOf(wanted); }
    void expectMacro(int button, const char *name, uint8_t cycle, const MacroRows &rows)
    {
        wanted.KeyBindings[button] = {6, uint8_t(button), cycle};
        wanted.MacroBlocks[button] = boundBlock(name, rows);
    }
    // A record in which every button but the first two plays that macro.
    void bindAll(const char *name)
    {
        saveMacro(name, 254, presses(3));
        for (int button = 2; button < 12; ++button)
            expectMacro(button, name, 254, presses(3));
        page().show(wanted);
    }

private slots:
    void init()
    {
        begin();
        QObject::connect(PostMsg::instance(), &PostMsg::SigButtonToMacro, &macroPage,
                         [](const FlashDataMap &record, int button) { takeFromMouse(record, button); });
        QObject::connect(PostMsg::instance(), &PostMsg::SigMacroDownLoadData, &macroPage, sendSaved);
        wanted = ButtonPage::plainRecord();
        page().show(wanted);
    }
    void cleanup()
    {
        PostMsg::instance()->disconnect(&macroPage);
        for (int button = 0; button < 12; ++button)
            dropMissedName(button);
        dropMarks("Burst");
        end();
    }

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

    // ---- From the mouse

    void aReadBringsTheMouseMacros()
    {
        expectMacro(2, "Burst", 254, presses(3));
        page().show(wanted);
        QCOMPARE(fileOf("Burst"), QByteArray("254\n0x04 1 0\n0ms\n0x04 1 1\n1ms\n0x04 1 0\n"));
        page().click("RightKey");
        page().click("DPI_10");
        QCOMPARE(page().macros(), QStringList("Burst"));
    }

    void anEqualFileIsNotWritten_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("same") << QByteArray("254\n0x04 1 0\n0ms\n0x04 1 1\n1ms\n0x04 1 0\n");
        QTest::newRow("line ends") << QByteArray("254\r\n0x04 1 0\r\n0ms\n0x04 1 1\r\n1ms\r\n0x04 1 0");
    }
    void anEqualFileIsNotWritten()
    {
        QFETCH(QByteArray, text);
        QVERIFY(writeMacroFile("Burst", text));
        QFile file(macroPath("Burst"));
        QVERIFY(file.open(QIODevice::ReadOnly)); // a replaced one would be another
        expectMacro(2, "Burst", 254, presses(3));
        page().show(wanted);
        QCOMPARE(fileOf("Burst"), text);
        QCOMPARE(kept(), QStringList());
        expectMacro(2, "Burst", 253, presses(3));
        page().show(wanted);
        QVERIFY(fileOf("Burst").startsWith("253\n"));
        QCOMPARE(kept(), QStringList("000001 Burst.ini"));
    }

    void theLocalCopyIsKeptFirst()
    {
        saveMacro("Burst", 9, presses(7));
        expectMacro(2, "Burst", 254, presses(3));
        page().show(wanted);
        QCOMPARE(fileOf("Burst"), macroText(254, presses(3)));
        QCOMPARE(kept(), QStringList("000001 Burst.ini"));
        QFile file(keptFolder() + "/000001 Burst.ini");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), macroText(9, presses(7)));
        QCOMPARE(macroNames(), QStringList("Burst"));
    }

    void whatCannotBeKeptStays()
    {
        saveMacro("Burst", 9, presses(7));
        QFile inTheWay(keptFolder());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        expectMacro(2, "Burst", 254, presses(3));
        page().show(wanted);
        QCOMPARE(fileOf("Burst"), macroText(9, presses(7)));
        inTheWay.remove();
        page().show(wanted);
        QCOMPARE(fileOf("Burst"), macroText(254, presses(3)));
    }

    void aHeldMacroIsNotWritten()
    {
        saveMacro("Burst", 9, presses(7));
        expectMacro(2, "Burst", 254, presses(3));
        hold("Burst");
        page().show(wanted);
        QCOMPARE(fileOf("Burst"), macroText(9, presses(7)));
        macro::release("Burst");
        page().show(wanted);
        QCOMPARE(fileOf("Burst"), macroText(254, presses(3)));
    }

    // What the mouse missed is sent to it when it is read, to each button that plays the macro.
    void aReadSendsWhatTheMouseMissed()
    {
        bindAll("Burst");
        saveMacro("Burst", 17, presses(7));
        setMissed("Burst", true);
        MouseOnline = false; // its cached image is shown
        page().show(wanted);
        QVERIFY(isWanted());
        MouseOnline = true;
        page().show(wanted);
        for (int button = 2; button < 12; ++button)
            expectMacro(button, "Burst", 17, presses(7));
        QVERIFY(isWanted());
        QCOMPARE(bytesOf(FakeHidUsb::instance().updates().back()), bytesOf(wanted));
        QCOMPARE(fileOf("Burst"), macroText(17, presses(7)));
        QCOMPARE(kept(), QStringList());
        for (int button = 2; button < 12; ++button)
            expectMacro(button, "Burst", 254, presses(3)); // by another computer
        page().show(wanted);
        QVERIFY(isWanted());
        QCOMPARE(fileOf("Burst"), macroText(254, presses(3)));
    }

    void aMissedMacroWhoseFileIsGoneComesBackFromTheMouse()
    {
        bindAll("Burst");
        setMissed("Burst", true);
        QVERIFY(removeMacro("Burst"));
        page().show(wanted);
        QCOMPARE(fileOf("Burst"), macroText(254, presses(3)));
        QVERIFY(isWanted());
    }

    // A name that the mouse refused is sent to it when it is read, and the old one does not come back.
    void aReadSendsTheNameThatTheMouseMissed_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<bool>("isShownAway"); // from the mouse's cached image, as after a selection
        QTest::addColumn<bool>("isSaved");
        QTest::newRow("at the next read") << QStringList{"Tap"} << false << false;
        QTest::newRow("shown while it is away") << QStringList{"Tap"} << true << false;
        QTest::newRow("renamed again") << QStringList{"Tap", "Hold"} << true << false;
        QTest::newRow("and the rows with it") << QStringList{"Tap", "Hold"} << true << true;
    }
    void aReadSendsTheNameThatTheMouseMissed()
    {
        QFETCH(QStringList, names);
        QFETCH(bool, isShownAway);
        QFETCH(bool, isSaved);
        PostMsg *const hub = PostMsg::instance();
        bindAll("Burst");
        FakeHidUsb::instance().setOnline("dev", false);
        QString name = "Burst";
        for (const QString &next : names) {
            QVERIFY(renameMacro(name, next));
            moveMarks(name, next);
            emit hub->SigMacroRename(name, next);
            name = next;
        }
        if (isSaved) {
            saveMacro(name, 17, presses(7));
            setMissed(name, true);
        }
        if (isShownAway) {
            MouseOnline = false;
            page().show(wanted);
            page().setLanguage(0);
            page().click("Button8");
            QCOMPARE(page().macros(), QStringList(name + " checked"));
            page().leave();
        }
        QVERIFY(isWanted());
        QCOMPARE(macroNames(), QStringList(name));
        QCOMPARE(caption(2), "Macro: " + name);

        FakeHidUsb::instance().setOnline("dev", true);
        MouseOnline = true;
        page().show(wanted);
        for (int button = 2; button < 12; ++button) {
            if (isSaved)
                expectMacro(button, name.toLatin1(), 17, presses(7));
            else
                renameBlock(&wanted.MacroBlocks[button], name);
        }
        QVERIFY(isWanted());
        QCOMPARE(bytesOf(FakeHidUsb::instance().updates().back()), bytesOf(wanted));
        QCOMPARE(macroNames(), QStringList(name));
        QCOMPARE(kept(), QStringList());
        for (int row = 2; row < 12; ++row)
            QCOMPARE(caption(row), "Macro: " + name);
        page().click("Button8");
        QCOMPARE(page().macros(), QStringList(name + " checked"));
        page().leave();

        bindAll("Burst"); // by another computer
        QCOMPARE(macroNames().size(), 2);
        QCOMPARE(caption(2), QString("Macro: Burst"));
    }

    // Another mouse may have a macro of that name on the same button.
    void whatOneMouseMissedIsNotSentToAnother_data()
    {
        QTest::addColumn<bool>("isSaved"); // else renamed
        QTest::newRow("name") << false;
        QTest::newRow("rows") << true;
    }
    void whatOneMouseMissedIsNotSentToAnother()
    {
        QFETCH(bool, isSaved);
        FakeHidUsb &fake = FakeHidUsb::instance();
        saveMacro("Burst", 254, presses(3));
        expectMacro(2, "Burst", 254, presses(3));
        page().show(wanted);
        fake.setOnline("dev", false);
        if (isSaved) {
            saveMacro("Burst", 17, presses(7));
            setMissed("Burst", true);
        } else {
            QVERIFY(renameMacro("Burst", "Tap"));
            moveMarks("Burst", "Tap");
            emit PostMsg::instance()->SigMacroRename("Burst", "Tap");
        }

        fake.addDevice(fixture::device("other", 6, Receiver8K));
        fixture::select(fixture::info("other", Receiver8K));
        MouseOnline = true;
        page().show(wanted);
        QVERIFY(isWanted());
        QCOMPARE(updates(), std::size_t(0));
        QCOMPARE(caption(2), QString("Macro: Burst"));
        if (isSaved) { // the file still waits for the first mouse
            QCOMPARE(fileOf("Burst"), macroText(17, presses(7)));
            QCOMPARE(kept(), QStringList("000001 Burst.ini"));
        }

        fake.setOnline("dev", true);
        fixture::select(fixture::info("dev", Receiver8K));
        page().show(wanted);
        if (isSaved)
            expectMacro(2, "Burst", 17, presses(7));
        else
            renameBlock(&wanted.MacroBlocks[2], "Tap");
        QVERIFY(isWanted());
        QCOMPARE(caption(2), QString(isSaved ? "Macro: Burst" : "Macro: Tap"));
        QCOMPARE(bytesOf(fake.updates().back()), bytesOf(wanted));
    }

    // A mouse that is unplugged is not selected any more when its page is left.
    void anUnpluggedMouseGetsWhatItMissedWhenItIsBack_data()
    {
        QTest::addColumn<bool>("isSaved"); // else renamed
        QTest::newRow("name") << false;
        QTest::newRow("rows") << true;
    }
    void anUnpluggedMouseGetsWhatItMissedWhenItIsBack()
    {
        QFETCH(bool, isSaved);
        FakeHidUsb &fake = FakeHidUsb::instance();
        PostMsg *const hub = PostMsg::instance();
        saveMacro("Burst", 254, presses(3));
        expectMacro(2, "Burst", 254, presses(3));
        page().show(wanted);
        const auto unplug = [&] {
            fake.setOnline("dev", false);
            SelectedDevice::set(DeviceAllInfo());
        };
        if (isSaved) {
            QObject::connect(hub, &PostMsg::SigMacroDownLoadData, &macroPage,
                             [](const QString &name) { setMissed(name, true); });
            saveMacro("Burst", 17, presses(5));
            QTimer::singleShot(0, &macroPage, [&] {
                unplug();
                emit hub->SigMainPageChange();
            });
            emit hub->SigUpDataMacro("Burst", 0);
        } else {
            unplug();
            QVERIFY(renameMacro("Burst", "Tap"));
            moveMarks("Burst", "Tap");
            emit hub->SigMacroRename("Burst", "Tap");
        }
        QVERIFY(isWanted());

        fake.setOnline("dev", true);
        fixture::select(fixture::info("dev", Receiver8K));
        page().show(wanted);
        if (isSaved)
            expectMacro(2, "Burst", 17, presses(5));
        else
            renameBlock(&wanted.MacroBlocks[2], "Tap");
        QVERIFY(isWanted());
        QCOMPARE(updates(), std::size_t(1));
        QCOMPARE(kept(), QStringList());
        QCOMPARE(macroNames(), QStringList(isSaved ? "Burst" : "Tap"));
    }

    // What is written to a button after a refused name is what it holds.
    void aButtonThatIsWrittenSinceKeepsItsName_data()
    {
        QTest::addColumn<QString>("what");
        for (const char *what : {"bound", "renamed", "cycle", "saved", "deleted"})
            QTest::newRow(what) << what;
    }
    void aButtonThatIsWrittenSinceKeepsItsName()
    {
        QFETCH(QString, what);
        PostMsg *const hub = PostMsg::instance();
        saveMacro("Burst", 254, presses(3));
        expectMacro(2, "Burst", 254, presses(3));
        page().show(wanted);
        FakeHidUsb::instance().setOnline("dev", false);
        QVERIFY(renameMacro("Burst", "Tap"));
        moveMarks("Burst", "Tap");
        emit hub->SigMacroRename("Burst", "Tap");
        FakeHidUsb::instance().setOnline("dev", true);
        saveMacro("Burst", 1, presses(5)); // another one of that name
        QString name = "Tap";
        if (what == "bound") {
            name = "Burst";
            bind(2, "Burst");
        } else if (what == "renamed") {
            name = "Hold";
            QVERIFY(renameMacro("Tap", "Hold"));
            moveMarks("Tap", "Hold");
            emit hub->SigMacroRename("Tap", "Hold");
        } else if (what == "cycle") {
            emit hub->SigUpDataMacro("Tap", 1);
        } else if (what == "saved") {
            QVERIFY(sendSaved("Tap", 2));
        } else {
            QVERIFY(removeMacro("Tap"));
            emit hub->SigDeleteMacroButton("Macro: Tap");
            dropMarks("Tap");
            name.clear();
        }
        wanted = DeviceRecord::copy();
        const std::size_t sent = updates();
        page().show(wanted);
        QCOMPARE(updates(), sent);
        if (!name.isEmpty())
            QCOMPARE(caption(2), "Macro: " + name);
        QCOMPARE(macroNames().contains("Tap"), what != "renamed" && what != "deleted");
        expectMacro(2, "Burst", 9, presses(1)); // by another computer
        page().show(wanted);
        QCOMPARE(caption(2), QString("Macro: Burst"));
        QCOMPARE(fileOf("Burst"), macroText(9, presses(1)));
    }

    void twoBlocksOfOneNameAreBothThere()
    {
        expectMacro(2, "Burst", 254, presses(3));
        expectMacro(3, "Burst", 1, presses(5));
        for (int read = 0; read < 5; ++read)
            page().show(wanted);
        QCOMPARE(fileOf("Burst"), macroText(1, presses(5))); // button 4 is walked before 3
        // The file was written once; what the other button plays is kept beside it.
        QCOMPARE(kept(), QStringList("000001 Burst.ini"));
        QFile keptFile(keptFolder() + "/000001 Burst.ini");
        QVERIFY(keptFile.open(QIODevice::ReadOnly));
        QCOMPARE(keptFile.readAll(), macroText(254, presses(3)));
        QFileInfo written(macroPath("Burst"));
        const QDateTime before = written.lastModified();
        page().show(wanted);
        written.refresh();
        QCOMPARE(written.lastModified(), before);
        QVERIFY(isWanted());
    }

    void aNameThatIsNoFilesStaysInTheMouse_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char *name : {"a/b", "..", "../x", ".a", "", "a\nb", "axml", "\xFF\xFE"})
            QTest::newRow(QByteArray(name).toHex()) << QByteArray(name);
    }
    void aNameThatIsNoFilesStaysInTheMouse()
    {
        QFETCH(QByteArray, name);
        expectMacro(2, "", 254, presses(3));
        wanted.MacroBlocks[2].NameLength = uint8_t(name.size());
        std::memcpy(wanted.MacroBlocks[2].Name, name.constData(), std::size_t(name.size()));
        expectMacro(3, "Good", 254, presses(3));
        page().show(wanted);
        QCOMPARE(macroNames(), QStringList("Good"));
        QCOMPARE(QDir(macroFolder() + "/..").entryList(QDir::Files | QDir::Hidden), QStringList());
        QVERIFY(isWanted());
    }

    void aBlockOfAnyBytesIsTaken()
    {
        std::mt19937 random(9);
        for (int round = 0; round < 20; ++round) {
            for (int button = 0; button < 12; ++button) {
                auto *const bytes = reinterpret_cast<uint8_t *>(&wanted.MacroBlocks[button]);
                for (std::size_t i = 0; i < sizeof(MacroBlock); ++i)
                    bytes[i] = uint8_t(random());
                wanted.MacroBlocks[button].NameLength = uint8_t(random() % 40);
                for (char &letter : wanted.MacroBlocks[button].Name)
                    letter = char(random() % 90 ? 'a' + random() % 3 : random());
                wanted.KeyBindings[button] = {6, uint8_t(random()), uint8_t(random())};
            }
            page().show(wanted);
            QVERIFY(isWanted());
        }
        QVERIFY(macroNames().size() > 20);
        for (const QString &name : macroNames())
            QVERIFY(loadMacro(name) && eventCount(loadMacro(name)->rows) <= 70);
        QVERIFY(kept().size() <= 10);
    }
};

TEST_CLASS(tst_ButtonMacros, ButtonPageSetUp)

#include "tst_buttonmacros.moc"
