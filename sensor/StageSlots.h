// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// StageSlots: the slots of the eight stages by the names that the form connects, each handed on with the
// number of its stage. The names are those of the widgets and say nothing of a stage's colour.
#pragma once

#include <QFrame>

class StageSlots : public QFrame
{
    Q_OBJECT

public:
    using QFrame::QFrame;

public slots:
    void on_BlueButton_toggled(bool checked) { stageToggled(0, checked); }
    void on_BrightRedButton_toggled(bool checked) { stageToggled(1, checked); }
    void on_RedButton_toggled(bool checked) { stageToggled(2, checked); }
    void on_YellowButton_toggled(bool checked) { stageToggled(3, checked); }
    void on_GreenButton_toggled(bool checked) { stageToggled(4, checked); }
    void on_PurpleButton_toggled(bool checked) { stageToggled(5, checked); }
    void on_LightBlueButton_toggled(bool checked) { stageToggled(6, checked); }
    void on_LightYellowButton_toggled(bool checked) { stageToggled(7, checked); }

    void on_BlueButton_clicked() { stageClicked(); }
    void on_BrightRedButton_clicked() { stageClicked(); }
    void on_RedButton_clicked() { stageClicked(); }
    void on_YellowButton_clicked() { stageClicked(); }
    void on_GreenButton_clicked() { stageClicked(); }
    void on_PurpleButton_clicked() { stageClicked(); }
    void on_LightBlueButton_clicked() { stageClicked(); }
    void on_LightYellowButton_clicked() { stageClicked(); }

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
    virtual void stageToggled(int stage, bool checked) = 0;
    virtual void stageClicked() = 0;
    virtual void barToggled(int stage, bool checked) = 0;
    virtual void barClicked(int stage) = 0;
};
