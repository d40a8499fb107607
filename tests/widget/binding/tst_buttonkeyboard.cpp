// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The binding page without a mouse: the order of the keyboard focus and what each key does.
#include "presentation/FocusRing.h"
#include "tests/support/TestMain.h"
#include "tests/widget/binding/ButtonPage.h"

class tst_ButtonKeyboard : public ButtonPageTest
{
    Q_OBJECT

private:
    // What has the focus, from where it is on.
    QStringList tabbed(int count)
    {
        QStringList seen;
        for (; seen.size() < count; QTest::keyClick(page().focus(), Qt::Key_Tab))
            seen << page().focusName();
        return seen;
    }

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void theKeyboardAloneBinds()
    {
        page().show(ButtonPage::plainRecord());
        QApplication::setActiveWindow(&page().form);
        page().button("RightKey")->setFocus(Qt::TabFocusReason);
        QTest::keyClick(page().focus(), Qt::Key_Down);
        QCOMPARE(page().focusName(), "BackKey");
        QTest::keyClick(page().focus(), Qt::Key_Space);
        QCOMPARE(page().shownPage(), "page_2");
        QCOMPARE(page().focusName(), "MidKey"); // where the present action is
        QTest::keyClick(page().focus(), Qt::Key_Down);
        QCOMPARE(page().focusName(), "ForWardKey");
        QTest::keyClick(page().focus(), Qt::Key_Right);
        QCOMPARE(page().focusName(), "DPI_2");
        QVERIFY(FakeHidUsb::instance().updates().empty()); // going there is no choice
        QTest::keyClick(page().focus(), Qt::Key_Space);
        QCOMPARE(page().button("BackKey")->text(), "Next report rate");
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().focusName(), "BackKey");
    }

    void theKeyboardLeadsIntoThePanelAndBack()
    {
        page().show(ButtonPage::plainRecord());
        QApplication::setActiveWindow(&page().form);
        page().button("BackKey")->setFocus(Qt::TabFocusReason);
        QTest::keyClick(page().focus(), Qt::Key_Space);
        page().button("DPI_9")->setFocus(Qt::TabFocusReason);
        QTest::keyClick(page().focus(), Qt::Key_Space);
        QCOMPARE(page().focusName(), "VolumeUp_4");
        QTest::keyClick(page().focus(), Qt::Key_Escape);
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().focusName(), "BackKey");
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    void enterDoesWhatTheSpaceBarDoes()
    {
        page().show(ButtonPage::plainRecord());
        QApplication::setActiveWindow(&page().form);
        const auto enter = [&](const char *name, Qt::Key key) {
            page().button(name)->setFocus(Qt::TabFocusReason);
            QTest::keyClick(page().focus(), key);
        };
        enter("Number4", Qt::Key_Return);
        QCOMPARE(page().checkedCaption(), "StartPause");
        enter("BackKey", Qt::Key_Enter);
        QCOMPARE(page().shownPage(), "page_2");
        enter("DPI_9", Qt::Key_Return);
        QCOMPARE(page().shownPanel(), "page_6");
        QCOMPARE(page().focusName(), "VolumeUp_4");
        enter("FunctionsBack", Qt::Key_Return);
        QCOMPARE(page().shownPage(), "page");
        QVERIFY(FakeHidUsb::instance().updates().empty());
        enter("BackKey", Qt::Key_Return);
        enter("DPI_9", Qt::Key_Return);
        enter("VolumeUp_6", Qt::Key_Return);
        QCOMPARE(page().button("BackKey")->text(), "Light bar on/off");
        QCOMPARE(page().focusName(), "BackKey");
    }

    void tabGoesThroughTheFunctionsAndThePanel()
    {
        page().show(ButtonPage::plainRecord());
        QApplication::setActiveWindow(&page().form);
        page().button("BackKey")->setFocus(Qt::TabFocusReason);
        QTest::keyClick(page().focus(), Qt::Key_Space);
        page().click("DPI_9");
        page().button("FunctionsBack")->setFocus(Qt::TabFocusReason);
        QStringList wanted = {"FunctionsBack"};
        for (const PanelRow &panel : PanelWidgets)
            if (qstrcmp(panel.page, "page_2") == 0 || qstrcmp(panel.page, "page_6") == 0)
                wanted += QString(panel.widgets).split(' ');
        QCOMPARE(tabbed(wanted.size()), wanted);
    }

    void theMacrosAreReachedToo()
    {
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[7] = {6, 7, 1};
        nameMacro(&map.MacroBlocks[7], "M");
        saveMacroFile("M");
        page().show(map);
        QApplication::setActiveWindow(&page().form);
        page().button("RightKey")->setFocus(Qt::TabFocusReason);
        QTest::keyClick(page().focus(), Qt::Key_Space);
        page().button("DPI_10")->setFocus(Qt::TabFocusReason);
        QTest::keyClick(page().focus(), Qt::Key_Space);
        QCOMPARE(qobject_cast<QToolButton *>(page().focus())->text(), "M");
        auto *const macro = page().focus();
        page().form.SlotUpDataButtonUIB(map); // another read takes nobody's place away
        QCOMPARE(page().focus(), macro);
        QTest::keyClick(page().focus(), Qt::Key_Space);
        QCOMPARE(page().button("RightKey")->text(), "Macro: M");
    }

    void theFocusIsSeenWhereverItIs()
    {
        FocusRing::install(Qt::white);
        page().show(ButtonPage::plainRecord());
        QApplication::setActiveWindow(&page().form);
        page().button("OutputData")->setFocus(Qt::TabFocusReason);
        for (const QString &name : tabbed(30)) {
            auto *const control = page().form.findChild<QWidget *>(name);
            control->setFocus(Qt::TabFocusReason);
            auto *const outline = page().form.findChild<QWidget *>("FocusOutline");
            QVERIFY2(outline && outline->isVisible(), qPrintable(name));
            const QPoint place = control->mapTo(outline->parentWidget(), QPoint());
            QVERIFY2(outline->geometry().contains(QRect(place, control->size())), qPrintable(name));
            QVERIFY2(!outline->visibleRegion().isEmpty(), qPrintable(name));
        }
    }

    void tabReachesEverythingThatShows()
    {
        page().show(ButtonPage::plainRecord());
        QApplication::setActiveWindow(&page().form);
        page().button("OutputData")->setFocus(Qt::TabFocusReason);
        QStringList wanted = {"OutputData", "ImportData", "Reset"};
        for (const Row &row : ButtonPageRows)
            wanted << row.marker;
        for (const Row &row : ButtonPageRows)
            wanted << row.caption;
        wanted << "Debunce";
        QCOMPARE(tabbed(wanted.size()), wanted);
    }
};

TEST_CLASS(tst_ButtonKeyboard, ButtonPageSetUp)

#include "tst_buttonkeyboard.moc"
