// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Sensor: the page of the sensor's settings. It paints a device's record into its panels, hides those that
// the present sensor does not support, and holds the controls of sensor mode and full performance itself.
// Main thread; the emitting thread waits while a slot takes a record from a read.
#pragma once

#include "catalogue/SensorDefines.h"
#include "device/record/DeviceAllInfo.h"

#include <QWidget>
#include <array>
#include <memory>

class QButtonGroup;
class QListView;

namespace Ui
{
class Sensor;
}

// The rows of ModelChoose.
constexpr int LowPower = 0;
constexpr int Corded = 2; // the mode of a fast link: shown, never chosen

class Sensor : public QWidget
{
    Q_OBJECT

public:
    explicit Sensor(QWidget *parent = nullptr);
    ~Sensor() override;

    // Never called by the form, which has no buttons of these names; the panels write these settings.
    void on_RippeControl_clicked(bool checked);
    void on_StraightLine_clicked(bool checked);
    void on_MotionSync_clicked(bool checked);
    void on_pushButton_clicked();
    void on_pushButton_2_clicked();

public slots:
    void SlotHideModel(int state);
    void SlotUpDataSenSorUISensor(FlashDataMap DataMap);
    void SlotUpDataSenSorUIB(FlashDataMap DataMap);
    void SlotUpDataReportRate(int code);
    void SlotUpDataDPI(int stage);
    void SlotFormReset();
    void SlotAllLanguage(int index);

    void on_ModelChoose_currentIndexChanged(int index);
    void on_Performance_clicked(bool checked);
    void on_Performance_toggled(bool checked);
    void on_PerformanceOpen_currentIndexChanged(int index);
    void on_LOD_currentIndexChanged(int) {}

private:
    void connectSignals();
    void applyStyle();
    void setTips(int index);
    void placeTips();
    void setHelp(int language);

    void paint(const FlashDataMap &map);
    void paintRate(uint8_t code, bool wired);
    void offerSmallLod(bool offered);
    void paintMode(const FlashDataMap &map, const DeviceAllInfo &info);
    void paintPerformance(const FlashDataMap &map);
    std::array<QWidget *, 12> settings() const;
    void showSettings(bool shown);
    void gateByCapability();
    void resetByKind(const DeviceAllInfo &info);

    bool modeSelectable() const;
    QListView *modeView() const;
    void freeMode(int index);
    void lockMode();
    void setMode(int index);
    void showCorded(bool shown);

    std::unique_ptr<Ui::Sensor> ui;
    QButtonGroup *groupA_;
    QButtonGroup *groupB_;
    const QString SavePath_;
    const QString PicturePath_;
    SensorCapabilities capabilities_;
    int ModeIndex_ = 0;        // last accepted index of ModelChoose
    int PerformanceIndex_ = 0; // index of PerformanceOpen painted last, not the one written last
};
