// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/FormSetting.h"

#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "device/DeviceState.h"
#include "device/FirmwareSearch.h"
#include "device/hidusb/HIDUsb.h"
#include "environment/DataRoot.h"
#include "hub/PostMsg.h"
#include "presentation/DeviceOperations.h"
#include "presentation/FirstShow.h"
#include "presentation/LanguageBox.h"
#include "presentation/Notices.h"
#include "presentation/ScrollFades.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "presentation/language/Languages.h"
#include "service/AutoStart.h"
#include "service/Match.h"
#include "service/MouseSettings.h"
#include "service/UpgradeFlow.h"
#include "service/UpgradeTexts.h"
#include "ui_FormSetting.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QMouseEvent>
#include <QProcess>
#include <QScreen>
#include <QScrollBar>
#include <QUrl>

namespace
{

using language::Section;

constexpr char MarkColor[] = "QToolButton{color: rgb(255,106,0);}";
constexpr char LinkAtLeft[] =
    "QPushButton{text-align: left;padding: 0px;}QPushButton:hover{text-decoration: underline;}";
constexpr QPoint PairingOffset{-70, -30};
constexpr int LinkGap = 16;
constexpr int LineOpacity = 28;
constexpr int VersionDrop = 10; // of the program's version below its place in the form
constexpr int ButtonPoints = 10;

// The versions and what stands beside them, which the captions of each language leave room for.
struct Columns {
    int receiverX;
    int mouseX;
};
constexpr Columns VersionColumns[] = {{220, 220}, {150, 150}};
constexpr Columns OtherColumns = {235, 235};

// As people read it: the home folder is "~".
QString homely(const QString &path)
{
    const QString home = QDir::homePath() + QLatin1Char('/');
    return path.startsWith(home) ? QStringLiteral("~/") + path.mid(home.size()) : path;
}

QString autoStartSection() { return QStringLiteral("AutoStart"); }
QString autoStartKey() { return QStringLiteral("Enable"); }
QString autoStartOn() { return QStringLiteral("1"); }

// A text that the tables lack leaves the default of the form.
template <typename Widget> void setTextOf(Widget *widget, const QString &text)
{
    if (!text.isEmpty())
        widget->setText(text);
}

} // namespace

FormSetting::FormSetting(QWidget *parent)
    : PageSurface(QStringLiteral("FormSetting"), QStringLiteral("FormSetting"), "common PageSettings", parent)
    , ui(std::make_unique<Ui::FormSetting>())
    , pictures_(style::pictureFolder(QStringLiteral("FormSetting")))
{
    // On a widget of its own, since setupUi() would warn of the slots whose controls are not in this release.
    auto *form = new QWidget(this);
    ui->setupUi(form);
    new ScrollFades(ui->scrollArea, QStringLiteral("FormSetting"));
    versionPlace_ = ui->label->pos();
    SlotScroolChange(0);
    flow_ = std::make_unique<UpgradeFlow>(static_cast<UpgradePage &>(*this));
    hideMarks();
    ui->label_10->installEventFilter(this);
    ui->NewLabel->document()->setDocumentMargin(0);
    languagebox::fill(ui->comboBox);
    restoreAutoStart();
    onFirstShow(this, [this] { applyStyle(); });
    connectSignals();
    SlotAllLanguage(LanguageIndex);
}

FormSetting::~FormSetting() = default;

void FormSetting::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigLanguageSameB(int)), this, SLOT(SlotLanguageSameB(int)));
    connect(hub, SIGNAL(SigSetver(int)), this, SLOT(SetVer(int)));
    connect(hub, SIGNAL(SigSetNewVer()), this, SLOT(SetVerText()));
    connect(hub, SIGNAL(SigLabelText(int, QString)), this, SLOT(SlotLabelText(int, QString)));
    connect(hub, SIGNAL(SigLabelTextB(QString, QString)), this, SLOT(SlotLabelTextB(QString, QString)));
    connect(hub, SIGNAL(SigRGBValue(DongleRGB *)), this, SLOT(SlotRGBValue(DongleRGB *)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigLongRangeMode(bool)), this, SLOT(SlotLongRangeMode(bool)),
            Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigForm()), this, SLOT(SlotForm()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigFormReset()), this, SLOT(SlotFormResetForm()), Qt::BlockingQueuedConnection);
    connect(hub, SIGNAL(SigFormB()), this, SLOT(SlotFormB()));
    connect(hub, SIGNAL(SigLightToFrom(int)), this, SLOT(SlotLightToFrom(int)));
    connect(hub, SIGNAL(SigButtonCheck()), this, SLOT(SlotButtonCheck()));
    connect(hub, SIGNAL(SigCheckUpdate()), this, SLOT(SlotCheckUpdate()));
    connect(hub, SIGNAL(SigUpdateFrame(bool)), this, SLOT(SlotUpdateFrame(bool)));
    connect(hub, SIGNAL(SigUpdateStart()), this, SLOT(on_Start()));
    connect(hub, SIGNAL(SigContinue(int)), this, SLOT(SlotContinue(int)));

    connect(ui->comboBox, QOverload<int>::of(&QComboBox::activated), this,
            &FormSetting::on_comboBox_activated);
    connect(ui->checkBox, &QCheckBox::clicked, this, &FormSetting::on_checkBox_clicked);
    connect(ui->pushButton, &QPushButton::clicked, this, &FormSetting::on_pushButton_clicked);
    connect(ui->Reset, &QToolButton::clicked, this, &FormSetting::on_Reset_clicked);
    connect(ui->Receive_2, &QToolButton::clicked, this, &FormSetting::on_Receive_2_clicked);
    connect(ui->pushButton_2, &QPushButton::clicked, this, &FormSetting::on_pushButton_2_clicked);
    connect(ui->pushButton_3, &QPushButton::clicked, this, &FormSetting::on_pushButton_3_clicked);
    connect(ui->OpenFolder, &QPushButton::clicked, this, &FormSetting::on_OpenFolder_clicked);
    connect(ui->scrollArea->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &FormSetting::SlotScroolChange);
}

// ---- Look ---------------------------------------------------------------------------------------

void FormSetting::applyStyle()
{
    const QString labelColor = style::color("LabelColor");
    const QString dimColor = style::color("LinEditColorSecond");
    ui->scrollArea->setStyleSheet(style::scrollArea()); // before those in it, which it would restyle
    for (QFrame *line : {ui->line_2, ui->line_3, ui->line_4, ui->line_5, ui->line_6})
        line->setStyleSheet(style::hairline(labelColor, LineOpacity));
    for (QFrame *mark : {ui->TitleButton_2, ui->TitleButton_3, ui->TitleButton_4, ui->TitleButton_5,
                         ui->TitleButton_8, ui->TitleButton_9})
        mark->setStyleSheet(style::sectionTitle(pictures_, mark->objectName()));
    for (QLabel *heading : {ui->label_2, ui->label_3, ui->label_8, ui->label_9, ui->label_12, ui->label_13})
        heading->setStyleSheet(style::heading());
    for (QLabel *label : {ui->label_4, ui->label_5, ui->label_6, ui->label_7, ui->label_10})
        label->setStyleSheet(style::label(labelColor));
    for (QLabel *label : {ui->label_14, ui->label_15, ui->label_16})
        label->setStyleSheet(style::label(dimColor));
    ui->NewLabel->setStyleSheet(style::description());
    ui->label->setStyleSheet(style::strip(ui->label->objectName()) + style::label(dimColor));
    ui->label->raise();
    styleComboBox(ui->comboBox, pictures_);
    styleButtons();
}

void FormSetting::styleButtons()
{
    const QString ink = style::color("ButtonColor");
    showWaiting(false);
    for (QToolButton *mark : {ui->toolButton_2, ui->toolButton_3})
        mark->setStyleSheet(style::tile(pictures_, QStringLiteral("Picture.png")) + QLatin1String(MarkColor));
    ui->toolButton->setStyleSheet(style::tile(pictures_, QStringLiteral("Mouse.png")));
    ui->Reset->setStyleSheet(style::textButton(pictures_, ink, QStringLiteral("Confirm")));
    ui->pushButton_2->setStyleSheet(style::pushButton(pictures_, ink, QStringLiteral("PariButton")));
    for (QPushButton *button : {ui->pushButton, ui->OpenFolder})
        button->setStyleSheet(style::pushButton(pictures_, ink, QStringLiteral("Confirm")));
    ui->pushButton_4->setStyleSheet(style::flatLink(style::color("LabelColor")) + QLatin1String(LinkAtLeft));
    ui->pushButton_3->setStyleSheet(style::flatLink(style::color("SliderColor")) + QLatin1String(LinkAtLeft));
    ui->checkBox->setStyleSheet(style::checkBox(pictures_, style::color("LabelColor")));
    ui->pushButton->setEnabled(!mouseSettingsCommand().isEmpty());
    setFileTexts(LanguageIndex);
}

void FormSetting::showWaiting(bool waits)
{
    setStyleSheetWhenShown(
        ui->Receive_2, style::textButton(pictures_, style::color("ButtonColor"),
                                         waits ? QStringLiteral("WaitUpdate") : QStringLiteral("Confirm")));
}

void FormSetting::SlotScroolChange(int index)
{
    ui->label->move(versionPlace_.x(), versionPlace_.y() + index + VersionDrop);
}

// ---- Versions -----------------------------------------------------------------------------------

void FormSetting::hideMarks()
{
    showMark(TargetReceiver, false);
    showMark(TargetMouse, false);
}

void FormSetting::showVersion(int target, const QString &version)
{
    const bool ofMouse = target == TargetMouse;
    (ofMouse ? ui->label_7 : ui->label_5)->setText(version);
    emit PostMsg::instance()->SigAddVer(ofMouse ? 0 : 1, version);
}

void FormSetting::takeVersions()
{
    showVersion(TargetReceiver, selectedReceiver().DongleVersion);
    showVersion(TargetMouse, SelectedDevice::info().MouseVersion);
}

void FormSetting::SetVer(int index)
{
    if (index == 1 || index == 2)
        showMark(index == 1 ? TargetReceiver : TargetMouse, false);
    if (index >= 3 && index <= 5)
        ui->Receive_2->setText(upgrade_);
    if (index == 4 || index == 5) {
        hideMarks();
        flow_->forgetTargets();
    }
    if (index == 0 || index == 5)
        takeVersions();
    if (index == 0)
        flow_->showOffers();
    if (index == 6) {
        showVersion(TargetReceiver, QString());
        showVersion(TargetMouse, QString());
    }
}

QString FormSetting::shownVersion(int target) const
{
    return (target == TargetMouse ? ui->label_7 : ui->label_5)->text();
}

void FormSetting::showMark(int target, bool shown)
{
    (target == TargetMouse ? ui->toolButton_3 : ui->toolButton_2)->setVisible(shown);
}

bool FormSetting::isUpToDate() const { return !upToDate_.isEmpty() && ui->Receive_2->text() == upToDate_; }

void FormSetting::SetVerText() { ui->Receive_2->setText(upToDate_); }

void FormSetting::SlotLabelText(int index, const QString &Text)
{
    if (index == 0) {
        SelectedDevice::setDongleVersion(Text);
        showVersion(TargetReceiver, Text);
    } else if (index == 1) {
        SelectedDevice::setMouseVersion(Text);
        showVersion(TargetMouse, Text);
    }
}

void FormSetting::SlotLabelTextB(const QString &TextA, const QString &Text)
{
    const bool waits = Text == QLatin1String("true");
    showVersion(TargetReceiver, TextA);
    emit PostMsg::instance()->SigAddUpdate(1, waits);
    showWaiting(waits);
}

// ---- Language -----------------------------------------------------------------------------------

void FormSetting::on_comboBox_activated(int index)
{
    const int language = languagebox::languageOf(ui->comboBox, index);
    storeLanguage(UserStore::instance(), language, language::names().value(language));
    LanguageIndex = language;
    emit PostMsg::instance()->SigAllLanguage(language);
    emit PostMsg::instance()->SigLanguageSameA(language);
}

void FormSetting::SlotLanguageSameB(int index) { languagebox::show(ui->comboBox, index); }

void FormSetting::SlotAllLanguage(int index)
{
    if (!fontIsSet_) {
        QFont buttonFont = font();
        buttonFont.setPointSizeF(ButtonPoints);
        for (QWidget *button :
             std::initializer_list<QWidget *>{ui->pushButton_2, ui->pushButton, ui->Reset, ui->OpenFolder})
            button->setFont(buttonFont);
        // The scaling to the screen leaves this one out.
        const double dotsPerInch = QGuiApplication::primaryScreen()->logicalDotsPerInchX();
        buttonFont.setPointSizeF(dotsPerInch > 0 ? ButtonPoints * 96 / dotsPerInch : ButtonPoints);
        ui->Receive_2->setFont(buttonFont);
        fontIsSet_ = true;
    }
    placeVersions(index);
    setTexts(index);
    setCompany(language::companyLabels(index));
    setFileTexts(index);
}

void FormSetting::placeVersions(int language)
{
    const bool listed = language >= 0 && language < int(std::size(VersionColumns));
    const Columns &columns = listed ? VersionColumns[language] : OtherColumns;
    ui->label_5->move(columns.receiverX, ui->label_5->y());
    ui->label_7->move(columns.mouseX, ui->label_7->y());
}

void FormSetting::setCompany(const QStringList &labels)
{
    const QString address = labels.value(1);
    ui->pushButton_4->setText(labels.value(0));
    ui->pushButton_4->resize(ui->pushButton_4->fontMetrics().size(0, labels.value(0)).width() + LinkGap,
                             ui->pushButton_4->height());
    ui->pushButton_3->setText(address);
    ui->pushButton_3->setVisible(!address.isEmpty());
    ui->pushButton_3->move(ui->pushButton_4->geometry().right() + 1, ui->pushButton_3->y());
    ui->pushButton_3->resize(ui->pushButton_3->fontMetrics().size(0, address).width() + LinkGap,
                             ui->pushButton_3->height());
}

void FormSetting::setTexts(int index)
{
    ui->label->setText(language::text(Section::home, "Version", index) + QLatin1String(ProgramVersion));
    setTextOf(ui->label_2, language::text(Section::Settings, "Language", index));
    setTextOf(ui->label_3, language::text(Section::Settings, "DeviceInfo", index));
    setTextOf(ui->label_4, language::text(Section::Settings, "DongleVersion", index));
    setTextOf(ui->label_6, language::text(Section::Settings, "MouseVersion", index));
    setTextOf(ui->label_8, language::text(Section::pair, "PairTool", index));
    setTextOf(ui->pushButton_2, language::text(Section::pair, "Pair", index));
    upgrade_ = language::text(Section::update, "Upgrade", index);
    setTextOf(ui->Receive_2, upgrade_);
    setTextOf(ui->label_9, language::text(Section::Settings, "Others", index));
    setTextOf(ui->label_10, language::text(Section::Settings, "AutoOpen", index));
    ui->checkBox->setAccessibleName(ui->label_10->text());
    setTextOf(ui->Reset, language::text(Section::Settings, "Restore", index));
    setTextOf(ui->pushButton, language::text(Section::Settings, "WindowSet", index));
    ui->toolButton_2->setToolTip(upgradeText(UpgradeText::NoDevice, index));
    ui->toolButton_3->setToolTip(upgradeText(UpgradeText::WiredMode, index));
    for (QToolButton *mark : {ui->toolButton_2, ui->toolButton_3})
        mark->setAccessibleName(mark->toolTip());
    setTextOf(ui->NewLabel, language::text(Section::Settings, "LabelTip", index));
    upToDate_ = upgradeText(UpgradeText::newTips, index);
    setTextOf(ui->label_12, language::text(Section::Settings, "Restore", index));
}

void FormSetting::setFileTexts(int index)
{
    setTextOf(ui->label_13, language::text(Section::Settings, "About", index));
    setTextOf(ui->label_14, language::text(Section::Settings, "License", index));
    setTextOf(ui->label_15, language::text(Section::Settings, "Files", index));
    setTextOf(ui->OpenFolder, language::text(Section::Settings, "OpenFolder", index));
    ui->label_16->setToolTip(dataRoot());
    ui->label_16->setText(
        ui->label_16->fontMetrics().elidedText(homely(dataRoot()), Qt::ElideMiddle, ui->label_16->width()));
    ui->pushButton->setToolTip(ui->pushButton->isEnabled()
                                   ? QString()
                                   : language::text(Section::Settings, "NoMouseSettings", index));
}

// ---- The program and its desktop -------------------------------------------------------------------

void FormSetting::restoreAutoStart()
{
    const bool on = UserStore::instance().ReadText(autoStartSection(), autoStartKey()) == autoStartOn();
    ui->checkBox->setChecked(on);
    if (on && !autostart::isWhole())
        autostart::enable();
}

// The caption of the box is a label of its own, and a click on it counts as one on the box.
bool FormSetting::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->label_10 && event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton)
        ui->checkBox->click();
    return PageSurface::eventFilter(watched, event);
}

void FormSetting::on_checkBox_clicked(bool checked)
{
    if (checked ? autostart::enable() : autostart::disable()) {
        UserStore::instance().WriteValue(autoStartSection(), autoStartKey(),
                                         checked ? autoStartOn() : QStringLiteral("0"));
        return;
    }
    ui->checkBox->setChecked(!checked);
    notice::ask<UpDateWarning>(this, PageNoticeOffset,
                               language::text(Section::Settings, "AutoOpenFailed", LanguageIndex)
                                   .arg(QFileInfo(autostart::entryPath()).path()));
}

void FormSetting::on_pushButton_clicked()
{
    const QStringList command = mouseSettingsCommand();
    if (!command.isEmpty())
        QProcess::startDetached(command.first(), command.mid(1));
}

void FormSetting::on_pushButton_3_clicked() { QDesktopServices::openUrl(QUrl(ui->pushButton_3->text())); }

void FormSetting::on_OpenFolder_clicked() { QDesktopServices::openUrl(QUrl::fromLocalFile(dataRoot())); }

// ---- The device -----------------------------------------------------------------------------------

void FormSetting::on_pushButton_2_clicked() { pairing::pairSelected(this, PairingOffset); }

void FormSetting::on_Reset_clicked() { runFactoryReset(this); }

void FormSetting::on_checkBox_2_toggled(bool checked)
{
    if (UsbFinderC_GetDeviceOnLine(CurrentDevicePath()))
        UsbFinderC_SetLongRangeMode(CurrentDevicePath(), checked ? 1 : 0);
    else
        emit PostMsg::instance()->SigMouseOffLineo(0);
}

// ---- The upgrade ----------------------------------------------------------------------------------

void FormSetting::on_Receive_2_clicked() { flow_->on_Receive_2_clicked(); }
void FormSetting::on_Receive_clicked() { flow_->on_Receive_clicked(); }
void FormSetting::on_Mouse_clicked() { flow_->on_Mouse_clicked(); }
void FormSetting::onDongleCheckTimer() { flow_->onDongleCheckTimer(); }
void FormSetting::onMouseCheckTimer() { flow_->onMouseCheckTimer(); }
void FormSetting::SlotContinue(int index) { flow_->SlotContinue(index); }
void FormSetting::SlotUpdateFrame(bool IsVis) { flow_->SlotUpdateFrame(IsVis); }
void FormSetting::on_Start() { flow_->on_Start(); }
bool FormSetting::ChechIsUpDate() { return flow_->ChechIsUpDate(); }
void FormSetting::SlotCheckUpdate() { flow_->SlotCheckUpdate(); }
