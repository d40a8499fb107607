// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "environment/CrashFile.h"
#include "environment/CrashName.h"
#include "environment/DataRoot.h"
#include "tests/support/TestMain.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <climits>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

namespace
{

__attribute__((noinline)) int overflowStack(int depth)
{
    volatile char room[4096];
    room[0] = char(depth);
    return depth == INT_MAX ? 0 : overflowStack(depth + 1) + room[0];
}

__attribute__((noinline)) void writeAtAddress16()
{
    volatile quintptr address = 16; // the compiler must not see where it goes
    *reinterpret_cast<volatile int *>(address) = 1;
}

// A sanitizer's shadow would be dumped as well.
#ifdef __SANITIZE_ADDRESS__
constexpr bool dumpsAreWanted = false;
#else
constexpr bool dumpsAreWanted = true;
#endif

// The part that a child process plays: it never returns when the crash works.
int crash(int, char **arguments)
{
    const QByteArray kind = arguments[1];
    rlimit core = {};
    getrlimit(RLIMIT_CORE, &core);
    core.rlim_cur = kind == "core" ? core.rlim_max : 0;
    setrlimit(RLIMIT_CORE, &core);
    installCrashFilter();
    if (kind == "noFolder")
        QDir(dataRoot() + "/Exception").removeRecursively();
    if (kind == "address" || kind == "noFolder")
        writeAtAddress16();
    if (kind == "abort" || kind == "core")
        abort();
    if (kind == "stack")
        return overflowStack(0);
    if (kind == "fpe")
        raise(SIGFPE);
    if (kind == "bus")
        raise(SIGBUS);
    if (kind == "ill")
        raise(SIGILL);
    return 0;
}

} // namespace

class tst_CrashFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("XDG_DATA_HOME", QFile::encodeName(home_.path())); }
    void init() { QDir(dataRoot()).removeRecursively(); }

    void leavesAFile_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("address");
        QTest::newRow("address") << SIGSEGV << QByteArray("SIGSEGV") << QByteArray("0x10");
        QTest::newRow("noFolder") << SIGSEGV << QByteArray("SIGSEGV") << QByteArray("0x10");
        QTest::newRow("abort") << SIGABRT << QByteArray("SIGABRT") << QByteArray("0x0");
        QTest::newRow("stack") << SIGSEGV << QByteArray("SIGSEGV") << QByteArray();
        QTest::newRow("fpe") << SIGFPE << QByteArray("SIGFPE") << QByteArray("0x0");
        QTest::newRow("bus") << SIGBUS << QByteArray("SIGBUS") << QByteArray("0x0");
        QTest::newRow("ill") << SIGILL << QByteArray("SIGILL") << QByteArray("0x0");
    }
    void leavesAFile()
    {
        QFETCH(int, signal);
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, address);
        const QDateTime before = QDateTime::currentDateTime();
        QCOMPARE(runCrash(QByteArray(QTest::currentDataTag())), signal);
        const QFileInfoList files = QDir(dataRoot() + "/Exception").entryInfoList(QDir::Files);
        QCOMPARE(files.size(), 1);
        const QDateTime named =
            QDateTime::fromString(files[0].fileName(), QStringLiteral("yyyy_MM_dd_hh_mm_ss'.dmp'"));
        QVERIFY(named.isValid());
        QVERIFY(named >= before.addSecs(-1) && named <= QDateTime::currentDateTime());
        checkContent(files[0].filePath(), signal, name, address);
    }

    // Where dumps go into the folder of the process.
    void leavesACoreDump()
    {
        QTemporaryDir folder;
        QCOMPARE(runCrash("core", folder.path()), SIGABRT);
        QFile pattern(QStringLiteral("/proc/sys/kernel/core_pattern"));
        rlimit limit = {};
        getrlimit(RLIMIT_CORE, &limit);
        if (dumpsAreWanted && pattern.open(QIODevice::ReadOnly) && pattern.readAll().startsWith("core") &&
            limit.rlim_max == RLIM_INFINITY)
            QCOMPARE(QDir(folder.path()).entryList({QStringLiteral("core*")}, QDir::Files).size(), 1);
    }

    // Two crashes within a second have one name; the second file replaces the first, and a link in its
    // place is never written through.
    void replacesWhatIsThere()
    {
        QDir().mkpath(dataRoot() + "/Exception");
        const QString victim = home_.filePath("victim");
        QFile(victim).open(QIODevice::WriteOnly);
        const QDateTime now = QDateTime::currentDateTime();
        for (int second = 0; second < 20; ++second) {
            const QString name = now.addSecs(second).toString(QStringLiteral("yyyy_MM_dd_hh_mm_ss"));
            QVERIFY(QFile::link(victim, dataRoot() + "/Exception/" + name + ".dmp"));
        }
        QCOMPARE(runCrash("abort"), SIGABRT);
        QCOMPARE(QFileInfo(victim).size(), 0);
        int files = 0;
        for (const QFileInfo &entry : QDir(dataRoot() + "/Exception").entryInfoList(QDir::Files))
            files += !entry.isSymLink() && entry.size() > 0 ? 1 : 0;
        QCOMPARE(files, 1);
    }

    void namesTheTime_data()
    {
        QTest::addColumn<QString>("time");
        QTest::newRow("epoch") << "1970_01_01_00_00_00";
        QTest::newRow("leap day") << "2024_02_29_23_59_59";
        QTest::newRow("after the leap day") << "2024_03_01_00_00_00";
        QTest::newRow("no leap day") << "2100_03_01_12_30_45";
        QTest::newRow("leap century") << "2000_02_29_06_07_08";
        QTest::newRow("end of year") << "2026_12_31_23_59_59";
        QTest::newRow("start of year") << "2027_01_01_00_00_00";
    }
    void namesTheTime()
    {
        QFETCH(QString, time);
        QDateTime parsed = QDateTime::fromString(time, QStringLiteral("yyyy_MM_dd_hh_mm_ss"));
        parsed.setTimeSpec(Qt::UTC);
        char name[CrashNameSize];
        formatCrashName(parsed.toSecsSinceEpoch(), name);
        QCOMPARE(QString::fromLatin1(name), time + ".dmp");
    }

private:
    // The signal that ended the child, which is what leaves a core dump; 0 when it ended by itself.
    static int runCrash(const QByteArray &kind, const QString &folder = QDir::tempPath())
    {
        QProcess child;
        child.setWorkingDirectory(folder);
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("crash"), QString(kind)});
        if (!child.waitForFinished(60000))
            return 0;
        return child.exitStatus() == QProcess::CrashExit ? child.exitCode() : 0;
    }
    static QByteArray ownBuildId()
    {
        QProcess readelf;
        readelf.start(QStringLiteral("readelf"),
                      {QStringLiteral("-n"), QCoreApplication::applicationFilePath()});
        readelf.waitForFinished(60000);
        const QByteArray mark = "Build ID: ";
        const QByteArray notes = readelf.readAllStandardOutput();
        const int at = notes.indexOf(mark);
        return at < 0 ? QByteArray("none") : notes.mid(at + mark.size(), 40);
    }
    static void checkContent(const QString &path, int signal, const QByteArray &name,
                             const QByteArray &address)
    {
        struct stat entry = {};
        QCOMPARE(stat(QFile::encodeName(path).constData(), &entry), 0);
        QCOMPARE(entry.st_mode & 07777, 0600U);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QList<QByteArray> lines = file.readAll().split('\n');
        QCOMPARE(lines.takeFirst(), QByteArray("version " MORLEN_VERSION));
        QCOMPARE(lines.takeFirst(), "build id " + ownBuildId());
        QCOMPARE(lines.value(0), "signal " + QByteArray::number(signal) + ' ' + name);
        QVERIFY(lines.value(1).startsWith("address 0x"));
        if (!address.isEmpty())
            QCOMPARE(lines.value(1), "address " + address);
        QVERIFY(lines.value(2).startsWith("process "));
        QCOMPARE(lines.value(3), QByteArray("backtrace"));
        QVERIFY(lines.size() > 6);
        QVERIFY(lines.mid(4).join().contains(QCoreApplication::applicationFilePath().toLocal8Bit()));
    }

    QTemporaryDir home_;
};

TEST_CHILD(crash)
TEST_CLASS(tst_CrashFile, testmain::CoreApplication)
#include "tst_crashfile.moc"
