// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The rules of a recording, on keys and times that are given here.
#include "macro/Recorder.h"
#include "tests/support/TestMain.h"

#include <QtTest>

namespace
{

constexpr int VkA = 0x41, VkB = 0x42, VkLeftShift = 0xA0, VkRightShift = 0xA1, VkLeftAlt = 0xA4,
              Unnamed = 0x15, WithoutFunction = 0x0C;

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
        at(5000, VkA, true);
        at(5120, VkA, false);
        QCOMPARE(all(), QString("+A 120 -A"));
    }

    void aHeldKeyIsOnePressAndOneRelease()
    {
        for (int repeat = 0; repeat < 20; ++repeat)
            at(30 * repeat, VkA, true);
        at(700, VkA, false);
        QCOMPARE(all(), QString("+A 700 -A"));
    }

    void keysThatOverlapAreAllThere()
    {
        at(0, VkA, true);
        at(10, VkB, true);
        at(20, VkA, false);
        at(30, VkB, false);
        QCOMPARE(all(), QString("+A 10 +B 10 -A 10 -B"));
    }

    // A held key repeats again after another one.
    void aPressIsARepeatWhileItsKeyIsDown()
    {
        at(0, VkA, true);
        at(10, VkB, true);
        at(20, VkA, true);
        at(30, VkB, false);
        at(40, VkA, true);
        at(50, VkA, false);
        at(60, VkA, true);
        QCOMPARE(all(), QString("+A 10 +B 20 -B 20 -A 10 +A"));
    }

    void noReleaseStandsWithoutItsPress()
    {
        at(0, VkA, false);
        QCOMPARE(all(), QString());
        at(10, VkB, true);
        QCOMPARE(all(), QString("+B"));
    }

    void sidesOfAModifierAreApart()
    {
        at(0, VkLeftShift, true);
        at(1, VkRightShift, true);
        at(2, VkLeftShift, false);
        at(3, VkRightShift, false);
        QCOMPARE(all(), QString("+LShift 1 +RShift 1 -LShift 1 -RShift"));
    }

    void altIsRecorded()
    {
        at(0, VkLeftAlt, true);
        at(5, VkLeftAlt, false);
        QCOMPARE(all(), QString("+LAlt 5 -LAlt"));
    }

    // The delay before it stays, and the next event adds none, so that the rows alternate.
    void aKeyWithoutANameMakesNoEvent()
    {
        at(0, VkA, true);
        at(10, Unnamed, true);
        at(20, Unnamed, false);
        at(30, VkA, false);
        at(40, VkB, true);
        QCOMPARE(all(), QString("+A 10 -A 10 +B"));
    }

    void aKeyWithoutANameAtTheStart()
    {
        at(0, Unnamed, true);
        at(10, VkA, true);
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
            take(VkA, true, 50);
            take(VkA, false, 50);
        }
        QCOMPARE(all(), QString("+A 50 -A 50 +A 50 -A 50 +A 50 -A"));
    }

    void noDelayIsADelay()
    {
        at(7, VkA, true);
        at(7, VkA, false);
        at(6, VkB, true); // a clock that goes back is one that stands
        QCOMPARE(all(), QString("+A 0 -A 0 +B"));
    }

    void theLastPlaceEndsIt()
    {
        for (int i = 0; i < 70; ++i) {
            QVERIFY2(!recorder.isFull(), qPrintable(QString::number(i)));
            at(i, VkA, i % 2 == 0);
        }
        QVERIFY(recorder.isFull());
        QCOMPARE(log.size(), 139);
        at(100, VkB, true);
        QCOMPARE(log.size(), 139);
        recorder.start();
        QVERIFY(!recorder.isFull());
        at(200, VkB, true);
        QCOMPARE(log.size(), 140); // and no delay before it
    }

    void ignoredKeysTakeNoPlace()
    {
        for (int i = 0; i < 100; ++i)
            at(i, Unnamed, i % 2 == 0);
        QVERIFY(!recorder.isFull());
        at(200, VkA, true);
        QCOMPARE(all(), QString("+A"));
    }
};

TEST_CLASS(tst_Recorder, testmain::CoreApplication)

#include "tst_recorder.moc"
