// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/UpDateRepair.h"

#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "device/DeviceState.h"
#include "device/FirmwareSearch.h"
#include "hub/PostMsg.h"
#include "presentation/FirstShow.h"
#include "presentation/NamedWidgets.h"
#include "presentation/ScreenFont.h"
#include "presentation/StyleSheets.h"
#include "service/FlashRun.h"
#include "service/UpgradeState.h"
#include "ui_UpDateRepair.h"

#include <QCloseEvent>
#include <QKeyEvent>

namespace
{

QPointer<UpDateRepair> theDialog;

constexpr int Full = 100;
constexpr int HalfWay = 50;
// Of the message.
constexpr QRect BelowHint{24, 70, 312, 52};
constexpr QRect Alone{24, 40, 312, 60};
constexpr QRect BelowSign{24, 62, 312, 44};
constexpr QRect AboveOffer{24, 66, 312, 24};

} // namespace

UpDateRepair::UpDateRepair() : ui(std::make_unique<Ui::UpDateRepair>())
{
    ui->setupUi(this);
    becomeNotice();
    onFirstShow(this, [this] { applyStyle(); });
    connectSignals();
    resetForm();
    SlotAllLanguage(storedLanguage(UserStore::instance()));
    scaleFontsToScreen(this);
    theDialog = this;
}

UpDateRepair::~UpDateRepair() = default;

UpDateRepair *UpDateRepair::instance() { return theDialog; }

bool UpDateRepair::holdsProgram() { return (theDialog && theDialog->busy_) || flashrun::isUnderWay(); }

void UpDateRepair::applyStyle()
{
    const QString folder = style::pictureFolder(QStringLiteral("WarningDialog"));
    const QString ink = style::color("LabelColor");
    const auto button = [&folder](const QString &stem) {
        return style::textButton(folder, style::color("ButtonColor"), stem);
    };
    ui->AutoRepair->setStyleSheet(style::dialogBackground(folder, QStringLiteral("AutoRepair")));
    ui->footer->setStyleSheet(style::labelPicture(folder, QStringLiteral("Footer.png")));
    ui->CloseButton->setStyleSheet(style::titleButton(folder, QStringLiteral("Close")) +
                                   style::titleButtonOff(folder, QStringLiteral("Close")));
    ui->NewHong_2->setStyleSheet(button(QStringLiteral("Confirm")) +
                                 style::textButtonOff(folder, QStringLiteral("Confirm")));
    ui->NewHong->setStyleSheet(button(QStringLiteral("Cancel")));
    ui->ToolText->setStyleSheet(style::label(style::color("LinEditColorSecond")));
    ui->ToolText_2->setStyleSheet(style::label(ink));
    ui->percent->setStyleSheet(style::label(ink));
    ui->offer->setStyleSheet(style::label(style::color("LinEditColorSecond")));
    ui->progressBar_2->setStyleSheet(style::progressBar());
}

void UpDateRepair::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigProgress(int, int)), this, SLOT(SlotProgress(int, int)));
    connect(hub, SIGNAL(SigAutoRepair(int)), this, SLOT(SlotAutoRepair(int)));
    connect(hub, SIGNAL(SigAutoRepairProgress(int)), this, SLOT(SlotAutoRepairProgress(int)));
    connect(hub, SIGNAL(SigRepairCheckUpdate()), this, SLOT(SlotRepairCheckUpdate()));
    connect(hub, SIGNAL(SigMainPageChange()), this, SLOT(SlotMainPageChange()));
}

// ---- Forms --------------------------------------------------------------------------------------

void UpDateRepair::resetForm()
{
    setBar(0);
    ui->progressBar_2->hide();
    ui->percent->hide();
    setMainButton(MainButton::Start);
    say(UpgradeText::None);
    showButtons();
}

void UpDateRepair::readyForm(const std::vector<FirmwareOffer> &offers)
{
    resetForm();
    offers_ = offers;
    say(UpgradeText::ReadyUpdate);
}

void UpDateRepair::askingForm(const std::function<Inquiry::Answer()> &question)
{
    resetForm();
    focusReturns_ = focusWidget() == ui->NewHong_2;
    if (focusReturns_)
        ui->NewHong->setFocus();
    ui->NewHong_2->setEnabled(false);
    say(UpgradeText::UpgradeAsking);
    devicesAsked_.ask(question);
}

void UpDateRepair::busyForm()
{
    busy_ = true;
    devicesAsked_.drop();
    for (QWidget *button : {ui->NewHong, ui->NewHong_2}) {
        button->hide();
        button->setEnabled(false);
    }
    ui->CloseButton->setEnabled(false);
    setBar(0);
    ui->progressBar_2->show();
    ui->percent->show();
    say(UpgradeText::WarnUpdate);
    awake_.take(upgradeText(UpgradeText::WarnUpdate, language_));
}

void UpDateRepair::noticeForm(UpgradeText reason)
{
    ui->progressBar_2->hide();
    setMainButton(MainButton::Ok);
    say(reason);
    showButtons();
}

// A failure behind the last byte is none the less a failure: a full bar means success.
void UpDateRepair::showFailure()
{
    say(UpgradeText::DialogUpgradeFail);
    setBar(qMin(ui->progressBar_2->value(), Full - 1));
    showButtons();
}

// Ends the busy form and the question. What is plugged in meanwhile leaves the focus where it is; the main
// button gets it when the dialog opens, when nothing could be pressed, and when the question has taken it
// away.
void UpDateRepair::showButtons()
{
    const bool isLent = focusReturns_ && focusWidget() == ui->NewHong;
    const bool keepsFocus = isVisible() && !busy_ && !isLent && focusWidget() && focusWidget()->isEnabled();
    focusReturns_ = false;
    busy_ = false;
    devicesAsked_.drop();
    awake_.release();
    for (QWidget *button : {ui->NewHong, ui->NewHong_2}) {
        button->setEnabled(true);
        button->show();
    }
    ui->CloseButton->setEnabled(true);
    ui->percent->hide();
    if (!keepsFocus)
        ui->NewHong_2->setFocus();
    writeTexts();
}

bool UpDateRepair::showsResult() const { return !busy_ && !ui->progressBar_2->isHidden(); }

void UpDateRepair::say(UpgradeText text)
{
    text_ = text;
    if (text != UpgradeText::ReadyUpdate)
        offers_.clear();
    writeTexts();
}

void UpDateRepair::setMainButton(MainButton meaning)
{
    mainButton_ = meaning;
    writeTexts();
}

void UpDateRepair::setBar(int percent)
{
    ui->progressBar_2->setValue(percent);
    writeTexts();
}

// A result that is told stays: its bar decides how the dialog is left.
void UpDateRepair::showPercent(int percent)
{
    if (!showsResult())
        setBar(percent);
}

// The bar covers both targets, the text below it the one that is being written.
int UpDateRepair::targetPercent() const
{
    const int value = ui->progressBar_2->value();
    if (Stages != 2)
        return value;
    return UpgradeTarget == TargetMouse ? qMax(0, value - HalfWay) * 2 : qMin(value, HalfWay) * 2;
}

QString UpDateRepair::offerText() const
{
    QStringList lines;
    for (const FirmwareOffer &offer : offers_) {
        const char *form = offer.from.isEmpty() ? "UpgradeTo" : "UpgradeFromTo";
        QString line = language::text(language::Section::update, form, language_)
                           .arg(targetName(offer.target), offer.to);
        lines << (offer.from.isEmpty() ? line : line.arg(offer.from));
    }
    return lines.join(QLatin1Char('\n'));
}

// As on the settings page.
QString UpDateRepair::targetName(int target) const
{
    return language::text(language::Section::Settings,
                          target == TargetMouse ? "MouseVersion" : "DongleVersion", language_);
}

void UpDateRepair::writeTexts()
{
    const auto common = [this](const char *key) {
        return language::text(language::Section::common, key, language_);
    };
    const auto set = [](auto *widget, const QString &text) {
        if (!text.isEmpty())
            widget->setText(text);
    };
    const QString hint = upgradeText(UpgradeText::WarnUpdate, language_);
    set(ui->ToolText, hint);
    // The bar stands for the hint: it comes with the start, and what it shows has to be read alone.
    const bool isHint = ui->progressBar_2->isHidden();
    ui->ToolText->setVisible(isHint);
    ui->offer->setText(offerText());
    ui->offer->setVisible(!offers_.empty());
    ui->ToolText_2->setGeometry(!offers_.empty() ? AboveOffer
                                : isHint         ? BelowHint
                                : showsResult()  ? BelowSign
                                                 : Alone);
    showSign();
    ui->ToolText_2->setText(upgradeText(text_, language_));
    set(ui->NewHong, common("Cancel"));
    set(ui->NewHong_2, mainButton_ == MainButton::Ok
                           ? common("OK")
                           : language::text(language::Section::update, "DialogUpgradeStart", language_));
    const QString progress = language::text(language::Section::update, "UpgradeProgress", language_);
    ui->percent->setText(progress.arg(targetName(UpgradeTarget)).arg(targetPercent()));
    setAccessibleName(ui->ToolText_2->text().isEmpty() ? hint : ui->ToolText_2->text());
    setAccessibleDescription(ui->offer->text());
}

void UpDateRepair::showSign()
{
    const bool isDone = text_ == UpgradeText::DialogUpgradeSuccess;
    ui->sign->setVisible(showsResult());
    setStyleSheetWhenShown(
        ui->sign, style::labelPicture(style::pictureFolder(QStringLiteral("WarningDialog")),
                                      isDone ? QStringLiteral("Done.png") : QStringLiteral("Warn.png")));
}

void UpDateRepair::SlotAllLanguage(int index)
{
    language_ = index;
    nameWidgets(this, index);
    ui->progressBar_2->setAccessibleName(
        language::text(language::Section::update, "DialogUpgradeUpgrading", index));
    writeTexts();
}

// ---- Buttons ------------------------------------------------------------------------------------

void UpDateRepair::leave()
{
    if (RepairBusy || busy_)
        return;
    tellResult();
    close();
}

void UpDateRepair::tellResult()
{
    if (ui->progressBar_2->isHidden())
        return;
    if (ui->progressBar_2->value() == Full)
        emit PostMsg::instance()->SigSetNewVer();
    else if (OnDevicePage == 1)
        emit PostMsg::instance()->SigChangeMainDialog(0);
}

void UpDateRepair::on_CloseButton_clicked() { leave(); }

void UpDateRepair::on_NewHong_clicked() { leave(); }

void UpDateRepair::on_NewHong_2_clicked()
{
    if (!ui->progressBar_2->isHidden() || mainButton_ == MainButton::Ok)
        leave();
    else if (OnDevicePage == 1)
        emit PostMsg::instance()->SigUpdateStart();
    else
        startRepair();
}

void UpDateRepair::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        ui->NewHong_2->click();
    else if (event->key() == Qt::Key_Escape)
        ui->NewHong->click();
    event->accept();
}

void UpDateRepair::closeEvent(QCloseEvent *event)
{
    if (busy_ || RepairBusy) {
        event->ignore();
        return;
    }
    if (event->spontaneous()) // a compositor's own way to close counts as a button
        tellResult();
    NoticeWindow::closeEvent(event);
}

void UpDateRepair::showEvent(QShowEvent *event)
{
    UpgradeDialogOpen = true;
    NoticeWindow::showEvent(event);
}

void UpDateRepair::hideEvent(QHideEvent *event)
{
    UpgradeDialogOpen = false;
    forRepair_ = false;
    devicesAsked_.drop();
    repair_ = RepairRoute(); // what is attached then may differ
    if (!busy_)
        ui->progressBar_2->hide(); // a result was read
    NoticeWindow::hideEvent(event);
}

void UpDateRepair::showOver(const QWidget *widget, const QPoint &offset)
{
    placeOver(widget, offset);
    setModal(true);
    show();
}

void UpDateRepair::showForRepair(const QWidget *widget)
{
    forRepair_ = true;
    showOver(widget);
}

// The offer is about the device of that page. A result stays to be read.
void UpDateRepair::SlotMainPageChange()
{
    if (!busy_ && !forRepair_ && !showsResult())
        close();
}

// ---- The hub's words ----------------------------------------------------------------------------

void UpDateRepair::SlotProgress(int schedue, int Discrib)
{
    switch (Progress(Discrib)) {
    case Progress::Percent:
        showPercent(schedue);
        break;
    case Progress::Failed:
        setMainButton(MainButton::Ok);
        showFailure();
        break;
    case Progress::Succeeded:
        say(UpgradeText::DialogUpgradeSuccess);
        setBar(Full);
        setMainButton(MainButton::Ok);
        showButtons();
        break;
    case Progress::NoCancel:
        ui->NewHong->hide();
        break;
    case Progress::NoCancelAtStart:
        ui->NewHong->hide();
        setBar(0);
        break;
    case Progress::FailedHalfWay:
        setMainButton(MainButton::Ok);
        setBar(HalfWay);
        showFailure();
        break;
    case Progress::RepairFailed:
        showFailure();
        break;
    }
}

void UpDateRepair::SlotAutoRepair(int index)
{
    say(index == 0 ? UpgradeText::DialogUpgradeSuccess : UpgradeText::DialogUpgradeFail);
    setMainButton(MainButton::Ok);
    ui->NewHong->show();
}

void UpDateRepair::SlotAutoRepairProgress(int index) { showPercent(index); }

// ---- Repair -------------------------------------------------------------------------------------

void UpDateRepair::SlotRepairCheckUpdate()
{
    // The word may have been on its way when the dialog was closed.
    if (!isVisible() || busy_ || RepairRunning || showsResult())
        return;
    askingForm([this, attached = attached_]() -> Inquiry::Answer {
        const RepairRoute::Check check = RepairRoute::check(attached);
        return [this, check] { takeCheck(check); };
    });
}

void UpDateRepair::takeCheck(const RepairRoute::Check &check)
{
    repair_.take(check);
    if (!check.senseless.isEmpty()) // the selection page offers what is left
        emit PostMsg::instance()->SigUpDateButton(UpdateFailRecord::storedTexts().isEmpty());
    if (check.verdict.ready)
        readyForm(check.verdict.offers);
    else
        noticeForm(check.verdict.text);
}

void UpDateRepair::startRepair()
{
    busyForm();
    if (!repair_.start())
        noticeForm(UpgradeText::ErrorFile);
}
