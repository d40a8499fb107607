// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// DialogMain: the one top-level window, a stack of the selection page and the device page. It owns the
// tray icon and ends or hides the program. Main thread.
#pragma once

#include <QDialog>
#include <QSystemTrayIcon>
#include <memory>

class Dialog;
class DialogChange;
class QAction;
class QMenu;

namespace Ui
{
class DialogMain;
}

class DialogMain : public QDialog
{
    Q_OBJECT

public:
    explicit DialogMain(QWidget *parent = nullptr);
    ~DialogMain() override;
    // In place of show(): to the tray, and the device, which nothing has opened, hears nothing. At a login
    // the desktop's tray may come after the program; after `waitMs` without one the window stands in the task
    // bar.
    void startHidden(int waitMs = 30000);

    // Closes the window as its user would and ends the process, also under a modal dialog. Stays for an
    // upgrade.
    void endProcess();
    // What a close sends and keeps, and lets the device go, without a turn of the event loop. Nothing when
    // that has been done.
    void letGo();

public slots:
    void SlotChangeMainDialog(int index);
    void SlotChangeSize(int index);
    void SlotMouseOffLine(int index);
    void SlotUpPageLight() {}
    void SlotAllLanguage(int index);
    void on_activatedSysTrayIcon(QSystemTrayIcon::ActivationReason reason);
    void slotActionMain();
    void slotActionExitApp();
    void on_pushButton_clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void connectSignals();
    void showPage(QWidget *page);
    void hideToTray();
    void buildTrayIcon();
    void buildTrayMenu();
    void endProgram();
    void takeCharge();
    void comeBack();
    bool staysForUpgrade();

    std::unique_ptr<Ui::DialogMain> ui;
    std::unique_ptr<QMenu> trayMenu_;
    QAction *actionMain_ = nullptr;
    QAction *actionExit_ = nullptr;
    std::unique_ptr<QSystemTrayIcon> trayIcon_; // from the first hiding on
    QString pictures_;
    Dialog *dialog_;
    DialogChange *dialogChange_;
    QString openText_;
    QString exitText_;
    QPoint grip_; // of the pointer within the window while it is dragged
    bool held_ = false;
    bool ended_ = false;           // the device has been let go; what is left is to close
    bool hiddenInTaskBar_ = false; // instead of in the tray, where there is none
    bool noticeUp_ = false;        // the off-line notice is open or about to open
};
