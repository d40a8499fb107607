// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Advanced: the page of the rarely changed settings: sleep time, high frame rate, long-range mode of the
// receiver and angle of the sensor. It paints a device's record into them, and each goes back to the last
// value that the mouse took when the mouse does not answer. Its second tab, with a curve for each mode of
// sensitivity, is built and never shown. Main thread; the emitting thread waits while a slot takes a signal
// of the device.
#pragma once

#include "device/hidusb/FlashDataMap.h"
#include "presentation/PageSurface.h"

#include <array>
#include <initializer_list>
#include <memory>

class QButtonGroup;
class QCheckBox;

namespace Ui
{
class Advanced;
}

class Advanced : public PageSurface
{
    Q_OBJECT

public:
    explicit Advanced(QWidget *parent = nullptr);
    ~Advanced() override;

public slots:
    void SlotUpDataSenSorUISensor(FlashDataMap DataMap) { paint(DataMap); }
    void SlotUpDataSenSorUIB(FlashDataMap DataMap) { paint(DataMap); }
    void SlotForm();
    void SlotFormB() { SlotForm(); }
    void SlotFormReset();
    void SlotLongRangeMode(bool selected);
    void Slot20KOpen(bool) {}
    void SlotAllLanguage(int index);
    // Places the groups that are in use. With all of them, 1 leaves the high frame rate, 2 neither, and 3
    // the long-range mode in front of the angle.
    void SetPos(int index);

    void on_AngleSet_sliderMoved(int position);
    void on_AngleSet_valueChanged(int value);
    void on_KFPS_clicked(bool checked);
    void on_checkBox_toggled(bool checked);
    void on_checkBox_2_toggled(bool checked);
    void on_pushButton_clicked() { SetPos(0); }

private:
    struct Placed;

    void buildHiddenTab();
    void connectSignals();
    void applyStyle();
    void paint(const FlashDataMap &map);
    void setHiddenTexts(int index);
    void showAngle(int degrees);
    void paintAngle(int degrees);
    static void place(std::initializer_list<Placed> group, int top);

    std::unique_ptr<Ui::Advanced> ui;
    const QString PicturePath_;
    QButtonGroup *modes_;
    std::unique_ptr<QWidget> HiddenTab_;
    std::array<QCheckBox *, 4> modeBoxes_;
    bool ShowKfps_ = false;
    bool ShowLongRange_ = false;
    bool showKfpsCaption_ = true;
    bool showLongRangeCaption_ = true;
    int languageIndex_ = 0;
    int Angle_ = 0; // last value that the mouse took, in degrees
};
