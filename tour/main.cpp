// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// morlen-tour: drives the real program on an emulated bus: it opens a tile and waits for the loaded device
// page, clicks a report rate and checks the byte in the mouse's flash, clicks again with the radio off, and
// returns.
//
//   morlen-tour --screens FOLDER      with HIDUSB_BUS naming the folder of a running mouse-emulator
//
//   morlen-tour --gallery FOLDER      the same, with an emulator on gallery.scenario
//
// Saves a picture of each step, or of each state of the windows. Exits with 0 when every step succeeded.
#include "app/DialogMain.h"
#include "app/StartUp.h"
#include "device/DeviceState.h"
#include "emulator/Control.h"
#include "presentation/Notices.h"
#include "presentation/ScreenFont.h"
#include "presentation/UpDataParam.h"
#include "tour/Gallery.h"
#include "tour/Script.h"
#include "tour/Windows.h"

#include <QApplication>
#include <QDir>
#include <QScreen>
#include <cstdio>

namespace
{

class Tour
{
public:
    Tour(QWidget &shown, const QString &folder) : window_(shown), screens_(folder) { QDir().mkpath(folder); }

    QString run();

private:
    void enterDevice();
    void editRate();
    void loseMouse();
    void goBack();

    void shoot(const char *name);
    void click(const char *name, const QString &button, Script::Condition ready);
    static std::string order(const std::string &line);
    static bool flashByteIs(const char *value);
    static bool pageIsFed() { return DataLoaded && !windows::shown<UpDataParam>(); }

    QWidget &window_;
    const QDir screens_;
    int pictures_ = 0;
    Script script_;
};

// Takes the picture after the windows are drawn and hover effects have ended.
void Tour::shoot(const char *name)
{
    const auto settled = std::make_shared<QElapsedTimer>();
    settled->start();
    script_.step(
        name, [settled] { return settled->isValid() && settled->elapsed() > 0; },
        [this, settled] {
            QWidget *const dialog = QApplication::activeModalWidget();
            (dialog ? dialog : &window_)->raise(); // the emulator's panel may have come later
            settled->restart();
        });
    script_.step(
        name, [settled] { return settled->elapsed() > 400; },
        [this, name] {
            const QString file = screens_.filePath(QStringLiteral("%1-%2.png")
                                                       .arg(++pictures_, 2, 10, QLatin1Char('0'))
                                                       .arg(QLatin1String(name)));
            const QRect area = window_.frameGeometry(); // with everything in front of it
            QGuiApplication::primaryScreen()
                ->grabWindow(0, area.x(), area.y(), area.width(), area.height())
                .save(file);
            std::printf("%s\n", qPrintable(file));
            std::fflush(stdout);
        });
}

void Tour::click(const char *name, const QString &button, Script::Condition ready)
{
    script_.step(name, std::move(ready), [button] { windows::click(button); });
}

std::string Tour::order(const std::string &line)
{
    return emulator::sendOrder(qgetenv("HIDUSB_BUS").toStdString(), line).value_or("error");
}

bool Tour::flashByteIs(const char *value)
{
    return order("show mouse1 flash 0 1").find(std::string("0000: ") + value) == 0;
}

void Tour::enterDevice()
{
    const auto tilesAreThere = [] {
        return windows::attached().size() == 4 && windows::visible(QStringLiteral("btn0"));
    };
    script_.step("tiles", tilesAreThere);
    shoot("selection");
    click("second page of tiles", QStringLiteral("RightButton"), tilesAreThere);
    shoot("selection-second-page");
    click("first page of tiles", QStringLiteral("LeftButton"), [] { return true; });
    script_.step(
        "click on a tile", [] { return windows::visible(windows::tileOf(QStringLiteral("rx1k"))); },
        [] { windows::click(windows::tileOf(QStringLiteral("rx1k"))); });
    script_.step("wait dialog", [] { return windows::shown<UpDataParam>() != nullptr; });
    shoot("loading");
    script_.step("loaded device page", pageIsFed);
    shoot("device");
}

void Tour::editRate()
{
    click("sensor page", QStringLiteral("SensorButton"), [] { return true; });
    click("click on 500 Hz", QStringLiteral("Button500HZ"),
          [] { return windows::isChecked(QStringLiteral("Button1000HZ")); });
    script_.step("500 Hz in the flash", [] { return flashByteIs("02"); });
    shoot("rate-500");
    click("click on 1000 Hz", QStringLiteral("Button1000HZ"), [] { return true; });
    script_.step("1000 Hz in the flash", [] { return flashByteIs("01"); });
    shoot("rate-1000");
}

void Tour::loseMouse()
{
    script_.step(
        "radio off", [] { return true; }, [] { order("radio mouse1 off"); });
    click("click with the radio off", QStringLiteral("Button250HZ"), [] { return true; });
    script_.step("off-line notice", [] { return windows::shown<MouseOffLine>() != nullptr; });
    script_.step("old button", [] { return windows::isChecked(QStringLiteral("Button1000HZ")); });
    script_.step("old byte in the flash", [] { return flashByteIs("01"); });
    shoot("offline");
    script_.step(
        "radio on", [] { return true; }, [] { order("radio mouse1 on"); });
    script_.step("notice closes by itself", [] { return !windows::shown<MouseOffLine>(); });
    script_.step("wait dialog", [] { return windows::shown<UpDataParam>() != nullptr; });
    shoot("loading-again");
    script_.step("read anew", pageIsFed);
    shoot("online-again");
}

void Tour::goBack()
{
    click("back to the tiles", QStringLiteral("UpArrow"), [] { return true; });
    script_.step("tiles again", [] { return windows::visible(QStringLiteral("btn0")) != nullptr; });
    shoot("selection-again");
}

QString Tour::run()
{
    enterDevice();
    editRate();
    loseMouse();
    goBack();
    return script_.run();
}

} // namespace

int main(int argc, char *argv[])
{
    prepareStart();
    QApplication application(argc, argv);
    prepareApplication();
    const QStringList arguments = QApplication::arguments();
    const bool gallery = arguments.contains(QStringLiteral("--gallery"));
    const int option = arguments.indexOf(gallery ? QStringLiteral("--gallery") : QStringLiteral("--screens"));
    if (option < 0 || option + 1 >= arguments.size() || qEnvironmentVariableIsEmpty("HIDUSB_BUS")) {
        std::fprintf(stderr, "usage: HIDUSB_BUS=FOLDER morlen-tour --screens|--gallery FOLDER\n");
        return 2;
    }
    DialogMain window;
    scaleFontsToScreen(&window);
    // A fixed position keeps the pictures equal; in the corner the pointer hovers over no control.
    window.move(100, 80);
    QCursor::setPos(0, 0);
    window.show();
    const QString &folder = arguments[option + 1];
    const QString failed = gallery ? Gallery(window, folder).run() : Tour(window, folder).run();
    if (!failed.isEmpty())
        std::fprintf(stderr, "The step did not come: %s\n", qPrintable(failed));
    return failed.isEmpty() ? 0 : 1;
}
