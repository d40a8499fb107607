// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the tests of the settings page's upgrade share: a page that keeps what it is told, the flow on it with
// quick steps, and its dialog.
#pragma once

#include "service/UpgradeFlow.h"
#include "tests/widget/service/UpgradeFixture.h"

namespace fixture
{

struct UpgradePageParts final : UpgradePage {
    QWidget *place() override { return &widget; }
    QString shownVersion(int target) const override { return target == TargetMouse ? mouse : receiver; }
    void showMark(int target, bool shown) override
    {
        (target == TargetMouse ? mouseMark : receiverMark) = shown;
    }
    void showWaiting(bool shown) override { waits = shown; }
    void showUpToDate() override { upToDate = true; }
    bool isUpToDate() const override { return upToDate; }

    QWidget widget;
    QString receiver = QStringLiteral("v1.02");
    QString mouse = QStringLiteral("v1.05");
    bool receiverMark = false;
    bool mouseMark = false;
    bool waits = false;
    bool upToDate = false;
};

struct FlowParts : QObject {
    FakeHidUsb &fake = FakeHidUsb::instance();
    std::unique_ptr<UpgradePageParts> page;
    std::unique_ptr<UpgradeFlow> flow;
    std::unique_ptr<DialogParts> dialog;
    QList<int> bar;

    // Until the check's answer.
    void open()
    {
        flow->on_Receive_2_clicked();
        QTRY_VERIFY(!dialog->says(UpgradeText::UpgradeAsking));
        connect(PostMsg::instance(), &PostMsg::SigUpdateStart, flow.get(), [this] { flow->on_Start(); });
    }
    void start()
    {
        open();
        dialog->main->click();
    }
    // A mouse beside a receiver in its boot loader, which the record names.
    void leaveReceiverInBootLoader()
    {
        UpdateFailRecord::store(ReceiverFailed);
        setDeviceList({mouseInfo()});
        fake.setUpgrade(1, true);
    }
    static bool isOver() { return !UpdateBusy && NotUpgrading; }
    void endStage(int number, void (*end)())
    {
        QTRY_COMPARE(starts(), number);
        progress(40);
        end();
    }
    void begin()
    {
        beginUpgrade();
        page = std::make_unique<UpgradePageParts>();
        page->widget.show();
        flow = std::make_unique<UpgradeFlow>(*page);
        OnDevicePage = 1;
        for (auto *timer : flow->findChildren<QTimer *>()) {
            QCOMPARE(timer->interval(), 1000);
            timer->setInterval(1);
        }
        dialog = std::make_unique<DialogParts>(flow->dialog());
        bar.clear();
        connect(dialog->bar, &QProgressBar::valueChanged, this, [this](int value) { bar << value; });
    }
    void end()
    {
        QTRY_VERIFY(fake.idle());
        flow.reset();
        page.reset();
        QCoreApplication::processEvents();
    }
};

} // namespace fixture
