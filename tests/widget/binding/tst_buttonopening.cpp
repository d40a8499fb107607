// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A button of the binding page that is opened: what stands checked, which panel shows, and the return to the
// rows.
#include "tests/support/ButtonActions.h"
#include "tests/support/TestMain.h"
#include "tests/widget/binding/ButtonPage.h"

#include <QComboBox>
#include <QLabel>

namespace
{

struct ChoiceRow {
    const char *name;
    int bytes[3];
    int kind, code; // of a sequence's first event
    const char *panel;
    const char *checked; // on the list and on the panel
};
constexpr ChoiceRow Choices[] = {
    {"left", {1, 1, 0}, 0, 0, "page_9", "LeftKey_3"},
    {"right", {1, 2, 0}, 0, 0, "page_9", "RightKey_3"},
    {"middle", {1, 4, 0}, 0, 0, "page_9", "MidKey"},
    {"back", {1, 8, 0}, 0, 0, "page_9", "BackKey_2"},
    {"forward", {1, 16, 0}, 0, 0, "page_9", "ForWardKey"},
    {"disabled", {0, 0, 0}, 0, 0, "page_9", "DPI_5"},
    {"dpi cycle", {2, 1, 0}, 0, 0, "page_7", "DPI_7 VolumeUp_8"},
    {"dpi up", {2, 2, 0}, 0, 0, "page_7", "DPI_7 VolumeUp_9"},
    {"dpi down", {2, 3, 0}, 0, 0, "page_7", "DPI_7 VolumeUp_10"},
    {"scroll left", {3, 1, 0}, 0, 0, "page_4", "DPI_11 VolumeUp_2"},
    {"scroll right", {3, 2, 0}, 0, 0, "page_4", "DPI_11 VolumeDown_2"},
    {"fire", {4, 20, 2}, 0, 0, "page_9", "DPI_6"},
    {"media", {5, 0, 0}, 2, 0xE9, "page_3", "DPI_12 VolumeDown"},
    {"combination", {5, 0, 0}, 1, 0x04, "page_9", "DPI_8"},
    {"rate", {7, 0, 0}, 0, 0, "page_9", "DPI_2"},
    {"lights", {8, 0, 0}, 0, 0, "page_6", "DPI_9 VolumeUp_4"},
    {"dpi light", {8, 1, 0}, 0, 0, "page_6", "DPI_9 VolumeUp_5"},
    {"strip", {8, 3, 0}, 0, 0, "page_6", "DPI_9 VolumeUp_6"},
    {"strip effect", {8, 4, 0}, 0, 0, "page_6", "DPI_9 VolumeUp_7"},
    {"profile", {9, 0, 0}, 0, 0, "page_9", "DPI_3"},
    {"lock 100", {10, 1, 0}, 0, 0, "page_8", "DPI_4 VolumeUp_11"},
    {"lock 800", {10, 15, 0}, 0, 0, "page_8", "DPI_4 VolumeUp_22"},
    {"scroll up", {11, 1, 0}, 0, 0, "page_10", "DPI_13 VolumeUp_14"},
    {"scroll down", {11, 2, 0}, 0, 0, "page_10", "DPI_13 VolumeDown_14"},
    {"unknown class", {99, 1, 0}, 0, 0, "page_9", ""},
};

} // namespace

class tst_ButtonOpening : public ButtonPageTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    // Each function shows whether it binds at once, opens a panel or opens a dialog, and neighbours that do
    // the same stand together.
    void theFunctionsStandInGroups()
    {
        page().show(ButtonPage::plainRecord());
        page().click("RightKey");
        const QString all = PanelWidgets[0].widgets;
        const QStringList dialogs = {"DPI_6", "DPI_8"};
        const QStringList panels = {"DPI_13", "DPI_11", "DPI_4", "DPI_9", "DPI_7", "DPI_12", "DPI_10"};
        const ActionButton *before = nullptr;
        int gaps = 0;
        for (const QString &name : all.split(' ')) {
            const auto *button = static_cast<ActionButton *>(page().button(name));
            QCOMPARE(button->opens(), panels.contains(name)    ? ActionButton::Opens::Panel
                                      : dialogs.contains(name) ? ActionButton::Opens::Dialog
                                                               : ActionButton::Opens::Nothing);
            QVERIFY2(!button->isElided(), qPrintable(name));
            QVERIFY(page().form.findChild<QWidget *>("page_2")->rect().contains(button->geometry()));
            const bool newGroup = before && before->opens() != button->opens();
            if (newGroup) {
                QCOMPARE(button->x(), 0);
                QCOMPARE(button->y() - before->geometry().bottom() - 1, 9);
                ++gaps;
            } else if (before && button->x() == 0) {
                QCOMPARE(button->y() - before->geometry().bottom() - 1, 4);
            }
            before = button;
        }
        QCOMPARE(gaps, 3);
    }

    // The sign is drawn, the text stays that of the action.
    void theSignIsNoPartOfTheText()
    {
        auto *const button = static_cast<ActionButton *>(page().button("DPI_6"));
        const QString text = button->text();
        const QImage asking = button->grab().toImage();
        button->setOpens(ActionButton::Opens::Nothing);
        const QImage binding = button->grab().toImage();
        button->setOpens(ActionButton::Opens::Panel);
        QVERIFY(asking != binding && button->grab().toImage() != binding);
        QCOMPARE(button->text(), text);
    }

    void aButtonOpensOnItsAction_data()
    {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < std::size(Choices); ++i)
            QTest::newRow(Choices[i].name) << int(i);
    }
    void aButtonOpensOnItsAction()
    {
        QFETCH(int, row);
        const ChoiceRow &choice = Choices[row];
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[4] = {uint8_t(choice.bytes[0]), uint8_t(choice.bytes[1]), uint8_t(choice.bytes[2])};
        map.KeySequences[4].Count.set(2);
        map.KeySequences[4].Events[0].Kind = uint8_t(choice.kind);
        map.KeySequences[4].Events[0].Code.set(uint16_t(choice.code));
        page().show(map);
        page().click("RightKey"); // leaves something checked
        page().leave();
        page().click("StartPause");
        QCOMPARE(page().shownPage(), "page_2");
        QCOMPARE(page().shownPanel(), choice.panel);
        QCOMPARE(page().checkedWidgets(), choice.checked);
        QCOMPARE(page().checkedCaption(), "StartPause");
        QVERIFY(!page().button("FireKey")->isVisible()); // covered, and out of the keyboard's way
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    // While the kept image of an off-line mouse shows, the process's record may be another mouse's.
    void aButtonOpensOnTheRecordThatShows_data()
    {
        QTest::addColumn<bool>("byWorker");
        QTest::newRow("by the worker") << true;
        QTest::newRow("behind the wait") << false;
    }
    void aButtonOpensOnTheRecordThatShows()
    {
        QFETCH(bool, byWorker);
        FlashDataMap kept = ButtonPage::plainRecord();
        kept.KeyBindings[4] = kept.KeyBindings[3] = {5, 0, 0};
        kept.KeySequences[4] = pressAndRelease(0xE9);
        kept.KeySequences[3].Count.set(2);
        kept.KeySequences[3].Events[0].Kind = 1;
        kept.KeyBindings[7] = {6, 7, 254};
        nameMacro(&kept.MacroBlocks[7], "Burst");
        FlashDataMap other = ButtonPage::plainRecord();
        other.KeySequences[3] = pressAndRelease(0xE9);
        other.KeyBindings[6] = {6, 6, 254};
        nameMacro(&other.MacroBlocks[6], "Other");
        saveMacroFile("Burst");
        DeviceRecord::edit([&](FlashDataMap &record) { record = other; });
        if (byWorker)
            fixture::emitOnOtherThread([&] { emit PostMsg::instance()->SigUpDataLightUIButton(kept); });
        else
            emit PostMsg::instance()->SigUpDataButtonUIC(kept);
        emit PostMsg::instance()->SigAddMacroButton(); // the page is entered
        const struct {
            const char *caption, *panel, *checked;
        } rows[] = {{"StartPause", "page_3", "DPI_12 VolumeDown"},
                    {"TopMusic", "page_9", "DPI_8"},
                    {"Button8", "page_5", "DPI_10"}};
        for (const auto &row : rows) {
            page().click(row.caption);
            QCOMPARE(page().shownPanel(), row.panel);
            QCOMPARE(page().checkedWidgets(), row.checked);
            page().leave();
        }
        QCOMPARE(page().macros(), QStringList("Burst checked"));
        QVERIFY(FakeHidUsb::instance().updates().empty());
        // What is written is shown, too.
        page().click("RightKey");
        page().macro("Burst")->click();
        QCOMPARE(page().button("RightKey")->text(), "Macro: Burst");
        page().click("RightKey");
        QCOMPARE(page().shownPanel(), "page_5");
    }

    void theArrowSaysWhereItLeads()
    {
        const auto *const back = page().form.findChild<QToolButton *>("FunctionsBack");
        QCOMPARE(back->toolTip(), QString("Back to the buttons"));
        QCOMPARE(back->accessibleName(), back->toolTip());
    }

    // The button's caption stands above its functions, also when it changes.
    void theTitleFollowsTheCaption()
    {
        MouseOnline = true;
        page().show(ButtonPage::plainRecord());
        page().click("RightKey");
        const auto *const title = page().form.findChild<QLabel *>("FunctionsTitle");
        QCOMPARE(title->text(), "Button 2: Right button");
        {
            const fixture::WithoutTexts bare;
            page().setLanguage(0);
            QCOMPARE(title->text(), QString::fromUtf8("Button 2: 右键"));
        }
        page().setLanguage(0);
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[1] = {9, 0, 0};
        page().show(map);
        QCOMPARE(title->text(), "Button 2: Next profile");
    }

    void everyRowOpens_data() { eachButtonRow(); }
    void everyRowOpens()
    {
        QFETCH(int, row);
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[9] = {1, 1, 0}; // a second left button
        page().show(map);
        page().click(ButtonPageRows[row].caption);
        QCOMPARE(page().shownPage(), "page_2");
        QCOMPARE(page().checkedCaption(), ButtonPageRows[row].caption);
    }

    void openersShowTheirPanel_data()
    {
        QTest::addColumn<QString>("panel");
        QTest::newRow("DPI_12") << "page_3";
        QTest::newRow("DPI_9") << "page_6";
        QTest::newRow("DPI_4") << "page_8";
        QTest::newRow("DPI_11") << "page_4";
        QTest::newRow("DPI_7") << "page_7";
        QTest::newRow("DPI_13") << "page_10";
    }
    void openersShowTheirPanel()
    {
        QFETCH(QString, panel);
        page().show(ButtonPage::plainRecord());
        page().click("RightKey");
        page().click(QTest::currentDataTag());
        QCOMPARE(page().shownPanel(), panel);
        QCOMPARE(page().shownPage(), "page_2");
        QVERIFY(FakeHidUsb::instance().updates().empty());
        page().leave();
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().shownPanel(), "page_9");
    }

    void aResetSetsTheDefaults()
    {
        page().show(ButtonPage::plainRecord());
        page().click("RightKey");
        const QStringList before = page().captions();
        QSignalSpy sleep(PostMsg::instance(), &PostMsg::SigLightToFrom);
        fixture::emitOnOtherThread([] { emit PostMsg::instance()->SigFormReset(); });
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().shownPanel(), "page_9");
        QCOMPARE(sleep.count(), 1);
        QCOMPARE(sleep[0][0].toInt(), 60);
        QCOMPARE(page().form.findChild<QComboBox *>("Debunce")->currentIndex(), 0);
        QCOMPARE(page().captions(), before);
        const char *const checked[] = {"",
                                       "RightKey_3",
                                       "MidKey",
                                       "ForWardKey",
                                       "BackKey_2",
                                       "DPI_7 VolumeUp_8",
                                       "DPI_7 VolumeUp_9",
                                       "DPI_7 VolumeUp_10",
                                       "DPI_2",
                                       "DPI_2",
                                       "DPI_6",
                                       "DPI_5"};
        for (int row = 1; row < 12; ++row) {
            page().click(ButtonPageRows[row].caption);
            QCOMPARE(page().checkedWidgets(), checked[row]);
            page().leave();
        }
        QVERIFY(FakeHidUsb::instance().updates().empty());
        QVERIFY(!ButtonPageBusy);
    }
};

TEST_CLASS(tst_ButtonOpening, ButtonPageSetUp)

#include "tst_buttonopening.moc"
