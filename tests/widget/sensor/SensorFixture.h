// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The sensor page on the scripted layer, for models that differ in what counts for it: its record, its
// controls by their names, and the page as one text.
#pragma once

#include "catalogue/DpiCodes.h"
#include "presentation/language/LanguageTables.h"
#include "sensor/PerformanceTimes.h"
#include "sensor/Sensor.h"
#include "sensor/SensorDPI.h"
#include "sensor/SensorRate.h"
#include "tests/support/StageNames.h"
#include "tests/widget/Fixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>
#include <cstring>

struct TestModel {
    const char *sensor;
    int stages;
    int xin1;
    const char *range;
};
// By the index in the catalogue. The last two do not ship: one with all capabilities that wants to hide
// them, and one whose name is a part of others and that claims more stages than there are.
constexpr TestModel TestModels[] = {
    {"3395", 6, 1, "50,26000,50,0x00"},
    {"3950", 8, 1, "50,26000,50,26100,42000,100,0x22"},
    {"PA42", 5, 1, "100,6000,100,6200,12000,200,0x11"},
    {"3311", 4, 2, "100,10000,100,0x00"},
    {"3395", 6, 2, "50,26000,50,0x00"},
    {"3", 12, 1, "50,26000,50,0x00"},
};
enum TestModelIndex { M3395, M3950, MPA42, M3311, MHidden, MPart, MUnknown };

inline QByteArray sensorCatalogue()
{
    const auto code = ProductFolder::code;
    QByteArray text = "[Option]\nDeviceTotal=6\nVID=" + code("1209") + "\nCID=" + code("18") + "\n";
    for (std::size_t i = 0; i < std::size(TestModels); ++i) {
        const TestModel &model = TestModels[i];
        text += "[Drive" + QByteArray::number(int(i) + 1) + "]\nMID=" + QByteArray::number(int(i) + 6) +
                "\nSensor=" + code(model.sensor) + "\nDPIMaxGrade=" + QByteArray::number(model.stages) +
                "\nXIn1=" + QByteArray::number(model.xin1) + "\nDPIRange=" + model.range +
                "\nDPIGrade=400,800,1600,2400,3200,6400,8000,12000\nDPIColor=1,2,3,4,5,6,7,8,9,10,11,12,13,"
                "14,15,16,17,18,19,20,21,22,23,24\n";
    }
    return text;
}

// A record as a mouse comes from its maker: every stage of 50 counts, the second one in use.
inline FlashDataMap sensorRecord(int stages = 6)
{
    FlashDataMap map{};
    map.ReportRate = 1;
    map.DpiStageCount = uint8_t(stages);
    map.CurrentDpiStage = 1;
    map.LiftOffDistance = 1;
    map.MotionSync = 1;
    map.PerformanceOpen = 6;
    const uint8_t levels[DpiStageLimit] = {7, 15, 31, 47, 63, 127, 159, 239};
    for (int i = 0; i < DpiStageLimit; ++i)
        map.DpiStages[i] = {levels[i], levels[i], 0, uint8_t(10 * i), uint8_t(20 * i), uint8_t(30 * i)};
    return map;
}

// The same with full performance, so that every control can be used.
inline FlashDataMap editedRecord()
{
    FlashDataMap map = sensorRecord();
    map.Performance = 1;
    return map;
}

class SensorFixture
{
public:
    explicit SensorFixture(int model = M3395, uint16_t kind = Receiver8K)
    {
        fixture::beginWithDevice(model, kind);
        page = std::make_unique<Sensor>();
        show(sensorRecord());
        page->show();
        QCoreApplication::processEvents();
        fake().clearCalls();
    }

    static FakeHidUsb &fake() { return FakeHidUsb::instance(); }
    static void choose(int model, uint16_t kind) { fixture::select(fixture::info("dev", kind, model)); }
    // Into the record and onto the page.
    void show(const FlashDataMap &map)
    {
        DeviceRecord::edit([&map](FlashDataMap &record) { record = map; });
        page->SlotUpDataSenSorUIB(map);
    }

    template <typename Widget> Widget *find(const char *name) const
    {
        return page->findChild<Widget *>(QLatin1String(name));
    }
    QComboBox *mode() const { return find<QComboBox>("ModelChoose"); }
    bool cordedHidden() const { return qobject_cast<QListView *>(mode()->view())->isRowHidden(Corded); }
    QCheckBox *performance() const { return find<QCheckBox>("Performance"); }
    QComboBox *time() const { return find<QComboBox>("PerformanceOpen"); }
    QComboBox *lod() const { return find<QComboBox>("LOD"); }
    QComboBox *choice() const { return find<QComboBox>("ChooseEvent"); }
    QToolButton *ripple() const { return find<QToolButton>("RippeControl_2"); }
    QToolButton *snapping() const { return find<QToolButton>("StraightLine_2"); }
    QToolButton *sync() const { return find<QToolButton>("MotionSync_2"); }
    QSlider *slider() const { return find<QSlider>("horizontalSliderC"); }
    QSpinBox *spin() const { return find<QSpinBox>("spinBoxA"); }
    QToolButton *rate(int index) const { return page->findChild<SensorRate *>()->button(index); }
    QToolButton *stage(int index) const
    {
        return find<QToolButton>((stageName(index) + "Button").constData());
    }
    QToolButton *bar(int index) const
    {
        return find<QToolButton>((stageName(index) + "ButtonA").constData());
    }

    int checkedRate() const
    {
        return checked(int(RateRows.size()), [this](int i) { return rate(i); });
    }
    int checkedStage() const
    {
        return checked(DpiStageLimit, [this](int i) { return stage(i); });
    }
    int shownStages() const
    {
        int count = 0;
        while (count < DpiStageLimit && !stage(count)->isHidden())
            ++count;
        return count;
    }

    // Everything that a control of the page shows of its value.
    QStringList state() const
    {
        QStringList all;
        for (const QAbstractButton *button : page->findChildren<QAbstractButton *>())
            all << QStringLiteral("%1 %2 %3")
                       .arg(button->objectName(), button->text())
                       .arg(button->isChecked());
        for (const QComboBox *box : page->findChildren<QComboBox *>())
            all << QStringLiteral("%1 %2").arg(box->objectName()).arg(box->currentIndex());
        all << QString::number(slider()->value()) << QString::number(spin()->value());
        all << QString::number(time()->isEnabled());
        return all;
    }

    std::unique_ptr<Sensor> page;

private:
    static QByteArray stageName(int index) { return StageNames[index]; }
    template <typename Button> static int checked(int count, Button button)
    {
        int found = -1;
        for (int i = 0; i < count; ++i)
            if (button(i)->isChecked())
                found = found == -1 ? i : -2;
        return found;
    }
};

// The page's own catalogue, and the sensor table that ships.
struct SensorSetUp : fixture::ShippedLooks {
    SensorSetUp(int &argc, char **argv) : ShippedLooks(argc, argv, sensorCatalogue())
    {
        product.take(QStringLiteral("driver_sensor.h"));
    }
};
