// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UpDateRepair: the dialog of an upgrade, and of a repair when it is opened from the selection page. One
// stands in the process, made by the settings page. While it is busy it has no button, Escape and the close
// button do nothing, and the machine is kept from sleeping. Main thread.
#pragma once

#include "environment/Inquiry.h"
#include "environment/SleepLock.h"
#include "presentation/NoticeWindow.h"
#include "service/RepairRoute.h"
#include "service/UpgradeTexts.h"

#include <memory>

namespace Ui
{
class UpDateRepair;
}

class UpDateRepair : public NoticeWindow
{
    Q_OBJECT

public:
    UpDateRepair();
    ~UpDateRepair() override;
    // Null before the settings page is built and after its end.
    static UpDateRepair *instance();
    // Firmware is being written, or is about to be: neither the program nor the session may end.
    static bool holdsProgram();

    // ---- Its forms
    void resetForm(); // a start is offered, nothing is said
    // The same with the text ReadyUpdate and what would be written.
    void readyForm(const std::vector<FirmwareOffer> &offers = {});
    void busyForm();                     // firmware is being written
    void noticeForm(UpgradeText reason); // why nothing can be upgraded
    // Devices are being asked whether a start may be offered; until then there is none. The answer brings the
    // next form. It is dropped when the dialog has got another form meanwhile or was closed.
    void askingForm(const std::function<Inquiry::Answer()> &question);
    bool isBusy() const { return busy_; }
    void showTarget() { writeTexts(); } // UpgradeTarget has changed
    // A result shows; it stays until the user closes the dialog.
    bool showsResult() const;

    // Opens it over the middle of `widget`, without waiting for its end.
    void showOver(const QWidget *widget, const QPoint &offset = {});
    // The same for a repair, which the devices on the selection page decide.
    void showForRepair(const QWidget *widget);
    bool isForRepair() const { return forRepair_; }
    // The devices that the next check for a repair is about.
    void setAttached(std::vector<DeviceAllInfo> devices) { attached_ = std::move(devices); }

public slots:
    void on_CloseButton_clicked();
    void on_NewHong_clicked();
    void on_NewHong_2_clicked();
    void SlotAutoRepair(int index);
    void SlotAutoRepairProgress(int index);
    void SlotProgress(int schedue, int Discrib);
    void SlotRepairCheckUpdate();
    void SlotMainPageChange(); // the device page is left
    void SlotAllLanguage(int index);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    enum class MainButton : uint8_t { Start, Ok };

    void applyStyle();
    void connectSignals();
    void say(UpgradeText text);
    void setMainButton(MainButton meaning);
    void setBar(int percent);
    void showPercent(int percent);
    void showButtons();
    void showFailure();
    void leave();
    void tellResult(); // that the user closes
    void writeTexts();
    void showSign();
    int targetPercent() const;
    QString offerText() const;
    QString targetName(int target) const;
    void takeCheck(const RepairRoute::Check &check);
    void startRepair();

    std::unique_ptr<Ui::UpDateRepair> ui;
    RepairRoute repair_;
    std::vector<DeviceAllInfo> attached_;
    SleepLock awake_;
    Inquiry devicesAsked_;
    UpgradeText text_ = UpgradeText::None;
    std::vector<FirmwareOffer> offers_;
    MainButton mainButton_ = MainButton::Start;
    bool busy_ = false;
    bool forRepair_ = false;
    bool focusReturns_ = false; // to the main button, which is disabled while devices are asked
    int language_ = 0;
};
