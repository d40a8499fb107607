// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// SensorDPI: the editor of the DPI stages: how many there are, the DPI and the colour of each, and which one
// is current. Stages are counted from 0. What the user changes is written at once; when the mouse does not
// answer, the panel goes back to what it showed. While the sensor page fills it from a record, nothing here
// writes. Main thread.
#pragma once

#include "sensor/StageRow.h"

#include <QFrame>
#include <functional>
#include <memory>
#include <optional>

class QColorDialog;

namespace Ui
{
class SensorDPI;
}

class SensorDPI : public QFrame
{
    Q_OBJECT

public:
    explicit SensorDPI(QWidget *parent = nullptr);
    ~SensorDPI() override;

    // Shows the stages of a record in the codes of the current sensor. `offered`: how many of them the model
    // has; no more than 8.
    void paint(const FlashDataMap &map, int offered);
    // What is shown without a device.
    void reset();
    void setTitle(const QString &title);

    // Setters for single parts; none of them writes.
    void SetStageCount(int count) { StageCount_ = count; }
    void SetCurrentStage(int stage) { CurrentStage_ = stage; }
    void SetStageText(int stage, const QString &text);
    void SetStageColor(int stage, const QString &color); // "#rrggbb"
    void ShowStages(int lastIndex);
    // Makes the stage the shown one, with slider, spin box and marker, and the one to go back to.
    void SelectStage(int stage);
    // Colours and texts of the model's catalogue entry.
    void ResetDefaults();
    void SetChoice(int index); // of the box with the number of stages; also the one to go back to

    int stageCount() const { return StageCount_; }
    int currentStage() const { return CurrentStage_; }

    // Sets the slider silently to a middle value. Not a slot: the form has no such button to connect.
    void on_pushButton_clicked();

public slots:
    void on_ChooseEvent_currentIndexChanged(int index);
    void on_horizontalSliderC_valueChanged(int value);
    void on_horizontalSliderC_sliderMoved(int position);
    void on_ReduceLevelA_clicked();
    void on_AddLevelA_clicked();
    void SetColor(const QColor &color);
    void followProfile(const QString &name);

    // The names are those of the widgets; a stage may have any colour.
    void on_BlueButton_toggled(bool checked) { stageToggled(0, checked); }
    void on_BrightRedButton_toggled(bool checked) { stageToggled(1, checked); }
    void on_RedButton_toggled(bool checked) { stageToggled(2, checked); }
    void on_YellowButton_toggled(bool checked) { stageToggled(3, checked); }
    void on_GreenButton_toggled(bool checked) { stageToggled(4, checked); }
    void on_PurpleButton_toggled(bool checked) { stageToggled(5, checked); }
    void on_LightBlueButton_toggled(bool checked) { stageToggled(6, checked); }
    void on_LightYellowButton_toggled(bool checked) { stageToggled(7, checked); }

    void on_BlueButton_clicked() { showStage(LastStage_); }
    void on_BrightRedButton_clicked() { showStage(LastStage_); }
    void on_RedButton_clicked() { showStage(LastStage_); }
    void on_YellowButton_clicked() { showStage(LastStage_); }
    void on_GreenButton_clicked() { showStage(LastStage_); }
    void on_PurpleButton_clicked() { showStage(LastStage_); }
    void on_LightBlueButton_clicked() { showStage(LastStage_); }
    void on_LightYellowButton_clicked() { showStage(LastStage_); }

    void on_BlueButtonA_toggled(bool checked) { barToggled(0, checked); }
    void on_BrightRedButtonA_toggled(bool checked) { barToggled(1, checked); }
    void on_RedButtonA_toggled(bool checked) { barToggled(2, checked); }
    void on_YellowButtonA_toggled(bool checked) { barToggled(3, checked); }
    void on_GreenButtonA_toggled(bool checked) { barToggled(4, checked); }
    void on_PurpleButtonA_toggled(bool checked) { barToggled(5, checked); }
    void on_LightBlueButtonA_toggled(bool checked) { barToggled(6, checked); }
    void on_LightYellowButtonA_toggled(bool checked) { barToggled(7, checked); }

    void on_BlueButtonA_clicked() { barClicked(0); }
    void on_BrightRedButtonA_clicked() { barClicked(1); }
    void on_RedButtonA_clicked() { barClicked(2); }
    void on_YellowButtonA_clicked() { barClicked(3); }
    void on_GreenButtonA_clicked() { barClicked(4); }
    void on_PurpleButtonA_clicked() { barClicked(5); }
    void on_LightBlueButtonA_clicked() { barClicked(6); }
    void on_LightYellowButtonA_clicked() { barClicked(7); }

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void stageToggled(int stage, bool checked);
    void barToggled(int stage, bool checked);
    void barClicked(int stage);
    void paintSilently(const std::function<void()> &paint);
    void showRange(int minimum, int maximum);
    void offerChoices(int count);
    void showDpi(int dpi);
    void applyStyle();
    void makeGroups();
    void makePicker();
    void closePicker();
    void recolor(int stage, const QColor &color);
    void showStage(int stage);
    void takeStage(int stage);
    bool writeExchange(int index) const;
    void exchangeWith(int index);
    int rest(int dpi);
    void showValue(int stage, int dpi);
    void returnSlider();
    void stepTo(int dpi);
    void enter(int dpi);
    void placeMarker(int stage);
    void returnMarker();
    void abandonDrag();
    std::optional<int> targetAt(const QPoint &pointer) const;
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
    int pickedStage_ = 0;                 // whose bar opened it; another may be checked when it ends
    DpiStage picked_ = {};                // as it was then
    QString profile_;                     // the name of the one in use, as the hub told it
    QRect MarkerArea_;
};
