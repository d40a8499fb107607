// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LightModeSet: the light of a mouse's screen: mode and colour, with a preview. Its controls reach no device,
// and nothing opens it. Main thread.
#pragma once

#include "presentation/NoticeWindow.h"

#include <memory>
#include <vector>

class PresetButton;

namespace Ui
{
class LightModeSet;
}

class LightModeSet : public NoticeWindow
{
    Q_OBJECT

public:
    LightModeSet();
    ~LightModeSet() override;

public slots:
    void SlotAllLanguage(int index);
    void on_CloseButton_clicked();
    void on_LightMod_currentIndexChanged(int index);
    void on_horizontalLight_valueChanged(int value);
    void on_horizontalSpeed_valueChanged(int value);
    void on_RSpinBox_valueChanged(int) { showColor(); }
    void on_GSpinBox_valueChanged(int) { showColor(); }
    void on_BSpinBox_valueChanged(int) { showColor(); }
    void on_AddR_clicked();
    void on_AddG_clicked();
    void on_AddB_clicked();
    void on_ReduceR_clicked();
    void on_ReduceG_clicked();
    void on_ReduceB_clicked();

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    void buildPresets();
    void applyStyle();
    QColor color() const;
    void setColor(const QColor &color);
    void showColor();
    void showPreview();

    const QString PicturePath_;
    std::unique_ptr<Ui::LightModeSet> ui;
    std::vector<PresetButton *> presets_;
    std::vector<QWidget *> colorControls_; // all that a mode without a colour hides
};
