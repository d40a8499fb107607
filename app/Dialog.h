// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Dialog: the device page. It holds the working pages, the column of navigation buttons, the battery, the
// icon of the connection, the page's and the device's names and the wait dialog of a load. Main thread.
#pragma once

#include <QDialog>
#include <array>
#include <memory>

class Advanced;
class Buttoninterface;
class FormSetting;
class LampLight;
class Macro;
class QButtonGroup;
class QToolButton;
class Sensor;
class UpDataParam;
struct DeviceAllInfo;

namespace Ui
{
class Dialog;
}

class Dialog : public QDialog
{
    Q_OBJECT

public:
    explicit Dialog(QWidget *parent = nullptr);
    ~Dialog() override;

    // Loads the large pictures that the first page of this device shows into the toolkit's cache.
    void loadPictures(const DeviceAllInfo &device);
    void writeCache(); // the image of the device
    // Sends the macros that wait to be sent, too.
    void keepAll();

public slots:
    void WindowClosed();
    void WindowMin();
    void on_CloseButton_clicked();
    void on_ButtonMain_clicked();
    void on_SensorButton_clicked();
    void on_MacroButton_clicked();
    void on_LightsButton_clicked();
    void on_FormSetting_clicked();
    void on_Advanced_clicked();
    void on_UpArrow_clicked();
    void SlotSecondDialog();
    void SlotIsUsb(bool Usb, bool IsVs);
    void SlotBattery(bool IsCharg, int Number, bool IsText);
    void SlotUpDataParam(int index);
    void SlotStartRecord(int index);
    void SlotSelectMouseInfo(const DeviceAllInfo &SelectInfo);
    void SlotFormReset();
    void SlotForm();
    void SlotMouseOffLine(int index);
    void SlotCloseOffOnline();
    void on_stackedWidgetDialog_currentChanged(int arg1);
    void SlotAllLanguage(int index);
    void SlotMouseIndex(int) {}
    void on_SetButton_clicked() {}
    void on_MouseB_clicked() {}
    void on_MouseC_clicked() {}
    void on_PreButton_clicked() {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildPages();
    void applyStyle();
    void styleNavigation();
    void styleBackground();
    void connectSignals();
    QRect navigationArea() const;
    void showPage(QWidget *page);
    void showPassed();
    void showAway(bool away);
    void showTitle();
    void makeRoomInHead();
    void showCharge(bool low);

    struct Navigation {
        QToolButton *button;
        QWidget *page;
        const char *nameKey; // of the section "common"
    };

    std::unique_ptr<Ui::Dialog> ui;
    QButtonGroup *groupA_;
    QButtonGroup *groupB_;
    Advanced *advanced_;
    Buttoninterface *buttons_;
    LampLight *lights_;
    Macro *macro_;
    Sensor *sensor_;
    FormSetting *setting_;
    std::unique_ptr<UpDataParam> upDataParam_;
    QString pictures_;
    std::array<Navigation, 6> navigation_; // in the order of the column
};
