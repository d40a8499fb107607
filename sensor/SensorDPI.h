// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SensorDPI: the editor of the DPI stages: how many there are, the DPI and the colour of each, and which one
// is current. Stages are counted from 0. What the user changes is written at once; when the mouse does not
// answer, the panel goes back to what it showed. The sensor page paints it from a record, and while it does
// so nothing here writes. Main thread.
#pragma once

#include "sensor/StageRow.h"
#include "sensor/StageSlots.h"

#include <memory>

class QButtonGroup;
class QColorDialog;

namespace Ui
{
class SensorDPI;
}

class SensorDPI : public StageSlots
{
    Q_OBJECT

public:
    explicit SensorDPI(QWidget *parent = nullptr);
    ~SensorDPI() override;

    // ---- What the page paints; none of it writes
    void setTitle(const QString &title);
    void SetStageCount(int count) { StageCount_ = count; }
    void SetCurrentStage(int stage) { CurrentStage_ = stage; }
    void SetStageText(int stage, const QString &text);
    void SetStageColor(int stage, const QString &color); // "#rrggbb"
    void ShowStages(int lastIndex);
    // Makes the stage the shown one, with slider, spin box and marker, and the one to go back to.
    void SelectStage(int stage);
    // The looks of the row for the current stage.
    void RestyleStages();
    // Colours and texts of the model's catalogue entry.
    void ResetDefaults();

    void setMaximum(int dpi);
    void setMinimum(int dpi);
    void SetSliderValue(int dpi);
    void SetSpinValue(int dpi);
    void SetSliderEnabled(bool enabled);
    void BlockSlider(bool blocked);
    void BlockStages(bool blocked);

    void BlockChoice(bool blocked);
    void ClearChoices();
    void InsertChoice(int index, const QString &text);
    void SetChoice(int index); // also the one to go back to

    int stageCount() const { return StageCount_; }
    int currentStage() const { return CurrentStage_; }

    // No slot, since the form has no such button to connect: the slider silently at a middle value.
    void on_pushButton_clicked();

public slots:
    void on_ChooseEvent_currentIndexChanged(int index);
    void on_horizontalSliderC_valueChanged(int value);
    void on_horizontalSliderC_sliderMoved(int position);
    void on_ReduceLevelA_clicked();
    void on_AddLevelA_clicked();
    void SetColor(QColor color);

protected:
    void stageToggled(int stage, bool checked) override;
    void stageClicked() override;
    void barToggled(int stage, bool checked) override;
    void barClicked(int stage) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applyStyle();
    void makeGroups();
    void makePicker();
    void showStage(int stage);
    void takeStage(int stage);
    bool exchangeWith(int index);
    int rest(int dpi);
    void showValue(int stage, int dpi);
    void returnSlider();
    void stepTo(int dpi);
    void returnMarker();
    void drop(const QPoint &pointer);
    void dropOn(int stage);

    std::unique_ptr<Ui::SensorDPI> ui;
    std::unique_ptr<StageRow> row_;
    QString PicturePath_;
    int CurrentStage_ = 1;
    int StageCount_ = 1;
    int LastStage_ = 0;
    int ChooseIndex_ = 0;
    bool Dragging_ = false;
    QPoint DragOffset_;
    bool ArmWrite_ = false; // false: the slider's next change comes from a selection and is no edit
    QColorDialog *ColorPicker_ = nullptr; // a child, from its first use on
    QRect MarkerArea_;
};
