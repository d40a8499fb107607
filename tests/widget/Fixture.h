// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the tests of windows share: devices of the small catalogue on the scripted layer, records of what
// the hub carried, and a clean state before each test.
#pragma once

#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "hub/PostMsg.h"
#include "presentation/SkinPalette.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/FakeHidUsb.h"
#include "tests/support/OtherLanguage.h"
#include "tests/support/OtherThread.h"
#include "tests/support/ProductFolder.h"
#include "tests/support/ProductLinks.h"
#include "tests/support/TestMain.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>
#include <functional>

namespace fixture
{

using support::OtherLanguage;
using support::WithoutTexts;

constexpr uint8_t Cid = 18;
constexpr uint8_t CableKind = 3;

// The product id at which a device of that kind is found in the small catalogue.
inline std::string pidOf(uint8_t kind)
{
    return kind == Receiver1K ? "0002" : kind == Receiver8K ? "0005" : "0001";
}

inline FakeDevice device(const std::string &path, uint8_t mid, uint8_t kind, bool online = true)
{
    FakeDevice made;
    made.path = path;
    made.vid = "1209";
    made.pid = pidOf(kind);
    made.identity = {Cid, mid, kind};
    made.online = online;
    return made;
}

// One that the shipped catalogue looks for, at "0x0002/6" for model 6 behind product id 0x0002.
inline FakeDevice shipped(uint8_t mid, uint8_t kind, const char *pid, bool online = true)
{
    FakeDevice made = device(std::string(pid) + '/' + std::to_string(mid), mid, kind, online);
    made.vid = "0x1209";
    made.pid = pid;
    return made;
}

inline DeviceAllInfo info(const QString &path, uint16_t kind, int driveIndex = 0)
{
    DeviceAllInfo made;
    made.DevicePath = path;
    made.DeviceKind = kind;
    made.Usb = isWiredKind(kind);
    made.DriveIndex = driveIndex;
    made.Cid = Cid;
    made.Mid = uint8_t(6 + driveIndex);
    return made;
}

// A catalogue of the test's own, beside what is taken from the files that ship with the program.
struct LinkedFolder : ProductFolder {
    explicit LinkedFolder(const QByteArray &catalogue) : ProductFolder(catalogue)
    {
        take(QStringLiteral("Picture"));
        take(QStringLiteral("Language"));
    }
    void take(const QString &name) const
    {
        QFile::link(QStringLiteral(PRODUCT_FOLDER "/") + name, path(name));
    }
};

// The set-up of most tests: the skin and the texts that ship, under a catalogue of the test's own.
struct ShippedLooks {
    ShippedLooks(int &argc, char **argv, const QByteArray &catalogue = smallCatalogue())
        : product(catalogue), application(argc, argv)
    {
        QApplication::setQuitOnLastWindowClosed(false);
        LoadLanguageTables();
    }

    LinkedFolder product;
    QApplication application;
};

// The set-up with everything that ships, the catalogue included, and a home of the test's own.
struct ShippedHome {
    ShippedHome()
    {
        qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
        makeDataFolders();
    }
    ProductLinks product{QStringLiteral(PRODUCT_FOLDER)};
    QTemporaryDir home;
};
struct ShippedProduct : private ShippedHome, testmain::WidgetApplication {
    ShippedProduct(int &argc, char **argv) : WidgetApplication(argc, argv)
    {
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
        applySkin();
    }
};

// Makes the device at `path` the selected one, with the windows open for input.
inline void select(const DeviceAllInfo &selected)
{
    SelectedDevice::set(selected);
    SelectedDevice::setCacheName(imageFileName(selected.Cid, selected.Mid));
    pointCurrentDeviceAt(selected.DevicePath);
    UiArmed = true;
}

inline void clean()
{
    FakeHidUsb::instance().reset();
    resetDeviceState();
    DeviceRecord::edit([](FlashDataMap &map) { map = FlashDataMap{}; });
}

// A clean state beside one device, "dev", which is the selected one.
inline void beginWithDevice(int driveIndex = 0, uint16_t kind = Receiver8K)
{
    clean();
    FakeHidUsb::instance().addDevice(device("dev", uint8_t(6 + driveIndex), uint8_t(kind)));
    select(info("dev", kind, driveIndex));
}

// Emits what must not be emitted on the main thread, and turns the event loop until it has been taken.
inline void emitOnOtherThread(const std::function<void()> &emission) { runOnOtherThread(emission); }

// Acts on the next modal dialog of that class, once it is up.
template <typename Notice> void whenModal(std::function<void(Notice *)> act)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act] {
        auto *notice = dynamic_cast<Notice *>(QApplication::activeModalWidget());
        if (!notice)
            return;
        timer->stop();
        timer->deleteLater();
        act(notice);
    });
    timer->start(5);
}

} // namespace fixture
