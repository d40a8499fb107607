// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The files of macros: their exact bytes, what is read of files that are not what they should be, and the
// folder with its lists.
#include "environment/MacroName.h"
#include "macro/store/MacroFile.h"
#include "tests/support/TestMain.h"
#include "tests/unit/macro/MacroHome.h"

#include <QElapsedTimer>
#include <QtTest>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace macro;

namespace
{

QString shown(const MacroRows &rows)
{
    QStringList texts;
    for (const MacroRow &row : rows)
        texts << row.text + (row.isDelay() ? "" : row.isRelease() ? " up" : " down");
    return texts.join(", ");
}

QString shown(const std::optional<MacroText> &macro)
{
    if (!macro)
        return "refused";
    return (macro->cycle ? QString::number(*macro->cycle) : QString("none")) + ": " + shown(macro->rows);
}

MacroRows someRows()
{
    return {keyRow("A", true), delayRow(10), keyRow("LCtrl", false), delayRow(0), keyRow("Left", true)};
}

} // namespace

class tst_macrofile : public QObject
{
    Q_OBJECT

private:
    MacroHome home;

private slots:
    void init() { home.clear(); }

    // ---- The text

    void aSavedMacroIsTheseBytes()
    {
        QVERIFY(saveMacro("Burst", 254, someRows()));
        QCOMPARE(MacroHome::read(macroPath("Burst")),
                 QByteArray("254\n0x04 1 0\n10ms\n0x01 0 1\n0ms\n0x01 4 0\n"));
        QCOMPARE(shown(loadMacro("Burst")), QString("254: A down, 10ms, LCtrl up, 0ms, Left down"));
    }

    void aNewMacroIsAnEmptyFile()
    {
        QVERIFY(createMacro("New"));
        QCOMPARE(MacroHome::read(macroPath("New")), QByteArray());
        QCOMPARE(shown(loadMacro("New")), QString("none: "));
        QVERIFY(saveMacro("New", 1, {}));
        QCOMPARE(MacroHome::read(macroPath("New")), QByteArray("1\n"));
    }

    void rowsAreAppended()
    {
        MacroHome::write(macroPath("Burst"), "3\r\n");
        QVERIFY(AppendMacroRows("Burst", someRows()));
        QCOMPARE(MacroHome::read(macroPath("Burst")),
                 QByteArray("3\r\n0x04 1 0\n10ms\n0x01 0 1\n0ms\n0x01 4 0\n"));
        QCOMPARE(shown(loadMacro("Burst")), QString("3: A down, 10ms, LCtrl up, 0ms, Left down"));
        QVERIFY(!AppendMacroRows("None", someRows()));
        QVERIFY(!macroExists("None"));
    }

    // What the vocabulary does not know in this language keeps its place and direction.
    void aKeyWithoutCodeIsTheKeyWithoutFunction()
    {
        QCOMPARE(macroText(1, {keyRow("Nonsense", false), delayRow(5), keyRow("", true)}),
                 QByteArray("1\n0x00 1 1\n5ms\n0x00 1 0\n"));
    }

    void texts_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("macro");
        const auto row = [](const char *name, const QByteArray &text, const char *macro) {
            QTest::newRow(name) << text << QString(macro);
        };
        row("empty", "", "none: ");
        row("cycle alone", "253\n", "253: ");
        row("line ends of the other kind", "253\r\n0x04 1 0\r\n10ms\r\n0x04 1 1\r\n",
            "253: A down, 10ms, A up");
        row("both line ends", "253\r\n0x04 1 0\r\n10ms\n0x04 1 1\n", "253: A down, 10ms, A up");
        row("last line without its end", "1\n0x04 1 1", "1: A up");
        row("blank lines", "1\n\n0x04 1 0\n \n\r\n10ms\n", "1: A down, 10ms");
        row("blanks between parts", "1\n  0x04   1  0  \n", "1: A down");
        row("0", "0\n", "0: ");
        row("251", "251\n", "251: ");
        row("no number", "seven\n0x04 1 0\n", "0: A down");
        row("no first line", "\n0x04 1 0\n", "0: A down");
        row("direction 2", "1\n0x04 1 2\n0x05 1 0\n", "1: B down");
        row("two parts", "1\n0x04 1\n0x05 1 0\n", "1: B down");
        row("four parts", "1\n0x04 1 0 0\n0x05 1 0\n", "1: B down");
        row("code in lower case", "1\n0x2b 1 0\n", "1:  down");
        row("one code in three kinds", "1\n0x04 0 0\n0x04 1 0\n0x04 4 0\n",
            "1: LAlt down, A down, Middle down");
        row("delay without its unit", "1\n0x04 1 0\n10\n0x04 1 1\n", "1: A down, 10ms, A up");
        row("delay without a number", "1\n0x04 1 0\nsoon\n", "1: A down, 0ms");
        row("ends in a delay", "1\n0x04 1 0\n10ms\n", "1: A down, 10ms");
        row("NULs", QByteArray("1\n0x04 1 0\n\0\0\0\n10\0ms\n0x04 1 1\n", 30), "1: A down, A up");
        row("a long line", "1\n" + QByteArray(100, '9') + "ms\n0x04 1 1\n", "1: A up");
        row("no text", "1\n\xFE\xFF\n0x04 1 1\n", "1: A up");
        row("an endless line", QByteArray(500'000, '1'), "1: ");
    }
    void texts()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, macro);
        if (text.size() == 500'000)
            macro = "0: "; // no number of this size
        QCOMPARE(shown(parseMacro(text)), macro);
        MacroHome::write(macroPath("File"), text);
        QCOMPARE(shown(loadMacro("File")), macro);
    }

    void aTextPastTheLimitsIsRefusedWhole()
    {
        const auto rows = [](int count) {
            QByteArray text("1\n");
            for (int i = 0; i < count; ++i)
                text += "1ms\n";
            return text;
        };
        QCOMPARE(parseMacro(rows(MacroRowLimit))->rows.size(), MacroRowLimit);
        QVERIFY(!parseMacro(rows(MacroRowLimit + 1)));
        QVERIFY(!parseMacro(rows(1'000'000)));
        QVERIFY(parseMacro(QByteArray(MacroFileLimit, 'x')));
        QVERIFY(!parseMacro(QByteArray(MacroFileLimit + 1, 'x')));
        MacroHome::write(macroPath("Large"), QByteArray(MacroFileLimit + 1, 'x'));
        QVERIFY(!loadMacro("Large"));
        QVERIFY(saveMacro("Large", 1, {}));
        QVERIFY(loadMacro("Large"));
    }

    void cyclesAsABindingHoldsThem_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("cycle");
        QTest::newRow("times") << QByteArray("250\n") << 250;
        QTest::newRow("no number of times") << QByteArray("251\n") << 251;
        QTest::newRow("until released") << QByteArray("254\r\n") << 254;
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("no byte") << QByteArray("256\n") << 0;
        QTest::newRow("negative") << QByteArray("-1\n") << 0;
        QTest::newRow("text") << QByteArray("x\n") << 0;
    }
    void cyclesAsABindingHoldsThem()
    {
        QFETCH(QByteArray, text);
        QTEST(int(cycleByte(parseMacro(text)->cycle.value_or(0))), "cycle");
    }

    void listsComeBackFromTheirFiles()
    {
        std::mt19937 random(1);
        for (int i = 0; i < rounds(300); ++i) {
            const MacroRows rows = anyRows(random, 200);
            const int cycle = int(random() % 256);
            const std::optional<MacroText> read = parseMacro(macroText(cycle, rows));
            QVERIFY(read && read->rows == rows && read->cycle == cycle);
        }
    }

    // ---- What is no file

    void onlyAFileIsReadOrWritten_data()
    {
        QTest::addColumn<QString>("what");
        for (const char *what : {"link", "dangling link", "folder", "pipe", "link to a device"})
            QTest::newRow(what) << what;
    }
    void onlyAFileIsReadOrWritten()
    {
        QFETCH(QString, what);
        const QString path = macroPath("Odd"), target = macroFolder() + "/../target";
        MacroHome::write(target, "7\n0x04 1 0\n");
        if (what == "link")
            QVERIFY(QFile::link(target, path));
        else if (what == "dangling link")
            QVERIFY(QFile::link(target + "none", path));
        else if (what == "folder")
            QVERIFY(QDir().mkpath(path));
        else if (what == "pipe")
            QCOMPARE(mkfifo(path.toLocal8Bit(), 0600), 0);
        else
            QVERIFY(QFile::link("/dev/zero", path));
        QVERIFY(createMacro("Real"));
        QCOMPARE(macroNames(), QStringList("Real"));
        QVERIFY(!macroExists("Odd"));
        QVERIFY(!loadMacro("Odd"));
        QVERIFY(!createMacro("Odd"));
        QVERIFY(!saveMacro("Odd", 1, {}));
        QVERIFY(!AppendMacroRows("Odd", someRows()));
        QVERIFY(!renameMacro("Odd", "Other"));
        QVERIFY(!renameMacro("Real", "Odd"));
        QVERIFY(!removeMacro("Odd"));
        QVERIFY(!keepMacro("Odd"));
        QCOMPARE(MacroHome::read(target), QByteArray("7\n0x04 1 0\n"));
        QVERIFY(!QFile::exists(target + "none"));
    }

    void aFullDiskLeavesTheOldFile()
    {
        QVERIFY(saveMacro("Burst", 1, {}));
        for (const int room : {0, 1, 10}) {
            const pid_t child = fork();
            if (child == 0) {
                signal(SIGXFSZ, SIG_IGN);
                const rlimit limit = {rlim_t(room), rlim_t(room)};
                setrlimit(RLIMIT_FSIZE, &limit);
                const bool any = saveMacro("Burst", 254, someRows()) || AppendMacroRows("Burst", someRows());
                _exit(any ? 1 : 0);
            }
            int status = -1;
            waitpid(child, &status, 0);
            QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
            QCOMPARE(MacroHome::read(macroPath("Burst")), QByteArray("1\n"));
        }
        QCOMPARE(macroNames(), QStringList("Burst"));
    }

    // ---- The folder

    void theListHasFilesByName()
    {
        for (const char *file : {"beta.ini", "Alpha.ini", "a.ini.ini", "notes.txt", "myxmlkeys",
                                 "ListMain.xml", "xml.ini", ".hidden.ini", "beta.ini.XyZabc"})
            MacroHome::write(macroFolder() + "/" + file, "1\n");
        QVERIFY(QDir(macroFolder()).mkdir("folder.ini"));
        QCOMPARE(macroNames(), QStringList({"a.ini", "Alpha", "beta", "notes.txt"}));
        QVERIFY(macroExists("a.ini"));
        QVERIFY(!loadMacro("notes.txt"));
    }

    void namesAreMadeChangedAndRemoved()
    {
        QVERIFY(createMacro("One"));
        QVERIFY(!createMacro("One"));
        QVERIFY(saveMacro("One", 5, someRows()));
        QVERIFY(createMacro("Two"));
        QVERIFY(!renameMacro("One", "Two")); // would destroy it
        QVERIFY(!renameMacro("None", "Three"));
        QVERIFY(renameMacro("One", "Three"));
        QCOMPARE(shown(loadMacro("Three")), QString("5: ") + shown(someRows()));
        QCOMPARE(macroNames(), QStringList({"Three", "Two"}));
        QVERIFY(removeMacro("Three"));
        QVERIFY(!removeMacro("Three"));
        QCOMPARE(macroNames(), QStringList("Two"));
        QVERIFY(QDir(macroFolder()).removeRecursively());
        QCOMPARE(macroNames(), QStringList());
        QVERIFY(!createMacro("Lost"));
        QVERIFY(!loadMacro("Two"));
    }

    void aNameStaysInTheFolder_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"", "/", "a/b", "../a", "..", ".", ".a", "axml", "a\nb"})
            QTest::newRow(name) << name;
        QTest::newRow("NUL") << QString::fromLatin1("a\0b", 3);
        QTest::newRow("31 bytes") << QString(31, 'x');
        QTest::newRow("no text") << QString(QChar(QChar::ReplacementCharacter));
    }
    void aNameStaysInTheFolder()
    {
        QFETCH(QString, name);
        QVERIFY(!isMacroName(name));
        QVERIFY(!createMacro(name));
        QVERIFY(createMacro("Good"));
        QVERIFY(!renameMacro("Good", name));
        QCOMPARE(macroNames(), QStringList("Good"));
        QVERIFY(fittingMacroName(name).isEmpty() || isMacroName(fittingMacroName(name)));
    }
    void otherNamesAreTaken()
    {
        for (const char *name : {"a", "a b", "a.b", "XML", "a..b", "\xE4\xBD\xA0"})
            QVERIFY2(isMacroName(QString::fromUtf8(name)), name);
        QVERIFY(isMacroName(QString(30, 'x')));
    }

    void whatIsTypedBecomesANameLetterByLetter()
    {
        std::mt19937 random(7);
        const QString letters = QString::fromUtf8("a.x/ml \t\xE4\xBD\xA0");
        for (int i = 0; i < 300; ++i) {
            QString typed;
            for (int length = 0; length < 40; ++length) {
                typed = fittingMacroName(typed + letters.at(int(random() % uint32_t(letters.size()))));
                QVERIFY2(typed.isEmpty() || isMacroName(typed), qPrintable(typed));
            }
        }
    }

    // ---- What a mouse's copy replaces

    void theLastTenAreKept()
    {
        for (int i = 0; i < 25; ++i) {
            QVERIFY(saveMacro(i % 2 ? "Odd" : "Even", i, someRows()));
            QVERIFY(keepMacro(i % 2 ? "Odd" : "Even"));
        }
        const QStringList kept = QDir(keptFolder()).entryList(QDir::Files, QDir::Name);
        QCOMPARE(kept.size(), KeptFiles);
        QCOMPARE(kept.first(), QString("000016 Odd.ini"));
        QCOMPARE(kept.last(), QString("000025 Even.ini"));
        QCOMPARE(MacroHome::read(keptFolder() + "/" + kept.last()), macroText(24, someRows()));
        QCOMPARE(macroNames(), QStringList({"Even", "Odd"}));
    }

    // Two copies that take turns would drive out all others.
    void theSameIsKeptOnce()
    {
        for (int i = 0; i < 6; ++i) {
            QVERIFY(saveMacro("Burst", i % 2, someRows()));
            QVERIFY(keepMacro("Burst"));
        }
        QVERIFY(createMacro("Empty"));
        QVERIFY(keepMacro("Empty"));
        QVERIFY(keepMacro("Missing"));
        QCOMPARE(QDir(keptFolder()).entryList(QDir::Files).size(), 2);
    }

    void whatCannotBeKeptIsSaid()
    {
        QVERIFY(saveMacro("Burst", 1, someRows()));
        MacroHome::write(keptFolder(), "in the way");
        QVERIFY(!keepMacro("Burst"));
        QFile::remove(keptFolder());
        QVERIFY(keepMacro("Burst"));
    }
};

TEST_CLASS(tst_macrofile, testmain::CoreApplication)
#include "tst_macrofile.moc"
