// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Macros on the binding page: what a read of the mouse brings into the folder, and what it sends that the
// mouse has missed.
#include "tests/widget/binding/ButtonMacros.h"

#include <random>

using namespace macro;

class tst_MouseMacros : public ButtonMacrosTest
{
    Q_OBJECT

private:
    static void addRenamedAndSaved()
    {
        QTest::addColumn<bool>("isSaved"); // else renamed
        QTest::newRow("name") << false;
        QTest::newRow("rows") << true;
    }

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

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
    void whatOneMouseMissedIsNotSentToAnother_data() { addRenamedAndSaved(); }
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
    void anUnpluggedMouseGetsWhatItMissedWhenItIsBack_data() { addRenamedAndSaved(); }
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

TEST_CLASS(tst_MouseMacros, ButtonPageSetUp)

#include "tst_mousemacros.moc"
