// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "macro/CycleChoice.h"

#include "macro/store/MacroRow.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>

using namespace macro;

CycleChoice::CycleChoice(const CycleWidgets &widgets, QObject *parent)
    : QObject(parent), widgets_(widgets), group_(new QButtonGroup(this))
{
    group_->addButton(widgets_.untilReleased, CycleUntilReleased);
    group_->addButton(widgets_.untilAny, CycleUntilAny);
    group_->addButton(widgets_.untilPressed, CycleUntilPressed);
    group_->addButton(widgets_.count, CycleOnce);
    connect(group_, QOverload<QAbstractButton *, bool>::of(&QButtonGroup::buttonToggled), this,
            [this](QAbstractButton *, bool checked) {
                if (checked)
                    emit changed();
            });
    connect(widgets_.number, QOverload<int>::of(&QSpinBox::valueChanged), this, &CycleChoice::changed);
}

int CycleChoice::mode() const
{
    return widgets_.count->isChecked() ? widgets_.number->value() : group_->checkedId();
}

void CycleChoice::setMode(int mode)
{
    const QSignalBlocker silentGroup(group_);
    const QSignalBlocker silentNumber(widgets_.number);
    QAbstractButton *choice = mode > CycleMost ? group_->button(mode) : nullptr;
    if (!choice) {
        choice = widgets_.count;
        widgets_.number->setValue(mode >= 1 && mode <= CycleMost ? mode : CycleOnce);
    }
    choice->setChecked(true);
}

void CycleChoice::mute(bool muted)
{
    group_->blockSignals(muted);
    widgets_.number->blockSignals(muted);
}

bool CycleChoice::isMuted() const { return group_->signalsBlocked(); }
