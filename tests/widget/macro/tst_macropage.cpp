// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the page shows of the macros' folder: the list, the rows and mode of a file, hints, and the commands
// of the list.
#include "presentation/Notices.h"
#include "tests/widget/macro/MacroFiles.h"

using namespace macrofiles;

class tst_MacroPage : public QObject
{
    Q_OBJECT

private slots:
    // ---- The list

    void theListShowsTheFolder()
    {
        const MacroPage page({{"beta", Tap}, {"Alpha", Tap}, {"myxmlkeys", Tap}, {"gamma", ""}});
        QCOMPARE(page.names(), QStringList({"Alpha", "beta", "gamma"}));
        QCOMPARE(page.selected(), QString());
        QVERIFY(!page.saves());
        QVERIFY(page.find<QLabel>("noMacros")->isHidden());
    }

    void anEmptyFolderSaysWhatToDo()
    {
        const MacroPage page;
        QVERIFY(page.find<QLabel>("noMacros")->isVisible());
        QVERIFY(!page.find<QLabel>("noMacros")->text().isEmpty());
        QVERIFY(page.find<QLabel>("noEvents")->isVisible());
        QVERIFY(page.find<QLabel>("eventCount")->text().isEmpty());
    }

    void theFolderIsListedAgainWhenThePageIsEntered()
    {
        MacroPage page({{"Alpha", Tap}, {"Gone", Hold}});
        page.choose("Gone");
        page.page->hide();
        QFile::remove(macro::macroPath("Gone"));
        MacroHome::write(macro::macroPath("Beta"), Hold);
        page.page->show();
        QCOMPARE(page.names(), QStringList({"Alpha", "Beta"}));
        QCOMPARE(page.selected(), QString());
        QCOMPARE(page.rows(), QString());
        page.choose("Beta");
        page.page->hide();
        page.page->show();
        QCOMPARE(page.selected(), QString("Beta"));
        QCOMPARE(page.rows(), HoldRows);
    }

    void unsavedWorkOutlivesItsFile()
    {
        MacroPage page({{"Alpha", Tap}});
        page.choose("Alpha");
        page.page->InsertClickRows("Left button");
        const QString rows = page.rows();
        page.page->hide();
        QFile::remove(macro::macroPath("Alpha"));
        page.page->show();
        QCOMPARE(page.names(), QStringList{"Alpha"});
        QCOMPARE(page.rows(), rows);
        page.button("Save")->click();
        QVERIFY(page.file("Alpha").startsWith(Tap));
    }

    // ---- Reading a file

    void aFileOnThePage_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<QString>("radio");
        QTest::addColumn<int>("number");
        QTest::newRow("a number") << QByteArray("7\n") << ""
                                  << "ReNumber" << 7;
        QTest::newRow("250") << QByteArray("250\n") << ""
                             << "ReNumber" << 250;
        QTest::newRow("0 is one run") << QByteArray("0\n") << ""
                                      << "ReNumber" << 1;
        QTest::newRow("251 is one run") << QByteArray("251\n") << ""
                                        << "ReNumber" << 1;
        QTest::newRow("until pressed") << QByteArray("253\n") << ""
                                       << "ReUntil" << 0;
        QTest::newRow("until released") << QByteArray("254\n") << ""
                                        << "ReUntilLoose" << 0;
        QTest::newRow("until any") << QByteArray("255\r\n") << ""
                                   << "ReUntilClick" << 0;
        QTest::newRow("rows") << Hold << HoldRows << "ReUntilLoose" << 0;
        QTest::newRow("a direction of 2 is dropped") << QByteArray("1\n0x04 1 2\n0x04 1 1\n") << "-A"
                                                     << "ReNumber" << 1;
    }
    void aFileOnThePage()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, rows);
        QFETCH(QString, radio);
        QFETCH(int, number);
        const MacroPage page({{"M", content}});
        page.choose("M");
        QCOMPARE(page.rows(), rows);
        QVERIFY(page.radio(radio.toLatin1())->isChecked());
        if (number)
            QCOMPARE(page.number()->value(), number);
        QVERIFY(!page.saves());
        // The mode is one that can be changed.
        page.radio(radio == "ReUntil" ? "ReUntilClick" : "ReUntil")->click();
        QVERIFY(page.saves());
    }

    void iconsAndTypesOfTheRows()
    {
        const MacroPage page({{"M", Tap}});
        page.choose("M");
        const int types[] = {0, 0, 1};
        const char *icons[] = {"MacroDown", "MacroTime", "MacroUp"};
        for (int row = 0; row < 3; ++row) {
            const QListWidgetItem *item = page.events()->item(row);
            QCOMPARE(item->type(), types[row]);
            const QIcon wanted(QString(PRODUCT_FOLDER "/Picture/Macro/%1.png").arg(icons[row]));
            QCOMPARE(item->icon().pixmap(20, 20).toImage(), wanted.pixmap(20, 20).toImage());
            QVERIFY(!wanted.pixmap(20, 20).isNull());
        }
    }

    // After a file without a first line a change of the mode stays unnoticed until one is read.
    void anEmptyFileMutesTheMode()
    {
        const MacroPage page({{"Empty", ""}, {"Full", Tap}});
        page.choose("Empty");
        QCOMPARE(page.rows(), QString());
        page.radio("ReUntil")->click();
        page.number()->setValue(9);
        QVERIFY(!page.saves());
        page.page->InsertKeyRow("C", true);
        page.choose("Full");
        page.radio("ReUntil")->click();
        QVERIFY(page.saves());
        // The draft of the first one keeps its mode unnoticed.
        QSignalSpy told(PostMsg::instance(), &PostMsg::SigUpDataMacro);
        page.choose("Empty");
        page.radio("ReUntilClick")->click();
        page.button("Save")->click();
        QCOMPARE(told.count(), 1);
        QCOMPARE(told[0][1].toInt(), 0);
    }

    void aFileThatCannotBeShown_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("too many bytes") << "1\n" + QByteArray(1024 * 1024, 'x');
        QTest::newRow("too many rows") << "1\n" + QByteArray("0x04 1 0\n1ms\n").repeated(5001);
    }
    void aFileThatCannotBeShown()
    {
        QFETCH(QByteArray, content);
        const MacroPage page({{"Alpha", Tap}, {"Huge", content}});
        page.choose("Huge");
        const QString hint = page.find<QLabel>("noEvents")->text();
        QVERIFY(page.rows().isEmpty() && hint.contains("cannot be shown"));
        const auto refuses = [&](const std::function<void()> &change) {
            notice::NextAnswer<ExeIsRun> told(true);
            change();
            return told.isTaken() && !MacroRecording && !page.saves() && page.rows().isEmpty();
        };
        QVERIFY(refuses([&] { page.page->on_StartRecord_clicked(); }));
        QVERIFY(refuses([&] { page.page->on_ChooseEvent_activated(4); }));
        QVERIFY(refuses([&] { page.page->on_DeleteKey_clicked(); }));
        QVERIFY(refuses([&] { page.page->on_Save_clicked(); }));
        QVERIFY(refuses([&] { page.page->ExPortMacro(); }));
        QVERIFY(page.file("Huge") == content);
        page.choose("Alpha");
        page.page->on_ChooseEvent_activated(4);
        QVERIFY(page.saves());
    }

    // The label lies over the list, and a right click on it is one on the list's empty area.
    void theHintsLetTheMouseThrough()
    {
        const MacroPage page;
        for (const char *name : {"noMacros", "noEvents"}) {
            const auto *label = page.find<QLabel>(name);
            const QPoint middle = label->mapTo(page.page.get(), label->rect().center());
            const QWidget *under = page.page->childAt(middle);
            QVERIFY(under && under != label);
            QVERIFY(under == page.macros()->viewport() || under == page.events()->viewport());
        }
    }

    void anotherMacroIsShownFromItsTop()
    {
        const QByteArray rows = QByteArray("0x04 1 0\n1ms\n").repeated(200);
        const MacroPage page({{"Alpha", "1\n" + rows}, {"Beta", "2\n0x05 1 0\n1ms\n" + rows}});
        page.choose("Alpha");
        page.events()->scrollToBottom();
        page.choose("Beta");
        QVERIFY(page.events()->visualItemRect(page.events()->item(0)).top() >= 0);
    }

    // ---- Menu and keys

    void theMenu_data()
    {
        QTest::addColumn<bool>("onItem");
        QTest::addColumn<QStringList>("entries");
        QTest::newRow("item") << true << QStringList{"Export", "Rename", "Delete"};
        QTest::newRow("empty area") << false << QStringList{"New macro", "Import"};
    }
    void theMenu()
    {
        QFETCH(bool, onItem);
        QFETCH(QStringList, entries);
        const MacroPage page({{"Alpha", Tap}});
        QStringList shown;
        QTimer::singleShot(0, [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            QVERIFY(menu);
            for (const QAction *action : menu->actions())
                shown << action->text();
            QCOMPARE(menu->font(), page.macros()->font());
            menu->close();
        });
        const QPoint item = page.macros()->visualItemRect(page.macros()->item(0)).center();
        page.page->on_listWidgetHong_customContextMenuRequested(onItem ? item : QPoint(20, 400));
        QCOMPARE(shown, entries);
    }

    void theKeysOfTheList()
    {
        const MacroPage page({{"Alpha", Tap}, {"Beta", Tap}, {"Gamma", Hold}});
        page.macros()->setFocus();
        QTest::keyClick(page.macros(), Qt::Key_Down);
        QTest::keyClick(page.macros(), Qt::Key_End);
        QCOMPARE(page.selected(), QString("Gamma"));
        QCOMPARE(page.rows(), HoldRows); // as a click would show it
        page.answerName("Omega");
        QTest::keyClick(page.macros(), Qt::Key_F2);
        QCOMPARE(page.names().last(), QString("Omega"));
        notice::NextAnswer<DeleteConfirm> yes(true);
        QTest::keyClick(page.macros(), Qt::Key_Delete);
        QCOMPARE(page.names(), QStringList({"Alpha", "Beta"}));
    }
};

TEST_CLASS(tst_MacroPage, MacroSetUp)

#include "tst_macropage.moc"
