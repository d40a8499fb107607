// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The page's macros: what the list shows of the folder, and new, rename, delete, save, drafts, export and
// import with their notices, files and signals.
#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "macro/store/ExportedMacro.h"
#include "macro/store/MacroBlockCodec.h"
#include "presentation/Notices.h"
#include "tests/widget/macro/MacroPage.h"

#include <QFileDialog>
#include <QFileIconProvider>
#include <sys/stat.h>

namespace
{

const QByteArray Tap = "1\n0x04 1 0\n10ms\n0x04 1 1\n";
const QString TapRows = "+A 10ms -A";
const QByteArray Hold = "254\n0x05 1 0\n500ms\n0x05 1 1\n";
const QString HoldRows = "+B 500ms -B";

// A folder that takes no file, also from root, and is one again at the end.
class FullDisk
{
public:
    FullDisk()
    {
        QDir().rename(macro::macroFolder(), macro::macroFolder() + ".away");
        MacroHome::write(macro::macroFolder(), "no folder");
    }
    ~FullDisk()
    {
        QFile::remove(macro::macroFolder());
        QDir().rename(macro::macroFolder() + ".away", macro::macroFolder());
    }
};

} // namespace

class tst_MacroPage : public QObject
{
    Q_OBJECT

    // The signals of the hub in their order, as "name argument argument".
    static void listen(QStringList &log, QObject *until)
    {
        PostMsg *hub = PostMsg::instance();
        connect(hub, &PostMsg::SigUpDataMacro, until, [&log](const QString &name, int index) {
            log << QString("update %1 %2").arg(name).arg(index);
        });
        connect(hub, &PostMsg::SigMacroRename, until, [&log](const QString &old, const QString &name) {
            log << QString("rename %1 %2").arg(old, name);
        });
        connect(hub, &PostMsg::SigDeleteMacroButton, until,
                [&log](const QString &text) { log << "delete " + text; });
    }

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
        page.choose("Full");
        page.radio("ReUntil")->click();
        QVERIFY(page.saves());
    }

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

    // While the rows of a save wait, and while its notice is open.
    void aRenameWithinASaveKeepsItsHold()
    {
        const MacroPage page({{"Alpha", Tap}});
        QStringList log;
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        page.radio("ReUntilClick")->click();
        bool held = false;
        connect(PostMsg::instance(), &PostMsg::SigUpDataMacro, page.page.get(),
                [&](const QString &, int what) {
                    if (what != 0)
                        return;
                    page.answerName("Gamma");
                    page.page->RenameMacro();
                    held = macro::isHeld("Gamma") && !macro::isHeld("Alpha");
                });
        listen(log, page.page.get());
        page.button("Save")->click();
        QVERIFY(held);
        QCOMPARE(log, QStringList({"rename Alpha Gamma", "update Alpha 0", "update Gamma 1"}));
        QVERIFY(!macro::isHeld("Gamma") && !macro::isHeld("Alpha"));
    }

    void aDiscardWithinASaveKeepsItsHold()
    {
        const MacroPage page({{"Alpha", Tap}});
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        bool held = false;
        connect(PostMsg::instance(), &PostMsg::SigUpDataMacro, page.page.get(), [&] {
            page.page->InsertKeyRow("D", true);
            page.page->on_Discard_clicked();
            held = macro::isHeld("Alpha");
        });
        page.button("Save")->click();
        QVERIFY(held);
        QVERIFY(!macro::isHeld("Alpha"));
    }

    void aDeleteWithinASaveTellsNoMore()
    {
        const MacroPage page({{"Alpha", Tap}});
        QStringList log;
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        page.radio("ReUntilClick")->click();
        notice::NextAnswer<DeleteConfirm> yes(true);
        connect(PostMsg::instance(), &PostMsg::SigUpDataMacro, page.page.get(),
                [&] { page.page->DeleteMacro(); });
        listen(log, page.page.get());
        page.button("Save")->click();
        QVERIFY(yes.isTaken());
        QCOMPARE(log, QStringList({"delete Macro: Alpha", "update Alpha 0"}));
        QCOMPARE(page.names(), QStringList());
    }

    // What a save did not bring to the mouse goes there when it is read, and the file stays.
    void aReadAfterAMissedSave_data()
    {
        QTest::addColumn<bool>("rows");
        QTest::addColumn<bool>("renamed");
        QTest::newRow("rows") << true << false;
        QTest::newRow("rows, then renamed") << true << true;
        QTest::newRow("mode") << false << false;
    }
    void aReadAfterAMissedSave()
    {
        QFETCH(bool, rows);
        QFETCH(bool, renamed);
        const MacroPage page({{"Alpha", Tap}});
        fixture::beginWithDevice();
        MouseOnline = true;
        FlashDataMap record{};
        record.KeyBindings[3] = {6, 3, 1};
        record.MacroBlocks[3] = macro::savedBlock("Alpha", macro::loadMacro("Alpha")->rows);
        DeviceRecord::edit([&](FlashDataMap &map) { map = record; });
        PostMsg *const hub = PostMsg::instance();
        connect(hub, &PostMsg::SigUpDataMacro, page.page.get(), [hub](const QString &name, int what) {
            if (what == 0)
                emit hub->SigMacroDownLoadData(name, 3);
            else
                SetMacroBinding(3, {6, 3, 17}, {});
        });
        page.choose("Alpha");
        FakeHidUsb::instance().setOnline("dev", false);
        if (rows)
            page.page->InsertKeyRow("C", true);
        page.number()->setValue(rows ? 1 : 17);
        page.button("Save")->click();
        FakeHidUsb::instance().setOnline("dev", true);
        QString name = "Alpha";
        if (renamed) {
            name = "Gamma";
            page.answerName(name);
            page.page->RenameMacro();
            macro::renameBlock(&record.MacroBlocks[3], name);
        }
        const QByteArray saved = page.file(name);
        emit hub->SigButtonToMacro(record, 3);
        QCOMPARE(page.file(name), saved);
        const FlashDataMap sent = FakeHidUsb::instance().updates().back();
        const macro::MacroText file = *macro::loadMacro(name);
        QVERIFY(macro::sameEvents(sent.MacroBlocks[3], macro::savedBlock(name, file.rows)));
        QCOMPARE(int(sent.KeyBindings[3].Second), rows ? 1 : 17);
        emit hub->SigButtonToMacro(record, 3); // changed by another computer
        QCOMPARE(page.file(name), Tap);
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

    // ---- Save

    void aSaveTellsWhatChanged_data()
    {
        QTest::addColumn<bool>("events");
        QTest::addColumn<bool>("cycle");
        QTest::newRow("events") << true << false;
        QTest::newRow("cycle") << false << true;
        QTest::newRow("both") << true << true;
    }
    void aSaveTellsWhatChanged()
    {
        QFETCH(bool, events);
        QFETCH(bool, cycle);
        const MacroPage page({{"Alpha", Tap}});
        QStringList log;
        listen(log, page.page.get());
        page.choose("Alpha");
        if (events)
            page.page->InsertKeyRow("C", true);
        if (cycle)
            page.radio("ReUntilClick")->click();
        QVERIFY(page.saves());
        page.button("Save")->click();
        QStringList wanted;
        if (events)
            wanted << "update Alpha 0";
        if (cycle)
            wanted << "update Alpha 1";
        QCOMPARE(log, wanted);
        QVERIFY(!page.saves());
        QCOMPARE(page.file("Alpha"),
                 (cycle ? "255\n" : "1\n") + Tap.mid(2) + (events ? "0x06 1 0\n10ms\n" : ""));
        page.page->on_Save_clicked();
        QCOMPARE(log, wanted); // the marks are cleared
    }

    void theFourModesOfASave_data()
    {
        QTest::addColumn<QByteArray>("radio");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("count") << QByteArray("ReNumber") << QByteArray("42\n");
        QTest::newRow("until pressed") << QByteArray("ReUntil") << QByteArray("253\n");
        QTest::newRow("until released") << QByteArray("ReUntilLoose") << QByteArray("254\n");
        QTest::newRow("until any") << QByteArray("ReUntilClick") << QByteArray("255\n");
    }
    void theFourModesOfASave()
    {
        QFETCH(QByteArray, radio);
        QFETCH(QByteArray, line);
        const MacroPage page({{"Alpha", QByteArray("7\n")}, {"Beta", Tap}});
        page.choose("Alpha");
        page.number()->setValue(42);
        page.radio(radio)->click();
        page.button("Save")->click();
        QCOMPARE(page.file("Alpha"), line);
    }

    // A failed save keeps the old file and the marks, and the next one does it all.
    void aSaveThatFails()
    {
        const MacroPage page({{"Alpha", Tap}});
        QStringList log;
        listen(log, page.page.get());
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        {
            const FullDisk full;
            page.button("Save")->click();
            QVERIFY(page.saves());
            QCOMPARE(log, QStringList());
        }
        QCOMPARE(page.file("Alpha"), Tap);
        page.button("Save")->click();
        QVERIFY(!page.saves());
        QCOMPARE(log, QStringList{"update Alpha 0"});
        QVERIFY(page.file("Alpha").size() > Tap.size());
    }

    // The file is saved whole, and the user hears that the mouse takes less before it gets anything.
    void moreEventsThanTheMouseTakes()
    {
        const MacroPage page({{"Long", "1\n" + QByteArray("0x04 1 0\n1ms\n").repeated(70) + "0x04 1 1\n"}});
        page.choose("Long");
        QVERIFY(!page.find<QLabel>("eventHint")->text().isEmpty());
        notice::NextAnswer<KeyNumberLimit> told(true);
        bool toldFirst = false;
        connect(PostMsg::instance(), &PostMsg::SigUpDataMacro, page.page.get(),
                [&] { toldFirst = told.isTaken(); });
        page.page->InsertKeyRow("B", true);
        page.button("Save")->click();
        QVERIFY(toldFirst);
        QCOMPARE(page.file("Long").count('\n'), 1 + 140 + 1 + 2);
        notice::NextAnswer<KeyNumberLimit> again(true);
        page.radio("ReUntil")->click();
        page.button("Save")->click();
        QVERIFY(!again.isTaken());
    }

    // ---- Drafts

    void unsavedRowsAreKept()
    {
        const MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        page.radio("ReUntilClick")->click();
        const QString rows = page.rows();
        QVERIFY(macro::isHeld("Alpha"));
        page.choose("Beta");
        QCOMPARE(page.rows(), HoldRows);
        QVERIFY(!page.saves());
        QVERIFY(page.radio("ReUntilLoose")->isChecked());
        QVERIFY(macro::isHeld("Alpha") && !macro::isHeld("Beta"));
        page.choose("Alpha");
        QCOMPARE(page.rows(), rows);
        QVERIFY(page.radio("ReUntilClick")->isChecked());
        QVERIFY(page.saves());
        page.choose("Alpha"); // a click on the same one loses nothing either
        QCOMPARE(page.rows(), rows);
        QStringList log;
        listen(log, page.page.get());
        page.button("Save")->click();
        QCOMPARE(log, QStringList({"update Alpha 0", "update Alpha 1"}));
        QVERIFY(!macro::isHeld("Alpha"));
    }

    void unsavedWorkIsMarked()
    {
        const MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        const auto spoken = [&](int row) {
            return page.macros()->item(row)->data(Qt::AccessibleTextRole).toString();
        };
        page.choose("Alpha");
        QVERIFY(page.button("Discard")->isHidden());
        page.page->InsertKeyRow("C", true);
        QCOMPARE(spoken(0), QString("Alpha, not saved"));
        QVERIFY(page.button("Discard")->isVisible());
        page.choose("Beta");
        QCOMPARE(spoken(0), QString("Alpha, not saved"));
        QVERIFY(page.button("Discard")->isHidden());
        page.choose("Alpha");
        page.button("Save")->click();
        QCOMPARE(spoken(0), QString());
    }

    void changesAreDiscarded()
    {
        const MacroPage page({{"Alpha", Hold}});
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        page.radio("ReUntilClick")->click();
        page.button("Discard")->click();
        QCOMPARE(page.rows(), HoldRows);
        QVERIFY(page.radio("ReUntilLoose")->isChecked());
        QVERIFY(!page.saves() && !macro::isHeld("Alpha"));
        QCOMPARE(page.selected(), QString("Alpha"));
        QCOMPARE(page.file("Alpha"), Hold);
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

    // ---- The mouse's macros

    void aMacroOfTheMouse()
    {
        MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        int listed = 0;
        connect(PostMsg::instance(), &PostMsg::SigAddMacroButton, page.page.get(), [&] { ++listed; });
        FlashDataMap record{};
        record.KeyBindings[3] = {6, 3, 253};
        record.MacroBlocks[3] = macro::boundBlock(
            "Fresh", {macro::keyRow("A", true), macro::delayRow(7), macro::keyRow("A", false)});
        page.choose("Alpha");
        emit PostMsg::instance()->SigButtonToMacro(record, 3);
        QCOMPARE(page.names(), QStringList({"Alpha", "Fresh", "Beta"})); // behind the selected one
        QCOMPARE(page.selected(), QString());
        QCOMPARE(page.rows(), QString());
        QCOMPARE(listed, 1);
        page.choose("Fresh");
        QCOMPARE(page.rows(), QString("+A 7ms -A"));
        QVERIFY(page.radio("ReUntil")->isChecked());
        page.page->hide();
        page.page->show();
        QCOMPARE(page.names(), QStringList({"Alpha", "Beta", "Fresh"}));
    }

    void aMacroOfTheMouseSparesWhatIsEdited()
    {
        MacroPage page({{"Alpha", Tap}, {"Beta", Hold}});
        FlashDataMap record{};
        record.KeyBindings[0] = {6, 0, 1};
        record.MacroBlocks[0] = macro::boundBlock("Alpha", {macro::keyRow("Z", true)});
        page.choose("Alpha");
        page.page->InsertKeyRow("C", true);
        const QString rows = page.rows();
        emit PostMsg::instance()->SigButtonToMacro(record, 0);
        QCOMPARE(page.rows(), rows);
        QCOMPARE(page.file("Alpha"), Tap);
        page.choose("Beta");
        emit PostMsg::instance()->SigButtonToMacro(record, 0);
        QCOMPARE(page.file("Alpha"), Tap);
        page.choose("Alpha");
        page.button("Discard")->click();
        emit PostMsg::instance()->SigButtonToMacro(record, 0);
        page.choose("Alpha");
        QCOMPARE(page.rows(), QString("+Z"));
    }
};

TEST_CLASS(tst_MacroPage, MacroSetUp)

#include "tst_macropage.moc"
