// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DialogChange: the selection page. It shows a tile for each attached device and refuses to go on with two
// identical ones. The devices are searched for on the layer's hot-plug thread; the page lives on the main
// thread, takes the results there and drops those that are older than the last one taken.
#pragma once

#include "device/AttachedDevices.h"
#include "selection/DeviceScan.h"
#include "selection/TileBoard.h"
#include "selection/TileClick.h"

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

    const AttachedDevices &attached() const { return attached_; }
    // Opens the only attached receiver as if its off-line tile were clicked; ignores cables.
    void openOnlyReceiver() { click_.openOnlyReceiver(); }
    // How a screen reader names the page when it gets the focus: why it is there again.
    void setUnplugged(bool unplugged);

signals:
    // The pointer came over the tile of this device.
    void tileEntered(const DeviceAllInfo &device);

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
    void on_label_linkHovered(const QString &) {}

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void applyStyle();
    void connectSignals();
    void take(const DeviceScan &scan);
    void rebuild(const DeviceScan &scan);
    void warnOfDuplicates();
    void showPrompt();
    void setPromptText();
    void showCarousel();
    void orderTabs();
    void focusTile(const QString &devicePath);
    void checkRepair();
    void refreshTile(int index);
    // Asks the device, which blocks, and passes the answer to the page while that shows the same search.
    static void refreshShown(DeviceAllInfo device, uint64_t generation);
    void takeRefreshed(const DeviceAllInfo &device, uint64_t generation);

    std::unique_ptr<Ui::DialogChange> ui;
    QString pictures_;
    TileBoard board_;
    AttachedDevices attached_;
    TileClick click_;
    uint64_t takenGeneration_ = 0;
    bool duplicates_ = false; // the last search found identical devices
    bool unplugged_ = false;
    bool tellsUnplugged_ = false; // a tile has to say it, too, since the focus moves on at once
    bool warning_ = false;        // the notice of duplicates is open
    QString pleaseEnter_;
    QString repairDevice_;
    QString identical_;
    QString notOpen_;
    QString newVersion_;
    QString dialogOffline_;
    QString pairTips_;
};
