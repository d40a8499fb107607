// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The key dialogs with a real keyboard on a real X server, from the keys to the result, under several layouts
// and without a mouse.
#include "presentation/Notices.h"
#include "tests/support/TestMain.h"
#include "tests/widget/presentation/KeyDialogs.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QProcess>
#include <QWindow>

using namespace keydialogs;

namespace
{

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    QVERIFY2(process.waitForFinished() && process.exitCode() == 0, qPrintable(process.errorString()));
}

void press(const QStringList &keys) { run("xdotool", QStringList{"key", "--delay", "0"} + keys); }

} // namespace

class tst_RealKeyDialogs : public QObject
{
    Q_OBJECT

    QWidget page;

    void open(NoticeWindow &dialog)
    {
        dialog.placeOver(&page);
        dialog.open();
        QTRY_COMPARE(QGuiApplication::focusWindow(), dialog.windowHandle());
    }

private slots:
    void initTestCase()
    {
        page.resize(883, 630);
        page.show();
        page.activateWindow();
        QTRY_COMPARE(QGuiApplication::focusWindow(), page.windowHandle());
    }

    // A physical key has one name, whatever the layout makes of it. Numbers are those of the server.
    void theLayoutDoesNotMatter_data()
    {
        QTest::addColumn<QString>("typed"); // by the key that is Y where the names come from
        QTest::newRow("us") << "y";
        QTest::newRow("de") << "z";
        QTest::newRow("ru") << "н";
    }
    void theLayoutDoesNotMatter()
    {
        QFETCH(QString, typed);
        run("setxkbmap", {QTest::currentDataTag()});
        QLineEdit probe;
        probe.show();
        probe.activateWindow();
        QTRY_COMPARE(QGuiApplication::focusWindow(), probe.windowHandle());
        QTRY_VERIFY_WITH_TIMEOUT(
            (press({"29"}), QCoreApplication::processEvents(), probe.text().endsWith(typed)), 10000);
        probe.hide();
        GroupKey group;
        open(group);
        press({"29", "52", "24"});
        QTRY_COMPARE(field(group), QString("Y+Z+Q"));
        group.on_NewHong_clicked();
        QCOMPARE(group.text(), QString("Y+Z+Q"));
        addKey single;
        open(single);
        press({"34"});
        QTRY_COMPARE(field(single), QString("["));
        single.on_NewHong_clicked();
        QCOMPARE(single.keyName(), QString("["));
        run("setxkbmap", {"us"});
    }

    void aCombinationWithoutAMouse()
    {
        GroupKey dialog;
        open(dialog);
        press({"Return", "Tab"});
        QTRY_COMPARE(field(dialog), QString("Enter+Tab"));
        press({"shift+Tab"});
        QTRY_VERIFY(dialog.focusWidget() != dialog.findChild<KeyField *>());
        auto *win = dialog.findChild<QCheckBox *>("Win");
        for (int i = 0; i < 8 && dialog.focusWidget() != win; ++i) {
            const QWidget *before = dialog.focusWidget();
            press({"shift+Tab"});
            QTRY_VERIFY(dialog.focusWidget() != before);
        }
        press({"space", "Return"});
        QTRY_VERIFY(!dialog.isVisible());
        QVERIFY(dialog.isAccepted());
        QCOMPARE(dialog.text(), QString("Win+Enter+Tab"));
    }

    // The key that ends the notice is none of the next entry.
    void tooManyKeysStartOver()
    {
        GroupKey dialog;
        open(dialog);
        dialog.findChild<QCheckBox *>("Shift")->setChecked(true);
        press({"a", "b", "c"});
        QTRY_COMPARE(field(dialog), QString("A+B+C"));
        bool warned = false;
        fixture::whenModal<GroupMaxThree>([&](NoticeDialog *notice) {
            QTRY_COMPARE(QGuiApplication::focusWindow(), notice->windowHandle());
            warned = true;
            press({"Return"});
        });
        dialog.on_NewHong_clicked();
        QVERIFY(warned);
        QTRY_COMPARE(QGuiApplication::focusWindow(), dialog.windowHandle());
        QCOMPARE(field(dialog), QString());
        press({"d"});
        QTRY_COMPARE(field(dialog), QString("D"));
    }

    void oneKeyWithoutAMouse()
    {
        addKey dialog;
        open(dialog);
        press({"Escape"});
        QTRY_COMPARE(field(dialog), QString("Esc"));
        press({"Control_R"});
        QTRY_COMPARE(field(dialog), QString("RCtrl"));
        press({"shift+Tab"});
        QTRY_VERIFY(dialog.focusWidget() != dialog.findChild<KeyField *>());
        press({"Return"});
        QTRY_VERIFY(!dialog.isVisible());
        QVERIFY(dialog.isAccepted());
        QCOMPARE(dialog.keyName(), QString("RCtrl"));
    }
};

TEST_CLASS(tst_RealKeyDialogs, fixture::ShippedLooks)

#include "tst_realkeydialogs.moc"
