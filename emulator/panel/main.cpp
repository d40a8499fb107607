// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// emulator-panel: a window that controls the emulator of a bus folder.
#include "emulator/panel/PanelLook.h"
#include "emulator/panel/PanelWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QListView>
#include <QTimer>

namespace
{

constexpr int LookMs = 200;
constexpr int QuietLooks = 5;

// Saves a picture of the window after reports arrived and a second passed without one, then ends the program.
void takePicture(QWidget &window, const QString &file)
{
    auto *timer = new QTimer(&window);
    const auto *reports = window.findChild<QListView *>(QStringLiteral("reportList"));
    QObject::connect(timer, &QTimer::timeout, timer, [=, &window, before = 0, quiet = 0]() mutable {
        const int count = reports->model()->rowCount();
        quiet = count > 0 && count == before ? quiet + 1 : 0;
        before = count;
        if (quiet == QuietLooks)
            QCoreApplication::exit(window.grab().save(file) ? 0 : 1);
    });
    timer->start(LookMs);
}

} // namespace

int main(int argc, char *argv[])
{
    // The panel does not use GL, and loading its plug-in takes longer than the rest of the start.
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("emulator-panel"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows the devices of a running mouse-emulator."));
    parser.addHelpOption();
    const QCommandLineOption bus(QStringLiteral("bus"),
                                 QStringLiteral("The emulator's bus folder; HIDUSB_BUS unless given."),
                                 QStringLiteral("DIR"), QString::fromLocal8Bit(qgetenv("HIDUSB_BUS")));
    parser.addOption(bus);
    const QCommandLineOption picture(
        QStringLiteral("picture"),
        QStringLiteral("Saves a picture of the window after some reports and ends."), QStringLiteral("FILE"));
    parser.addOption(picture);
    parser.process(application);
    if (parser.value(bus).isEmpty()) {
        qWarning("Which emulator? Give --bus DIR or set HIDUSB_BUS.");
        return 2;
    }
    look::apply(application);
    PanelWindow window(parser.value(bus));
    window.show();
    if (parser.isSet(picture))
        takePicture(window, parser.value(picture));
    return QApplication::exec();
}
