// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "binding/ProfileBox.h"

#include "device/DeviceState.h"
#include "device/hidusb/HIDUsb.h"
#include "hub/PostMsg.h"
#include "presentation/language/LanguageTables.h"

#include <QComboBox>
#include <QSignalBlocker>

void ProfileBox::fill(int count)
{
    box_->clear();
    for (int i = 1; i <= qMax(count, 1); ++i)
        box_->addItem(prefix_ + QString::number(i));
}

void ProfileBox::show(int count, int selected, bool enabled)
{
    const QSignalBlocker silent(box_);
    fill(count);
    box_->setEnabled(enabled);
    if (count > 0)
        box_->setCurrentIndex(selected);
    used_ = box_->currentIndex();
    publish();
}

void ProfileBox::choose(int index)
{
    if (!ButtonPageBusy && !UsbFinderC_GetDeviceOnLine(CurrentDevicePath())) {
        showUsed();
        emit PostMsg::instance()->SigMouseOffLineo(0);
        return;
    }
    UsbServer_SetCurrentConfig(uint8_t(index));
    used_ = index;
    publish();
}

void ProfileBox::setLanguage(int index)
{
    prefix_ = language::choice("ProfileOptions", QStringLiteral("0"), index).remove(QLatin1Char('1'));
    const QSignalBlocker silent(box_);
    fill(box_->count());
    showUsed();
}

void ProfileBox::showUsed()
{
    const QSignalBlocker silent(box_);
    box_->setCurrentIndex(used_);
}

void ProfileBox::publish() const { emit PostMsg::instance()->SigAddConfig(box_->currentText()); }
