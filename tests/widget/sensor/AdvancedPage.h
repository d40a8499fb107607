// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the tests of the advanced page share: models with each form of long-range entry, the page on a
// device of the scripted layer, and its controls by name.
#pragma once

#include "presentation/Widgets.h"
#include "presentation/language/LanguageTables.h"
#include "sensor/Advanced.h"
#include "sensor/StopCloseTime.h"
#include "sensor/plots/CurvePlotWidget.h"
#include "sensor/plots/RotatableWidget.h"
#include "tests/widget/Fixture.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>
#include <random>

namespace advanced
{

// Models of the catalogue by what item 0 of their long-range entry says.
constexpr int OffAtReset = 0, OnAtReset = 1, WithoutMode = 2, EmptyEntry = 3, NoEntry = 4, NoSection = 77;

inline QByteArray catalogue()
{
    QByteArray small = smallCatalogue();
    small.replace("[Option]\n", "[Option]\nLabelColor=240,240,240\nLinEditColorSecond=170,170,170\n");
    return small + "[Drive4]\nMID=9\nAdveanced=\n[Drive5]\nMID=10\n[Drive6]\nAdveanced=-1\n"
                   "[Drive7]\nAdveanced=-10,1\n[Drive8]\nAdveanced=1,-1\n";
}

inline FlashDataMap recordWith(uint8_t kfps, uint8_t sleep, int angle)
{
    FlashDataMap map{};
    map.KFps = kfps;
    map.StopCloseTime = sleep;
    map.AngleSet = uint8_t(angle);
    return map;
}

// At which times the box stands for a byte, in its order.
constexpr int SleepBytes[] = {1, 3, 6, 12, 18, 30, 60, 90};

inline const char *const KfpsGroup[] = {"KFpsMarker", "KFpsCaption", "KFpsTips", "KFPS"};
inline const char *const LongRangeGroup[] = {"LongRangeMarker", "LongRangeCaption", "LongRangeTips",
                                             "checkBox", "LongRangeText"};

} // namespace advanced

class AdvancedPage
{
public:
    FakeHidUsb &fake = FakeHidUsb::instance();
    std::unique_ptr<Advanced> page;

    template <typename Widget = QWidget> Widget *find(const char *name) const
    {
        auto *found = page->findChild<Widget *>(QLatin1String(name));
        if (!found)
            qFatal("no %s", name);
        return found;
    }
    MySlider *angle() const { return find<MySlider>("AngleSet"); }
    QToolButton *kfps() const { return find<QToolButton>("KFPS"); }
    QCheckBox *longRange() const { return find<QCheckBox>("checkBox"); }
    QComboBox *sleep() const { return find<QComboBox>("StopClose"); }
    bool shown(const char *name) const { return !find(name)->isHidden(); }
    template <std::size_t Count> bool allShown(const char *const (&names)[Count], bool wanted) const
    {
        return std::all_of(std::begin(names), std::end(names),
                           [=](const char *name) { return shown(name) == wanted; });
    }
    // The slider, the number and the picture say the same.
    bool showsAngle(int degrees) const
    {
        const QString text = QString::number(degrees) + QString::fromUtf8("°");
        return angle()->value() == qBound(-30, degrees, 30) && find<QLabel>("AngleText")->text() == text &&
               find<RotatableWidget>("AngleMouse")->Angle() == ((degrees % 360) + 360) % 360;
    }
    void selectModel(int driveIndex, uint16_t kind = Receiver8K)
    {
        fixture::select(fixture::info("dev", kind, driveIndex));
    }
    void paint(const FlashDataMap &map) { page->SlotUpDataSenSorUIB(map); }
    std::size_t updates() const { return fake.updates().size(); }
    int setCalls() const { return fake.count("UsbFinderC_SetLongRangeMode"); }

    // What a person does to the sleep box.
    void chooseSleep(int index)
    {
        sleep()->setCurrentIndex(index);
        emit sleep()->activated(index);
    }

    // A loaded page of a model with everything.
    void open()
    {
        fixture::clean();
        LanguageIndex = 0;
        fake.addDevice(fixture::device("dev", 6, Receiver8K));
        selectModel(advanced::OffAtReset);
        page = std::make_unique<Advanced>();
        paint(advanced::recordWith(0, 6, 0));
        page->SlotFormB();
        page->show();
        fake.clearCalls();
    }
    // The tab that is kept without a parent.
    static QWidget *hiddenTab()
    {
        for (QWidget *top : QApplication::topLevelWidgets())
            if (top->objectName() == "tab_2")
                return top;
        return nullptr;
    }
};

struct AdvancedSetUp : fixture::ShippedLooks {
    AdvancedSetUp(int &argc, char **argv) : ShippedLooks(argc, argv, advanced::catalogue()) {}
};
