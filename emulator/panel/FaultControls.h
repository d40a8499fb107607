// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Controls to add a fault to the selected device: its kind, when it fires, and for which command.
#pragma once

#include "emulator/panel/PanelState.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

class FaultControls : public QGroupBox
{
    Q_OBJECT

public:
    explicit FaultControls(QWidget *parent = nullptr);

    void show(const PanelDevice *device);
    using QGroupBox::show;

signals:
    void ordered(const QString &order);

private:
    QComboBox *addBox(const char *name, const QString &accessibleName);
    QSpinBox *addSpin(const char *name, const QString &accessibleName, int least, int most, int value);
    void fillBoxes();
    void layOut();
    void showFields();
    QString rule() const;

    QString device_;
    QComboBox *kind_;
    QSpinBox *late_;
    QComboBox *where_;
    QSpinBox *at_;
    QSpinBox *percent_;
    QSpinBox *seed_;
    QComboBox *command_;
    QPushButton *add_;
    QPushButton *clear_;
    QLabel *standing_;
};
