// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The walk "a new model in ten minutes" of docs/catalogue.md, taken as it is written: its blocks run in a
// copy of the tree's catalogue, and the program meets the model that they describe.
#include "catalogue/DeviceCatalogue.h"
#include "tests/e2e/Program.h"
#include "tests/support/UsbIdsLine.h"

#include <QComboBox>
#include <QProcess>

class tst_newmodel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        for (const char *folder : {"usersetting", "build/product/usersetting", "build/tools/encode"})
            QVERIFY(QDir(tree_.path()).mkpath(QLatin1String(folder)));
        for (const char *file : {"usersetting/catalogue.ini", "usersetting/driver_sensor.h"})
            QVERIFY(QFile::copy(QStringLiteral(SOURCE_FOLDER "/") + QLatin1String(file), path(file)));
        const char *const encoder = "build/tools/encode/encode-catalogue"; // as the walk calls it
        QVERIFY(QStringLiteral(ENCODER).endsWith(QStringLiteral("/tools/encode/encode-catalogue")));
        QVERIFY(QFile::link(QStringLiteral(ENCODER), path(encoder)));
    }

    void theProgramShowsIt()
    {
        const QStringList blocks = shellBlocks(section());
        QCOMPARE(blocks.size(), 4);
        for (const QString &block : blocks)
            QVERIFY2(run(block), errors_.constData());
        ConfigReader::instance().open(path("build/product/usersetting/Config.ini"));
        QCOMPARE(DeviceCatalogue().total(), 5);

        QFile file(path("ten.scenario"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray scenario = file.readAll();
        QVERIFY(scenario.startsWith(UsbIdsLine)); // as the walk's USB ids, which the fixture puts first
        Program program(scenario.remove(0, int(strlen(UsbIdsLine))).constData());
        program.open(QStringLiteral("rx10"));
        program.click("SensorButton");
        program.expect("five stages", [&program] {
            const auto *const stages = windows::visible<QComboBox>(QStringLiteral("ChooseEvent"));
            return stages && stages->count() == 5 && program.agrees("ten");
        });
        QCOMPARE(program.script.run(), QString());
        QCOMPARE(SelectedDevice::info().DriveIndex, 4);
        QCOMPARE(SelectedDevice::info().Mid, uint8_t(10));
        QCOMPARE(DeviceCatalogue().number(4, "KeyNumber"), 7);
    }

private:
    QString path(const char *below) const { return tree_.filePath(QLatin1String(below)); }

    static QString section()
    {
        QFile file(QStringLiteral(SOURCE_FOLDER "/docs/catalogue.md"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).section(QStringLiteral("## A new model in ten minutes"), 1);
    }
    // The fenced blocks, without the indentation of the list they stand in.
    static QStringList shellBlocks(const QString &text)
    {
        QStringList blocks;
        const QRegularExpression fence(QStringLiteral("^( *)```sh\n(.*?)^ *```$"),
                                       QRegularExpression::MultilineOption |
                                           QRegularExpression::DotMatchesEverythingOption);
        for (auto each = fence.globalMatch(text); each.hasNext();) {
            const QRegularExpressionMatch match = each.next();
            QString block = QLatin1Char('\n') + match.captured(2);
            blocks << block.replace(QLatin1Char('\n') + match.captured(1), QStringLiteral("\n"));
        }
        return blocks;
    }
    bool run(const QString &block)
    {
        QProcess shell;
        shell.setWorkingDirectory(tree_.path());
        shell.start(QStringLiteral("sh"), {QStringLiteral("-ec"), block});
        const bool ended = shell.waitForFinished(60000);
        errors_ = shell.readAllStandardError();
        return ended && shell.exitStatus() == QProcess::NormalExit && shell.exitCode() == 0;
    }

    QTemporaryDir tree_;
    QByteArray errors_;
};

TEST_CLASS(tst_newmodel, ProgramSetUp)
#include "tst_newmodel.moc"
