// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "environment/SafeFile.h"
#include "tests/support/TestMain.h"

#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

// Runs `body` in a process of its own and returns that process's id.
template <typename Body> pid_t inChild(Body body)
{
    const pid_t child = fork();
    if (child == 0) {
        body();
        _exit(99);
    }
    return child;
}

int exitCode(pid_t child)
{
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

class tst_SafeFile : public QObject
{
    Q_OBJECT

private slots:
    void writesAndReplaces()
    {
        QVERIFY(writeFileSafely(path(), "first"));
        QVERIFY(writeFileSafely(path(), "second, longer"));
        QCOMPARE(fileContent(path()), QByteArray("second, longer"));
        QVERIFY(writeFileSafely(path(), ""));
        QCOMPARE(fileContent(path()), QByteArray());
    }

    void refusesAFolderThatIsMissing() { QVERIFY(!writeFileSafely(folder_.filePath("none/a"), "x")); }

    // The limit of file sizes fails a write as a full disk does, at whatever byte the row says.
    void keepsTheOldContentOnAFullDisk_data()
    {
        QTest::addColumn<int>("room");
        QTest::addColumn<int>("size");
        for (const int size : {1, 100, 5000, 16384, 100000}) {
            for (const int room : {0, 1, size / 2, size - 1, size}) {
                if (room <= size)
                    QTest::addRow("%d of %d bytes", room, size) << room << size;
            }
        }
    }
    void keepsTheOldContentOnAFullDisk()
    {
        QFETCH(int, room);
        QFETCH(int, size);
        QVERIFY(writeFileSafely(path(), "old"));
        const QByteArray bytes(size, 'n');
        const pid_t child = inChild([&] {
            signal(SIGXFSZ, SIG_IGN);
            const rlimit limit = {rlim_t(room), rlim_t(room)};
            setrlimit(RLIMIT_FSIZE, &limit);
            _exit(writeFileSafely(path(), bytes) ? 1 : 0);
        });
        const bool fits = room == size;
        QCOMPARE(exitCode(child), fits ? 1 : 0);
        QCOMPARE(fileContent(path()), fits ? bytes : QByteArray("old"));
        QCOMPARE(QDir(folder_.path()).entryList(QDir::Files), QStringList("file")); // no remains
    }

    void keepsOneContentWhenKilled()
    {
        const QByteArray contents[] = {QByteArray(60000, 'a'), QByteArray(90000, 'b')};
        QVERIFY(writeFileSafely(path(), contents[0]));
        for (int round = 0; round < 40; ++round) {
            int started[2];
            QCOMPARE(pipe(started), 0);
            const pid_t child = inChild([&] {
                for (int i = 0;; ++i) {
                    writeFileSafely(path(), contents[i % 2]);
                    if (i == 1 && write(started[1], "x", 1) != 1)
                        _exit(1);
                }
            });
            char byte = 0;
            QCOMPARE(read(started[0], &byte, 1), ssize_t(1));
            usleep(useconds_t(137 * round)); // a different moment of a save each time
            kill(child, SIGKILL);
            QCOMPARE(exitCode(child), -1);
            close(started[0]);
            close(started[1]);
            const QByteArray left = fileContent(path());
            QVERIFY(left == contents[0] || left == contents[1]);
        }
    }

    void readsUpToTheLimit()
    {
        QVERIFY(writeFileSafely(path(), QByteArray(1000, 'x')));
        QCOMPARE(readFile(path(), 1000)->size(), 1000);
        QVERIFY(!readFile(path(), 999));
        QByteArray content("before");
        QCOMPARE(readFile(path(), 999, &content), ReadResult::Refused);
        QCOMPARE(content, QByteArray());
    }

    // Files of the kernel's have the size 0 and content all the same.
    void readsNoMoreThanTheLimitFromAFileThatLies()
    {
        QVERIFY(readFile(QStringLiteral("/proc/self/status"), 100000)->size() > 100);
        QVERIFY(!readFile(QStringLiteral("/proc/self/status"), 100));
    }

    void tellsMissingFromRefused()
    {
        QByteArray content;
        QCOMPARE(readFile(folder_.filePath("none"), 10, &content), ReadResult::Missing);
        QCOMPARE(readFile(folder_.path(), 10, &content), ReadResult::Refused);
        QCOMPARE(readFile(QStringLiteral("/dev/zero"), 10, &content), ReadResult::Refused);
        const QString fifo = folder_.filePath("fifo");
        QCOMPARE(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        QCOMPARE(readFile(fifo, 10, &content), ReadResult::Refused);
        QVERIFY(QFile::remove(fifo));
    }

private:
    QString path() const { return folder_.filePath("file"); }

    QTemporaryDir folder_;
};

TEST_CLASS(tst_SafeFile, testmain::CoreApplication)
#include "tst_safefile.moc"
