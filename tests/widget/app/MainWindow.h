// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// MainWindow: the main window with the real worker on the scripted layer, beside one receiver.
#pragma once

#include "app/Dialog.h"
#include "app/DialogMain.h"
#include "selection/DialogChange.h"
#include "tests/widget/Fixture.h"

#include <QStackedWidget>
#include <QToolButton>

class MainWindow : public QObject
{
protected:
    std::unique_ptr<DialogMain> window;
    FakeHidUsb &fake = FakeHidUsb::instance();

    Dialog *dialog() const { return window->findChild<Dialog *>(); }
    QStackedWidget *stack() const { return window->findChild<QStackedWidget *>("stackedWidget"); }
    QStackedWidget *pages() const { return window->findChild<QStackedWidget *>("stackedWidgetDialog"); }
    QToolButton *button(const QString &name) const { return dialog()->findChild<QToolButton *>(name); }

    void openDevicePage()
    {
        fixture::select(fixture::info("dev", Receiver8K));
        emit PostMsg::instance()->SigChangeMainDialog(1);
        QTRY_VERIFY(fake.idle());
    }

    // Before each test; behind it the window goes.
    void begin()
    {
        fixture::clean();
        fake.addDevice(fixture::device("dev", 6, Receiver8K));
        window = std::make_unique<DialogMain>();
        window->show();
        QTRY_VERIFY(fake.idle());
        QCoreApplication::processEvents();
    }
};
