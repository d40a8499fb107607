// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// On a real X server: a notice, which no window manager looks after, takes the keyboard, keeps it when the
// window behind is activated, and gives it back.
#include "presentation/Notices.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/TestMain.h"
#include "tests/widget/Fixture.h"

#include <QWindow>

class tst_NoticeFocus : public QObject
{
    Q_OBJECT

private slots:
    void takesKeepsAndGivesBack()
    {
        QWidget ground;
        ground.resize(883, 630);
        ground.show();
        ground.activateWindow();
        QTRY_COMPARE(QGuiApplication::focusWindow(), ground.windowHandle());

        QuestiondialogB notice;
        notice.placeOver(&ground);
        notice.open();
        QTRY_COMPARE(QGuiApplication::focusWindow(), notice.windowHandle());

        ground.activateWindow();
        ground.raise();
        QTRY_COMPARE(QGuiApplication::focusWindow(), notice.windowHandle());

        QTest::keyClick(QGuiApplication::focusWindow(), Qt::Key_Escape);
        QVERIFY(!notice.isVisible());
        QTRY_COMPARE(QGuiApplication::focusWindow(), ground.windowHandle());
    }

    void theSecondStandsOnTheFirst()
    {
        QWidget ground;
        ground.resize(883, 630);
        ground.show();
        MouseOffLine first;
        first.open();
        QTRY_COMPARE(QGuiApplication::focusWindow(), first.windowHandle());
        QuestiondialogB second;
        second.open();
        QTRY_COMPARE(QGuiApplication::focusWindow(), second.windowHandle());
        second.close();
        QTRY_COMPARE(QGuiApplication::focusWindow(), first.windowHandle());
    }
};

TEST_CLASS(tst_NoticeFocus, fixture::ShippedLooks)

#include "tst_noticefocus.moc"
