// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the lists of the macros' page cost beside plain list views of the toolkit with the same texts: 1,000
// macros listed and painted, and the 70 events of a macro. Also the page entered again with 1,000 macros in
// the folder, and one key of a recording. Off screen.
#include "device/hidusb/HIDUsb.h"
#include "environment/DataRoot.h"
#include "macro/EventList.h"
#include "macro/Macro.h"
#include "macro/MacroList.h"
#include "macro/RowPainting.h"
#include "macro/store/MacroFile.h"
#include "macro/store/MacroFolder.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"

#include <QApplication>
#include <QPixmap>
#include <QTemporaryDir>
#include <QToolButton>
#include <benchmark/benchmark.h>

namespace
{

constexpr int Macros = 1000;

QStringList names()
{
    QStringList all;
    for (int i = 0; i < Macros; ++i)
        all << QStringLiteral("Macro number %1").arg(i);
    return all;
}

macro::MacroRows seventyEvents()
{
    macro::MacroRows rows;
    for (int i = 0; i < MacroEventCount; ++i) {
        rows << macro::keyRow(QString(QLatin1Char(char('A' + i / 2 % 26))), i % 2 == 0);
        if (i + 1 < MacroEventCount)
            rows << macro::delayRow(quint32(10 + i));
    }
    return rows;
}

// Both lists have the place that they have on the page, and are painted once.
void place(QListWidget &list, QSize size)
{
    list.setStyleSheet(style::listView());
    list.setFrameShape(QFrame::NoFrame);
    list.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list.resize(size);
    list.show();
}
void paint(QListWidget &list)
{
    QPixmap picture(list.size());
    list.render(&picture);
    benchmark::DoNotOptimize(picture);
}

void listMacros(benchmark::State &state)
{
    const bool plain = state.range(0) != 0;
    QListWidget list;
    place(list, {212, 500});
    list.setUniformItemSizes(true);
    if (!plain)
        list.setItemDelegate(new MacroDelegate(&list));
    const QStringList all = names();
    MacroList macros(&list);
    for (auto _ : state) {
        list.clear();
        if (plain)
            list.addItems(all);
        else
            macros.show(all);
        paint(list);
    }
}
BENCHMARK(listMacros)->ArgName("plain")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void paintEvents(benchmark::State &state)
{
    const bool plain = state.range(0) != 0;
    QListWidget list;
    place(list, {320, 70 * 34 + 69 * 24}); // tall enough for all
    EventList events(&list);
    const macro::MacroRows rows = seventyEvents();
    if (plain) {
        const QIcon icon(style::pictureFolder(QStringLiteral("Macro")) + QStringLiteral("MacroDown.png"));
        for (const macro::MacroRow &row : rows)
            list.addItem(new QListWidgetItem(icon, row.text));
    } else {
        list.setItemDelegate(new EventDelegate(&list));
        events.show(rows);
    }
    for (auto _ : state)
        paint(list);
}
BENCHMARK(paintEvents)->ArgName("plain")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void enterThePageAgain(benchmark::State &state)
{
    for (const QString &name : names())
        macro::saveMacro(name, 1, {});
    Macro page;
    page.show();
    for (auto _ : state) {
        page.hide();
        page.show();
        QPixmap picture(page.size());
        page.render(&picture);
    }
    for (const QString &name : names())
        macro::removeMacro(name);
}
BENCHMARK(enterThePageAgain)->Unit(benchmark::kMillisecond);

// The last key of a macro that is almost full.
void recordAKey(benchmark::State &state)
{
    macro::saveMacro(QStringLiteral("One"), 1, seventyEvents().mid(0, 101));
    Macro page;
    page.show();
    auto *list = page.findChild<QListWidget *>(QStringLiteral("listWidgetHong"));
    list->setCurrentRow(0);
    auto *stop = page.findChild<QToolButton *>(QStringLiteral("StopRecord"));
    auto *start = page.findChild<QToolButton *>(QStringLiteral("StartRecord"));
    start->click();
    int events = 0;
    for (auto _ : state) {
        if (events == 60) {
            state.PauseTiming();
            stop->click();
            start->click();
            events = 0;
            state.ResumeTiming();
        }
        page.UpdateCapslockTip('A', events % 2 == 0, false);
        ++events;
    }
    stop->click();
}
BENCHMARK(recordAKey)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    setApplicationFolder(QStringLiteral(PRODUCT_DIR));
    makeDataFolders();
    QApplication application(argc, argv);
    applySkin();
    LoadLanguageTables();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    UsbServer_Exit();
}
