// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/OfflineStrip.h"

#include "hub/PostMsg.h"
#include "presentation/FirstShow.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"

#include <QHBoxLayout>
#include <QLabel>

namespace
{
constexpr int IconSize = 24;
} // namespace

OfflineStrip::OfflineStrip(QWidget *parent) : QFrame(parent), icon_(new QLabel(this)), text_(new QLabel(this))
{
    icon_->setFixedSize(IconSize, IconSize);
    text_->setObjectName(QStringLiteral("offlineText"));
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(10, 0, 14, 0);
    line->setSpacing(8);
    line->addWidget(icon_);
    line->addWidget(text_);
    onFirstShow(this, [this] {
        setStyleSheet(style::strip(objectName()));
        icon_->setStyleSheet(
            style::labelPicture(style::pictureFolder(QStringLiteral("Dialog")), QStringLiteral("Away.png")));
        text_->setStyleSheet(style::label(style::color("LabelColor")));
    });
    connect(PostMsg::instance(), SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
}

void OfflineStrip::SlotAllLanguage(int index)
{
    text_->setText(language::text(language::Section::infoTips, "DialogOffline", index));
    setAccessibleName(text_->text());
    fit();
}

// The fonts are final only when the strip is shown.
void OfflineStrip::showEvent(QShowEvent *event)
{
    QFrame::showEvent(event);
    fit();
}

void OfflineStrip::fit()
{
    const int right = geometry().right();
    const int wanted = sizeHint().width();
    setGeometry(right + 1 - wanted, y(), wanted, height());
}
