// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// emulator-panel: a window on the emulator of a bus folder.
#include "emulator/panel/PanelLook.h"
#include "emulator/panel/PanelWindow.h"

#include <QApplication>
#include <QCommandLineParser>

int main(int argc, char *argv[])
{
    // Nothing here draws by GL, and its plug-in costs more than all the rest of the start.
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
                                 QStringLiteral("DIR"), qEnvironmentVariable("HIDUSB_BUS"));
    parser.addOption(bus);
    parser.process(application);
    if (parser.value(bus).isEmpty()) {
        qWarning("Which emulator? Give --bus DIR or set HIDUSB_BUS.");
        return 2;
    }
    look::apply(application);
    PanelWindow window(parser.value(bus));
    window.show();
    return QApplication::exec();
}
