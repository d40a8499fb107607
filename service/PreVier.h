// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// PreVier: a small panel that sums up the device: its picture, its settings and the versions of its firmware,
// with marks where another one is on offer. It follows the hub alone, so that any page can create it. None
// does: what it tells stands in the head of the device page and on the pages themselves. Main thread.
#pragma once

#include <QWidget>
#include <memory>

namespace Ui
{
class PreVier;
}

class PreVier : public QWidget
{
    Q_OBJECT

public:
    explicit PreVier(QWidget *parent = nullptr);
    ~PreVier() override;

public slots:
    void SlotAllLanguage(int index);
    void SlotAddSensor(int Value);
    void SlotAddReport(int Value);
    void SlotAddLOD(const QString &Value);
    void SlotAddConfig(const QString &Value);
    void SlotAddMotion(int) {}
    void SlotAddMouseVer(const QString &Value);
    void SlotAddDongleVer(const QString &Value);
    void SlotAddBatteryVis(bool) {}
    void SlotDebnunce(const QString &Vlue);
    // 0: the mouse, 1: the receiver.
    void SlotAddVer(int type, const QString &Ver);
    void SlotAddUpdate(int type, bool Ver);
    // The MID of a model with pictures, 6 to 9.
    void SlotMouseIndex(int index);
    // Lets the device go and leads back to the tiles.
    void on_UpArrow_clicked();

private:
    void applyStyle();
    void connectSignals();

    std::unique_ptr<Ui::PreVier> ui;
    QString pictures_;
};
