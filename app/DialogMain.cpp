// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/DialogMain.h"

#include "app/Dialog.h"
#include "app/StartUp.h"
#include "app/WindowFlags.h"
#include "catalogue/LanguageChoice.h"
#include "catalogue/RegistryStore.h"
#include "catalogue/UserStore.h"
#include "device/DeviceState.h"
#include "device/EventDispatch.h"
#include "device/Worker.h"
#include "device/hidusb/HIDUsb.h"
#include "environment/DataRoot.h"
#include "hub/PostMsg.h"
#include "presentation/NamedWidgets.h"
#include "presentation/Notices.h"
#include "presentation/SkinPalette.h"
#include "presentation/Spin.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "presentation/language/Languages.h"
#include "selection/DialogChange.h"
#include "service/Match.h"
#include "service/UpDateRepair.h"
#include "ui_DialogMain.h"

#include <QAction>
#include <QCloseEvent>
#include <QDebug>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QSessionManager>
#include <QThread>
#include <QTimer>
#include <QWindow>
#include <cstdlib>

namespace
{

constexpr QPoint NoticeOffset{0, -20};
constexpr int ServiceExitMs = 100;
constexpr int ClosingMs = 200;
constexpr int TrayLookMs = 500;

} // namespace

DialogMain::DialogMain(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::DialogMain>())
{
    LoadLanguageTables();
    ui->setupUi(this);
    migrateLanguage(RegistryStore::instance(), UserStore::instance());
    LanguageIndex = followLanguage(UserStore::instance(), language::names());
    pictures_ = style::pictureFolder(QStringLiteral("Dialog"));
    // The ground is the largest picture of the first page, and the page finds it in the cache.
    skinPicture(style::pictureFolder(QStringLiteral("DialogChange")) + QStringLiteral("MainBack.png"), this);
    awaitFontFiles();
    dialog_ = new Dialog(this);
    dialogChange_ = new DialogChange(this);
    ui->stackedWidget->addWidget(dialogChange_);
    ui->stackedWidget->addWidget(dialog_);
    setWindowFlags(FramelessFlags);
    setFixedSize(size());
    showPage(dialogChange_); // a change of the flags would take the focus away
    roundCorners(this);
    setWindowTitle(applicationName());
    connectSignals();
    setWindowIcon(QIcon(pictures_ + QStringLiteral("Logo.png")));
    emit PostMsg::instance()->SigLanguageSameA(LanguageIndex);
    emit PostMsg::instance()->SigLanguageSameB(LanguageIndex);
    emit PostMsg::instance()->SigAllLanguage(LanguageIndex);
}

DialogMain::~DialogMain() = default;

void DialogMain::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigChangeMainDialog(int)), this, SLOT(SlotChangeMainDialog(int)));
    connect(hub, SIGNAL(SigChangeSize(int)), this, SLOT(SlotChangeSize(int)));
    connect(hub, SIGNAL(SigMouseOffLineo(int)), this, SLOT(SlotMouseOffLine(int)));
    connect(hub, SIGNAL(SigUpPageLight()), this, SLOT(SlotUpPageLight()));
    // Decoded after the tile is drawn as one under the pointer, so that a click on it does not wait for them.
    connect(dialogChange_, &DialogChange::tileEntered, dialog_, [this](const DeviceAllInfo &device) {
        QTimer::singleShot(0, dialog_, [this, device] { dialog_->loadPictures(device); });
    });
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &session) {
        if (!staysForUpgrade())
            return;
        session.allowsInteraction(); // else only a session that asks for errors can be cancelled
        session.cancel();
    });
}

// ---- Pages --------------------------------------------------------------------------------------

// The page itself has the focus at first. The toolkit would give it to some control, which would take the
// space bar for itself.
void DialogMain::showPage(QWidget *page)
{
    ui->stackedWidget->setCurrentWidget(page);
    page->setFocus();
}

void DialogMain::SlotChangeMainDialog(int index)
{
    UiArmed = true;
    if (index == 0) {
        emit PostMsg::instance()->SigSecondPageChange();
        OnDevicePage = 0;
        emit PostMsg::instance()->SigMainPageChange();
        UsbServer_Exit();
        QThread::msleep(ServiceExitMs);
        dialogChange_->setUnplugged(DeviceUnplugged.exchange(false));
        showPage(dialogChange_);
        StartUsbChanged(&DialogChange::UsbChanged, UsbSettleMs);
    } else if (index == 1) {
        showPage(dialog_);
        StartUsbChanged(&DevicePageUsbChanged, UsbSettleMs);
    }
}

// Opens the notice after the caller's slot has returned, so that the page that found the mouse off line
// resets its control first. Only one notice is open at a time.
void DialogMain::SlotMouseOffLine(int index)
{
    OffLineKind = index;
    awaitMouse();
    if (noticeUp_)
        return;
    noticeUp_ = true;
    QTimer::singleShot(0, this, [this] {
        // The mouse may have answered meanwhile.
        if (AwaitingMouse)
            notice::ask<MouseOffLine>(this, NoticeOffset);
        noticeUp_ = false;
    });
}

// ---- Hiding and closing -------------------------------------------------------------------------

void DialogMain::SlotChangeSize(int index)
{
    if ((index == 1 || index == 3) && staysForUpgrade())
        return;
    if (index == 0 || index == 1)
        UsbServer_SetPCDriverStatus(0);
    if (index == 0 || index == 2)
        hideToTray();
    if (index == 1 || index == 3)
        endProgram();
}

// Without a tray the user could not open a hidden window again, so it is minimised.
void DialogMain::hideToTray()
{
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        showMinimized();
        hiddenInTaskBar_ = true;
        return;
    }
    hide();
    buildTrayIcon();
    buildTrayMenu();
    trayIcon_->show();
}

void DialogMain::startHidden(int waitMs)
{
    if (isVisible())
        return;
    if (waitMs > 0 && !QSystemTrayIcon::isSystemTrayAvailable())
        QTimer::singleShot(TrayLookMs, this, [this, waitMs] { startHidden(waitMs - TrayLookMs); });
    else
        SlotChangeSize(2);
}

// The icon asks the session bus for a tray, which a start would have to wait for.
void DialogMain::buildTrayIcon()
{
    if (trayIcon_)
        return;
    trayIcon_ = std::make_unique<QSystemTrayIcon>(windowIcon());
    trayIcon_->setToolTip(applicationName());
    connect(trayIcon_.get(), &QSystemTrayIcon::activated, this, &DialogMain::on_activatedSysTrayIcon);
}

void DialogMain::buildTrayMenu()
{
    auto menu = std::make_unique<QMenu>();
    actionMain_ = menu->addAction(openText_, this, &DialogMain::slotActionMain);
    actionExit_ = menu->addAction(exitText_, this, &DialogMain::slotActionExitApp);
    trayIcon_->setContextMenu(menu.get());
    trayMenu_ = std::move(menu);
}

// The worker is stopped first, because a pass that began during the spin or after it would open the
// connection again. When the window is being closed already, close() does nothing, and the window is hidden
// after closeEvent() has returned.
void DialogMain::endProgram()
{
    ended_ = true;
    qDebug() << "close";
    if (Worker *const worker = Worker::instance())
        worker->stop();
    StopUsbChanged();
    spinEventLoop(ClosingMs);
    UsbServer_Exit();
    close();
}

void DialogMain::endProcess()
{
    if (!ended_ && !close())
        return;
    UsbServer_Exit(); // a closing that is under way has not come to this
    std::exit(0);
}

void DialogMain::letGo()
{
    if (ended_)
        return;
    ended_ = true;
    if (ui->stackedWidget->currentWidget() == dialog_) {
        dialog_->writeCache(); // also when a mouse that answers slowly uses up the time
        dialog_->keepAll();
    }
    UsbServer_SetPCDriverStatus(0);
    if (Worker *const worker = Worker::instance())
        worker->stop();
    StopUsbChanged();
    UsbServer_Exit();
}

// A device whose firmware is half written does not work. The upgrade dialog, which says so, is brought to the
// front.
bool DialogMain::staysForUpgrade()
{
    if (!UpDateRepair::holdsProgram())
        return false;
    comeBack();
    if (UpDateRepair *const dialog = UpDateRepair::instance(); dialog && dialog->isVisible()) {
        dialog->raise();
        dialog->activateWindow();
    }
    return true;
}

// The window manager and the end of a session close the window without a button of the page.
void DialogMain::closeEvent(QCloseEvent *event)
{
    if (!ended_ && staysForUpgrade()) {
        event->ignore();
        return;
    }
    if (!ended_) {
        if (ui->stackedWidget->currentWidget() == dialog_)
            dialog_->WindowClosed();
        else
            dialogChange_->on_CloseButton_clicked();
    }
    QDialog::closeEvent(event);
}

void DialogMain::on_pushButton_clicked() { close(); }

// ---- Tray ---------------------------------------------------------------------------------------

// A click and the menu set the driver status again; a double click does not.
void DialogMain::on_activatedSysTrayIcon(QSystemTrayIcon::ActivationReason reason)
{
    switch (reason) {
    case QSystemTrayIcon::Context:
        if (trayMenu_ && !trayMenu_->isVisible())
            trayMenu_->popup(QCursor::pos());
        break;
    case QSystemTrayIcon::DoubleClick:
        comeBack();
        break;
    case QSystemTrayIcon::Trigger:
        slotActionMain();
        break;
    default:
        break;
    }
}

void DialogMain::slotActionMain()
{
    comeBack();
    takeCharge();
}

void DialogMain::takeCharge()
{
    if (ui->stackedWidget->currentWidget() == dialog_)
        UsbServer_SetPCDriverStatus(1);
}

// Without a tray a click in the task bar does what one on the tray icon would.
void DialogMain::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || !hiddenInTaskBar_ || isMinimized())
        return;
    hiddenInTaskBar_ = false;
    takeCharge();
}

// Hides the icon after its own event, since hiding destroys the window that received the click.
void DialogMain::comeBack()
{
    show();
    activateWindow();
    QTimer::singleShot(0, this, [this] {
        if (isVisible() && trayIcon_)
            trayIcon_->hide();
    });
}

void DialogMain::slotActionExitApp()
{
    if (staysForUpgrade())
        return;
    ended_ = true; // nothing is tidied
    std::exit(0);
}

void DialogMain::SlotAllLanguage(int index)
{
    openText_ = language::text(language::Section::home, "OpenMain", index);
    exitText_ = language::text(language::Section::home, "Exit", index);
    nameWidgets(this, index);
    if (trayMenu_) {
        actionMain_->setText(openText_);
        actionExit_->setText(exitText_);
    }
}

// ---- Keys and mouse -----------------------------------------------------------------------------

void DialogMain::keyPressEvent(QKeyEvent *event)
{
    if (MacroRecording)
        return;
    switch (event->key()) {
    case Qt::Key_Space:
        if (event->isAutoRepeat()) // held since it has opened this page or closed a dialog
            break;
        if (ui->stackedWidget->currentWidget() == dialogChange_)
            dialogChange_->openOnlyReceiver();
        else
            pairing::pairSelected(this);
        break;
    case Qt::Key_Escape:
    case Qt::Key_F12:
        event->accept();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit PostMsg::instance()->SigEnterKey();
        break;
    default:
        QDialog::keyPressEvent(event);
    }
}

void DialogMain::mousePressEvent(QMouseEvent *event)
{
    held_ = event->button() == Qt::LeftButton;
    grip_ = event->globalPos() - frameGeometry().topLeft();
}

// On Wayland only the compositor can move a window.
static bool isMovedBySystem(QWindow *window)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 15, 0)
    return window->startSystemMove();
#else
    Q_UNUSED(window)
    return false;
#endif
}

void DialogMain::mouseMoveEvent(QMouseEvent *event)
{
    if (!held_ || !(event->buttons() & Qt::LeftButton))
        return;
    held_ = !isMovedBySystem(windowHandle()); // the pointer is then the system's until its release
    if (held_)
        move(event->globalPos() - grip_);
}

void DialogMain::mouseReleaseEvent(QMouseEvent *) { held_ = false; }
