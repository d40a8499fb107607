// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The panel's window: the devices on the left, the controls of the selected one and the reports on the right.
// It sends no queries while it is hidden.
#pragma once

#include "emulator/panel/DeviceControls.h"
#include "emulator/panel/DeviceList.h"
#include "emulator/panel/EmulatorLink.h"
#include "emulator/panel/FaultControls.h"
#include "emulator/panel/FlashView.h"
#include "emulator/panel/ReportList.h"

#include <QListView>
#include <QTabWidget>
#include <QWidget>

class PanelWindow : public QWidget
{
    Q_OBJECT

public:
    explicit PanelWindow(const QString &folder, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QLayout *makeHead(const QString &folder);
    QLayout *makeBody();
    void makeList();
    void connectParts();
    void showRunning(bool running);
    void showState(const PanelState &state);
    void showChosen();
    void askFlash();
    void change(const QString &order);

    EmulatorLink link_;
    PanelState state_;
    QString chosen_; // kept while the device is away
    bool flashAsked_ = false;
    QLabel *const stateLabel_;
    QLabel *const message_;
    QCheckBox *const pace_;
    DeviceModel *const devices_;
    QListView *const list_;
    DeviceControls *const controls_;
    FaultControls *const faults_;
    QTabWidget *const tabs_;
    ReportList *const reports_;
    FlashView *const flash_;
};
