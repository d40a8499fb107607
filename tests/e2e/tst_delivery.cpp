// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The program as it is delivered: from an installed tree, through its link, beside the emulator from the
// same tree; and with another device library in the place of ours.
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
    return environment;
}

} // namespace

class tst_delivery : public QObject
{
    Q_OBJECT

private:
    // The shared memory of one running copy keeps another one out, so the cases take turns.
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
             {"morlen", "libHIDUsb.so", "mouse-emulator", "driver_sensor.h", "usersetting/Config.ini",
              "Language/en.json", "Picture/Dialog/Logo.png", "Picture/Dialog/Logo@2x.png"})
            QVERIFY2(QFile::exists(tree + QLatin1Char('/') + QLatin1String(name)), name);
        QVERIFY(!QFile::exists(tree + QStringLiteral("/morlen-tour")));

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
};

QTEST_GUILESS_MAIN(tst_delivery)
#include "tst_delivery.moc"
