// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Program: the real windows, worker and layer on an emulated bus of their own, from the window to its end,
// led by a script. Made anew for each test function.
#pragma once

#include "app/DialogMain.h"
#include "app/StartUp.h"
#include "device/DeviceRecord.h"
#include "device/DeviceSearch.h"
#include "device/DeviceState.h"
#include "device/Worker.h"
#include "environment/DataRoot.h"
#include "presentation/Notices.h"
#include "presentation/UpDataParam.h"
#include "presentation/language/LanguageTables.h"
#include "service/Match.h"
#include "tests/support/EmulatedBus.h"
#include "tests/support/Leftovers.h"
#include "tests/support/ProductLinks.h"
#include "tests/support/TestMain.h"
#include "tour/Script.h"
#include "tour/Windows.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QTemporaryDir>
#include <QtTest>
#include <algorithm>
#include <memory>

inline const char Family[] = "mouse m1 cid 18 mid 6 version 1.05 battery 80\n"
                             "receiver r1 class 1k mouse m1 version 1.02 address a10001\n"
                             "mouse m2 cid 18 mid 7 version 1.05 battery 10\n"
                             "receiver r2 class 8k mouse m2 version 1.02 address a10002\n"
                             "plug r1\nplug r2\n";

inline bool always() { return true; }

// Nothing is under way and nobody is waited for.
inline bool quietState()
{
    return !SettingsBusy && Worker::instance()->checkTimer().isActive() && !ClearBlocksAfterRead &&
           !SkipReceiverQuery && !AwaitingMouse && !RestartWorker;
}
// So it is, and the device page shows what its mouse holds.
inline bool isRested()
{
    return OnDevicePage == 1 && DataLoaded && !WorkerArmed && !FullReadAwaited && !FullReadPending &&
           quietState() && !windows::shown<UpDataParam>() && !windows::shown<MouseOffLine>();
}
// The same, for a page that is being opened or read anew. A mouse that does not answer the pass in time, as
// on a busy machine, is not read; then it is waited for, as after an edit that it refuses.
inline bool comesToRest()
{
    const bool isUnfilled = OnDevicePage == 1 && FullReadAwaited && !WorkerArmed && !AwaitingMouse &&
                            !SelectedDevice::info().Online;
    if (isUnfilled)
        awaitMouse();
    return isRested();
}

class Program
{
public:
    explicit Program(const char *scenario = Family) : bus(scenario)
    {
        resetDeviceState();
        window = std::make_unique<DialogMain>();
        window->show();
    }
    // In the program's own order: a pass that begins later would open the connection again.
    ~Program()
    {
        Worker::instance()->stop();
        UsbServer_Exit();
        StopUsbChanged();
        window.reset();
        QCoreApplication::processEvents();
    }

    static QString tile(const QString &plug) { return windows::tileOf(EmulatedBus::pathPart(plug)); }
    // Steps to a loaded device page. A tile whose mouse did not answer in time pairs it. That dialog, or the
    // question before it, is closed, and the devices are looked for again, which each click would put off.
    void open(const QString &plug)
    {
        const auto clicked = std::make_shared<QElapsedTimer>();
        const auto ready = [plug, clicked] {
            QWidget *const modal = QApplication::activeModalWidget();
            if (dynamic_cast<Match *>(modal) || dynamic_cast<RePair *>(modal))
                static_cast<QDialog *>(modal)->reject();
            const bool isLookedFor = clicked->isValid() && !clicked->hasExpired(5000) && !isKnown(plug);
            return !modal && !isLookedFor && windows::visible(tile(plug));
        };
        script.repeat("the device's page", comesToRest, ready, [plug, clicked] {
            clicked->start();
            windows::click(tile(plug));
        });
    }
    static bool isKnown(const QString &plug)
    {
        const std::vector<DeviceAllInfo> tiles = windows::attached();
        return std::any_of(tiles.begin(), tiles.end(),
                           [part = EmulatedBus::pathPart(plug)](const auto &each) {
                               return each.DevicePath.contains(part) && each.DriveIndex != unknownIndex();
                           });
    }
    // Acts until that has come of it. What a mouse does not answer in time is refused, with the notice; when
    // it has been read anew, the act is done again.
    void actUntil(const char *what, const char *mouse, Script::Action act, Script::Condition done)
    {
        const auto ready = [this, mouse] {
            return isRested() && !QApplication::activeModalWidget() && agrees(mouse);
        };
        script.repeat(what, std::move(done), ready, std::move(act));
    }
    void clickUntil(const char *button, const char *mouse, Script::Condition done)
    {
        const auto click = [button] { windows::click(QLatin1String(button)); };
        actUntil(button, mouse, click, std::move(done));
    }
    void waitForLoad()
    {
        const auto begun = std::make_shared<bool>(false);
        script.step("read anew", [begun] {
            *begun = *begun || FullReadAwaited || windows::shown<UpDataParam>();
            return comesToRest() && *begun;
        });
    }
    void waitForPage()
    {
        script.step("loaded", [] { return DataLoaded && !windows::shown<UpDataParam>(); });
    }
    void click(const char *button)
    {
        const QString name = QString::fromLatin1(button);
        script.step(
            button, [name] { return windows::visible(name) != nullptr; }, [name] { windows::click(name); });
    }
    void order(const char *line)
    {
        script.step(line, always, [this, line] { bus.order(line); });
    }
    void expect(const char *what, Script::Condition condition) { script.step(what, std::move(condition)); }
    bool agrees(const char *mouse) { return sameBytes(DeviceRecord::copy(), bus.record(mouse)); }

    Leftovers leftovers;
    EmulatedBus bus;
    Script script;
    std::unique_ptr<DialogMain> window;
};

// ---- Notices, for conditions and actions of a script

inline QString infoText(const char *key)
{
    return language::text(language::Section::infoTips, key, LanguageIndex);
}
inline QString keyText(const char *key) { return language::text(language::Section::key, key, LanguageIndex); }

template <typename Notice> bool shows(const QString &text)
{
    auto *const notice = windows::shown<Notice>();
    return notice && notice->template findChild<QLabel *>(QStringLiteral("label"))->text() == text;
}

template <typename Notice> void answer(const char *button)
{
    if (auto *const notice = windows::shown<Notice>())
        notice->template findChild<QAbstractButton *>(QLatin1String(button))->click();
}

template <typename Notice> bool isShown() { return windows::shown<Notice>() != nullptr; }
template <typename Notice> bool isGone() { return !windows::shown<Notice>(); }

// The set-up of a test that drives the program: a bus, a home and the product's own data.
struct ProgramHome {
    ProgramHome()
    {
        EmulatedBus::folder(); // before the layer's first call
        qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
        prepareStart();
    }
    ProductLinks product{QStringLiteral(PRODUCT_DIR)};
    QTemporaryDir home;
};
struct ProgramSetUp : private ProgramHome, testmain::WidgetApplication {
    ProgramSetUp(int &argc, char **argv) : WidgetApplication(argc, argv)
    {
        QApplication::setQuitOnLastWindowClosed(false);
        prepareApplication();
        // Reading the font files asks the environment, which the framework and the tests change.
        while (!awaitFontFiles())
            ;
    }
};

// main() of a program that holds one such test.
template <typename Test> int runProgramTest(int argc, char **argv)
{
    return testmain::run<Test, ProgramSetUp>(argc, argv);
}
