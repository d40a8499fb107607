// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/DeviceControls.h"

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

static constexpr int BatteryOrderMs = 80;
static constexpr int ProfileCount = 4;
static constexpr int EraseLimitMs = 60000;

namespace
{

struct PressRow {
    const char *name;
    const char *button; // in the order
    const char *text;
    const char *accessibleName;
};
constexpr PressRow Presses[] = {
    {"pressDpi", "dpi", "DPI", "Press the DPI button"},
    {"pressRate", "rate", "Report rate", "Press the report rate button"},
    {"pressProfile", "profile", "Profile", "Press the profile button"},
    {"pressLight", "light", "Light", "Press the button of the indicator light"},
    {"pressBar", "bar", "Light bar", "Press the button of the light bar"},
};

QString onOff(bool on) { return on ? QStringLiteral("on") : QStringLiteral("off"); }

} // namespace

DeviceControls::DeviceControls(QWidget *parent) : QGroupBox(parent), title_(new QLabel(this))
{
    setObjectName(QStringLiteral("deviceControls"));
    title_->setObjectName(QStringLiteral("heading"));
    batteryDue_.setSingleShot(true);
    batteryDue_.setInterval(BatteryOrderMs);
    connect(&batteryDue_, &QTimer::timeout, this, &DeviceControls::orderBattery);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(8);
    layout->addWidget(title_);
    layout->addLayout(makeStates());
    layout->addLayout(makeBattery());
    layout->addLayout(makeButtons());
    layout->addLayout(makePairing());
    show(nullptr, nullptr);
}

QCheckBox *DeviceControls::addCheck(const char *name, const QString &text, const QString &accessibleName)
{
    auto *check = new QCheckBox(text, this);
    check->setObjectName(QLatin1String(name));
    check->setAccessibleName(accessibleName);
    return check;
}

QPushButton *DeviceControls::addButton(const char *name, const QString &text, const QString &accessibleName)
{
    auto *button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(accessibleName);
    return button;
}

QLayout *DeviceControls::makeStates()
{
    plugged_ = addCheck("pluggedCheck", QStringLiteral("Plugged in"), QStringLiteral("Device is plugged in"));
    radio_ = addCheck("radioCheck", QStringLiteral("Radio on"), QStringLiteral("Radio of the mouse is on"));
    asleep_ = addCheck("asleepCheck", QStringLiteral("Asleep"), QStringLiteral("Mouse is asleep"));
    ofMouse_ << radio_ << asleep_;
    connect(plugged_, &QCheckBox::clicked, this, [this](bool on) {
        emit ordered((on ? QStringLiteral("plug ") : QStringLiteral("unplug ")) + device_);
    });
    connect(radio_, &QCheckBox::clicked, this,
            [this](bool on) { emit ordered(QStringLiteral("radio %1 %2").arg(mouse_, onOff(on))); });
    connect(asleep_, &QCheckBox::clicked, this, [this](bool on) {
        emit ordered((on ? QStringLiteral("sleep ") : QStringLiteral("wake ")) + mouse_);
    });
    boot_ =
        addCheck("bootCheck", QStringLiteral("Boot loader"), QStringLiteral("Device is in its boot loader"));
    connect(boot_, &QCheckBox::clicked, this, [this](bool on) {
        emit ordered(QStringLiteral("boot %1 %2")
                         .arg(device_, on ? QStringLiteral("enter") : QStringLiteral("leave")));
    });
    makeErase();
    makeProfile();
    auto *row = new QHBoxLayout;
    row->setSpacing(16);
    for (QWidget *each : QList<QWidget *>{plugged_, radio_, asleep_, boot_, erase_})
        row->addWidget(each);
    row->addStretch();
    row->addWidget(profile_);
    return row;
}

void DeviceControls::makeErase()
{
    erase_ = new QSpinBox(this);
    erase_->setObjectName(QStringLiteral("eraseSpin"));
    erase_->setAccessibleName(QStringLiteral("Milliseconds that the boot loader takes to erase"));
    erase_->setButtonSymbols(QAbstractSpinBox::NoButtons);
    erase_->setKeyboardTracking(false); // one order for a number, not one for each digit
    erase_->setRange(0, EraseLimitMs);
    erase_->setPrefix(QStringLiteral("erase "));
    erase_->setSuffix(QStringLiteral(" ms"));
    connect(erase_, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [this](int value) { emit ordered(QStringLiteral("erase %1 %2").arg(device_).arg(value)); });
}

void DeviceControls::makeProfile()
{
    profile_ = new QComboBox(this);
    profile_->setObjectName(QStringLiteral("profileBox"));
    profile_->setAccessibleName(QStringLiteral("Profile of the mouse"));
    for (int i = 0; i < ProfileCount; ++i)
        profile_->addItem(profileName(i));
    ofMouse_ << profile_;
    connect(profile_, QOverload<int>::of(&QComboBox::activated), this,
            [this](int index) { emit ordered(QStringLiteral("profile %1 %2").arg(mouse_).arg(index)); });
}

QLayout *DeviceControls::makeBattery()
{
    battery_ = new QSlider(Qt::Horizontal, this);
    battery_->setObjectName(QStringLiteral("batterySlider"));
    battery_->setAccessibleName(QStringLiteral("Battery in percent"));
    battery_->setRange(0, 100);
    batteryText_ = new QLabel(QStringLiteral("100 %"), this);
    batteryText_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    batteryText_->setMinimumWidth(batteryText_->sizeHint().width() + 4);
    charging_ = addCheck("chargingCheck", QStringLiteral("Charging"), QStringLiteral("Mouse is charging"));
    ofMouse_ << battery_ << charging_;
    connect(battery_, &QSlider::valueChanged, this, [this](int value) {
        batteryText_->setText(QStringLiteral("%1 %").arg(value));
        if (!batteryDue_.isActive())
            batteryDue_.start();
    });
    connect(charging_, &QCheckBox::clicked, this, &DeviceControls::orderBattery);
    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(new QLabel(QStringLiteral("Battery"), this));
    row->addWidget(battery_, 1);
    row->addWidget(batteryText_);
    row->addSpacing(8);
    row->addWidget(charging_);
    return row;
}

QLayout *DeviceControls::makeButtons()
{
    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(new QLabel(QStringLiteral("Press"), this));
    for (const PressRow &press : Presses) {
        QPushButton *button =
            addButton(press.name, QLatin1String(press.text), QLatin1String(press.accessibleName));
        connect(button, &QPushButton::clicked, this, [this, &press] {
            emit ordered(QStringLiteral("press %1 %2").arg(mouse_, QLatin1String(press.button)));
        });
        ofMouse_ << button;
        row->addWidget(button);
    }
    row->addStretch();
    QPushButton *reset = addButton("resetButton", QStringLiteral("Factory reset"),
                                   QStringLiteral("Reset the mouse to its factory settings"));
    connect(reset, &QPushButton::clicked, this, [this] { emit ordered(QStringLiteral("reset ") + mouse_); });
    ofMouse_ << reset;
    row->addWidget(reset);
    return row;
}

QLayout *DeviceControls::makePairing()
{
    QPushButton *look = addButton("lookButton", QStringLiteral("Look for a receiver"),
                                  QStringLiteral("The mouse looks for a receiver that pairs"));
    giveUp_ = addButton("giveUpButton", QStringLiteral("Give up"), QStringLiteral("The receiver gives up"));
    QPushButton *unpair = addButton("unpairButton", QStringLiteral("Forget the mouse"),
                                    QStringLiteral("The receiver forgets its mouse"));
    refuse_ =
        addCheck("refuseCheck", QStringLiteral("Refuse"), QStringLiteral("The receiver refuses to pair"));
    makePairTime();
    ofMouse_ << look;
    ofReceiver_ << giveUp_ << unpair << refuse_ << pairTime_;
    connect(look, &QPushButton::clicked, this, [this] { emit ordered(QStringLiteral("pair ") + mouse_); });
    connect(giveUp_, &QPushButton::clicked, this,
            [this] { emit ordered(QStringLiteral("pairfail ") + device_); });
    connect(unpair, &QPushButton::clicked, this,
            [this] { emit ordered(QStringLiteral("unpair ") + device_); });
    connect(refuse_, &QCheckBox::clicked, this,
            [this](bool on) { emit ordered(QStringLiteral("pairrefuse %1 %2").arg(device_, onOff(on))); });
    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(new QLabel(QStringLiteral("Pairing"), this));
    for (QWidget *each : {static_cast<QWidget *>(look), static_cast<QWidget *>(giveUp_),
                          static_cast<QWidget *>(unpair), static_cast<QWidget *>(refuse_)})
        row->addWidget(each);
    row->addStretch();
    row->addWidget(pairTime_);
    return row;
}

void DeviceControls::makePairTime()
{
    pairTime_ = new QSpinBox(this);
    pairTime_->setObjectName(QStringLiteral("pairTimeBox"));
    pairTime_->setAccessibleName(QStringLiteral("Seconds until a pairing fails"));
    pairTime_->setRange(1, 600);
    pairTime_->setPrefix(QStringLiteral("fails after "));
    pairTime_->setSuffix(QStringLiteral(" s"));
    pairTime_->setKeyboardTracking(false);
    connect(pairTime_, QOverload<int>::of(&QSpinBox::valueChanged), this, [this](int seconds) {
        emit ordered(QStringLiteral("pairtime %1 %2").arg(device_).arg(seconds * 1000));
    });
}

void DeviceControls::orderBattery()
{
    batteryDue_.stop();
    const QString charging = charging_->isChecked() ? QStringLiteral(" charging") : QString();
    emit ordered(QStringLiteral("battery %1 %2%3").arg(mouse_).arg(battery_->value()).arg(charging));
}

void DeviceControls::show(const PanelDevice *device, const PanelDevice *mouse)
{
    // An order for the mouse that was chosen before must not reach another one.
    const QString mouseId = mouse == nullptr ? QString() : mouse->id;
    if (batteryDue_.isActive() && mouseId != mouse_)
        mouse_.isEmpty() ? batteryDue_.stop() : orderBattery();
    const QString deviceId = device == nullptr ? QString() : device->id;
    if (deviceId != device_)
        erase_->clearFocus(); // a number that is being typed is the device's that was chosen before
    device_ = deviceId;
    mouse_ = mouseId;
    QString title = device == nullptr ? QStringLiteral("No device") : device->id;
    if (device != nullptr)
        title += QStringLiteral("  \u00b7  ") + device->kindText();
    if (device != nullptr && mouse != nullptr && mouse != device)
        title += QStringLiteral(" with %1").arg(mouse->id);
    title_->setText(title);
    plugged_->setEnabled(device != nullptr);
    plugged_->setChecked(device != nullptr && device->plugged);
    boot_->setEnabled(device != nullptr);
    boot_->setChecked(device != nullptr && device->boot);
    showErase(device);
    for (QWidget *each : qAsConst(ofMouse_))
        each->setEnabled(mouse != nullptr);
    showMouse(mouse);
    showReceiver(device != nullptr && !device->isMouse ? device : nullptr);
}

void DeviceControls::showReceiver(const PanelDevice *receiver)
{
    for (QWidget *each : qAsConst(ofReceiver_))
        each->setEnabled(receiver != nullptr);
    const PanelDevice none;
    const PanelDevice &shown = receiver == nullptr ? none : *receiver;
    giveUp_->setEnabled(shown.pairing);
    refuse_->setChecked(shown.refusesPairing);
    if (pairTime_->hasFocus())
        return; // a number may be half typed
    const QSignalBlocker blocker(pairTime_);
    pairTime_->setValue(shown.pairTime / 1000);
}

// While a number is typed, what the emulator says does not replace it.
void DeviceControls::showErase(const PanelDevice *device)
{
    const QSignalBlocker blocker(erase_);
    erase_->setEnabled(device != nullptr);
    if (!erase_->hasFocus())
        erase_->setValue(device == nullptr ? 0 : device->erase);
}

void DeviceControls::showMouse(const PanelDevice *mouse)
{
    const PanelDevice none;
    const PanelDevice &shown = mouse == nullptr ? none : *mouse;
    radio_->setChecked(shown.radio);
    asleep_->setChecked(shown.asleep);
    // A mouse on its cable does not sleep.
    asleep_->setEnabled(mouse != nullptr && !shown.plugged);
    if (!profile_->view()->isVisible())
        profile_->setCurrentIndex(shown.profile);
    if (battery_->isSliderDown() || batteryDue_.isActive())
        return;
    const QSignalBlocker blocker(battery_);
    charging_->setChecked(shown.charging);
    battery_->setValue(shown.battery);
    batteryText_->setText(QStringLiteral("%1 %").arg(shown.battery));
}
