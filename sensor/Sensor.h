// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Sensor: the page of the sensor's settings. It paints a device's record into its panels. Main thread; the
// slots of records from a read are reached with the emitting thread waiting.
#pragma once

#include "device/hidusb/FlashDataMap.h"

#include <QWidget>
#include <memory>

namespace Ui
{
class Sensor;
}

class Sensor : public QWidget
{
    Q_OBJECT

public:
    explicit Sensor(QWidget *parent = nullptr);
    ~Sensor() override;

public slots:
    void SlotUpDataSenSorUISensor(FlashDataMap DataMap);
    void SlotUpDataSenSorUIB(FlashDataMap DataMap);
    void SlotUpDataReportRate(int code);
    void SlotFormReset();
    void SlotAllLanguage(int index);

private:
    void listen();
    void paint(const FlashDataMap &map);
    void paintRate(uint8_t code);

    std::unique_ptr<Ui::Sensor> ui;
};
