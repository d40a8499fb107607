// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The search of the selection page: its devices are asked side by side and listed in their order.
#include "selection/DeviceScan.h"
#include "tests/support/DeviceFixture.h"
#include "tests/support/TestMain.h"

#include <condition_variable>
#include <mutex>

class tst_DeviceScan : public DeviceFixture
{
    Q_OBJECT

private slots:
    void init() { begin(); }

    // Each question waits until all devices have been asked it.
    void devicesAreAskedSideBySide_data()
    {
        QTest::addColumn<QString>("question");
        QTest::newRow("what they are") << "UsbFinderC_GetDeviceInfo";
        QTest::newRow("whether they are on line") << "UsbFinderC_GetDeviceOnLineWithUsbAddress";
    }
    void devicesAreAskedSideBySide()
    {
        QFETCH(QString, question);
        std::vector<FakeDevice> many;
        for (const char *pid : {"0001", "0002"}) {
            for (int i = 0; i < 5; ++i) {
                FakeDevice device;
                device.path = pid + std::string("/") + std::to_string(i);
                device.vid = "1209";
                device.pid = pid;
                device.identity = {18, uint8_t(6 + i % 3), uint8_t(device.pid == "0001" ? 3 : 0)};
                many.push_back(device);
            }
        }
        layer.setDevices(many);
        std::mutex mutex;
        std::condition_variable changed;
        std::size_t asked = 0;
        std::atomic<bool> alone{false};
        layer.setHook([&](const std::string &name) {
            if (name != question.toStdString())
                return;
            std::unique_lock<std::mutex> lock(mutex);
            ++asked;
            changed.notify_all();
            const auto all = [&] { return asked >= many.size(); };
            alone = alone || !changed.wait_for(lock, std::chrono::seconds(10), all);
        });
        const DeviceScan scan = scanDevices();
        layer.setHook(nullptr);
        QVERIFY(!alone);
        QCOMPARE(scan.devices.size(), many.size());
        for (std::size_t i = 0; i < many.size(); ++i) {
            QCOMPARE(scan.devices[i].DevicePath, QString::fromStdString(many[i].path));
            QCOMPARE(scan.devices[i].DriveIndex, int(i % 5 % 3));
        }
    }
};

TEST_CLASS(tst_DeviceScan, testmain::CoreApplication)
#include "tst_devicescan.moc"
