// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the tests of upgrades share that run with the real layer and emulated boot loaders: the upgrade of the
// settings page, the repair of the selection page, and the bus with the devices of both.
#pragma once

#include "device/DeviceSearch.h"
#include "device/EventDispatch.h"
#include "device/SideBySide.h"
#include "hub/PostMsg.h"
#include "selection/DialogChange.h"
#include "service/UpgradeFlow.h"
#include "service/UpgradeState.h"
#include "tests/e2e/Program.h"
#include "tests/support/FirmwareFolder.h"

#include <QToolButton>
#include <algorithm>

// The mouse on its cable beside its receiver, and a pair of another model that nothing may touch.
inline const char UpgradePair[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                                  "receiver r1 class 8k mouse m1 version 1.02 address a10001\n"
                                  "mouse m2 cid 18 mid 7 version 1.05\n"
                                  "receiver r2 class 8k mouse m2 version 1.02 address a10002\n"
                                  "boottimes 1 2\n"
                                  "plug m1\nplug r1\nplug r2\n";

struct UpgradePageStub final : UpgradePage {
    QWidget *place() override { return &widget; }
    QString shownVersion(int target) const override { return target == TargetMouse ? mouse : receiver; }
    void showMark(int, bool) override {}
    void showWaiting(bool) override {}
    void showUpToDate() override {}
    bool isUpToDate() const override { return false; }

    QWidget widget;
    QString receiver = QStringLiteral("v1.02");
    QString mouse = QStringLiteral("v1.05");
};

inline std::vector<DeviceAllInfo> attachedNow()
{
    std::vector<DeviceAllInfo> devices = findDevices(DeviceFinder::Default);
    sideBySide(devices, identifyDevice);
    return devices;
}

// The upgrade of the settings page on the attached devices, up to its end.
class SettingsUpgrade
{
public:
    SettingsUpgrade()
    {
        resetDeviceState();
        for (auto *timer : flow.findChildren<QTimer *>())
            timer->setInterval(1);
        QObject::connect(PostMsg::instance(), &PostMsg::SigUpdateStart, &flow, [this] { flow.on_Start(); });
        refresh();
        OnDevicePage = 1;
        for (const DeviceAllInfo &device : deviceList())
            if (device.Usb || deviceList().size() == 1)
                SelectedDevice::set(device);
    }
    ~SettingsUpgrade() { StopUsbChanged(); }

    // The device page's list, as its hot-plug callback fills it.
    static void refresh()
    {
        std::vector<DeviceAllInfo> ofTheModel;
        for (const DeviceAllInfo &device : attachedNow())
            if (device.DriveIndex == 0 || device.DriveIndex == unknownIndex())
                ofTheModel.push_back(device);
        setDeviceList(ofTheModel);
    }
    bool opens()
    {
        flow.on_Receive_2_clicked();
        const auto says = [this](UpgradeText reason) { return text() == upgradeText(reason, 0); };
        return QTest::qWaitFor([&] { return !says(UpgradeText::UpgradeAsking); }, 30000) &&
               says(UpgradeText::ReadyUpdate);
    }
    void start() { flow.dialog().findChild<QAbstractButton *>(QStringLiteral("NewHong_2"))->click(); }
    bool isOver() { return !UpdateBusy && !flow.dialog().isBusy(); }
    QString text() { return flow.dialog().findChild<QLabel *>(QStringLiteral("ToolText_2"))->text(); }

    UpgradePageStub page;
    UpgradeFlow flow{page};
};

// The program, started again: the selection page with its button, and the upgrade dialog that belongs to it.
class Restarted
{
public:
    explicit Restarted(DialogChange &page) : page_(page)
    {
        resetDeviceState();
        page.show();
        DialogChange::UsbChanged();
        QCoreApplication::processEvents(); // its findings reach the page
    }
    bool offersRepair() const { return !repair()->isHidden(); }
    // Until what the devices have answered.
    bool opensRepair()
    {
        repair()->click();
        const auto says = [this](UpgradeText reason) { return text() == upgradeText(reason, 0); };
        return QTest::qWaitFor([&] { return !says(UpgradeText::UpgradeAsking); }, 30000) &&
               says(UpgradeText::ReadyUpdate);
    }
    QString text() const { return dialog_.findChild<QLabel *>(QStringLiteral("ToolText_2"))->text(); }
    // Its result's text. `look` is called until then.
    QString run(const std::function<void()> &look = [] {})
    {
        dialog_.findChild<QAbstractButton *>(QStringLiteral("NewHong_2"))->click();
        const auto ends = [this, &look] {
            look();
            return !dialog_.isBusy();
        };
        return QTest::qWaitFor(ends, 60000) ? text() : QStringLiteral("no end");
    }

private:
    QToolButton *repair() const { return page_.findChild<QToolButton *>(QStringLiteral("Repair")); }

    DialogChange &page_;
    UpDateRepair dialog_;
};

inline QString success() { return upgradeText(UpgradeText::DialogUpgradeSuccess, 0); }

// A pair that is upgraded, cut and repaired, beside another one that is not. Its errors are texts.
class UpgradeBus : public EmulatedBus
{
public:
    UpgradeBus() : EmulatedBus(UpgradePair)
    {
        LoadLanguageTables();
        firmware::clear();
        firmware::write(QStringLiteral("mouse.bin"), firmware::Mouse);
        firmware::write(QStringLiteral("receiver.bin"), firmware::Receiver);
        UpdateFailRecord::remove();
    }
    ~UpgradeBus()
    {
        UsbServer_Exit();
        page_.reset();
    }

    static QString record() { return UpdateFailRecord::storedText(); }
    QString words(const char *id)
    {
        const QString state = QString::fromStdString(emulated.order("state"));
        for (const QString &line : state.split(QLatin1Char('\n')))
            if (line.startsWith(QStringLiteral("device=%1 ").arg(QLatin1String(id))))
                return line;
        return {};
    }
    bool has(const char *id, const char *word)
    {
        return words(id).contains(QStringLiteral(" %1 ").arg(QLatin1String(word)));
    }
    bool runs(const char *id, const char *version)
    {
        return has(id, "boot=0") &&
               words(id).contains(QStringLiteral(" version=%1 ").arg(QLatin1String(version)));
    }
    bool isUntouched(const char *id)
    {
        return runs(id, "1.02") && emulated.reportCount(id, wire::Command::BootEnter) == 0;
    }
    // A mouse is not married to the receiver of another model.
    bool isMarried() { return has("m1", "address=a10001"); }

    // What is unplugged is plugged in again before the layer has given it up.
    void plugAgain(const char *id)
    {
        if (has(id, "plugged=0"))
            order(std::string("plug ") + id);
    }
    // Everything is plugged in again and as it wants to be.
    bool settlePair()
    {
        for (const char *id : {"m1", "r1"}) {
            order(std::string("fault ") + id + " clear");
            plugAgain(id);
        }
        const auto there = [this](const char *id) {
            const std::vector<emulator::Interface> faces = emulated.interfaces();
            return std::any_of(faces.begin(), faces.end(),
                               [id](const auto &face) { return face.device == id; });
        };
        return QTest::qWaitFor([&] { return there("m1") && there("r1"); });
    }
    void settleForRepair()
    {
        settlePair();
        if (has("r2", "plugged=1"))
            order("unplug r2"); // the repair asks for that
    }
    void makeOld()
    {
        settlePair();
        plugAgain("r2");
        order("version m1 1.05");
        order("version r1 1.02");
        settlePair();
    }
    Restarted restarted()
    {
        if (!page_)
            page_ = std::make_unique<DialogChange>();
        return Restarted(*page_);
    }
    // The program, started again, offers the repair if anything was cut, and it works in two tries. The
    // error.
    QString repairError()
    {
        settleForRepair();
        const auto state = [this] { return record() + words("m1") + words("r1"); };
        for (int tries = 0; !record().isEmpty(); ++tries) {
            if (tries == 2)
                return QStringLiteral("not repaired: ") + state();
            Restarted program = restarted();
            if (!program.offersRepair() || !program.opensRepair())
                return QStringLiteral("no repair: ") + program.text() + state();
            program.run();
            settlePair();
        }
        if (restarted().offersRepair())
            return QStringLiteral("a repair of nothing: ") + state();
        const bool works = has("m1", "boot=0") && has("r1", "boot=0");
        return works && isUntouched("r2") && isMarried() ? QString() : QStringLiteral("left: ") + state();
    }

private:
    std::unique_ptr<DialogChange> page_; // made once: the start of a program takes long
};

// The program's folder, for those that a test starts itself.
struct UpgradeSetUp : ProgramSetUp {
    UpgradeSetUp(int &argc, char **argv) : ProgramSetUp(argc, argv)
    {
        qputenv("UPGRADE_APPLICATION", applicationFolder().toLocal8Bit());
    }
};
