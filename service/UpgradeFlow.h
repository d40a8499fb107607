// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UpgradeFlow: upgrades receiver and mouse from the settings page: what is offered, the gate before the
// start, and the steps of each target, which two timers of a second drive. The page calls one function from
// each of its slots of the same name. It makes the one UpDateRepair of the process. Main thread.
#pragma once

#include "environment/Inquiry.h"
#include "presentation/Notices.h"
#include "service/ModelFirmware.h"
#include "service/UpDateRepair.h"
#include "service/UpgradePage.h"

#include <QTimer>
#include <functional>
#include <optional>
#include <set>

class UpgradeFlow : public QObject
{
    Q_OBJECT

public:
    // The page outlives this object.
    explicit UpgradeFlow(UpgradePage &page);
    ~UpgradeFlow() override;

    // SetVer(0), behind the version texts: looks for firmware, marks what it finds and opens the dialog.
    void showOffers();
    // SetVer(4) and SetVer(5): no target is about to be upgraded. Nothing while one is.
    void forgetTargets();

    void on_Receive_2_clicked();      // opens the dialog
    void SlotUpdateFrame(bool IsVis); // opens the dialog or closes it, unless it is busy or shows a result
    bool ChechIsUpDate();             // false: the dialog says why nothing can be upgraded, or that it asks
    void SlotCheckUpdate();           // the same after a hot-plug, while the dialog shows
    void on_Start();                  // the dialog's main button
    void SlotContinue(int index);     // the other target, after the first one
    void on_Receive_clicked();        // upgrades the receiver
    void on_Mouse_clicked();          // upgrades the mouse
    void onDongleCheckTimer();        // a step of the receiver's upgrade
    void onMouseCheckTimer();         // a step of the mouse's upgrade

    UpDateRepair &dialog() { return dialog_; }

private:
    enum class Step : uint8_t { Search, Count, Counting, Started, Running, Finish };
    struct Images {
        const QByteArray &of(int target) const;
        QByteArray receiver;
        QByteArray mouse;
    };

    ModelFirmware model() const;
    std::function<GateVerdict()> gate(const QString &record) const;
    bool takeVerdict(const GateVerdict &verdict, const QString &record);
    QString currentVersion(int target) const;
    Images takeImages() const;
    void startTarget(int target);
    void UpgradeStep(int target);
    void search(int target);
    void count(int target);
    void takeCount(int target, int found, bool alreadyRuns);
    void flash(int target, const QByteArray &image);
    void endToldRun();
    void finish(int target);
    void endRun();
    void findRestarted();
    void takeRestarted(const ModelFirmware &flashed, const std::vector<DeviceAllInfo> &devices);
    void selectAgain(const DeviceAllInfo &device);
    void givePagesBack();
    void endWithNothing(int target);
    void endWithCount(int target, int count);
    void showResult(int target);
    void showNothingWaits(int target);

    UpgradePage &page_;
    UpDateRepair dialog_;
    UpDateWarning warning_;
    QTimer dongleTimer_;
    QTimer mouseTimer_;
    Step step_ = Step::Search;
    bool receiverActive_ = false;
    bool mouseActive_ = false;
    bool following_ = false;       // the other target was upgraded before
    bool noNewVersion_ = false;    // the last check has found nothing newer
    std::set<int> flashed_;        // targets that were written to and may have to be selected again
    int failedTarget_ = 0;         // the target that an earlier upgrade has left in its boot loader
    GateVerdict offered_;          // what the last check has announced
    Inquiry asked_;                // what the run asks devices
    std::optional<Images> images_; // of this run, whatever happens to the files meanwhile
};
