// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a click on the binding page writes, what it says when it cannot, and the rule of the left button.
#include "presentation/FontScale.h"
#include "presentation/Notices.h"
#include "presentation/dialogs/FireKey.h"
#include "presentation/dialogs/GroupKey.h"
#include "tests/support/ButtonActions.h"
#include "tests/support/TestMain.h"
#include "tests/widget/binding/ButtonPage.h"

#include <cstring>

namespace
{

bool same(const FlashDataMap &a, const FlashDataMap &b) { return std::memcmp(&a, &b, sizeof a) == 0; }

} // namespace

class tst_ButtonBinding : public ButtonPageTest
{
    Q_OBJECT

private:
    static std::size_t updates() { return FakeHidUsb::instance().updates().size(); }
    void open(const char *caption, const ButtonAction &action)
    {
        page().click(caption);
        if (action.opener)
            page().click(action.opener);
    }
    template <typename Dialog> void whereIs(const char *button, const QPoint &offset)
    {
        QPoint stood(-1, -1), wanted;
        fixture::whenModal<Dialog>([&](Dialog *dialog) {
            stood = dialog->pos();
            wanted = page().middleFor(dialog, offset);
            dialog->on_CloseButton_clicked();
        });
        page().click(button);
        QCOMPARE(stood, wanted);
    }
    static void eachAction()
    {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < std::size(ButtonActions); ++i)
            QTest::newRow(ButtonActions[i].widget) << int(i);
    }
private slots:
    void init()
    {
        begin();
        page().show(ButtonPage::plainRecord());
    }
    void cleanup() { end(); }

    // ---- Functions

    void aClickBinds_data() { eachAction(); }
    void aClickBinds()
    {
        QFETCH(int, row);
        const ButtonAction &action = ButtonActions[row];
        FlashDataMap wanted = DeviceRecord::copy();
        wanted.KeyBindings[3] = action.binding;
        if (action.usage)
            wanted.KeySequences[3] = pressAndRelease(action.usage);
        open("TopMusic", action);
        page().click(action.widget);
        QVERIFY(same(DeviceRecord::copy(), wanted));
        QCOMPARE(int(updates()), 1);
        QCOMPARE(page().button("TopMusic")->text(), action.caption);
        QCOMPARE(page().shownPage(), "page");
        // Opened again, it stands on what was bound.
        page().click("TopMusic");
        QVERIFY(page().button(action.widget)->isChecked());
    }

    void aSilentMouseKeepsEverything_data() { eachAction(); }
    void aSilentMouseKeepsEverything()
    {
        QFETCH(int, row);
        const FlashDataMap before = DeviceRecord::copy();
        FakeHidUsb::instance().setOnline("dev", false);
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        open("TopMusic", ButtonActions[row]);
        page().click(ButtonActions[row].widget);
        QVERIFY(same(DeviceRecord::copy(), before));
        QVERIFY(updates() == 0);
        QCOMPARE(notice.count(), 1);
        QCOMPARE(notice[0][0].toInt(), 0);
        QCOMPARE(page().button("TopMusic")->text(), "Back button");
        QCOMPARE(page().shownPage(), "page");
    }

    void withoutAButtonNothingIsBound()
    {
        page().click("MidKey");
        QVERIFY(updates() == 0);
        QCOMPARE(page().shownPage(), "page");
    }

    void aMediaKeyByItsCode()
    {
        QVERIFY(page().form.SetMediaAction(6, 0x23));
        QCOMPARE(page().button("Button7")->text(), "Browser home");
        QVERIFY(!page().form.SetMediaAction(6, 0x01));
        QCOMPARE(int(updates()), 1);
    }

    void dialogsStandBesideTheMiddle()
    {
        page().click("RightKey");
        whereIs<FireKey>("DPI_6", {-50, -70});
        whereIs<GroupKey>("DPI_8", {-50, -70});
        whereIs<MakeMacro>("DPI_10", {-100, -50});
        page().leave();
        whereIs<LeftButtonOnly>("FireKey", {-100, -50});
    }

    // ---- Fire key

    void theFireKeyAsksForItsValues_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("interval");
        QTest::addColumn<int>("count");
        QTest::newRow("of another action") << "RightKey" << 10 << 3;
        QTest::newRow("of a fire key") << "Button11" << 77 << 1;
    }
    void theFireKeyAsksForItsValues()
    {
        QFETCH(QString, caption);
        QFETCH(int, interval);
        QFETCH(int, count);
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[10] = {4, 77, 1};
        page().show(map);
        page().click(caption);
        QList<int> offered;
        fixture::whenModal<FireKey>([&](FireKey *dialog) {
            offered << dialog->interval() << dialog->count();
            dialog->setValues(200, 0);
            dialog->on_NewHong_clicked();
        });
        page().click("DPI_6");
        QCOMPARE(offered, QList<int>({interval, count}));
        const KeyBinding bound = DeviceRecord::copy().KeyBindings[caption == "Button11" ? 10 : 1];
        QCOMPARE(int(bound.Class), 4);
        QCOMPARE(int(bound.First), 200);
        QCOMPARE(int(bound.Second), 0);
        QCOMPARE(page().button(caption)->text(), "Rapid fire");
        QCOMPARE(page().shownPage(), "page");
    }

    void aDismissedFireKeyBindsNothing()
    {
        page().click("RightKey");
        fixture::whenModal<FireKey>([](FireKey *dialog) { dialog->on_CloseButton_clicked(); });
        page().click("DPI_6");
        QVERIFY(updates() == 0);
        QVERIFY(page().button("RightKey_3")->isChecked()); // not the function that was not taken
    }

    void aSilentMouseIsNotAskedForAFireKey()
    {
        page().click("RightKey");
        page().click("DPI_7");
        FakeHidUsb::instance().setOnline("dev", false);
        page().click("DPI_6"); // would not return from a dialog
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().shownPanel(), "page_9");
        QVERIFY(updates() == 0);
    }

    // ---- Combination

    void theCombinationAsksForItsKeys()
    {
        page().click("RightKey");
        fixture::whenModal<GroupKey>([](GroupKey *dialog) {
            dialog->findChild<QAbstractButton *>("Ctrl")->setChecked(true);
            dialog->UpdateCapslockTip('A', true, false);
            dialog->on_NewHong_clicked();
        });
        page().click("DPI_8");
        const FlashDataMap record = DeviceRecord::copy();
        QCOMPARE(int(record.KeyBindings[1].Class), 5);
        QCOMPARE(int(record.KeySequences[1].Count.get()), 4);
        QCOMPARE(int(record.KeySequences[1].Events[1].Code.get()), 0x04);
        QCOMPARE(page().button("RightKey")->text(), "Ctrl+A");
        QCOMPARE(int(updates()), 1);
    }

    void aCombinationForASilentMouseBindsNothing()
    {
        page().click("RightKey");
        FakeHidUsb::instance().setOnline("dev", false);
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        fixture::whenModal<GroupKey>([](GroupKey *dialog) {
            dialog->UpdateCapslockTip('A', true, false);
            dialog->on_NewHong_clicked();
        });
        page().click("DPI_8");
        QCOMPARE(notice.count(), 1);
        QVERIFY(updates() == 0);
        QCOMPARE(page().button("RightKey")->text(), "Right button");
        QCOMPARE(page().shownPage(), "page");
    }

    void aDismissedCombinationBindsNothing()
    {
        page().click("RightKey");
        fixture::whenModal<GroupKey>([](GroupKey *dialog) { dialog->on_NewHong_2_clicked(); });
        page().click("DPI_8");
        QVERIFY(updates() == 0);
        QVERIFY(page().button("RightKey_3")->isChecked());
    }

    // ---- The left button

    void theLastLeftButtonCannotBeOpened()
    {
        page().click("RightKey");
        page().leave();
        const notice::NextAnswer<LeftButtonOnly> closed(false);
        page().click("FireKey");
        QVERIFY(closed.isTaken());
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().shownPanel(), "page_9");
        QCOMPARE(page().checkedCaption(), "");
        page().click("RightKey"); // the group works on
        page().click("BackKey");
        QCOMPARE(page().checkedCaption(), "BackKey");
    }

    void ofTwoLeftButtonsOneCanBeChanged()
    {
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[8] = {1, 1, 0};
        page().show(map);
        page().click("FireKey");
        page().click("MidKey");
        QCOMPARE(page().button("FireKey")->text(), "Middle button");
        const notice::NextAnswer<LeftButtonOnly> closed(false);
        page().click("Button9");
        QVERIFY(closed.isTaken());
        QCOMPARE(page().shownPage(), "page");
    }

    void theCaptionIsWhatCounts()
    {
        page().button("TopMusic")->setText("Left button");
        page().click("FireKey");
        QCOMPARE(page().shownPage(), "page_2");
    }

    void aButtonThatTheMouseHasNotDoesNotCount()
    {
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[8] = {1, 1, 0};
        page().show(map);
        SelectedDevice::set(fixture::info("dev", Receiver8K, 1)); // six buttons
        page().show(ButtonPage::plainRecord());
        QCOMPARE(page().button("Button9")->text(), "Left button");
        const notice::NextAnswer<LeftButtonOnly> closed(false);
        page().click("FireKey");
        QVERIFY(closed.isTaken());
    }

    // A mark checks the row of the last left button while the functions of another row are open.
    void aMarkDoesNotOpenTheLastLeftButton_data()
    {
        QTest::addColumn<QString>("function");
        for (const char *function : {"DPI_5", "MidKey", "DPI_6", "macro"})
            QTest::newRow(function) << function;
    }
    void aMarkDoesNotOpenTheLastLeftButton()
    {
        QFETCH(QString, function);
        FlashDataMap map = ButtonPage::plainRecord();
        saveMacroFile("Burst");
        page().show(map);
        page().click("RightKey");
        page().click("Number1");
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().checkedCaption(), "FireKey");
        QCOMPARE(page().shownPanel(), "page_9");
        const notice::NextAnswer<LeftButtonOnly> closed(false);
        if (function == "DPI_6")
            fixture::whenModal<FireKey>([](FireKey *dialog) { dialog->on_NewHong_clicked(); });
        if (function == "macro")
            page().macro("Burst")->click();
        else
            page().click(function);
        QVERIFY(closed.isTaken());
        QVERIFY(same(DeviceRecord::copy(), map));
        QVERIFY(updates() == 0);
        QCOMPARE(page().button("FireKey")->text(), "Left button");
        QCOMPARE(page().checkedCaption(), "");
    }

    void theLastLeftButtonTakesNothingFromElsewhere()
    {
        const FlashDataMap before = DeviceRecord::copy();
        const notice::NextAnswer<LeftButtonOnly> first(false), second(false);
        QVERIFY(!page().form.SetMediaAction(0, 0x23));
        QVERIFY(!page().form.SetComboAction(0, "A"));
        QVERIFY(first.isTaken() && second.isTaken());
        QVERIFY(same(DeviceRecord::copy(), before));
        QVERIFY(page().form.SetComboAction(1, "A"));
    }

    void aLeftButtonThatBecomesTheLastOneIsKept()
    {
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[8] = {1, 1, 0};
        page().show(map);
        page().click("FireKey");
        map.KeyBindings[8] = {7, 0, 0};
        page().show(map); // a new read arrives
        const notice::NextAnswer<LeftButtonOnly> closed(false);
        page().click("MidKey");
        QVERIFY(closed.isTaken());
        QVERIFY(same(DeviceRecord::copy(), map));
    }

    void theLastLeftBindingIsKeptBesideALeftCaption()
    {
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[3] = {200, 0, 0}; // no caption of its own, so the row keeps the one it has
        page().button("TopMusic")->setText("Left button");
        page().show(map);
        page().click("FireKey");
        QCOMPARE(page().shownPage(), "page_2");
        const notice::NextAnswer<LeftButtonOnly> closed(false);
        page().click("MidKey");
        QVERIFY(closed.isTaken());
        QVERIFY(same(DeviceRecord::copy(), map));
        QCOMPARE(page().button("FireKey")->text(), "Left button");
    }

    // ---- Macros

    void withoutMacrosThereIsANotice_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("bound");
        QTest::newRow("a function") << "RightKey"
                                    << "RightKey_3";
        QTest::newRow("one with a panel") << "BackMusic"
                                          << "DPI_7 VolumeUp_8";
        QTest::newRow("none") << "Button12"
                              << "DPI_5";
    }
    void withoutMacrosThereIsANotice()
    {
        QFETCH(QString, caption);
        page().click(caption);
        QTEST(page().checkedWidgets(), "bound");
        const notice::NextAnswer<MakeMacro> confirmed(true);
        page().click("DPI_10");
        QVERIFY(confirmed.isTaken());
        QCOMPARE(page().shownPanel(), "page_9");
        QTEST(page().checkedWidgets(), "bound"); // not the function that was not taken
        QCOMPARE(page().checkedCaption(), caption);
        QVERIFY(updates() == 0);
    }

    void aMacrosTextIsAsLargeAsTheOthers()
    {
        scaleFonts(&page().form, 0.5);
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[7] = {6, 7, 1};
        nameMacro(&map.MacroBlocks[7], "Burst");
        saveMacroFile("Burst");
        page().show(map);
        page().click("Button8");
        const auto *const macro = page().form.findChild<QWidget *>("page_5")->findChild<ActionButton *>();
        QCOMPARE(macro->font().pointSizeF(), page().button("Mute")->font().pointSizeF());
        QCOMPARE(macro->font().pointSizeF(), 4.5);
    }

    void aMacroOfOneButtonGoesToAnother()
    {
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[7] = {6, 7, 254};
        nameMacro(&map.MacroBlocks[7], "Burst");
        saveMacroFile("Burst");
        page().show(map);
        QCOMPARE(page().button("Button8")->text(), "Macro: Burst");
        page().click("Button8");
        QCOMPARE(page().shownPanel(), "page_5");
        const QList<ActionButton *> offered =
            page().form.findChild<QWidget *>("page_5")->findChildren<ActionButton *>();
        QCOMPARE(offered.size(), 1);
        QCOMPARE(offered[0]->text(), "Burst");
        QVERIFY(offered[0]->isChecked());
        page().leave();
        page().click("RightKey");
        page().click("DPI_10");
        QCOMPARE(page().shownPanel(), "page_5");
        offered[0]->click();
        map.KeyBindings[1] = {6, 1, 254};
        map.MacroBlocks[1] = map.MacroBlocks[7];
        QVERIFY(same(DeviceRecord::copy(), map));
        QCOMPARE(page().button("RightKey")->text(), "Macro: Burst");
        QCOMPARE(page().shownPage(), "page");
    }
};

TEST_CLASS(tst_ButtonBinding, ButtonPageSetUp)

#include "tst_buttonbinding.moc"
