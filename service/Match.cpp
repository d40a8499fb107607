// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/Match.h"

#include "catalogue/DeviceCatalogue.h"
#include "catalogue/LanguageChoice.h"
#include "catalogue/UserStore.h"
#include "device/DeviceState.h"
#include "device/EventDispatch.h"
#include "hub/PostMsg.h"
#include "presentation/FirstShow.h"
#include "presentation/NamedWidgets.h"
#include "presentation/ScreenFont.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "ui_Match.h"

#include <QDebug>
#include <QGraphicsOpacityEffect>
#include <QKeyEvent>
#include <QTextBlock>

namespace
{

constexpr int PairMs = 1000;
constexpr int UsbMs = 100;
constexpr int TextMs = 500;
constexpr int LastDots = 3; // the step behind it repeats the last text
constexpr int32_t PathsPerPair = 5;

constexpr double OffOpacity = 0.35;
constexpr int StepGap = 4;
const QString StepNumber = QStringLiteral("3. "); // as wide as that of any step

const QString OffColor = QStringLiteral("0,0,0");
// A plate on which the black text can be read and which nobody takes for one to press.
constexpr char OffPlate[] = "QToolButton:disabled{border-image: url(%1PairOff.png);}";

// One row for each phase: the picture of the button and whether it can be pressed.
struct PhaseRow {
    const char *picture;
    bool repeats;
};
constexpr PhaseRow PhaseRows[] = {
    {"Pair", true},         // Idle
    {"Pair", true},         // Pairing: the newest start counts
    {"PairSuccess", false}, // Succeeded
    {"PairFail", true},     // Failed
};

const PhaseRow &row() { return PhaseRows[std::size_t(pairing::phase())]; }

DeviceAllInfo chooseTarget(const AttachedDevices *attached)
{
    if (OnDevicePage == 1)
        return SelectedDevice::info();
    if (!attached)
        return {};
    if (attached->pairingTarget())
        return *attached->pairingTarget();
    return attached->tiles().empty() ? DeviceAllInfo() : attached->tiles().front();
}

QString pairText(const char *key, int language)
{
    return language::text(language::Section::pair, key, language);
}

} // namespace

Match::Match(const AttachedDevices *attached)
    : ui(std::make_unique<Ui::Match>()), pictures_(style::pictureFolder(QStringLiteral("Setting")))
{
    ui->setupUi(this);
    becomeNotice();
    connectSignals();
    onFirstShow(this, [this] { applyStyle(); });
    prepare(attached);
    scaleFontsToScreen(this); // the steps' indent is measured in their font
    SlotAllLanguage(storedLanguage(UserStore::instance()));
    setFocus(); // no button: it would show its ring before anyone has used the keyboard
}

Match::~Match() = default;

void Match::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigTimerStop()), this, SLOT(SlotStopTimer()));
    connect(hub, SIGNAL(SigButtonEnable(int)), this, SLOT(SlotButtonenable(int)));
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigMainPageChange()), this, SLOT(SlotMainPageChange()));
    connect(ui->CloseButton, &QToolButton::clicked, this, &Match::WindowClosedSet);
    connect(&pairTimer_, &QTimer::timeout, this, &Match::onPairTimeupDestroy);
    connect(&usbTimer_, &QTimer::timeout, this, &Match::onUSBTimeupDestroy);
    connect(&textTimer_, &QTimer::timeout, this, &Match::onTextTimeupDestroy);
    for (QObject *each : std::initializer_list<QObject *>{this, ui->MatchButton, ui->CloseButton})
        each->installEventFilter(this);
}

void Match::applyStyle()
{
    const QString ink = style::color("LabelColor");
    ui->MatchA->setStyleSheet(style::dialogBackground(pictures_, ui->MatchA->objectName()));
    ui->CloseButton->setStyleSheet(style::titleButton(pictures_, QStringLiteral("Close")) +
                                   style::titleButtonOff(pictures_, QStringLiteral("Close")));
    ui->title->setStyleSheet(style::heading());
    ui->label->setStyleSheet(style::label(ink));
    ui->textEdit->setStyleSheet(style::instructions());
    ui->footer->setStyleSheet(style::labelPicture(pictures_, QStringLiteral("Footer.png")));
    ui->toolButton_2->setStyleSheet(style::tile(pictures_, QStringLiteral("Receiver.png")));
    ui->toolButton_3->setStyleSheet(style::tile(pictures_, QStringLiteral("Mouse.png")));
    showPhase();
}

void Match::prepare(const AttachedDevices *attached)
{
    ui->MatchButton->setShortcut(Qt::Key_Space);
    pairing::prepare();
    step_ = 0;
    target_ = chooseTarget(attached);
    customer_ = uint8_t(DeviceCatalogue().option("CID"));
    onUSBTimeupDestroy();
    usbTimer_.start(UsbMs);
}

// ---- The rule: through a receiver only ----------------------------------------------------------

void Match::onUSBTimeupDestroy()
{
    if (!pairing::isActive())
        MayPair_ = !target_.Usb && !target_.DevicePath.isEmpty();
    showRule();
}

bool Match::mayPress() const { return MayPair_ && row().repeats; }

void Match::showRule()
{
    ui->label->setVisible(!MayPair_);
    ui->textEdit->setVisible(MayPair_);
    if (mayPress() != ui->MatchButton->isEnabled())
        showPhase();
}

// ---- Pairing ------------------------------------------------------------------------------------

void Match::on_MatchButton_clicked()
{
    if (pairing::phase() == PairingPhase::Succeeded || !MayPair_)
        return;
    pairing::begin();
    step_ = 0;
    sinceStart_.start();
    textTimer_.start(TextMs);
    startPairing();
    showPhase();
}

void Match::startPairing()
{
    qDebug("Enter");
    started_ = true;
    pairTimer_.start(PairMs);
    const QByteArray path = target_.DevicePath.toLocal8Bit();
    UsbServerC_Start(path.constData(), path.constData(), &pairing::callback);
    UsbServer_EnterDonglePairOnlyCid(customer_);
}

void Match::onPairTimeupDestroy()
{
    UsbServer_ReadDonglePairStatus();
    if (!isTargetAttached() || sinceStart_.hasExpired(silenceLimit_))
        failHere();
}

bool Match::isTargetAttached() const
{
    const QByteArray wanted = target_.DevicePath.toLocal8Bit();
    int32_t count = PathsPerPair;
    const char *const *paths = UsbFinderC_FindHidDevicesByDefaultDeviceId(
        target_.Vid.toLatin1().constData(), target_.Pid.toLatin1().constData(), &count);
    for (int32_t i = 0; paths && i < qMin(count, PathsPerPair); ++i)
        if (wanted == paths[i])
            return true;
    return false;
}

void Match::failHere()
{
    if (!pairing::failActive())
        return;
    SlotStopTimer();
    showPhase();
}

void Match::onTextTimeupDestroy()
{
    showLeft();
    if (step_ > LastDots) {
        step_ = 0;
        return;
    }
    ui->MatchButton->setText(dotted(step_));
    ++step_;
}

QString Match::dotted(int dots) const { return pairing_ + QString(dots, QLatin1Char('.')); }

void Match::showLeft()
{
    ui->ring->setLeft(PairingReceiverLimit - sinceStart_.elapsed(), PairingReceiverLimit);
    ui->ring->setAccessibleName(timeLeft_.arg(ui->ring->secondsLeft()));
}

// An outcome may still be on its way to this thread while a new start has been made, which has its own.
void Match::SlotStopTimer()
{
    if (pairing::isActive())
        return;
    pairTimer_.stop();
    textTimer_.stop();
}

void Match::SlotButtonenable(int index)
{
    if (pairing::isActive() || (index != 0 && index != 1))
        return;
    const PairingPhase told = index == 1 ? PairingPhase::Succeeded : PairingPhase::Failed;
    if (pairing::phase() != told)
        pairing::end(told);
    showPhase();
}

// ---- What it shows ------------------------------------------------------------------------------

void Match::showPhase()
{
    const PairingPhase now = pairing::phase();
    const QString texts[] = {startPair_, dotted(0), pairSuccess_, pairFail_};
    ui->MatchButton->setText(texts[std::size_t(now)]);
    ui->MatchButton->setWidest(now == PairingPhase::Pairing ? dotted(LastDots) : QString());
    ui->MatchButton->setEnabled(mayPress());
    const QString picture = QLatin1String(row().picture);
    ui->MatchButton->setStyleSheet(MayPair_
                                       ? style::textButton(pictures_, style::color("ButtonColor"), picture)
                                       : style::textButton(pictures_, OffColor, picture) +
                                             QString::fromLatin1(OffPlate).arg(pictures_));
    ui->MatchButton->setShortcut(Qt::Key_Space); // a change of the text removes it
    showClosing(now != PairingPhase::Pairing);
    ui->ring->setPhase(now);
    ui->ring->setAccessibleName(texts[std::size_t(now)]);
    if (now == PairingPhase::Pairing)
        showLeft();
}

void Match::showClosing(bool possible)
{
    if (possible == ui->CloseButton->isEnabled())
        return;
    ui->CloseButton->setEnabled(possible);
    auto *dim = possible ? nullptr : new QGraphicsOpacityEffect(ui->CloseButton);
    if (dim)
        dim->setOpacity(OffOpacity);
    ui->CloseButton->setGraphicsEffect(dim);
}

void Match::showInstructions(const QString &steps)
{
    ui->textEdit->setPlainText(steps);
    QTextCursor all(ui->textEdit->document());
    all.select(QTextCursor::Document);
    QTextBlockFormat step;
    step.setBottomMargin(StepGap);
    // Lines below the first stand under its text, not under its number.
    const qreal number = ui->textEdit->fontMetrics().size(0, StepNumber).width();
    step.setLeftMargin(number);
    step.setTextIndent(-number);
    all.mergeBlockFormat(step);
}

void Match::SlotAllLanguage(int index)
{
    nameWidgets(this, index);
    startPair_ = pairText("StartPair", index);
    pairing_ = pairText("Pairing", index);
    pairFail_ = pairText("PairFail", index);
    pairSuccess_ = pairText("PairSuccess", index);
    timeLeft_ = pairText("PairTimeLeft", index);
    ui->label->setText(language::text(language::Section::home, "NoPair", index));
    showInstructions(pairText("DialogPairTips", index));
    ui->title->setText(pairText("PairTool", index));
    setAccessibleName(ui->title->text());
    showPhase();
}

// ---- Keys and closing ---------------------------------------------------------------------------

// The space bar belongs to MatchButton by its shortcut, which also acts while the button has the focus. Its
// repetitions while it is held, and its release, which a focused button takes for a second click, do nothing,
// and neither does a press while the button is disabled, which would reach the close button.
bool Match::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::ShortcutOverride && type != QEvent::KeyPress && type != QEvent::KeyRelease)
        return NoticeWindow::eventFilter(watched, event);
    auto *const key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_Space || (type == QEvent::ShortcutOverride && !key->isAutoRepeat()))
        return NoticeWindow::eventFilter(watched, event);
    event->accept();
    return true;
}

// Not QDialog's, which would press a default button on Enter.
void Match::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape || (enter && ui->CloseButton->hasFocus()))
        WindowClosedSet();
    event->accept();
}

void Match::WindowClosedSet()
{
    if (!pairing::isActive())
        close();
}

void Match::reject()
{
    if (pairing::isActive())
        return;
    for (QTimer *timer : {&pairTimer_, &usbTimer_, &textTimer_})
        timer->stop();
    if (OnDevicePage == 0) {
        if (started_)
            UsbServer_Exit();
        if (rescan_)
            StartUsbChanged(rescan_, UsbSettleMs);
    }
    NoticeWindow::reject();
}

// The connection has been closed with the page, so no outcome can come by it.
void Match::SlotMainPageChange()
{
    pairing::leaveDevicePage();
    failHere();
}

// ---- Openers ------------------------------------------------------------------------------------

void pairing::pairSelected(const QWidget *page, const QPoint &offset)
{
    if (OnDevicePage != 1)
        return; // the page is still being opened
    const bool awaited = AwaitingMouse;
    Match().openOver(page, offset);
    if (OnDevicePage != 1)
        return;
    const bool succeeded = pairing::phase() == PairingPhase::Succeeded;
    if (succeeded)
        forgetReset();
    StartUsbChanged(&DevicePageUsbChanged, UsbSettleMs);
    UsbServerC_Start(CurrentDevicePath(), CurrentDevicePath(), &ProtocolCallback);
    UsbServer_ReadAllFlashData(); // the new connection writes nothing before it knows what the mouse holds
    if (succeeded)
        awaitMouse();
    else if (awaited)
        AwaitingMouse = true; // the off-line watch ends while no device page shows
}

void pairing::pairAttached(const QWidget *page, const AttachedDevices &attached, UsbChangedCallback_t rescan)
{
    Match dialog(&attached);
    dialog.setRescan(rescan);
    dialog.openOver(page);
}
