// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Recognising devices, and the hot-plug callback of the device page, against a scripted layer.
#include "device/DeviceSearch.h"
#include "device/DeviceState.h"
#include "device/EventDispatch.h"
#include "device/SideBySide.h"
#include "device/Worker.h"
#include "tests/support/DeviceFixture.h"
#include "tests/support/OtherThread.h"
#include "tests/support/TestMain.h"

#include <QDir>
#include <QtTest>
#include <condition_variable>
#include <mutex>
#include <numeric>
#include <set>

namespace
{

// Each who arrives waits until all are there; false when somebody does not come.
class Meeting
{
public:
    explicit Meeting(std::size_t all) : all_(all) {}
    bool arrive()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        ++arrived_;
        changed_.notify_all();
        return changed_.wait_for(lock, std::chrono::seconds(10), [this] { return arrived_ >= all_; });
    }

private:
    const std::size_t all_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t arrived_ = 0;
};

int threadCount() { return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs).size(); }

} // namespace

class tst_devicewatch : public DeviceFixture
{
    Q_OBJECT

private:
    std::unique_ptr<Worker> worker;

    static FakeDevice device(const char *path, const char *pid, DeviceIdentity identity, uint8_t address = 1)
    {
        FakeDevice fake;
        fake.path = path;
        fake.vid = "1209";
        fake.pid = pid;
        fake.identity = identity;
        fake.address[0] = address;
        fake.receiverVersion = 0x010A;
        return fake;
    }
    static FakeDevice receiver(const char *path = "receiver") { return device(path, "0002", {18, 6, 0}); }
    static FakeDevice cable(uint8_t address = 1) { return device("cable", "0001", {18, 6, 3}, address); }

    // Selects what stands behind a path, as the selection page does.
    void select(const char *path)
    {
        DeviceAllInfo info;
        info.DevicePath = QString::fromLatin1(path);
        refreshDevice(info);
        info.DongleVersion = QStringLiteral("v1.0A");
        emit PostMsg::instance()->SigSelectMouseInfo(info);
        pointCurrentDeviceAtNothing();
        hub->lines.clear();
        layer.clearCalls();
    }
    void changed()
    {
        runOnOtherThread([] { DevicePageUsbChanged(); });
        QTRY_VERIFY(!worker->isRunning());
        QCoreApplication::processEvents();
        hub->lines.removeAll(QStringLiteral("setver 4"));
    }
    bool leftPage() const { return hub->lines.contains(QStringLiteral("page 0")); }

private slots:
    void init()
    {
        begin();
        worker = std::make_unique<Worker>();
        worker->checkTimer().stop();
    }
    void cleanup() { worker.reset(); }

    void identification_data()
    {
        QTest::addColumn<int>("cid");
        QTest::addColumn<int>("mid");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("match");
        QTest::addColumn<int>("driveIndex");
        QTest::addColumn<bool>("usb");
        QTest::newRow("first model") << 18 << 6 << 0 << int(DeviceMatch::Known) << 0 << false;
        QTest::newRow("third model on 8K") << 18 << 8 << 5 << int(DeviceMatch::Known) << 2 << false;
        QTest::newRow("cable 3") << 18 << 7 << 3 << int(DeviceMatch::Known) << 1 << true;
        QTest::newRow("cable 2") << 18 << 7 << 2 << int(DeviceMatch::Known) << 1 << true;
        QTest::newRow("4K") << 18 << 7 << 1 << int(DeviceMatch::Known) << 1 << false;
        QTest::newRow("2K") << 18 << 7 << 4 << int(DeviceMatch::Known) << 1 << false;
        QTest::newRow("another customer") << 19 << 6 << 0 << int(DeviceMatch::Unknown) << 3 << false;
        QTest::newRow("another model") << 18 << 99 << 3 << int(DeviceMatch::Unknown) << 3 << true;
        QTest::newRow("not ready") << 0 << 0 << 3 << int(DeviceMatch::Unknown) << 3 << true;
    }
    void identification()
    {
        QFETCH(int, cid);
        QFETCH(int, mid);
        QFETCH(int, kind);
        QFETCH(int, match);
        QFETCH(int, driveIndex);
        QFETCH(bool, usb);
        layer.setDevices({device("d", "0001", {uint8_t(cid), uint8_t(mid), uint8_t(kind)})});
        DeviceAllInfo info;
        info.DevicePath = QStringLiteral("d");
        QCOMPARE(int(identifyDevice(info)), match);
        QCOMPARE(info.DriveIndex, driveIndex);
        QCOMPARE(info.Usb, usb);
        QCOMPARE(info.Online, match == int(DeviceMatch::Known));
        QCOMPARE(layer.count("UsbFinderC_GetDeviceInfo"), cid || mid ? 1 : 10);
    }

    void refreshReadsTheAddress()
    {
        layer.setDevices({receiver()});
        layer.setOnline("receiver", false);
        DeviceAllInfo info;
        info.DevicePath = QStringLiteral("receiver");
        QCOMPARE(int(refreshDevice(info)), int(DeviceMatch::Known));
        QVERIFY(!info.Online);
        QCOMPARE(info.UsbAddress.size(), 3);
        QCOMPARE(int(uint8_t(info.UsbAddress[0])), 1);
    }

    // The first question opens the device, for which an on-line question leaves too little time.
    void theAddressIsNotTheFirstQuestion()
    {
        layer.setDevices({receiver()});
        DeviceAllInfo info;
        info.DevicePath = QStringLiteral("receiver");
        refreshDevice(info);
        QCOMPARE(layer.calls().front(), std::string("UsbFinderC_GetDeviceInfo receiver"));
        QCOMPARE(layer.calls().back(), std::string("UsbFinderC_GetDeviceOnLineWithUsbAddress receiver"));
    }

    void anAddressThatIsNotAnsweredIsUnknown()
    {
        DeviceAllInfo info;
        info.DevicePath = QStringLiteral("receiver");
        info.UsbAddress = QByteArray("\1\2\3");
        refreshDevice(info); // nothing is attached
        QVERIFY(info.UsbAddress.isEmpty());
        layer.setDevices({device("receiver", "0002", {18, 6, 0}, 0)});
        QCOMPARE(int(refreshDevice(info)), int(DeviceMatch::Known));
        QVERIFY2(info.UsbAddress.isEmpty(), "zeros are no address");
    }

    void searchWalksTheCatalogueInOrder()
    {
        QCOMPARE(searchedProductIds(), (QStringList{"0001", "0002", "0005"}));
        layer.setDevices({device("8k", "0005", {18, 6, 5}), receiver(), cable()});
        const std::vector<DeviceAllInfo> found = findDevices(DeviceFinder::Default);
        QCOMPARE(found.size(), size_t(3));
        QCOMPARE(found[0].DevicePath, QStringLiteral("cable"));
        QCOMPARE(found[1].DevicePath, QStringLiteral("receiver"));
        QCOMPARE(found[2].DevicePath, QStringLiteral("8k"));
        QCOMPARE(found[1].DongleVersion, QStringLiteral("v1.0A"));
        QCOMPARE(found[1].Vid, QStringLiteral("1209"));
        QCOMPARE(layer.count("UsbFinderC_FindHidDevicesByDefaultDeviceId"), 3);
        findDevices(DeviceFinder::ByInterface);
        QCOMPARE(layer.calls().back(), std::string("UsbFinderC_GetUsbDeviceAttribute 8k"));
        QCOMPARE(layer.count("UsbFinderC_FindHidDevicesByDeviceId"), 3);
        bool constants = false;
        for (const std::string &call : layer.calls())
            constants = constants || call == "UsbFinderC_FindHidDevicesByDeviceId 1209 0001 1 5";
        QVERIFY(constants);
    }

    void aDeviceUnderTwoIdsIsFoundOnce()
    {
        layer.setDevices(
            {receiver(), device("receiver", "0005", {18, 6, 5}), device("8k", "0005", {18, 6, 5})});
        const std::vector<DeviceAllInfo> found = findDevices(DeviceFinder::Default);
        QCOMPARE(found.size(), size_t(2));
        QCOMPARE(found[0].DevicePath, QStringLiteral("receiver"));
        QCOMPARE(found[0].Pid, QStringLiteral("0002"));
        QCOMPARE(found[1].DevicePath, QStringLiteral("8k"));
    }

    void atMostFiveForAPair()
    {
        std::vector<FakeDevice> many;
        for (char name = 'a'; name < 'h'; ++name)
            many.push_back(receiver(std::string(1, name).c_str()));
        layer.setDevices(many);
        QCOMPARE(findDevices(DeviceFinder::Default).size(), size_t(5));
    }

    void asManyAtATimeAsTheLimitAndEachOnce()
    {
        std::vector<int> numbers(100);
        std::iota(numbers.begin(), numbers.end(), 0);
        Meeting first(SideBySideLimit);
        std::mutex mutex;
        std::multiset<int> done;
        std::size_t at = 0;
        std::size_t most = 0;
        const int threads = threadCount();
        sideBySide(numbers, [&](int number) {
            {
                const std::lock_guard<std::mutex> lock(mutex);
                most = std::max(most, ++at);
            }
            const bool met = first.arrive();
            const std::lock_guard<std::mutex> lock(mutex);
            --at;
            if (met)
                done.insert(number);
        });
        QCOMPARE(most, SideBySideLimit);
        QVERIFY(std::equal(done.begin(), done.end(), numbers.begin(), numbers.end()));
        QTRY_COMPARE(threadCount(), threads);
    }

    // A device that does not answer holds up no other one.
    void aSearchAsksItsDevicesSideBySide()
    {
        const QStringList names{"a", "b", "c", "d", "e"};
        std::vector<FakeDevice> many;
        for (const QString &name : names)
            many.push_back(receiver(qPrintable(name)));
        layer.setDevices(many);
        select("c");
        Meeting all(many.size());
        std::atomic<int> met{0};
        layer.setHook([&](const std::string &name) {
            if (name == "UsbFinderC_GetDeviceOnLineWithUsbAddress")
                met += all.arrive() ? 1 : 0;
        });
        changed();
        layer.setHook(nullptr);
        QCOMPARE(met.load(), int(many.size()));
        QStringList found;
        for (const DeviceAllInfo &device : deviceList())
            found << device.DevicePath;
        QCOMPARE(found, names);
    }

    void selectedDeviceBecomesTheCurrentPath()
    {
        layer.setDevices({receiver()});
        select("receiver");
        QCOMPARE(std::string(CurrentDevicePath()), std::string("a"));
        changed();
        QCOMPARE(std::string(CurrentDevicePath()), std::string("receiver"));
        QVERIFY(DeviceMatched);
        QVERIFY(!leftPage());
        QCOMPARE(hub->lines, QStringList{"labels v1.0A "});
    }

    void anotherModelIsDroppedFromTheList()
    {
        layer.setDevices(
            {receiver(), device("other", "0005", {18, 7, 5}), device("alien", "0005", {18, 99, 5})});
        select("receiver");
        changed();
        QCOMPARE(deviceList().size(), size_t(2)); // the unknown one stays
        QVERIFY(!leftPage());
    }

    void pullingTheDeviceLeavesThePage()
    {
        layer.setDevices({receiver(), receiver("second")});
        select("receiver");
        layer.setDevices({receiver("second")});
        changed();
        QVERIFY(leftPage());
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("receiver"));
    }

    void pullingTheLastDeviceForgetsTheSelection()
    {
        layer.setDevices({receiver()});
        select("receiver");
        layer.setDevices({});
        changed();
        QVERIFY(leftPage());
        QVERIFY(SelectedDevice::info().DevicePath.isEmpty());
    }

    void anUpgradeKeepsThePage()
    {
        layer.setDevices({receiver(), receiver("second")});
        select("receiver");
        NotUpgrading = false;
        layer.setDevices({receiver("second")});
        changed();
        QVERIFY(!leftPage());
        layer.setDevices({});
        hub->lines.clear();
        changed();
        QVERIFY2(hub->lines.isEmpty(), qPrintable(hub->lines.join(QLatin1Char('\n'))));
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("receiver"));
    }

    void pluggingTheCableInSwitchesToIt_data()
    {
        QTest::addColumn<int>("address");
        QTest::addColumn<bool>("online");
        QTest::addColumn<bool>("switches");
        QTest::newRow("same mouse") << 1 << true << true;
        QTest::newRow("another mouse of the model") << 2 << true << false;
        QTest::newRow("not answering") << 1 << false << false;
    }
    void pluggingTheCableInSwitchesToIt()
    {
        QFETCH(int, address);
        QFETCH(bool, online);
        QFETCH(bool, switches);
        layer.setDevices({receiver()});
        select("receiver");
        OnDevicePage = 1;
        layer.addDevice(cable(uint8_t(address)));
        layer.setOnline("cable", online);
        changed();
        QCOMPARE(SelectedDevice::info().DevicePath,
                 switches ? QStringLiteral("cable") : QStringLiteral("receiver"));
        QCOMPARE(std::string(CurrentDevicePath()), std::string(switches ? "cable" : "receiver"));
        QCOMPARE(layer.count("UsbServerC_Start"), switches ? 1 : 0);
        QVERIFY(!leftPage());
    }

    void unknownAddressesAreNotTheSame()
    {
        layer.setDevices({device("receiver", "0002", {18, 6, 0}, 0)});
        select("receiver");
        OnDevicePage = 1;
        layer.addDevice(cable(0));
        changed();
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("receiver"));
        QCOMPARE(int(deviceList().size()), 2);
        layer.setDevices({receiver()});
        select("receiver");
        layer.addDevice(cable());
        changed();
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("cable"));
    }

    void onACableNothingSwitches()
    {
        layer.setDevices({cable(), receiver()});
        select("cable");
        changed();
        QCOMPARE(SelectedDevice::info().DevicePath, QStringLiteral("cable"));
        QCOMPARE(layer.count("UsbServerC_Start"), 0);
    }

    void aSelectionThatMovedOnIsLeftAlone()
    {
        layer.setDevices({receiver(), device("other", "0005", {18, 7, 5})});
        select("receiver");
        layer.setHook([this](const std::string &name) {
            if (name != "UsbFinderC_GetDeviceInfo")
                return;
            DeviceAllInfo other;
            other.DevicePath = QStringLiteral("other");
            SelectedDevice::set(other); // the user went on while this search was asking
        });
        changed();
        layer.setHook(nullptr);
        QVERIFY(!leftPage());
        QVERIFY(!hub->lines.contains(QStringLiteral("labels")));
    }

    void theOpenUpgradeDialogIsTold_data()
    {
        QTest::addColumn<bool>("open");
        QTest::addColumn<bool>("busy");
        QTest::addColumn<bool>("told");
        QTest::newRow("closed") << false << false << false;
        QTest::newRow("open") << true << false << true;
        QTest::newRow("open and flashing") << true << true << false;
    }
    void theOpenUpgradeDialogIsTold()
    {
        QFETCH(bool, open);
        QFETCH(bool, busy);
        QFETCH(bool, told);
        layer.setDevices({receiver()});
        select("receiver");
        UpgradeDialogOpen = open;
        UpdateBusy = busy;
        changed();
        QCOMPARE(hub->lines.contains(QStringLiteral("checkupdate")), told);
    }

    // The version of a cable is the mouse's own.
    void onTheCableTheReceiverBesideItIsAnnounced()
    {
        FakeDevice beside = receiver();
        beside.receiverVersion = 0x0203;
        layer.setDevices({beside, cable()});
        select("cable");
        changed();
        QVERIFY2(hub->lines.contains("labels v2.03 "), qPrintable(hub->lines.join('|')));
        layer.setDevices({cable()});
        hub->lines.clear();
        changed();
        QVERIFY2(hub->lines.contains("labels  "), qPrintable(hub->lines.join('|')));
    }
};

TEST_CLASS(tst_devicewatch, testmain::CoreApplication)
#include "tst_devicewatch.moc"
