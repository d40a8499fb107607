// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Hand editing on the page: the list of insertions with its dialogs, changing and deleting rows, the marks
// that they leave, and the texts of the page.
#include "macro/EventRows.h"
#include "presentation/Notices.h"
#include "presentation/Widgets.h"
#include "presentation/dialogs/AddDelayTime.h"
#include "presentation/dialogs/addKey.h"
#include "tests/widget/macro/MacroPage.h"

#include <QAbstractItemView>

namespace
{

const QByteArray Two = "1\n0x04 1 0\n10ms\n0x04 1 1\n20ms\n0x05 1 0\n";
const QString TwoRows = "+A 10ms -A 20ms +B";
constexpr int VkC = 0x43;

} // namespace

class tst_MacroEditing : public QObject
{
    Q_OBJECT

    std::unique_ptr<MacroPage> made;
    QStringList updates;

    const MacroPage &page() const { return *made; }
    void choose(int index) const { page().page->on_ChooseEvent_activated(index); }
    static void answerKey(int virtualKey)
    {
        fixture::whenModal<addKey>([virtualKey](addKey *dialog) {
            if (virtualKey >= 0)
                dialog->UpdateCapslockTip(virtualKey, true, false);
            dialog->on_NewHong_clicked();
        });
    }
    static void answerDelay(int milliseconds)
    {
        fixture::whenModal<AddDelayTime>([milliseconds](AddDelayTime *dialog) {
            dialog->findChild<QSpinBox *>("spinBox")->setValue(milliseconds);
            dialog->on_NewHong_clicked();
        });
    }
    template <typename Dialog> static void cancel()
    {
        fixture::whenModal<Dialog>([](Dialog *dialog) { dialog->on_NewHong_2_clicked(); });
    }
    // Saves, and says whether that told of new events.
    bool savesEvents()
    {
        updates.clear();
        page().button("Save")->click();
        return updates.contains("0");
    }

private slots:
    void init()
    {
        made = std::make_unique<MacroPage>(QVector<QPair<QString, QByteArray>>{{"Alpha", Two}, {"Beta", ""}});
        connect(PostMsg::instance(), &PostMsg::SigUpDataMacro, page().page.get(),
                [this](const QString &, int index) { updates << QString::number(index); });
        page().choose("Alpha");
    }
    void cleanup() { made.reset(); }

    // ---- Inserting

    void aKeyOfTheDialog_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("row");
        QTest::newRow("press") << 1 << "+C";
        QTest::newRow("release") << 2 << "-C";
    }
    void aKeyOfTheDialog()
    {
        QFETCH(int, index);
        QFETCH(QString, row);
        page().select(2);
        answerKey(VkC);
        choose(index);
        QCOMPARE(page().rows(), "+A 10ms -A 20ms " + row + " 10ms +B");
        QCOMPARE(page().find<QComboBox>("ChooseEvent")->currentIndex(), 0);
        QVERIFY(savesEvents());
    }

    void aKeyIntoAnEmptyList()
    {
        page().choose("Beta");
        answerKey(VkC);
        choose(1);
        QCOMPARE(page().rows(), QString("+C 10ms"));
        QVERIFY(savesEvents());
        QCOMPARE(page().file("Beta"), QByteArray("1\n0x06 1 0\n10ms\n"));
    }

    void aKeyWithoutAName()
    {
        page().select(2);
        answerKey(-1);
        choose(1);
        QCOMPARE(page().rows(), QString("+A 10ms -A 20ms + 10ms +B"));
    }

    void nothingWithoutAnAnswer()
    {
        page().select(2);
        cancel<addKey>();
        choose(1);
        cancel<AddDelayTime>();
        choose(3);
        cancel<AddDelayTime>();
        page().select(3);
        page().button("Amend")->click();
        cancel<addKey>();
        page().select(2);
        page().button("Amend")->click();
        QCOMPARE(page().rows(), TwoRows);
        QVERIFY(!page().saves());
        choose(4); // and something with
        QVERIFY(page().saves());
    }

    void theFirstItemInsertsNothing()
    {
        choose(0);
        choose(-1);
        choose(9);
        QCOMPARE(page().rows(), TwoRows);
        QVERIFY(!page().saves());
        choose(8);
        QVERIFY(page().saves());
    }

    void aClickOfEachMouseButton()
    {
        const QStringList names = {"Left button", "Right button", "Middle button", "Forward button",
                                   "Back button"};
        const QByteArrayList codes = {"0x01", "0x02", "0x04", "0x10", "0x08"};
        page().choose("Beta");
        for (int i = 0; i < 5; ++i) {
            page().select(-1);
            page().events()->clear();
            choose(4 + i);
            QCOMPARE(page().rows(), QString("+%1 10ms -%1").arg(names[i]));
            QVERIFY(savesEvents());
            QCOMPARE(page().file("Beta"), "1\n" + codes[i] + " 4 0\n10ms\n" + codes[i] + " 4 1\n");
        }
    }

    void aDelay()
    {
        page().select(4);
        answerDelay(333);
        choose(3);
        QCOMPARE(page().rows(), QString("+A 10ms -A 333ms +B"));
        QCOMPARE(page().events()->currentRow(), 3);
        QVERIFY(savesEvents());
        page().select(0);
        answerDelay(444);
        choose(3);
        QVERIFY(!page().saves());
        page().select(-1);
        answerDelay(444);
        choose(3); // without a selected row
        QCOMPARE(page().rows(), QString("+A 10ms -A 333ms +B"));
        page().select(1);
        answerDelay(444);
        choose(3);
        QCOMPARE(page().rows(), QString("+A 444ms -A 333ms +B"));
    }

    void nothingWithoutAMacro()
    {
        page().macros()->clearSelection();
        QCOMPARE(page().rows(), QString());
        answerKey(VkC);
        choose(1);
        answerDelay(50);
        choose(3);
        choose(4);
        page().page->on_DeleteKey_clicked();
        QCOMPARE(page().rows(), QString());
        QVERIFY(!page().saves());
        page().choose("Alpha");
        choose(4);
        QVERIFY(page().saves());
    }

    // ---- Changing

    void anAmendedRow_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("rows");
        QTest::newRow("press") << 0 << "+C 10ms -A 20ms +B";
        QTest::newRow("delay") << 1 << "+A 77ms -A 20ms +B";
        QTest::newRow("release") << 2 << "+A 10ms -C 20ms +B";
    }
    void anAmendedRow()
    {
        QFETCH(int, row);
        QFETCH(QString, rows);
        page().select(row);
        row == 1 ? answerDelay(77) : answerKey(VkC);
        page().button("Amend")->click();
        QCOMPARE(page().rows(), rows);
        QVERIFY(savesEvents());
    }

    void withoutASelectedRowNothingIsAmended()
    {
        page().select(-1);
        page().button("Amend")->click();
        QVERIFY(!QApplication::activeModalWidget());
        page().select(0);
        answerKey(VkC);
        page().click(page().events(), 0);
        QTest::mouseDClick(page().events()->viewport(), Qt::LeftButton, {},
                           page().events()->visualItemRect(page().events()->item(0)).center());
        QCOMPARE(page().rows(), QString("+C 10ms -A 20ms +B"));
    }

    // ---- Deleting

    void aDeletedRow()
    {
        page().select(3);
        page().button("DeleteKey")->click();
        QCOMPARE(page().rows(), QString("+A 10ms +B"));
        QVERIFY(savesEvents());
    }

    // A short list is emptied, and the mouse is not told of it.
    void aShortListIsEmptied()
    {
        page().select(0);
        page().button("DeleteKey")->click();
        QCOMPARE(page().rows(), QString("-A 20ms +B"));
        QVERIFY(savesEvents());
        page().select(-1);
        page().button("DeleteKey")->click();
        QCOMPARE(page().rows(), QString());
        QVERIFY(page().saves());
        QVERIFY(!savesEvents());
        QCOMPARE(page().file("Alpha"), QByteArray("1\n"));
    }

    void aShortClearKeepsTheMarkOfOtherEdits()
    {
        page().select(0);
        page().button("DeleteKey")->click();
        page().button("DeleteKey")->click();
        QCOMPARE(page().rows(), QString());
        QVERIFY(savesEvents());
    }

    // ---- Keyboard

    void theKeysOfTheList()
    {
        page().events()->setFocus();
        QVERIFY(page().events()->currentRow() <= 0);
        page().select(0);
        answerKey(VkC);
        QTest::keyClick(page().events(), Qt::Key_F2);
        QCOMPARE(page().rows(), QString("+C 10ms -A 20ms +B"));
        QTest::keyClick(page().events(), Qt::Key_Delete);
        QCOMPARE(page().rows(), QString("-A 20ms +B"));
    }

    // ---- Moving

    void theKeysMoveARow()
    {
        page().select(2);
        QTest::keyClick(page().events(), Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(page().rows(), QString("+A 10ms +B 20ms -A"));
        QTest::keyClick(page().events(), Qt::Key_Up, Qt::AltModifier);
        QTest::keyClick(page().events(), Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(page().rows(), QString("-A 10ms +A 20ms +B"));
        QCOMPARE(page().events()->currentRow(), 0);
        QVERIFY(savesEvents());
        QTest::keyClick(page().events(), Qt::Key_Up, Qt::AltModifier);
        QVERIFY(!page().saves());
        QCOMPARE(page().file("Alpha"), QByteArray("1\n0x04 1 1\n10ms\n0x04 1 0\n20ms\n0x05 1 0\n"));
    }

    // Events and delays alternate wherever a row is dropped.
    void aDropMovesARow()
    {
        const auto drop = [&](int row, int place) {
            page().select(row);
            emit page().find<EventRows>("listWidgetKey")->dropped(place);
            QCoreApplication::sendPostedEvents(page().page.get());
        };
        drop(0, 3);
        QCOMPARE(page().rows(), QString("-A 10ms +A 20ms +B"));
        drop(4, 0);
        QCOMPARE(page().rows(), QString("+B 10ms -A 20ms +A"));
        drop(1, 4);
        QCOMPARE(page().rows(), QString("+B 20ms -A 10ms +A"));
        drop(0, 5);
        QCOMPARE(page().rows(), QString("-A 20ms +A 10ms +B"));
        QVERIFY(savesEvents());
        drop(2, 4); // no event is on the way
        drop(1, 0);
        page().button("StartRecord")->click();
        QVERIFY2(!page().events()->dragEnabled(), "a drag takes the keys");
        page().record(38);
        page().record(38);
        page().select(0);
        const QString recorded = page().rows();
        {
            const notice::NextAnswer<ExeIsRun> told(true);
            drop(0, page().events()->count());
            QVERIFY(told.isTaken());
        }
        QCOMPARE(page().rows(), recorded);
        page().button("StopRecord")->click();
        QVERIFY(page().events()->dragEnabled());
        drop(0, page().events()->count());
        QVERIFY(page().rows() != recorded);
    }

    // ---- The box of insertions

    // A choice acts at once, so an arrow key opens the list in place of choosing.
    void theArrowKeysOpenTheChoices()
    {
        auto *box = page().find<QComboBox>("ChooseEvent");
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Down);
        QTRY_VERIFY(box->view()->isVisible());
        const auto heightOf = [box](int item) {
            return box->view()->visualRect(box->model()->index(item, 0)).height();
        };
        QVERIFY(heightOf(1) > 0);
        QVERIFY2(heightOf(0) <= 0, "the item that inserts nothing is not offered");
        QCOMPARE(page().rows(), TwoRows);
        for (int i = 0; i < 4; ++i)
            QTest::keyClick(box->view(), Qt::Key_Down);
        QTest::keyClick(box->view(), Qt::Key_Return);
        QTRY_COMPARE(page().rows(), TwoRows + " 10ms +Left button 10ms -Left button");
    }

    // The first item has no text, and a box that shows nothing says nothing.
    void theBoxOfInsertionsSaysWhatItIsFor()
    {
        auto *box = page().find<MyConmboBox>("ChooseEvent");
        QCOMPARE(box->currentText(), QString());
        const QImage shown = box->grab().toImage();
        box->setHint({});
        QVERIFY(box->grab().toImage() != shown);
        box->setHint("Choose what to insert");
        QCOMPARE(box->grab().toImage(), shown);
    }

    void otherKeysChooseNothing()
    {
        auto *box = page().find<QComboBox>("ChooseEvent");
        box->setFocus();
        for (const Qt::Key key : {Qt::Key_L, Qt::Key_End, Qt::Key_Home})
            QTest::keyClick(box, key);
        QCOMPARE(page().rows(), TwoRows);
        QTest::keyClick(box, Qt::Key_Space);
        QTRY_VERIFY(box->view()->isVisible());
        box->hidePopup();
    }

    void everyControlIsReachedByTab()
    {
        QSet<QString> reached;
        page().macros()->setFocus();
        for (int i = 0; i < 40; ++i) {
            reached << QApplication::focusWidget()->objectName();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        for (const char *name :
             {"listWidgetHong", "NewHong", "DeleteHong", "listWidgetKey", "AutoInsertDelay", "DelayTime",
              "ChooseEvent", "Amend", "DeleteKey", "ReNumber", "NumberEdit"})
            QVERIFY2(reached.contains(name), name);
        QVERIFY(!reached.contains("StartRecord"));
        // Which has a shortcut instead.
        QTest::keyClick(page().page.get(), Qt::Key_R, Qt::ControlModifier);
        QTRY_VERIFY(MacroRecording);
        page().button("StopRecord")->click();
    }

    void aClickOnALabelChecksItsButton()
    {
        for (const char *name : {"ReUntil", "ReUntilLoose", "ReUntilClick", "AutoInsertDelay"}) {
            page().radio("DefaultDelay")->click();
            QVERIFY(!page().radio(name)->isChecked());
            QTest::mouseClick(page().find<QLabel>(QByteArray(name) + "Label"), Qt::LeftButton);
            QVERIFY2(page().radio(name)->isChecked(), name);
            QCOMPARE(page().radio(name)->accessibleName(),
                     page().find<QLabel>(QByteArray(name) + "Label")->text());
        }
    }

    // ---- Numbers and texts

    void theFixedDelayIsBounded()
    {
        auto *delay = page().find<QSpinBox>("DelayTime");
        QCOMPARE(delay->value(), 10);
        QCOMPARE(delay->minimum(), 10);
        QCOMPARE(delay->maximum(), 99999);
        delay->setValue(70000);
        QCOMPARE(delay->value(), 65535);
        delay->setValue(65534);
        QCOMPARE(delay->value(), 65534);
        delay->setValue(1);
        QCOMPARE(delay->value(), 10);
        QCOMPARE(page().number()->minimum(), 1);
        QCOMPARE(page().number()->maximum(), 250);
    }

    void theNumberIsACycleMode()
    {
        page().number()->setValue(33);
        QVERIFY(page().saves());
        updates.clear();
        page().button("Save")->click();
        QCOMPARE(updates, QStringList{"1"});
        QVERIFY(page().file("Alpha").startsWith("33\n"));
    }

    void rowsReadThemselvesOut()
    {
        const QStringList wanted = {"A pressed", "Wait 10 ms", "A released", "Wait 20 ms", "B pressed"};
        for (int row = 0; row < 5; ++row)
            QCOMPARE(page().events()->item(row)->data(Qt::AccessibleTextRole).toString(), wanted[row]);
    }

    void theTexts()
    {
        const auto text = [this](const char *name) {
            return page().page->findChild<QWidget *>(name)->property("text").toString();
        };
        QCOMPARE(text("label"), QString("Macros"));
        QCOMPARE(text("Amend"), QString("Edit"));
        QCOMPARE(text("Save"), QString("Save"));
        const QStringList items = {"",
                                   "Key press",
                                   "Key release",
                                   "Delay",
                                   "Left button",
                                   "Right button",
                                   "Middle button",
                                   "Forward button",
                                   "Back button"};
        auto *box = page().find<QComboBox>("ChooseEvent");
        QCOMPARE(box->count(), 9);
        for (int i = 0; i < 9; ++i)
            QCOMPARE(box->itemText(i), items[i]);
        const fixture::OtherLanguage other(R"({"mouse": {"common": {"Save": "Sichern", "Delete": "Weg"},
            "macro": {"MacroList": "Makros", "InsertEventOptions": [{"command": 2, "option": "Linke"}]}}})");
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(text("label"), QString("Makros"));
        QCOMPARE(text("Save"), QString("Sichern"));
        QCOMPARE(text("DeleteKey"), QString("Weg"));
        QCOMPARE(text("Amend"), QString("Edit")); // what it lacks stays
        QCOMPARE(box->itemText(4), QString("Linke"));
        QCOMPARE(box->itemText(5), QString("右键"));
        // A file holds codes, so its rows have the new language's names.
        MacroHome::write(macro::macroPath("Beta"), "1\n0x01 4 0\n");
        page().choose("Beta");
        QCOMPARE(page().rows(), QString("+Linke"));
    }

    // A row is saved by its name, so the names of rows and drafts follow the language.
    void aChangeOfTheLanguageKeepsTheEvents()
    {
        const QByteArray text = "1\n0x01 4 0\n10ms\n0x10 4 1\n";
        MacroHome::write(macro::macroPath("Beta"), text);
        page().page->hide();
        page().page->show();
        for (const char *name : {"Beta", "Alpha"}) {
            page().choose(name);
            page().page->InsertClickRows("Right button");
        }
        page().choose("Beta");
        const fixture::OtherLanguage other(R"({"mouse": {"macro": {"InsertEventOptions": [
            {"command": 2, "option": "Linke"}, {"command": 3, "option": "Rechte"}]}}})");
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(page().rows(), QString("+Linke 10ms -前进键 10ms +Rechte 10ms -Rechte"));
        for (const char *name : {"Beta", "Alpha"}) {
            page().choose(name);
            page().button("Save")->click();
            QVERIFY(page().file(name).endsWith("10ms\n0x02 4 0\n10ms\n0x02 4 1\n"));
        }
        QVERIFY(page().file("Beta").startsWith(text));
    }
    void cleanupTestCase() { emit PostMsg::instance()->SigAllLanguage(0); }
};

TEST_CLASS(tst_MacroEditing, MacroSetUp)

#include "tst_macroediting.moc"
