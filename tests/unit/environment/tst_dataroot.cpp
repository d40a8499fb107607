// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "environment/DataRoot.h"
#include "tests/support/TestMain.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>
#include <fcntl.h>
#include <sys/stat.h>

class tst_DataRoot : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        home_ = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(home_->path()));
    }

    void liesBelowTheDataHome()
    {
        QCOMPARE(dataRoot(), home_->path() + QStringLiteral("/ZANVO Morlen Software"));
        qunsetenv("XDG_DATA_HOME");
        QCOMPARE(dataRoot(), QDir::homePath() + QStringLiteral("/.local/share/ZANVO Morlen Software"));
    }

    void makesTheSevenFoldersAndTheEmptyStore()
    {
        makeDataFolders();
        const QStringList expected = {"Device_Info", "Exception", "Log", "usersetting"};
        QCOMPARE(QDir(dataRoot()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), expected);
        const QStringList pages = {"MacroPage", "MainPage", "SensorPage"};
        QCOMPARE(QDir(dataRoot() + "/usersetting").entryList(QDir::Dirs | QDir::NoDotAndDotDot), pages);
        QCOMPARE(QFileInfo(dataRoot() + "/Macro.ini").size(), 0);
        QVERIFY(QFileInfo(dataRoot() + "/Macro.ini").isFile());
    }

    void leavesAStoreAlone()
    {
        makeDataFolders();
        write(dataRoot() + "/Macro.ini", "[Language]\nLanguage=3\n");
        makeDataFolders();
        QFile store(dataRoot() + "/Macro.ini");
        QVERIFY(store.open(QIODevice::ReadOnly));
        QCOMPARE(store.readAll(), QByteArray("[Language]\nLanguage=3\n"));
    }

    void survivesAFolderThatCannotBeMade()
    {
        write(home_->path() + "/ZANVO Morlen Software", "a file where the folder belongs");
        makeDataFolders();
        pruneOldFiles();
        QVERIFY(QFileInfo(dataRoot()).isFile());
    }

    void prunes_data()
    {
        QTest::addColumn<qint64>("age");
        QTest::addColumn<bool>("stays");
        const qint64 day = 86400;
        QTest::newRow("fresh") << qint64(0) << true;
        QTest::newRow("from the future") << -20 * day << true;
        QTest::newRow("7 days") << 7 * day << true;
        QTest::newRow("7 days and all but a second") << 8 * day - 1 << true;
        QTest::newRow("8 days") << 8 * day << false;
        QTest::newRow("a year") << 365 * day << false;
    }
    void prunes()
    {
        QFETCH(qint64, age);
        QFETCH(bool, stays);
        makeDataFolders();
        const QDateTime now = QDateTime::currentDateTime();
        const QStringList pruned = {"/Log/a.txt", "/Exception/.hidden", "/Exception/a.dmp"};
        const QStringList others = {"/Device_Info/a.bin", "/usersetting/a.ini", "/Macro.ini"};
        for (const QString &name : pruned + others) {
            write(dataRoot() + name, "x");
            setAge(dataRoot() + name, now, age);
        }
        pruneOldFiles(now);
        for (const QString &name : pruned)
            QCOMPARE(QFileInfo::exists(dataRoot() + name), stays);
        for (const QString &name : others)
            QVERIFY(QFileInfo::exists(dataRoot() + name));
    }

    void prunesNoFolder()
    {
        makeDataFolders();
        const QDateTime now = QDateTime::currentDateTime();
        QDir().mkpath(dataRoot() + "/Log/kept");
        write(dataRoot() + "/Log/kept/inner.txt", "x");
        setAge(dataRoot() + "/Log/kept/inner.txt", now, 100 * 86400);
        setAge(dataRoot() + "/Log/kept", now, 100 * 86400);
        pruneOldFiles(now);
        QVERIFY(QFileInfo::exists(dataRoot() + "/Log/kept/inner.txt"));
    }

    void prunesALinkAndNotWhatItShows()
    {
        makeDataFolders();
        const QDateTime now = QDateTime::currentDateTime();
        const QString outside = home_->path() + "/outside";
        QDir().mkpath(outside);
        write(outside + "/old.txt", "x");
        setAge(outside + "/old.txt", now, 100 * 86400);
        const QString links[] = {dataRoot() + "/Log/oldLink", dataRoot() + "/Log/folderLink",
                                 dataRoot() + "/Log/newLink"};
        QFile::link(outside + "/old.txt", links[0]);
        QFile::link(outside, links[1]);
        QFile::link(outside + "/old.txt", links[2]);
        setAge(links[0], now, 100 * 86400);
        setAge(links[1], now, 100 * 86400);
        pruneOldFiles(now);
        QVERIFY(!QFileInfo(links[0]).isSymLink());
        QVERIFY(!QFileInfo(links[1]).isSymLink());
        QVERIFY(QFileInfo(links[2]).isSymLink()); // new, though it shows an old file
        QVERIFY(QFileInfo::exists(outside + "/old.txt"));
    }

    void prunesNothingThroughALinkedFolder()
    {
        const QDateTime now = QDateTime::currentDateTime();
        const QString outside = home_->path() + "/outside";
        QDir().mkpath(outside);
        QDir().mkpath(dataRoot());
        write(outside + "/old.txt", "x");
        setAge(outside + "/old.txt", now, 100 * 86400);
        QFile::link(outside, dataRoot() + "/Log");
        pruneOldFiles(now);
        QVERIFY(QFileInfo::exists(outside + "/old.txt"));
    }

    void knowsTheFolderOfTheExecutable()
    {
        QCOMPARE(applicationFolder(), QCoreApplication::applicationDirPath());
        setApplicationFolder(QStringLiteral("/elsewhere"));
        QCOMPARE(applicationFolder(), QStringLiteral("/elsewhere"));
        setApplicationFolder({});
        QCOMPARE(applicationFolder(), QCoreApplication::applicationDirPath());
    }

private:
    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    static void setAge(const QString &path, const QDateTime &now, qint64 age)
    {
        const timespec time = {time_t(now.toSecsSinceEpoch() - age), 0};
        const timespec times[2] = {time, time};
        QCOMPARE(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, AT_SYMLINK_NOFOLLOW), 0);
    }

    std::unique_ptr<QTemporaryDir> home_;
};

TEST_CLASS(tst_DataRoot, testmain::CoreApplication)
#include "tst_dataroot.moc"
