// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/LightScale.h"

#include "device/WriteFamily.h"
#include "presentation/Edit.h"
#include "presentation/StyleSheets.h"
#include "presentation/Widgets.h"

#include <QLabel>
#include <QSignalBlocker>

void LightScale::applyStyle() const
{
    parts_.caption->setStyleSheet(style::caption());
    parts_.slider->setStyleSheet(style::slider());
    parts_.box->setStyleSheet(style::readout());
    parts_.placeholder->setStyleSheet(style::emptySlider());
}

void LightScale::setShown(bool shown) const
{
    parts_.caption->setEnabled(shown);
    parts_.slider->setVisible(shown);
    parts_.box->setVisible(shown);
    parts_.placeholder->setVisible(!shown);
}

void LightScale::setEnabled(bool enabled) const { parts_.slider->setEnabled(enabled); }

void LightScale::show(int value) const
{
    const QSignalBlocker silent(parts_.slider);
    parts_.slider->setValue(value);
    parts_.box->setValue(value);
}

void LightScale::set(int value)
{
    show(value);
    accepted_ = parts_.slider->value();
}

int LightScale::value() const { return parts_.slider->value(); }

void LightScale::giveBack()
{
    if (owner_ == Owner::Mouse)
        parts_.slider->giveBack(accepted_);
    else
        parts_.slider->setValue(accepted_);
    parts_.box->setValue(accepted_);
}

void LightScale::follow(int position)
{
    if (owner_ == Owner::Receiver || parts_.slider->enabledBy(CheckOnline))
        parts_.box->setValue(position);
    else
        giveBack();
}

void LightScale::change(const std::atomic<bool> &busy, int value, const std::function<bool()> &write)
{
    if (owner_ == Owner::Mouse && !parts_.slider->isEnabled()) {
        giveBack();
        return;
    }
    if (owner_ == Owner::Receiver)
        parts_.box->setValue(value);
    if (edit(busy, parts_.slider, write, [this] { giveBack(); }) != EditResult::Written)
        return;
    accepted_ = value;
    parts_.box->setValue(value);
}
