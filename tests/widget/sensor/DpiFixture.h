// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The DPI editor by itself, for a model of the product's own catalogue, with a record to match: what the
// sensor page does for it when a device is shown.
#pragma once

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/DpiCodes.h"
#include "presentation/PageSurface.h"
#include "presentation/SkinPalette.h"
#include "sensor/MarkerTrack.h"
#include "sensor/SensorDPI.h"
#include "tests/support/StageNames.h"
#include "tests/widget/Fixture.h"

#include <QColorDialog>
#include <QComboBox>
#include <QLabel>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>

inline QString colorText(const DpiStage &stage)
{
    return QString("%1,%2,%3").arg(stage.Red).arg(stage.Green).arg(stage.Blue);
}

class DpiEditor
{
public:
    // All eight stages shown, or as many as told.
    explicit DpiEditor(int model, int current = 0, int count = DpiStageLimit)
    {
        fixture::beginWithDevice(model);
        SensorName = DeviceCatalogue().text(model, "Sensor");
        ReadDpiRange(model);
        DeviceRecord::edit([&](FlashDataMap &map) { fill(&map, model, current, count); });
        paint();
        panel.show();
        fake().clearCalls();
    }

    // The record into the panel, as the page does it.
    void paint()
    {
        const PageFilling filling(SensorPageBusy);
        panel.paint(DeviceRecord::copy(), DpiStageLimit);
    }

    // Empty when record and page agree.
    QString difference() const
    {
        const FlashDataMap map = DeviceRecord::copy();
        QStringList found;
        const auto compare = [&found](const QString &what, const QString &page, const QString &record) {
            if (page != record)
                found << what + " page " + page + " record " + record;
        };
        compare("count", QString::number(panel.stageCount()), QString::number(map.DpiStageCount));
        compare("choice", QString::number(choice()->currentIndex() + 1), QString::number(map.DpiStageCount));
        compare("current", QString::number(panel.currentStage()), QString::number(map.CurrentDpiStage));
        compare("button", QString::number(checkedButton()), QString::number(map.CurrentDpiStage));
        compare("bar", QString::number(checkedBar()), QString::number(map.CurrentDpiStage));
        for (int i = 0; i < DpiStageLimit; ++i) {
            const DpiStage &stage = map.DpiStages[i];
            const QString name = QString("stage %1").arg(i + 1);
            compare(name, button(i)->text(),
                    QString::number(SensorDpiDecode(stage.LevelX, stage.LevelFlags)));
            compare(name + " color", bar(i)->accessibleDescription(), colorText(stage));
            compare(name + " shown", QString::number(!button(i)->isHidden()),
                    QString::number(i < map.DpiStageCount));
        }
        compare("value", QString::number(spin()->value()), button(map.CurrentDpiStage)->text());
        if (marker()->pos() != StagePoint[map.CurrentDpiStage])
            found << QString("marker at %1").arg(marker()->x());
        return found.join("; ");
    }

    static FakeHidUsb &fake() { return FakeHidUsb::instance(); }
    static void goOffline(bool off = true) { fake().setOnline("dev", !off); }
    static bool nothingWritten() { return fake().updates().empty(); }
    template <typename Widget> Widget *child(const QString &name) const
    {
        return panel.findChild<Widget *>(name);
    }
    QToolButton *button(int i) const { return child<QToolButton>(StageNames[i] + QString("Button")); }
    QToolButton *bar(int i) const { return child<QToolButton>(StageNames[i] + QString("ButtonA")); }
    QSlider *slider() const { return child<QSlider>("horizontalSliderC"); }
    QSpinBox *spin() const { return child<QSpinBox>("spinBoxA"); }
    QComboBox *choice() const { return child<QComboBox>("ChooseEvent"); }
    QLabel *marker() const { return child<QLabel>("label_8"); }
    QColorDialog *picker() const { return panel.findChild<QColorDialog *>(); }
    // As by hand: into the box, over what it shows.
    void type(const QString &number) const
    {
        QApplication::setActiveWindow(panel.window());
        spin()->setFocus();
        spin()->selectAll();
        QTest::keyClicks(spin(), number);
    }
    void clickAdd() { QTest::mouseClick(child<QToolButton>("AddLevelA"), Qt::LeftButton); }
    void clickReduce() { QTest::mouseClick(child<QToolButton>("ReduceLevelA"), Qt::LeftButton); }
    void clickBar(int i)
    {
        QTest::mouseClick(bar(i), Qt::LeftButton);
        picker()->reject();
    }
    int checkedButton() const
    {
        return onlyChecked([this](int i) { return button(i); });
    }
    int checkedBar() const
    {
        return onlyChecked([this](int i) { return bar(i); });
    }
    // Drags the marker from where it stands to a point of the panel.
    void drag(const QPoint &to)
    {
        QWindow *window = panel.windowHandle();
        const QPoint from = marker()->geometry().center();
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, (from + to) / 2);
        QTest::mouseMove(window, to);
        QTest::mouseRelease(window, Qt::LeftButton, {}, to);
    }

    SensorDPI panel;

private:
    static void fill(FlashDataMap *map, int model, int current, int count)
    {
        const QStringList dpi = DeviceCatalogue().list(model, "DPIGrade");
        const QStringList color = DeviceCatalogue().list(model, "DPIColor");
        const SensorCodes codes{SensorDefineNames, SensorDefineValues, SensorName};
        for (int i = 0; i < DpiStageLimit; ++i) {
            const DpiStageCode code = encodeDpi(dpi[i].toInt(), 0, codes, SensorRanges);
            map->DpiStages[i] = {uint8_t(code.code),
                                 uint8_t(code.code),
                                 code.flags,
                                 uint8_t(color[3 * i].toInt()),
                                 uint8_t(color[3 * i + 1].toInt()),
                                 uint8_t(color[3 * i + 2].toInt())};
        }
        map->DpiStageCount = uint8_t(count);
        map->CurrentDpiStage = uint8_t(current);
    }
    template <typename Pick> static int onlyChecked(Pick pick)
    {
        int found = -1;
        for (int i = 0; i < DpiStageLimit; ++i)
            if (pick(i)->isChecked())
                found = found == -1 ? i : -2;
        return found;
    }
};

// Models of the product's catalogue, by index.
enum Model { WideModel, FastModel, TableModel, PlainModel, ModelCount };

struct DpiSetUp : fixture::ShippedProduct {
    DpiSetUp(int &argc, char **argv) : ShippedProduct(argc, argv) { ReadSensorDefines(); }
};
