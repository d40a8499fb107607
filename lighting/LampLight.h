// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// LampLight: the page of the lights: those of the mouse, with the light that shows the DPI stage, and on a
// radio link those of the receiver. Main thread; the slots of records from a read are reached with the
// emitting thread waiting. The receiver's own records are read while a record of the mouse is shown; on a
// cable nothing of them is asked.
#pragma once

#include "device/hidusb/FlashDataMap.h"
#include "lighting/LightDevice.h"
#include "presentation/PageSurface.h"

#include <QByteArray>
#include <QPoint>
#include <QTimer>

class IndicatorLamps;
class LightGroup;
class QAbstractButton;
class QFrame;
class QLabel;
class QScrollArea;
class SchemeChoice;
class SensorEffect;

class LampLight : public PageSurface
{
    Q_OBJECT

public:
    explicit LampLight(QWidget *parent = nullptr);

    // Without a control on the form.
    void on_pushButton_clicked() {}
    void on_StopCloseTime_activated(int index);

public slots:
    void SlotUpDataLightUILight(FlashDataMap DataMap);
    void SlotUpDataLightUIA(FlashDataMap DataMap);
    void SlotUpDataDPILed(FlashDataMap DataMap);
    void SlotFormResetLight();
    void SlotForm();
    void SlotFormB() { SlotForm(); }
    void SlotRGBValue(DongleRGB *rgb);
    void SlotAllLanguage(int index);

    void on_verticalScrollBar_valueChanged(int value);

    // The mouse's light.
    void on_LightMod_currentIndexChanged(int index);
    void on_LightMod_activated(int) {}
    void on_LightMod_editTextChanged(const QString &) {}
    void on_horizontalLight_valueChanged(int value);
    void on_horizontalLight_sliderMoved(int position);
    void on_horizontalSpeed_valueChanged(int value);
    void on_horizontalSpeed_sliderMoved(int position);
    void on_LightSpinBox_2_valueChanged(int) {}
    void on_SpeedSpinBox_2_valueChanged(int) {}
    void on_RSpinBox_valueChanged(int);
    void on_GSpinBox_valueChanged(int);
    void on_BSpinBox_valueChanged(int);
    void on_AddR_clicked();
    void on_AddG_clicked();
    void on_AddB_clicked();
    void on_ReduceR_clicked();
    void on_ReduceG_clicked();
    void on_ReduceB_clicked();
    void on_RippeControl_clicked(bool checked);

    // The receiver's light.
    void on_LightMod_2_currentIndexChanged(int index);
    void on_horizontalLight_2_valueChanged(int value);
    void on_horizontalLight_2_sliderMoved(int position);
    void on_horizontalSpeed_2_valueChanged(int value);
    void on_horizontalSpeed_2_sliderMoved(int position);
    void on_RSpinBox_2_valueChanged(int);
    void on_GSpinBox_2_valueChanged(int);
    void on_BSpinBox_2_valueChanged(int);
    void on_AddR_2_clicked();
    void on_AddG_2_clicked();
    void on_AddB_2_clicked();
    void on_ReduceR_2_clicked();
    void on_ReduceG_2_clicked();
    void on_ReduceB_2_clicked();

    // The receiver's lamps and its scheme of colours.
    void on_LightMod_3_currentIndexChanged(int index);
    void on_LightMod_4_currentIndexChanged(int index);
    void on_LightMod_5_currentIndexChanged(int index);
    void on_ReUntil_toggled(bool checked);
    void on_ReUntil_2_toggled(bool checked);
    void on_ReUntil_3_toggled(bool checked);

protected:
    void showEvent(QShowEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    enum class Paint { Read, Import };

    QFrame *addCard(const char *name);
    void buildContents();
    void connectSignals();
    void applyStyle();
    void paint(const FlashDataMap &map, Paint kind);
    bool forgetOther();
    void readReceiver();
    void readLamps();
    void arrange();
    void setMovingOff(bool on);
    LightGroup *groupAt(const QPoint &screenPlace) const;
    static bool pick(LightGroup *group, const QPoint &screenPlace);

    QString PicturePath_;
    MouseLight mouseLight_;
    ReceiverLight receiverLight_;
    QScrollArea *area_;
    QWidget *contents_;
    QFrame *mouseCard_;
    QFrame *receiverCard_;
    QFrame *lampsCard_;
    QFrame *schemeCard_;
    QAbstractButton *movingOff_;
    QLabel *movingOffCaption_;
    LightGroup *mouse_;
    QLabel *effectMark_; // in front of the panel's title
    SensorEffect *effect_;
    LightGroup *receiver_;
    IndicatorLamps *lamps_;
    SchemeChoice *scheme_;
    QByteArray receiverPath_;    // whose records those of the receiver are
    QTimer lampsLater_;          // asks a slow receiver the second question behind the paint
    bool receiverShown_ = false; // a record was shown on a radio link
    bool schemeShown_ = false;
    LightGroup *picking_ = nullptr; // while a press that took a colour in its field lasts
    QPoint pressedAt_;
    int languageIndex_ = 0;
};
