// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// bench_rescan: the real selection page with ten devices, of which one leaves and comes back. Prints, for
// each rescan, how long the main thread was away from its event loop at the longest, and how many of the
// tiles were made anew. Runs on any platform of the toolkit, best on a real display.
#include "app/DialogMain.h"
#include "app/StartUp.h"
#include "emulator/Emulator.h"
#include "environment/DataRoot.h"
#include "presentation/Widgets.h"
#include "selection/DialogChange.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

namespace
{

constexpr int Rounds = 10;
constexpr int LimitMs = 20000;
constexpr int LookMs = 10;
constexpr int SettleMs = 300; // for what the new tiles have posted

// The longest time between two waits of the event loop.
class Stalls
{
public:
    Stalls()
    {
        busy.start();
        auto *const loop = QAbstractEventDispatcher::instance();
        QObject::connect(loop, &QAbstractEventDispatcher::awake, loop, [this] {
            if (!busy.isValid()) // still at it from one turn to the next
                busy.start();
        });
        QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, loop, [this] {
            if (busy.isValid())
                longest = qMax(longest, double(busy.nsecsElapsed()) / 1e6);
            busy.invalidate();
        });
    }
    double take() { return std::exchange(longest, 0.0); }

private:
    QElapsedTimer busy;
    double longest = 0;
};

std::size_t attachedTo(const QWidget &window)
{
    return window.findChild<DialogChange *>()->attached().tiles().size();
}

bool waitForTiles(const QWidget &window, std::size_t count)
{
    QEventLoop loop;
    QTimer look;
    QElapsedTimer since;
    since.start();
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        const auto shown = std::size_t(window.findChildren<mytoolButtonEnter *>().size());
        if ((attachedTo(window) == count && shown == count) || since.elapsed() > LimitMs)
            QTimer::singleShot(SettleMs, &loop, &QEventLoop::quit);
    });
    look.start(LookMs);
    loop.exec();
    return attachedTo(window) == count;
}

QList<QPointer<QObject>> tiles(const QWidget &window)
{
    QList<QPointer<QObject>> found;
    for (mytoolButtonEnter *tile : window.findChildren<mytoolButtonEnter *>())
        found << tile;
    return found;
}

int rescan(emulator::Emulator &bus)
{
    DialogMain window;
    window.show();
    Stalls stalls;
    if (!waitForTiles(window, 10))
        return 1;
    std::printf("%-12s %12s %10s\n", "", "longest ms", "kept tiles");
    std::printf("%-12s %12.1f\n", "first tiles", stalls.take());
    for (int round = 0; round < Rounds; ++round) {
        const QList<QPointer<QObject>> before = tiles(window);
        const bool leaves = round % 2 == 0;
        bus.order(leaves ? "unplug rc2" : "plug rc2");
        if (!waitForTiles(window, leaves ? 9 : 10))
            return 1;
        const auto kept = std::count_if(before.begin(), before.end(),
                                        [](const QPointer<QObject> &tile) { return !tile.isNull(); });
        std::printf("%-12s %12.1f %10d\n", leaves ? "one leaves" : "one comes", stalls.take(), int(kept));
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir folder;
    QTemporaryDir home;
    qputenv("HIDUSB_BUS", folder.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    setApplicationFolder(QStringLiteral(PRODUCT_DIR));
    emulator::Emulator bus;
    std::string error;
    if (!bus.load(TILES_SCENARIO, error) || !bus.start(folder.path().toStdString(), error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    qputenv("QT_NO_GLIB", "1"); // the other loop does not tell when it waits
    prepareStart();
    QApplication application(argc, argv);
    prepareApplication();
    return rescan(bus);
}
