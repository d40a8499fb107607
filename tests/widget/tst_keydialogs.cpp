// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The dialogs that ask for a combination and for a key: what they make of the keyboard.
#include "binding/dialogs/GroupKey.h"
#include "binding/dialogs/KeyField.h"
#include "binding/dialogs/addKey.h"
#include "binding/keys/KeyVocabulary.h"
#include "presentation/Notices.h"
#include "presentation/language/LanguageTables.h"
#include "tests/widget/Fixture.h"

#include <QCheckBox>
#include <QClipboard>
#include <QToolButton>

namespace
{

constexpr int A = 0x41, B = 0x42, C = 0x43, D = 0x44, F = 0x46, Tab = 0x09, Enter = 0x0D, Backtick = 0xC0,
              LeftShift = 0xA0, RightCtrl = 0xA3, LeftAlt = 0xA4, NumPlus = 0x6B, Unknown = 0x15;
// The kernel's numbers of the same.
constexpr int EvTab = 15, EvEnter = 28, EvEsc = 1, EvSpace = 57, EvA = 30, EvB = 48, EvLeftShift = 42,
              EvLeftAlt = 56, EvRightCtrl = 97, EvEnd = 107;

QString field(const QWidget &dialog) { return dialog.findChild<KeyField *>("lineEdit")->text(); }

void click(const QWidget &dialog, const char *button)
{
    QTest::mouseClick(dialog.findChild<QToolButton *>(button), Qt::LeftButton);
}

void open(QWidget &dialog)
{
    dialog.show();
    QApplication::setActiveWindow(&dialog);
}

// A key of a real keyboard, as the window gets it.
void send(QWidget &dialog, QEvent::Type type, int evdev, Qt::Key key, Qt::KeyboardModifiers with = {})
{
    QKeyEvent event(type, key, with, quint32(evdev + 8), 0, 0, {});
    QCoreApplication::sendEvent(dialog.windowHandle(), &event);
}
void touch(QWidget &dialog, int evdev, Qt::Key key, Qt::KeyboardModifiers with = {})
{
    send(dialog, QEvent::KeyPress, evdev, key, with);
    send(dialog, QEvent::KeyRelease, evdev, key, with);
}
void leaveField(QWidget &dialog)
{
    send(dialog, QEvent::KeyPress, EvLeftShift, Qt::Key_Shift);
    send(dialog, QEvent::KeyPress, EvTab, Qt::Key_Backtab, Qt::ShiftModifier);
    send(dialog, QEvent::KeyRelease, EvTab, Qt::Key_Backtab, Qt::ShiftModifier);
    send(dialog, QEvent::KeyRelease, EvLeftShift, Qt::Key_Shift);
}

// A combination whose time the test tells.
class TimedGroupKey : public GroupKey
{
public:
    qint64 age = 0;

protected:
    qint64 entryAge() const override { return age; }
};

} // namespace

class tst_KeyDialogs : public QObject
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
        QTest::newRow("the nameless key adds nothing") << Keys{A, Backtick} << "A";
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
        GroupKey dialog;
        dialog.UpdateCapslockTip(A, true, false);
        QTRY_COMPARE_WITH_TIMEOUT((dialog.UpdateCapslockTip(B, true, false), field(dialog)), QString("A+B"),
                                  1);
        QTRY_COMPARE_WITH_TIMEOUT((dialog.UpdateCapslockTip(A, true, false), field(dialog)), QString("A"),
                                  8000);
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

    void theKeyboardEntersKeys()
    {
        GroupKey dialog;
        open(dialog);
        touch(dialog, EvEnter, Qt::Key_Return);
        touch(dialog, EvEsc, Qt::Key_Escape);
        QCOMPARE(field(dialog), QString("Enter+Esc"));
        touch(dialog, EvTab, Qt::Key_Tab);
        QCOMPARE(field(dialog), QString("Enter+Esc+Tab"));
        touch(dialog, EvSpace, Qt::Key_Space);
        QCOMPARE(field(dialog), QString("Space"));
        QVERIFY(dialog.isVisible());
        QCOMPARE(dialog.focusWidget(), dialog.findChild<KeyField *>("lineEdit"));
    }

    void keysWithAltEnterNothing()
    {
        GroupKey dialog;
        open(dialog);
        send(dialog, QEvent::KeyPress, EvLeftAlt, Qt::Key_Alt);
        touch(dialog, EvA, Qt::Key_A, Qt::AltModifier);
        send(dialog, QEvent::KeyRelease, EvLeftAlt, Qt::Key_Alt);
        QCOMPARE(field(dialog), QString());
        touch(dialog, EvA, Qt::Key_A);
        QCOMPARE(field(dialog), QString("A"));
    }

    void theMouseDoesNotTakeTheKeyboardAway()
    {
        GroupKey dialog;
        open(dialog);
        QTest::mouseClick(dialog.findChild<QCheckBox *>("Ctrl"), Qt::LeftButton, {}, QPoint(8, 14));
        QVERIFY(dialog.findChild<QCheckBox *>("Ctrl")->isChecked());
        touch(dialog, EvSpace, Qt::Key_Space);
        QVERIFY(dialog.findChild<QCheckBox *>("Ctrl")->isChecked());
        QCOMPARE(field(dialog), QString("Space"));
    }

    // The whole dialog without a mouse.
    void shiftTabLeadsOutOfTheField()
    {
        GroupKey dialog;
        open(dialog);
        touch(dialog, EvA, Qt::Key_A);
        leaveField(dialog);
        QCOMPARE(field(dialog), QString("A"));
        QVERIFY(dialog.focusWidget() != dialog.findChild<KeyField *>("lineEdit"));
        touch(dialog, EvEnd, Qt::Key_End);
        QCOMPARE(field(dialog), QString("A"));
        touch(dialog, EvTab, Qt::Key_Tab);
        QCOMPARE(dialog.focusWidget(), dialog.findChild<KeyField *>("lineEdit"));
        QVERIFY(!dialog.findChild<KeyField *>("lineEdit")->hasSelectedText());
        touch(dialog, EvB, Qt::Key_B);
        QCOMPARE(field(dialog), QString("A+B"));
        leaveField(dialog);
        auto *win = dialog.findChild<QCheckBox *>("Win");
        for (int i = 0; i < 8 && dialog.focusWidget() != win; ++i)
            touch(dialog, EvTab, Qt::Key_Backtab, Qt::ShiftModifier);
        touch(dialog, EvSpace, Qt::Key_Space);
        touch(dialog, EvEnter, Qt::Key_Return);
        QVERIFY(dialog.isAccepted());
        QCOMPARE(dialog.text(), QString("Win+A+B"));
    }

    void escapeOutsideTheFieldCancels()
    {
        GroupKey dialog;
        open(dialog);
        leaveField(dialog);
        touch(dialog, EvEsc, Qt::Key_Escape);
        QVERIFY(!dialog.isVisible());
        QVERIFY(!dialog.isAccepted());
    }

    // The focus goes away while the window is being destroyed.
    void mayBeDestroyedWhileShown()
    {
        open(*std::make_unique<GroupKey>());
        QWidget other;
        open(other);
        touch(other, EvA, Qt::Key_A);
        QVERIFY(other.isVisible());
    }

    void closedItListensNoMore_data()
    {
        QTest::addColumn<QByteArray>("button");
        for (const char *button : {"NewHong", "NewHong_2", "CloseButton"})
            QTest::newRow(button) << QByteArray(button);
    }
    void closedItListensNoMore()
    {
        QFETCH(QByteArray, button);
        GroupKey group;
        addKey key;
        for (InputDialog *dialog : {static_cast<InputDialog *>(&group), static_cast<InputDialog *>(&key)}) {
            open(*dialog);
            QWidget other;
            open(other);
            touch(other, EvA, Qt::Key_A); // it listens wherever the keyboard of the program is
            QCOMPARE(field(*dialog), QString("A"));
            click(*dialog, button);
            touch(other, EvB, Qt::Key_B);
            QCOMPARE(field(*dialog), QString("A"));
        }
    }

    // --- addKey

    void theLastKeyTouchedWins_data()
    {
        QTest::addColumn<QVector<int>>("keys"); // negative: a release
        QTest::addColumn<QString>("name");
        using Keys = QVector<int>;
        QTest::newRow("none") << Keys{} << "";
        QTest::newRow("press") << Keys{A} << "A";
        QTest::newRow("release") << Keys{-A} << "A";
        QTest::newRow("the last") << Keys{A, -A, B} << "B";
        QTest::newRow("rolled") << Keys{A, B, -A} << "A";
        QTest::newRow("modifier") << Keys{A, LeftShift} << "LShift";
        QTest::newRow("Alt") << Keys{-LeftAlt} << "LAlt";
        QTest::newRow("unknown changes nothing") << Keys{A, Unknown, -Unknown} << "A";
        QTest::newRow("the nameless key empties it") << Keys{A, Backtick} << "";
    }
    void theLastKeyTouchedWins()
    {
        QFETCH(QVector<int>, keys);
        QFETCH(QString, name);
        addKey dialog;
        open(dialog);
        for (const int key : keys)
            dialog.UpdateCapslockTip(qAbs(key), key > 0, false);
        QCOMPARE(field(dialog), name);
        click(dialog, "NewHong");
        QVERIFY(dialog.isAccepted());
        QCOMPARE(dialog.keyName(), name);
    }

    void everyKeyOfTheVocabulary()
    {
        addKey dialog;
        for (int key = 0; key < 0x200; ++key) {
            dialog.UpdateCapslockTip(A, true, false);
            dialog.UpdateCapslockTip(key, true, false);
            QCOMPARE(dialog.keyName(), KeyNameFromVirtualKey(key).value_or("A"));
        }
    }

    void aKeyFromTheKeyboard()
    {
        addKey dialog;
        open(dialog);
        QVERIFY(dialog.findChild<KeyField *>("lineEdit")->isReadOnly());
        touch(dialog, EvEnter, Qt::Key_Return);
        QCOMPARE(dialog.keyName(), QString("Enter"));
        touch(dialog, EvEsc, Qt::Key_Escape);
        QCOMPARE(dialog.keyName(), QString("Esc"));
        touch(dialog, EvTab, Qt::Key_Tab);
        QCOMPARE(dialog.keyName(), QString("Tab"));
        send(dialog, QEvent::KeyPress, EvLeftAlt, Qt::Key_Alt);
        QCOMPARE(dialog.keyName(), QString("LAlt"));
        send(dialog, QEvent::KeyPress, EvRightCtrl, Qt::Key_Control, Qt::AltModifier);
        QCOMPARE(dialog.keyName(), QString("RCtrl"));
        QVERIFY(dialog.isVisible());
    }

    void shiftTabLeavesTheKeyAsItWas()
    {
        addKey dialog;
        open(dialog);
        touch(dialog, EvB, Qt::Key_B);
        leaveField(dialog);
        QCOMPARE(field(dialog), QString("B"));
        touch(dialog, EvEnter, Qt::Key_Return);
        QVERIFY(dialog.isAccepted());
        QCOMPARE(dialog.keyName(), QString("B"));
    }
};

int main(int argc, char *argv[])
{
    const ProductFolder product(smallCatalogue());
    fixture::useShippedLooks(product);
    QApplication application(argc, argv);
    LoadLanguageTables();
    tst_KeyDialogs test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_keydialogs.moc"
