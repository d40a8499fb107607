// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Match: the dialog that pairs a mouse with a receiver. It puts the receiver into pairing mode and waits for
// the outcome, which the layer tells; while it waits it cannot be closed. Pairing works through a receiver
// only: for a mouse on its cable the dialog says so. Run modally, one at a time. Main thread.
#pragma once

#include "device/AttachedDevices.h"
#include "device/hidusb/HIDUsb.h"
#include "presentation/NoticeWindow.h"
#include "service/PairingState.h"

#include <QElapsedTimer>
#include <QTimer>
#include <memory>

namespace Ui
{
class Match;
}

// In milliseconds. A receiver gives up after ReceiverLimit and the layer 65 s after the receiver has accepted
// the start; a library that has told nothing by SilenceLimit counts as a failure.
constexpr int PairingReceiverLimit = 60000;
constexpr int PairingSilenceLimit = 70000;

class Match : public NoticeWindow
{
    Q_OBJECT

public:
    // The target is the device in use while the device page shows, else the receiver that the selection page
    // has chosen for pairing, else the first of its devices; without any, nothing can be paired.
    explicit Match(const AttachedDevices *attached = nullptr);
    ~Match() override;

    const DeviceAllInfo &target() const { return target_; }
    void setSilenceLimit(int milliseconds) { silenceLimit_ = milliseconds; }
    // The hot-plug watch that begins when the dialog closes while the selection page shows.
    void setRescan(UsbChangedCallback_t rescan) { rescan_ = rescan; }

public slots:
    void WindowClosedSet();
    void on_MatchButton_clicked();
    void onPairTimeupDestroy();
    void onUSBTimeupDestroy();
    void onTextTimeupDestroy();
    void SlotStopTimer();
    void SlotButtonenable(int index);
    void SlotAllLanguage(int index);
    void SlotMainPageChange();
    // Every way of closing comes here: the close button, Escape and the window system.
    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void prepare(const AttachedDevices *attached);
    void applyStyle();
    void connectSignals();
    void startPairing();
    bool isTargetAttached() const;
    bool mayPress() const;
    void failHere();
    void showPhase();
    void showRule();
    void showLeft();
    void showClosing(bool possible);
    void showInstructions(const QString &steps);
    QString dotted(int dots) const;

    std::unique_ptr<Ui::Match> ui;
    QString pictures_;
    DeviceAllInfo target_;
    UsbChangedCallback_t rescan_ = nullptr;
    uint8_t customer_ = 0;
    bool MayPair_ = false;
    bool started_ = false; // a connection was opened for the pairing
    int step_ = 0;         // of the text's animation
    int silenceLimit_ = PairingSilenceLimit;
    QElapsedTimer sinceStart_;
    QTimer pairTimer_;
    QTimer usbTimer_;
    QTimer textTimer_;
    QString startPair_;
    QString pairing_;
    QString pairFail_;
    QString pairSuccess_;
    QString timeLeft_;
};

namespace pairing
{

// Runs the dialog over the middle of a device page, plus `offset`. Behind it the watch and the connection are
// the device page's again, unless that was left meanwhile; after a success the mouse is read anew as soon as
// it answers.
void pairSelected(const QWidget *page, const QPoint &offset = {});

// The same over the selection page, whose search is `rescan`. The connection ends with the dialog.
void pairAttached(const QWidget *page, const AttachedDevices &attached, UsbChangedCallback_t rescan);

} // namespace pairing
