// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ButtonPage: the binding page with its names as the tests know them, written down independently of the
// page's own table.
#pragma once

#include "binding/ActionButton.h"
#include "binding/Buttoninterface.h"
#include "macro/store/MacroFile.h"
#include "macro/store/MacroFolder.h"
#include "presentation/language/LanguageTables.h"
#include "tests/widget/Fixture.h"

#include <QButtonGroup>
#include <QStackedWidget>
#include <cstring>

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

struct PanelRow {
    const char *page;
    const char *widgets;
};
constexpr PanelRow PanelWidgets[] = {
    {"page_2", "LeftKey_3 RightKey_3 MidKey BackKey_2 ForWardKey DPI_2 DPI_3 DPI_6 DPI_8 DPI_5 DPI_13 DPI_11 "
               "DPI_4 DPI_9 DPI_7 DPI_12 DPI_10"},
    {"page_3", "Player StartPause_2 BackMusic_2 TopMusic_2 Mute VolumeUp VolumeDown VolumeDown_4 "
               "VolumeDown_5 VolumeDown_6 VolumeDown_3 VolumeDown_8 VolumeDown_9 VolumeDown_7 "
               "VolumeDown_10 VolumeDown_12 VolumeDown_13 VolumeDown_11"},
    {"page_6", "VolumeUp_4 VolumeUp_5 VolumeUp_6 VolumeUp_7"},
    {"page_8", "VolumeUp_11 VolumeUp_12 VolumeUp_13 VolumeUp_16 VolumeUp_15 VolumeUp_19 VolumeUp_20 "
               "VolumeUp_22 VolumeUp_18 VolumeUp_24 VolumeUp_23 VolumeUp_21"},
    {"page_4", "VolumeUp_2 VolumeDown_2"},
    {"page_7", "VolumeUp_8 VolumeUp_9 VolumeUp_10"},
    {"page_10", "VolumeUp_14 VolumeDown_14"},
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
    // The macro's button on the panel.
    ActionButton *macro(const QString &name) const
    {
        for (auto *each : form.findChild<QWidget *>("page_5")->findChildren<ActionButton *>())
            if (each->text() == name && !each->isHidden())
                return each;
        return nullptr;
    }
    QStringList macros() const
    {
        QStringList names;
        for (const auto *each : form.findChild<QWidget *>("page_5")->findChildren<ActionButton *>())
            if (!each->isHidden())
                names << each->text() + (each->isChecked() ? " checked" : "");
        return names;
    }
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

    // Where a dialog of that size belongs, from the middle of the page.
    QPoint middleFor(const QWidget *dialog, const QPoint &offset) const
    {
        return form.mapToGlobal(QPoint(0, 0)) +
               QPoint((form.width() - dialog->width()) / 2, (form.height() - dialog->height()) / 2) + offset;
    }
    QString shownPage() const { return current("stackedWidget"); }
    QString shownPanel() const { return current("stackedWidget_2"); }
    QString checkedCaption() const
    {
        const auto *const checked = form.findChild<QButtonGroup *>("ButtonGroup")->checkedButton();
        return checked ? checked->objectName() : QString();
    }
    // On the list of functions and on the panels.
    QString checkedWidgets() const
    {
        QStringList names;
        for (const PanelRow &panel : PanelWidgets)
            for (const QString &name : QString(panel.widgets).split(' '))
                if (button(name)->isChecked())
                    names << name;
        return names.join(' ');
    }
    QStringList captions() const
    {
        QStringList texts;
        for (const Row &row : ButtonPageRows)
            texts << button(row.caption)->text();
        return texts;
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

inline void nameMacro(MacroBlock *block, const char *name)
{
    block->NameLength = uint8_t(qstrlen(name));
    std::memcpy(block->Name, name, qstrlen(name));
    block->EventCount = 1;
    block->Events[0].Kind = 1;
    block->Events[0].Code.set(0x04);
}

// A press of A, repeated while the button is held, as nameMacro() has it.
inline void saveMacroFile(const char *name, int cycle = 254)
{
    if (!macro::saveMacro(name, cycle, {macro::keyRow("A", true)}))
        qFatal("no macro");
}

// A test of the page, with a new page for each function.
class ButtonPageTest : public QObject
{
protected:
    ButtonPage &page() { return *made; }
    void begin()
    {
        fixture::clean();
        for (const QString &folder : {macro::macroFolder(), macro::keptFolder()})
            QDir(folder).removeRecursively();
        makeDataFolders();
        made = std::make_unique<ButtonPage>();
        MouseOnline = true;
    }
    void end() { made.reset(); }

private:
    std::unique_ptr<ButtonPage> made;
};

struct ButtonPageSetUp : fixture::ShippedLooks {
    ButtonPageSetUp(int &argc, char **argv) : ShippedLooks(argc, argv, ButtonPage::catalogue())
    {
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    }
};
