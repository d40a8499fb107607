// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/Inquiry.h"
#include "environment/MainThread.h"
#include "tests/support/TestMain.h"

#include <QProcess>
#include <QSemaphore>
#include <QtTest>
#include <thread>

namespace
{

// A process whose first call comes from another thread when there is no application object, as a late
// search's does behind the end of the program.
int callWithoutApplication(int, char **)
{
    std::thread([] { runOnMainThread([] {}); }).join();
    return 0;
}

} // namespace

class tst_MainThread : public QObject
{
    Q_OBJECT

private slots:
    void workOfOtherThreadsRunsOnTheMainThread()
    {
        QVector<int> done;
        bool elsewhere = false;
        std::thread other([&] {
            for (int i = 0; i < 100; ++i)
                runOnMainThread([&, i] {
                    elsewhere = elsewhere || QThread::currentThread() != thread();
                    done << i;
                });
        });
        other.join();
        QVERIFY(done.isEmpty());
        QTRY_COMPARE(done.size(), 100);
        QVERIFY(std::is_sorted(done.cbegin(), done.cend()));
        QVERIFY(!elsewhere);
    }

    void theMainThreadsOwnWorkWaitsForItsLoop()
    {
        bool done = false;
        runOnMainThread([&done] { done = true; });
        QVERIFY(!done);
        QTRY_VERIFY(done);
    }

    void anInquiryAsksElsewhereAndAnswersHere()
    {
        const auto here = [this] { return QThread::currentThread() == thread(); };
        bool askedHere = true;
        QVector<bool> answeredHere;
        Inquiry inquiry;
        inquiry.ask([&]() -> Inquiry::Answer {
            askedHere = here();
            return [&] { answeredHere << here(); };
        });
        QVERIFY(answeredHere.isEmpty());
        QTRY_COMPARE(answeredHere, QVector<bool>{true});
        QVERIFY(!askedHere);
    }

    void anAnswerThatNobodyWaitsForIsDropped_data()
    {
        QTest::addColumn<int>("end");
        QTest::newRow("a newer question") << 0;
        QTest::newRow("dropped") << 1;
        QTest::newRow("its end") << 2;
    }
    void anAnswerThatNobodyWaitsForIsDropped()
    {
        QFETCH(int, end);
        QSemaphore mayAnswer;
        QStringList answers;
        const auto held = std::make_shared<int>();
        const auto question = [&](const char *answer) {
            return [&, answer, held]() -> Inquiry::Answer {
                mayAnswer.acquire();
                return [&answers, answer, held] { answers << QLatin1String(answer); };
            };
        };
        auto inquiry = std::make_unique<Inquiry>();
        Inquiry other;
        inquiry->ask(question("old"));
        if (end == 0)
            inquiry->ask(question("new"));
        else if (end == 1)
            inquiry->drop();
        else
            inquiry.reset();
        other.ask(question("other"));
        mayAnswer.release(3);
        QTRY_COMPARE(int(held.use_count()), 1); // every answer has come
        answers.sort();
        QCOMPARE(answers, end == 0 ? QStringList({"new", "other"}) : QStringList("other"));
    }

    void aCallBehindTheEndHurtsNobody()
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {"callWithoutApplication"});
        QVERIFY(child.waitForFinished(60000));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 0);
    }

    // What was passed is released, run or not.
    void nothingIsKept()
    {
        const auto held = std::make_shared<int>(1);
        runOnMainThread([held] {});
        QCOMPARE(int(held.use_count()), 2);
        QTRY_COMPARE(int(held.use_count()), 1);
    }
};

TEST_CHILD(callWithoutApplication)
TEST_CLASS(tst_MainThread, testmain::CoreApplication)
#include "tst_mainthread.moc"
