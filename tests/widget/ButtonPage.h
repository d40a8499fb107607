// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ButtonPage: the binding page with its names as the tests know them, written down independently of the
// page's own table.
#pragma once

#include "binding/ActionButton.h"
#include "binding/Buttoninterface.h"
#include "presentation/language/LanguageTables.h"
#include "tests/widget/Fixture.h"

#include <QButtonGroup>
#include <QStackedWidget>

struct Row {
    int button;
    const char *caption;
    const char *marker;
    int scroll;
};
// In the order in which everything walks the buttons.
constexpr Row ButtonPageRows[] = {
    {0, "FireKey", "Number1", 0},     {1, "RightKey", "Number2", 20},    {2, "BackKey", "Number3", 40},
    {4, "StartPause", "Number4", 60}, {3, "TopMusic", "Number5", 80},    {5, "BackMusic", "Number6", 100},
    {6, "Button7", "Number7", 120},   {7, "Button8", "Number8", 140},    {8, "Button9", "Number9", 160},
    {9, "Button10", "Number10", 180}, {10, "Button11", "Number11", 200}, {11, "Button12", "Number12", 220},
};

inline void eachButtonRow()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < 12; ++row)
        QTest::newRow(ButtonPageRows[row].caption) << row;
}

class ButtonPage
{
public:
    // The page's worker begins with no device, so one is selected behind it.
    ButtonPage()
    {
        FakeHidUsb::instance().addDevice(fixture::device("dev", 6, Receiver8K));
        fixture::select(fixture::info("dev", Receiver8K));
        form.show();
    }

    // A model with twelve buttons, one with six, one with a sensor of a table that is missing here.
    static QByteArray catalogue()
    {
        const auto code = ProductFolder::code;
        return "[Option]\nDeviceTotal=2\nVID=" + code("1209") + "\nCID=" + code("18") +
               "\n[Drive1]\nMID=6\nSensor=" + code("3395") +
               "\nDPIMaxGrade=6\nKeyNumber=12\n[Drive2]\nMID=7\nSensor=" + code("3950") +
               "\nDPIMaxGrade=8\nKeyNumber=6\n";
    }
    // What a mouse does when it is new.
    static FlashDataMap plainRecord()
    {
        constexpr KeyBinding Plain[] = {{1, 1, 0}, {1, 2, 0}, {1, 4, 0}, {1, 8, 0}, {1, 16, 0}, {2, 1, 0},
                                        {2, 2, 0}, {2, 3, 0}, {7, 0, 0}, {7, 0, 0}, {4, 10, 3}, {0, 0, 0}};
        FlashDataMap map{};
        std::copy(std::begin(Plain), std::end(Plain), map.KeyBindings);
        map.DebounceTime = 8;
        return map;
    }

    QToolButton *button(const QString &name) const { return form.findChild<QToolButton *>(name); }
    void click(const QString &name) { button(name)->click(); }
    void leave() { click("FunctionsBack"); }
    // Makes it the device's record as well.
    void show(const FlashDataMap &map)
    {
        DeviceRecord::edit([&](FlashDataMap &record) { record = map; });
        form.SlotUpDataButtonUIB(map);
    }
    void setLanguage(int index)
    {
        LanguageIndex = index;
        emit PostMsg::instance()->SigAllLanguage(index);
    }

    QString shownPage() const { return current("stackedWidget"); }
    QString shownPanel() const { return current("stackedWidget_2"); }
    QString checkedCaption() const
    {
        const auto *const checked = form.findChild<QButtonGroup *>("ButtonGroup")->checkedButton();
        return checked ? checked->objectName() : QString();
    }
    QString picture() const { return form.findChild<QWidget *>("widget")->styleSheet(); }
    QWidget *focus() const { return form.focusWidget(); }
    QString focusName() const { return focus() ? focus()->objectName() : QString(); }

    Buttoninterface form;

private:
    QString current(const char *stack) const
    {
        return form.findChild<QStackedWidget *>(stack)->currentWidget()->objectName();
    }
};
