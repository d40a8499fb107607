// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "app/DialogMain.h"

#include "app/Dialog.h"
#include "app/WindowFlags.h"
#include "catalogue/LanguageChoice.h"
#include "catalogue/RegistryStore.h"
#include "catalogue/UserStore.h"
#include "device/DeviceState.h"
#include "device/EventDispatch.h"
#include "device/hidusb/HIDUsb.h"
#include "environment/DataRoot.h"
#include "hub/PostMsg.h"
#include "presentation/Notices.h"
#include "presentation/SkinPalette.h"
#include "presentation/Spin.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "selection/DialogChange.h"
#include "ui_DialogMain.h"

#include <QAction>
#include <QDebug>
#include <QKeyEvent>
#include <QMenu>
#include <QThread>
#include <QTimer>
#include <cstdlib>

namespace
{

constexpr QPoint NoticeOffset{0, -20};
constexpr int LetGoMs = 100;
constexpr int ClosingMs = 200;

} // namespace

DialogMain::DialogMain(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::DialogMain>())
{
    LoadLanguageTables();
    ui->setupUi(this);
    LanguageIndex = migrateLanguage(RegistryStore::instance(), UserStore::instance());
    pictures = style::pictureFolder(QStringLiteral("Dialog"));
    dialog = new Dialog(this);
    dialogChange = new DialogChange(this);
    ui->stackedWidget->addWidget(dialogChange);
    ui->stackedWidget->addWidget(dialog);
    ui->stackedWidget->setCurrentWidget(dialogChange);
    setWindowFlags(FramelessFlags);
    setFixedSize(size());
    roundCorners(this);
    setWindowTitle(applicationName());
    listen();
    trayIcon.setIcon(QIcon(pictures + QStringLiteral("Logo.png")));
    trayIcon.setToolTip(applicationName());
    setWindowIcon(trayIcon.icon());
    emit PostMsg::instance()->SigLanguageSameA(LanguageIndex);
    emit PostMsg::instance()->SigLanguageSameB(LanguageIndex);
    emit PostMsg::instance()->SigAllLanguage(LanguageIndex);
}

DialogMain::~DialogMain() = default;

void DialogMain::listen()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigChangeMainDialog(int)), this, SLOT(SlotChangeMainDialog(int)));
    connect(hub, SIGNAL(SigChangeSize(int)), this, SLOT(SlotChangeSize(int)));
    connect(hub, SIGNAL(SigMouseOffLineo(int)), this, SLOT(SlotMouseOffLine(int)));
    connect(hub, SIGNAL(SigUpPageLight()), this, SLOT(SlotUpPageLight()));
    connect(&trayIcon, &QSystemTrayIcon::activated, this, &DialogMain::on_activatedSysTrayIcon);
}

// ---- Pages --------------------------------------------------------------------------------------

void DialogMain::SlotChangeMainDialog(int index)
{
    UiArmed = true;
    if (index == 0) {
        emit PostMsg::instance()->SigSecondPageChange();
        OnDevicePage = 0;
        emit PostMsg::instance()->SigMainPageChange();
        UsbServer_Exit();
        QThread::msleep(LetGoMs);
        ui->stackedWidget->setCurrentWidget(dialogChange);
        StartUsbChanged(&DialogChange::UsbChanged, UsbSettleMs);
    } else if (index == 1) {
        ui->stackedWidget->setCurrentWidget(dialog);
        StartUsbChanged(&DevicePageUsbChanged, UsbSettleMs);
    }
}

// The page that found the mouse silent puts its control back first, so the notice waits for its slot to
// return. One notice at a time: the state is the same.
void DialogMain::SlotMouseOffLine(int index)
{
    OffLineKind = index;
    AwaitingMouse = true;
    RestartWorker = true;
    if (noticeUp)
        return;
    noticeUp = true;
    QTimer::singleShot(0, this, [this] {
        // What happened since may have brought the mouse back.
        if (AwaitingMouse)
            MouseOffLine().openOver(this, NoticeOffset);
        noticeUp = false;
    });
}

// ---- The three ways to end ----------------------------------------------------------------------

void DialogMain::SlotChangeSize(int index)
{
    if (index == 0 || index == 1)
        UsbServer_SetPCDriverStatus(0);
    if (index == 0 || index == 2)
        hideToTray();
    if (index == 1 || index == 3)
        endProgram();
}

// Where there is no tray the hidden window could never be found again.
void DialogMain::hideToTray()
{
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        showMinimized();
        hiddenInTaskBar = true;
        return;
    }
    hide();
    buildTrayMenu();
    trayIcon.show();
}

void DialogMain::buildTrayMenu()
{
    auto menu = std::make_unique<QMenu>();
    actionMain = menu->addAction(openText, this, &DialogMain::slotActionMain);
    actionExit = menu->addAction(exitText, this, &DialogMain::slotActionExitApp);
    trayIcon.setContextMenu(menu.get());
    trayMenu = std::move(menu);
}

void DialogMain::endProgram()
{
    qDebug() << "close";
    StopUsbChanged();
    spinEventLoop(ClosingMs);
    UsbServer_Exit();
    close();
}

void DialogMain::on_pushButton_clicked() { close(); }

// ---- Tray ---------------------------------------------------------------------------------------

// A double click leaves the device without the program in charge; a click and the menu take it back.
void DialogMain::on_activatedSysTrayIcon(QSystemTrayIcon::ActivationReason reason)
{
    switch (reason) {
    case QSystemTrayIcon::Context:
        if (trayMenu && !trayMenu->isVisible())
            trayMenu->popup(QCursor::pos());
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
    takeCharge();
    comeBack();
}

void DialogMain::takeCharge()
{
    if (ui->stackedWidget->currentWidget() == dialog)
        UsbServer_SetPCDriverStatus(1);
}

// The task bar then does what a click on the tray's icon would.
void DialogMain::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || !hiddenInTaskBar || isMinimized())
        return;
    hiddenInTaskBar = false;
    takeCharge();
}

// The icon goes when its own event is over: hiding it takes down the window in which it was clicked.
void DialogMain::comeBack()
{
    show();
    activateWindow();
    QTimer::singleShot(0, this, [this] {
        if (isVisible())
            trayIcon.hide();
    });
}

void DialogMain::slotActionExitApp() { std::exit(0); }

void DialogMain::SlotAllLanguage(int index)
{
    openText = language::text(language::Section::home, "OpenMain", index);
    exitText = language::text(language::Section::home, "Exit", index);
    if (trayMenu) {
        actionMain->setText(openText);
        actionExit->setText(exitText);
    }
}

// ---- Keys and mouse -----------------------------------------------------------------------------

void DialogMain::keyPressEvent(QKeyEvent *event)
{
    if (MacroRecording)
        return;
    switch (event->key()) {
    case Qt::Key_Space:
        if (ui->stackedWidget->currentWidget() == dialogChange)
            dialogChange->askOnlyDevice();
        else
            pairSelected();
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

// A pairing has the connection to itself; what the device says afterwards is for this page again.
void DialogMain::pairSelected()
{
    UsbServerC_Start(CurrentDevicePath(), CurrentDevicePath(), &ProtocolCallback);
}

void DialogMain::mousePressEvent(QMouseEvent *event)
{
    held = event->button() == Qt::LeftButton;
    grip = event->globalPos() - frameGeometry().topLeft();
}

void DialogMain::mouseMoveEvent(QMouseEvent *event)
{
    if (held && (event->buttons() & Qt::LeftButton))
        move(event->globalPos() - grip);
}

void DialogMain::mouseReleaseEvent(QMouseEvent *) { held = false; }
