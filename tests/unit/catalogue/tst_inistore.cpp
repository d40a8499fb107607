// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "catalogue/LanguageChoice.h"
#include "catalogue/RegistryStore.h"
#include "catalogue/UserStore.h"
#include "environment/DataRoot.h"
#include "environment/FileLock.h"
#include "tests/support/TestMain.h"

#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>
#include <atomic>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

QString storedText(const QString &path, const QString &section, const QString &key)
{
    return IniStore(path).ReadText(section, key);
}

// A process that writes to the stores and ends at once, as the exit entry of the tray does.
int writeAndExit(int, char **)
{
    UserStore::instance().WriteValue("AutoStart", "Enable", "1");
    RegistryStore::instance().setValue(registry::RunGroup, applicationName(), "/opt/program");
    exit(0);
}

} // namespace

class tst_IniStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(home_.path()));
        makeDataFolders();
    }
    void init() { folder_ = std::make_unique<QTemporaryDir>(); }

    void readsBackAtOnceAndFromTheFile()
    {
        {
            IniStore store(path());
            QCOMPARE(store.ReadText("Language", "Language"), QString());
            store.WriteValue("Language", "Language", "3");
            store.WriteValue("FindNew", "IsShow", "1");
            store.WriteValue("FindNew", "IsShow", "0");
            QCOMPARE(store.ReadText("Language", "Language"), QString("3"));
            QCOMPARE(store.ReadList("FindNew", "IsShow"), QStringList("0"));
        }
        QCOMPARE(storedText(path(), "Language", "Language"), QString("3"));
        QSettings settings(path(), QSettings::IniFormat);
        QCOMPARE(settings.value("Language/Language").toString(), QString("3"));
        QCOMPARE(settings.value("FindNew/IsShow").toString(), QString("0"));
    }

    void writesByItself()
    {
        IniStore store(path());
        store.WriteValue("A", "x", "1");
        QTRY_COMPARE(fileContent(path()), QByteArray("[A]\nx=1\n"));
        store.Remove("A", "x");
        QTRY_COMPARE(fileContent(path()), QByteArray());
    }

    void encodesNothing()
    {
        IniStore store(path());
        store.WriteValue("Option", "CID", "MTI=");
        QCOMPARE(store.ReadText("Option", "CID"), QString("MTI="));
    }

    void keepsTextsOfEveryKind()
    {
        const QString texts[] = {"",        "a,b", "\"", "@Variant(x)", "@@",
                                 "€ ü\n\t", " x ", "\\", ";",           QString(5000, 'y')};
        {
            IniStore store(path());
            for (std::size_t i = 0; i < std::size(texts); ++i)
                store.WriteValue("S", QString::number(i), texts[i]);
        }
        for (std::size_t i = 0; i < std::size(texts); ++i)
            QCOMPARE(storedText(path(), "S", QString::number(i)), texts[i]);
    }

    void removes()
    {
        {
            IniStore store(path());
            store.WriteValue("A", "x", "1");
            store.WriteValue("A", "y", "2");
            store.Remove("A", "x");
            store.Remove("A", "none");
            QCOMPARE(store.ReadText("A", "x"), QString());
        }
        QCOMPARE(fileContent(path()), QByteArray("[A]\ny=2\n"));
    }

    void leavesTheDiskAloneWhenNothingChanges()
    {
        IniStore store(path());
        store.WriteValue("A", "x", "1");
        QVERIFY(store.flush());
        struct stat before = {};
        struct stat after = {};
        QCOMPARE(stat(QFile::encodeName(path()).constData(), &before), 0);
        store.WriteValue("A", "x", "1");
        store.Remove("A", "y");
        QVERIFY(store.flush());
        QCOMPARE(stat(QFile::encodeName(path()).constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino); // a save makes a new file
    }

    void keepsWhatAnotherCopyWrote()
    {
        IniStore first(path());
        IniStore second(path());
        QCOMPARE(first.ReadText("A", "x") + second.ReadText("A", "x"), QString());
        first.WriteValue("A", "x", "1");
        QVERIFY(first.flush());
        second.WriteValue("A", "y", "2");
        QVERIFY(second.flush());
        QCOMPARE(fileContent(path()), QByteArray("[A]\nx=1\ny=2\n"));
    }

    void writesFromManyThreads()
    {
        {
            IniStore store(path());
            std::vector<std::thread> threads;
            for (int t = 0; t < 6; ++t) {
                threads.emplace_back([&store, t] {
                    for (int i = 0; i <= 100; ++i)
                        store.WriteValue("T", QString::number(t), QString::number(i));
                });
            }
            for (std::thread &thread : threads)
                thread.join();
        }
        for (int t = 0; t < 6; ++t)
            QCOMPARE(storedText(path(), "T", QString::number(t)), QString("100"));
    }

    void writesAgainWhenTheDiskHasRoom()
    {
        const QString missing = folder_->filePath("later/store.ini");
        IniStore store(missing);
        store.WriteValue("A", "x", "1");
        QVERIFY(!store.flush());
        QCOMPARE(store.ReadText("A", "x"), QString("1"));
        QDir().mkpath(folder_->filePath("later"));
        store.WriteValue("A", "y", "2");
        QVERIFY(store.flush());
        QCOMPARE(fileContent(missing), QByteArray("[A]\nx=1\ny=2\n"));
    }

    void keepsTheOldContentOnAFullDisk()
    {
        QVERIFY(write("[A]\nx=old\n"));
        for (const rlim_t room : {0, 1, 10, 200, 1000}) {
            const pid_t child = fork();
            if (child == 0) {
                signal(SIGXFSZ, SIG_IGN);
                const rlimit limit = {room, room};
                setrlimit(RLIMIT_FSIZE, &limit);
                IniStore store(path());
                store.WriteValue("A", "x", QString(2000, 'n'));
                _exit(store.flush() ? 1 : 0);
            }
            int status = 0;
            QCOMPARE(waitpid(child, &status, 0), child);
            QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
            QCOMPARE(fileContent(path()), QByteArray("[A]\nx=old\n"));
        }
    }

    void keepsOneContentWhenKilled()
    {
        QVERIFY(write("[A]\nx=0\n"));
        for (int round = 0; round < 30; ++round) {
            const pid_t child = fork();
            if (child == 0) {
                IniStore store(path());
                for (int i = 0;; ++i) {
                    store.WriteValue("A", "x", QString(3000, QLatin1Char(char('a' + i % 26))));
                    store.flush();
                }
            }
            usleep(useconds_t(1000 + 211 * round)); // a different moment of a save each time
            kill(child, SIGKILL);
            QCOMPARE(waitpid(child, nullptr, 0), child);
            const QString left = storedText(path(), "A", "x");
            QVERIFY(left == "0" || left == QString(3000, left.at(0)));
        }
        // A killed writer's lock does not keep the next one out.
        IniStore store(path());
        store.WriteValue("A", "x", "after");
        QVERIFY(store.flush());
    }

    void leavesAFileThatItCannotReadAlone()
    {
        const QByteArray huge(int(IniSizeLimit) + 1, 'x');
        QVERIFY(write(huge));
        {
            IniStore store(path());
            store.WriteValue("A", "x", "1");
            QVERIFY(!store.flush());
            QCOMPARE(store.ReadText("A", "x"), QString("1")); // for this run
        }
        QCOMPARE(fileContent(path()), huge);
    }

    void survivesNonsense()
    {
        const char nonsense[] = "\0\xff[A]\n@=\"\nx=@Variant(\\0\\0)\n[";
        QVERIFY(write(QByteArray(nonsense, sizeof nonsense)));
        IniStore store(path());
        QCOMPARE(store.ReadText("A", "x"), QString());
        store.WriteValue("A", "x", "1");
        QVERIFY(store.flush());
        QCOMPARE(storedText(path(), "A", "x"), QString("1"));
    }

    void doesNotHoldItsCallerForTheDisk()
    {
        QVERIFY(write("[A]\nx=old\n"));
        IniStore store(path());
        auto busy = std::make_unique<FileLock>(path() + ".lock", 0); // as another writer would hold it
        QVERIFY(busy->isHeld());
        store.WriteValue("A", "x", "new");
        QCOMPARE(store.ReadText("A", "x"), QString("new"));
        QCOMPARE(fileContent(path()), QByteArray("[A]\nx=old\n"));
        QVERIFY(!store.flush());
        busy.reset();
        QVERIFY(store.flush());
        QCOMPARE(fileContent(path()), QByteArray("[A]\nx=new\n"));
    }

    void liesBelowTheDataRoot()
    {
        QCOMPARE(UserStore::instance().path(), dataRoot() + "/Macro.ini");
        QCOMPARE(RegistryStore::instance().path(), dataRoot() + "/Registry.ini");
        QCOMPARE(&UserStore::instance(), &UserStore::instance());
    }

    void writesWhatWaitsWhenTheProcessExits()
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {"writeAndExit"});
        QVERIFY(child.waitForFinished(60000));
        QCOMPARE(child.exitCode(), 0);
        QCOMPARE(storedText(dataRoot() + "/Macro.ini", "AutoStart", "Enable"), QString("1"));
        RegistryStore registry(dataRoot() + "/Registry.ini");
        QCOMPARE(registry.value(registry::RunGroup, applicationName()), QString("/opt/program"));
    }

    // By the catalogue's texts as they stand: "07" is not "7", and a device without a section has no MID.
    void namesTheRegistryValues()
    {
        QVERIFY(write("[Option]\nCID=MTg=\n[Drive1]\nMID=7\n[Drive2]\nMID=07\n"));
        const ConfigReader reader(path());
        const DeviceCatalogue catalogue(reader);
        QCOMPARE(registry::mouseVersionName(catalogue, 0), QString("MouseVer187"));
        QCOMPARE(registry::mouseVersionName(catalogue, 1), QString("MouseVer1807"));
        QCOMPARE(registry::mouseVersionName(catalogue, 2), QString("MouseVer18"));
    }

    void keepsTheRegistryValues()
    {
        {
            RegistryStore registry(path());
            registry.setValue(registry::BaseGroup, "MouseVer187", "v1.05");
            registry.setValue(registry::BaseGroup, registry::UpdateFailInfo, "210,1,18,7");
            registry.setValue(registry::BaseGroup, "gone", "x");
            registry.removeValue(registry::BaseGroup, "gone");
        }
        RegistryStore again(path());
        QCOMPARE(again.value(registry::BaseGroup, "MouseVer187"), QString("v1.05"));
        QCOMPARE(again.value(registry::BaseGroup, registry::UpdateFailInfo), QString("210,1,18,7"));
        QCOMPARE(again.value(registry::BaseGroup, "gone"), QString());
        QCOMPARE(again.value(registry::RunGroup, "MouseVer187"), QString());
    }

    void seesWhatAnotherProcessWrites()
    {
        RegistryStore registry(path());
        registry.setValue(registry::RunGroup, "mine", "1");
        QVERIFY(registry.flush());
        QCOMPARE(registry.value(registry::BaseGroup, "MouseVer187"), QString());
        for (const char *version : {"v1.05", "v1.06"}) { // the same length, within one tick of the clock
            RegistryStore other(path());
            other.setValue(registry::BaseGroup, "MouseVer187", version);
            QVERIFY(other.flush());
            QCOMPARE(registry.value(registry::BaseGroup, "MouseVer187"), QString(version));
        }
        QCOMPARE(registry.value(registry::RunGroup, "mine"), QString("1"));
        QVERIFY(QFile::remove(path()));
        QCOMPARE(registry.value(registry::RunGroup, "mine"), QString());
    }

    void writesOverWhatAnotherProcessWrote()
    {
        RegistryStore registry(path());
        registry.setValue(registry::BaseGroup, "MouseVer187", "v1.05");
        registry.setValue(registry::BaseGroup, "gone", "x");
        registry.removeValue(registry::BaseGroup, "gone");
        QVERIFY(registry.flush());
        QVERIFY(write("[Mouse%20Drive%20Test]\nMouseVer187=v1.00\ngone=y\n"));
        registry.setValue(registry::BaseGroup, "MouseVer187", "v1.05");
        registry.removeValue(registry::BaseGroup, "gone");
        QVERIFY(registry.flush());
        QCOMPARE(fileContent(path()), QByteArray("[Mouse%20Drive%20Test]\nMouseVer187=v1.05\n"));
    }

    // An edit that waits for the disk, or that the disk refused, is newer than the file.
    void readsItsOwnWaitingEdits()
    {
        QVERIFY(write("[Run]\nmine=old\n"));
        RegistryStore registry(path());
        auto busy = std::make_unique<FileLock>(path() + ".lock", 0); // as another writer would hold it
        QVERIFY(busy->isHeld());
        registry.setValue(registry::RunGroup, "mine", "new");
        std::atomic<bool> given{false};
        std::thread writer([&] {
            registry.flush(); // takes the edit, waits for the lock and gives up
            given = true;
        });
        bool kept = true;
        while (!given)
            kept = registry.value(registry::RunGroup, "mine") == "new" && kept;
        writer.join();
        QVERIFY(kept);
        QCOMPARE(registry.value(registry::RunGroup, "mine"), QString("new"));
        QVERIFY(write("[Run]\nother=1\n"));
        QCOMPARE(registry.value(registry::RunGroup, "other"), QString("1"));
        QCOMPARE(registry.value(registry::RunGroup, "mine"), QString("new"));
        busy.reset();
        QVERIFY(registry.flush());
        QCOMPARE(fileContent(path()), QByteArray("[Run]\nmine=new\nother=1\n"));
    }

    void movesTheLanguageOnce()
    {
        const QString registryPath = folder_->filePath("Registry.ini");
        {
            RegistryStore registry(registryPath);
            registry.setValue(registry::OldLanguageGroup, registry::LanguageIndex, "3");
        }
        for (int start = 0; start < 2; ++start) {
            RegistryStore registry(registryPath);
            UserStore store(path());
            migrateLanguage(registry, store);
            QCOMPARE(storedLanguage(store), 3);
            QCOMPARE(registry.value(registry::OldLanguageGroup, registry::LanguageIndex), QString());
        }
        QCOMPARE(storedText(path(), "Language", "Language"), QString("3"));
        QVERIFY(!fileContent(registryPath).contains("LanguageIndex"));
    }

    void movesNothingForZeroOrNonsense()
    {
        for (const char *old : {"0", "", "three", "0x3"}) {
            RegistryStore registry(folder_->filePath("Registry.ini"));
            UserStore store(path());
            storeLanguage(store, 2);
            registry.setValue(registry::OldLanguageGroup, registry::LanguageIndex, old);
            migrateLanguage(registry, store);
            QCOMPARE(storedLanguage(store), 2);
            QCOMPARE(registry.value(registry::OldLanguageGroup, registry::LanguageIndex), QString(old));
        }
    }

    void keepsTheOldLanguageUntilTheNewOneIsSafe()
    {
        RegistryStore registry(folder_->filePath("Registry.ini"));
        registry.setValue(registry::OldLanguageGroup, registry::LanguageIndex, "3");
        UserStore store(folder_->filePath("missing/Macro.ini"));
        migrateLanguage(registry, store);
        QCOMPARE(storedLanguage(store), 3);
        QCOMPARE(registry.value(registry::OldLanguageGroup, registry::LanguageIndex), QString("3"));
    }

    void followsTheNameOfTheLanguage_data()
    {
        QTest::addColumn<int>("stored");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<int>("index");
        const QStringList fixed = {"English", "", "Deutsch", "", "", ""};
        QTest::newRow("no name") << 6 << "" << fixed + QStringList{"a", "b"} << 6;
        QTest::newRow("in its place") << 6 << "a" << fixed + QStringList{"a", "b"} << 6;
        QTest::newRow("one before it") << 6 << "b" << fixed + QStringList{"a", "b"} << 7;
        QTest::newRow("one less") << 7 << "b" << fixed + QStringList{"b"} << 6;
        QTest::newRow("of two of a name its own") << 7 << "b" << fixed + QStringList{"b", "b"} << 7;
        QTest::newRow("gone") << 7 << "b" << fixed + QStringList{"a"} << 7;
        QTest::newRow("gone, another in its place") << 6 << "b" << fixed + QStringList{"a", "c"} << 8;
        QTest::newRow("there again") << 8 << "b" << fixed + QStringList{"a", "b"} << 7;
        QTest::newRow("a fixed file renamed itself") << 2 << "German" << fixed << 2;
    }
    void followsTheNameOfTheLanguage()
    {
        QFETCH(int, stored);
        QFETCH(QString, name);
        QFETCH(QStringList, names);
        QFETCH(int, index);
        UserStore store(path());
        storeLanguage(store, stored, name);
        QCOMPARE(followLanguage(store, names), index);
        QCOMPARE(storedLanguage(store), index);
        const QString kept =
            name.isEmpty() ? "" : QString::number(index) + ' ' + name; // also of one that is gone
        QCOMPARE(store.ReadText("Language", "Name"), kept);
        for (int other : {0, 1}) { // by an older release, which knows of no name
            store.WriteValue("Language", "Language", QString::number(other));
            QCOMPARE(followLanguage(store, names), other);
            QCOMPARE(storedLanguage(store), other);
        }
        storeLanguage(store, 1);
        QCOMPARE(followLanguage(store, names), 1);
    }

    void startsWithLanguageZero()
    {
        UserStore store(path());
        QCOMPARE(storedLanguage(store), 0);
        store.WriteValue("Language", "Language", "nonsense");
        QCOMPARE(storedLanguage(store), 0);
    }

private:
    QString path() const { return folder_->filePath("Macro.ini"); }
    bool write(const QByteArray &bytes)
    {
        QFile file(path());
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

    QTemporaryDir home_;
    std::unique_ptr<QTemporaryDir> folder_;
};

TEST_CHILD(writeAndExit)
TEST_CLASS(tst_IniStore, testmain::CoreApplication)
#include "tst_inistore.moc"
