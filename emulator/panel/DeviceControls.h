// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Controls of the selected device: its plug, its pairing, and the radio, battery and buttons of its mouse.
// Each control sends one order and shows the emulator's state.
#pragma once

#include "emulator/panel/PanelState.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>

class DeviceControls : public QGroupBox
{
    Q_OBJECT

public:
    explicit DeviceControls(QWidget *parent = nullptr);

    // Null for a device or mouse that does not exist.
    void show(const PanelDevice *device, const PanelDevice *mouse);
    using QGroupBox::show;

signals:
    void ordered(const QString &order);

private:
    QCheckBox *addCheck(const char *name, const QString &text, const QString &accessibleName);
    QPushButton *addButton(const char *name, const QString &text, const QString &accessibleName);
    QLayout *makeStates();
    QLayout *makeBattery();
    QLayout *makePairing();
    QLayout *makeButtons();
    void makeErase();
    void makeProfile();
    void makePairTime();
    void orderBattery();
    void showErase(const PanelDevice *device);
    void showMouse(const PanelDevice *mouse);
    void showReceiver(const PanelDevice *receiver);

    QString device_;
    QString mouse_;
    QLabel *const title_;
    QCheckBox *plugged_ = nullptr;
    QCheckBox *radio_ = nullptr;
    QCheckBox *asleep_ = nullptr;
    QCheckBox *boot_ = nullptr;
    QSpinBox *erase_ = nullptr;
    QSlider *battery_ = nullptr;
    QLabel *batteryText_ = nullptr;
    QCheckBox *charging_ = nullptr;
    QComboBox *profile_ = nullptr;
    QPushButton *giveUp_ = nullptr;
    QCheckBox *refuse_ = nullptr;
    QSpinBox *pairTime_ = nullptr; // s
    QList<QWidget *> ofMouse_;
    QList<QWidget *> ofReceiver_;
    QTimer batteryDue_; // a drag is a few orders, not one for each pixel
};
