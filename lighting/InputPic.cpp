// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "lighting/InputPic.h"

#include "device/DeviceState.h"
#include "device/hidusb/HIDUsb.h"
#include "hub/PostMsg.h"
#include "lighting/ScreenClock.h"
#include "presentation/FirstShow.h"
#include "presentation/ScreenFont.h"
#include "presentation/StyleSheets.h"
#include "ui_InputPic.h"

namespace
{

constexpr int TickMs = 200;
constexpr int TicksOfAPacket = 50; // ten seconds

} // namespace

InputPic::InputPic()
    : PicturePath_(style::pictureFolder(QStringLiteral("ScreeInfo"))), ui(std::make_unique<Ui::InputPic>())
{
    ui->setupUi(this);
    becomeNotice();
    const std::pair<QToolButton *, QLabel *> tiles[] = {{ui->toolButton, ui->mark},
                                                        {ui->toolButton_2, ui->mark_2},
                                                        {ui->toolButton_3, ui->mark_3},
                                                        {ui->toolButton_4, ui->mark_4}};
    for (const auto &[tile, mark] : tiles) {
        mark->hide();
        connect(tile, &QToolButton::toggled, mark, &QLabel::setVisible);
    }
    ui->toolButton->setChecked(true);
    onFirstShow(this, [this] { applyStyle(); });
    connect(PostMsg::instance(), SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    scaleFontsToScreen(this);
}

InputPic::~InputPic() = default;

void InputPic::applyStyle()
{
    const QString ink = style::color("LabelColor");
    ui->frame->setStyleSheet(style::dialogBackground(PicturePath_, ui->frame->objectName()));
    ui->CloseButton->setStyleSheet(style::titleButton(PicturePath_, QStringLiteral("Close")));
    for (QLabel *caption : {ui->label, ui->label_2})
        caption->setStyleSheet(style::label(ink));
    ui->checkBox->setStyleSheet(style::checkBox(PicturePath_, ink));
    ui->horizontalSlider->setStyleSheet(style::slider());
    for (QToolButton *tile : {ui->toolButton, ui->toolButton_2, ui->toolButton_3, ui->toolButton_4})
        tile->setStyleSheet(style::stateButton(PicturePath_, QStringLiteral("Tile"), ink, ink));
    for (QLabel *mark : {ui->mark, ui->mark_2, ui->mark_3, ui->mark_4})
        mark->setStyleSheet(style::labelPicture(PicturePath_, QStringLiteral("Chosen.png")));
    for (QToolButton *button : {ui->Input, ui->Output})
        button->setStyleSheet(
            style::textButton(PicturePath_, style::color("ButtonColor"), QStringLiteral("Button")));
}

void InputPic::on_CloseButton_clicked()
{
    emit PostMsg::instance()->SigButtonCheck();
    close();
}

InputPicA::InputPicA()
{
    EraseTimer_.setInterval(TickMs);
    connect(&EraseTimer_, &QTimer::timeout, this, &InputPicA::onEraseChipTimeTimer);
}

void InputPicA::StartScreenClock(bool on)
{
    if (!on)
        return;
    Busy_ = false;
    TickCount_ = 0;
    EraseTimer_.start();
    StartUsbChanged([] { screens::RefreshScreenPaths(); }, UsbSettleMs);
}

// The screen's answer is not read: no buffer is given for one.
void InputPicA::onEraseChipTimeTimer()
{
    if (Busy_) {
        TickCount_ = 0;
        return;
    }
    if (++TickCount_ < TicksOfAPacket)
        return;
    TickCount_ = 0;
    const QStringList paths = screens::paths();
    if (paths.isEmpty() || !UsbFinderC_OpenDevice(paths.first().toLocal8Bit().constData()))
        return;
    ScreenPacket packet = clockPacket(QDateTime::currentDateTime());
    SendScreenPacket(packet, nullptr);
}
