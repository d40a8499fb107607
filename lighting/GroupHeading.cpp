// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/GroupHeading.h"

#include "presentation/StyleSheets.h"

#include <QLabel>

namespace
{
constexpr QRect HeadingMarkPlace{0, 7, 24, 24};
constexpr QRect HeadingTitlePlace{28, 4, 400, 30};
} // namespace

GroupHeading::GroupHeading(QWidget *group, const QString &name)
    : mark_(new QLabel(group)), title_(new QLabel(group))
{
    mark_->setGeometry(HeadingMarkPlace);
    title_->setGeometry(HeadingTitlePlace);
    title_->setObjectName(name);
}

void GroupHeading::applyStyle() const
{
    mark_->setStyleSheet(
        style::labelPicture(style::pictureFolder(QStringLiteral("Light")), QStringLiteral("Title.png")));
    title_->setStyleSheet(style::heading());
}

void GroupHeading::setText(const QString &text) const
{
    if (!text.isEmpty())
        title_->setText(text);
}
