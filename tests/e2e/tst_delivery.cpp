// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The program as it is delivered: from an installed tree, through its link, beside the emulator from the
// same tree; with another device library in the place of ours; started twice; and with a catalogue that is
// none.
#include "tests/support/TestMain.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void end(QProcess &process)
{
    process.terminate();
    if (!process.waitForFinished(10000))
        process.kill();
    process.waitForFinished(10000);
}

QProcessEnvironment programEnvironment(const QTemporaryDir &work)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), work.filePath(QStringLiteral("home")));
    // The key that keeps a second copy out is made from this folder: a program that runs beside is no matter.
    environment.insert(QStringLiteral("TMPDIR"), work.path());
    return environment;
}

// A copy of the program with its windows and its calls to the layer in files of its own.
class WatchedProgram
{
public:
    WatchedProgram(const QTemporaryDir &work, const QString &name, const QString &path)
        : calls(work.filePath(name + QStringLiteral(".calls")))
        , windows(work.filePath(name + QStringLiteral(".windows")))
    {
        QProcessEnvironment environment = programEnvironment(work);
        environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(OTHER_LIBRARY ":" WINDOW_LOG));
        environment.insert(QStringLiteral("OTHER_LIBRARY_LOG"), calls);
        environment.insert(QStringLiteral("WINDOW_LOG"), windows);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(path, QStringList());
    }
    ~WatchedProgram()
    {
        if (process.state() != QProcess::NotRunning)
            end(process);
    }
    bool shows(const char *window) const { return contentOf(windows).split('\n').contains(window); }
    // By the button of its window; true when the process ends in order.
    bool close()
    {
        QFile order(windows + QStringLiteral(".close"));
        if (!order.open(QIODevice::WriteOnly))
            return false;
        return endsInOrder();
    }
    bool endsInOrder()
    {
        return (process.state() == QProcess::NotRunning || process.waitForFinished(30000)) &&
               process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

    const QString calls, windows;
    QProcess process;
};

// A folder with the program and its data, but for the catalogue.
QString folderWithoutCatalogue(const QTemporaryDir &work)
{
    const QString folder = work.filePath(QStringLiteral("tree"));
    QDir().mkpath(folder + QStringLiteral("/usersetting"));
    const QDir product(QStringLiteral(PRODUCT_DIR));
    QFile::copy(product.filePath(QStringLiteral("morlen")), folder + QStringLiteral("/morlen"));
    for (const char *name : {"Picture", "Language", "driver_sensor.h", "libHIDUsb.so"})
        QFile::link(product.filePath(QLatin1String(name)), folder + QLatin1Char('/') + QLatin1String(name));
    return folder;
}

} // namespace

class tst_delivery : public QObject
{
    Q_OBJECT

private:
    void startProgram(QProcess &program, const QString &path, const QProcessEnvironment &environment)
    {
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start(path, QStringList());
        QVERIFY2(program.waitForStarted(), qPrintable(path));
    }

private slots:
    void anInstalledTreeRuns()
    {
        QTemporaryDir work;
        const QString prefix = work.filePath(QStringLiteral("prefix"));
        QCOMPARE(QProcess::execute(QStringLiteral(CMAKE_PROGRAM),
                                   {QStringLiteral("--install"), QStringLiteral(BUILD_DIR),
                                    QStringLiteral("--prefix"), prefix}),
                 0);
        const QString tree = prefix + QLatin1Char('/') + QStringLiteral(INSTALL_DIR);
        for (const char *name :
             {"morlen", "mouse-emulator", "default.scenario", "driver_sensor.h", "usersetting/Config.ini",
              "Language/en.json", "Picture/Dialog/Logo.png", "Picture/Dialog/Logo@2x.png", "70-morlen.rules"})
            QVERIFY2(QFile::exists(tree + QLatin1Char('/') + QLatin1String(name)), name);
        QVERIFY(!QFile::exists(tree + QStringLiteral("/morlen-tour")));
        QVERIFY(QFile::exists(prefix + QStringLiteral("/lib/udev/rules.d/70-morlen.rules")));

        const QString bus = work.filePath(QStringLiteral("bus"));
        QDir().mkpath(bus);
        QProcess emulator;
        emulator.start(tree + QStringLiteral("/mouse-emulator"), {QStringLiteral("--bus"), bus});
        QVERIFY(emulator.waitForReadyRead(20000));

        QProcessEnvironment environment = programEnvironment(work);
        environment.insert(QStringLiteral("HIDUSB_BUS"), bus);
        QProcess program;
        startProgram(program, prefix + QStringLiteral("/bin/morlen"), environment);
        const auto questions = [&] {
            QProcess order;
            order.start(tree + QStringLiteral("/mouse-emulator"),
                        {QStringLiteral("send"), QStringLiteral("--bus"), bus,
                         QStringLiteral("count rx1k identity")});
            order.waitForFinished(10000);
            return order.readAllStandardOutput().split('\n').value(0).simplified().split(' ').last().toInt();
        };
        QTRY_VERIFY_WITH_TIMEOUT(questions() > 0, 30000);
        QCOMPARE(program.state(), QProcess::Running);
        end(program);
        end(emulator);
        const QStringList folders = QDir(work.filePath(QStringLiteral("home/ZANVO Morlen Software")))
                                        .entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(folders, (QStringList{"Device_Info", "Exception", "Log", "usersetting"}));
    }

    void anotherLibraryStandsInItsPlace()
    {
        QTemporaryDir work;
        const QString log = work.filePath(QStringLiteral("calls"));
        QProcessEnvironment environment = programEnvironment(work);
        environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(OTHER_LIBRARY));
        environment.insert(QStringLiteral("OTHER_LIBRARY_LOG"), log);
        QProcess program;
        startProgram(program, QStringLiteral(PRODUCT_DIR "/morlen"), environment);
        for (const char *call : {"StartUsbChanged", "UsbFinderC_FindHidDevicesByDefaultDeviceId",
                                 "UsbFinderC_GetDeviceInfo", "UsbFinderC_GetDeviceOnLineWithUsbAddress"})
            QTRY_VERIFY_WITH_TIMEOUT(contentOf(log).contains(call), 30000);
        QCOMPARE(program.state(), QProcess::Running);
        end(program);
    }

    void aSecondStartSaysSoAndLeavesTheFirstAlone()
    {
        QTemporaryDir work;
        const QString path = QStringLiteral(PRODUCT_DIR "/morlen");
        WatchedProgram first(work, QStringLiteral("first"), path);
        QTRY_VERIFY_WITH_TIMEOUT(first.shows("DialogMain"), 30000);
        // The last question of the search, which is asked for the search itself and for the tile.
        const auto isSearched = [&first] {
            const QByteArray calls = contentOf(first.calls);
            return calls.count("UsbFinderC_GetDeviceOnLineWithUsbAddress\n") == 2 &&
                   calls.endsWith("UsbFinderC_GetDeviceOnLineWithUsbAddress\n");
        };
        QTRY_VERIFY_WITH_TIMEOUT(isSearched(), 30000);
        const QByteArray before = contentOf(first.calls);

        WatchedProgram second(work, QStringLiteral("second"), path);
        QVERIFY2(second.endsInOrder(), contentOf(second.windows));
        QCOMPARE(contentOf(second.windows), QByteArray("ExeIsRun\n"));
        QCOMPARE(contentOf(second.calls), QByteArray());

        QCOMPARE(first.process.state(), QProcess::Running);
        QCOMPARE(contentOf(first.windows), QByteArray("DialogMain\n"));
        QCOMPARE(contentOf(first.calls), before);
        QVERIFY(first.close()); // and the event loop ends with the window
        QVERIFY(
            contentOf(first.calls)
                .endsWith("UsbServer_SetPCDriverStatus\nStopUsbChanged\nUsbServer_Exit\nStopUsbChanged\n"));

        WatchedProgram next(work, QStringLiteral("next"), path);
        QTRY_VERIFY_WITH_TIMEOUT(next.shows("DialogMain"), 30000);
        QVERIFY(next.close());
    }

    void aCatalogueThatIsNoneIsNoCrash_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("missing") << false << QByteArray();
        QTest::newRow("empty") << true << QByteArray();
        QTest::newRow("nonsense") << true
                                  << QByteArray("\x7F"
                                                "ELF\0\xFF[[[=\n[Option\nDeviceTotal=-7",
                                                30);
        QTest::newRow("models that are not there")
            << true << QByteArray("[Option]\nDeviceTotal=255\nVID=MTIwOQ==\nWireless_PID=MDAwMg==\nCID=!!\n");
        QTest::newRow("a folder in its place") << true << QByteArray("folder");
    }
    void aCatalogueThatIsNoneIsNoCrash()
    {
        QFETCH(bool, exists);
        QFETCH(QByteArray, content);
        QTemporaryDir work;
        const QString tree = folderWithoutCatalogue(work);
        const QString catalogue = tree + QStringLiteral("/usersetting/Config.ini");
        if (content == "folder") {
            QDir().mkpath(catalogue);
        } else if (exists) {
            QFile file(catalogue);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
        }
        WatchedProgram program(work, QStringLiteral("program"), tree + QStringLiteral("/morlen"));
        QTRY_VERIFY_WITH_TIMEOUT(program.shows("DialogMain"), 30000);
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(program.calls).contains("StartUsbChanged"), 30000);
        QVERIFY(program.close());
        const QString data = work.filePath(QStringLiteral("home/ZANVO Morlen Software"));
        QVERIFY(QDir(data + QStringLiteral("/Exception")).isEmpty());
        QVERIFY(QDir(data + QStringLiteral("/Device_Info")).isEmpty());
    }
};

TEST_CLASS(tst_delivery, testmain::CoreApplication)
#include "tst_delivery.moc"
