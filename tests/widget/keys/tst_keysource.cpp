// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What a key source makes of the key events of a window: which key, down or up, repeated, with Alt, and
// what it leaves alone. The window is no real one; the events are made here.
#include "keys/KeySource.h"
#include "keys/KeyVocabulary.h"
#include "tests/support/EvdevCodes.h"
#include "tests/support/KeysFile.h"
#include "tests/support/TestMain.h"

#include <QApplication>
#include <QLineEdit>
#include <QtTest>

using namespace evdev;

namespace
{

constexpr int VkA = 0x41, VkB = 0x42, VkLeftAlt = 0xA4;

struct Seen {
    int key;
    bool down;
    bool again;
};
bool operator==(const Seen &one, const Seen &other)
{
    return one.key == other.key && one.down == other.down && one.again == other.again;
}
char *toString(const Seen &seen)
{
    return qstrdup(qPrintable(QString("%1 %2%3")
                                  .arg(seen.key, 0, 16)
                                  .arg(seen.down ? "down" : "up")
                                  .arg(seen.again ? " again" : "")));
}
using Log = QVector<Seen>;

// A window with a field and a source that listens to its keys.
class Desk
{
public:
    explicit Desk(KeySource::AltKeys altKeys = KeySource::AltKeys::Known) : source(altKeys)
    {
        QObject::connect(&source, &KeySource::keyEvent, &source, [this](int key, bool down, bool again) {
            log.append({key, down, again});
        });
        field.show();
        QApplication::setActiveWindow(&field);
        field.setFocus();
        source.start();
    }

    void send(QEvent::Type type, int evdev, Qt::KeyboardModifiers with = {}, bool again = false)
    {
        QKeyEvent event(type, Qt::Key_X, with, quint32(evdev + Offset), 0, 0, QStringLiteral("x"), again);
        event.setTimestamp(timestamp += (type == QEvent::KeyPress && overridden) ? 0 : 1);
        overridden = type == QEvent::ShortcutOverride;
        QCoreApplication::sendEvent(field.windowHandle(), &event);
    }
    void down(int evdev, Qt::KeyboardModifiers with = {}) { send(QEvent::KeyPress, evdev, with); }
    void up(int evdev, Qt::KeyboardModifiers with = {}) { send(QEvent::KeyRelease, evdev, with); }
    void again(int evdev)
    {
        send(QEvent::KeyRelease, evdev, {}, true);
        send(QEvent::KeyPress, evdev, {}, true);
    }
    static void leave() { emit qGuiApp->focusWindowChanged(nullptr); }

    QLineEdit field;
    KeySource source;
    Log log;
    ulong timestamp = 100; // of the last event

private:
    bool overridden = false;
};

} // namespace

class tst_KeySource : public QObject
{
    Q_OBJECT

private slots:
    void everyKeyByItsPlace_data()
    {
        QTest::addColumn<int>("evdev");
        QTest::addColumn<int>("virtualKey");
        for (const ExpectedKey &key : readKeysFile())
            QTest::addRow("%s %s", qPrintable(key.codeText), qPrintable(key.name))
                << key.evdev << key.virtualKey;
        QTest::newRow("keypad's Enter") << KeypadEnter << 0x0D;
    }
    void everyKeyByItsPlace()
    {
        QFETCH(int, evdev);
        QFETCH(int, virtualKey);
        Desk desk;
        desk.down(evdev);
        desk.up(evdev);
        const bool isAlt = virtualKey == 0xA4 || virtualKey == 0xA5;
        QCOMPARE(desk.log, (Log{{virtualKey, true, false}, {virtualKey, false, isAlt}}));
    }

    void aKeyWithoutANameIsReportedToo()
    {
        Desk desk;
        desk.down(Wheel);
        desk.up(Wheel);
        QCOMPARE(desk.log.size(), 2);
        QCOMPARE(desk.log[0].key, desk.log[1].key);
        QVERIFY(!KeyNameFromVirtualKey(desk.log[0].key));
    }

    void aKeyWithoutAPlaceIsNot()
    {
        Desk desk;
        for (const int evdev : {-Offset, -1, 0}) {
            desk.down(evdev);
            desk.up(evdev);
        }
        QVERIFY(desk.log.isEmpty());
    }

    void theWindowGetsTheKeysToo()
    {
        Desk desk;
        desk.down(A);
        desk.up(A);
        QCOMPARE(desk.field.text(), QString("x"));
    }

    void aHeldKeyRepeats()
    {
        Desk desk;
        desk.down(A);
        desk.again(A);
        desk.again(A);
        desk.up(A);
        QCOMPARE(desk.log,
                 (Log{{VkA, true, false}, {VkA, true, true}, {VkA, true, true}, {VkA, false, false}}));
        desk.log.clear();
        desk.down(A);
        QCOMPARE(desk.log, (Log{{VkA, true, false}}));
    }

    // The toolkit says of a repeat that it is one only when it saw both its halves.
    void halfARepeatIsNoRelease()
    {
        Desk desk;
        desk.down(A);
        desk.timestamp += 500;
        desk.up(A);
        desk.log.clear();
        --desk.timestamp;
        desk.down(A); // at the time of the release
        QCOMPARE(desk.log, (Log{{VkA, true, true}}));
        desk.timestamp += 30;
        desk.up(A);
        QTRY_COMPARE(desk.log, (Log{{VkA, true, true}, {VkA, false, false}}));
    }

    void aLongHeldKeyGoesUpBeforeWhatFollows()
    {
        Desk desk;
        desk.down(A);
        desk.timestamp += 500;
        desk.up(A);
        desk.down(B);
        desk.down(A);
        QCOMPARE(desk.log,
                 (Log{{VkA, true, false}, {VkA, false, false}, {VkB, true, false}, {VkA, true, false}}));
    }

    void aDoubtfulReleaseIsReportedOnceWhenTheKeyboardLeaves()
    {
        Desk desk;
        desk.down(A);
        desk.timestamp += 500;
        desk.up(A);
        Desk::leave();
        QCOMPARE(desk.log, (Log{{VkA, true, false}, {VkA, false, false}}));
        desk.down(B);
        QCOMPARE(desk.log.size(), 3);
    }

    // Any other key ends a row of repeats, and any release ends it too.
    void rolledKeys()
    {
        Desk desk;
        desk.down(A);
        desk.down(B);
        desk.up(A);
        desk.again(B);
        desk.up(B);
        QCOMPARE(desk.log, (Log{{VkA, true, false},
                                {VkB, true, false},
                                {VkA, false, false},
                                {VkB, true, false},
                                {VkB, false, false}}));
    }

    void sidesAreApart()
    {
        Desk desk;
        desk.down(LeftShift);
        desk.down(RightShift, Qt::ShiftModifier);
        desk.up(LeftShift, Qt::ShiftModifier);
        desk.up(RightShift);
        QCOMPARE(desk.log,
                 (Log{{0xA0, true, false}, {0xA1, true, false}, {0xA0, false, false}, {0xA1, false, false}}));
    }

    void altForOneWhoKnowsIt()
    {
        Desk desk;
        desk.down(LeftAlt);
        desk.down(A, Qt::AltModifier);
        desk.up(A, Qt::AltModifier);
        desk.up(LeftAlt);
        desk.down(LeftAlt);
        QCOMPARE(desk.log, (Log{{VkLeftAlt, true, false},
                                {VkA, true, false},
                                {VkA, false, true},
                                {VkLeftAlt, false, false},
                                {VkLeftAlt, true, true}})); // the release of Alt has not ended the row
    }

    void altForOneWhoDoesNot_data()
    {
        QTest::addColumn<int>("alt");
        QTest::addColumn<int>("virtualKey");
        QTest::addColumn<int>("with");
        QTest::newRow("left") << LeftAlt << 0xA4 << int(Qt::AltModifier);
        QTest::newRow("right") << RightAlt << 0xA5 << int(Qt::AltModifier);
        QTest::newRow("third level") << RightAlt << 0xA5 << int(Qt::GroupSwitchModifier);
    }
    void altForOneWhoDoesNot()
    {
        QFETCH(int, alt);
        QFETCH(int, virtualKey);
        QFETCH(int, with);
        Desk desk(KeySource::AltKeys::Unknown);
        desk.down(alt);
        desk.down(A, Qt::KeyboardModifiers(with));
        desk.up(A, Qt::KeyboardModifiers(with));
        desk.up(alt);
        for (const Seen &seen : qAsConst(desk.log))
            QVERIFY(!seen.down);
        QCOMPARE(desk.log.size(), 4);
        desk.log.clear();
        desk.down(B);
        desk.down(alt);
        desk.up(B, Qt::KeyboardModifiers(with));
        desk.up(alt);
        // The state of the last plain key stays through what comes with Alt.
        QCOMPARE(desk.log, (Log{{VkB, true, false},
                                {virtualKey, true, false},
                                {VkB, true, false},
                                {virtualKey, true, false}}));
    }

    // A window manager may keep the release of Alt; later keys come without it and are plain again.
    void anAltThatNeverWentUpIsForgotten()
    {
        Desk desk(KeySource::AltKeys::Unknown);
        desk.down(LeftAlt);
        desk.down(A);
        QCOMPARE(desk.log.last(), (Seen{VkA, true, false}));
    }

    void aShortcutKeepsNoKeyBack()
    {
        Desk desk;
        desk.send(QEvent::ShortcutOverride, A);
        desk.up(A);
        QCOMPARE(desk.log, (Log{{VkA, true, false}, {VkA, false, false}}));
    }

    void aKeyOfferedToShortcutsIsReportedOnce()
    {
        Desk desk;
        desk.send(QEvent::ShortcutOverride, A);
        desk.down(A);
        desk.up(A);
        desk.down(A);
        QCOMPARE(desk.log, (Log{{VkA, true, false}, {VkA, false, false}, {VkA, true, false}}));
    }

    // The key that opened a dialog goes up in it.
    void aKeyFromBeforeTheStartIsNotReported()
    {
        Desk desk;
        desk.source.stop();
        desk.down(Enter);
        desk.source.start();
        desk.up(Enter);
        QVERIFY(desk.log.isEmpty());
    }

    void whatIsHeldGoesUpWhenTheKeyboardLeaves()
    {
        Desk desk;
        desk.down(LeftShift);
        desk.down(A);
        desk.log.clear();
        Desk::leave();
        QCOMPARE(desk.log, (Log{{VkA, false, false}, {0xA0, false, false}}));
        desk.log.clear();
        Desk::leave();
        desk.up(A); // seen after all
        QVERIFY(desk.log.isEmpty());
        desk.down(A);
        QCOMPARE(desk.log, (Log{{VkA, true, false}}));
    }

    void aSlotMayStopIt()
    {
        Desk desk;
        desk.down(A);
        desk.down(B);
        QObject::connect(&desk.source, &KeySource::keyEvent, &desk.source, &KeySource::stop);
        desk.log.clear();
        Desk::leave();
        QCOMPARE(desk.log, (Log{{VkB, false, false}}));
        QVERIFY(!desk.source.isRunning());
    }

    void stoppedItIsSilent()
    {
        Desk desk;
        desk.down(A);
        desk.source.stop();
        desk.log.clear();
        desk.up(A);
        desk.down(B);
        Desk::leave();
        QVERIFY(desk.log.isEmpty());
        desk.source.start();
        desk.source.start();
        desk.down(A);
        QCOMPARE(desk.log, (Log{{VkA, true, false}})); // once, and nothing of before
    }

    void eachHasAStateOfItsOwn()
    {
        Desk desk;
        KeySource other(KeySource::AltKeys::Unknown);
        Log seen;
        connect(&other, &KeySource::keyEvent, this, [&](int key, bool down, bool again) {
            seen.append({key, down, again});
        });
        desk.down(A);
        other.start();
        desk.again(A);
        QCOMPARE(desk.log.last(), (Seen{VkA, true, true}));
        QCOMPARE(seen, (Log{{VkA, true, false}}));
    }

    // However late an event is handled, its time is the window system's.
    void theTimeOfAnEvent()
    {
        Desk desk;
        QVector<qint64> times;
        connect(&desk.source, &KeySource::keyEvent, &desk.source, [&] { times << desk.source.time(); });
        desk.down(A);
        QTest::qSleep(50);
        desk.timestamp += 6; // 7 ms behind the press
        desk.up(A);
        desk.timestamp += 2999;
        QElapsedTimer passed;
        passed.start();
        desk.down(B);
        desk.timestamp = 5; // a clock that starts again
        desk.up(B);
        QTRY_COMPARE(times.size(), 4);
        QCOMPARE(times[1] - times[0], qint64(7));
        QCOMPARE(times[2] - times[1], qint64(3000));
        QVERIFY(times[3] >= times[2] && times[3] - times[2] <= passed.elapsed() + 1);
    }

    // The clock of a window system has 32 bits.
    void theTimeGoesOnWhereTheClockTurnsOver()
    {
        Desk desk;
        QVector<qint64> times;
        connect(&desk.source, &KeySource::keyEvent, &desk.source, [&] { times << desk.source.time(); });
        desk.timestamp = 0xFFFFFFFEu - 1;
        desk.down(A);
        desk.timestamp = 9;
        desk.up(A);
        QCOMPARE(times.size(), 2);
        QCOMPARE(times[1] - times[0], qint64(12));
    }

    // Without an event it is now, and so is that of keys which go up with the keyboard.
    void theTimeWithoutAnEvent()
    {
        Desk desk;
        QVector<qint64> times;
        connect(&desk.source, &KeySource::keyEvent, &desk.source, [&] { times << desk.source.time(); });
        const qint64 start = desk.source.time();
        desk.down(A);
        QTest::qSleep(30);
        Desk::leave();
        QCOMPARE(times.size(), 2);
        QVERIFY(times[1] - times[0] >= 29);
        QVERIFY(times[0] >= start && desk.source.time() >= times[1]);
    }

    void inputMethodsAreOffWhileItRuns()
    {
        Desk desk;
        const auto enabled = [&] {
            QInputMethodQueryEvent query(Qt::ImEnabled);
            QCoreApplication::sendEvent(&desk.field, &query);
            return query.value(Qt::ImEnabled).toBool();
        };
        QVERIFY(!enabled());
        desk.source.stop();
        QVERIFY(enabled());
        QVERIFY(desk.field.testAttribute(Qt::WA_InputMethodEnabled));
    }
};

TEST_CLASS(tst_KeySource, testmain::WidgetApplication)

#include "tst_keysource.moc"
