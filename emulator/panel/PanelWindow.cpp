// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/PanelWindow.h"

#include "device/hidusb/wire/FlashLayout.h"

#include <QHBoxLayout>
#include <QStyle>
#include <QTabBar>
#include <QVBoxLayout>

static constexpr int ListWidth = 330;

PanelWindow::PanelWindow(const QString &folder, QWidget *parent)
    : QWidget(parent)
    , link_(folder)
    , stateLabel_(new QLabel(this))
    , message_(new QLabel(this))
    , pace_(new QCheckBox(QStringLiteral("Pacing, one report per ms"), this))
    , devices_(new DeviceModel(this))
    , list_(new QListView(this))
    , controls_(new DeviceControls(this))
    , faults_(new FaultControls(this))
    , tabs_(new QTabWidget(this))
    , reports_(new ReportList(this))
    , flash_(new FlashView(this))
{
    setWindowTitle(QStringLiteral("Emulated devices"));
    makeList();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->setSpacing(12);
    layout->addLayout(makeHead(folder));
    layout->addLayout(makeBody(), 1);
    connectParts();
    showRunning(false);
    list_->setFocus();
    resize(1100, 720);
}

QLayout *PanelWindow::makeHead(const QString &folder)
{
    stateLabel_->setObjectName(QStringLiteral("stateLabel"));
    stateLabel_->setToolTip(folder);
    message_->setObjectName(QStringLiteral("messageLabel"));
    // The reason is text from the emulator.
    message_->setTextFormat(Qt::PlainText);
    pace_->setObjectName(QStringLiteral("paceCheck"));
    pace_->setAccessibleName(QStringLiteral("Pacing of one report per millisecond"));
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(stateLabel_);
    row->addWidget(message_, 1);
    row->addWidget(pace_);
    return row;
}

void PanelWindow::makeList()
{
    list_->setObjectName(QStringLiteral("deviceList"));
    list_->setAccessibleName(QStringLiteral("Emulated devices"));
    list_->setModel(devices_);
    list_->setItemDelegate(new DeviceCard(list_));
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setFixedWidth(ListWidth);
}

QLayout *PanelWindow::makeBody()
{
    tabs_->setObjectName(QStringLiteral("tabs"));
    tabs_->setAccessibleName(QStringLiteral("What passes and what is kept"));
    tabs_->tabBar()->setAccessibleName(QStringLiteral("Reports or flash"));
    reports_->setObjectName(QStringLiteral("reports"));
    tabs_->addTab(reports_, QStringLiteral("Reports"));
    tabs_->addTab(flash_, QStringLiteral("Flash"));
    auto *right = new QVBoxLayout;
    right->setSpacing(12);
    right->addWidget(controls_);
    right->addWidget(faults_);
    right->addWidget(tabs_, 1);
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(list_);
    row->addLayout(right, 1);
    return row;
}

void PanelWindow::connectParts()
{
    connect(&link_, &EmulatorLink::runningChanged, this, &PanelWindow::showRunning);
    connect(&link_, &EmulatorLink::stateChanged, this, &PanelWindow::showState);
    connect(&link_, &EmulatorLink::reported, reports_, &ReportList::append);
    connect(&link_, &EmulatorLink::refused, message_, &QLabel::setText);
    connect(controls_, &DeviceControls::ordered, this, &PanelWindow::change);
    connect(faults_, &FaultControls::ordered, this, &PanelWindow::change);
    connect(pace_, &QCheckBox::clicked, this,
            [this](bool on) { change(on ? QStringLiteral("pace on") : QStringLiteral("pace off")); });
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &current) {
                if (!current.isValid())
                    return;
                chosen_ = current.data().toString();
                showChosen();
            });
    connect(tabs_, &QTabWidget::currentChanged, this, &PanelWindow::askFlash);
}

void PanelWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    link_.setWatching(true);
}

void PanelWindow::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    link_.setWatching(false);
}

void PanelWindow::showRunning(bool running)
{
    flashAsked_ = false;
    message_->setText(running ? QString() : QStringLiteral("Waiting for one to come to this bus"));
    stateLabel_->setText(running ? QStringLiteral("Emulator running")
                                 : QStringLiteral("Emulator not running"));
    stateLabel_->setProperty("running", running);
    stateLabel_->style()->polish(stateLabel_);
    pace_->setEnabled(running);
}

void PanelWindow::showState(const PanelState &state)
{
    state_ = state;
    pace_->setChecked(state.pace);
    devices_->show(state.devices);
    const int row = qMax(devices_->rowOf(chosen_), 0);
    if (row < devices_->rowCount() && list_->currentIndex().row() != row)
        list_->setCurrentIndex(devices_->index(row));
    showChosen();
}

void PanelWindow::showChosen()
{
    const PanelDevice *device = state_.find(chosen_);
    controls_->show(device, state_.mouseOf(chosen_));
    faults_->show(device);
    askFlash();
}

// Refreshes the flash with each state while it is visible, one query at a time.
void PanelWindow::askFlash()
{
    const PanelDevice *mouse = state_.mouseOf(chosen_);
    if (mouse == nullptr)
        return flash_->show(QString(), QByteArray());
    if (!link_.isRunning() || flashAsked_ || tabs_->currentWidget() != flash_)
        return;
    flashAsked_ = true;
    link_.ask(QStringLiteral("show %1 flash 0 %2").arg(mouse->id).arg(FlashSize),
              [this, id = mouse->id](const EmulatorLink::Lines &lines) {
                  flashAsked_ = false;
                  const PanelDevice *shown = state_.mouseOf(chosen_);
                  if (shown != nullptr && shown->id == id)
                      flash_->show(id, parseFlash(lines, int(FlashSize)));
                  else
                      askFlash();
              });
}

void PanelWindow::change(const QString &order)
{
    message_->clear();
    link_.change(order);
}
