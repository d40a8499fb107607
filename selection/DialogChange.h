// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DialogChange: the selection page. It shows a tile for each attached device, refuses to go on with two
// identical ones, and decides what a click on a tile means. The devices are asked on the layer's hot-plug
// thread; the page itself lives on the main thread and takes the results there, the latest one winning.
#pragma once

#include "selection/DeviceScan.h"
#include "selection/TileBoard.h"

#include <QWidget>
#include <memory>

namespace Ui
{
class DialogChange;
}

class DialogChange : public QWidget
{
    Q_OBJECT

public:
    explicit DialogChange(QWidget *parent = nullptr);
    ~DialogChange() override;

    // The hot-plug callback of this page, for StartUsbChanged.
    static void UsbChanged();

    // Decides for the one device attached, unless it is on its cable, as a click on it when silent would.
    void askOnlyDevice();

public slots:
    void WindowClosedA();
    void WindowMinA();
    void on_MinButton_clicked();
    void on_CloseButton_clicked();
    void on_RightButton_clicked();
    void on_LeftButton_clicked();
    void on_Repair_clicked();
    void on_comboBox_activated(int index);
    void SlotSameLanguageA(int index);
    void SlotUpDateButton(bool IsHide);
    void SlotEnterKey();
    void slotButtonClicked();
    void SlotAllLanguage(int index);
    void on_CloseButton_2_clicked();
    void on_NewHong_clicked();
    void on_NoApear_clicked(bool checked);
    void on_label_linkHovered(QString) {}

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyStyle();
    void connectSignals();
    void take(const DeviceScan &scan);
    void rebuild(const DeviceScan &scan);
    void warnOfDuplicates();
    void showPrompt();
    void showCarousel();
    void orderTabs();
    void refreshTile(int index);
    void takeRefreshed(const DeviceAllInfo &device);
    void openDevice(int index);
    void enterDevice(const DeviceAllInfo &device);
    bool asksOfflineTile(int index) const;
    // True when the device's pages are where it goes on.
    bool settleOfflineTile(const DeviceAllInfo &device);

    std::unique_ptr<Ui::DialogChange> ui;
    QString pictures_;
    TileBoard board_;
    uint64_t takenGeneration_ = 0;
    bool warning_ = false;
    bool leftAgain_ = false; // the device page was left while a click still waited for it
    QString pleaseEnter_;
    QString repairDevice_;
    QString notOpen_;
    QString newVersion_;
    QString dialogOffline_;
    QString pairTips_;
};
