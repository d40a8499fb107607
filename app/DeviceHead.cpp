// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/DeviceHead.h"

#include "presentation/DeviceNames.h"
#include "presentation/FirstShow.h"
#include "presentation/StyleSheets.h"

#include <QLabel>

namespace
{

constexpr int LineHeight = 22;

} // namespace

DeviceHead::DeviceHead(QWidget *parent) : QWidget(parent), title_(new QLabel(this)), line_(new QLabel(this))
{
    title_->setObjectName(QStringLiteral("headTitle"));
    line_->setObjectName(QStringLiteral("headDevice"));
    onFirstShow(this, [this] {
        title_->setStyleSheet(style::heading());
        line_->setStyleSheet(style::label(style::color("LinEditColorSecond")));
    });
}

void DeviceHead::setTitle(const QString &title)
{
    title_->setText(title);
    fit();
}

void DeviceHead::setDevice(const DeviceAllInfo &info)
{
    info_ = info;
    describe();
}

void DeviceHead::setProfile(const QString &profile)
{
    profile_ = profile;
    describe();
}

void DeviceHead::setLanguage(int index)
{
    language_ = index;
    describe();
}

void DeviceHead::describe()
{
    QStringList parts = {deviceModelText(info_, language_), profile_, deviceLinkText(info_, language_)};
    parts.removeAll(QString());
    text_ = parts.join(QStringLiteral(" · "));
    fit();
}

void DeviceHead::resizeEvent(QResizeEvent *) { fit(); }

// The fonts are final only when the head is shown.
void DeviceHead::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    fit();
}

void DeviceHead::fit()
{
    const int top = (height() - 2 * LineHeight) / 2;
    title_->setGeometry(0, top, width(), LineHeight);
    line_->setGeometry(0, top + LineHeight, width(), LineHeight);
    const QString shown = line_->fontMetrics().elidedText(text_, Qt::ElideRight, width());
    line_->setText(shown);
    line_->setToolTip(shown == text_ ? QString() : text_);
    line_->setAccessibleName(text_);
    setAccessibleName(title_->text());
}
