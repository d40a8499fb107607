// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "environment/DataRoot.h"
#include "environment/SingleInstance.h"
#include "tests/support/TestMain.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <cerrno>
#include <sys/file.h>
#include <sys/syscall.h>
#include <unistd.h>

// In place of the C library's: with the variable it answers as a file system without locks does for what lies
// below that folder.
extern "C" int flock(int file, int operation)
{
    const QByteArray without = qgetenv("FOLDER_WITHOUT_LOCKS");
    const QString path = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(file));
    if (without.isEmpty() || !path.startsWith(QFile::decodeName(without)))
        return int(syscall(SYS_flock, file, operation));
    errno = ENOLCK;
    return -1;
}

namespace
{

// A copy of the program: says whether it is the first, and stays until its input ends.
int playCopy(int, char **)
{
    SingleInstance instance;
    QTextStream out(stdout);
    out << (instance.acquire() ? "first" : "second") << '\n';
    out.flush();
    QTextStream(stdin).readLine();
    return 0;
}

class Copy
{
public:
    Copy() { process_.start(QCoreApplication::applicationFilePath(), {QStringLiteral("playCopy")}); }
    ~Copy() { end(); }
    QString log() { return QString::fromLocal8Bit(process_.readAllStandardError()); }
    QByteArray verdict()
    {
        while (!process_.canReadLine() && process_.waitForReadyRead(60000)) {
        }
        return process_.readLine().trimmed();
    }
    void kill()
    {
        process_.kill();
        process_.waitForFinished(60000);
    }
    void end()
    {
        process_.write("\n");
        process_.waitForFinished(60000);
    }

private:
    QProcess process_;
};

} // namespace

class tst_SingleInstance : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The memory's key is made from a file in the temporary folder: one of our own keeps this test
        // away from a program that runs beside it.
        qputenv("XDG_DATA_HOME", QFile::encodeName(home_.path()));
        qputenv("TMPDIR", QFile::encodeName(home_.path()));
        makeDataFolders();
    }

    void refusesASecondCopyAsLongAsTheFirstLives()
    {
        Copy first;
        QCOMPARE(first.verdict(), QByteArray("first"));
        for (int i = 0; i < 3; ++i) {
            Copy other;
            QCOMPARE(other.verdict(), QByteArray("second"));
        }
        first.end();
        Copy next;
        QCOMPARE(next.verdict(), QByteArray("first"));
    }

    void isNotLockedOutByAKilledCopy()
    {
        for (int i = 0; i < 3; ++i) {
            Copy first;
            QCOMPARE(first.verdict(), QByteArray("first"));
            first.kill();
        }
        Copy next;
        QCOMPARE(next.verdict(), QByteArray("first"));
        Copy other;
        QCOMPARE(other.verdict(), QByteArray("second"));
    }

    void isNotHeldByACopyThatWasRefused()
    {
        auto first = std::make_unique<Copy>();
        QCOMPARE(first->verdict(), QByteArray("first"));
        Copy refused;
        QCOMPARE(refused.verdict(), QByteArray("second"));
        first->kill();
        Copy next; // while the refused one still shows its notice
        QCOMPARE(next.verdict(), QByteArray("first"));
    }

    void letsExactlyOneOfManyIn()
    {
        Copy copies[6];
        int firsts = 0;
        for (Copy &copy : copies)
            firsts += copy.verdict() == "first" ? 1 : 0;
        QCOMPARE(firsts, 1);
    }

    // The folder of the session decides then, and the log has a line for each folder that cannot.
    void saysWhichFileSystemHasNoLocks()
    {
        const QTemporaryDir session;
        const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
        const auto restored = qScopeGuard([&] {
            qunsetenv("FOLDER_WITHOUT_LOCKS");
            if (before.isNull())
                qunsetenv("XDG_RUNTIME_DIR");
            else
                qputenv("XDG_RUNTIME_DIR", before);
        });
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(session.path()));
        {
            Copy plain;
            QCOMPARE(plain.verdict(), QByteArray("first"));
            plain.end();
            QCOMPARE(plain.log(), QString());
        }
        qputenv("FOLDER_WITHOUT_LOCKS", QFile::encodeName(dataRoot()));
        Copy first;
        QCOMPARE(first.verdict(), QByteArray("first"));
        Copy other;
        QCOMPARE(other.verdict(), QByteArray("second"));
        first.end();
        const QString wanted = QStringLiteral("No lock for a single window: \"%1/Instance.lock\" \"%2\"\n");
        QCOMPARE(first.log(), wanted.arg(dataRoot(), qt_error_string(ENOLCK)));
    }

    void goesOnWithoutADataRoot()
    {
        QVERIFY(QDir(dataRoot()).removeRecursively());
        Copy first;
        QCOMPARE(first.verdict(), QByteArray("first"));
        Copy other;
        QCOMPARE(other.verdict(), QByteArray("second"));
    }

private:
    QTemporaryDir home_;
};

TEST_CHILD(playCopy)
TEST_CLASS(tst_SingleInstance, testmain::CoreApplication)
#include "tst_singleinstance.moc"
