// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Desktop entries: the one that starts the program at login, and those of the control centres.
#include "service/AutoStart.h"
#include "service/DesktopEntry.h"
#include "service/MouseSettings.h"
#include "tests/support/TestMain.h"
#include "tests/widget/service/Desktop.h"

#include <QProcess>
#include <sys/stat.h>

class tst_LoginEntry : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<fixture::Desktop> desktop;

    QString installThisProgram() const
    {
        const QString link =
            desktop->path("bin/" + QFileInfo(QCoreApplication::applicationFilePath()).fileName());
        QFile::link(QCoreApplication::applicationFilePath(), link);
        return link;
    }

private slots:
    void init() { desktop = std::make_unique<fixture::Desktop>(); }
    void cleanup() { desktop.reset(); }

    // ---- At login

    void theEntryNamesTheProgramThatRuns()
    {
        QVERIFY(!autostart::isWhole());
        QVERIFY(autostart::enable());
        QCOMPARE(autostart::entryPath(), desktop->configFolder() + "/autostart/morlen.desktop");
        const DesktopEntry entry(autostart::entryPath());
        const QString program = QCoreApplication::applicationFilePath();
        QCOMPARE(entry.text("Type"), QString("Application"));
        QCOMPARE(entry.text("TryExec"), program);
        QCOMPARE(entry.command(),
                 QStringList({"env", "MORLEN_START_HIDDEN=1", "sh", "-c", "exec \"$0\"", program}));
        QVERIFY(autostart::isWhole());
        QVERIFY(QDir(desktop->configFolder() + "/autostart").entryList(QDir::Files).size() == 1);
    }

    // The command stays when the next version is installed elsewhere.
    void anInstalledProgramIsNamedByItsCommand()
    {
        const QString command = installThisProgram();
        QCOMPARE(autostart::programPath(), command);
        QVERIFY(autostart::enable());
        QCOMPARE(DesktopEntry(autostart::entryPath()).text("TryExec"), command);
        QVERIFY(QFile::remove(command));
        desktop->installProgram(QFileInfo(command).fileName()); // of the same name, but another program
        QCOMPARE(autostart::programPath(), QCoreApplication::applicationFilePath());
    }

    void anEntryOfAProgramThatIsGoneIsNotWhole()
    {
        const QString command = installThisProgram();
        QVERIFY(autostart::enable() && autostart::isWhole());
        QVERIFY(QFile::remove(command));
        QVERIFY(!autostart::isWhole());
    }

    // An entry may have been changed by hand.
    void anEntryThatStartsSomethingElseIsNotWhole()
    {
        QVERIFY(autostart::enable() && autostart::isWhole());
        QFile file(autostart::entryPath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray whole = file.readAll();
        for (const QByteArray &line : {QByteArray("Exec=true"), QByteArray()}) {
            QByteArray changed = whole;
            const int at = changed.indexOf("Exec=");
            changed.replace(at, changed.indexOf('\n', at) - at, line);
            desktop->write("config/autostart/morlen.desktop", changed);
            QVERIFY(!autostart::isWhole());
        }
        desktop->write("config/autostart/morlen.desktop", whole);
        QVERIFY(autostart::isWhole());
    }

    // Desktops take it for removed.
    void aHiddenEntryIsNotWhole()
    {
        QVERIFY(autostart::enable() && autostart::isWhole());
        QFile file(autostart::entryPath());
        QVERIFY(file.open(QIODevice::Append));
        file.write("Hidden=true\n");
        file.close();
        QVERIFY(!autostart::isWhole());
        QVERIFY(autostart::enable() && autostart::isWhole());
    }

    void aPathThatLooksLikeAVariableIsStarted()
    {
        const QString folder = desktop->path("x=y");
        const QString started = desktop->path("started");
        QVERIFY(QDir().mkpath(folder));
        desktop->write("x=y/program", "#!/bin/sh\necho $MORLEN_START_HIDDEN > '" + started.toUtf8() + "'\n");
        const QString program = folder + "/program";
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
        QVERIFY(autostart::enable());
        QStringList command = DesktopEntry(autostart::entryPath()).command();
        command.last() = program;
        QCOMPARE(QProcess::execute(command.first(), command.mid(1)), 0);
        QFile file(started);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("1\n"));
    }

    void removingIsDoneWhenThereIsNone()
    {
        QVERIFY(autostart::disable());
        QVERIFY(autostart::enable());
        QVERIFY(autostart::disable());
        QVERIFY(!QFile::exists(autostart::entryPath()));
    }

    void aFolderThatTakesNothingFails()
    {
        desktop->write("config/autostart", "a file");
        QVERIFY(!autostart::enable());
        QFile file(desktop->configFolder() + "/autostart");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("a file"));
    }

    void theHiddenStartIsToldOnce()
    {
        QVERIFY(!autostart::takeHiddenStart());
        qputenv("MORLEN_START_HIDDEN", "1");
        QVERIFY(autostart::takeHiddenStart());
        QVERIFY(!qEnvironmentVariableIsSet("MORLEN_START_HIDDEN"));
        QVERIFY(!autostart::takeHiddenStart());
    }

    // ---- The format

    void anArgumentComesBackAsItWas_data()
    {
        QTest::addColumn<QString>("argument");
        for (const char *argument : {"/usr/bin/morlen", "/home/a b/morlen", "/a\"b", "/a\\b", "/a$b`c",
                                     "/100%U/50%", "/ä/\t/morlen", "\\", ""})
            QTest::newRow(*argument ? argument : "empty") << QString(argument);
    }
    void anArgumentComesBackAsItWas()
    {
        QFETCH(QString, argument);
        desktop->writeEntry("one", "Exec=env " + DesktopEntry::quotedArgument(argument).toUtf8() +
                                       " last\nTryExec=" + DesktopEntry::escaped(argument).toUtf8() + "\n");
        const DesktopEntry entry(desktop->path("share/applications/one.desktop"));
        QCOMPARE(entry.command(), QStringList({"env", argument, "last"}));
        QCOMPARE(entry.text("TryExec"), argument);
    }

    void fieldCodesAreNoArguments()
    {
        desktop->writeEntry("one", "Exec=centre %i --mouse %U \"%f\" 100%%\n");
        QCOMPARE(DesktopEntry(desktop->path("share/applications/one.desktop")).command(),
                 QStringList({"centre", "--mouse", "100%"}));
    }

    void onlyTheMainGroupCounts()
    {
        desktop->write("one.desktop",
                       "Exec=before\n# Exec=comment\n[Desktop Entry]\nName=One\nName[de]=Eins\n"
                       "Exec=centre\n[Desktop Action New]\nExec=other\n");
        const DesktopEntry entry(desktop->path("one.desktop"));
        QCOMPARE(entry.command(), QStringList("centre"));
        QCOMPARE(entry.text("Name"), QString("One"));
    }

    void whatIsNoEntryIsEmpty_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *kind : {"missing", "folder", "pipe", "too large", "bytes"})
            QTest::newRow(kind) << QString(kind);
    }
    void whatIsNoEntryIsEmpty()
    {
        QFETCH(QString, kind);
        const QString path = desktop->path("one.desktop");
        if (kind == "folder")
            QDir().mkpath(path);
        if (kind == "pipe")
            QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        if (kind == "too large")
            desktop->write("one.desktop", "[Desktop Entry]\nExec=centre\n#" + QByteArray(300000, 'x'));
        if (kind == "bytes")
            desktop->write("one.desktop", QByteArray("\xff\x00\n=\n[\n[]\n\\\n=a\n", 15));
        const DesktopEntry entry(path);
        QCOMPARE(entry.command(), QStringList());
        QVERIFY(!entry.isOffered({"XFCE"}));
    }

    // ---- The control centres

    void whomAnEntryIsOfferedTo_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<bool>("offered");
        QTest::newRow("any") << QByteArray() << true;
        QTest::newRow("this one") << QByteArray("OnlyShowIn=KDE;XFCE;\n") << true;
        QTest::newRow("others") << QByteArray("OnlyShowIn=KDE;GNOME;\n") << false;
        QTest::newRow("all but this one") << QByteArray("NotShowIn=XFCE;\n") << false;
        QTest::newRow("all but another") << QByteArray("NotShowIn=KDE;\n") << true;
        QTest::newRow("removed") << QByteArray("Hidden=true\n") << false;
        QTest::newRow("in no menu") << QByteArray("NoDisplay=true\n") << true; // as such pages are
        QTest::newRow("in a terminal") << QByteArray("Terminal=true\n") << false;
        QTest::newRow("its program is gone") << QByteArray("TryExec=/none/centre\n") << false;
    }
    void whomAnEntryIsOfferedTo()
    {
        QFETCH(QByteArray, lines);
        QFETCH(bool, offered);
        desktop->installProgram("centre");
        desktop->writeEntry("kcm_mouse", "Exec=centre mouse\n" + lines);
        QCOMPARE(mouseSettingsCommand(), offered ? QStringList({"centre", "mouse"}) : QStringList());
    }

    void theDesktopsOwnPageComesFirst()
    {
        desktop->installControlCentre("gnome-mouse-panel", "GNOME");
        desktop->installControlCentre("xfce-mouse-settings", "XFCE");
        desktop->installControlCentre("lxinput", "XFCE;LXDE");
        QCOMPARE(mouseSettingsCommand(), QStringList({"xfce-mouse-settings", "--mouse"}));
        qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
        QCOMPARE(mouseSettingsCommand(), QStringList({"gnome-mouse-panel", "--mouse"}));
        qputenv("XDG_CURRENT_DESKTOP", "LXDE");
        QCOMPARE(mouseSettingsCommand(), QStringList({"lxinput", "--mouse"}));
        qputenv("XDG_CURRENT_DESKTOP", "");
        QCOMPARE(mouseSettingsCommand(), QStringList());
    }
};

TEST_CLASS(tst_LoginEntry, testmain::CoreApplication)

#include "tst_loginentry.moc"
