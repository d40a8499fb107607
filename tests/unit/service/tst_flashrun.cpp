// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// One run of the layer's upgrade: in which order it is told, and what its record is before and after it.
#include "device/FirmwareSearch.h"
#include "environment/MainThread.h"
#include "service/FlashRun.h"
#include "tests/support/FakeHidUsb.h"
#include "tests/support/FirmwareFolder.h"
#include "tests/support/ProductFolder.h"
#include "tests/support/TestMain.h"

#include <QSemaphore>
#include <QtTest>
#include <mutex>

namespace
{

constexpr UpdateFailRecord Receiver{TargetReceiver, 8, 18, 6};
constexpr UpdateFailRecord OtherMouse{TargetMouse, 8, 18, 7};

QByteArray image() { return firmware::image(firmware::Receiver.bytes()); }

// While it lives.
struct Silence {
    explicit Silence(int ms) { flashrun::SilenceMs = ms; }
    ~Silence() { flashrun::SilenceMs = usual; }
    const int usual = flashrun::SilenceMs;
};

// What the run has told, on any thread.
class Told
{
public:
    void add(const QString &word)
    {
        const std::lock_guard lock(mutex_);
        words_ << word;
    }
    QStringList words()
    {
        const std::lock_guard lock(mutex_);
        return words_;
    }

private:
    std::mutex mutex_;
    QStringList words_;
};

} // namespace

class tst_FlashRun : public QObject
{
    Q_OBJECT

private:
    FakeHidUsb &fake = FakeHidUsb::instance();

    int starts() { return fake.count("UsbUpgrade_Start"); }
    void report(uint8_t what, uint8_t value) { fake.upgradeReport({7, what, value}); }

private slots:
    void init()
    {
        fake.reset();
        fake.setUpgrade(0, true);
        UpdateFailRecord::remove();
    }
    void cleanup()
    {
        QTRY_VERIFY(fake.idle() && !flashrun::isUnderWay());
        fake.setHook({});
        UpdateFailRecord::remove();
    }

    // What a progress changes, such as that a repair is busy, must not come behind the end.
    void theEndIsToldBehindTheProgress()
    {
        const Silence silence(20);
        Told told;
        QSemaphore entered;
        QSemaphore mayGo;
        fake.setHook([this](const std::string &name) {
            if (name == "UsbUpgrade_Start")
                report(1, 40);
        });
        flashrun::start(image(), Receiver,
                        {[&](int) {
                             entered.release();
                             mayGo.acquire();
                             told.add(QStringLiteral("progress"));
                         },
                         [&](bool succeeded, bool) {
                             told.add(succeeded ? QStringLiteral("success") : QStringLiteral("failure"));
                         }});
        QVERIFY(entered.tryAcquire(1, 10000));
        // Each timer is behind the one with which the main thread watches: first since the start, then since
        // the progress.
        bool isFound = false;
        const auto behindAWatch = [this](std::function<void()> work) {
            QTimer::singleShot(int(flashrun::SilenceMs), this, std::move(work));
        };
        runOnMainThread([&] { behindAWatch([&] { behindAWatch([&] { isFound = true; }); }); });
        QTRY_VERIFY(isFound);
        const bool saysNothing = told.words().isEmpty();
        const bool runs = flashrun::isUnderWay();
        mayGo.release();
        QTRY_COMPARE(told.words(), (QStringList{QStringLiteral("progress"), QStringLiteral("failure")}));
        QVERIFY(saysNothing && runs);
    }

    // The result of one may start the next; in between nothing may end the program.
    void itIsUnderWayUntilTheLastResultIsTold()
    {
        Told told;
        const auto word = [] {
            return flashrun::isUnderWay() ? QStringLiteral("runs") : QStringLiteral("over");
        };
        fake.setHook([&](const std::string &name) {
            if (name == "UsbUpgrade_Start")
                told.add(word());
        });
        const auto last = [&](bool, bool) { told.add(word()); };
        const auto first = [&](bool, bool) {
            flashrun::start(image(), Receiver, {{}, last});
            told.add(word());
        };
        QVERIFY(!flashrun::isUnderWay());
        flashrun::start(image(), Receiver, {{}, first});
        QVERIFY(flashrun::isUnderWay());
        for (int number = 1; number <= 2; ++number) {
            QTRY_COMPARE(starts(), number);
            QVERIFY(flashrun::isUnderWay());
            report(2, 1);
        }
        QTRY_VERIFY(!flashrun::isUnderWay());
        QCOMPARE(told.words(), (QStringList{"runs", "runs", "runs", "runs"}));
    }

    // Another thread may name a device while the layer looks for the one to flash.
    void aRefusedStartLeavesWhatOthersHaveStored()
    {
        fake.setUpgrade(0, false);
        fake.setHook([](const std::string &name) {
            if (name == "UsbUpgrade_Start")
                OtherMouse.putFirst();
        });
        Told told;
        flashrun::start(image(), Receiver,
                        {{}, [&](bool, bool started) {
                             told.add(started ? QStringLiteral("started") : QStringLiteral("refused"));
                         }});
        QTRY_COMPARE(told.words(), QStringList(QStringLiteral("refused")));
        QCOMPARE(UpdateFailRecord::storedTexts(), QStringList(OtherMouse.text()));
    }
};

namespace
{
struct FlashCatalogue : private ProductFolder, testmain::CoreApplication {
    FlashCatalogue(int &argc, char **argv)
        : ProductFolder(smallCatalogue()), testmain::CoreApplication(argc, argv)
    {
    }
};
} // namespace

TEST_CLASS(tst_FlashRun, FlashCatalogue)
#include "tst_flashrun.moc"
