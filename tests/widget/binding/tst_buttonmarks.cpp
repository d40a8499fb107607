// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The binding page's picture and rows: the marks on each model's mouse, and what a click on one does.
#include "tests/support/StillDesktop.h"
#include "tests/support/TestMain.h"
#include "tests/widget/binding/ButtonPage.h"

#include "presentation/StyleSheets.h"

#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>

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

} // namespace

class tst_ButtonMarks : public ButtonPageTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

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

    // What lights or is checked fades into its look; a press shows at once, and so does what comes into
    // sight.
    void aStateFadesIn_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"Number2", "RightKey"})
            QTest::newRow(name) << name;
    }
    void aStateFadesIn()
    {
        QFETCH(QString, name);
        const QTemporaryDir config; // says nothing of motion
        page().show(ButtonPage::plainRecord());
        auto *const button = static_cast<PairedButton *>(page().button(name.toLatin1()));
        const auto look = [button] { return button->grab().toImage(); };
        const auto stillLook = [&](const std::function<void()> &change) {
            const support::StillDesktop still;
            change();
            return look();
        };
        const auto light = [button] { button->setLit(true); };
        const auto check = [button] { button->setChecked(true); };
        const auto uncheck = [this, button] { // a row by another one
            page().button("FireKey")->setChecked(true);
            button->setChecked(false);
        };
        const QImage lit = stillLook(light);
        const QImage checked = stillLook(check);
        uncheck();
        const QImage pressed = stillLook([button] { button->setDown(true); });
        button->setDown(false);
        const QImage plain = stillLook([button] { button->setLit(false); });
        QVERIFY(lit != plain && checked != lit && pressed != plain);

        qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
        const auto restored = qScopeGuard([] { qunsetenv("XDG_CONFIG_HOME"); });
        light();
        QVERIFY(look() != lit);
        QTRY_COMPARE(look(), lit);
        check();
        QVERIFY(look() != checked);
        QTRY_COMPARE(look(), checked);
        uncheck();
        look();
        button->setDown(true);
        QCOMPARE(look(), pressed);
        button->hide();
        button->setDown(false);
        check();
        button->show();
        QCOMPARE(look(), checked);
        button->setLit(false);
    }

    // Pointing at a row, at its number or at its mark lights row and mark alike, and so does the keyboard.
    void rowAndMarkLightTogether_data() { eachButtonRow(); }
    void rowAndMarkLightTogether()
    {
        QFETCH(int, row);
        const support::StillDesktop still;
        page().show(ButtonPage::plainRecord());
        auto *const caption = static_cast<PairedButton *>(page().button(ButtonPageRows[row].caption));
        auto *const mark = static_cast<PairedButton *>(page().button(ButtonPageRows[row].marker));
        const auto send = [](QWidget *to, QEvent &&event) { QCoreApplication::sendEvent(to, &event); };
        for (QWidget *pointed : {static_cast<QWidget *>(caption), static_cast<QWidget *>(mark)}) {
            const QImage dark = mark->grab().toImage();
            send(pointed, QEnterEvent({1, 1}, {1, 1}, {1, 1}));
            QVERIFY(caption->isLit() && mark->isLit());
            if (pointed == caption)
                QVERIFY(mark->grab().toImage() != dark);
            send(pointed, QEvent(QEvent::Leave));
            QVERIFY(!caption->isLit() && !mark->isLit());
        }
        send(caption, QFocusEvent(QEvent::FocusIn, Qt::TabFocusReason));
        QVERIFY(caption->isLit() && mark->isLit());
        for (const Row &other : ButtonPageRows)
            QCOMPARE(static_cast<PairedButton *>(page().button(other.marker))->isLit(),
                     &other == &ButtonPageRows[row]);
        send(caption, QFocusEvent(QEvent::FocusOut, Qt::TabFocusReason));
        QVERIFY(!caption->isLit() && !mark->isLit());
        send(caption, QFocusEvent(QEvent::FocusIn, Qt::MouseFocusReason));
        QVERIFY(!mark->isLit());
    }

    void theCheckedRowsNumberIsBoldInBoth_data() { eachButtonRow(); }
    void theCheckedRowsNumberIsBoldInBoth()
    {
        QFETCH(int, row);
        page().show(ButtonPage::plainRecord());
        page().click(ButtonPageRows[row].marker);
        const auto labels =
            page().form.findChild<QScrollArea *>("scrollArea_11")->widget()->findChildren<QLabel *>();
        QCOMPARE(labels.size(), 12);
        for (int i = 0; i < 12; ++i) {
            QCOMPARE(labels[i]->font().bold(), i == row);
            QCOMPARE(page().button(ButtonPageRows[i].marker)->font().bold(), i == row);
        }
    }

    void eightRowsFit()
    {
        page().show(ButtonPage::plainRecord());
        auto *const area = page().form.findChild<QScrollArea *>("scrollArea_11");
        const auto placeOf = [&](int row) { return page().button(ButtonPageRows[row].caption)->geometry(); };
        for (int row = 0; row < 12; ++row) {
            QCOMPARE(placeOf(row).height(), 36);
            QCOMPARE(placeOf(row).y(), 44 * row);
        }
        QVERIFY(placeOf(7).bottom() < area->height());
        QVERIFY(placeOf(8).top() >= area->height()); // no sliver of the ninth
    }

    void aCutRowFades()
    {
        page().show(ButtonPage::plainRecord());
        auto *const area = page().form.findChild<QScrollArea *>("scrollArea_11");
        const auto fades = [&] {
            QString shown;
            for (const char *name : {"FadeTop", "FadeBottom"})
                if (area->findChild<QLabel *>(name)->isVisible())
                    shown += QLatin1String(name) + ' ';
            return shown;
        };
        QCOMPARE(fades(), QString());
        area->verticalScrollBar()->setValue(20);
        QCOMPARE(fades(), QString("FadeTop FadeBottom "));
        area->verticalScrollBar()->setValue(44);
        QCOMPARE(fades(), QString());
        area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
        QVERIFY(!fades().contains("FadeBottom")); // the end of the list
    }

    void theListBeginsAtTheTop()
    {
        page().show(ButtonPage::plainRecord());
        auto *const bar = page().form.findChild<QScrollArea *>("scrollArea_11")->verticalScrollBar();
        bar->setValue(200);
        QCOMPARE(bar->value(), 200);
        emit PostMsg::instance()->SigMouseIndex(6);
        QCOMPARE(bar->value(), 0);
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

    void aMarkTurnsTheOpenFunctionsToItsRow()
    {
        FlashDataMap map = ButtonPage::plainRecord();
        map.KeyBindings[8] = {1, 1, 0}; // so the first may be changed
        page().show(map);
        page().click("RightKey");
        page().click("DPI_12");
        const struct {
            const char *marker, *caption, *panel, *checked;
        } rows[] = {{"Number7", "Button7", "page_7", "DPI_7 VolumeUp_9"},
                    {"Number1", "FireKey", "page_9", "LeftKey_3"}};
        for (const auto &row : rows) {
            page().click(row.marker);
            QCOMPARE(page().shownPage(), "page_2");
            QCOMPARE(page().checkedCaption(), row.caption);
            QCOMPARE(page().shownPanel(), row.panel);
            QCOMPARE(page().checkedWidgets(), row.checked);
        }
        page().click("MidKey");
        QCOMPARE(int(DeviceRecord::copy().KeyBindings[0].First), 4);
        QCOMPARE(int(DeviceRecord::copy().KeyBindings[1].First), 2);
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
};

TEST_CLASS(tst_ButtonMarks, ButtonPageSetUp)

#include "tst_buttonmarks.moc"
