// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// FormSetting: the page of the program's and the device's settings: language, firmware versions and their
// upgrade, pairing, start at login, the desktop's mouse settings, factory reset, and where the program's
// files lie. It shows what it is told and opens dialogs; nothing on it runs by itself. Main thread; the
// emitting thread waits while SlotRGBValue(), SlotLongRangeMode(), SlotForm() and SlotFormResetForm() run.
#pragma once

#include "presentation/PageSurface.h"
#include "service/UpgradePage.h"

#include <QDialog>
#include <memory>
#include <vector>

class UpgradeFlow;
struct DongleRGB;

namespace Ui
{
class FormSetting;
}

// What the page shows behind "Version": the release whose files and settings this program shares. It stands
// for the formats and stays when the program itself gets a new version, which is that of the project in
// CMakeLists.txt.
constexpr char ProgramVersion[] = "1.0.2.0";

class FormSetting : public PageSurface, private UpgradePage
{
    Q_OBJECT

public:
    explicit FormSetting(QWidget *parent = nullptr);
    ~FormSetting() override;
    // Dialogs of other pages' devices that live as long as this page.
    void keep(std::unique_ptr<QDialog> dialog) { kept_.push_back(std::move(dialog)); }

public slots:
    void on_pushButton_clicked();
    void on_pushButton_2_clicked();
    void on_pushButton_3_clicked();
    void on_OpenFolder_clicked();
    void SetVerText();
    void on_comboBox_activated(int index);
    void SlotAllLanguage(int index);
    void SlotLanguageSameB(int index);
    // The receiver's lights and its long-range mode stand on other pages.
    void SlotRGBValue(DongleRGB *) {}
    void SlotLongRangeMode(bool) {}
    void SlotForm() {}
    void SlotFormB() {}
    void SlotLightToFrom(int) {}
    void SlotFormResetForm() {}
    void SlotButtonCheck() {}
    void on_toolButton_4_clicked() {}
    void on_pushButton_5_clicked() {}
    void on_checkBox_2_clicked(bool) {}
    void on_checkBox_2_toggled(bool checked);
    // 0: the receiver's version, 1: the mouse's.
    void SlotLabelText(int index, const QString &Text);
    // The receiver's version; `Text` is "true" when the firmware folder holds another.
    void SlotLabelTextB(const QString &TextA, const QString &Text);
    void SlotScroolChange(int index);
    void SetVer(int index);
    void on_checkBox_clicked(bool checked);
    void on_Reset_clicked();

    // The upgrade of the firmware.
    void on_Receive_2_clicked();
    void on_Receive_clicked();
    void on_Mouse_clicked();
    void onDongleCheckTimer();
    void onMouseCheckTimer();
    void SlotContinue(int index);
    void SlotUpdateFrame(bool IsVis);
    void on_Start();
    bool ChechIsUpDate();
    void SlotCheckUpdate();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *place() override { return this; }
    QString shownVersion(int target) const override;
    void showMark(int target, bool shown) override;
    void showWaiting(bool waits) override;
    void showUpToDate() override { SetVerText(); }
    bool isUpToDate() const override;

    void connectSignals();
    void applyStyle();
    void styleButtons();
    void placeVersions(int language);
    void setTexts(int index);
    void setCompany(const QStringList &labels);
    void setFileTexts(int index);
    void showVersion(int target, const QString &version);
    void hideMarks();
    void takeVersions();
    void restoreAutoStart();

    std::unique_ptr<Ui::FormSetting> ui;
    std::unique_ptr<UpgradeFlow> flow_;
    std::vector<std::unique_ptr<QDialog>> kept_;
    QString pictures_;
    QString upgrade_; // texts of Receive_2
    QString upToDate_;
    QPoint versionPlace_; // of `label` while the page is not scrolled
    bool fontIsSet_ = false;
};
