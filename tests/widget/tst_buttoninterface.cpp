// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The binding page: what it shows of a record, how the rows, marks and pages move, and that showing is no
// edit. What a click binds is tested beside this.
#include "tests/widget/ButtonPage.h"

#include "device/ImageCache.h"
#include "presentation/StyleSheets.h"

#include <QComboBox>
#include <QGridLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <random>

namespace
{

struct MarkerRow {
    int index;
    int places[6][2]; // -1: not moved
};
constexpr MarkerRow Markers[] = {
    {6, {{149, 65}, {249, 65}, {199, 65}, {98, 132}, {98, 185}, {199, 122}}},
    {7, {{149, 67}, {249, 67}, {199, 67}, {98, 135}, {98, 183}, {-1, -1}}},
    {8, {{149, 72}, {249, 72}, {199, 72}, {100, 140}, {100, 188}, {-1, -1}}},
    {9, {{149, 77}, {249, 77}, {199, 77}, {103, 135}, {103, 185}, {-1, -1}}},
};

struct PanelRow {
    const char *page;
    const char *widgets;
};
constexpr PanelRow PanelWidgets[] = {
    {"page_2", "LeftKey_3 RightKey_3 MidKey BackKey_2 ForWardKey DPI_2 DPI_3 DPI_6 DPI_8 DPI_5 DPI_13 DPI_11 "
               "DPI_4 DPI_9 DPI_7 DPI_12 DPI_10"},
    {"page_3", "Player StartPause_2 BackMusic_2 TopMusic_2 Mute VolumeUp VolumeDown VolumeDown_4 "
               "VolumeDown_5 VolumeDown_6 VolumeDown_3 VolumeDown_8 VolumeDown_9 VolumeDown_7 "
               "VolumeDown_10 VolumeDown_12 VolumeDown_13 VolumeDown_11"},
    {"page_6", "VolumeUp_4 VolumeUp_5 VolumeUp_6 VolumeUp_7"},
    {"page_8", "VolumeUp_11 VolumeUp_12 VolumeUp_13 VolumeUp_16 VolumeUp_15 VolumeUp_19 VolumeUp_20 "
               "VolumeUp_22 VolumeUp_18 VolumeUp_24 VolumeUp_23 VolumeUp_21"},
    {"page_4", "VolumeUp_2 VolumeDown_2"},
    {"page_7", "VolumeUp_8 VolumeUp_9 VolumeUp_10"},
    {"page_10", "VolumeUp_14 VolumeDown_14"},
};

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

class tst_Buttoninterface : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ButtonPage> made;
    ButtonPage &page() { return *made; }
    QString checkedWidgets() const
    {
        QStringList names;
        for (const PanelRow &panel : PanelWidgets)
            for (const QString &name : QString(panel.widgets).split(' '))
                if (made->button(name)->isChecked())
                    names << name;
        return names.join(' ');
    }
    QStringList captions() const
    {
        QStringList texts;
        for (const Row &row : ButtonPageRows)
            texts << made->button(row.caption)->text();
        return texts;
    }

private slots:
    void init()
    {
        fixture::clean();
        made = std::make_unique<ButtonPage>();
    }
    void cleanup() { made.reset(); }

    // ---- The form

    void startsWithTheButtons()
    {
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().shownPanel(), "page_9");
        for (const Row &row : ButtonPageRows) {
            QVERIFY2(page().button(row.caption)->isCheckable(), row.caption);
            QVERIFY2(page().button(row.marker), row.marker);
        }
        for (const char *group : {"ButtonGroup", "FunctionGroup", "DetailGroup"})
            QVERIFY(page().form.findChild<QButtonGroup *>(group)->exclusive());
        QCOMPARE(page().form.findChild<QButtonGroup *>("ButtonGroup")->buttons().size(), 12);
        QCOMPARE(page().form.findChild<QButtonGroup *>("FunctionGroup")->buttons().size(), 17);
        QCOMPARE(page().form.findChild<QButtonGroup *>("DetailGroup")->buttons().size(), 41);
    }

    void eachWidgetStandsOnItsPage_data()
    {
        QTest::addColumn<QStringList>("widgets");
        for (const PanelRow &row : PanelWidgets)
            QTest::newRow(row.page) << QString(row.widgets).split(' ');
    }
    void eachWidgetStandsOnItsPage()
    {
        QFETCH(QStringList, widgets);
        auto *const ground = page().form.findChild<QWidget *>(QTest::currentDataTag());
        QStringList found;
        for (const ActionButton *each : ground->findChildren<ActionButton *>())
            found << each->objectName();
        QCOMPARE(found, widgets);
    }

    void everyTextOfTheLanguageFits()
    {
        for (const ActionButton *each : page().form.findChildren<ActionButton *>())
            QVERIFY2(!each->isElided(), qPrintable(each->objectName() + ' ' + each->text()));
    }

    // ---- Marks and models

    void marksStandAsTheModelWants_data()
    {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < std::size(Markers); ++i)
            QTest::addRow("%d", Markers[i].index) << int(i);
    }
    void marksStandAsTheModelWants()
    {
        QFETCH(int, row);
        const MarkerRow &wanted = Markers[row];
        emit PostMsg::instance()->SigMouseIndex(wanted.index);
        for (int i = 0; i < 6; ++i)
            if (wanted.places[i][0] >= 0)
                QCOMPARE(page().button(ButtonPageRows[i].marker)->pos(),
                         QPoint(wanted.places[i][0], wanted.places[i][1]));
        QCOMPARE(!page().button("Number6")->isHidden(), wanted.index == 6);
        QCOMPARE(!page().button("BackMusic")->isHidden(), wanted.index == 6);
        QVERIFY(page().picture().contains(QString("mouse%1.png").arg(wanted.index - 6)));
    }

    // The picture is empty but for a faint glow where there is no mouse.
    void marksStandOnTheMouse_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<int>("buttons"); // as the product's catalogue has it
        QTest::newRow("6") << 0 << 8;
        QTest::newRow("7") << 1 << 12;
        QTest::newRow("8") << 2 << 7;
        QTest::newRow("9") << 3 << 6;
    }
    void marksStandOnTheMouse()
    {
        QFETCH(int, model);
        QFETCH(int, buttons);
        const QImage mouse(style::pictureFolder("Buttoninterface") + QString("mouse%1.png").arg(model));
        page().form.SlotMouseIndex(6 + model);
        QVector<QRect> taken;
        for (const Row &row : ButtonPageRows) {
            const QRect mark = page().button(row.marker)->geometry();
            if (row.button >= buttons || page().button(row.marker)->isHidden())
                continue;
            QVERIFY2(qAlpha(mouse.pixel(mark.center())) > 200, row.marker);
            for (const QRect &other : qAsConst(taken))
                QVERIFY2(!mark.intersects(other), row.marker);
            taken << mark;
        }
        QVERIFY(taken.size() >= 5);
    }

    void anotherIndexMovesNothing()
    {
        page().form.SlotMouseIndex(8);
        const QPoint before = page().button("Number1")->pos();
        for (const int index : {5, 10, -1, 255}) {
            page().form.SlotMouseIndex(index);
            QCOMPARE(page().button("Number1")->pos(), before);
            QVERIFY(page().picture().contains(QString("mouse%1.png").arg(index - 6)));
            QVERIFY(page().button("Number6")->isHidden());
        }
    }

    void anotherDeviceStartsWithTheButtons()
    {
        page().show(ButtonPage::plainRecord());
        page().click("RightKey");
        page().click("DPI_9");
        emit PostMsg::instance()->SigMouseIndex(7);
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().shownPanel(), "page_9");
        QCOMPARE(page().checkedCaption(), "");
    }

    void aMarkChecksAndScrolls_data() { eachButtonRow(); }
    void aMarkChecksAndScrolls()
    {
        QFETCH(int, row);
        page().show(ButtonPage::plainRecord());
        page().click(ButtonPageRows[row].marker);
        QCOMPARE(page().checkedCaption(), ButtonPageRows[row].caption);
        QCOMPARE(page().form.findChild<QScrollArea *>("scrollArea_11")->verticalScrollBar()->value(),
                 ButtonPageRows[row].scroll);
        QCOMPARE(page().shownPage(), "page");
        for (const Row &each : ButtonPageRows)
            QCOMPARE(page().button(each.marker)->isChecked(), &each == &ButtonPageRows[row]);
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    void aMarkOfASilentMouseChecksAllTheSame()
    {
        page().show(ButtonPage::plainRecord());
        FakeHidUsb::instance().setOnline("dev", false);
        QSignalSpy notice(PostMsg::instance(), &PostMsg::SigMouseOffLineo);
        page().click("Number4");
        QCOMPARE(notice.count(), 1);
        QCOMPARE(page().checkedCaption(), "StartPause");
    }

    void theModelsButtonsAreTheRows()
    {
        SelectedDevice::set(fixture::info("dev", Receiver8K, 1));
        page().show(ButtonPage::plainRecord());
        for (const Row &row : ButtonPageRows) {
            QCOMPARE(!page().button(row.caption)->isHidden(), row.button < 6);
            QCOMPARE(!page().button(row.marker)->isHidden(), row.button < 6);
        }
    }

    // ---- Showing a record

    void captionsFollowTheOddOrder()
    {
        page().show(ButtonPage::plainRecord());
        QCOMPARE(captions(),
                 QStringList({"Left button", "Right button", "Middle button", "Forward button", "Back button",
                              "Next DPI stage", "DPI+", "DPI-", "Switch report rate", "Switch report rate",
                              "Rapid fire", "Disabled"}));
    }

    void aButtonAboveTheModelsKeepsItsCaption()
    {
        page().show(ButtonPage::plainRecord());
        SelectedDevice::set(fixture::info("dev", Receiver8K, 1));
        page().show(FlashDataMap{});
        QCOMPARE(page().button("BackMusic")->text(), "Disabled");
        QCOMPARE(page().button("Button7")->text(), "DPI+");
    }

    void whatIsNoBindingKeepsTheCaption_data()
    {
        QTest::addColumn<int>("actionClass");
        QTest::addColumn<int>("first");
        QTest::newRow("mouse 3") << 1 << 3;
        QTest::newRow("dpi 0") << 2 << 0;
        QTest::newRow("scroll 3") << 3 << 3;
        QTest::newRow("light 2") << 8 << 2;
        QTest::newRow("vertical 0") << 11 << 0;
        QTest::newRow("class 12") << 12 << 1;
        QTest::newRow("class 255") << 255 << 255;
    }
    void whatIsNoBindingKeepsTheCaption()
    {
        QFETCH(int, actionClass);
        QFETCH(int, first);
        page().show(ButtonPage::plainRecord());
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[3] = {uint8_t(actionClass), uint8_t(first), 0};
        page().show(map);
        QCOMPARE(page().button("TopMusic")->text(), "Back button");
    }

    void showsTheRestOfTheRecord()
    {
        QSignalSpy sleep(PostMsg::instance(), &PostMsg::SigLightToFrom);
        FlashDataMap map = ButtonPage::plainRecord();
        map.StopCloseTime = 30;
        map.DebounceTime = 12;
        page().show(map);
        QCOMPARE(sleep.count(), 1);
        QCOMPARE(sleep[0][0].toInt(), 300);
        QCOMPARE(page().form.findChild<QComboBox *>("Debunce")->currentIndex(), 12);
        QVERIFY(!ButtonPageBusy);
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    void aReadFromTheDeviceMarksThePageLoaded()
    {
        fixture::emitElsewhere(
            [] { emit PostMsg::instance()->SigUpDataLightUIButton(ButtonPage::plainRecord()); });
        QVERIFY(ButtonPageLoaded);
        QCOMPARE(page().button("FireKey")->text(), "Left button");
    }

    void anImportDoesNotMarkThePageLoaded()
    {
        emit PostMsg::instance()->SigUpDataButtonUIC(ButtonPage::plainRecord());
        QVERIFY(!ButtonPageLoaded);
        QCOMPARE(page().button("FireKey")->text(), "Left button");
    }

    void anyRecordIsPaintedWithoutAWrite()
    {
        std::mt19937 random(5);
        FlashDataMap map{};
        auto *const bytes = reinterpret_cast<uint8_t *>(&map);
        for (int i = 0; i < 10000; ++i) {
            // The slots, with classes that are mostly known, and some of what lies behind them.
            for (KeyBinding &binding : map.KeyBindings)
                binding = {uint8_t(random() % 14), uint8_t(random()), uint8_t(random())};
            for (int k = 0; k < 400; ++k)
                bytes[random() % sizeof map] = uint8_t(random());
            page().form.SlotUpDataButtonUIB(map);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the macros' old buttons
        }
        QVERIFY(FakeHidUsb::instance().updates().empty());
        QVERIFY(!ButtonPageBusy);
    }

    // ---- Opening a button

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
        QCOMPARE(checkedWidgets(), choice.checked);
        QCOMPARE(page().checkedCaption(), "StartPause");
        QVERIFY(!page().button("FireKey")->isVisible()); // covered, and out of the keyboard's way
        QVERIFY(FakeHidUsb::instance().updates().empty());
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

    // ---- Reset, texts

    void aResetSetsTheDefaults()
    {
        page().show(ButtonPage::plainRecord());
        page().click("RightKey");
        const QStringList before = captions();
        QSignalSpy sleep(PostMsg::instance(), &PostMsg::SigLightToFrom);
        fixture::emitElsewhere([] { emit PostMsg::instance()->SigFormReset(); });
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().shownPanel(), "page_9");
        QCOMPARE(sleep.count(), 1);
        QCOMPARE(sleep[0][0].toInt(), 60);
        QCOMPARE(page().form.findChild<QComboBox *>("Debunce")->currentIndex(), 0);
        QCOMPARE(captions(), before);
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
            QCOMPARE(checkedWidgets(), checked[row]);
            page().leave();
        }
        QVERIFY(FakeHidUsb::instance().updates().empty());
        QVERIFY(!ButtonPageBusy);
    }

    void textsComeFromTheLanguage()
    {
        const std::pair<const char *, const char *> texts[] = {
            {"OutputData", "Export"},   {"ImportData", "Import"},  {"DPI_2", "Switch report rate"},
            {"DPI_9", "Lighting"},      {"DPI_12", "Media"},       {"Mute", "Stop"},
            {"Player", "Media player"}, {"VolumeDown_5", "Email"}, {"VolumeUp_21", "1200"},
            {"Number10", "10"},
        };
        for (const auto &[name, text] : texts)
            QCOMPARE(page().button(name)->text(), text);
    }

    // Language 1 has no table here, so the built-in texts come back.
    void anotherLanguageShowsOtherCaptions()
    {
        DeviceRecord::edit([](FlashDataMap &map) { map = ButtonPage::plainRecord(); });
        MouseOnline = true;
        page().show(ButtonPage::plainRecord());
        page().setLanguage(1);
        QCOMPARE(page().button("FireKey")->text(), QString::fromUtf8("左键"));
        QCOMPARE(page().button("StartPause")->text(), QString::fromUtf8("前进键"));
        QCOMPARE(page().button("Mute")->text(), QString::fromUtf8("停止播放"));
        page().setLanguage(0);
        QCOMPARE(page().button("FireKey")->text(), "Left button");
        QVERIFY(FakeHidUsb::instance().updates().empty());
    }

    void aMouseThatIsAwayIsRelabelledFromItsImage()
    {
        FlashDataMap kept = ButtonPage::plainRecord();
        kept.KeyBindings[1] = {9, 0, 0};
        ImageCacheWrite(SelectedDevice::cacheName(), kept);
        page().show(ButtonPage::plainRecord());
        page().setLanguage(0);
        QCOMPARE(page().button("RightKey")->text(), "Switch profile");
        MouseOnline = true;
        DeviceRecord::edit([](FlashDataMap &map) { map = ButtonPage::plainRecord(); });
        page().setLanguage(0);
        QCOMPARE(page().button("RightKey")->text(), "Right button");
    }

    // ---- Keyboard

    void theKeyboardAloneBinds()
    {
        page().show(ButtonPage::plainRecord());
        page().form.activateWindow();
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
        QCOMPARE(page().button("BackKey")->text(), "Switch report rate");
        QCOMPARE(page().shownPage(), "page");
        QCOMPARE(page().focusName(), "BackKey");
    }

    void theKeyboardLeadsIntoThePanelAndBack()
    {
        page().show(ButtonPage::plainRecord());
        page().form.activateWindow();
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

    void tabReachesEverythingThatShows()
    {
        page().show(ButtonPage::plainRecord());
        page().form.activateWindow();
        page().button("OutputData")->setFocus(Qt::TabFocusReason);
        QStringList seen;
        for (int i = 0; i < 40; ++i) {
            seen << page().focusName();
            QTest::keyClick(page().focus(), Qt::Key_Tab);
        }
        QStringList wanted = {"OutputData", "ImportData", "Reset"};
        for (const Row &row : ButtonPageRows)
            wanted << row.marker;
        for (const Row &row : ButtonPageRows)
            wanted << row.caption;
        wanted << "Debunce";
        QCOMPARE(seen.mid(0, wanted.size()), wanted);
    }
};

int main(int argc, char *argv[])
{
    const ProductFolder product(ButtonPage::catalogue());
    fixture::useShippedLooks(product);
    QApplication application(argc, argv);
    application.setFont(QFont("DejaVu Sans", 9));
    LoadLanguageTables();
    tst_Buttoninterface test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_buttoninterface.moc"
