// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "environment/Scale.h"
#include "tests/support/TestMain.h"

#include <QProcess>
#include <QtTest>

class tst_Scale : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        qunsetenv("QT_SCALE_FACTOR");
        qunsetenv("DISPLAY");
    }

    // Behind a second start, which the program's platform was set for.
    void thePlatformIsTheUsersAgain()
    {
        for (const char *own : {"", "offscreen;xcb"}) {
            qputenv("QT_QPA_PLATFORM", "xcb");
            qputenv("MORLEN_OWN_PLATFORM", own);
            correctScaleFactor("xcb", nullptr);
            QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArray(own));
            QVERIFY(!qEnvironmentVariableIsSet("MORLEN_OWN_PLATFORM"));
        }
        qunsetenv("QT_QPA_PLATFORM");
    }

    void turnsWidthIntoText_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<QByteArray>("text");
        const QPair<int, const char *> rows[] = {{-1, ""},    {0, ""},     {1366, ""},  {1920, ""},
                                                 {1921, "1"}, {2560, "1"}, {3839, "1"}, {3840, "2"},
                                                 {5759, "2"}, {5760, "3"}, {7680, "4"}};
        for (const auto &[width, text] : rows)
            QTest::addRow("%d", width) << width << QByteArray(text);
    }
    void turnsWidthIntoText()
    {
        QFETCH(int, width);
        QFETCH(QByteArray, text);
        QCOMPARE(scaleFactorText(width), text);
    }

    void leavesTheScaleAloneWithoutADisplay()
    {
        QCOMPARE(physicalDesktopWidth(), 0);
        applyScaleFactor();
        QVERIFY(!qEnvironmentVariableIsSet("QT_SCALE_FACTOR"));
        qputenv("DISPLAY", "no such server");
        QCOMPARE(physicalDesktopWidth(), 0);
    }

    void asksTheServer_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<bool>("outputs");
        for (const int width : {1280, 1920, 1922, 3840}) {
            QTest::addRow("%d", width) << width << true;
            QTest::addRow("%d without outputs", width) << width << false;
        }
    }
    void asksTheServer()
    {
        QFETCH(int, width);
        QFETCH(bool, outputs);
        QProcess server;
        QStringList arguments = {"-displayfd", "1",       "-noreset", "-nolisten",
                                 "tcp",        "-screen", "0",        QStringLiteral("%1x600x24").arg(width)};
        if (!outputs)
            arguments << "-extension"
                      << "RANDR";
        server.start(QStringLiteral("Xvfb"), arguments);
        QVERIFY2(server.waitForReadyRead(30000), "Xvfb did not start");
        qputenv("DISPLAY", ':' + server.readLine().trimmed());
        QCOMPARE(physicalDesktopWidth(), width);
        applyScaleFactor();
        QCOMPARE(qgetenv("QT_SCALE_FACTOR"), scaleFactorText(width));
        server.terminate();
        QVERIFY(server.waitForFinished(30000));
    }
};

TEST_CLASS(tst_Scale, testmain::CoreApplication)
#include "tst_scale.moc"
