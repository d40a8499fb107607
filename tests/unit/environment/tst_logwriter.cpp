// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT

#include "environment/DataRoot.h"
#include "environment/LogWriter.h"
#include "tests/support/TestMain.h"

#include <QTemporaryDir>
#include <QtTest>
#include <thread>

class tst_LogWriter : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        home_ = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(home_->path()));
        makeDataFolders();
    }

    void isInstalledByNobody()
    {
        // The handler before any installation is the toolkit's own.
        const QtMessageHandler current = qInstallMessageHandler(nullptr);
        qInstallMessageHandler(current);
        QVERIFY(current != logMessageHandler);
    }

    void writesALine_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("level");
        QTest::newRow("debug") << int(QtDebugMsg) << "Debug:";
        QTest::newRow("critical") << int(QtCriticalMsg) << "Critical:";
        QTest::newRow("fatal") << int(QtFatalMsg) << "Fatal:";
        QTest::newRow("warning") << int(QtWarningMsg) << "";
        QTest::newRow("info") << int(QtInfoMsg) << "";
    }
    void writesALine()
    {
        QFETCH(int, type);
        QFETCH(QString, level);
        const QMessageLogContext context("some/file.cpp", 42, "function", "category");
        logMessageHandler(QtMsgType(type), context, QStringLiteral("naïve %4 text"));
        const QByteArray content = log();
        if (level.isEmpty()) {
            QCOMPARE(content, QByteArray());
            return;
        }
        const QRegularExpression line(
            QRegularExpression::escape(level) +
            QStringLiteral(" File:\\(some/file.cpp\\) Line:\\(42\\) naïve %4 text "
                           "\\(\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\)\r\n"));
        QVERIFY(QRegularExpression('^' + line.pattern() + '$').match(QString::fromUtf8(content)).hasMatch());
    }

    void appendsWholeLinesFromManyThreads()
    {
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([] {
                for (int i = 0; i < 50; ++i)
                    logMessageHandler(QtDebugMsg, QMessageLogContext(), QString(300, QLatin1Char('x')));
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        const QList<QByteArray> lines = log().split('\n');
        QCOMPARE(lines.size(), 201);
        for (const QByteArray &line : lines.mid(0, 200))
            QVERIFY(line.startsWith("Debug: File:() Line:(0) xxx") && line.endsWith(")\r"));
    }

    void losesTheLineWithoutAFolder()
    {
        QDir(dataRoot() + "/Log").removeRecursively();
        logMessageHandler(QtDebugMsg, QMessageLogContext(), QStringLiteral("lost"));
        QVERIFY(!QFileInfo::exists(dataRoot() + "/Log"));
    }

private:
    // All of the day's text; a test that runs over midnight has two.
    static QByteArray log()
    {
        QByteArray content;
        for (const QFileInfo &entry :
             QDir(dataRoot() + "/Log").entryInfoList({QStringLiteral("2*-*-*.txt")}, QDir::Files)) {
            QFile file(entry.filePath());
            if (file.open(QIODevice::ReadOnly))
                content += file.readAll();
        }
        return content;
    }

    std::unique_ptr<QTemporaryDir> home_;
};

TEST_CLASS(tst_LogWriter, testmain::CoreApplication)
#include "tst_logwriter.moc"
