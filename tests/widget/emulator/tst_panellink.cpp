// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The panel's link: an emulator that goes and comes, one that refuses, and an impostor that answers what it
// likes.
#include "emulator/BusFolder.h"
#include "tests/support/TestMain.h"
#include "tests/widget/emulator/PanelFixture.h"

#include <atomic>
#include <poll.h>
#include <sys/socket.h>
#include <thread>

namespace
{

// Stands where the emulator's control socket is and gives each connection the same bytes for each order.
class Impostor
{
public:
    Impostor(const std::string &folder, std::string answer) : answer_(std::move(answer))
    {
        std::string error;
        if (folder_.open(folder, error))
            listener_ = folder_.listen(emulator::BusFolder::ControlName, SOCK_STREAM);
        thread_ = std::thread([this] { serve(); });
    }
    ~Impostor()
    {
        ends_ = true;
        thread_.join();
        folder_.remove(emulator::BusFolder::ControlName);
    }
    bool isListening() const { return listener_.valid(); }
    int asked() const { return asked_; }

private:
    void serve()
    {
        std::vector<emulator::FileDescriptor> clients;
        while (!ends_) {
            std::vector<pollfd> polled{{listener_.get(), POLLIN, 0}};
            for (const auto &client : clients)
                polled.push_back({client.get(), POLLIN, 0});
            ::poll(polled.data(), polled.size(), 20);
            for (std::size_t i = 1; i < polled.size(); ++i)
                answer(clients[i - 1], polled[i].revents);
            if ((polled[0].revents & POLLIN) != 0)
                clients.emplace_back(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
        }
    }
    void answer(emulator::FileDescriptor &client, short events)
    {
        char bytes[4096];
        if (events == 0)
            return;
        if (::recv(client.get(), bytes, sizeof bytes, MSG_DONTWAIT) <= 0)
            return client.reset();
        ++asked_;
        (void)!::send(client.get(), answer_.data(), answer_.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    }

    const std::string answer_;
    emulator::BusFolder folder_;
    emulator::FileDescriptor listener_;
    std::thread thread_;
    std::atomic<bool> ends_{false};
    std::atomic<int> asked_{0};
};

} // namespace

class tst_PanelLink : public PanelFixture
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void goneAndBack()
    {
        open();
        QCOMPARE(stateText(), QString("Emulator not running"));
        QVERIFY(!part<QCheckBox>("paceCheck")->isEnabled());
        startEmulator();
        QTRY_COMPARE(rows(), 3);
        choose("wired");
        emulated.reset();
        QTRY_COMPARE(stateText(), QString("Emulator not running"));
        QCOMPARE(rows(), 0);
        QVERIFY(!part<QCheckBox>("pluggedCheck")->isEnabled());
        QVERIFY(!part<QPushButton>("pressDpi")->isEnabled());
        startEmulator();
        QTRY_COMPARE(rows(), 3);
        // The same device is chosen again.
        QCOMPARE(part<QListView>("deviceList")->currentIndex().data().toString(), QString("wired"));
        click("pluggedCheck");
        QTRY_VERIFY(shown("wired").plugged);
    }

    void refusalIsShown()
    {
        openOnEmulator();
        choose("wired");
        emulated->order("plug wired");
        EmulatorLink link(bus());
        QSignalSpy refusals(&link, &EmulatorLink::refused);
        QTRY_VERIFY(link.isRunning() || (link.setWatching(true), false));
        link.change("sleep wired");
        QTRY_COMPARE(refusals.count(), 1);
        QCOMPARE(refusals.first().first().toString(), QString("wired is on its cable"));
    }

    void hiddenAsksNothing()
    {
        const Impostor impostor(folder->path(), "pace=0\nok\n");
        open();
        QTRY_COMPARE(stateText(), QString("Emulator running"));
        window->hide();
        const int last = impostor.asked() + 2; // the state and the log may be on their way
        QVERIFY(!QTest::qWaitFor([&] { return impostor.asked() > last; }, 1200));
    }

    void hostileAnswers_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("devices");
        QTest::newRow("garbage") << QByteArray("\xff\xfe\0\x01=\n==\n\"\ndevice=\nok\n", 20) << 0;
        QTest::newRow("no answer") << QByteArray("x\n") << 0;
        QTest::newRow("half a line") << QByteArray("device=a kind=mo") << 0;
        QTest::newRow("huge line") << QByteArray(1 << 20, 'x') << 0;
        QTest::newRow("huge line with an end") << QByteArray(1 << 16, 'x') + "\nok\n" << 0;
        QTest::newRow("endless lines") << QByteArray("x\n").repeated(1 << 17) << 0;
        QTest::newRow("many answers") << QByteArray("ok\n").repeated(10000) << 0;
        QTest::newRow("error") << QByteArray("error no order state\n") << 0;
        QTest::newRow("bad ids")
            << QByteArray("device=../x kind=mouse\ndevice=A kind=mouse\ndevice=a kind=cat\nok\n") << 0;
        QTest::newRow("wild numbers")
            << QByteArray("device=a kind=mouse battery=99999999999 profile=-7 stage=x rate=2147483647\nok\n")
            << 1;
        QTest::newRow("markup") << QByteArray("device=a kind=mouse name=\"<img src=x>%1%2%9\"\nok\n") << 1;
        QTest::newRow("twice") << QByteArray("device=a kind=mouse\ndevice=a kind=receiver\nok\n") << 1;
        QByteArray many;
        for (int i = 0; i < 900; ++i)
            many += "device=d" + QByteArray::number(i) + " kind=mouse\n";
        QTest::newRow("many devices") << many + "ok\n" << int(PanelState::DeviceLimit);
    }
    void hostileAnswers()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, devices);
        {
            const Impostor impostor(folder->path(), answer.toStdString());
            QVERIFY(impostor.isListening());
            open();
            part<QTabWidget>("tabs")->setCurrentIndex(1);
            QTRY_VERIFY_WITH_TIMEOUT(impostor.asked() >= 3, 30000);
            if (devices > 0)
                QTRY_COMPARE(rows(), devices);
            QVERIFY(rows() <= devices);
            QVERIFY(shown("a").battery <= 100 && shown("a").profile >= 0);
            QCOMPARE(part<QTableView>("flashBytes")->model()->rowCount(), 0);
        }
        // Whatever it was, a sound emulator is taken after it.
        startEmulator();
        QTRY_COMPARE_WITH_TIMEOUT(rows(), 3, 10000);
    }
};

TEST_CLASS(tst_PanelLink, PanelSetUp)

#include "tst_panellink.moc"
