// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The rules of a recording, on keys and times that are given here.
#include "macro/Recorder.h"
#include "tests/support/TestMain.h"

#include <QtTest>

namespace
{

constexpr int A = 0x41, B = 0x42, LeftShift = 0xA0, RightShift = 0xA1, LeftAlt = 0xA4, Unnamed = 0x15,
              WithoutFunction = 0x0C;

} // namespace

class tst_Recorder : public QObject
{
    Q_OBJECT

    Recorder recorder;
    qint64 now = 0;
    QStringList log; // "+A", "-A", "10" a delay

    void take(int key, bool down, std::optional<int> fixedDelay = std::nullopt)
    {
        const Recorder::Rows rows = recorder.take(key, down, now, fixedDelay);
        if (rows.delayMs)
            log << QString::number(*rows.delayMs);
        if (rows.key)
            log << (down ? '+' : '-') + *rows.key;
    }
    void at(qint64 time, int key, bool down)
    {
        now = time;
        take(key, down);
    }
    QString all() const { return log.join(' '); }

private slots:
    void init()
    {
        recorder.start();
        log.clear();
        now = 0;
    }

    void theTimeBeforeTheFirstEventIsNotKept()
    {
        at(5000, A, true);
        at(5120, A, false);
        QCOMPARE(all(), QString("+A 120 -A"));
    }

    void aHeldKeyIsOnePressAndOneRelease()
    {
        for (int repeat = 0; repeat < 20; ++repeat)
            at(30 * repeat, A, true);
        at(700, A, false);
        QCOMPARE(all(), QString("+A 700 -A"));
    }

    void keysThatOverlapAreAllThere()
    {
        at(0, A, true);
        at(10, B, true);
        at(20, A, false);
        at(30, B, false);
        QCOMPARE(all(), QString("+A 10 +B 10 -A 10 -B"));
    }

    // A held key repeats again after another one.
    void aPressIsARepeatWhileItsKeyIsDown()
    {
        at(0, A, true);
        at(10, B, true);
        at(20, A, true);
        at(30, B, false);
        at(40, A, true);
        at(50, A, false);
        at(60, A, true);
        QCOMPARE(all(), QString("+A 10 +B 20 -B 20 -A 10 +A"));
    }

    void noReleaseStandsWithoutItsPress()
    {
        at(0, A, false);
        QCOMPARE(all(), QString());
        at(10, B, true);
        QCOMPARE(all(), QString("+B"));
    }

    void sidesOfAModifierAreApart()
    {
        at(0, LeftShift, true);
        at(1, RightShift, true);
        at(2, LeftShift, false);
        at(3, RightShift, false);
        QCOMPARE(all(), QString("+LShift 1 +RShift 1 -LShift 1 -RShift"));
    }

    void altIsRecorded()
    {
        at(0, LeftAlt, true);
        at(5, LeftAlt, false);
        QCOMPARE(all(), QString("+LAlt 5 -LAlt"));
    }

    // The delay before it stays, and the next event adds none, so that the rows alternate.
    void aKeyWithoutANameMakesNoEvent()
    {
        at(0, A, true);
        at(10, Unnamed, true);
        at(20, Unnamed, false);
        at(30, A, false);
        at(40, B, true);
        QCOMPARE(all(), QString("+A 10 -A 10 +B"));
    }

    void aKeyWithoutANameAtTheStart()
    {
        at(0, Unnamed, true);
        at(10, A, true);
        QCOMPARE(all(), QString("+A"));
    }

    void aKeyWithoutFunctionIsAnEvent()
    {
        at(0, WithoutFunction, true);
        at(3, WithoutFunction, false);
        QCOMPARE(all(), QString("+ 3 -"));
    }

    void aFixedDelayIsTheSameBetweenAll()
    {
        for (int i = 0; i < 3; ++i) {
            now += 1000 * i;
            take(A, true, 50);
            take(A, false, 50);
        }
        QCOMPARE(all(), QString("+A 50 -A 50 +A 50 -A 50 +A 50 -A"));
    }

    void noDelayIsADelay()
    {
        at(7, A, true);
        at(7, A, false);
        at(6, B, true); // a clock that goes back is one that stands
        QCOMPARE(all(), QString("+A 0 -A 0 +B"));
    }

    void theLastPlaceEndsIt()
    {
        for (int i = 0; i < 70; ++i) {
            QVERIFY2(!recorder.isFull(), qPrintable(QString::number(i)));
            at(i, A, i % 2 == 0);
        }
        QVERIFY(recorder.isFull());
        QCOMPARE(log.size(), 139);
        at(100, B, true);
        QCOMPARE(log.size(), 139);
        recorder.start();
        QVERIFY(!recorder.isFull());
        at(200, B, true);
        QCOMPARE(log.size(), 140); // and no delay before it
    }

    void ignoredKeysTakeNoPlace()
    {
        for (int i = 0; i < 100; ++i)
            at(i, Unnamed, i % 2 == 0);
        QVERIFY(!recorder.isFull());
        at(200, A, true);
        QCOMPARE(all(), QString("+A"));
    }
};

TEST_CLASS(tst_Recorder, testmain::CoreApplication)

#include "tst_recorder.moc"
