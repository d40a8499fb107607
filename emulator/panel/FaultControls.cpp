// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/FaultControls.h"

#include "emulator/Faults.h"
#include "emulator/Protocol.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

static constexpr int LateLimitMs = 60000;
static constexpr int CountLimit = 1000000;
static constexpr int SeedLimit = 1000000;

enum Where { At, Random, Always };

FaultControls::FaultControls(QWidget *parent)
    : QGroupBox(parent)
    , kind_(addBox("faultKind", QStringLiteral("Kind of fault")))
    , late_(addSpin("faultLate", QStringLiteral("Milliseconds that the fault lasts"), 1, LateLimitMs, 500))
    , where_(addBox("faultWhere", QStringLiteral("Where the fault strikes")))
    , at_(addSpin("faultAt", QStringLiteral("Number of the report, from now on"), 1, CountLimit, 1))
    , percent_(addSpin("faultPercent", QStringLiteral("Percent of the reports"), 1, 100, 10))
    , seed_(addSpin("faultSeed", QStringLiteral("Seed of the chance"), 0, SeedLimit, 1))
    , command_(addBox("faultCommand", QStringLiteral("Command that the fault strikes")))
    , add_(new QPushButton(QStringLiteral("Add fault"), this))
    , clear_(new QPushButton(QStringLiteral("Clear"), this))
    , standing_(new QLabel(this))
{
    setObjectName(QStringLiteral("faultControls"));
    late_->setSuffix(QStringLiteral(" ms"));
    percent_->setSuffix(QStringLiteral(" %"));
    seed_->setPrefix(QStringLiteral("seed "));
    add_->setObjectName(QStringLiteral("faultAdd"));
    add_->setAccessibleName(QStringLiteral("Add the fault to the device"));
    clear_->setObjectName(QStringLiteral("faultClear"));
    clear_->setAccessibleName(QStringLiteral("Clear all faults of the device"));
    standing_->setObjectName(QStringLiteral("quiet"));
    fillBoxes();
    layOut();
    connect(add_, &QPushButton::clicked, this,
            [this] { emit ordered(QStringLiteral("fault %1 %2").arg(device_, rule())); });
    connect(clear_, &QPushButton::clicked, this,
            [this] { emit ordered(QStringLiteral("fault %1 clear").arg(device_)); });
    for (QComboBox *box : {kind_, where_})
        connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &FaultControls::showFields);
    showFields();
    show(nullptr);
}

QComboBox *FaultControls::addBox(const char *name, const QString &accessibleName)
{
    auto *box = new QComboBox(this);
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(accessibleName);
    return box;
}

QSpinBox *FaultControls::addSpin(const char *name, const QString &accessibleName, int least, int most,
                                 int value)
{
    auto *spin = new QSpinBox(this);
    spin->setObjectName(QLatin1String(name));
    spin->setAccessibleName(accessibleName);
    // Arrow keys and the wheel step it; drawn arrows vanish where the focus is drawn.
    spin->setButtonSymbols(QAbstractSpinBox::NoButtons);
    spin->setRange(least, most);
    spin->setValue(value);
    return spin;
}

void FaultControls::fillBoxes()
{
    for (const std::string &name : emulator::faultKindNames())
        kind_->addItem(QString::fromStdString(name));
    where_->addItems({QStringLiteral("at report"), QStringLiteral("random"), QStringLiteral("always")});
    command_->addItem(QStringLiteral("any command"));
    for (int code = 0; code <= 0xFF; ++code) {
        if (const emulator::CommandRow *row = emulator::findCommand(uint8_t(code)))
            command_->addItem(QLatin1String(row->name), QLatin1String(row->name));
    }
}

void FaultControls::layOut()
{
    auto *choice = new QHBoxLayout;
    choice->setSpacing(8);
    choice->addWidget(new QLabel(QStringLiteral("Fault"), this));
    for (QWidget *each : QList<QWidget *>{kind_, late_, where_, at_, percent_, seed_})
        choice->addWidget(each);
    choice->addStretch();
    auto *act = new QHBoxLayout;
    act->setSpacing(8);
    act->addWidget(command_);
    act->addWidget(add_);
    act->addWidget(clear_);
    act->addWidget(standing_, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(8);
    layout->addLayout(choice);
    layout->addLayout(act);
}

void FaultControls::showFields()
{
    late_->setVisible(emulator::takesMilliseconds(kind_->currentText().toStdString()));
    at_->setVisible(where_->currentIndex() == At);
    percent_->setVisible(where_->currentIndex() == Random);
    seed_->setVisible(where_->currentIndex() == Random);
}

QString FaultControls::rule() const
{
    QString text = kind_->currentText();
    if (emulator::takesMilliseconds(text.toStdString()))
        text += QStringLiteral(" %1").arg(late_->value());
    const QString wheres[] = {QStringLiteral(" at %1").arg(at_->value()),
                              QStringLiteral(" random %1 %2").arg(seed_->value()).arg(percent_->value()),
                              QStringLiteral(" always")};
    text += wheres[qBound(int(At), where_->currentIndex(), int(Always))];
    const QString command = command_->currentData().toString();
    return command.isEmpty() ? text : text + QStringLiteral(" command ") + command;
}

void FaultControls::show(const PanelDevice *device)
{
    device_ = device == nullptr ? QString() : device->id;
    setEnabled(device != nullptr);
    const int count = device == nullptr ? 0 : device->faults;
    if (count == 0)
        standing_->setText(QStringLiteral("No fault stands"));
    else
        standing_->setText(QStringLiteral("Standing rules on %1: %2").arg(device_).arg(count));
}
