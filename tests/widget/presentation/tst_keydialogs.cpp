// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The dialogs that ask for a combination and for a key: what they make of the keyboard, and how long they
// listen.
#include "tests/support/TestMain.h"
#include "tests/widget/presentation/KeyDialogs.h"

#include <QCheckBox>

using namespace keydialogs;

namespace
{

// The kernel's numbers of the same.
constexpr int EvTab = 15, EvEnter = 28, EvEsc = 1, EvSpace = 57, EvA = 30, EvB = 48, EvLeftShift = 42,
              EvLeftAlt = 56, EvRightCtrl = 97, EvEnd = 107;

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

} // namespace

class tst_KeyDialogs : public QObject
{
    Q_OBJECT

private slots:
    void init() { fixture::clean(); }

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
        QTest::newRow("the nameless key empties it") << Keys{A, Nameless} << "";
        QTest::newRow("the key left of 1") << Keys{A, Backtick} << "`";
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

TEST_CLASS(tst_KeyDialogs, fixture::ShippedLooks)

#include "tst_keydialogs.moc"
