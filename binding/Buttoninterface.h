// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Buttoninterface: the page of the button bindings, with what concerns the whole device: the choice of its
// profile, import and factory reset. It makes the one Worker and ends it. Main thread; the slots of records
// from a read are reached with the emitting thread waiting.
#pragma once

#include "device/hidusb/FlashDataMap.h"

#include <QWidget>
#include <memory>

class Worker;

namespace Ui
{
class Buttoninterface;
}

class Buttoninterface : public QWidget
{
    Q_OBJECT

public:
    explicit Buttoninterface(QWidget *parent = nullptr);
    ~Buttoninterface() override;

public slots:
    void SlotUpDataButtonUIButton(FlashDataMap DataMap);
    void SlotUpDataButtonUIB(FlashDataMap DataMap);
    void SlotUpDataConfigUI(int ToTalItem, int SelectIndex, bool ItemEnable);
    void SlotFormResetButton();
    void SlotAllLanguage(int index);
    void on_Reset_clicked();
    void on_ImportData_clicked();
    void on_ProjectChoose_activated(int index);

private:
    void dress();
    void listen();
    void paint(const FlashDataMap &map);
    void fillProfiles(int count);

    std::unique_ptr<Ui::Buttoninterface> ui;
    QString ConfigPrefix; // of each profile's name
    int profile = 0;      // the device's own choice, as far as it is known
    std::unique_ptr<Worker> worker;
};
