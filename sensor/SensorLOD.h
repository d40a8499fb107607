// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SensorLOD: the height at which a lifted mouse stops tracking. The panel remembers the last height that the
// mouse took, and goes back to it when the mouse does not answer. Main thread.
#pragma once

#include <QFrame>
#include <array>
#include <cstdint>
#include <memory>

namespace Ui
{
class SensorLOD;
}

struct LodRow {
    const char *text;
    uint8_t code; // FlashDataMap::LiftOffDistance
};
// In the order of the box. The first height is offered to a few sensors alone.
constexpr std::array<LodRow, 3> LodRows = {{{"0.7mm", 3}, {"1mm", 1}, {"2mm", 2}}};

class SensorLOD : public QFrame
{
    Q_OBJECT

public:
    explicit SensorLOD(QWidget *parent = nullptr);
    ~SensorLOD() override;

    // Offers or takes back the smallest height. Silent.
    void AddSmallLod();
    void RemoveSmallLod();
    // value: the record's byte minus 1. Writes nothing; the hub is told what is shown.
    void SetLod(int value);
    void setLodEnabled(bool enabled);
    // The host's own slot of this name calls it.
    void SlotAllLanguage(int index);

public slots:
    void on_LOD_currentIndexChanged(int index);

private:
    void applyStyle();
    int firstRow() const;
    int indexOf(int value) const;
    void showIndex(int index);

    std::unique_ptr<Ui::SensorLOD> ui;
    int lastValue_ = 0; // the record's byte minus 1
};
