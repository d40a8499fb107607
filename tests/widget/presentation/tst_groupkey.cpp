// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The dialog that asks for a combination: how it grows, its time, its limit and its result.
#include "presentation/Notices.h"
#include "tests/support/TestMain.h"
#include "tests/widget/presentation/KeyDialogs.h"

#include <QCheckBox>
#include <QClipboard>

using namespace keydialogs;

namespace
{

// A combination whose time the test tells.
class TimedGroupKey : public GroupKey
{
public:
    qint64 age = 0;

protected:
    qint64 entryAge() const override { return age; }
};

} // namespace

class tst_GroupKey : public QObject
{
    Q_OBJECT

private slots:
    void init() { fixture::clean(); }

    void combinationsGrow_data()
    {
        QTest::addColumn<QVector<int>>("keys");
        QTest::addColumn<QString>("shown");
        using Keys = QVector<int>;
        QTest::newRow("none") << Keys{} << "";
        QTest::newRow("one") << Keys{A} << "A";
        QTest::newRow("held") << Keys{A, A, A} << "A";
        QTest::newRow("two") << Keys{A, B} << "A+B";
        QTest::newRow("back and forth") << Keys{A, B, A, B} << "A+B";
        QTest::newRow("three") << Keys{A, B, C} << "A+B+C";
        QTest::newRow("a fourth starts over") << Keys{A, B, C, D} << "D";
        QTest::newRow("and goes on") << Keys{A, B, C, D, A} << "D+A";
        QTest::newRow("the third again starts over") << Keys{A, B, C, C} << "C";
        QTest::newRow("and is held then") << Keys{A, B, C, C, C} << "C";
        QTest::newRow("part of a name") << Keys{Tab, A} << "Tab+A";
        QTest::newRow("part of a name, the same case") << Keys{0x14, C} << "CapsLock"; // C in CapsLock
        QTest::newRow("modifiers add nothing") << Keys{LeftShift, RightCtrl, LeftAlt, A} << "A";
        QTest::newRow("unknown adds nothing") << Keys{A, Unknown, B} << "A+B";
        QTest::newRow("the nameless key adds nothing") << Keys{A, Nameless} << "A";
        QTest::newRow("the key left of 1") << Keys{A, Backtick} << "A+`";
        QTest::newRow("a modifier as the fourth clears") << Keys{A, B, C, LeftShift} << "";
        QTest::newRow("a plus counts as two") << Keys{NumPlus, A, B} << "B";
        QTest::newRow("a modifier in between lets a key repeat") << Keys{A, LeftShift, A} << "A";
        QTest::newRow("Enter") << Keys{Enter} << "Enter";
    }
    void combinationsGrow()
    {
        QFETCH(QVector<int>, keys);
        QFETCH(QString, shown);
        GroupKey dialog;
        for (const int key : keys) {
            dialog.UpdateCapslockTip(key, true, false);
            dialog.UpdateCapslockTip(key, false, false);
        }
        QCOMPARE(field(dialog), shown);
    }

    void releasesAloneDoNothing()
    {
        GroupKey dialog;
        for (int key = 0; key < 0x200; ++key)
            dialog.UpdateCapslockTip(key, false, false);
        QCOMPARE(field(dialog), QString());
    }

    void everyKeyAloneIsItsName()
    {
        for (int key = 0; key < 0x200; ++key) {
            GroupKey dialog;
            dialog.UpdateCapslockTip(key, true, false);
            QCOMPARE(field(dialog), GroupKeyNameFromVirtualKey(key));
        }
    }

    void anEntryExpires()
    {
        TimedGroupKey dialog;
        dialog.age = 100000; // nothing was begun yet
        dialog.UpdateCapslockTip(A, true, false);
        QCOMPARE(field(dialog), QString("A"));
        dialog.age = 2000;
        dialog.UpdateCapslockTip(B, true, false);
        QCOMPARE(field(dialog), QString("A+B"));
        dialog.age = 2001;
        dialog.UpdateCapslockTip(B, true, false);
        QCOMPARE(field(dialog), QString("B"));
        dialog.age = 5000;
        dialog.UpdateCapslockTip(LeftShift, true, false);
        QCOMPARE(field(dialog), QString());
        dialog.age = 5000;
        dialog.UpdateCapslockTip(A, false, false); // a release neither adds nor clears
        QCOMPARE(field(dialog), QString());
    }

    void theTimeIsReal()
    {
        std::unique_ptr<GroupKey> dialog;
        // On a machine that stands still for two seconds the entry expires between the two keys.
        for (int round = 0; round < 10 && (!dialog || field(*dialog) != "A+B"); ++round) {
            dialog = std::make_unique<GroupKey>();
            dialog->UpdateCapslockTip(A, true, false);
            dialog->UpdateCapslockTip(B, true, false);
        }
        QCOMPARE(field(*dialog), QString("A+B"));
        QTRY_COMPARE_WITH_TIMEOUT((dialog->UpdateCapslockTip(A, true, false), field(*dialog)), QString("A"),
                                  30000);
    }

    void resultOfEveryChoice_data()
    {
        QTest::addColumn<int>("boxes");
        QTest::addColumn<QString>("keys");
        for (int boxes = 0; boxes < 16; ++boxes)
            for (const char *keys : {"", "A", "A+B", "A+B+C"})
                QTest::addRow("%d %s", boxes, keys) << boxes << QString(keys);
    }
    void resultOfEveryChoice()
    {
        QFETCH(int, boxes);
        QFETCH(QString, keys);
        GroupKey dialog;
        open(dialog);
        const char *names[] = {"Shift", "Ctrl", "Alt", "Win"};
        QStringList parts;
        for (int i = 0; i < 4; ++i)
            if (boxes & (1 << i)) {
                QTest::mouseClick(dialog.findChild<QCheckBox *>(names[i]), Qt::LeftButton, {}, QPoint(8, 14));
                parts += names[i];
            }
        for (const QString &key : keys.split('+', Qt::SkipEmptyParts)) {
            dialog.UpdateCapslockTip(key[0].unicode(), true, false);
            parts += key;
        }
        bool warned = false;
        if (parts.size() > 3)
            fixture::whenModal<GroupMaxThree>([&](NoticeDialog *notice) {
                warned = true;
                QCOMPARE(notice->pos(), dialog.pos() + QPoint(-100, -50));
                notice->on_NewHong_clicked();
            });
        click(dialog, "NewHong");
        QCOMPARE(warned, parts.size() > 3);
        QCOMPARE(dialog.isVisible(), parts.size() > 3);
        QCOMPARE(dialog.isAccepted(), parts.size() <= 3);
        QCOMPARE(dialog.text(), parts.size() > 3 ? QString() : parts.join('+'));
        if (parts.size() > 3) {
            QCOMPARE(field(dialog), QString());
            dialog.UpdateCapslockTip(A, true, false); // it may be the last key of before
            QCOMPARE(field(dialog), QString("A"));
        }
    }

    void cancelledThereIsNoResult()
    {
        for (const char *button : {"NewHong_2", "CloseButton"}) {
            GroupKey dialog;
            open(dialog);
            dialog.UpdateCapslockTip(A, true, false);
            click(dialog, button);
            QVERIFY(!dialog.isAccepted());
            QCOMPARE(dialog.text(), QString());
        }
    }

    void typingWritesNothingAndPastingWritesCapitals()
    {
        GroupKey dialog;
        open(dialog);
        auto *edit = dialog.findChild<KeyField *>("lineEdit");
        QTest::keyClicks(edit, "ctrl");
        QCOMPARE(edit->text(), QString());
        QVERIFY(!edit->isReadOnly());
        QGuiApplication::clipboard()->setText("ctrl");
        edit->paste();
        QCOMPARE(edit->text(), QString("CTRL"));
        click(dialog, "NewHong");
        QCOMPARE(dialog.text(), QString("CTRL"));
    }
};

TEST_CLASS(tst_GroupKey, fixture::ShippedLooks)

#include "tst_groupkey.moc"
