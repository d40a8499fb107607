// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The window on a desktop with a tray: it hides behind an icon, comes back by the icon, and its menu ends
// the program.
#include "catalogue/LanguageChoice.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/TestMain.h"
#include "tests/support/TrayHost.h"
#include "tests/widget/app/MainWindow.h"

#include <QMenu>
#include <QProcess>

namespace
{

// The toolkit's own window of the icon; none while the icon is hidden.
QWidget *iconWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (widget->inherits("QSystemTrayIconSys") && widget->isVisible())
            return widget;
    return nullptr;
}

QMenu *menu()
{
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (auto *found = qobject_cast<QMenu *>(widget))
            return found;
    return nullptr;
}

} // namespace

class tst_Tray : public MainWindow
{
    Q_OBJECT

    void hide()
    {
        emit PostMsg::instance()->SigChangeSize(0);
        QVERIFY(!window->isVisible());
        QVERIFY(!window->isMinimized());
        QTRY_VERIFY(tray->docked() > 0 && iconWindow());
        fake.clearCalls();
    }

public:
    static inline TrayHost *tray = nullptr;

    // The program's end by the menu, in a process of its own; prints which calls the layer got.
    int endByMenu()
    {
        begin();
        emit PostMsg::instance()->SigChangeSize(0);
        fake.clearCalls();
        std::atexit([] {
            std::printf("%d calls\n", int(FakeHidUsb::instance().calls().size()));
            std::fflush(stdout);
        });
        menu()->actions().at(1)->trigger();
        return 1;
    }

private slots:
    void init() { begin(); }
    void cleanup() { window.reset(); }

    void hidingLeavesAnIconWithAMenu()
    {
        QVERIFY(!iconWindow());
        hide();
        QCOMPARE(iconWindow()->toolTip(), applicationName());
        QCOMPARE(menu()->actions().size(), 2);
        QCOMPARE(menu()->actions().at(0)->text(), language::text(language::Section::home, "OpenMain", 0));
        QCOMPARE(menu()->actions().at(1)->text(), language::text(language::Section::home, "Exit", 0));
        {
            const fixture::OtherLanguage other(R"({"mouse": {"home": {"OpenMain": "Offnen"}}})");
            emit PostMsg::instance()->SigAllLanguage(0);
            QCOMPARE(menu()->actions().at(0)->text(), "Offnen");
        }
        emit PostMsg::instance()->SigAllLanguage(0);
        QCOMPARE(menu()->actions().at(0)->text(), language::text(language::Section::home, "OpenMain", 0));
    }

    // As a login starts it: the window was never shown, and the device hears of nothing.
    void aHiddenStartWaitsInTheTray()
    {
        fixture::clean();
        fake.addDevice(fixture::device("dev", 6, Receiver8K));
        window = std::make_unique<DialogMain>();
        window->startHidden();
        QVERIFY(!window->isVisible() && !window->isMinimized());
        QTRY_VERIFY(tray->docked() > 0 && iconWindow());
        QTRY_VERIFY(fake.idle());
        QCOMPARE(fake.count("UsbServer_SetPCDriverStatus"), 0);
        QTest::mouseClick(iconWindow(), Qt::LeftButton);
        QVERIFY(window->isVisible());
        QTRY_VERIFY(!iconWindow());
    }

    void comesBack_data()
    {
        QTest::addColumn<QString>("by");
        QTest::addColumn<bool>("takesCharge");
        QTest::newRow("click") << "click" << true;
        QTest::newRow("double click") << "double" << false;
        QTest::newRow("menu") << "menu" << true;
    }
    void comesBack()
    {
        QFETCH(QString, by);
        QFETCH(bool, takesCharge);
        openDevicePage();
        int shownFirst = 0; // the window is there before the device hears of it
        fake.setHook([&](const std::string &call) {
            if (call == "UsbServer_SetPCDriverStatus" && window->isVisible() && iconWindow())
                ++shownFirst;
        });
        for (int round = 0; round < 2; ++round) { // the icon works each time, and once
            hide();
            shownFirst = 0;
            if (by == "click")
                QTest::mouseClick(iconWindow(), Qt::LeftButton);
            else if (by == "double")
                window->on_activatedSysTrayIcon(QSystemTrayIcon::DoubleClick);
            else
                menu()->actions().at(0)->trigger();
            QVERIFY(window->isVisible());
            QTRY_VERIFY(!iconWindow());
            QCOMPARE(fake.count("UsbServer_SetPCDriverStatus"), takesCharge ? 1 : 0);
            QCOMPARE(shownFirst, takesCharge ? 1 : 0);
        }
        fake.setHook(nullptr);
        QTRY_VERIFY(fake.idle());
    }

    void theOtherButtonShowsTheMenuAtThePointer()
    {
        hide();
        QTest::mouseClick(iconWindow(), Qt::RightButton);
        QTRY_VERIFY(menu()->isVisible());
        QVERIFY(!window->isVisible());
        menu()->close();
        QCursor::setPos(300, 200);
        QTRY_COMPARE(QCursor::pos(), QPoint(300, 200));
        window->on_activatedSysTrayIcon(QSystemTrayIcon::Context);
        QTRY_VERIFY(menu()->isVisible());
        QCOMPARE(menu()->pos(), QPoint(300, 200));
        menu()->close();
    }

    void theSecondEntryEndsAtOnce()
    {
        QProcess program;
        program.start(QCoreApplication::applicationFilePath(), {"endByMenu"});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(program.readAllStandardOutput(), QByteArray("0 calls\n"));
    }
};

namespace
{

struct TrayDesktop {
    TrayDesktop(int &argc, char **argv) : looks(argc, argv) { tst_Tray::tray = &tray; }

    TrayHost tray;
    fixture::ShippedLooks looks;
};

int endByMenu(int argc, char **argv)
{
    const TrayDesktop setUp(argc, argv);
    return tst_Tray().endByMenu();
}

} // namespace

TEST_CHILD(endByMenu)
TEST_CLASS(tst_Tray, TrayDesktop)

#include "tst_tray.moc"
