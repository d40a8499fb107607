// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/LedInfo.h"

#include "catalogue/DeviceCatalogue.h"
#include "device/DeviceState.h"
#include "hub/PostMsg.h"
#include "lighting/SchemeChoice.h"
#include "presentation/FirstShow.h"
#include "presentation/NamedWidgets.h"
#include "presentation/ScreenFont.h"
#include "presentation/StyleSheets.h"

#include <QFrame>
#include <QToolButton>
#include <QVariant>

namespace
{

constexpr QSize DialogSize{860, 240};
constexpr QPoint ChoicePlace{30, 56};
constexpr QRect ClosePlace{816, 12, 32, 32};
constexpr char NoReceiverLights[] = "-1";

bool hasReceiverLights()
{
    const DeviceAllInfo selected = SelectedDevice::info();
    return !selected.Usb && DeviceCatalogue().list(selected.DriveIndex, "Adveanced").value(1) !=
                                QLatin1String(NoReceiverLights);
}

} // namespace

LedInfo::LedInfo() : frame_(new QFrame(this)), close_(new QToolButton(this)), choice_(new SchemeChoice(this))
{
    resize(DialogSize);
    becomeNotice();
    frame_->setObjectName(QStringLiteral("LedInfoA"));
    frame_->resize(DialogSize);
    close_->setObjectName(QStringLiteral("CloseButton"));
    close_->setGeometry(ClosePlace);
    close_->setProperty("nameKey", QStringLiteral("common Close"));
    choice_->move(ChoicePlace);
    choice_->hide();
    connect(close_, &QToolButton::clicked, this, &LedInfo::on_CloseButton_clicked);
    const char *const buttons[SchemeChoice::Count] = {"ReUntil", "ReUntil_2", "ReUntil_3"};
    for (int i = 0; i < SchemeChoice::Count; ++i)
        connect(choice_->findChild<QAbstractButton *>(QLatin1String(buttons[i])), &QAbstractButton::toggled,
                this, [this, i](bool checked) { choice_->change(i + 1, checked); });
    onFirstShow(this, [this] { applyStyle(); });
    connect(PostMsg::instance(), SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(PostMsg::instance(), SIGNAL(SigRGBValue(DongleRGB *)), this, SLOT(SlotRGBValue(DongleRGB *)),
            Qt::BlockingQueuedConnection);
    SlotAllLanguage(LanguageIndex);
    scaleFontsToScreen(this);
}

void LedInfo::applyStyle()
{
    const QString folder = style::pictureFolder(QStringLiteral("FormSetting"));
    frame_->setStyleSheet(
        style::areaPicture(folder, frame_->objectName(), QStringLiteral("DialogBackGround.png")));
    close_->setStyleSheet(style::titleButton(folder, QStringLiteral("Close")));
    choice_->applyStyle();
}

void LedInfo::SlotRGBValue(DongleRGB *Rgb)
{
    if (!hasReceiverLights())
        return;
    choice_->setRecord(Rgb);
    choice_->setVisible(true);
}

void LedInfo::SlotAllLanguage(int index)
{
    choice_->setTexts(index);
    nameWidgets(this, index);
}

void LedInfo::on_CloseButton_clicked()
{
    emit PostMsg::instance()->SigButtonCheck();
    close();
}
