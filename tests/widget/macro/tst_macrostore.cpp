// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The macros of the folder by the page: new, rename, delete, export and import with their notices, files and
// signals.
#include "macro/store/ExportedMacro.h"
#include "macro/store/MacroBlockCodec.h"
#include "presentation/Notices.h"
#include "tests/widget/macro/MacroFiles.h"

#include <QFileDialog>
#include <QFileIconProvider>

using namespace macrofiles;

class tst_MacroStore : public QObject
{
    Q_OBJECT

private slots:
    // ---- New

    void aNewMacro()
    {
        const MacroPage page({{"Alpha", Hold}});
        page.choose("Alpha");
        page.answerName("Burst");
        page.button("NewHong")->click();
        QCOMPARE(page.names(), QStringList({"Alpha", "Burst"}));
        QCOMPARE(page.selected(), QString("Burst"));
        QCOMPARE(page.file("Burst"), QByteArray());
        QCOMPARE(page.rows(), QString());
        QVERIFY(page.radio("ReNumber")->isChecked());
        QCOMPARE(page.number()->value(), 1);
        QVERIFY(!page.saves());
        // Selected again before its first save.
        page.choose("Alpha");
        page.choose("Burst");
        QCOMPARE(page.rows(), QString());
    }

    void aNewMacroOfATakenName()
    {
        const MacroPage page({{"Alpha", Hold}});
        notice::NextAnswer<SameMacro> told(true);
        page.answerName("Alpha");
        page.button("NewHong")->click();
        QVERIFY(told.isTaken());
        QCOMPARE(page.names(), QStringList{"Alpha"});
        QCOMPARE(page.file("Alpha"), Hold);
        page.answerName("alpha"); // names differ by case
        page.button("NewHong")->click();
        QCOMPARE(page.names(), QStringList({"Alpha", "alpha"}));
    }

    // The name is in the folder, although the list does not show it yet.
    void aNewMacroOfAFileThatCameMeanwhile_data()
    {
        QTest::addColumn<bool>("rename");
        QTest::newRow("new") << false;
        QTest::newRow("rename") << true;
    }
    void aNewMacroOfAFileThatCameMeanwhile()
    {
        QFETCH(bool, rename);
        const MacroPage page({{"Alpha", Hold}});
        page.choose("Alpha");
        MacroHome::write(macro::macroPath("Ghost"), Tap);
        notice::NextAnswer<SameMacro> told(true);
        page.answerName("Ghost");
        rename ? page.page->RenameMacro() : page.page->CreateMewMacro();
        QVERIFY(told.isTaken());
        QCOMPARE(page.names(), QStringList({"Alpha", "Ghost"}));
        QCOMPARE(page.selected(), QString("Alpha"));
        page.choose("Ghost");
        QCOMPARE(page.rows(), TapRows);
        QCOMPARE(page.file("Ghost"), Tap);
    }

    void aNewMacroWithoutAName()
    {
        const MacroPage page;
        page.answerName("");
        page.button("NewHong")->click();
        fixture::whenModal<QuestionDialog>([](QuestionDialog *dialog) {
            QTest::keyClicks(dialog->findChild<QLineEdit *>("lineEdit"), "Dropped");
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        page.button("NewHong")->click();
        QCOMPARE(page.names(), QStringList());
    }

    // Typed blanks at the end take all blanks away, and a name is cut between characters.
    void namesAsTheyAreTyped_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("blanks inside") << "ab"
                                       << "ab";
        QTest::newRow("a blank at the end") << "a b "
                                            << "ab";
        QTest::newRow("31 bytes") << QString(31, 'x') << QString(30, 'x');
        QTest::newRow("a slash") << "a/b"
                                 << "ab";
    }
    void namesAsTheyAreTyped()
    {
        QFETCH(QString, typed);
        QFETCH(QString, name);
        const MacroPage page;
        page.answerName(typed);
        page.button("NewHong")->click();
        QCOMPARE(page.names(), QStringList{name});
        QVERIFY(QFile::exists(macro::macroPath(name)));
    }

    // ---- Rename

    void aRename()
    {
        const MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        QStringList log;
        listen(log, page.page.get());
        page.choose("Alpha");
        page.answerName("Gamma");
        page.page->RenameMacro();
        QCOMPARE(page.names(), QStringList({"Gamma", "Beta"}));
        QCOMPARE(page.selected(), QString("Gamma"));
        QCOMPARE(page.file("Gamma"), Tap);
        QVERIFY(!QFile::exists(macro::macroPath("Alpha")));
        QCOMPARE(log, QStringList{"rename Alpha Gamma"});
        QCOMPARE(page.rows(), TapRows);
    }

    void aRenameKeepsUnsavedWork()
    {
        const MacroPage page({{"Alpha", Tap}});
        page.choose("Alpha");
        page.page->InsertClickRows("Left button");
        const QString rows = page.rows();
        page.answerName("Gamma");
        page.page->RenameMacro();
        QCOMPARE(page.rows(), rows);
        QVERIFY(page.saves());
        QVERIFY(macro::isHeld("Gamma") && !macro::isHeld("Alpha"));
        page.button("Save")->click();
        QVERIFY(page.file("Gamma").size() > Tap.size());
    }

    void aRenameToATakenName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("its own") << "Alpha";
        QTest::newRow("another's") << "Beta";
    }
    void aRenameToATakenName()
    {
        QFETCH(QString, name);
        const MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        QStringList log;
        listen(log, page.page.get());
        page.choose("Alpha");
        notice::NextAnswer<SameMacro> told(true);
        page.answerName(name);
        page.page->RenameMacro();
        QVERIFY(told.isTaken());
        QCOMPARE(log, QStringList());
        QCOMPARE(page.file("Alpha"), Tap);
        QCOMPARE(page.file("Beta"), Hold);
    }

    void aRenameThatTheSystemRefusesChangesNothing()
    {
        const MacroPage page({{"Alpha", Tap}});
        QStringList log;
        listen(log, page.page.get());
        page.choose("Alpha");
        {
            const FullDisk full;
            page.answerName("Gamma");
            page.page->RenameMacro();
        }
        QCOMPARE(page.names(), QStringList{"Alpha"});
        QCOMPARE(log, QStringList());
        page.answerName("Gamma");
        page.page->RenameMacro();
        QCOMPARE(log.size(), 1);
    }

    // ---- Delete

    void aDelete()
    {
        const MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        QStringList log;
        listen(log, page.page.get());
        page.choose("Alpha");
        {
            notice::NextAnswer<DeleteConfirm> no(false);
            page.button("DeleteHong")->click();
            QVERIFY(no.isTaken());
        }
        QCOMPARE(page.names(), QStringList({"Alpha", "Beta"}));
        notice::NextAnswer<DeleteConfirm> yes(true);
        page.button("DeleteHong")->click();
        QCOMPARE(page.names(), QStringList{"Beta"});
        QCOMPARE(page.selected(), QString());
        QCOMPARE(page.rows(), QString());
        QVERIFY(!QFile::exists(macro::macroPath("Alpha")));
        QCOMPARE(log, QStringList{"delete Macro: Alpha"});
        QVERIFY(!page.saves());
    }

    void aDeleteWithoutASelection()
    {
        const MacroPage page({{"Alpha", Tap}});
        notice::NextAnswer<DeleteConfirm> asked(true);
        page.button("DeleteHong")->click();
        QVERIFY(!asked.isTaken());
        page.choose("Alpha");
        page.button("DeleteHong")->click();
        QVERIFY(asked.isTaken());
        QCOMPARE(page.names(), QStringList());
    }

    void aDeleteDropsWhatWasUnsaved()
    {
        const MacroPage page({{"Alpha", Tap}});
        page.choose("Alpha");
        page.page->InsertClickRows("Left button");
        notice::NextAnswer<DeleteConfirm> yes(true);
        page.button("DeleteHong")->click();
        QVERIFY(!page.saves() && !macro::isHeld("Alpha"));
        page.answerName("Alpha");
        page.button("NewHong")->click();
        QCOMPARE(page.rows(), QString());
    }

    // A read while the mouse's buttons are set back deselects the macro, which keeps its rows as a draft.
    void aDeleteDropsTheDraftOfARead()
    {
        const MacroPage page({{"Alpha", Tap}, {"Beta", Tap}});
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        FlashDataMap record{};
        record.KeyBindings[3] = {6, 3, 253};
        record.MacroBlocks[3] = macro::boundBlock("Fresh", {macro::keyRow("A", true)});
        connect(PostMsg::instance(), &PostMsg::SigDeleteMacroButton, page.page.get(),
                [&] { emit PostMsg::instance()->SigButtonToMacro(record, 3); });
        notice::NextAnswer<DeleteConfirm> yes(true);
        page.page->DeleteMacro();
        QCOMPARE(page.names(), QStringList({"Fresh", "Beta"}));
        page.answerName("Alpha");
        page.page->CreateMewMacro();
        page.choose("Beta");
        page.choose("Alpha");
        QCOMPARE(page.rows(), QString());
        QVERIFY(!page.saves());
    }

    // ---- Export and import

    void exportAndImport()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("mine.ini");
        MacroPage page({{"Alpha", Hold}});
        page.choose("Alpha");
        QString title, proposed;
        int inTheSkin = 0;
        const auto note = [&](const QFileDialog *dialog) {
            title = dialog->windowTitle() + ' ' + dialog->nameFilters().join(' ');
            inTheSkin += dialog->iconProvider()->icon(QFileIconProvider::Folder).isNull();
        };
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            note(dialog);
            proposed = dialog->findChild<QLineEdit *>("fileNameEdit")->text();
            dialog->setDirectory(folder.path());
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText("mine");
            QMetaObject::invokeMethod(dialog, "accept");
        });
        page.page->ExPortMacro();
        QCOMPARE(title, QString("FileSave File(*.ini)"));
        QCOMPARE(proposed, QString("Alpha.ini"));
        const auto exported = macro::loadExportedMacro(path);
        QVERIFY(exported);
        QCOMPARE(exported->name, QString("Alpha"));
        QCOMPARE(exported->cycle, 254);
        QCOMPARE(exported->rows.size(), 3);
        const auto import = [&] {
            fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
                note(dialog);
                dialog->setDirectory(folder.path());
                dialog->findChild<QLineEdit *>("fileNameEdit")->setText(path);
                QMetaObject::invokeMethod(dialog, "accept");
            });
            page.page->InPortMacro();
        };
        {
            notice::NextAnswer<SameMacro> told(true);
            import();
            QVERIFY(told.isTaken());
            QCOMPARE(page.names(), QStringList{"Alpha"});
        }
        notice::NextAnswer<DeleteConfirm> yes(true);
        page.button("DeleteHong")->click();
        page.radio("ReUntilClick")->click();
        import();
        QCOMPARE(title, QString("SelectFile File(*.ini)"));
        QCOMPARE(inTheSkin, 3); // of one export and two imports
        QCOMPARE(page.names(), QStringList{"Alpha"});
        QCOMPARE(page.selected(), QString("Alpha"));
        QCOMPARE(page.rows(), HoldRows);
        QCOMPARE(page.file("Alpha"), Hold);
        QVERIFY(!page.saves());
        QVERIFY(page.radio("ReUntilClick")->isChecked()); // until the macro is clicked
        page.choose("Alpha");
        QVERIFY(page.radio("ReUntilLoose")->isChecked());
    }

    void aFileThatIsNoExportedMacro()
    {
        const QTemporaryDir folder;
        MacroHome::write(folder.filePath("other.ini"), Tap);
        const MacroPage page({{"Alpha", Tap}});
        bool opened = false;
        fixture::whenModal<QFileDialog>([&](QFileDialog *dialog) {
            opened = true;
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText(folder.filePath("other.ini"));
            QMetaObject::invokeMethod(dialog, "accept");
        });
        page.page->InPortMacro();
        QVERIFY(opened);
        QCOMPARE(page.names(), QStringList{"Alpha"});
        QCOMPARE(macro::macroNames(), QStringList{"Alpha"});
    }
};

TEST_CLASS(tst_MacroStore, MacroSetUp)

#include "tst_macrostore.moc"
