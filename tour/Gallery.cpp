// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tour/Gallery.h"

#include "device/DeviceState.h"
#include "emulator/Control.h"
#include "environment/DataRoot.h"
#include "environment/Words.h"
#include "hub/PostMsg.h"
#include "keys/KeyVocabulary.h"
#include "macro/Macro.h"
#include "macro/store/MacroFile.h"
#include "macro/store/MacroFolder.h"
#include "presentation/Notices.h"
#include "presentation/UpDataParam.h"
#include "selection/NodePermission.h"
#include "selection/PermissionHint.h"
#include "service/Match.h"
#include "tour/EveryNotice.h"
#include "tour/Windows.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QListWidget>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

namespace
{

// The button to click after a row has been opened; null for none.
const std::pair<const char *, const char *> BindingPanels[] = {
    {"", "binding-functions"},    {"DPI_12", "binding-media"},    {"DPI_4", "binding-locks"},
    {"DPI_9", "binding-lights"},  {"DPI_11", "binding-sideways"}, {"DPI_7", "binding-dpi"},
    {"DPI_13", "binding-scroll"}, {"DPI_10", "binding-macros"},
};

void order(const QString &line)
{
    emulator::sendOrder(qgetenv("HIDUSB_BUS").toStdString(), line.toStdString());
}

} // namespace

Gallery::Gallery(QWidget &shown, const QString &folder) : window_(shown), screens_(folder)
{
    QDir().mkpath(folder);
}

// A picture of the notice alone, or of the window with everything in front of it.
void Gallery::save(const QString &name) const
{
    const NoticeWindow *notice = windows::shown<NoticeWindow>();
    const bool alone = notice && !notice->isModal();
    const QRect area = alone ? notice->frameGeometry() : window_.frameGeometry();
    QGuiApplication::primaryScreen()
        ->grabWindow(0, area.x(), area.y(), area.width(), area.height())
        .save(screens_.filePath(name + QStringLiteral(".png")));
}

// Waits until the painting has reached the screen and hover effects have ended.
void Gallery::shoot(const char *name)
{
    const auto since = std::make_shared<QElapsedTimer>();
    script_.step(
        name, [] { return true; }, [since] { since->start(); });
    script_.step(
        name, [since] { return since->isValid() && since->elapsed() > 400; },
        [this, name] { save(QLatin1String(name)); });
}

void Gallery::plug(const char *devices)
{
    const QStringList wanted = splitWords(QLatin1String(devices), QLatin1Char(' '));
    for (const QString &device : qAsConst(plugged_))
        if (!wanted.contains(device))
            order(QStringLiteral("unplug ") + device);
    for (const QString &device : wanted)
        if (!plugged_.contains(device))
            order(QStringLiteral("plug ") + device);
    plugged_ = wanted;
}

void Gallery::plugScene(const Scene &scene)
{
    const auto count = std::size_t(splitWords(QLatin1String(scene.devices), QLatin1Char(' ')).size());
    script_.step(
        scene.name, [] { return true; }, [this, scene] { plug(scene.devices); });
    script_.step(scene.name, [count] {
        return windows::attached().size() == count &&
               (count == 0) == !windows::visible(QStringLiteral("btn0"));
    });
}

void Gallery::shootScene(const Scene &scene)
{
    plugScene(scene);
    shoot(scene.name);
}

// The hint of an installed program for a node that the user may not open.
void Gallery::shootPermissionHint(const Scene &scene)
{
    const auto hint = [this] { return window_.findChild<PermissionHint *>(); };
    plugScene(scene);
    script_.step(
        scene.name, [] { return true; },
        [hint] {
            setNodeProbe([](const QString &path) { return path.startsWith(QLatin1String("/dev/")); });
            hint()->setNodes({QStringLiteral("/dev/hidraw3")}); // builds the card, with the pictures of here
            setApplicationFolder(QStringLiteral("/opt/morlen"));
            hint()->setNodes({QStringLiteral("/dev/hidraw3")});
            setApplicationFolder({});
            emit PostMsg::instance()->SigUpDateButton(true);
        });
    shoot(scene.name);
    script_.step(
        scene.name, [] { return true; },
        [hint] {
            hint()->setNodes({});
            setNodeProbe(nullptr);
        });
}

// One page of a device, with the pictures that `more` takes there; ends on the selection page.
void Gallery::shootDevicePage(const Scene &scene, const QString &button, const std::function<void()> &more)
{
    const QString plugName = QLatin1String(scene.devices);
    script_.step(
        scene.name, [] { return true; }, [this, scene] { plug(scene.devices); });
    script_.step(
        scene.name,
        [plugName] { return windows::attached().size() == 1 && windows::visible(windows::tileOf(plugName)); },
        [plugName] { windows::click(windows::tileOf(plugName)); });
    script_.step("wait dialog", [] { return windows::shown<UpDataParam>() != nullptr; });
    script_.step("loaded", [] { return DataLoaded && !windows::shown<UpDataParam>(); });
    script_.step(
        "the page", [] { return true; }, [button] { windows::click(button); });
    shoot(scene.name);
    more();
    script_.step(
        "back", [] { return true; }, [] { windows::click(QStringLiteral("UpArrow")); });
    script_.step("tiles", [] { return windows::visible(QStringLiteral("btn0")) != nullptr; });
}

void Gallery::shootPanel(const char *opener, const char *name)
{
    script_.step(
        name, [] { return true; },
        [opener] {
            windows::click(QStringLiteral("RightKey"));
            windows::click(QString::fromLatin1(opener));
        });
    shoot(name);
    script_.step(
        name, [] { return true; }, [] { windows::click(QStringLiteral("FunctionsBack")); });
}

// The lights in a colour of their own, from the top and from the end of the page.
void Gallery::shootLights()
{
    constexpr int steady = 3;
    script_.step(
        "steady lights", [] { return true; },
        [] {
            for (const char *name : {"LightMod", "LightMod_2"})
                windows::visible<QComboBox>(QLatin1String(name))->setCurrentIndex(steady);
            windows::click(QStringLiteral("toolButtonColorI"));
            windows::click(QStringLiteral("toolButtonColorM_2"));
        });
    shoot("lighting");
    script_.step(
        "the end of the page", [] { return true; },
        [] {
            auto *bar = windows::visible<QScrollBar>(QStringLiteral("verticalScrollBar"));
            bar->setValue(bar->maximum());
        });
    shoot("lighting-receiver");
}

// The empty page, a macro, and a recording from its start to the unsaved rows.
void Gallery::shootMacros()
{
    using namespace macro;
    const auto list = [this](const char *name) {
        return window_.findChild<QListWidget *>(QLatin1String(name));
    };
    const auto choose = [list](const char *name) {
        QListWidget *macros = list("listWidgetHong");
        macros->setCurrentItem(macros->findItems(QLatin1String(name), Qt::MatchExactly).value(0));
    };
    const auto act = [this](std::function<void()> action) {
        script_.step(
            "macros", [] { return true; }, std::move(action));
    };
    act([] {
        for (const QString &name : macroNames())
            removeMacro(name);
    });
    shootDevicePage({"macro-empty", "r1"}, QStringLiteral("MacroButton"), [=] {
        act([=] {
            const QString click = MouseNameFromBit(1);
            saveMacro(QStringLiteral("Quick reload"), CycleOnce,
                      {keyRow(QStringLiteral("LShift"), true), delayRow(35),
                       keyRow(QStringLiteral("R"), true), delayRow(60), keyRow(QStringLiteral("R"), false),
                       delayRow(12), keyRow(QStringLiteral("LShift"), false), delayRow(250),
                       keyRow(click, true), delayRow(20), keyRow(click, false)});
            saveMacro(QStringLiteral("Double tap"), CycleUntilReleased, {});
            saveMacro(QStringLiteral("A name as long as there may be"), CycleOnce, {});
            windows::click(QStringLiteral("ButtonMain"));
            windows::click(QStringLiteral("MacroButton"));
            choose("Quick reload");
            list("listWidgetKey")->setCurrentRow(4);
        });
        shoot("macro");
        act([=] {
            choose("Double tap");
            windows::click(QStringLiteral("DefaultDelay"));
            windows::click(QStringLiteral("StartRecord"));
            for (const int key : {int(Qt::Key_A), int(Qt::Key_S), int(Qt::Key_Space)})
                for (const bool down : {true, false})
                    window_.findChild<Macro *>()->UpdateCapslockTip(key, down, false);
        });
        shoot("macro-recording");
        act([] { windows::click(QStringLiteral("StopRecord")); });
        shoot("macro-unsaved");
        act([] { windows::click(QStringLiteral("Discard")); });
    });
}

void Gallery::shootNotices()
{
    for (const NoticeRow &row : everyNotice()) {
        const auto notice = std::make_shared<std::unique_ptr<NoticeWindow>>();
        script_.step(
            row.name, [] { return true; },
            [this, notice, &row] {
                *notice = row.make();
                (*notice)->placeOver(&window_);
                (*notice)->show();
            });
        shoot(row.name);
        script_.step(
            row.name, [] { return true; }, [notice] { notice->reset(); });
    }
}

// One after the other: before, during, failed and paired.
void Gallery::shootPairing()
{
    const auto press = [this](const char *name) {
        script_.step(
            name, [] { return windows::shown<Match>() && !pairing::isActive(); },
            [] { windows::click(QStringLiteral("MatchButton")); });
        script_.step(name, [] { return pairing::isActive(); });
    };
    const auto tell = [this](const char *line, PairingPhase outcome) {
        script_.step(
            line, [] { return true; }, [line] { order(QLatin1String(line)); });
        script_.step(line, [outcome] { return pairing::phase() == outcome; });
    };
    plugScene({"pairing", "rlone"});
    const QString receiver = QStringLiteral("rlone");
    script_.step(
        "the tile", [receiver] { return windows::visible(windows::tileOf(receiver)); },
        [receiver] { windows::click(windows::tileOf(receiver)); });
    script_.step("the dialog", [] { return windows::shown<Match>() != nullptr; });
    shoot("pairing");
    press("pairing-running");
    shoot("pairing-running");
    tell("pairfail rlone", PairingPhase::Failed);
    shoot("pairing-failed");
    press("again");
    tell("pair newcomer", PairingPhase::Succeeded);
    shoot("pairing-paired");
    closePairing();
}

void Gallery::closePairing()
{
    script_.step(
        "end of the pairing", [] { return true; }, [] { windows::shown<Match>()->WindowClosedSet(); });
    script_.step("tiles or page", [] { return !windows::shown<Match>(); });
}

QString Gallery::run()
{
    for (const Scene &scene : {Scene{"selection-0", ""},
                               {"selection-1", "r1"},
                               {"selection-2", "r1 r2"},
                               {"selection-3", "r1 r2 r3"},
                               {"selection-4", "r1 r2 r3 r4"},
                               {"selection-7", "r1 r2 r3 r4 r5 r6 r7"},
                               {"selection-unknown", "rstrange"},
                               {"selection-offline", "wired roff"}})
        shootScene(scene);
    for (const Scene &scene : {Scene{"selection-refused", ""}, {"selection-refused-beside", "r1 r2 r3"}})
        shootPermissionHint(scene);
    for (const Scene &scene :
         {Scene{"sensor-6", "r1"}, {"sensor-7", "r2"}, {"sensor-8", "r3"}, {"sensor-9", "r4"}})
        shootDevicePage(scene, QStringLiteral("SensorButton"));
    for (const Scene &scene : {Scene{"advanced", "r1"}, {"advanced-wired", "wired"}})
        shootDevicePage(scene, QStringLiteral("Advanced"));
    shootDevicePage({"settings-wired", "wired"}, QStringLiteral("FormSetting"));
    shootDevicePage({"settings", "r1"}, QStringLiteral("FormSetting"), [this] {
        script_.step(
            "the page's end", [] { return true; },
            [] {
                QScrollBar *bar =
                    windows::visible<QScrollArea>(QStringLiteral("scrollArea"))->verticalScrollBar();
                bar->setValue(bar->maximum());
            });
        shoot("settings-about");
    });
    shootDevicePage({"lighting-flow", "r2"}, QStringLiteral("LightsButton"), [this] { shootLights(); });
    shootDevicePage({"lighting-wired", "wired"}, QStringLiteral("LightsButton"));
    for (const Scene &scene : {Scene{"binding-6", "r1"}, {"binding-8", "r3"}, {"binding-9", "r4"}})
        shootDevicePage(scene, QStringLiteral("ButtonMain"));
    shootMacros();
    // The model with the most buttons shows every dialog of the binding page.
    shootDevicePage({"binding-7", "r2"}, QStringLiteral("ButtonMain"), [this] {
        for (const auto &[opener, name] : BindingPanels)
            shootPanel(opener, name);
    });
    shootPairing();
    shootDevicePage({"advanced-wired", "wired"}, QStringLiteral("Advanced"), [this] {
        script_.step(
            "space", [] { return true; },
            [this] {
                QCoreApplication::postEvent(&window_,
                                            new QKeyEvent(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier));
            });
        script_.step("the dialog", [] { return windows::shown<Match>() != nullptr; });
        shoot("pairing-wired");
        closePairing();
    });
    shootNotices();
    script_.step(
        "two alike", [] { return true; }, [this] { plug("r1 rtwin"); });
    script_.step("duplicate", [] { return windows::shown<QuestiondialogB>() != nullptr; });
    shoot("duplicate");
    script_.step(
        "end of the notice", [] { return true; },
        [] { windows::shown<QuestiondialogB>()->on_CloseButton_clicked(); });
    return script_.run();
}
